// The page "Weather" as a person uses it, with a server that answers, fails, or keeps silent.
#include "frame/configFiles.h"
#include "host/services/system/netWorld.h"
#include "host/services/transfers/taskBook.h"
#include "support/host/button.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "support/host/module.h"
#include "support/host/net.h"
#include "support/host/screen.h"
#include "tests/applets_weather/weatherPageStand.h"
#include "tests/kit/kitTime.h"
#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <utility>

TEST_F(WeatherPage, AShowSearchesForTheStoredCity)
{
    openPage();
    EXPECT_EQ(title(), "London");
    EXPECT_EQ(columns(),
              "November 21 Sat,Rain,4c~11c|November 22 Sun,Cloudy,6c~12c|November 23 Mon,Sunny,-3c~9c");
    EXPECT_EQ(pictures(), "11 12 12");
    EXPECT_EQ(softKeys(), (QStringList{"Set Desktop", "2aB", "Delete", "Back"}));
    EXPECT_EQ(label("labData") + label("labStatus") + label("labTemp"), "DateStatusTemperature");
    EXPECT_EQ(focusName(), "editSearch");
    EXPECT_EQ(asked(), 1);
    kit::shot("weather");
}

TEST_F(WeatherPage, ItsWidgetsAreAsTheirUsersKnowThem)
{
    openPage();
    QLineEdit* edit = child<QLineEdit>("editSearch");
    EXPECT_EQ(edit->maxLength(), 99);
    qSetCurrentIME(edit, "abc");
    QStringList methods;
    for (int i = 0; i < 4; ++i) {
        qShift2NextIME(edit);
        methods.append(qGetCurrentIME(edit));
    }
    EXPECT_EQ(methods, (QStringList{"123", "2aB", "ABC", "abc"}));
    QPushButton* button = child<QPushButton>("btnSearch");
    EXPECT_EQ(button->geometry(), QRect(QPoint(630, 394), QPoint(705, 429)));
    EXPECT_EQ(button->focusPolicy(), Qt::NoFocus);
    EXPECT_TRUE(GetButtonImage(button, 0).endsWith("button/btn_weather_enter_bg01.png"));
    EXPECT_TRUE(GetButtonImage(button, 1).endsWith("button/btn_weather_enter_bg02.png"));
    EXPECT_TRUE(GetButtonImage(button, 2).endsWith("button/btn_weather_enter_bg01.png"));
    EXPECT_STREQ(weather()->strViewName.GetText(), "strWeatherUI");
    EXPECT_EQ(GetdlgWeahterSetting(), page);
}

TEST_F(WeatherPage, WithoutAStoredCityAnEmptyOneIsAskedFor)
{
    writeFile(USER_INI, "[Weather]\nbDesktop=0\n");
    openPage();
    ASSERT_GT(server.paths.size(), 0);
    EXPECT_EQ(server.paths[0], "/w?city=");
    EXPECT_EQ(child<QLineEdit>("editSearch")->text(), "");
    EXPECT_EQ(title(), "");
    EXPECT_TRUE(columns().startsWith("November 21 Sat,Rain,4c~11c|")) << "Celsius, where nothing is stored";
}

TEST_F(WeatherPage, BeforeItIsShownItHasTheUsualCity)
{
    writeFile(USER_INI, "[Weather]\nbDesktop=0\n");
    const dlgWeather other(nullptr, nullptr, "strWeatherUI");
    EXPECT_EQ(other.findChild<QLineEdit*>("editSearch")->text(), "London");
}

TEST_F(WeatherPage, ASearchShowsTheTypedCityAndStoresNothing)
{
    openPage();
    search("New York");
    waitDone();
    EXPECT_EQ(title(), "New York");
    EXPECT_TRUE(server.paths.contains("/w?city=New%20York"));
    EXPECT_EQ(readFile("/tmp/Weather-New York.xml"), publicAnswer()) << "named as it was typed";
    expectStored(USER_INI, "Weather", "strDefaultCity", "London");
    back();
    openPage();
    EXPECT_EQ(title(), "London");
}

