#pragma once
// What the two kinds of answers say about the weather. User-interface thread.
#include "support/host/weather.h"
#include "support/text/chString.h"

class xmlElement;

// The pictures that an answer names, as it names them.
struct tagWeatherPictures
{
    bool bToday = false; // it names one for today
    chString strToday;
    chString strTomorrow;
};

class WeatherReader
{
public:
    enum FORM {
        FORM_PUBLIC, // values are attributes "data"
        FORM_SIGNAGE // values are the text of their elements
    };
    enum : int { TEXT_LIMIT = 128 }; // letters of a text that is shown
    explicit WeatherReader(FORM form) : m_eForm(form) {}

    // unit: "nUnit" of the configuration. True when info is a forecast; else it has no texts, and its flags
    // say why. An answer that has not all four parts of a forecast is one without.
    bool Read(const char* file, int unit, tagMoreDaysInfo& info);
    // Of the forecast that was read last.
    const tagWeatherPictures& Pictures() const { return m_pictures; }

private:
    xmlElement* findForecast(xmlElement* root, tagMoreDaysInfo& info) const;
    xmlElement* findPublicForecast(xmlElement* root, tagMoreDaysInfo& info) const;
    xmlElement* findSignageForecast(xmlElement* root, tagMoreDaysInfo& info) const;
    bool isRefused(const xmlElement* ndeck, tagMoreDaysInfo& info) const;
    bool fill(xmlElement* head, int unit, tagMoreDaysInfo& info);
    void fillDates(const QString& date, tagMoreDaysInfo& info) const;
    QString range(xmlElement* day, const QString& system, int unit) const;
    bool find(xmlElement* parent, const char* name, chString& value) const;
    QString text(xmlElement* parent, const char* name) const;

    FORM m_eForm;
    tagWeatherPictures m_pictures;
};
