// The card of the home screen that shows the weather, with a module that the test plays.
#include "support/host/desktop.h"
#include "support/host/module.h"
#include "support/host/picture.h"
#include "support/host/registry.h"
#include "support/host/weather.h"
#include "tests/desktop/desktopTest.h"
#include "tests/kit/plain/pictureFiles.h"
#include <QAbstractButton>
#include <QDialog>
#include <QFile>
#include <functional>

namespace {

const char* const kUserIni = "/rundata/config/user/user.ini";
constexpr int kHalfHour = 30 * 60 * 1000;

QStringList g_asked;
QStringList g_opened;
chString g_city; // that was asked for last

class WeatherCard : public DesktopTest
{
protected:
    WeatherCard()
    {
        g_asked.clear();
        g_opened.clear();
        tagModuleEntries entries;
        entries.requestWeather = [](chReferObject view, const chString& city) {
            EXPECT_EQ(view.data(), static_cast<chObject*>(GetWeatherFrame()));
            g_asked.append(city.GetText());
            g_city = city;
        };
        g_city = "Rome";
        entries.weatherCity = [] { return g_city; };
        entries.openPage = [](const chString& name, QWidget*) { g_opened.append(name.GetText()); };
        hostSetModule(entries);
        writeFile(kUserIni, "[Weather]\nstrDefaultCity=Rome\nbDesktop=1\n");
        writeFile("/tmp/Today.gif", kit::gifOfScreen(QSize(20, 20)));
    }
    void boot()
    {
        home = frmDesktop::GetInstance();
        home->FinishLoading();
        kit::settle();
        kit::screen();
        home->grab();
        kit::settle();
        EXPECT_EQ(g_asked, QStringList()) << "the boot costs nothing";
    }
    void bootAndAsk()
    {
        boot();
        kit::stepTime(6000);
    }
    static tagMoreDaysInfo forecast(const char* temperature = "8c")
    {
        tagMoreDaysInfo info;
        info.bConnected = info.bSiteFound = true;
        info.strCurrentTemp = temperature;
        info.strTemperature1 = "4c~11c";
        info.strStatus1 = "<b>Rain";
        return info;
    }
    QAbstractButton* card() const { return home->findChild<QAbstractButton*>("weatherCard"); }
    bool isShown() const { return card() && card()->isVisible(); }

    frmDesktop* home = nullptr;
};

} // namespace

TEST_F(WeatherCard, StandsOnTheHomeScreenOnceAForecastCame)
{
    bootAndAsk();
    EXPECT_EQ(g_asked, QStringList("Rome"));
    EXPECT_FALSE(isShown());
    GetWeatherFrame()->Refresh(forecast());
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 20000));
    ASSERT_TRUE(isShown());
    EXPECT_EQ(card()->text(), QString::fromUtf8("8c Rome \u00b7 4c~11c \u00b7 <b>Rain"));
    const QRect place = card()->geometry();
    for (const QAbstractButton* other : home->findChildren<QAbstractButton*>())
        EXPECT_TRUE(other == card() || !other->geometry().intersects(place))
            << qPrintable(other->objectName());
    EXPECT_STREQ(GetWeatherFrame()->strViewName.GetText(), "frmDektop");
    kit::shot("weather_card");
}

TEST_F(WeatherCard, ATouchOpensThePage)
{
    bootAndAsk();
    GetWeatherFrame()->Refresh(forecast());
    kit::settle();
    kit::tap(card());
    EXPECT_EQ(g_opened, QStringList("Weather"));
}

TEST_F(WeatherCard, IsNotThereWhereItIsNotWanted)
{
    writeFile(kUserIni, "[Weather]\nstrDefaultCity=Rome\nbDesktop=0\n");
    bootAndAsk();
    GetWeatherFrame()->Refresh(forecast());
    kit::stepTime(2 * kHalfHour);
    EXPECT_EQ(g_asked, QStringList());
    EXPECT_FALSE(isShown());
    nuxSetRegistryInt(kUserIni, "Weather", "bDesktop", 1);
    GetWeatherFrame()->RefreshBySendRequest();
    EXPECT_EQ(g_asked, QStringList("Rome"));
    EXPECT_TRUE(isShown());
    nuxSetRegistryInt(kUserIni, "Weather", "bDesktop", 0);
    GetWeatherFrame()->RefreshBySendRequest();
    EXPECT_FALSE(isShown());
    EXPECT_EQ(g_asked.size(), 1);
}