TEST_F(WeatherPage, TheKeyOkSearchesToo)
{
    openPage();
    enter("editSearch", "Rome");
    kit::key(Qt::Key_Return);
    waitDone();
    EXPECT_EQ(title(), "Rome");
    EXPECT_EQ(asked(), 2);
}

TEST_F(WeatherPage, ASearchEmptiesThePageAtOnce)
{
    openPage();
    isSilent = true;
    search("Rome");
    kit::settle();
    EXPECT_EQ(title(), "");
    EXPECT_EQ(columns(), ",,|,,|,,");
    EXPECT_EQ(pictures(), "0 0 0");
}

TEST_F(WeatherPage, ALetterThatIsBeingChosenBelongsToTheCity)
{
    openPage();
    enter("editSearch", "");
    kit::padKey('2');
    kit::tap(child<QPushButton>("btnSearch"));
    waitDone();
    EXPECT_EQ(title(), "A");
}

TEST_F(WeatherPage, ALongAnswerIsRead)
{
    answers["/w?city=London"] = publicAnswer() + QByteArray(50000, ' ');
    openPage();
    EXPECT_EQ(title(), "London");
}

// The flags of its own pictures are still up, and what would be told is empty.
TEST_F(WeatherPage, APictureOfAnEarlierSearchSaysNothing)
{
    openPage();
    QPointer<QTcpSocket> held;
    const auto usual = server.onRequest;
    server.onRequest = [&](QTcpSocket& socket, const QByteArray& path) {
        if (path == "/slow.gif")
            held = &socket;
        else
            usual(socket, path);
    };
    answers["/w?city=Oslo"] = publicAnswer().replace("/t.gif", "/slow.gif");
    search("Oslo");
    ASSERT_TRUE(kit::waitUntil([&] { return held && taskPendingCount() == 1; }, 20000));
    search("Rome");
    ASSERT_TRUE(kit::waitUntil([&] { return pictures() == "11 12 12"; }, 20000));
    const kit::BoxAnswers boxes({"ok"});
    ASSERT_TRUE(held);
    held->write(httpServer::answer(gif('a')));
    waitDone();
    kit::settle();
    EXPECT_EQ(boxes.texts(), QStringList());
    EXPECT_EQ(title(), "Rome");
}

TEST_F(WeatherPage, AFeedThatIsGoneIsToldEvenWhereAnOldAnswerIsThere)
{
    openPage();
    kit::BoxAnswers boxes({"ok"});
    server.onRequest = [](QTcpSocket& socket, const QByteArray&) { socket.abort(); };
    search("London");
    EXPECT_TRUE(kit::waitUntil([&] { return boxes.texts().size() == 1; }, 20000));
    EXPECT_EQ(boxes.texts(), QStringList("Can't connect"));
    EXPECT_EQ(boxes.titles(), QStringList("Note"));
    EXPECT_EQ(title(), "Weather");
    EXPECT_EQ(columns(), ",,|,,|,,");
}

TEST_F(WeatherPage, TheNoteGoesByItself)
{
    openPage();
    kit::BoxAnswers boxes({"keep"});
    answers["/w?city=Rome"] = kUnknown;
    bool isSeen = false;
    QTimer look;
    look.callOnTimeout([&] {
        if (isSeen || boxes.texts().isEmpty())
            return;
        isSeen = true;
        kit::stepTime(1500);
        EXPECT_NE(kit::windows().value(0), page);
        kit::stepTime(2000);
        EXPECT_EQ(kit::windows().value(0), page);
    });
    look.start(1);
    search("Rome");
    EXPECT_TRUE(kit::waitUntil([&] { return isSeen; }, 20000));
    EXPECT_EQ(boxes.texts(), QStringList("Can't connect"));
}

TEST_F(WeatherPage, WithoutANetworkTheAnswerIsThereAtOnce)
{
    netWorld().state = 1;
    kit::BoxAnswers boxes({"ok"});
    openPage();
    kit::stepTime(10);
    EXPECT_EQ(boxes.texts(), QStringList("Can't connect"));
    EXPECT_EQ(title(), "Weather");
    EXPECT_EQ(asked(), 0);
    kit::stepTime(5000);
    EXPECT_EQ(boxes.texts().size(), 1) << "the time for an answer runs no more";
}

