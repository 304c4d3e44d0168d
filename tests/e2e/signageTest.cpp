// From an empty folder to the screen: the phone, its players and the demonstration server, each in a
// process of its own, driven through the control socket alone.
#include "places.h"
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include "tests/kit/plain/signServer.h"
#include "tests/kit/plain/signTexts.h"
#include "tests/players/films.h"
#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QThread>
#include <functional>

using namespace kit;

namespace {

constexpr int kLooksWhileItRings = 15;
constexpr int kWaitMs = 30000;
constexpr QRect kBelowTheClock(0, 40, 800, 440);

QByteArray picture(const QColor& colour, const char* format = "png")
{
    return signPicture(colour, QSize(400, 240), format);
}

QByteArray layout(const QByteArray& regions, const QByteArray& attributes = "bgcolor=\"#203040\"")
{
    return signLayout(regions, attributes);
}

bool isLike(const QColor& left, const QColor& right)
{
    const int apart = qAbs(left.red() - right.red()) + qAbs(left.green() - right.green()) +
                      qAbs(left.blue() - right.blue());
    return apart < 60;
}

// Each pixel is nearly the same, but for some of its edges.
bool isLike(const QImage& left, const QImage& right)
{
    int apart = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x)
            apart += !isLike(left.pixelColor(x, y), right.pixelColor(x, y));
    }
    return left.size() == right.size() && apart < left.width() * left.height() / 50;
}

class Signage : public LivePhone
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.start());
        LivePhone::SetUp();
        joinSignage(server.url() + "///");
        ctl({"set", "net", "state=2"});
    }
    void openPage(const char* name) { ctl({"open-info", name, "", name}); }
    void openNdeck() { openPage("Ndeck"); }

    // Waits until the screen shows the colour at the point.
    bool shows(int x, int y, const QColor& colour, int ms = kWaitMs)
    {
        return waits([&] { return isLike(screen().pixelColor(x, y), colour); }, ms);
    }
    static bool waits(const std::function<bool()>& holds, int ms = kWaitMs) { return kit::waits(holds, ms); }
    QStringList folder() { return QDir(root() + "/rundata/nDeck").entryList(QDir::Files, QDir::Name); }
    bool hasFile(const QString& name) { return folder().contains(name); }
    static QRect wholeScreen() { return QRect(0, 0, 800, 480); }
    // Where the call screen shows the signage; empty while it does not.
    QRect frameInCall()
    {
        for (const QJsonValue& entry : topWindow()["widgets"].toArray()) {
            const QJsonObject at = entry.toObject();
            if (at["name"] == "frmNdeckFrame" && at["visible"].toBool())
                return QRect(at["x"].toInt(), at["y"].toInt(), at["w"].toInt(), at["h"].toInt());
        }
        return QRect();
    }
    QString textOf(const QString& name) { return widget(name)["text"].toString(); }
    void ring()
    {
        ctl({"ring", "333", "0", "First"});
        waitPage("frmCall");
    }
    void answer() { softKey(0); }
    void takeCall()
    {
        ring();
        answer();
    }
    bool isInCall() { return topWindow()["class"] == "frmCall"; }
    // A picture of the phone while the call rings, without its time of day; null when it rings no more.
    QImage ringing()
    {
        const QString incoming = QString::fromUtf8("333 \u00b7 Incoming call");
        const bool before = isInCall() && textOf("labState") == incoming;
        const QImage picture = screen().copy(kBelowTheClock);
        return before && isInCall() && textOf("labState") == incoming ? picture : QImage();
    }
    // The signage stands beside the call, which talks.
    bool showsInTalk(const QColor& colour)
    {
        const QRect beside(304, 66, 480, 288);
        return waits([&] { return isInCall() && frameInCall() == beside; }) &&
               shows(beside.center().x(), beside.center().y(), colour, 5000) &&
               shows(beside.left() + 20, beside.top() + 20, colour, 5000) && textOf("labState") == "In call";
    }
    void endCall()
    {
        softKey(3);
        EXPECT_TRUE(frameInCall().isEmpty());
        EXPECT_TRUE(waits([&] { return !isInCall(); }));
    }
    // The tile of the home screen.
    void showTile()
    {
        ctl({"set", "idle", "25"});
        EXPECT_TRUE(waits([&] { return topWindow()["class"] == "frmDesktop" && !frameInCall().isEmpty(); }));
    }
    void showSaver()
    {
        setSignageKey("bScreenSaver", "1");
        ctl({"set", "idle", "600"});
        EXPECT_TRUE(waits([&] { return topWindow()["class"] == "nDeckWindow"; }));
    }
    // Two pictures of the middle differ, and neither is empty.
    bool filmRuns(const QRect& at)
    {
        const QRect middle(at.left() + at.width() / 4, at.top() + at.height() / 4, at.width() / 2,
                           at.height() / 2);
        const QImage before = screen().copy(middle);
        return waits([&] { return screen().copy(middle) != before; }, 4000);
    }
    // Numbered pictures follow each other exactly there, whole.
    bool playsAt(const QRect& at)
    {
        int first = -1;
        return waits([&] {
            const QImage picture = screen().copy(at);
            const int number = numberIn(picture);
            const bool isWhole =
                qGray(picture.pixel(1, 2)) > 128 && qGray(picture.pixel(1, at.height() - 3)) > 128;
            if (first < 0)
                first = number;
            return isWhole && number >= 0 && number != first;
        });
    }
    // The picture of the phone that stands for "nothing to show".
    QColor defaultPicture()
    {
        return QImage(root() + "/phone/resource/theme/default/bmp/misc/nDeck_Default.jpg").pixelColor(10, 10);
    }

    SignServer server;
};