TEST_F(WeatherCard, AsksEveryHalfHourWhileItIsInSight)
{
    bootAndAsk();
    GetWeatherFrame()->Refresh(forecast());
    kit::stepTime(kHalfHour - 60000);
    EXPECT_EQ(g_asked.size(), 1);
    kit::stepTime(61000);
    EXPECT_EQ(g_asked.size(), 2);
    GetWeatherFrame()->Refresh(forecast("9c"));
    EXPECT_TRUE(card()->text().startsWith("9c"));
    kit::stepTime(kHalfHour + 1000);
    EXPECT_EQ(g_asked.size(), 3);
}

TEST_F(WeatherCard, BehindAPageItWaitsAndAsksWhenItComesIntoSight)
{
    bootAndAsk();
    GetWeatherFrame()->Refresh(forecast());
    QDialog page(nullptr, Qt::FramelessWindowHint);
    page.setGeometry(0, 0, 800, 480);
    page.show();
    kit::settle();
    kit::stepTime(3 * kHalfHour);
    EXPECT_EQ(g_asked.size(), 1);
    page.hide();
    kit::settle();
    kit::stepTime(10);
    EXPECT_EQ(g_asked.size(), 2);
    GetWeatherFrame()->Refresh(forecast());
    page.show();
    kit::settle();
    page.hide();
    kit::settle();
    kit::stepTime(10);
    EXPECT_EQ(g_asked.size(), 2) << "this one is fresh";
}

TEST_F(WeatherCard, KeepsWhatItShowsWhenTheFeedIsGoneAndAsksAgainSoon)
{
    bootAndAsk();
    GetWeatherFrame()->Refresh(forecast());
    kit::stepTime(kHalfHour + 1000);
    EXPECT_EQ(g_asked.size(), 2);
    GetWeatherFrame()->Refresh(tagMoreDaysInfo());
    tagMoreDaysInfo unknown;
    unknown.bConnected = true;
    GetWeatherFrame()->Refresh(unknown);
    EXPECT_TRUE(isShown());
    EXPECT_TRUE(card()->text().startsWith("8c Rome"));
    kit::stepTime(50000);
    EXPECT_EQ(g_asked.size(), 2);
    kit::stepTime(15000);
    EXPECT_EQ(g_asked.size(), 3);
}

// Whoever goes in and out of pages meanwhile makes no requests of it.
TEST_F(WeatherCard, AFeedThatIsGoneIsAskedOnceAMinuteHoweverOftenTheHomeScreenComes)
{
    bootAndAsk();
    GetWeatherFrame()->Refresh(tagMoreDaysInfo());
    QDialog page(nullptr, Qt::FramelessWindowHint);
    page.setGeometry(0, 0, 800, 480);
    for (int i = 0; i < 5; ++i) {
        page.show();
        kit::settle();
        page.hide();
        kit::settle();
        kit::stepTime(100);
    }
    EXPECT_EQ(g_asked.size(), 1);
    kit::stepTime(61000);
    EXPECT_EQ(g_asked.size(), 2);
}

TEST_F(WeatherCard, AnotherCityIsAskedForOnceTheChangeHasSettled)
{
    bootAndAsk();
    GetWeatherFrame()->Refresh(forecast());
    ASSERT_EQ(nuxSetRegistryString(kUserIni, "Weather", "strDefaultCity", "Oslo"), 1);
    EXPECT_TRUE(kit::waitUntil([] { return g_asked.size() == 2; }, 20000));
    EXPECT_EQ(g_asked.value(1), "Oslo");
    EXPECT_TRUE(card()->text().contains("Rome")) << "until the forecast is there";
    GetWeatherFrame()->Refresh(forecast());
    EXPECT_TRUE(card()->text().contains("Oslo"));
}

