// Which server is asked for the weather, and how; and what its answers lead to.
#include "applets/weatherController.h"
#include "frame/configFiles.h"
#include "host/services/system/netWorld.h"
#include "support/host/module.h"
#include "tests/applets_weather/weatherStand.h"
#include <algorithm>
#include <string>

namespace {

// A view that nobody draws.
class WeatherSource : public WeatherStand
{
protected:
    WeatherSource() : view("nobody") {}
    void useSignage()
    {
        const std::string system = std::string("[nDeck]\nbEnable=1\nstrServerURL=") +
                                   server.url("").constData() + "/\nstrServerKey=a b\n";
        writeFile(SYSTEM_INI, system.c_str());
    }
    void ask(const char* city)
    {
        GetWeatherControl().strCity = city;
        GetWeatherControl().SendRquest2Logic(chReferObject(&view), "ignored");
    }
    // The path of what the logic asks for.
    QByteArray pathFor(const char* city)
    {
        return QByteArray(logic.CityNameToUrl(city).GetText()).mid(server.url("").size()).replace(" ", "%20");
    }
    QStringList tracesWith(const char* text) const { return traces().filter(text); }

    MVCView view;
    WeatherLogic logic;
};

} // namespace

TEST_F(WeatherSource, ThePublicFeedIsAskedForTheCityAsItStands)
{
    EXPECT_STREQ(logic.CityNameToUrl("S\xc3\xa3o Paulo/x&#").GetText(),
                 server.url("/w?city=S\xc3\xa3o Paulo/x&#").constData());
    EXPECT_EQ(tracesWith("WeatherLogic::CityNameToUrl").size(), 2) << "entered and left";
    EXPECT_EQ(tracesWith("OnRegisterDisplay(http://127.0.0.1").size(), 1) << "the label is an old one";
}

TEST_F(WeatherSource, OnlyAnElementOfThatNameIsASource)
{
    replaceFirmwareFile("/phone/resource/WeatherSource.xml",
                        "<WeatherSource><old title=\"Google\" address=\"http://old/#city\"/>"
                        "<source title=\"Google\" address=\"http://new/#city\"/></WeatherSource>");
    EXPECT_STREQ(logic.CityNameToUrl("Rome").GetText(), "http://new/Rome");
}

TEST_F(WeatherSource, WithoutAKnownSourceThePlaceholderIsAskedFor)
{
    // Where "./run" has its feeds.
    const QString fallback = "http://127.0.0.1:6090/ig/api?weather=#city";
    for (const char* source : {"google", "Other", ""}) {
        config("strSource", source);
        const QString url = logic.CityNameToUrl("London").GetText();
        EXPECT_EQ(url, fallback) << source;
    }
    config("strSource", "Google");
    replaceFirmwareFile("/phone/resource/WeatherSource.xml", "<WeatherSource/>");
    EXPECT_EQ(QString(logic.CityNameToUrl("London").GetText()), fallback);
    EXPECT_STREQ(logic.CityNameToUrlByGoogle("London").GetText(), "");
}

TEST_F(WeatherSource, SignageComesFirstAndTakesAddressesOfPicturesAsTheyStand)
{
    useSignage();
    config("strSource", "Other");
    const QString url = logic.CityNameToUrl("New York/x").GetText();
    EXPECT_TRUE(url.startsWith(server.url("/service/weather.htm?&serverKey=a b&hardwareKey=")))
        << qPrintable(url);
    EXPECT_LT(url.indexOf("&hardwareKey="), url.indexOf("&version="));
    EXPECT_LT(url.indexOf("&version="), url.indexOf("&language=en"));
    EXPECT_TRUE(url.endsWith("&language=en&city=New York/x")) << qPrintable(url);
    QByteArray answer = signageAnswer();
    answers[pathFor("Rome")] = answer.replace("http://127.0.0.1:9/t.gif", server.url("/t.gif"));
    ask("Rome");
    waitDone();
    EXPECT_TRUE(server.paths.contains("/t.gif"));
    EXPECT_EQ(tracesWith("RemotePath(http://127.0.0.1:9/m.gif)").size(), 2);
}

TEST_F(WeatherSource, AnotherSourceReadsNoAnswer)
{
    writeFile("/tmp/answer.xml", publicAnswer());
    tagMoreDaysInfo info;
    EXPECT_TRUE(logic.XmlPhrase2DaysInfo("/tmp/answer.xml", info));
    config("strSource", "Other");
    for (const QByteArray& answer : {publicAnswer(), signageAnswer()}) {
        writeFile("/tmp/answer.xml", answer);
        info = tagMoreDaysInfo();
        EXPECT_FALSE(logic.XmlPhrase2DaysInfo("/tmp/answer.xml", info));
        EXPECT_FALSE(info.bConnected);
    }
}

TEST_F(WeatherSource, ARequestGoesOutWithTheCityOfTheController)
{
    ask("Paris");
    waitDone();
    ASSERT_GT(server.paths.size(), 0);
    EXPECT_EQ(server.paths[0], "/w?city=Paris");
    EXPECT_STREQ(GetWeatherControl().SendCityNametoLogic().GetText(), "Paris");
    EXPECT_EQ(readFile("/tmp/Weather-Paris.xml"), publicAnswer());
    EXPECT_EQ(tracesWith("Weather Url(" + server.url("/w?city=Paris") + ")").size(), 1);
    EXPECT_GE(tracesWith("WeatherController::OnCallback").size(), 4);
    EXPECT_EQ(tracesWith("WeatherRespond").size(), 2);
}