const QColor Red(220, 30, 30), Green(30, 180, 60), Blue(30, 60, 200), Orange(240, 150, 20);

} // namespace

TEST_F(Signage, TheRoadFromAnEmptyFolderToTheScreen)
{
    server.putMedia("red.png", picture(Red));
    server.putMedia("green.jpg", picture(Green, "jpg"));
    server.putMedia("back.png", picture(Orange));
    server.copyMedia("film.mp4", HX_BUILD_DIR "/signageDemo/media/day.mp4");
    server.putLayout(
        "1-pictures.xml",
        layout(signRegion(QRect(0, 0, 400, 480), signImage("red.png", 1) + signImage("green.jpg", 1)) +
               signRegion(QRect(400, 0, 400, 480), signImage("red.png", 2, "phoneNum=\"600\""))));
    server.putLayout(
        "2-text.xml",
        layout(signRegion(QRect(0, 0, 800, 240),
                          signText("<div style='font-size:60px;color:#ffffff'>Welcome</div>", 3)) +
                   signRegion(QRect(0, 400, 800, 80),
                              signText("<span style='font-size:40px;color:#ffffff'>running text</span>", 3,
                                       "direction=\"left\" scrollamount=\"6\"")),
               "background=\"back.png\""));
    server.putLayout("3-film.xml", layout(signRegion(QRect(0, 0, 640, 352), signVideo("film.mp4", 3))));
    server.putLayout("4-meeting.xml", layout(signRegion(QRect(0, 0, 800, 480), signImage("green.jpg", 2))),
                     "applet=\"meeting\"");
    openNdeck();

    ASSERT_TRUE(shows(600, 200, Red)) << qPrintable(folder().join(' '));
    EXPECT_TRUE(shows(200, 200, Green)) << "the second picture of the first region";
    shot("signage-pictures");
    EXPECT_TRUE(waits([&] { return isLike(screen().pixelColor(790, 390), Orange); })) << "the background";
    ASSERT_TRUE(waits([&] {
        const QImage now = screen();
        for (int x = 0; x < 800; x += 2) {
            if (isLike(now.pixelColor(x, 440), Qt::white))
                return true;
        }
        return false;
    })) << "the marquee runs over the background";
    shot("signage-text");
    ASSERT_TRUE(waits([&] {
        const QImage now = screen();
        return isLike(now.pixelColor(700, 400), QColor("#203040")) &&
               !isLike(now.pixelColor(320, 176), QColor("#203040")) &&
               !isLike(now.pixelColor(320, 176), Qt::black);
    })) << "the film";
    shot("signage-film");
    EXPECT_TRUE(waits([&] { return logOf("lamp").contains("register 1"); }));
    EXPECT_TRUE(shows(400, 400, Green));
    shot("signage-meeting");
    EXPECT_TRUE(logOf("saver").contains("register 7 0"));
    EXPECT_TRUE(waits([&] { return logOf("lamp").contains("unregister 0"); }))
        << "with the end of its layout";

    // In step: what the schedule names under plain names, nothing in between.
    EXPECT_EQ(folder(),
              (QStringList{"1-pictures.xml", "2-text.xml", "3-film.xml", "4-meeting.xml", "FileList.xml",
                           "back.png", "display.xml", "film.mp4", "green.jpg", "red.png", "register.tmp"}));
    EXPECT_GT(server.requestsFor("/service/register.htm"), 0);
    EXPECT_GT(server.requestsFor("/service/getschedule.htm"), 1);
    EXPECT_EQ(server.requestsFor("filePath=red.png"), 1);
}

