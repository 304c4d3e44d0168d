#include "host/services/system/phoneZone.h"
#include "support/host/registry.h"
#include "support/host/trace.h"
#include "support/host/zone.h"
#include "support/xml/xmlFile.h"
#include <QDateTime>
#include <QTimeZone>
#include <climits>
#include <ctime>
#include <mutex>
#include <string>

namespace {

const char* const kSystemIni = "/rundata/config/system.ini";
const char* const kTable = "/phone/resource/AutoDST.xml";

struct tagZone
{
    std::string time; // as it is stored
    std::string name;
    bool bStored = false;   // its hours can be read
    long nStandard = 0;     // the stored hours in seconds
    QTimeZone rules{};      // invalid: the hours hold all year
    long nAhead = 0;        // in the span below
    long nFrom = LONG_MAX;  // the span for which nAhead was asked for; empty at first
    long nUntil = LONG_MIN; // not in it
};

std::mutex g_lock;
tagZone g_zone;
bool g_isRead = false;

std::string ruleOf(const tagZone& zone)
{
    xmlFile table;
    if (!table.LoadFromFile(kTable, XML_TABLE_LIMIT)) {
        nuxTrace(TRACE_NOTE, "No zone has rules for summer time: %s", table.GetErrorText());
        return {};
    }
    ZONE_MATCH best = ZONE_SAME_HOURS;
    std::string rule;
    xmlElement* row = xmlFindElementFromRoot(&table, "DSTData", "DST");
    for (; row && best != ZONE_SAME; row = xmlGetNextElement(row)) {
        const chString time = row->GetAttributeValue("szTime").GetString();
        const chString name = row->GetAttributeValue("szZone").GetString();
        const ZONE_MATCH match = zoneMatch(zone.time.c_str(), zone.name.c_str(), time, name);
        if (match <= best)
            continue;
        best = match;
        rule = row->GetAttributeValue("szRule").GetString().GetText();
    }
    return rule;
}

// Readers of the keys cost nothing while they stay as they are.
void readStored()
{
    static const HREGISTRY section = registryOpen(kSystemIni, "LocalTime");
    const chString time = registryGetString(section, "strTimeName", "");
    const chString name = registryGetString(section, "strZoneName", "");
    if (g_isRead && g_zone.time == time.GetText() && g_zone.name == name.GetText())
        return;
    g_isRead = true;
    g_zone = tagZone();
    g_zone.time = time.GetText();
    g_zone.name = name.GetText();
    g_zone.nStandard = zoneSeconds(time, &g_zone.bStored);
    if (!g_zone.bStored)
        return;
    const std::string rule = ruleOf(g_zone);
    if (!rule.empty())
        g_zone.rules = QTimeZone(QByteArray::fromStdString(rule));
    if (!g_zone.rules.isValid())
        nuxTrace(TRACE_NOTE, "The zone \"%s%s\" has no rules for summer time", time.GetText(),
                 name.GetText());
}

// The rules are asked once for each of their spans.
void askRules(long utc)
{
    const QDateTime moment = QDateTime::fromSecsSinceEpoch(utc, Qt::UTC);
    const QTimeZone::OffsetData now = g_zone.rules.offsetData(moment);
    const QTimeZone::OffsetData next = g_zone.rules.nextTransition(moment);
    g_zone.nAhead = now.offsetFromUtc;
    g_zone.nFrom = utc;
    g_zone.nUntil = next.atUtc.isValid() ? long(next.atUtc.toSecsSinceEpoch()) : LONG_MAX;
}

long machineAhead(long utc)
{
    const time_t seconds = utc;
    tm parts = {};
    localtime_r(&seconds, &parts);
    return parts.tm_gmtoff;
}

long aheadAt(long utc)
{
    const std::lock_guard<std::mutex> guard(g_lock);
    readStored();
    if (!g_zone.bStored)
        return machineAhead(utc);
    if (!g_zone.rules.isValid())
        return g_zone.nStandard;
    if (utc < g_zone.nFrom || utc >= g_zone.nUntil)
        askRules(utc);
    return g_zone.nAhead;
}

} // namespace

long zoneLocalOf(long utc)
{
    return utc + aheadAt(utc);
}

long zoneUtcOf(long local)
{
    // The zone's hours of a moment that is near, then those of the moment that follows from them.
    const long near = local - aheadAt(local);
    return local - aheadAt(near);
}

long zoneSummerSeconds(long utc)
{
    const long ahead = aheadAt(utc);
    const std::lock_guard<std::mutex> guard(g_lock);
    return g_zone.rules.isValid() ? ahead - g_zone.nStandard : 0;
}