TEST_F(WeatherCard, AnotherUnitAndAnotherSourceAreAskedForToo)
{
    bootAndAsk();
    GetWeatherFrame()->Refresh(forecast());
    ASSERT_EQ(nuxSetRegistryInt(kUserIni, "Weather", "nUnit", 1), 1);
    EXPECT_TRUE(kit::waitUntil([] { return g_asked.size() == 2; }, 20000));
    GetWeatherFrame()->Refresh(forecast("46F"));
    ASSERT_EQ(nuxSetRegistryString(kUserIni, "Weather", "strSource", "Google"), 1);
    EXPECT_TRUE(kit::waitUntil([] { return g_asked.size() == 3; }, 20000));
}

TEST_F(WeatherCard, IsNotThereUntilItWasAskedFor)
{
    writeFile(kUserIni, "[Weather]\nstrDefaultCity=Rome\n");
    bootAndAsk();
    GetWeatherFrame()->Refresh(forecast());
    EXPECT_EQ(g_asked, QStringList());
    EXPECT_FALSE(isShown());
}

TEST_F(WeatherCard, APictureThatComesLaterIsShownAndADamagedOneIsNot)
{
    writeFile("/tmp/Today.gif", "");
    bootAndAsk();
    GetWeatherFrame()->Refresh(forecast());
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 20000));
    kit::settle();
    const QImage without = card()->grab().toImage();
    writeFile("/tmp/Today.gif", kit::gifOfScreen(QSize(20, 20)));
    kit::stepTime(500);
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 20000));
    kit::settle();
    EXPECT_NE(card()->grab().toImage(), without);
}

TEST_F(WeatherCard, APictureThatTakesSecondsIsShown)
{
    writeFile("/tmp/Today.gif", "");
    bootAndAsk();
    GetWeatherFrame()->Refresh(forecast());
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 20000));
    kit::settle();
    const QImage without = card()->grab().toImage();
    for (int i = 0; i < 8; ++i)
        kit::stepTime(1000);
    writeFile("/tmp/Today.gif", kit::gifOfScreen(QSize(20, 20)));
    kit::stepTime(500);
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 20000));
    kit::settle();
    EXPECT_NE(card()->grab().toImage(), without);
}

TEST_F(WeatherCard, ADamagedPictureLeavesTheOldOneAndAMissingOneNone)
{
    bootAndAsk();
    const auto shown = [this](const std::function<void()>& change) {
        GetWeatherFrame()->Refresh(forecast());
        change();
        kit::stepTime(500);
        EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 20000));
        kit::settle();
        kit::stepTime(12000); // until nothing is waited for
        return card()->grab().toImage();
    };
    const QImage none = shown([] {});
    const QImage good = shown([this] { writeFile("/tmp/Today.gif", kit::gifOfScreen(QSize(20, 20))); });
    EXPECT_NE(good, none);
    EXPECT_EQ(shown([this] { writeFile("/tmp/Today.gif", "GIF89a no picture"); }), good);
    EXPECT_EQ(shown([this] { ASSERT_TRUE(QFile::remove(hostPath("/tmp/Today.gif"))); }), none);
}

TEST_F(WeatherCard, WithoutAStoredCityItIsLondon)
{
    writeFile(kUserIni, "[Weather]\nbDesktop=1\n");
    bootAndAsk();
    EXPECT_EQ(g_asked, QStringList("London"));
}

TEST_F(WeatherCard, MakesRoomForWhatTakesItsPlace)
{
    bootAndAsk();
    GetWeatherFrame()->Refresh(forecast());
    GetWeatherFrame()->MakeRoom(true);
    EXPECT_FALSE(isShown());
    GetWeatherFrame()->Refresh(forecast());
    EXPECT_FALSE(isShown());
    GetWeatherFrame()->MakeRoom(false);
    EXPECT_TRUE(isShown());
}

