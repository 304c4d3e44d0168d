// What comes late: the answers and pictures of a search before, and the card of the home screen beside the
// page.
#include "host/services/transfers/taskBook.h"
#include "support/host/net.h"
#include "tests/applets_weather/weatherPageStand.h"
#include "tests/kit/kitTime.h"
#include <QAbstractButton>
#include <QFile>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <functional>
#include <utility>

namespace {

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

} // namespace