TEST_F(WeatherPage, WithoutANetworkTheAnswerIsToldWithinTheRequest)
{
    openPage();
    netWorld().state = NET_DOWN;
    ASSERT_EQ(title(), "London");
    GetWeatherControl().SendRquest2Logic(chReferObject(weather()), "");
    EXPECT_EQ(title(), "Weather");
    kit::BoxAnswers boxes({"ok"});
    kit::stepTime(10);
    EXPECT_EQ(boxes.texts(), QStringList("Can't connect"));
}

TEST_F(WeatherPage, ACityThatSignageDoesNotKnowIsTold)
{
    writeFile(SYSTEM_INI, "[nDeck]\nbEnable=1\nstrServerURL=" + server.url("") + "\n");
    server.onRequest = [](QTcpSocket& socket, const QByteArray&) {
        socket.write(httpServer::answer(
            "<norvane><ndeck><result><error>get data error</error></result></ndeck></norvane>"));
    };
    kit::BoxAnswers boxes({"ok"});
    openPage();
    EXPECT_TRUE(kit::waitUntil([&] { return boxes.texts().size() == 1; }, 20000));
    EXPECT_EQ(boxes.texts(), QStringList("No site information"));
    EXPECT_EQ(title(), "Weather");
}

TEST_F(WeatherPage, ASlowServerIsToldOnceAndItsAnswerStillShown)
{
    openPage();
    kit::BoxAnswers boxes({"ok"});
    QTcpSocket* waiting = nullptr;
    const auto usual = server.onRequest;
    server.onRequest = [&](QTcpSocket& socket, const QByteArray&) { waiting = &socket; };
    search("Rome");
    ASSERT_TRUE(kit::waitUntil([&] { return waiting != nullptr; }, 20000));
    kit::stepTime(1500);
    EXPECT_EQ(boxes.texts().size(), 0);
    kit::stepTime(2000);
    EXPECT_EQ(boxes.texts(), QStringList("NetWork is not good, please wait for a while!"));
    EXPECT_EQ(title(), "");
    kit::stepTime(9000);
    EXPECT_EQ(boxes.texts().size(), 1);
    server.onRequest = usual;
    waiting->write(httpServer::answer(publicAnswer()));
    waitDone();
    EXPECT_EQ(title(), "Rome");
}

TEST_F(WeatherPage, TheNoteOfASlowServerGoesByItself)
{
    openPage();
    kit::BoxAnswers boxes({"keep"});
    isSilent = true;
    search("Rome");
    bool isSeen = false;
    QTimer look;
    look.callOnTimeout([&] {
        if (!boxes.texts().isEmpty() && !std::exchange(isSeen, true))
            kit::moveClocks(3000);
    });
    look.start(1);
    kit::moveClocks(3000);
    EXPECT_TRUE(kit::waitUntil([&] { return isSeen && kit::windows().value(0) == page; }, 20000));
    EXPECT_EQ(boxes.texts().size(), 1);
}

TEST_F(WeatherPage, AShowHasTheSameTimeForItsAnswer)
{
    isSilent = true;
    kit::BoxAnswers boxes({"ok"});
    open("Weather");
    kit::stepTime(3500); // a coarse timer
    EXPECT_EQ(boxes.texts(), QStringList("NetWork is not good, please wait for a while!"));
    isSilent = false;
}

TEST_F(WeatherPage, AfterBackALateAnswerChangesNothingUntilTheNextShow)
{
    openPage();
    kit::BoxAnswers boxes;
    const auto usual = server.onRequest;
    for (const QByteArray& answer : {QByteArray(kUnknown), publicAnswer()}) {
        QTcpSocket* waiting = nullptr;
        server.onRequest = [&](QTcpSocket& socket, const QByteArray&) { waiting = &socket; };
        search("Rome");
        ASSERT_TRUE(kit::waitUntil([&] { return waiting != nullptr; }, 20000));
        back();
        server.onRequest = usual;
        waiting->write(httpServer::answer(answer));
        waitDone();
        kit::stepTime(5000);
        EXPECT_EQ(boxes.texts(), QStringList());
        EXPECT_EQ(columns(), ",,|,,|,,");
        EXPECT_EQ(title(), "");
        openPage();
        EXPECT_EQ(title(), "London");
    }
}