TEST_F(WeatherCard, LongNamesStayInside)
{
    bootAndAsk();
    writeFile(kUserIni, "[Weather]\nbDesktop=1\nstrDefaultCity=" + QByteArray(99, 'W') + "\n");
    tagMoreDaysInfo info = forecast();
    info.strStatus1 = QString(128, 'M');
    GetWeatherFrame()->RefreshBySendRequest();
    GetWeatherFrame()->Refresh(info);
    EXPECT_LT(card()->text().size(), 60);
    kit::settle();
    kit::shot("weather_card_long");
}

TEST_F(WeatherCard, AModuleWithoutWeatherLeavesItAway)
{
    hostSetModule(tagModuleEntries());
    bootAndAsk();
    EXPECT_FALSE(isShown());
}

// Two searches on the page, the first of them "Set Desktop": the second one's answer is told to the card too.
TEST_F(WeatherCard, TheWeatherOfAnotherCityIsNotShownAsItsOwn)
{
    bootAndAsk();
    g_city = "Oslo";
    GetWeatherFrame()->Refresh(forecast("20c"));
    EXPECT_FALSE(isShown());
    kit::stepTime(2000);
    EXPECT_EQ(g_asked, (QStringList{"Rome", "Rome"})) << "and asked for anew at once";
    g_city = "Rome";
    GetWeatherFrame()->Refresh(forecast("8c"));
    ASSERT_TRUE(isShown());
    EXPECT_TRUE(card()->text().startsWith("8c Rome"));
    g_city = "Oslo";
    GetWeatherFrame()->Refresh(forecast("20c"));
    EXPECT_TRUE(card()->text().startsWith("8c Rome")) << "what it shows it keeps";
}

TEST_F(WeatherCard, AUnitWithoutATemperatureIsNotShown)
{
    bootAndAsk();
    GetWeatherFrame()->Refresh(forecast("F"));
    ASSERT_TRUE(isShown());
    EXPECT_TRUE(card()->text().startsWith(" Rome")) << card()->text().toStdString();
}

// The file of the picture is everybody's.
TEST_F(WeatherCard, APictureOfAnotherSearchIsNotItsOwn)
{
    bootAndAsk();
    GetWeatherFrame()->Refresh(forecast());
    const auto look = [this] {
        EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 20000));
        kit::settle();
        return card()->grab().toImage();
    };
    const QImage without = look();
    g_city = "Oslo";
    writeFile("/tmp/Today.gif", kit::gifOfScreen(QSize(40, 40)));
    kit::stepTime(500);
    EXPECT_EQ(look(), without);
    EXPECT_EQ(g_asked.size(), 1);
    kit::stepTime(61000);
    EXPECT_EQ(g_asked, (QStringList{"Rome", "Rome"})) << "its own is asked for soon";
    GetWeatherFrame()->Refresh(forecast());
    EXPECT_EQ(look(), without) << "what was there before is the other city's";
    writeFile("/tmp/Today.gif", kit::gifOfScreen(QSize(20, 20)));
    GetWeatherFrame()->Refresh(forecast());
    EXPECT_NE(look(), without) << "told again, the pictures are there";
    kit::stepTime(120000);
    EXPECT_EQ(g_asked.size(), 2);
}

TEST_F(WeatherCard, ThePictureGoesWithItsCity)
{
    bootAndAsk();
    GetWeatherFrame()->Refresh(forecast());
    const auto look = [this] {
        EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 20000));
        kit::settle();
        return card()->grab(QRect(0, 0, 90, card()->height())).toImage(); // left of the texts
    };
    const QImage without = look();
    writeFile("/tmp/Today.gif", kit::gifOfScreen(QSize(40, 40)));
    kit::stepTime(500);
    const QImage with = look();
    EXPECT_NE(with, without);
    GetWeatherFrame()->Refresh(forecast("9c"));
    EXPECT_EQ(look(), with) << "of the same city until there is another";
    nuxSetRegistryString(kUserIni, "Weather", "strDefaultCity", "Oslo");
    g_city = "Oslo";
    GetWeatherFrame()->Refresh(forecast("20c"));
    EXPECT_EQ(look(), without);
}
