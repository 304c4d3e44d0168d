#pragma once
// A time zone as the phone stores it: the text of its hours and the zone's name. Any thread.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <strings.h>

// How well a zone of the table fits a stored one, better ones are greater. Tables and names change with the
// phone's software, what is stored does not.
enum ZONE_MATCH {
    ZONE_OTHER = 0,
    ZONE_SAME_HOURS = 1, // under another name
    ZONE_SAME_PLACE = 2, // the same hours, and the table's name ends with the stored one
    ZONE_SAME = 3
};

// Seconds that "+05:30 ", "-3", "8 Peking" or, as phones stored it once, "GMT+05:30 " is ahead. Without a
// number at its beginning: 0, and isNumber is false.
inline long zoneSeconds(const char* text, bool* isNumber = nullptr)
{
    constexpr std::string_view kOldPrefix = "GMT";
    constexpr int kHourLimit = 100000; // so that no sum leaves the range
    if (strlen(text) >= kOldPrefix.size() && strncasecmp(text, kOldPrefix.data(), kOldPrefix.size()) == 0)
        text += kOldPrefix.size();
    int hours = 0, minutes = 0;
    // Without a colon right behind the hours there are no minutes.
    const int fields = sscanf(text, "%9d:%2d", &hours, &minutes);
    if (isNumber)
        *isNumber = fields > 0;
    const bool isBehind = text[strspn(text, " \t")] == '-';
    const long shift = std::clamp(minutes, 0, 59) * 60L;
    return std::clamp(hours, -kHourLimit, kHourLimit) * 3600L + (isBehind ? -shift : shift);
}

// The last of "Country, Place" is what older tables named a zone by.
inline bool zoneIsPlace(const char* name, const char* place)
{
    const size_t length = strlen(name), tail = strlen(place);
    if (tail == 0 || tail > length || strcasecmp(name + length - tail, place) != 0)
        return false;
    return tail == length || (length > tail + 1 && memcmp(name + length - tail - 2, ", ", 2) == 0);
}

inline ZONE_MATCH zoneMatch(const char* storedTime, const char* storedName, const char* time,
                            const char* name)
{
    if (strcmp(storedTime, time) == 0 && strcmp(storedName, name) == 0)
        return ZONE_SAME;
    bool isNumber = false;
    if (zoneSeconds(storedTime, &isNumber) != zoneSeconds(time) || !isNumber)
        return ZONE_OTHER;
    return zoneIsPlace(name, storedName) ? ZONE_SAME_PLACE : ZONE_SAME_HOURS;
}