TEST_F(WeatherPage, AFailedPictureIsToldOverAPageThatHasItsTexts)
{
    server.onRequest = [this](QTcpSocket& socket, const QByteArray& path) {
        socket.write(path == "/m.gif"
                         ? httpServer::answer("no", "404 Not Found")
                         : httpServer::answer(path.endsWith(".gif") ? gif('t') : publicAnswer()));
    };
    kit::BoxAnswers boxes({"ok"});
    openPage();
    EXPECT_TRUE(kit::waitUntil([&] { return boxes.texts().size() == 1; }, 20000));
    EXPECT_EQ(boxes.texts(), QStringList("Can't connect"));
    EXPECT_EQ(title(), "Weather");
    EXPECT_TRUE(columns().startsWith("November 21 Sat,Rain,4c~11c|"));
}

// Bytes behind the end of a picture are no part of it.
TEST_F(WeatherPage, ALargeIconIsTakenAndAHugeOneIsAFailedTransfer)
{
    answers["/t.gif"] = gif('t') + QByteArray(900 * 1024, ' ');
    openPage();
    EXPECT_EQ(pictures(), "11 12 12");
    kit::BoxAnswers boxes({"ok"});
    answers["/t.gif"] = gif('t') + QByteArray(1100 * 1024, ' ');
    search("Rome");
    EXPECT_TRUE(kit::waitUntil([&] { return boxes.texts().size() == 1; }, 20000));
    EXPECT_EQ(boxes.texts(), QStringList("Can't connect"));
}

TEST_F(WeatherPage, EachDayHasThePictureOfItsFile)
{
    openPage();
    writeFile("/tmp/DayAfterTomo.gif", gif('a'));
    weather()->Refresh(forecast());
    waitDone();
    EXPECT_EQ(pictures(), "11 12 13");
}

TEST_F(WeatherPage, WithoutAPictureForTodayThereIsNoSecondDelivery)
{
    answers["/w?city=London"] = publicAnswer().replace("<icon data=\"/t.gif\"/>", "");
    openPage();
    EXPECT_EQ(title(), "London");
    EXPECT_EQ(pictures(), "0 0 0") << "the pictures came after the texts";
    EXPECT_EQ(readFile("/tmp/Tomo.gif"), gif('m'));
}

TEST_F(WeatherPage, WithoutAPictureForTodayTheSecondDeliveryIsAwaitedAllTheSame)
{
    answers["/w?city=London"] = publicAnswer().replace("<icon data=\"/t.gif\"/>", "");
    openPage();
    weather()->clearInfo();
    endPicture("/tmp/Today.gif");
    EXPECT_EQ(title(), "London");
    EXPECT_TRUE(columns().startsWith("November 21 Sat,Rain")) << columns().toStdString();
    weather()->clearInfo();
    endPicture("/tmp/Today.gif");
    EXPECT_EQ(title(), "") << "once";
}

TEST_F(WeatherPage, AnEmptyThirdConditionLeavesPictureAndDateOut)
{
    openPage();
    weather()->clearInfo();
    tagMoreDaysInfo info = forecast();
    info.strStatus3.clear();
    weather()->Refresh(info);
    EXPECT_EQ(label("labDate3") + label("labStatus3") + label("labTemperature3"), "t3");
    EXPECT_EQ(pictureSide("labIcon3"), 0);
    weather()->Refresh(forecast());
    waitDone();
    EXPECT_EQ(label("labDate3") + label("labStatus3") + label("labTemperature3"), "d3s3t3");
    EXPECT_EQ(pictureSide("labIcon3"), 12);
}

