#pragma once
// Where the weather comes from: it builds the address, posts the transfers and has the answers read.
// User-interface thread. Failures of a transfer are told by its action.
#include "applets/dataToDesktopHTML.h"
#include "applets/dataToSettingHTML.h"
#include "applets/mvcBusinessLogic.h"
#include "applets/weatherAction.h"
#include "applets/weatherReader.h"
#include "support/host/registry.h"
#include "support/host/weather.h"

class WeatherLogic : public MVCBusinessLogic, public ActionCallback, public qRegistryNotify
{
public:
    WeatherLogic();
    ~WeatherLogic() override;

    // request: a WeatherRequestData with its city. Its answer is told to the callback; without a network the
    // view is told at once. Always 1.
    int WeatherRquest(chReferObject view, chReferObject request);
    // Reads the answer of the last request into respond, a WeatherRespondData, and begins to fetch its
    // pictures.
    tagMoreDaysInfo WeatherRespond(chReferObject view, chReferObject respond);
    // The view's answer is there, or will not come.
    void DropView(const chReferObject& view);
    // Counts the searches: what came of one before this is of no interest any more.
    unsigned Search() const { return m_nSearch; }
    // The view that waits for an answer about the city; null when none does.
    chObject* AwaitingView(const chString& city) const;
    // The view that waits for the pictures of the city's answer; null when none does.
    chObject* PicturesView(const chString& city) const;

    chString CityNameToUrl(const chString& city);
    chString CityNameToUrlByGoogle(const chString& city);
    chString CityNameToUrlByUsing(const chString& city);
    bool XmlPhrase2DaysInfo(const chString& file, tagMoreDaysInfo& info);
    bool XmlPhrase2DaysInfoByGoogle(const chString& file, tagMoreDaysInfo& info);
    bool XmlPhrase2DaysInfoByNdeck(const chString& file, tagMoreDaysInfo& info);
    void LoadPic(WeatherAction& action, chString local, chString remote);
    WeatherAction& GetWeatherUIAction(chReferObject& handle);

    // Counted; null for none.
    void SetCallback(ActionCallback* callback);
    void OnCallback(taskAction* action) override;
    // Nothing: the page watches the section itself.
    void OnRegistryChanged(HREGISTRY section) override;

private:
    bool read(const chString& file, WeatherReader::FORM form, tagMoreDaysInfo& info);
    void fetchPicture(const char* file, const chString& picture);
    chString pictureUrl(const chString& picture) const;

    DataToDesktopHTML m_desktopHtml;
    DataToSettingHTML m_settingHtml;
    chReferObject refAction; // the one WeatherAction of all answers
    unsigned m_nSearch = 0;
    ActionCallback* pCallback = nullptr;
    chString strXmlFile;
    qRegistryNotify m_notify;
    chString strSource; // "Google" or "Ndeck"
    chString strUrl;    // the last one
    chString strCity;   // the last one
};
