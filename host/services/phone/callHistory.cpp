#include "host/services/phone/callHistory.h"
#include "host/services/system/phoneZone.h"
#include "support/host/clock.h"
#include "support/host/task.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/xml/xmlFile.h"
#include <QList>
#include <QMutex>

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
    int count = 0;
    for (auto call = ended.rbegin(); call != ended.rend() && count < CALL_HISTORY_MAX; ++call, ++count)
        writeCall(list->AddChildElement("Call"), *call);
    const xmlElement* oldList = xmlFindElementFromRoot(&old, "CallHistory");
    const xmlElement* oldCall = oldList ? oldList->FindChildElement("Call") : nullptr;
    for (; oldCall && count < CALL_HISTORY_MAX; oldCall = xmlGetNextElement(oldCall), ++count)
        list->AddChildCopy(oldCall);
    return fresh.SaveToFile(kFile);
}

class SaveAction : public taskAction
{
public:
    int exec() override
    {
        History& history = theHistory();
        QMutexLocker file(&history.file);
        QMutexLocker lock(&history.mutex);
        QList<tagCall> ended;
        ended.swap(history.waiting);
        lock.unlock();
        if (ended.isEmpty() || saveCalls(ended))
            return 1;
        nuxTrace(TRACE_NOTE, "the call history could not be saved");
        // They come with the next call.
        lock.relock();
        history.waiting =
            ended.mid(std::max<qsizetype>(0, ended.size() - CALL_HISTORY_MAX)) + history.waiting;
        return 1;
    }
};

} // namespace

void callHistoryAdd(const tagCall& call)
{
    History& history = theHistory();
    QMutexLocker lock(&history.mutex);
    history.waiting.append(call);
    lock.unlock();
    SaveAction* action = new SaveAction;
    action->AddRef();
    action->SetCreatFlag(1);
    PostAction(*action);
    action->DestroyObject();
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
