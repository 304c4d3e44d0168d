#include "host/desktop/callRecords.h"
#include "support/host/api.h"
#include "support/host/clock.h"
#include "support/host/net.h"
#include "support/host/text.h"
#include "support/xml/xmlFile.h"

namespace {

const char* const kFile = "/rundata/data/callHistory.xml";
constexpr int kSecondsPerMinute = 60;
constexpr int kMinutesPerHour = 60;
constexpr int kDayLength = 10;    // "YYYY-MM-DD"
constexpr int kMinuteLength = 16; // "YYYY-MM-DD hh:mm"

QString valueOf(xmlElement* element, const char* attribute)
{
    return toQString(element->GetAttributeValue(attribute).GetString());
}

tagCallRecord recordOf(xmlElement* element)
{
    tagCallRecord call;
    call.strNumber = valueOf(element, "number");
    call.strName = valueOf(element, "name");
    call.nLine = valueOf(element, "line").toInt() - 1;
    call.bIncoming = valueOf(element, "direction") == "in";
    call.strStart = valueOf(element, "start");
    call.nSeconds = valueOf(element, "seconds").toInt();
    return call;
}

} // namespace

QList<tagCallRecord> callRecordsRead()
{
    const xmlFile file(kFile);
    QList<tagCallRecord> calls;
    const xmlElement* list = xmlFindElementFromRoot(&file, "CallHistory");
    xmlElement* call = list ? list->FindChildElement("Call") : nullptr;
    for (; call; call = xmlGetNextElement(call))
        calls.append(recordOf(call));
    return calls;
}

QString callRecordName(const tagCallRecord& call, const QList<tagContact>& contacts)
{
    const QString known =
        call.strName.isEmpty() ? contactOfNumber(contacts, call.strNumber).strName : call.strName;
    return known.isEmpty() ? call.strNumber : known;
}

QString callRecordPicture(const tagCallRecord& call)
{
    if (!call.bIncoming)
        return HX_THEME("icon/call_out.png");
    return call.nSeconds > 0 ? HX_THEME("icon/call_in.png") : HX_THEME("icon/call_missed.png");
}

QString durationText(int seconds)
{
    const QChar zero('0');
    const int minutes = seconds / kSecondsPerMinute;
    const QString rest = QString("%1").arg(seconds % kSecondsPerMinute, 2, 10, zero);
    if (minutes < kMinutesPerHour)
        return QString("%1:%2").arg(minutes).arg(rest);
    return QString("%1:%2:%3")
        .arg(minutes / kMinutesPerHour)
        .arg(minutes % kMinutesPerHour, 2, 10, zero)
        .arg(rest);
}

QString callRecordTime(const tagCallRecord& call)
{
    const QString today = toQString(chTime(netGetLocalTime()).Format("%Y-%m-%d"));
    const QString minute = call.strStart.left(kMinuteLength);
    return minute.left(kDayLength) == today ? minute.mid(kDayLength + 1) : minute;
}
