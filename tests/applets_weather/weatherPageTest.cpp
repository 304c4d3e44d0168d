// The page "Weather" as a person uses it, with a server that answers, fails, or keeps silent.
#include "applets/dlgWeather.h"
#include "applets/weatherController.h"
#include "frame/configFiles.h"
#include "host/services/system/netWorld.h"
#include "host/services/transfers/taskBook.h"
#include "support/host/button.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "support/host/module.h"
#include "support/host/net.h"
#include "support/host/screen.h"
#include "tests/applets_weather/weatherStand.h"
#include "tests/kit/kitTime.h"
#include <QAbstractButton>
#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <utility>

namespace {

const char* const kUnknown = "<norvane/>";

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

} // namespace

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
    server.onRequest = [](QTcpSocket& socket, const QByteArray&) { socket.abort(); };
    search("Rome");
    screenBringUp(&call);
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

// What stands of a search while the next one is made: its pictures wait for the test.
class LatePictures : public WeatherPage
{
protected:
    void openPage()
    {
        WeatherPage::openPage();
        m_usual = server.onRequest;
        server.onRequest = [this](QTcpSocket& socket, const QByteArray& path) {
            if (path.endsWith(".gif") && isHoldingPictures)
                pictures.append(&socket);
            else if (!path.endsWith(".gif") && isHoldingAnswers)
                answer = &socket;
            else
                m_usual(socket, path);
        };
    }
    void searchUntilPicturesWait(const char* city)
    {
        isHoldingPictures = true;
        search(city);
        ASSERT_TRUE(kit::waitUntil([this] { return pictures.size() == 3; }, 20000));
        isHoldingPictures = false;
        EXPECT_EQ(title(), city);
    }
    void searchUntilAnswerWaits(const char* city)
    {
        isHoldingAnswers = true;
        search(city);
        ASSERT_TRUE(kit::waitUntil([this] { return answer != nullptr; }, 20000));
        isHoldingAnswers = false;
    }
    // Those of the search before, while the answer of the next one is awaited.
    void answerPictures(const QByteArray& reply)
    {
        for (const QPointer<QTcpSocket>& picture : std::exchange(pictures, {})) {
            if (picture)
                picture->write(reply);
        }
        EXPECT_TRUE(kit::waitUntil([this] { return taskPendingCount() == (answer ? 1 : 0); }, 20000));
        kit::settle();
    }
    void answerSearch(const QByteArray& reply)
    {
        ASSERT_TRUE(answer);
        answer->write(httpServer::answer(reply));
        answer = nullptr;
        waitDone();
    }

    QList<QPointer<QTcpSocket>> pictures;
    QPointer<QTcpSocket> answer;
    bool isHoldingPictures = false;
    bool isHoldingAnswers = false;

private:
    std::function<void(QTcpSocket&, const QByteArray&)> m_usual;
};

TEST_F(LatePictures, ShowNothingOfTheCityBeforeUnderTheNameOfTheNext)
{
    openPage();
    kit::BoxAnswers boxes({"ok"});
    searchUntilPicturesWait("Rome");
    searchUntilAnswerWaits("Oslo");
    answerPictures(httpServer::answer(gif('t')));
    EXPECT_EQ(title(), "");
    EXPECT_EQ(columns(), ",,|,,|,,");
    kit::stepTime(3500);
    EXPECT_EQ(boxes.texts(), QStringList("NetWork is not good, please wait for a while!"));
    answerSearch(publicAnswer());
    EXPECT_EQ(title(), "Oslo");
    EXPECT_EQ(WeatherPage::pictures(), "11 12 12") << "its own delivery was not used up";
}

TEST_F(LatePictures, ThatFailAreNotToldOfTheNextCity)
{
    openPage();
    kit::BoxAnswers boxes({"ok"});
    searchUntilPicturesWait("Rome");
    searchUntilAnswerWaits("Oslo");
    answerPictures(httpServer::answer("no", "404 Not Found"));
    EXPECT_EQ(boxes.texts(), QStringList());
    answerSearch(kUnknown);
    EXPECT_EQ(boxes.texts(), QStringList("Can't connect")) << "once, and nothing of a site";
}