TEST_F(Signage, ThePageTakesTheFrameOutOfTheCornerOfTheHomeScreen)
{
    server.putMedia("red.png", picture(Red));
    server.putLayout("red.xml", layout(signRegion(wholeScreen(), signImage("red.png", 2))));
    ctl({"set", "idle", "19"});
    ASSERT_TRUE(shows(629, 133, Red)) << "the corner";
    openNdeck();
    ASSERT_TRUE(shows(400, 400, Red));
    EXPECT_FALSE(waits([&] { return !isLike(screen().pixelColor(400, 400), Red); }, 1500)) << "and keeps it";
}

TEST_F(Signage, ADialButtonPlacesACall)
{
    server.putMedia("red.png", picture(Red));
    server.putLayout("call.xml",
                     layout(signRegion(QRect(0, 0, 800, 480), signImage("red.png", 5, "phoneNum=\"600\""))));
    openNdeck();
    ASSERT_TRUE(shows(400, 200, Red));
    EXPECT_TRUE(waits([&] {
        ctl({"touch", "400", "464"});
        return logOf("dial").contains("600 -1 -1");
    }));
}

TEST_F(Signage, WithTheNetworkDownTheShowGoesOn)
{
    server.putMedia("red.png", picture(Red));
    server.putLayout("a.xml", layout(signRegion(QRect(0, 0, 800, 480), signImage("red.png", 1))));
    openNdeck();
    ASSERT_TRUE(shows(400, 200, Red));
    const int before = server.requestsFor("getschedule");
    ctl({"set", "net", "state=0"});
    server.stop();
    // Several rounds of the timer fail meanwhile.
    QThread::msleep(3500);
    EXPECT_TRUE(shows(400, 200, Red, 0));
    EXPECT_TRUE(hasFile("a.xml") && hasFile("red.png"));
    ASSERT_TRUE(server.start());
    EXPECT_TRUE(waits([&] { return server.requestsFor("getschedule") > before; }));
    EXPECT_TRUE(shows(400, 200, Red, 0));
}

TEST_F(Signage, AServerThatIsGoneWhileTheNetworkIsUpLeavesTheMediaAndTheDefaultPicture)
{
    server.putMedia("red.png", picture(Red));
    server.putLayout("a.xml", layout(signRegion(QRect(0, 0, 800, 480), signImage("red.png", 1))));
    openNdeck();
    ASSERT_TRUE(shows(400, 200, Red));
    server.stop();
    EXPECT_TRUE(shows(10, 10, defaultPicture()));
    EXPECT_TRUE(waits([&] { return !hasFile("a.xml"); }));
    EXPECT_TRUE(hasFile("red.png"));
    shot("signage-server-gone");
    ASSERT_TRUE(server.start());
    EXPECT_TRUE(shows(400, 200, Red));
    EXPECT_TRUE(hasFile("a.xml"));
}

TEST_F(Signage, ALayoutEndsWithTheClock)
{
    server.putMedia("red.png", picture(Red));
    server.putMedia("green.png", picture(Green));
    ctl({"set", "clock", "2026-11-21 09:59:50"});
    server.putLayout("early.xml", layout(signRegion(QRect(0, 0, 800, 480), signImage("red.png", 1))),
                     "fromdt=\"2026-11-21 00:00:00\" todt=\"2026-11-21 10:00:00\"");
    server.putLayout("late.xml", layout(signRegion(QRect(0, 0, 800, 480), signImage("green.png", 1))),
                     "fromdt=\"2026-11-21 10:00:00\" todt=\"2026-11-21 23:00:00\"");
    openNdeck();
    ASSERT_TRUE(shows(400, 200, Red));
    EXPECT_FALSE(hasFile("late.xml")) << "outside its window a layout is not even fetched";
    ctl({"set", "clock", "2026-11-21 10:00:05"});
    EXPECT_TRUE(shows(400, 200, Green));
    EXPECT_TRUE(waits([&] { return !hasFile("early.xml"); }));
    ctl({"set", "clock", "2026-11-21 23:30:00"});
    EXPECT_TRUE(shows(10, 10, defaultPicture()));
}