TEST_F(WeatherPage, MarkupOfAServerIsShownAsItStands)
{
    answers["/w?city=London"] =
        publicAnswer().replace("data=\"Rain\"", "data=\"&lt;b&gt;&lt;img src='/x'&gt;Rain\"");
    openPage();
    EXPECT_EQ(label("labStatus1"), "<b><img src='/x'>Rain");
    EXPECT_EQ(child<QLabel>("labStatus1")->textFormat(), Qt::PlainText);
    search("<h1>Oslo");
    waitDone();
    EXPECT_EQ(title(), "<h1>Oslo");
}

TEST_F(WeatherPage, APictureThatWasReplacedIsReadAgainAndADamagedOneIsNone)
{
    openPage();
    answers["/t.gif"] = gif('a');
    answers["/m.gif"] = "GIF89a no picture";
    search("Rome");
    waitDone();
    EXPECT_EQ(pictures(), "13 0 0");
    answers["/m.gif"] = gif('m');
    answers["/t.gif"] = gif('t');
    search("London");
    waitDone();
    EXPECT_EQ(pictures(), "11 12 12");
}

TEST_F(WeatherPage, ACityThatLeavesTheFolderFailsAsASilentServerDoes)
{
    openPage();
    kit::BoxAnswers boxes({"ok"});
    const int before = asked();
    search("/../../rundata/config/user/user");
    EXPECT_TRUE(kit::waitUntil([&] { return boxes.texts().size() == 1; }, 20000));
    EXPECT_EQ(boxes.texts(), QStringList("Can't connect"));
    EXPECT_EQ(asked(), before);
    expectStored(USER_INI, "Weather", "strDefaultCity", "London");
}

TEST_F(WeatherPage, SetDesktopStoresTheCityAndShowsItOnTheHomeScreen)
{
    openPage();
    kit::BoxAnswers boxes({"ok"});
    enter("editSearch", "Rome");
    softKey(0);
    EXPECT_EQ(boxes.texts(), QStringList("Succeed to Set Desktop!"));
    EXPECT_EQ(boxes.titles(), QStringList("Note"));
    expectStored(USER_INI, "Weather", "strDefaultCity", "Rome");
    expectStored(USER_INI, "Weather", "bDesktop", "1");
    EXPECT_TRUE(kit::waitUntil([this] { return title() == "Rome"; }, 20000)) << "the change came back";
    waitDone();
    EXPECT_TRUE(server.paths.contains("/w?city=Rome"));
    EXPECT_STREQ(hostModule().weatherCity().GetText(), "Rome") << "the home screen knows whose answer it is";
    EXPECT_STREQ(weather()->strViewName.GetText(), "strWeatherUI");
}

TEST_F(WeatherPage, TheNoteOfSetDesktopGoesByItself)
{
    openPage();
    kit::BoxAnswers boxes({"keep"});
    bool isSeen = false;
    QTimer look;
    look.callOnTimeout([&] {
        if (!boxes.texts().isEmpty() && !std::exchange(isSeen, true))
            kit::moveClocks(3000);
    });
    look.start(1);
    softKey(0);
    EXPECT_TRUE(kit::waitUntil([&] { return isSeen && kit::windows().value(0) == page; }, 20000));
    EXPECT_EQ(boxes.texts(), QStringList("Succeed to Set Desktop!"));
}

TEST_F(WeatherPage, SetDesktopOnAFullDiskSaysSoAndKeepsWhatWasTyped)
{
    openPage();
    enter("editSearch", "Rome");
    expectFailedSave(USER_INI);
    EXPECT_EQ(child<QLineEdit>("editSearch")->text(), "Rome");
}

TEST_F(WeatherPage, AnotherUnitIsAskedForAtOnce)
{
    openPage();
    mark();
    config("nUnit", "1");
    EXPECT_TRUE(kit::waitUntil([this] { return label("labTemperature1") == "39F~51F"; }, 20000));
    waitDone();
    EXPECT_EQ(traces().filter("Refresh weather data").size(), 1);
    EXPECT_EQ(title(), "London");
    EXPECT_EQ(asked(), 2);
    EXPECT_STREQ(weather()->strViewName.GetText(), "strWeatherUI");
}

