#pragma once
// The weather on the home screen, and the record in which it gets a forecast. User-interface thread.
#include "support/host/api.h"
#include "support/host/mvcView.h"
#include <QRect>
#include <QString>

class QWidget;

// A forecast for three days, in texts as they are shown.
struct tagMoreDaysInfo
{
    QString strTemperature1; // today: "4c~11c"
    QString strDate1;        // "November 21 Sat"
    QString strStatus1;      // the condition now: "Rain"
    QString strCurrentTemp;  // the temperature now: "8c" or "46F"
    QString strTemperature2; // tomorrow
    QString strDate2;
    QString strStatus2;
    QString strSpare2;
    QString strTemperature3; // the day after
    QString strDate3;
    QString strStatus3;
    QString strSpare3;
    bool bConnected = false; // the source answered
    bool bSiteFound = false; // it knows the city
};

// The card of the home screen: picture, temperature, city, range and condition. It is there while "bDesktop"
// of section "Weather" is 1 and a forecast came; it asks for a new one every half hour while it is in sight,
// and when it comes into sight with an old one. What it shows it keeps when the feed is gone.
class HX_HOST_API WeatherFrame : public MVCView
{
public:
    WeatherFrame();
    ~WeatherFrame() override;

    // An answer of the module; one without a forecast leaves what is shown.
    void Refresh(tagMoreDaysInfo info);
    // Reads the configuration, shows or hides the card, and asks for the weather of the configured city.
    void RefreshBySendRequest();
    // The home screen gives the card its place, once.
    void ShowOn(QWidget* home, const QRect& place);
    // Something else is where the card would be.
    void MakeRoom(bool isTaken);

private:
    struct Private;
    Private* m_p;
};
// The one frame, made at the first call; lives until the process ends.
HX_HOST_API WeatherFrame* GetWeatherFrame();
