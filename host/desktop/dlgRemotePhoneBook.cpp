#include "host/desktop/addressFetch.h"
#include "host/desktop/directoryEntry.h"
#include "host/desktop/hostList.h"
#include "host/desktop/hostPage.h"
#include "support/host/api.h"
#include "support/host/dialogs.h"
#include "support/host/phone.h"
#include "support/host/screen.h"
#include "support/host/text.h"
#include "ui_dlgRemotePhoneBook.h"

struct dlgRemotePhoneBook::Private
{
    Private()
        : fetch("/rundata/run/remotePhoneBook.xml", DIRECTORY_BYTES_MAX,
                [this](bool good, const QByteArray& content) { arrived(good, content); })
    {
    }
    Ui_dlgRemotePhoneBook ui;
    hostPage page;
    hostList* list = nullptr;
    addressFetch fetch;
    QList<tagDirectoryEntry> entries;

    void show(const char* notice);
    void arrived(bool good, const QByteArray& content);
};

dlgRemotePhoneBook::dlgRemotePhoneBook(QWidget* parent, tagLeftBarInfo* info)
    : QDialog(parent, Qt::FramelessWindowHint), LeftBarOperation(info), m_p(new Private)
{
    m_p->ui.setupUi(this);
    m_p->page.build(this, m_p->ui.frmBackground, HX_TR("Remote Phonebook"));
    m_p->page.setSoftKey(0, "Call", HX_TR("Call"), SLOT(on_click_Call()));
    m_p->page.setSoftKey(3, "Back", HX_TR("Back"), SLOT(on_click_Back()));
    m_p->list =
        new hostList(m_p->ui.tabList, m_p->ui.labNotice, {{HX_TR("Name"), 400}, {HX_TR("Number"), 340}});
    connect(m_p->list, &hostList::opened, this, &dlgRemotePhoneBook::on_click_Call);
}

dlgRemotePhoneBook::~dlgRemotePhoneBook()
{
    delete m_p;
}

void dlgRemotePhoneBook::Private::show(const char* notice)
{
    QList<tagListRow> rows;
    for (const tagDirectoryEntry& entry : entries)
        rows.append({{entry.strName, entry.strNumber}, QString()});
    list->setRows(rows, notice);
    list->goToFirst();
}

void dlgRemotePhoneBook::Private::arrived(bool good, const QByteArray& content)
{
    if (good && directoryEntriesRead(content, entries))
        show(HX_TR("The phone book is empty."));
    else
        show(HX_TR("The phone book cannot be loaded."));
}

void dlgRemotePhoneBook::ShowUp(const chString& url, const chString& title)
{
    m_p->entries.clear();
    m_p->page.setOwnTitle(toQString(title));
    m_p->show(HX_TR("Loading..."));
    m_p->fetch.start(url);
    screenBringUp(this);
}

bool dlgRemotePhoneBook::event(QEvent* event)
{
    if (event->type() == QEvent::Show) {
        m_p->list->setFocus();
    } else if (event->type() == QEvent::Hide) {
        m_p->fetch.stop();
    }
    return QDialog::event(event);
}

void dlgRemotePhoneBook::on_click_Call()
{
    const int row = m_p->list->currentRow();
    if (row >= 0)
        phone_CallNumber(fromQString(m_p->entries[row].strNumber), -1, 0);
}

void dlgRemotePhoneBook::on_click_Back()
{
    reject();
}
