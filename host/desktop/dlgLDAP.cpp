#include "host/desktop/directorySearch.h"
#include "host/desktop/hostList.h"
#include "host/desktop/hostPage.h"
#include "support/host/api.h"
#include "support/host/dialogs.h"
#include "support/host/ime.h"
#include "support/host/phone.h"
#include "support/host/text.h"
#include "support/host/ui.h"
#include "ui_dlgLDAP.h"
#include <QKeyEvent>

namespace {

constexpr int kKeySearch = 0;
constexpr int kKeyIme = 1;

} // namespace

struct dlgLDAP::Private
{
    Ui_dlgLDAP ui;
    hostPage page;
    hostList* list = nullptr;
    QList<tagDirectoryEntry> entries;

    void show(const char* notice);
    void found(bool reachable, const QList<tagDirectoryEntry>& result);
    bool pressKey(const QKeyEvent* key);
};

dlgLDAP::dlgLDAP(QWidget* parent, tagLeftBarInfo* info)
    : QDialog(parent, Qt::FramelessWindowHint), LeftBarOperation(info), m_p(new Private)
{
    m_p->ui.setupUi(this);
    m_p->page.build(this, m_p->ui.frmBackground, HX_TR("LDAP"));
    m_p->page.setSoftKey(kKeySearch, "Search", HX_TR("Search"), SLOT(on_click_Search()));
    m_p->page.setSoftKey(kKeyIme, "IME", HX_TR("IME"), SLOT(on_click_IME()));
    m_p->page.setSoftKeyTitle(kKeyIme, [this] { return qGetCurrentIME(focusWidget()); });
    m_p->page.setSoftKey(2, "Delete", HX_TR("Delete"), SLOT(on_click_Delete()));
    m_p->page.setSoftKey(3, "Back", HX_TR("Back"), SLOT(on_click_Back()));
    m_p->list =
        new hostList(m_p->ui.tabList, m_p->ui.labNotice, {{HX_TR("Name"), 400}, {HX_TR("Number"), 340}});
    qInstallIME(m_p->ui.editSearch, "2aB,ABC,abc,123");
    m_p->ui.editSearch->installEventFilter(this);
    m_p->ui.tabList->installEventFilter(this);
    connect(m_p->list, &hostList::opened, this,
            [this](int row) { phone_CallNumber(fromQString(m_p->entries[row].strNumber), -1, 0); });
}

dlgLDAP::~dlgLDAP()
{
    directorySearchGet().stop();
    delete m_p;
}

void dlgLDAP::Private::show(const char* notice)
{
    QList<tagListRow> rows;
    for (const tagDirectoryEntry& entry : entries)
        rows.append({{entry.strName, entry.strNumber}, QString()});
    list->setRows(rows, notice);
    list->goToFirst();
}

void dlgLDAP::Private::found(bool reachable, const QList<tagDirectoryEntry>& result)
{
    entries = result;
    show(reachable ? HX_TR("Nothing was found.") : HX_TR("LDAP server is not reachable"));
    if (!entries.isEmpty())
        list->setFocus();
}

// Down goes from the field to the results, up from the first of them back to it.
bool dlgLDAP::Private::pressKey(const QKeyEvent* key)
{
    const bool inField = ui.editSearch->hasFocus();
    if (inField && key->key() == Qt::Key_Down && !entries.isEmpty())
        list->setFocus();
    else if (!inField && key->key() == Qt::Key_Up && list->currentRow() <= 0)
        ui.editSearch->setFocus(Qt::OtherFocusReason);
    else
        return inField && (key->key() == Qt::Key_Up || key->key() == Qt::Key_Down);
    return true;
}

void dlgLDAP::initData(const chString& title)
{
    m_p->page.setOwnTitle(toQString(title));
    m_p->entries.clear();
    m_p->ui.editSearch->clear();
    m_p->show("");
    m_p->ui.editSearch->setFocus(Qt::OtherFocusReason);
}

bool dlgLDAP::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn)
        m_p->page.softKeys()->SetButtonTitle(kKeyIme, qGetCurrentIME(focusWidget()));
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const QKeyEvent* key = static_cast<QKeyEvent*>(event);
    if (watched == m_p->ui.editSearch && qIsOkKey(key->key())) {
        on_click_Search();
        return true;
    }
    return m_p->pressKey(key);
}

bool dlgLDAP::event(QEvent* event)
{
    if (event->type() == QEvent::Show) {
        m_p->ui.editSearch->setFocus(Qt::OtherFocusReason);
        m_p->page.softKeys()->SetButtonTitle(kKeyIme, qGetCurrentIME(m_p->ui.editSearch));
    } else if (event->type() == QEvent::Hide) {
        directorySearchGet().stop();
    }
    return QDialog::event(event);
}

void dlgLDAP::on_click_Search()
{
    const QString text = qReturnLineEdit(m_p->ui.editSearch).trimmed();
    m_p->entries.clear();
    m_p->show(HX_TR("Loading..."));
    directorySearchGet().search(text, [this](bool reachable, const QList<tagDirectoryEntry>& result) {
        m_p->found(reachable, result);
    });
}

void dlgLDAP::on_click_IME()
{
    qOnIMEButtonClicked(this, m_p->page.softKeys());
}

void dlgLDAP::on_click_Delete()
{
    qOnBackspaceClicked(this);
}

void dlgLDAP::on_click_Back()
{
    reject();
}
