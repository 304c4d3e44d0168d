#include "host/desktop/callRecords.h"
#include "host/desktop/hostList.h"
#include "host/desktop/hostPage.h"
#include "host/desktop/lineName.h"
#include "host/desktop/missedCalls.h"
#include "host/services/phone/callHistory.h"
#include "support/host/api.h"
#include "support/host/box.h"
#include "support/host/dialogs.h"
#include "support/host/phone.h"
#include "support/host/text.h"
#include "ui_dlgCallHistroy.h"

struct dlgCallHistroy::Private
{
    Ui_dlgCallHistroy ui;
    hostPage page;
    hostList* list = nullptr;
    QList<tagCallRecord> calls;

    void load();
};

dlgCallHistroy::dlgCallHistroy(QWidget* parent, tagLeftBarInfo* info)
    : QDialog(parent, Qt::FramelessWindowHint), LeftBarOperation(info), m_p(new Private)
{
    m_p->ui.setupUi(this);
    m_p->page.build(this, m_p->ui.frmBackground, HX_TR("Call Histroy"));
    m_p->page.setSoftKey(0, "Call", HX_TR("Call"), SLOT(on_click_Call()));
    m_p->page.setSoftKey(2, "Clear", HX_TR("Clear"), SLOT(on_click_Clear()));
    m_p->page.setSoftKey(3, "Back", HX_TR("Back"), SLOT(on_click_Back()));
    m_p->list = new hostList(m_p->ui.tabList, m_p->ui.labNotice,
                             {{HX_TR("Name"), 190},
                              {HX_TR("Number"), 130},
                              {HX_TR("Line"), 100},
                              {HX_TR("Time"), 210},
                              {HX_TR("Duration"), 110}});
    connect(m_p->list, &hostList::opened, this, &dlgCallHistroy::on_click_Call);
    qFollowLanguage(this, [this] { m_p->load(); });
}

dlgCallHistroy::~dlgCallHistroy()
{
    delete m_p;
}

void dlgCallHistroy::Private::load()
{
    calls = callRecordsRead();
    const QList<tagContact> contacts = contactsRead();
    QList<tagListRow> rows;
    for (const tagCallRecord& call : calls) {
        const QString duration = call.nSeconds > 0 ? durationText(call.nSeconds) : QString();
        rows.append({{callRecordName(call, contacts), call.strNumber, lineName(call.nLine),
                      callRecordTime(call), duration},
                     callRecordPicture(call)});
    }
    list->setRows(rows, HX_TR("There are no calls yet."));
}

void dlgCallHistroy::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    m_p->load();
    m_p->list->goToFirst();
    m_p->list->setFocus();
    missedCalls::instance().clear();
}

// A call from here has been added since.
bool dlgCallHistroy::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        m_p->load();
    return QDialog::event(event);
}

void dlgCallHistroy::on_click_Call()
{
    const int row = m_p->list->currentRow();
    if (row < 0)
        return;
    const tagCallRecord& call = m_p->calls[row];
    phone_CallNumber(fromQString(call.strNumber), call.nLine, 0);
}

void dlgCallHistroy::on_click_Clear()
{
    if (m_p->calls.isEmpty() ||
        !xMessageBox(Translate("Note"), Translate("Delete all calls?"), BOX_QUESTION, this, -1))
        return;
    if (!callHistoryClear())
        xMessageBox(Translate("Note"), Translate("The calls cannot be deleted!"), BOX_NOTE, this, -1);
    m_p->load();
}

void dlgCallHistroy::on_click_Back()
{
    reject();
}
