#include "settings/system/dlgPassWord.h"
#include "settings/system/adminPassword.h"
#include "support/host/box.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "support/host/password.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "ui_dlgPassWord.h"

namespace {

constexpr int kNoteMs = 3000;

} // namespace

dlgPassWord::dlgPassWord(QWidget* parent)
    : InputBox(parent), ui(new Ui::dlgPassWord), m_pPasswords(new filePassword(ADMIN_PASSWORD_FILE))
{
    ui->setupUi(this);
    adminSetupEdit(ui->linPassWordEdit);
    qSetCurrentIME(ui->linPassWordEdit, adminInputMethod());
    BuildBox({ui->labTitle, ui->linPassWordEdit, ui->btnEdit, ui->btnDelet, ui->btnOK, ui->btnCancel});
    connect(ui->btnOK, &QPushButton::clicked, this, &dlgPassWord::on_btnOK_clicked);
    connect(ui->btnCancel, &QPushButton::clicked, this, &dlgPassWord::on_btnCancel_clicked);
    connect(ui->btnDelet, &QPushButton::clicked, this, &dlgPassWord::on_btnDelet_clicked);
    connect(ui->btnEdit, &QPushButton::clicked, this, &dlgPassWord::SetIME);
}

dlgPassWord::~dlgPassWord() = default;

// The hash takes its time, in which a call may have closed the box: the answer comes too late then.
void dlgPassWord::on_btnOK_clicked()
{
    if (m_bChecking)
        return;
    const chString given = fromQString(qReturnLineEdit(ui->linPassWordEdit));
    const bool wasShown = isVisible();
    m_bChecking = true;
    const int isRight = m_pPasswords->IsRightUserPassword(ADMIN_USER, given);
    m_bChecking = false;
    if (wasShown && !isVisible())
        return;
    if (isRight) {
        nuxTrace(TRACE_DETAIL, "Verify that password is right!");
        accept();
    } else {
        xMessageBox(Translate("Warning"), Translate("Password is wrong!"), BOX_NOTE, this, kNoteMs);
        ui->linPassWordEdit->setFocus(Qt::OtherFocusReason);
    }
}

void dlgPassWord::on_btnCancel_clicked()
{
    reject();
}

void dlgPassWord::on_btnDelet_clicked()
{
    ui->linPassWordEdit->setFocus();
    qOnBackspaceClicked(this);
}

void dlgPassWord::SetIME()
{
    StepMethod();
}
