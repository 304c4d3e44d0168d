#pragma once
// Stands between the views of the weather (the page, the card of the home screen) and its logic: takes what
// they ask, and tells them what came. Every forecast reaches its view twice: with its texts, and when its
// pictures are there. User-interface thread.
#include "applets/mvcController.h"
#include "applets/weatherLogic.h"
#include "support/host/task.h"

class WeatherController : public MVCController, public ActionCallback
{
public:
    WeatherController();

    // Asks for the weather of strCity, whatever city says, which views store before.
    void SendRquest2Logic(chReferObject view, chString city);
    chString SendCityNametoLogic() const { return strCity; }
    // The same for a view of the host's. An answer that is on its way to the page reaches this one too:
    // asking again would take it from the page.
    void RequestForHost(chReferObject view, const chString& city);
    void sendCityInfoToGUI(chReferObject view, tagMoreDaysInfo info);
    void GetCityInfo(chReferObject view, chReferObject respond);
    void OnCallback(taskAction* action) override;

private:
    void onAnswer(const chReferObject& view, bool isGood);
    void onPicture(const chString& file);
    WeatherLogic m_logic;
    chString strXmlFile; // the answer that is awaited

public:
    chString strCity;

private:
    bool bTodayPic = false;
    bool bTomoPic = false;
    bool bDayAfterPic = false;
    bool bXmlDone = false;
    tagMoreDaysInfo info; // that is being delivered
};

// The only one, made with the first call.
WeatherController& GetWeatherControl();
