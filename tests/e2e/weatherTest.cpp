// The weather on a running phone, from the demonstration server by both of its ways.
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include "tests/kit/plain/signServer.h"

namespace {

#define USER_FILE "/rundata/config/user/user.ini"

class WeatherStory : public LivePhone
{
protected:
    void SetUp() override
    {
        m_server.copyFeeds();
        ASSERT_TRUE(m_server.start());
        startWith("/phone/resource/WeatherSource.xml", "<WeatherSource><source title=\"Google\" address=\"" +
                                                           m_server.url().toUtf8() +
                                                           "/ig/api?weather=#city\"/></WeatherSource>");
    }
    QString text(const char* name) { return widget(name)["text"].toString(); }
    // Nothing more is looked at when it does not come.
    void expectForecast(const char* city)
    {
        const auto isThere = [&] {
            return m_server.requestsFor(QString("=%1 ").arg(city)) > 0 && isPage() &&
                   !text("labTemperature3").isEmpty();
        };
        ASSERT_TRUE(kit::waits(isThere, 20000)) << city;
    }
    bool isPage() { return topWindow()["class"] == "dlgWeather"; }
    void typeCity(const char* city)
    {
        for (int left = text("editSearch").size(); left > 0; --left)
            key("Backspace");
        ctl({"type", city});
    }

    SignServer m_server;
};

} // namespace

TEST_F(WeatherStory, ACityIsSearchedPutOnTheHomeScreenAndAskedForThere)
{
    ctl({"open", "Weather"});
    waitPage("dlgWeather");
    ASSERT_NO_FATAL_FAILURE(expectForecast("London"));
    tap("editSearch");
    typeCity("Paris");
    tap("btnSearch");
    ASSERT_NO_FATAL_FAILURE(expectForecast("Paris"));
    EXPECT_TRUE(text("labTemperature1").contains("c~"));
    shot("weather_paris");
    softKey(0);
    ASSERT_TRUE(kit::waits([this] { return !isPage(); }, 20000));
    key("Return");
    waitPage("dlgWeather");
    EXPECT_EQ(config(USER_FILE, "Weather", "strDefaultCity"), "Paris");
    softKey(3);
    waitPage("frmDesktop");
    EXPECT_TRUE(kit::waits(
        [this] { return text("weatherCard").contains(QString::fromUtf8("c Paris \u00b7 ")); }, 20000));
    shot("weather_home");
    tap("weatherCard");
    waitPage("dlgWeather");
    // The same by keys alone.
    typeCity("Berlin");
    key("Return");
    ASSERT_NO_FATAL_FAILURE(expectForecast("Berlin"));
    key("F4");
    waitPage("frmDesktop");
    EXPECT_TRUE(text("weatherCard").contains("Paris"));
}

TEST_F(WeatherStory, WithSignageItComesFromItsServer)
{
    joinSignage(m_server.url());
    ASSERT_TRUE(kit::waits([this] { return m_server.requestsFor("/service/register.htm") > 0; }, 20000));
    ctl({"open", "Weather"});
    waitPage("dlgWeather");
    ASSERT_NO_FATAL_FAILURE(expectForecast("London"));
    EXPECT_GT(m_server.requestsFor("/service/weather.htm"), 0);
    EXPECT_EQ(m_server.requestsFor("/ig/api"), 0);
    typeCity("Atlantis");
    tap("btnSearch");
    EXPECT_TRUE(kit::waits([this] { return !isPage(); }, 20000));
    shot("weather_unknown");
}