TEST_F(Signage, AReplacedFileUnderTheSameNameIsTakenUpWhole)
{
    server.putMedia("red.png", picture(Red));
    server.putLayout("a.xml", layout(signRegion(QRect(0, 0, 800, 480), signImage("red.png", 1))));
    openNdeck();
    ASSERT_TRUE(shows(400, 200, Red));
    server.putMedia("red.png", picture(Blue));
    // The frame counts as changed when its layouts differ.
    server.putLayout("a.xml", layout(signRegion(QRect(0, 0, 800, 480), signImage("red.png", 2))));
    QColor seen;
    EXPECT_TRUE(waits([&] {
        seen = screen().pixelColor(400, 200);
        return isLike(seen, Blue);
    })) << qPrintable(seen.name());
    EXPECT_TRUE(waits([&] { return !hasFile("red.png.new") && !hasFile("red.png.ing"); }));
}

TEST_F(Signage, AKilledPhoneShowsWhatItHad)
{
    server.putMedia("red.png", picture(Red));
    server.putLayout("a.xml", layout(signRegion(QRect(0, 0, 800, 480), signImage("red.png", 1))));
    openNdeck();
    ASSERT_TRUE(shows(400, 200, Red));
    kill();
    start();
    ctl({"set", "net", "state=2"});
    openNdeck();
    EXPECT_TRUE(shows(400, 200, Red));
    EXPECT_EQ(server.requestsFor("filePath=red.png"), 1);
}

TEST_F(Signage, AFilmThatGoesOnInACallKeepsItsPlaceAndItsScale)
{
    const QString film = root() + "/numbered.mp4";
    makeNumberedFilm(film,
                     "mp4mux name=m ! filesink name=out %1 ! x264enc key-int-max=25 speed-preset=veryfast ! "
                     "h264parse ! m.",
                     {250, QSize(400, 240)});
    server.copyMedia("film.mp4", film);
    server.putLayout("film.xml",
                     layout(signRegion(QRect(200, 100, 400, 240), signVideo("film.mp4", 4)) +
                            signRegion(QRect(0, 0, 160, 40), signText("", 4, "phoneNum=\"600\""))));
    setSignageKey("bPlayVideoInTalk", "1");
    ctl({"set", "line", "0", "state=5", "user=1001", "server=pbx"});
    openNdeck();
    // The video plane's grid takes some of the region.
    const QRect alone(208, 100, 384, 240);
    EXPECT_TRUE(playsAt(alone)) << "before any call";
    ASSERT_TRUE(waits([&] {
        ctl({"touch", "80", "24"});
        return !logOf("dial").isEmpty();
    }));
    waitPage("frmCall");
    ASSERT_TRUE(waits([&] { return !frameInCall().isEmpty(); }));
    EXPECT_EQ(frameInCall(), QRect(304, 66, 480, 288));
    const QRect beside(432, 66 + 60, 224, 144);
    EXPECT_TRUE(playsAt(beside));
    shot("signage-film-in-call");
    const QImage around = screen();
    for (const QPoint& outside : {beside.topLeft() + QPoint(-4, 70), beside.topLeft() + QPoint(4, -4),
                                  beside.bottomLeft() + QPoint(4, 4), beside.topRight() + QPoint(4, 70)})
        EXPECT_LT(qGray(around.pixel(outside)), 100) << outside.x() << ' ' << outside.y();
    softKey(3);
    ASSERT_TRUE(waits([&] { return topWindow()["class"] != "frmCall"; }));
    openNdeck();
    EXPECT_TRUE(playsAt(alone)) << "after the call";
    EXPECT_TRUE(logOf("trace").filter("is refused").isEmpty())
        << qPrintable(logOf("trace").filter("is refused").join(' '));
}

