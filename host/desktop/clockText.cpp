#include "host/desktop/clockText.h"
#include "support/host/clock.h"
#include "support/host/language.h"
#include "support/host/registry.h"
#include "support/host/text.h"

bool clockHasTwelveHours()
{
    return nuxGetRegistryInt("/rundata/config/user/user.ini", "DateTime", "eTimeFormat", 0) == 1;
}

QString clockTwelveHours(const chTime& now)
{
    const int hour = now.GetHour() % 12 ? now.GetHour() % 12 : 12;
    return QString("%1:%2").arg(hour).arg(now.GetMinute(), 2, 10, QChar('0'));
}

QString clockHalfOfDay(const chTime& now)
{
    return qTranslate(now.GetHour() < 12 ? HX_TR("%1 AM") : HX_TR("%1 PM"));
}

QString clockText(long localSeconds)
{
    const chTime now(localSeconds);
    if (!clockHasTwelveHours())
        return toQString(now.Format("%H:%M"));
    return clockHalfOfDay(now).arg(clockTwelveHours(now));
}
