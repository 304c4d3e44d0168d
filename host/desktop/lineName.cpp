#include "host/desktop/lineName.h"
#include "host/services/phone/tagCall.h"
#include "support/host/language.h"

QString lineName(int line)
{
    if (line == PHONE_LINE_PSTN)
        return "PSTN";
    if (line < 0 || line >= PHONE_ACCOUNT_COUNT)
        return qTranslate("Auto");
    return qTranslate("Line") + QLatin1Char(' ') + QString::number(line + 1);
}
