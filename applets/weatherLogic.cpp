#include "applets/weatherLogic.h"
#include "applets/feed.h"
#include "applets/weatherDelivery.h"
#include "applets/weatherFiles.h"
#include "applets/weatherRequestData.h"
#include "applets/weatherRespondData.h"
#include "frame/configFiles.h"
#include "support/host/createObject.h"
#include "support/host/net.h"
#include "support/host/trace.h"
#include <string>

namespace {

const char* const kSection = "Weather";
const char* const kSourceFile = "/phone/resource/WeatherSource.xml";
const char* const kSignageSource = "Ndeck";
const char* const kPlaceholder = "#city";
// Where "./run" keeps its demonstration server. The placeholder stays in it: without the table of sources it
// is asked for as it stands.
const char* const kDefaultUrl = "http://127.0.0.1:6090/ig/api?weather=#city";
enum { NETWORK_UP = 2 };

// Scheme, host and port.
chString siteOf(const chString& address)
{
    const std::string url = address.GetText();
    const size_t host = url.find("://");
    return host == std::string::npos ? address : chString(url.substr(0, url.find('/', host + 3)).c_str());
}

} // namespace

WeatherLogic::WeatherLogic()
{
    WeatherAction& action = CreateObject<WeatherAction>();
    refAction = chReferObject(&action);
    action.DestroyObject();
    action.SetCallback(this);
}

WeatherLogic::~WeatherLogic()
{
    GetWeatherUIAction(refAction).SetCallback(nullptr);
    SetCallback(nullptr);
}

WeatherAction& WeatherLogic::GetWeatherUIAction(chReferObject& handle)
{
    return GetObject<WeatherAction>(handle);
}

void WeatherLogic::SetCallback(ActionCallback* callback)
{
    if (callback)
        callback->AddRef();
    if (pCallback)
        pCallback->Release();
    pCallback = callback;
}

void WeatherLogic::OnCallback(taskAction* action)
{
    if (pCallback)
        pCallback->Callback(action);
}

void WeatherLogic::OnRegistryChanged(HREGISTRY) {}

chString WeatherLogic::CityNameToUrl(const chString& city)
{
    chTraceStack trace("WeatherLogic::CityNameToUrl");
    const FEED_KIND kind = feedKind(kSection);
    chString url;
    if (kind == FEED_KIND_SIGNAGE)
        url = CityNameToUrlByUsing(city);
    else if (kind == FEED_KIND_PUBLIC)
        url = CityNameToUrlByGoogle(city);
    if (url.IsEmpty())
        url = kDefaultUrl;
    nuxTrace(TRACE_NOTE, "OnRegisterDisplay(%s)", url.GetText()); // the label is that of older logs
    return url;
}

chString WeatherLogic::CityNameToUrlByGoogle(const chString& city)
{
    chString address;
    if (feedSourceAddress(kSourceFile, "WeatherSource", "source", FEED_PUBLIC_TITLE, address) !=
        FEED_SOURCE_FOUND)
        return chString();
    strSource = FEED_PUBLIC_TITLE;
    return feedFillIn(address, kPlaceholder, city);
}

chString WeatherLogic::CityNameToUrlByUsing(const chString& city)
{
    strSource = kSignageSource;
    return feedServiceAddress("weather", "city", city);
}

int WeatherLogic::WeatherRquest(chReferObject view, chReferObject request)
{
    WeatherRequestData& asked = GetObject<WeatherRequestData>(request);
    asked.strUrl = CityNameToUrl(asked.strCity);
    strCity = asked.strCity;
    nuxTrace(TRACE_NOTE, "Weather Url(%s)", asked.strUrl.GetText());
    WeatherAction& action = GetWeatherUIAction(refAction);
    action.SetUiObj(view.data());
    action.nSearch = ++m_nSearch;
    // Those of the search before would come under the names of this one's.
    WeatherAction::AbandonPictures();
    action.strRemoteUrl = strUrl = asked.strUrl;
    action.strLocalFile = strXmlFile = chString(WEATHER_ANSWER) + strCity + ".xml";
    if (netGetNetworkSta() == NETWORK_UP)
        feedPost(action, WEATHER_FOLDER, FEED_ANSWER_LIMIT);
    else
        weatherDeliver(view, tagMoreDaysInfo());
    return 1;
}