TEST_F(LatePictures, OfTheCityBeforeAreGivenUpWhenThoseOfTheNextAreAskedFor)
{
    openPage();
    kit::BoxAnswers boxes;
    searchUntilPicturesWait("Rome");
    answers["/t.gif"] = gif('a');
    search("Oslo");
    EXPECT_TRUE(kit::waitUntil([this] { return WeatherPage::pictures() == "13 12 12"; }, 5000));
    answerPictures(httpServer::answer(gif('t')));
    waitDone();
    EXPECT_EQ(title(), "Oslo");
    EXPECT_EQ(readFile("/tmp/Today.gif"), gif('a'));
    EXPECT_EQ(boxes.texts(), QStringList());
}

TEST_F(LatePictures, AreAllThreeAwaited)
{
    openPage();
    const char* const files[] = {"/tmp/Today.gif", "/tmp/Tomo.gif", "/tmp/DayAfterTomo.gif"};
    for (const char* last : files) {
        pictures.clear();
        searchUntilPicturesWait("Rome");
        weather()->clearInfo();
        for (const char* file : files) {
            if (file != last)
                endPicture(file);
        }
        EXPECT_EQ(columns(), ",,|,,|,,") << last;
        endPicture(last);
        EXPECT_TRUE(columns().startsWith("November 21 Sat,Rain")) << last;
    }
}

// Two searches, the second one before the answer of the first.
class LateAnswer : public WeatherPage
{
protected:
    void openPage()
    {
        WeatherPage::openPage();
        const auto usual = server.onRequest;
        server.onRequest = [this, usual](QTcpSocket& socket, const QByteArray& path) {
            if (path.endsWith(".gif"))
                usual(socket, path);
            else
                m_held[path] = &socket;
        };
    }
    bool isHeld(const char* city) const { return m_held.value(pathOf(city)); }
    bool answer(const char* city, const QByteArray& reply)
    {
        const QPointer<QTcpSocket> socket = m_held.value(pathOf(city));
        return socket && socket->write(httpServer::answer(reply)) > 0 && socket->flush();
    }
    void expectOslo()
    {
        kit::settle();
        EXPECT_EQ(title(), "");
        EXPECT_EQ(columns(), ",,|,,|,,");
        ASSERT_TRUE(kit::waitUntil([this] { return isHeld("Oslo"); }, 20000));
        EXPECT_TRUE(answer("Oslo", publicAnswer()));
        waitDone();
        EXPECT_EQ(title(), "Oslo");
        EXPECT_TRUE(columns().startsWith("November 21 Sat,Rain,")) << columns().toStdString();
    }

private:
    static QByteArray pathOf(const char* city) { return QByteArray("/w?city=") + city; }
    QMap<QByteArray, QPointer<QTcpSocket>> m_held;
};

TEST_F(LateAnswer, OfTheSearchBeforeChangesNothing)
{
    openPage();
    const kit::BoxAnswers boxes;
    search("Rome");
    ASSERT_TRUE(kit::waitUntil([this] { return isHeld("Rome"); }, 20000));
    search("Oslo");
    ASSERT_TRUE(kit::waitUntil([this] { return isHeld("Oslo"); }, 20000));
    answer("Rome", publicAnswer().replace("Rain", "Snow")); // the phone may have hung up
    ASSERT_TRUE(kit::waitUntil([] { return taskPendingCount() == 1; }, 20000));
    expectOslo();
    EXPECT_EQ(boxes.texts(), QStringList());
}

