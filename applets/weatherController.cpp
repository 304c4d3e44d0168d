#include "applets/weatherController.h"
#include "applets/weatherDelivery.h"
#include "applets/weatherFiles.h"
#include "applets/weatherRequestData.h"
#include "applets/weatherRespondData.h"
#include "support/host/createObject.h"
#include "support/host/trace.h"

namespace {

const char* const kPageView = "strWeatherUI";
const char* const kDesktopView = "frmDektop"; // spelled so by all who carry it
const char* const kAllViews = "allUI";

MVCView* viewOf(const chReferObject& view)
{
    return static_cast<MVCView*>(view.data());
}

// What comes for the page comes for all from now on. False when it is not for the page.
bool widenToAll(const chReferObject& view)
{
    if (!view.data())
        return false;
    chString& name = viewOf(view)->strViewName;
    if (name == kPageView)
        name = kAllViews;
    return name == kAllViews;
}

} // namespace

WeatherController& GetWeatherControl()
{
    static WeatherController controller;
    return controller;
}

void weatherDeliver(const chReferObject& view, const tagMoreDaysInfo& info)
{
    GetWeatherControl().sendCityInfoToGUI(view, info);
}

WeatherController::WeatherController()
{
    m_logic.SetCallback(this);
}

void WeatherController::SendRquest2Logic(chReferObject view, chString)
{
    WeatherRequestData& request = CreateObject<WeatherRequestData>();
    request.strCity = strCity;
    m_logic.WeatherRquest(view, chReferObject(&request));
    strXmlFile = chString(WEATHER_ANSWER) + strCity + ".xml";
    request.DestroyObject();
}

void WeatherController::RequestForHost(chReferObject view, const chString& city)
{
    const chReferObject answered(m_logic.AwaitingView(city));
    if (widenToAll(answered))
        return;
    // With its texts there and its pictures on their way, the page comes along.
    const chReferObject pictured(m_logic.PicturesView(city));
    strCity = city;
    SendRquest2Logic(widenToAll(pictured) ? pictured : view, city);
}

void WeatherController::sendCityInfoToGUI(chReferObject view, tagMoreDaysInfo forecast)
{
    if (!view.data())
        return;
    chString& name = viewOf(view)->strViewName;
    if (name == kPageView) {
        weatherShowOnPage(view.data(), forecast);
    } else if (name == kDesktopView) {
        static_cast<WeatherFrame*>(viewOf(view))->Refresh(forecast);
    } else if (name == kAllViews) {
        name = kPageView;
        weatherShowOnPage(nullptr, forecast);
        GetWeatherFrame()->Refresh(forecast);
    }
}

void WeatherController::GetCityInfo(chReferObject view, chReferObject respond)
{
    info = m_logic.WeatherRespond(view, respond);
    sendCityInfoToGUI(view, info);
}

void WeatherController::OnCallback(taskAction* task)
{
    nuxTrace(TRACE_NOTE, "WeatherController::OnCallback");
    WeatherAction* action = dynamic_cast<WeatherAction*>(task);
    if (!action)
        return;
    const chReferObject view(action->pUiObj);
    // A picture of a search before this one says nothing of what is awaited now.
    if (action->nSearch != m_logic.Search())
        return;
    const bool isGood = action->nResult != 0;
    if (!isGood)
        info.bConnected = false;
    if (action->strLocalFile == strXmlFile)
        onAnswer(view, isGood);
    else
        onPicture(action->strLocalFile);
    if (!bXmlDone || !bTodayPic || !bTomoPic || !bDayAfterPic)
        return;
    // The second delivery, with the pictures; one that failed says so over a page that has its texts.
    sendCityInfoToGUI(view, info);
    info = tagMoreDaysInfo();
    bXmlDone = false;
}

// The file may be that of an earlier search: after a failed transfer it says nothing.
void WeatherController::onAnswer(const chReferObject& view, bool isGood)
{
    bXmlDone = true;
    bTodayPic = bTomoPic = bDayAfterPic = false;
    WeatherRespondData& respond = CreateObject<WeatherRespondData>();
    if (isGood) {
        GetCityInfo(view, chReferObject(&respond));
    } else {
        m_logic.DropView(view);
        info = tagMoreDaysInfo();
        sendCityInfoToGUI(view, info);
    }
    info.bConnected = true;
    respond.DestroyObject();
}

void WeatherController::onPicture(const chString& file)
{
    if (file == WEATHER_PICTURE_TODAY)
        bTodayPic = true;
    else if (file == WEATHER_PICTURE_TOMORROW)
        bTomoPic = true;
    else if (file == WEATHER_PICTURE_AFTER)
        bDayAfterPic = true;
}