tagMoreDaysInfo WeatherLogic::WeatherRespond(chReferObject view, chReferObject respond)
{
    chTraceStack trace("WeatherRespond");
    WeatherRespondData& answer = GetObject<WeatherRespondData>(respond);
    answer.strXmlFile = strXmlFile;
    if (!XmlPhrase2DaysInfo(answer.strXmlFile, answer.info))
        nuxTrace(TRACE_NOTE, "Phrase Weather Info Error");
    DropView(view);
    return answer.info;
}

void WeatherLogic::DropView(const chReferObject& view)
{
    WeatherAction& action = GetWeatherUIAction(refAction);
    if (action.pUiObj == view.data())
        action.SetUiObj(nullptr);
}

chObject* WeatherLogic::AwaitingView(const chString& city) const
{
    return strCity == city ? GetObject<WeatherAction>(refAction).pUiObj : nullptr;
}

chObject* WeatherLogic::PicturesView(const chString& city) const
{
    return strCity == city ? WeatherAction::ViewOfPictures(m_nSearch) : nullptr;
}

bool WeatherLogic::XmlPhrase2DaysInfo(const chString& file, tagMoreDaysInfo& info)
{
    switch (feedKind(kSection)) {
    case FEED_KIND_SIGNAGE:
        return XmlPhrase2DaysInfoByNdeck(file, info);
    case FEED_KIND_PUBLIC:
        return XmlPhrase2DaysInfoByGoogle(file, info);
    default:
        return false;
    }
}

bool WeatherLogic::XmlPhrase2DaysInfoByGoogle(const chString& file, tagMoreDaysInfo& info)
{
    return read(file, WeatherReader::FORM_PUBLIC, info);
}

bool WeatherLogic::XmlPhrase2DaysInfoByNdeck(const chString& file, tagMoreDaysInfo& info)
{
    return read(file, WeatherReader::FORM_SIGNAGE, info);
}

bool WeatherLogic::read(const chString& file, WeatherReader::FORM form, tagMoreDaysInfo& info)
{
    WeatherReader reader(form);
    if (!reader.Read(file.GetText(), nuxGetRegistryInt(USER_INI, kSection, "nUnit", 0), info))
        return false;
    if (reader.Pictures().bToday)
        fetchPicture(WEATHER_PICTURE_TODAY, reader.Pictures().strToday);
    fetchPicture(WEATHER_PICTURE_TOMORROW, reader.Pictures().strTomorrow);
    // The third picture has always been the second one again.
    fetchPicture(WEATHER_PICTURE_AFTER, reader.Pictures().strTomorrow);
    return true;
}

void WeatherLogic::fetchPicture(const char* file, const chString& picture)
{
    WeatherAction& action = CreateObject<WeatherAction>();
    LoadPic(action, file, pictureUrl(picture));
    action.DestroyObject();
}

// The signage server names whole addresses, the public feed paths at its own site: what is none would become
// part of another site's name.
chString WeatherLogic::pictureUrl(const chString& picture) const
{
    if (strSource == kSignageSource)
        return picture;
    const bool isPath = picture.IsEmpty() || *picture.GetText() == '/';
    return siteOf(strUrl) + (isPath ? "" : "/") + picture;
}

void WeatherLogic::LoadPic(WeatherAction& action, chString local, chString remote)
{
    nuxTrace(TRACE_NOTE, "LoadPicPath(%s) RemotePath(%s)", local.GetText(), remote.GetText());
    action.SetCallback(this);
    action.strRemoteUrl = remote;
    action.strLocalFile = local;
    action.SetUiObj(GetWeatherUIAction(refAction).pUiObj);
    action.nSearch = m_nSearch;
    action.bIsPicture = true;
    // A site that keeps its pictures to itself keeps nobody else waiting.
    action.bGivesWay = 1;
    action.nTimeLimit = FEED_PICTURE_MS;
    feedPost(action, WEATHER_FOLDER, FEED_PICTURE_LIMIT);
}
