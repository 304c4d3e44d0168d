#include "host/desktop/contactBook.h"
#include "host/desktop/hostPage.h"
#include "host/desktop/lineName.h"
#include "support/file/path.h"
#include "support/host/api.h"
#include "support/host/box.h"
#include "support/host/combo.h"
#include "support/host/dialogs.h"
#include "support/host/ime.h"
#include "support/host/text.h"
#include "ui_dlgContactEditor.h"
#include <QKeyEvent>

namespace {

constexpr int kKeyIme = 1;
constexpr int kLongestName = 64;
constexpr int kLongestNumber = 64;
const char* const kPictureTable = "/phone/resource/mediafile.xml";
const char* const kDefaultPicture = "/phone/resource/contact-image/icon_contact.png";

void fillLines(QComboBox* box)
{
    box->clear();
    for (int line = -1; line < PHONE_ACCOUNT_COUNT; ++line)
        qAddComboBoxItem(box, lineName(line), QByteArray::number(line).constData());
}

dlgContactEditor* g_pEditor = nullptr;

} // namespace

struct dlgContactEditor::Private
{
    Ui_dlgContactEditor ui;
    hostPage page;
    tagContact contact; // as it was read
    int nPictures = 0;  // of the media table, and "None"

    void fillPictures(const QString& chosen);
    void showContact();
    void showChoices();
    tagContact edited() const;
    bool isChanged() const;
    bool isDeleted(const chString& picture) const;
    void showPicture(qLeftBar* bar) const;
};

dlgContactEditor::dlgContactEditor(QWidget* parent, tagLeftBarInfo* info)
    : QDialog(parent, Qt::FramelessWindowHint), LeftBarOperation(info), m_p(new Private)
{
    g_pEditor = this;
    m_p->ui.setupUi(this);
    m_p->page.build(this, m_p->ui.frmBackground, HX_TR("Contact"));
    m_p->page.addLeftBar(this, kDefaultPicture, HX_TR("Contact"));
    m_p->page.setSoftKey(0, "Save", HX_TR("Save"), SLOT(on_click_Save()));
    m_p->page.setSoftKey(kKeyIme, "IME", HX_TR("IME"), SLOT(on_click_IME()));
    m_p->page.setSoftKeyTitle(kKeyIme, [this] { return qGetCurrentIME(focusWidget()); });
    m_p->page.setSoftKey(2, "Delete", HX_TR("Delete"), SLOT(on_click_Delete()));
    m_p->page.setSoftKey(3, "Back", HX_TR("Back"), SLOT(on_click_Back()));
    qInstallIME(m_p->ui.editName, "2aB,ABC,abc,123");
    qInstallIME(m_p->ui.editNumber, "123");
    m_p->ui.editName->setMaxLength(kLongestName);
    m_p->ui.editNumber->setMaxLength(kLongestNumber);
    for (QWidget* widget : m_p->ui.frmBackground->findChildren<QWidget*>())
        widget->installEventFilter(this);
    connect(m_p->ui.btnRemove, &QPushButton::clicked, this, [this] {
        if (!xMessageBox(Translate("Note"), Translate("Delete this contact?"), BOX_QUESTION, this, -1))
            return;
        if (contactRemove(m_p->contact))
            accept();
        else
            xMessageBox(Translate("Note"), Translate("The contact cannot be saved!"), BOX_NOTE, this, -1);
    });
    connect(m_p->ui.cmbPicture, &QComboBox::currentIndexChanged, this,
            [this] { m_p->showPicture(m_pLeftBar); });
    qFollowLanguage(this, [this] { m_p->showChoices(); });
}

dlgContactEditor::~dlgContactEditor()
{
    if (g_pEditor == this)
        g_pEditor = nullptr;
    delete m_p;
}

dlgContactEditor* getContactEditorDlg()
{
    return g_pEditor;
}

void dlgContactEditor::Private::fillPictures(const QString& chosen)
{
    ui.cmbPicture->clear();
    qAddComboBoxItem(ui.cmbPicture, qTranslate("None"), "");
    qFillMediaCommboView(ui.cmbPicture, kPictureTable, "contact-image");
    nPictures = ui.cmbPicture->count();
    const chString stored = fromQString(chosen);
    if (!qSelectComboBoxItem(ui.cmbPicture, stored)) {
        // A picture from elsewhere stays the contact's.
        qAddComboBoxItem(ui.cmbPicture, chosen.section('/', -1), stored);
        qSelectComboBoxItem(ui.cmbPicture, stored);
    }
}

void dlgContactEditor::Private::showContact()
{
    fillLines(ui.cmbLine);
    fillPictures(contact.strPicture);
    ui.editName->setText(contact.strName);
    ui.editNumber->setText(contact.strNumber);
    // A line that the phone does not have stays the contact's until another one is chosen.
    ui.cmbLine->setCurrentIndex(-1);
    qSelectComboBoxItem(ui.cmbLine, QByteArray::number(contact.nLine).constData());
    ui.btnRemove->setVisible(contact.nIndex >= 0);
}