TEST_F(WeatherPage, AChangeStartsNoTimeForItsAnswer)
{
    openPage();
    kit::BoxAnswers boxes;
    isSilent = true;
    config("nUnit", "1");
    EXPECT_TRUE(kit::waitUntil([this] { return title().isEmpty(); }, 20000));
    EXPECT_STREQ(weather()->strViewName.GetText(), "allUI");
    kit::stepTime(4000);
    EXPECT_EQ(boxes.texts(), QStringList());
    isSilent = false;
}

TEST_F(WeatherPage, DeleteTakesTheLetterBeforeTheCursor)
{
    openPage();
    enter("editSearch", "Rome");
    softKey(2);
    EXPECT_EQ(child<QLineEdit>("editSearch")->text(), "Rom");
    child<QLineEdit>("editSearch")->clearFocus();
    softKey(2);
    EXPECT_EQ(child<QLineEdit>("editSearch")->text(), "Rom");
}

TEST_F(WeatherPage, AnotherLanguageLeavesTheCityInTheTitle)
{
    openPage();
    GetLanguageHelper()->SetLanguage("German");
    kit::settle();
    EXPECT_EQ(title(), "London");
    EXPECT_EQ(label("labTemp"), "Temperatur");
    GetLanguageHelper()->SetLanguage("English");
    kit::settle();
}

TEST_F(WeatherPage, AThousandRoundsLeaveNothingBehind)
{
    openPage();
    for (int round = 0; round < 1000; ++round) {
        search(round % 2 ? "Rome" : "Oslo");
        if (round % 3 == 0)
            back();
        if (round % 7 == 0)
            waitDone();
        if (!page->isVisible())
            open("Weather");
    }
    waitDone();
    EXPECT_EQ(weather()->GetRefCount(), 0);
    EXPECT_EQ(title(), page->isVisible() ? child<QLineEdit>("editSearch")->text() : QString());
}

TEST_F(WeatherPage, APageThatEndsWhileItIsAwaitedIsTouchedNoMore)
{
    openPage();
    isSilent = true;
    search("Rome");
    ASSERT_TRUE(kit::waitUntil([this] { return asked() == 2; }, 20000));
    EXPECT_EQ(weather()->GetRefCount(), 1);
    dlgWeather* other = new dlgWeather(nullptr, nullptr, "strWeatherUI");
    other->show();
    kit::settle();
    EXPECT_EQ(GetdlgWeahterSetting(), other) << "the newest";
    EXPECT_EQ(other->GetRefCount(), 1);
    delete other;
    isSilent = false;
    search("Oslo");
    waitDone();
    EXPECT_EQ(title(), "Oslo");
}

// A call that rings has the touches and the keys; a note would take them.
TEST_F(WeatherPage, WhatComesLateIsNotToldOverAnotherWindow)
{
    openPage();
    QWidget call;
    call.setGeometry(0, 0, 800, 480);
    const kit::BoxAnswers boxes({"ok"});
    QPointer<QTcpSocket> asked;
    server.onRequest = [&](QTcpSocket& socket, const QByteArray&) {
        asked = &socket;
        if (call.isVisible()) // one that broke is asked for again
            socket.abort();
    };
    search("Rome");
    ASSERT_TRUE(kit::waitUntil([&] { return !asked.isNull(); }));
    screenBringUp(&call);
    asked->abort();
    waitDone();
    kit::settle();
    EXPECT_EQ(boxes.texts(), QStringList());
    call.hide();
    kit::settle();
    isSilent = true;
    server.onRequest = [](QTcpSocket&, const QByteArray&) {};
    search("Oslo");
    screenBringUp(&call);
    kit::stepTime(4000);
    EXPECT_EQ(boxes.texts(), QStringList());
}

TEST_F(WeatherPage, PicturesThatNeverComeKeepNoAnswerWaiting)
{
    openPage();
    const auto usual = server.onRequest;
    server.onRequest = [&](QTcpSocket& socket, const QByteArray& path) {
        if (!path.contains(".gif"))
            usual(socket, path);
    };
    for (const char* city : {"Rome", "Oslo", "Bern", "Nice"}) {
        search(city);
        ASSERT_TRUE(kit::waitUntil([&] { return title() == city; }, 5000)) << city;
    }
}
