#pragma once
// The page "Weather" as the tests see it.
#include "applets/dlgWeather.h"
#include "applets/weatherController.h"
#include "tests/applets_weather/weatherStand.h"
#include <QLabel>
#include <QPushButton>

// An answer that knows nothing.
inline constexpr const char* kUnknown = "<norvane/>";

class WeatherPage : public WeatherStand
{
protected:
    ~WeatherPage() override
    {
        if (page)
            page->hide();
    }
    void openPage()
    {
        open("Weather");
        ASSERT_TRUE(page && page->inherits("dlgWeather"));
        waitDone();
    }
    void search(const char* city)
    {
        enter("editSearch", city);
        kit::tap(child<QPushButton>("btnSearch"));
    }
    // What the columns show, each "date,status,range".
    QString columns() const
    {
        QStringList all;
        for (const char* day : {"1", "2", "3"}) {
            QStringList one;
            for (const char* name : {"labDate", "labStatus", "labTemperature"})
                one.append(label((QByteArray(name) + day).constData()));
            all.append(one.join(','));
        }
        return all.join('|');
    }
    QString pictures() const
    {
        return QString("%1 %2 %3")
            .arg(pictureSide("labIcon1"))
            .arg(pictureSide("labIcon2"))
            .arg(pictureSide("labIcon3"));
    }
    dlgWeather* weather() const { return static_cast<dlgWeather*>(page); }
    // A picture of the search that stands is there. Nobody tells the number of a search, and what has
    // another one is ignored.
    void endPicture(const char* file) const
    {
        WeatherAction action;
        action.SetUiObj(weather());
        action.strLocalFile = file;
        action.nResult = 1;
        for (; action.nSearch < 1000; ++action.nSearch)
            GetWeatherControl().OnCallback(&action);
    }
    static tagMoreDaysInfo forecast()
    {
        tagMoreDaysInfo info;
        info.bConnected = info.bSiteFound = true;
        info.strDate3 = "d3";
        info.strStatus3 = "s3";
        info.strTemperature3 = "t3";
        return info;
    }
};
