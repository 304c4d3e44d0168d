#pragma once
// Value classes for local time and spans, in seconds. Any thread.
#include "support/host/api.h"
#include "support/text/chString.h"
#include <ctime>

class chTimeSpan
{
public:
    explicit chTimeSpan(long seconds = 0) : m_nSeconds(seconds) {}
    chTimeSpan(long days, int hours, int minutes, int seconds)
        : m_nSeconds(((days * 24 + hours) * 60 + minutes) * 60 + seconds)
    {
    }
    long GetTotalSeconds() const { return m_nSeconds; }
    long GetTotalMinutes() const { return m_nSeconds / 60; }
    long GetTotalHours() const { return m_nSeconds / 3600; }
    long GetDays() const { return m_nSeconds / 86400; }

private:
    long m_nSeconds;
};

// A moment of local time. The value is already local, so no zone is applied.
class chTime
{
public:
    chTime() = default;
    explicit chTime(long seconds) : m_nSeconds(seconds) {}
    chTime(int year, int month, int day, int hour, int minute, int second)
    {
        tm parts = {};
        parts.tm_year = year - 1900;
        parts.tm_mon = month - 1;
        parts.tm_mday = day;
        parts.tm_hour = hour;
        parts.tm_min = minute;
        parts.tm_sec = second;
        m_nSeconds = timegm(&parts);
    }
    long GetTime() const { return m_nSeconds; }
    int GetYear() const { return Parts().tm_year + 1900; }
    int GetMonth() const { return Parts().tm_mon + 1; }
    int GetDay() const { return Parts().tm_mday; }
    int GetHour() const { return Parts().tm_hour; }
    int GetMinute() const { return Parts().tm_min; }
    int GetSecond() const { return Parts().tm_sec; }
    int GetDayOfWeek() const { return Parts().tm_wday; } // 0: Sunday
    // strftime format; at most 255 bytes.
    chString Format(const char* format) const
    {
        char text[256] = {};
        tm parts = Parts();
        strftime(text, sizeof text, format, &parts);
        return chString(text);
    }
    bool operator==(const chTime& other) const { return m_nSeconds == other.m_nSeconds; }
    bool operator!=(const chTime& other) const { return m_nSeconds != other.m_nSeconds; }
    bool operator<(const chTime& other) const { return m_nSeconds < other.m_nSeconds; }
    bool operator>(const chTime& other) const { return m_nSeconds > other.m_nSeconds; }
    bool operator<=(const chTime& other) const { return m_nSeconds <= other.m_nSeconds; }
    bool operator>=(const chTime& other) const { return m_nSeconds >= other.m_nSeconds; }
    chTimeSpan operator-(const chTime& other) const { return chTimeSpan(m_nSeconds - other.m_nSeconds); }
    chTime operator+(const chTimeSpan& span) const { return chTime(m_nSeconds + span.GetTotalSeconds()); }
    chTime operator-(const chTimeSpan& span) const { return chTime(m_nSeconds - span.GetTotalSeconds()); }

private:
    tm Parts() const
    {
        tm parts = {};
        time_t seconds = m_nSeconds;
        gmtime_r(&seconds, &parts);
        return parts;
    }
    long m_nSeconds = 0;
};