TEST_F(Signage, ACallStopsTheFilmUnlessItMayGoOn)
{
    server.copyMedia("film.mp4", HX_BUILD_DIR "/signageDemo/media/day.mp4");
    server.putLayout("film.xml",
                     layout(signRegion(QRect(0, 0, 800, 480), signVideo("film.mp4", 4)) +
                            signRegion(QRect(0, 0, 160, 40), signText("", 4, "phoneNum=\"600\""))));
    ctl({"set", "line", "0", "state=5", "user=1001", "server=pbx"});
    openNdeck();
    // Until the files are there, a turn of the layout shows that they are on their way.
    ASSERT_TRUE(waits([&] { return filmRuns(wholeScreen()); })) << "before any call";
    for (const char* setting : {"0", "1"}) {
        setSignageKey("bPlayVideoInTalk", setting);
        // A new turn of the layout may come between finger down and finger up.
        const int dialled = int(logOf("dial").size());
        ASSERT_TRUE(waits([&] {
            ctl({"touch", "80", "24"});
            return logOf("dial").size() > dialled;
        })) << setting;
        waitPage("frmCall");
        ASSERT_TRUE(waits([&] { return !frameInCall().isEmpty(); })) << setting;
        EXPECT_EQ(filmRuns(frameInCall()), *setting == '1') << setting;
        shot(QString("signage-call-%1").arg(setting));
        softKey(3);
        ASSERT_TRUE(waits([&] { return topWindow()["class"] != "frmCall"; }));
        openNdeck();
        EXPECT_TRUE(filmRuns(wholeScreen())) << "after the call, " << setting;
    }
}

TEST_F(Signage, EveryCallThatRingsIsSeenWhole)
{
    server.putMedia("red.png", picture(Red));
    server.putLayout("red.xml", layout(signRegion(wholeScreen(), signImage("red.png", 2))));
    openNdeck();
    ASSERT_TRUE(shows(400, 400, Red));
    key("Return");
    QImage alone;
    // Before the first call no show has ever been beside one.
    const std::function<void()> before[] = {[] {}, [this] { showTile(); }, [this] { openNdeck(); },
                                            [this] { showSaver(); }, [this] { openPage("WAN"); }};
    for (int call = 0; call < int(std::size(before)); ++call) {
        setSignageKey("bKeepShow", QString::number(call % 2));
        before[call]();
        waitIdle();
        ring();
        for (int look = 0; look < kLooksWhileItRings; ++look) {
            const QImage picture = ringing();
            if (alone.isNull())
                alone = picture;
            EXPECT_TRUE(!picture.isNull() && picture == alone) << call << ' ' << look;
        }
        answer();
        EXPECT_TRUE(showsInTalk(Red)) << call;
        shot(QString("signage-call-%1").arg(call));
        endCall();
    }
    alone.save(HX_BUILD_DIR "/shots/signage-call-rings.png");
    EXPECT_EQ(topWindow()["class"], "dlgWan");
    softKey(3);
    showTile();
    EXPECT_TRUE(shows(629, 133, Red));
    openNdeck();
    EXPECT_TRUE(shows(400, 400, Red)) << "after the calls";
}

TEST_F(Signage, ADeclinedCallAndABusyOneLeaveNothingBehind)
{
    server.putMedia("red.png", picture(Red));
    server.putLayout("red.xml", layout(signRegion(wholeScreen(), signImage("red.png", 2))));
    openNdeck();
    ASSERT_TRUE(shows(400, 400, Red));
    key("Return");
    takeCall();
    EXPECT_TRUE(showsInTalk(Red));
    endCall();
    for (const char* number : {"333", "busy"}) {
        showTile();
        ctl({"ring", number, "0"});
        waitPage("frmCall");
        if (*number == '3')
            softKey(3);
        EXPECT_TRUE(waits([&] {
            EXPECT_TRUE(frameInCall().isEmpty() || !isInCall()) << number;
            return !isInCall();
        }));
        waitIdle();
        EXPECT_EQ(topWindow()["class"], "frmDesktop");
        EXPECT_TRUE(frameInCall().isEmpty()) << "somebody was there, so the tile waits";
    }
}

