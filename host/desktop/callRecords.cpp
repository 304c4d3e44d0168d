#include "host/desktop/callRecords.h"
#include "host/desktop/callTexts.h"
#include "host/desktop/clockText.h"
#include "host/services/system/phoneZone.h"
#include "support/host/api.h"
#include "support/host/clock.h"
#include "support/host/net.h"
#include "support/host/text.h"
#include "support/xml/xmlFile.h"
#include <QDateTime>

namespace {

const char* const kFile = "/rundata/data/callHistory.xml";
constexpr int kSecondsPerMinute = 60;
constexpr int kMinutesPerHour = 60;

QString valueOf(xmlElement* element, const char* attribute)
{
    return toQString(element->GetAttributeValue(attribute).GetString());
}

// A call is told in the zone of today; one without its moment as it was written.
long startOf(xmlElement* element)
{
    bool known = false;
    const qlonglong utc = valueOf(element, "utc").toLongLong(&known);
    if (known)
        return zoneLocalOf(long(utc));
    const QDateTime written = QDateTime::fromString(valueOf(element, "start"), "yyyy-MM-dd hh:mm:ss");
    return written.isValid() ? long(QDateTime(written.date(), written.time(), Qt::UTC).toSecsSinceEpoch())
                             : 0;
}

tagCallRecord recordOf(xmlElement* element)
{
    tagCallRecord call;
    call.strNumber = valueOf(element, "number");
    call.strName = valueOf(element, "name");
    call.nLine = valueOf(element, "line").toInt() - 1;
    call.bIncoming = valueOf(element, "direction") == "in";
    call.nStart = startOf(element);
    call.nSeconds = valueOf(element, "seconds").toInt();
    // Older lists do not say it: nobody talked then.
    const QString missed = valueOf(element, "missed");
    call.bMissed = missed.isEmpty() ? call.bIncoming && call.nSeconds == 0 : missed == "1";
    return call;
}

QString dayOf(long localSeconds)
{
    return toQString(chTime(localSeconds).Format("%Y-%m-%d"));
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
    return callWhoText(known, call.strNumber);
}

QString callRecordPicture(const tagCallRecord& call)
{
    if (!call.bIncoming)
        return HX_THEME("icon/call_out.png");
    return call.bMissed ? HX_THEME("icon/call_missed.png") : HX_THEME("icon/call_in.png");
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
    if (call.nStart == 0)
        return QString();
    const QString day = dayOf(call.nStart);
    const QString time = clockText(call.nStart);
    return day == dayOf(netGetLocalTime()) ? time : day + ' ' + time;
}