TEST_F(WeatherSource, TheThirdPictureRepeatsTheSecond)
{
    ask("Paris");
    waitDone();
    QList<QByteArray> pictures = server.paths.mid(1);
    std::sort(pictures.begin(), pictures.end());
    EXPECT_EQ(pictures, (QList<QByteArray>{"/m.gif", "/m.gif", "/t.gif"}));
    EXPECT_EQ(readFile("/tmp/Today.gif"), gif('t'));
    EXPECT_EQ(readFile("/tmp/Tomo.gif"), gif('m'));
    EXPECT_EQ(readFile("/tmp/DayAfterTomo.gif"), gif('m'));
    EXPECT_EQ(
        tracesWith("LoadPicPath(/tmp/DayAfterTomo.gif) RemotePath(" + server.url("/m.gif") + ")").size(), 1);
}

TEST_F(WeatherSource, NothingIsPostedWithoutANetwork)
{
    for (int state : {0, 1, 3}) {
        netWorld().state = state;
        ask("Paris");
        waitDone();
        EXPECT_EQ(server.paths.size(), 0) << state;
    }
    EXPECT_EQ(tracesWith("Phrase Weather Info Error").size(), 0);
}

TEST_F(WeatherSource, AnAnswerThatSaysNothingIsTraced)
{
    answers["/w?city=Nowhere"] = "<xml_api_reply/>";
    ask("Nowhere");
    waitDone();
    EXPECT_EQ(tracesWith("Phrase Weather Info Error").size(), 1);
}

TEST_F(WeatherSource, TheHtmlOfAForecastIsEmpty)
{
    tagMoreDaysInfo info;
    info.strStatus1 = "Rain";
    EXPECT_STREQ(DataToDesktopHTML().DatatoHTML(info).GetText(), "");
    EXPECT_STREQ(DataToSettingHTML().DatatoHTML(info).GetText(), "");
    EXPECT_STREQ(BasicDataToHTML().DatatoHTML(info).GetText(), "");
}

TEST_F(WeatherSource, AForeignActionIsLeftAlone)
{
    ask("Paris");
    HttpAction other;
    GetWeatherControl().OnCallback(nullptr);
    GetWeatherControl().OnCallback(&other);
    EXPECT_EQ(tracesWith("WeatherController::OnCallback").size(), 2);
    waitDone();
}

// One answer serves the home screen as well as the page only where it is told to both.
TEST_F(WeatherSource, TheHomeScreenWaitsForAnAnswerToAllViewsAboutItsCityAlone)
{
    MVCView card("nobody");
    const auto request = [&](const char* city) { hostModule().requestWeather(chReferObject(&card), city); };
    const auto isAsked = [this](const char* city) {
        const bool isPosted = tracesWith("Weather Url(").size() > 0 &&
                              tracesWith("Weather Url(").last().contains(QString("city=") + city);
        mark();
        return isPosted;
    };
    isSilent = true;
    ask("Paris");
    EXPECT_TRUE(isAsked("Paris"));
    request("Paris");
    EXPECT_TRUE(isAsked("Paris")) << "that one is the page's";
    view.strViewName = "allUI";
    ask("Paris");
    EXPECT_TRUE(isAsked("Paris"));
    request("Paris");
    EXPECT_FALSE(isAsked("Paris"));
    request("Oslo");
    EXPECT_TRUE(isAsked("Oslo"));
    WeatherAction::ForgetView(&view);
    WeatherAction::ForgetView(&card);
}

TEST_F(WeatherSource, ItsCallbackIsCountedAsLongAsItIsTheOne)
{
    struct Callback : ActionCallback
    {
        void OnCallback(taskAction*) override {}
    } one, other;
    logic.SetCallback(&one);
    EXPECT_EQ(one.GetRefCount(), 1);
    logic.SetCallback(&one);
    EXPECT_EQ(one.GetRefCount(), 1);
    logic.SetCallback(&other);
    EXPECT_EQ(one.GetRefCount(), 0);
    EXPECT_EQ(other.GetRefCount(), 1);
    logic.SetCallback(nullptr);
    EXPECT_EQ(other.GetRefCount(), 0);
}

TEST_F(WeatherSource, AViewIsCountedAsLongAsItWaits)
{
    EXPECT_EQ(view.GetRefCount(), 0);
    isSilent = true;
    ask("Paris");
    EXPECT_EQ(view.GetRefCount(), 1);
    ask("Paris");
    EXPECT_EQ(view.GetRefCount(), 1) << "the old one is given up";
    isSilent = false;
    ask("London");
    waitDone();
    EXPECT_EQ(view.GetRefCount(), 0);
}

TEST_F(WeatherSource, ActionsOfPicturesEndWithTheirTransfers)
{
    ask("Paris");
    waitDone();
    EXPECT_EQ(tracesWith("~WeatherAction").size(), 6) << "three of them entered and left";
}

TEST_F(WeatherSource, APictureGivesWayAndHasItsTime)
{
    WeatherAction action;
    logic.LoadPic(action, "/tmp/Today.gif", server.url("/t.gif").constData());
    EXPECT_EQ(action.bGivesWay, 1);
    EXPECT_EQ(action.nTimeLimit, 8000);
    waitDone();
}

TEST_F(WeatherSource, APictureOfThePublicFeedIsNeverThatOfAnotherSite)
{
    answers["/w?city=Paris"] = QByteArray(publicAnswer()).replace("\"/m.gif\"", "\"@127.0.0.1:9/m.gif\"");
    ask("Paris");
    waitDone();
    EXPECT_EQ(
        tracesWith("LoadPicPath(/tmp/Tomo.gif) RemotePath(" + server.url("/@127.0.0.1:9/m.gif") + ")").size(),
        1);
}