// The items again, with the present choices.
void dlgContactEditor::Private::showChoices()
{
    const int line = ui.cmbLine->currentIndex();
    fillLines(ui.cmbLine);
    ui.cmbLine->setCurrentIndex(line);
    fillPictures(toQString(qGetExternValue(ui.cmbPicture, ui.cmbPicture->currentIndex())));
}

tagContact dlgContactEditor::Private::edited() const
{
    tagContact result = contact;
    result.strName = qReturnLineEdit(ui.editName).trimmed();
    result.strNumber = qReturnLineEdit(ui.editNumber).trimmed();
    if (ui.cmbLine->currentIndex() >= 0)
        result.nLine = toQString(qGetExternValue(ui.cmbLine, ui.cmbLine->currentIndex())).toInt();
    result.strPicture = toQString(qGetExternValue(ui.cmbPicture, ui.cmbPicture->currentIndex()));
    return result;
}

void dlgContactEditor::Private::showPicture(qLeftBar* bar) const
{
    const QString picture = toQString(qGetExternValue(ui.cmbPicture, ui.cmbPicture->currentIndex()));
    bar->setIcon(picture.isEmpty() ? QString(kDefaultPicture) : picture);
}

bool dlgContactEditor::Private::isChanged() const
{
    const tagContact now = edited();
    return !(now == contact && now.strPicture == contact.strPicture);
}

// Whoever asks for it again over an editor that is open, wants to go on with what was typed, or says so.
void dlgContactEditor::EditContact(int index)
{
    const tagContact asked = contactsRead().value(index);
    if (isVisible() && m_p->isChanged()) {
        if (asked == m_p->contact ||
            !xMessageBox(Translate("Note"), Translate("Discard the changes?"), BOX_QUESTION, this, -1))
            return;
    }
    m_p->contact = asked;
    m_p->showContact();
    m_p->showPicture(m_pLeftBar);
    m_p->ui.editName->setFocus(Qt::OtherFocusReason);
    m_p->page.softKeys()->SetButtonTitle(kKeyIme, qGetCurrentIME(m_p->ui.editName));
}

// One from elsewhere may come back with its disk.
bool dlgContactEditor::Private::isDeleted(const chString& picture) const
{
    const int chosen = ui.cmbPicture->currentIndex();
    return chosen > 0 && chosen < nPictures && !pathFileExist(picture);
}

// Whoever deletes a picture gives its contacts the default one; a Save must not bring the old one back.
void dlgContactEditor::reloadContactImage()
{
    const chString chosen = qGetExternValue(m_p->ui.cmbPicture, m_p->ui.cmbPicture->currentIndex());
    const QString shown = m_p->isDeleted(chosen) ? QString(kDefaultPicture) : toQString(chosen);
    if (m_p->contact.strPicture == toQString(chosen))
        m_p->contact.strPicture = shown;
    m_p->fillPictures(shown);
}

void dlgContactEditor::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    m_p->page.showTexts();
    m_p->showContact();
    m_p->showPicture(m_pLeftBar);
    m_p->ui.editName->setFocus(Qt::OtherFocusReason);
    m_p->page.softKeys()->SetButtonTitle(kKeyIme, qGetCurrentIME(focusWidget()));
}

bool dlgContactEditor::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn)
        m_p->page.softKeys()->SetButtonTitle(kKeyIme, qGetCurrentIME(focusWidget()));
    if (event->type() == QEvent::KeyPress)
        return hostPage::pressFormKey(static_cast<QWidget*>(watched), static_cast<QKeyEvent*>(event));
    return QDialog::eventFilter(watched, event);
}

bool dlgContactEditor::event(QEvent* event)
{
    return QDialog::event(event);
}

void dlgContactEditor::on_click_Save()
{
    const tagContact contact = m_p->edited();
    const char* wrong = contact.strName.isEmpty()     ? HX_TR("The name is empty!")
                        : contact.strNumber.isEmpty() ? HX_TR("The phone number is empty!")
                                                      : nullptr;
    if (wrong) {
        xMessageBox(Translate("Note"), Translate(wrong), BOX_NOTE, this, -1);
        (contact.strName.isEmpty() ? m_p->ui.editName : m_p->ui.editNumber)->setFocus(Qt::OtherFocusReason);
    } else if (contactStore(m_p->contact, contact)) {
        accept();
    } else {
        xMessageBox(Translate("Note"), Translate("The contact cannot be saved!"), BOX_NOTE, this, -1);
    }
}

void dlgContactEditor::on_click_IME()
{
    qOnIMEButtonClicked(this, m_p->page.softKeys());
}

void dlgContactEditor::on_click_Delete()
{
    qOnBackspaceClicked(this);
}

void dlgContactEditor::on_click_Back()
{
    reject();
}
