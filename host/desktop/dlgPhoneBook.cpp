#include "host/desktop/contactBook.h"
#include "host/desktop/hostList.h"
#include "host/desktop/hostPage.h"
#include "host/desktop/lineName.h"
#include "support/host/api.h"
#include "support/host/dialogs.h"
#include "support/host/phone.h"
#include "support/host/screen.h"
#include "support/host/text.h"
#include "ui_dlgPhoneBook.h"
#include <memory>

struct dlgPhoneBook::Private
{
    Ui_dlgPhoneBook ui;
    hostPage page;
    hostList* list = nullptr;
    QList<tagContact> contacts;
    std::unique_ptr<dlgContactEditor> ownEditor; // when nobody else has made one

    void load();
    void edit(int contact);
};

dlgPhoneBook::dlgPhoneBook(QWidget* parent, tagLeftBarInfo* info)
    : QDialog(parent, Qt::FramelessWindowHint), LeftBarOperation(info), m_p(new Private)
{
    m_p->ui.setupUi(this);
    m_p->page.build(this, m_p->ui.frmBackground, HX_TR("Local Phonebook"));
    m_p->page.setSoftKey(0, "Call", HX_TR("Call"), SLOT(on_click_Call()));
    m_p->page.setSoftKey(1, "New", HX_TR("New"), SLOT(on_click_New()));
    m_p->page.setSoftKey(2, "Edit", HX_TR("Edit"), SLOT(on_click_Edit()));
    m_p->page.setSoftKey(3, "Back", HX_TR("Back"), SLOT(on_click_Back()));
    m_p->list = new hostList(m_p->ui.tabList, m_p->ui.labNotice,
                             {{HX_TR("Name"), 330}, {HX_TR("Number"), 270}, {HX_TR("Line"), 140}});
    connect(m_p->list, &hostList::opened, this, &dlgPhoneBook::on_click_Call);
    qFollowLanguage(this, [this] { m_p->load(); });
}

dlgPhoneBook::~dlgPhoneBook()
{
    delete m_p;
}

void dlgPhoneBook::Private::load()
{
    contacts = contactsRead();
    QList<tagListRow> rows;
    for (const tagContact& contact : contacts)
        rows.append({{contact.strName, contact.strNumber, lineName(contact.nLine)}, QString()});
    list->setRows(rows, HX_TR("The phone book is empty."));
}

void dlgPhoneBook::Private::edit(int contact)
{
    if (!getContactEditorDlg())
        ownEditor = std::make_unique<dlgContactEditor>(nullptr, nullptr);
    dlgContactEditor* editor = getContactEditorDlg();
    editor->EditContact(contact);
    screenBringUp(editor);
}

void dlgPhoneBook::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    m_p->load();
    m_p->list->goToFirst();
    m_p->list->setFocus();
}

// The editor, or another page, may have changed the contacts while it was on top.
bool dlgPhoneBook::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        m_p->load();
    return QDialog::event(event);
}

void dlgPhoneBook::on_click_Call()
{
    const int row = m_p->list->currentRow();
    if (row < 0)
        return;
    const tagContact& contact = m_p->contacts[row];
    phone_CallNumber(fromQString(contact.strNumber), contact.nLine, 0);
}

void dlgPhoneBook::on_click_New()
{
    m_p->edit(-1);
}

void dlgPhoneBook::on_click_Edit()
{
    if (m_p->list->currentRow() >= 0)
        m_p->edit(m_p->list->currentRow());
}

void dlgPhoneBook::on_click_Back()
{
    reject();
}