TEST_F(Signage, WhatWasOverACallGivesTheShowBack)
{
    server.putMedia("red.png", picture(Red));
    server.putMedia("green.png", picture(Green));
    server.putLayout("red.xml", layout(signRegion(wholeScreen(), signImage("red.png", 2))));
    const auto opened = [&](const char* page) {
        openPage(page);
        EXPECT_TRUE(waits([&] { return !isInCall(); })) << page;
        waitIdle();
    };
    for (const char* kept : {"0", "1"}) {
        setSignageKey("bKeepShow", kept);
        showTile();
        takeCall();
        EXPECT_TRUE(showsInTalk(Red));
        opened("WAN");
        softKey(3);
        EXPECT_TRUE(showsInTalk(Red)) << "a page";
        opened("Nonsense");
        shot("signage-call-box");
        key("Return");
        EXPECT_TRUE(showsInTalk(Red)) << "a box, with a key";
        opened("Nonsense");
        tap(537, 304);
        EXPECT_TRUE(showsInTalk(Red)) << "a box, with a finger";
        opened("Ndeck");
        EXPECT_TRUE(shows(20, 400, Red));
        key("Return");
        EXPECT_TRUE(showsInTalk(Red)) << "the show itself";
        shot("signage-call-given-back");
        endCall();
    }
    takeCall();
    EXPECT_TRUE(showsInTalk(Red));
    server.putLayout("red.xml", layout(signRegion(wholeScreen(), signImage("green.png", 2))));
    EXPECT_TRUE(showsInTalk(Green)) << "a schedule that came in talk";
}

TEST_F(Signage, InEveryCallAFilmThatMayNotGoOnPauses)
{
    server.copyMedia("film.mp4", HX_BUILD_DIR "/signageDemo/media/day.mp4");
    server.putLayout("film.xml", layout(signRegion(QRect(0, 0, 640, 480), signVideo("film.mp4", 4))));
    openNdeck();
    ASSERT_TRUE(waits([&] { return filmRuns(wholeScreen()); }));
    const QRect film(304, 66, 384, 288);
    const QImage pause(root() + "/phone/resource/theme/default/bmp/misc/video_pause.jpg");
    const auto pauses = [&] {
        return waits([&] { return isInCall() && isLike(screen().copy(film), pause.scaled(film.size())); },
                     5000);
    };
    for (int call = 1; call <= 3; ++call) {
        takeCall();
        EXPECT_TRUE(pauses()) << call;
        shot(QString("signage-call-pause-%1").arg(call));
        if (call == 2) {
            openPage("WAN");
            EXPECT_TRUE(waits([&] { return !isInCall(); }));
            softKey(3);
            EXPECT_TRUE(pauses()) << "after a page";
            openNdeck();
            EXPECT_TRUE(waits([&] { return !isInCall(); }));
            key("Return");
            EXPECT_TRUE(pauses()) << "after the show";
            EXPECT_FALSE(filmRuns(film)) << "the next turn of the layout";
            EXPECT_TRUE(pauses());
        }
        endCall();
        openNdeck();
        EXPECT_TRUE(filmRuns(wholeScreen())) << "after the call " << call;
    }
}

TEST_F(Signage, AFilmWithPlainSoundPlaysBesideEveryCall)
{
    const QString film = root() + "/numbered.avi";
    makeNumberedFilm(
        film,
        "avimux name=m ! filesink name=out audiotestsrc num-buffers=470 samplesperbuffer=1024 ! "
        "audio/x-raw,format=S16LE,rate=48000,channels=2 ! m. %1 ! avenc_mpeg4 bitrate=4000000 ! m.",
        {250, QSize(400, 240)});
    server.copyMedia("film.avi", film);
    server.putLayout("film.xml", layout(signRegion(QRect(200, 100, 400, 240), signVideo("film.avi", 4))));
    setSignageKey("bPlayVideoInTalk", "1");
    const QRect alone(208, 100, 384, 240), beside(432, 66 + 60, 224, 144);
    for (int call = 1; call <= 2; ++call) {
        openNdeck();
        EXPECT_TRUE(playsAt(alone)) << call;
        takeCall();
        EXPECT_TRUE(playsAt(beside)) << call;
        openPage("WAN");
        EXPECT_TRUE(waits([&] { return !isInCall(); }));
        softKey(3);
        EXPECT_TRUE(playsAt(beside)) << call << ", after a page";
        shot("signage-film-beside");
        endCall();
    }
}