// It is there, and the page was not told yet.
TEST_F(LateAnswer, ThatComesRightBeforeTheNextSearchIsNotTold)
{
    openPage();
    const kit::BoxAnswers boxes;
    search("Rome");
    ASSERT_TRUE(kit::waitUntil([this] { return isHeld("Rome"); }, 20000));
    enter("editSearch", "Oslo");
    ASSERT_TRUE(answer("Rome", publicAnswer().replace("Rain", "Snow")));
    // Nothing is told meanwhile.
    for (int i = 0; i < 20000 && !QFile::exists(hostPath("/tmp/Weather-Rome.xml")); ++i)
        QThread::msleep(1);
    QThread::msleep(50);
    child<QPushButton>("btnSearch")->click();
    expectOslo();
    EXPECT_EQ(boxes.texts(), QStringList());
}

// The card of the home screen beside the page.
class CardBesidePage : public LatePictures
{
protected:
    CardBesidePage()
    {
        config("bDesktop", "1");
        GetWeatherFrame()->ShowOn(&home, QRect(0, 0, 300, 90));
    }
    QString card() const
    {
        const auto* shown = home.findChild<QAbstractButton*>("weatherCard");
        return shown ? shown->text() : QString();
    }
    static void askForCard(const char* city)
    {
        GetWeatherControl().RequestForHost(chReferObject(GetWeatherFrame()), city);
    }
    QWidget home;
};

TEST_F(CardBesidePage, TakesNoAnswerFromThePageThatWaitsForIt)
{
    openPage();
    searchUntilAnswerWaits("London");
    const int before = asked();
    askForCard("London");
    kit::settle();
    EXPECT_EQ(asked(), before);
    answerSearch(publicAnswer());
    EXPECT_EQ(title(), "London");
    EXPECT_TRUE(columns().startsWith("November 21 Sat,Rain"));
    EXPECT_TRUE(card().contains("London")) << card().toStdString();
    EXPECT_STREQ(weather()->strViewName.GetText(), "strWeatherUI");
}

TEST_F(CardBesidePage, TakesNoPicturesFromThePageThatWaitsForThem)
{
    openPage();
    searchUntilPicturesWait("London");
    answers["/t.gif"] = gif('a');
    askForCard("London");
    waitDone();
    EXPECT_EQ(title(), "London");
    EXPECT_EQ(WeatherPage::pictures(), "13 12 12");
    EXPECT_TRUE(card().contains("London")) << card().toStdString();
}

TEST_F(CardBesidePage, ShowsNothingOfTheCitySearchedBeforeUnderItsOwnName)
{
    openPage();
    answers["/w?city=Moscow"] = publicAnswer().replace("Rain", "Snow");
    searchUntilPicturesWait("Moscow");
    config("strDefaultCity", "Cairo");
    isHoldingAnswers = true;
    weather()->strViewName = "allUI";
    GetWeatherControl().strCity = "Cairo";
    GetWeatherControl().SendRquest2Logic(chReferObject(weather()), "Cairo");
    ASSERT_TRUE(kit::waitUntil([this] { return answer != nullptr; }, 20000));
    answerPictures(httpServer::answer(gif('t')));
    EXPECT_FALSE(card().contains("Snow")) << card().toStdString();
    answerSearch(publicAnswer());
    EXPECT_TRUE(card().contains("Cairo") && card().contains("Rain")) << card().toStdString();
}

TEST_F(CardBesidePage, GetsTheAnswerInTheNewUnitWithThePage)
{
    openPage();
    askForCard("London");
    waitDone();
    ASSERT_TRUE(card().contains("8c")) << card().toStdString();
    const int before = asked();
    isHoldingPictures = true;
    config("nUnit", "1");
    EXPECT_TRUE(kit::waitUntil([this] { return pictures.size() == 3; }, 20000));
    EXPECT_EQ(label("labTemperature1"), "39F~51F") << "with its texts";
    EXPECT_TRUE(card().contains("46F") && card().contains("39F~51F")) << card().toStdString();
    EXPECT_EQ(asked(), before + 1);
}
