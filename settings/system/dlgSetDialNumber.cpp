#include "settings/system/dlgSetDialNumber.h"
#include "frame/noteBox.h"
#include "support/host/dialitem.h"
#include "support/host/ime.h"
#include "support/host/text.h"
#include "ui_dlgSetDialNumber.h"
#include <QEvent>

namespace {

constexpr int kLongestNumber = 99;

} // namespace

dlgSetDialNumber::dlgSetDialNumber(qDialNumberItem* item, QWidget* parent)
    : InputBox(parent), ui(new Ui::dlgSetDialNumber), m_pItem(item)
{
    ui->setupUi(this);
    ui->linDialNumber->setMaxLength(kLongestNumber);
    if (item)
        ui->linDialNumber->setText(toQString(item->PhoneNumber()));
    qInstallIME(ui->linDialNumber, "123,2aB,ABC,abc");
    BuildBox({ui->labTitle, ui->linDialNumber, ui->btnIME, ui->btnDelete, ui->btnOK, ui->btnCancel});
    connect(ui->btnOK, &QPushButton::clicked, this, &dlgSetDialNumber::on_click_ok);
    connect(ui->btnCancel, &QPushButton::clicked, this, &dlgSetDialNumber::on_click_cancel);
    connect(ui->btnDelete, &QPushButton::clicked, this, &dlgSetDialNumber::on_click_delete);
    connect(ui->btnIME, &QPushButton::clicked, this, &dlgSetDialNumber::change_input);
    installEventFilter(this);
}

dlgSetDialNumber::~dlgSetDialNumber() = default;

// It must not stay behind another window; its own note is none of those.
bool dlgSetDialNumber::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == this && event->type() == QEvent::WindowDeactivate && !m_bTelling)
        reject();
    return InputBox::eventFilter(watched, event);
}

void dlgSetDialNumber::on_click_ok()
{
    const chString number = fromQString(qReturnLineEdit(ui->linDialNumber));
    const QPointer<dlgSetDialNumber> self = this;
    m_bTelling = true;
    bool isDone = false;
    if (number.IsEmpty())
        noteBox(HX_TR("The phone number is empty!"), this);
    else
        isDone = !m_pItem || noteUnlessSaved(m_pItem->SavePhoneNumber(number), this);
    // What came up over the note may have closed the box as well.
    if (!self)
        return;
    m_bTelling = false;
    if (isDone)
        accept();
    else
        ui->linDialNumber->setFocus(Qt::OtherFocusReason);
}

void dlgSetDialNumber::on_click_cancel()
{
    reject();
}

void dlgSetDialNumber::on_click_delete()
{
    ui->linDialNumber->setFocus();
    qOnBackspaceClicked(this);
}

void dlgSetDialNumber::change_input()
{
    StepMethod();
}
