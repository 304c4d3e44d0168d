#include "host/services/phone/callHistory.h"
#include "host/services/system/phoneZone.h"
#include "support/host/clock.h"
#include "support/host/task.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/xml/xmlFile.h"
#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMutex>
#include <QTimer>
#include <utility>

namespace {

const char* const kFile = "/rundata/data/callHistory.xml";

struct History
{
    QMutex file; // one writer at a time
    QMutex mutex;
    QList<tagCall> waiting; // in the order in which the calls ended
};

History& theHistory()
{
    static History* history = new History;
    return *history;
}

bool isSilent(const tagCall& call)
{
    return call.bIncoming && !call.bRang;
}

// Who has one of the places; the newest calls are asked for first.
class Places
{
public:
    bool take(const tagCall& call)
    {
        return take(isSilent(call), call.strNumber.toUtf8(), QByteArray::number(call.nAccount + 1));
    }
    bool take(xmlElement* call)
    {
        const auto textOf = [call](const char* attribute) {
            return QByteArray(call->GetAttributeValue(attribute).GetText());
        };
        return take(textOf("silent") == "1", textOf("number"), textOf("line"));
    }

private:
    bool take(bool isSilent, const QByteArray& number, const QByteArray& line)
    {
        if (m_nCalls == CALL_HISTORY_MAX)
            return false;
        if (isSilent) {
            int& own = m_own[line + ' ' + number];
            const bool isOneCaller = !number.isEmpty();
            if (m_nSilent == CALL_HISTORY_SILENT_MAX ||
                (isOneCaller && own == CALL_HISTORY_SILENT_OF_ONE_MAX))
                return false;
            ++own;
            ++m_nSilent;
        }
        ++m_nCalls;
        return true;
    }

    int m_nCalls = 0;
    int m_nSilent = 0;
    QHash<QByteArray, int> m_own; // silent ones of each line and number
};

void writeCall(xmlElement* element, const tagCall& call)
{
    const chString start = chTime(call.nStartTime).Format("%Y-%m-%d %H:%M:%S");
    element->SetAttributeValue("number", fromQString(call.strNumber));
    element->SetAttributeValue("name", fromQString(call.strName));
    element->SetAttributeValue("line", QByteArray::number(call.nAccount + 1).constData());
    element->SetAttributeValue("direction", call.bIncoming ? "in" : "out");
    element->SetAttributeValue("start", start);
    element->SetAttributeValue("utc", QByteArray::number(qlonglong(zoneUtcOf(call.nStartTime))).constData());
    element->SetAttributeValue("missed", callIsMissed(call) ? "1" : "0");
    element->SetAttributeValue("seconds", QByteArray::number(call.nSeconds).constData());
    element->SetAttributeValue("silent", isSilent(call) ? "1" : "0");
}

// Puts the newest first, and the calls that were there after them.
int saveCalls(const QList<tagCall>& ended)
{
    xmlFile old;
    // Calls that cannot be read now are not given up for the new ones.
    if (!old.LoadFromFile(kFile) && old.GetLastRead() == FILE_READ_FAILED)
        return 0;
    xmlFile fresh;
    xmlElement* list = fresh.AddChildElement("CallHistory");
    Places places;
    for (auto call = ended.rbegin(); call != ended.rend(); ++call) {
        if (places.take(*call))
            writeCall(list->AddChildElement("Call"), *call);
    }
    const xmlElement* oldList = xmlFindElementFromRoot(&old, "CallHistory");
    xmlElement* oldCall = oldList ? oldList->FindChildElement("Call") : nullptr;
    for (; oldCall; oldCall = xmlGetNextElement(oldCall)) {
        if (places.take(oldCall))
            list->AddChildCopy(oldCall);
    }
    return fresh.SaveToFile(kFile);
}

// Those that would be written, the oldest first.
QList<tagCall> withPlaces(const QList<tagCall>& ended)
{
    Places places;
    QList<tagCall> kept;
    for (auto call = ended.rbegin(); call != ended.rend(); ++call) {
        if (places.take(*call))
            kept.prepend(*call);
    }
    return kept;
}

// How many could not be written, and wait on.
qsizetype saveWaiting()
{
    History& history = theHistory();
    QMutexLocker file(&history.file);
    QMutexLocker lock(&history.mutex);
    QList<tagCall> ended;
    ended.swap(history.waiting);
    lock.unlock();
    if (ended.isEmpty() || saveCalls(ended))
        return 0;
    lock.relock();
    history.waiting = withPlaces(ended + history.waiting);
    return history.waiting.size();
}

class SaveAction : public taskAction
{
public:
    int exec() override
    {
        m_bFailed = saveWaiting() > 0;
        return 1;
    }
    bool hasFailed() const { return m_bFailed; }

private:
    bool m_bFailed = false;
};

// What could not be written waits here for the next try.
class HistoryKeeper : public ActionCallback
{
public:
    static HistoryKeeper& instance()
    {
        static HistoryKeeper* keeper = new HistoryKeeper; // calls may end after the statics
        return *keeper;
    }
    void save()
    {
        SaveAction* action = new SaveAction;
        action->AddRef();
        action->SetCreatFlag(1);
        action->SetCallback(this);
        PostAction(*action);
        action->DestroyObject();
    }
    void OnCallback(taskAction* action) override
    {
        const bool hadFailed = std::exchange(m_bFailed, static_cast<SaveAction*>(action)->hasFailed());
        if (!m_bFailed) {
            m_bTold = false;
            return;
        }
        if (!hadFailed)
            nuxTrace(TRACE_NOTE, "the call history could not be saved");
        m_bTold = m_bTold || (m_tell && m_tell());
        m_again.start();
    }
    void setTell(std::function<bool()> tell, int againMs)
    {
        m_tell = std::move(tell);
        m_again.setInterval(againMs);
    }

private:
    HistoryKeeper()
    {
        m_again.setSingleShot(true);
        m_again.setInterval(CALL_HISTORY_AGAIN_MS);
        QObject::connect(&m_again, &QTimer::timeout, &m_again, [this] { save(); });
    }

    QTimer m_again;
    std::function<bool()> m_tell;
    bool m_bFailed = false;
    bool m_bTold = false;
};

} // namespace

void callHistoryAdd(const tagCall& call)
{
    History& history = theHistory();
    QMutexLocker lock(&history.mutex);
    history.waiting.append(call);
    lock.unlock();
    HistoryKeeper::instance().save();
}

void callHistoryOnFault(std::function<bool()> tell, int againMs)
{
    HistoryKeeper::instance().setTell(std::move(tell), againMs);
}

int callHistoryFinish()
{
    const qsizetype lost = saveWaiting();
    if (lost > 0)
        nuxTrace(TRACE_NOTE, "the call history could not be saved, calls lost: %d", int(lost));
    return lost == 0;
}

int callHistoryClear()
{
    History& history = theHistory();
    QMutexLocker file(&history.file);
    QMutexLocker lock(&history.mutex);
    history.waiting.clear();
    lock.unlock();
    xmlFile empty;
    empty.AddChildElement("CallHistory");
    return empty.SaveToFile(kFile);
}
