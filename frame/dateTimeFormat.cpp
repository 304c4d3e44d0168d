#include "frame/dateTimeFormat.h"
#include "frame/configFiles.h"
#include "support/host/language.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "support/text/nuxError.h"
#include <cstring>

namespace {

const char* const kMonths[12] = {HX_TR("Jan"), HX_TR("Feb"), HX_TR("Mar"), HX_TR("Apr"),
                                 HX_TR("May"), HX_TR("Jun"), HX_TR("Jul"), HX_TR("Aug"),
                                 HX_TR("Sep"), HX_TR("Oct"), HX_TR("Nov"), HX_TR("Dec")};
// Read with tm_wday as it stands, so Sunday reads "Mon".
const char* const kWeekDays[7] = {HX_TR("Mon"), HX_TR("Tue"), HX_TR("Wed"), HX_TR("Thu"),
                                  HX_TR("Fri"), HX_TR("Sat"), HX_TR("Sun")};
const char kSeparators[] = " -/";
const char kDefaultFormat[] = "DD/MM/YYYY";

const char* nameOf(const char* const* names, int count, int index)
{
    return index >= 0 && index < count ? Translate(names[index]) : "";
}

chString userDateFormat()
{
    chString format = NUX_SubClass::nuxGetRegistryString(USER_INI, "DateTime", "eDateFormat", "");
    if (!strpbrk(format.GetText(), "WDMY"))
        return kDefaultFormat;
    return format;
}

} // namespace

int CalculateSeparator(const char* text)
{
    return *text && strchr(kSeparators, *text) ? 1 : 0;
}

chString ParseWordFormat(const char* word, const tm* t)
{
    if (strcmp(word, "WWW") == 0)
        return nameOf(kWeekDays, 7, t->tm_wday);
    if (strcmp(word, "DD") == 0)
        return fmtString("%02d", t->tm_mday);
    if (strcmp(word, "MM") == 0)
        return fmtString("%02d", t->tm_mon + 1);
    if (strcmp(word, "MMM") == 0)
        return nameOf(kMonths, 12, t->tm_mon);
    if (strcmp(word, "YY") == 0)
        return fmtString("%02d", t->tm_year % 100);
    if (strcmp(word, "YYYY") == 0)
        return fmtString("%04d", t->tm_year);
    return word;
}

chString ParseDateFormat(const char* format, const tm* t)
{
    const size_t size = strlen(format);
    NUX_ASSERT(size < PARSE_STR_MAX, "size < PARSE_STR_MAX");
    chString result;
    const char* word = format;
    for (const char* cursor = format;; ++cursor) {
        const int separator = CalculateSeparator(cursor);
        if (*cursor && !separator)
            continue;
        if (cursor > word)
            result += ParseWordFormat(chString(word, int(cursor - word)).GetText(), t);
        if (!*cursor)
            return result;
        result += chString(cursor, separator);
        word = cursor + separator;
    }
}

chString ParseTimeFormat(int mode, const tm* t)
{
    if (mode == 0)
        return fmtString("%02d:%02d", t->tm_hour, t->tm_min);
    if (mode != 1)
        return chString();
    const bool isAm = t->tm_hour < 13;
    const chString time = fmtString("%02d:%02d", isAm ? t->tm_hour : t->tm_hour - 12, t->tm_min);
    return fromQString(qTranslate(isAm ? HX_TR("%1 AM") : HX_TR("%1 PM")).arg(toQString(time)));
}

chString GetDateTime()
{
    const time_t now = netGetLocalTime();
    tm t = {};
    gmtime_r(&now, &t); // the host's value is local already
    t.tm_year += 1900;
    chString result = ParseDateFormat(userDateFormat().GetText(), &t);
    result += " ";
    result += ParseTimeFormat(nuxGetRegistryInt(USER_INI, "DateTime", "eTimeFormat", 0), &t);
    return result;
}
