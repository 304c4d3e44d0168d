#include "host/desktop/lineName.h"
#include "support/host/language.h"

QString lineName(int line)
{
    if (line < 0 || line >= PHONE_ACCOUNT_COUNT)
        return qTranslate("Auto");
    return qTranslate("Line") + QLatin1Char(' ') + QString::number(line + 1);
}
