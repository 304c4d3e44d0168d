#include "media/videoAssistant.h"
#include "host/services/messages/messageBus.h"
#include "support/host/player.h"
#include "tests/media/fakePlayer.h"
#include "tests/media/mediaTest.h"
#include <QCoreApplication>
#include <QDialog>
#include <QEvent>
#include <memory>

namespace {

QList<unsigned> s_posted;

} // namespace

extern "C" int __real__Z18msgPostMsgToThreadP12chThreadBasejjj(chThreadBase* thread, unsigned message,
                                                               unsigned wParam, unsigned lParam);
extern "C" int __wrap__Z18msgPostMsgToThreadP12chThreadBasejjj(chThreadBase* thread, unsigned message,
                                                               unsigned wParam, unsigned lParam);

int __wrap__Z18msgPostMsgToThreadP12chThreadBasejjj(chThreadBase* thread, unsigned message, unsigned wParam,
                                                    unsigned lParam)
{
    s_posted.append(message);
    return __real__Z18msgPostMsgToThreadP12chThreadBasejjj(thread, message, wParam, lParam);
}

namespace {

class Surface : public videoAssistant
{
public:
    using videoAssistant::videoAssistant;
    void OnFocusIn() override { ++nFocus; }
    int nFocus = 0;
};

class VideoSurface : public MediaTest
{
protected:
    VideoSurface()
    {
        EXPECT_EQ(messageServiceStart("app_hxPhone"), 1);
        dev_set_output_volume(30);
    }
    ~VideoSurface() override
    {
        videoAssistant::SetTalkWindowTest(nullptr);
        messageServiceStop();
    }
    void startPlayers()
    {
        movie = std::make_unique<FakePlayer>("app_hxMovie");
        media = std::make_unique<FakePlayer>("app_hxMedia");
    }
    static bool consumes(videoAssistant& surface, QEvent::Type type)
    {
        QEvent event(type);
        return surface.eventFilter(&surface, &event);
    }
    static constexpr unsigned phone = PLAYER_THREAD_PHONE;

    std::unique_ptr<FakePlayer> movie;
    std::unique_ptr<FakePlayer> media;
};

TEST_F(VideoSurface, AnEmptyListPlaysNothing)
{
    startPlayers();
    videoAssistant surface(1, nullptr);
    FileList list;
    EXPECT_FALSE(surface.LoadFileList(list));
    EXPECT_TRUE(traces().isEmpty());
}

TEST_F(VideoSurface, WithoutAPlayerTheListStaysAndTheLogTells)
{
    movie = std::make_unique<FakePlayer>("app_hxMovie");
    videoAssistant surface(1, nullptr);
    FileList list = listOf({"/rundata/a.mp4"});
    EXPECT_FALSE(surface.LoadFileList(list));
    EXPECT_TRUE(isTraced("Please run hxMedai and hxPlayer not run first"));
    EXPECT_EQ(list.size(), 1);
    EXPECT_TRUE(movie->told().isEmpty());
}

TEST_F(VideoSurface, AListIsClearedFilledAndPlayedInThatOrder)
{
    startPlayers();
    videoAssistant surface(1, nullptr);
    FileList list = listOf({"/rundata/a.mp4", "/rundata/\u00e4.mp4"});
    EXPECT_TRUE(surface.LoadFileList(list));
    EXPECT_TRUE(list.empty()) << "the list is used up";
    ASSERT_TRUE(movie->hears(4));
    const QList<tagTold> told = movie->told();
    EXPECT_EQ(movie->messages(), QList<unsigned>({0x11000A, 0x110009, 0x110009, 0x110003}));
    EXPECT_EQ(told[0].wParam, 0u);
    EXPECT_EQ(told[0].extra, QByteArray());
    EXPECT_EQ(told[1].wParam, 0u);
    EXPECT_EQ(told[1].extra, QByteArray("/rundata/a.mp4", 15)) << "with its terminating zero";
    EXPECT_EQ(told[2].extra, QByteArray("/rundata/\xc3\xa4.mp4", 16));
    EXPECT_EQ(told[3].wParam, phone);
    for (const tagTold& one : told)
        EXPECT_FALSE(one.bSent) << "nobody waits";
    EXPECT_EQ(traces(), QStringList({"Push media: /rundata/a.mp4", "Push media: /rundata/\u00e4.mp4"}));
}

TEST_F(VideoSurface, OneFileIsAListOfOne)
{
    startPlayers();
    videoAssistant surface(1, nullptr);
    EXPECT_TRUE(surface.LoadFile("/rundata/a.mp4"));
    ASSERT_TRUE(movie->hears(3));
    EXPECT_EQ(movie->messages(), QList<unsigned>({0x11000A, 0x110009, 0x110003}));
}

TEST_F(VideoSurface, APlayingSurfaceShowsTheVideoNotItsBackground)
{
    startPlayers();
    QDialog dialog;
    dialog.setGeometry(0, 0, 800, 480);
    videoAssistant* surface = new videoAssistant(1, &dialog);
    surface->setGeometry(0, 0, 800, 480);
    dialog.show();
    QImage frame(8, 8, QImage::Format_RGB32);
    frame.fill(Qt::red);
    surface->SetFrame(frame);
    surface->ShowBackground(1);
    EXPECT_EQ(surface->grab().toImage().pixel(400, 240), 0xff000000);
    EXPECT_TRUE(surface->LoadFile("/rundata/a.mp4"));
    EXPECT_EQ(surface->grab().toImage().pixel(400, 240), 0xffff0000);
    surface->DestructRes();
    EXPECT_NE(surface->grab().toImage().pixel(400, 240), 0xffff0000) << "the surface is given up";
}

TEST_F(VideoSurface, EachOperationHasItsMessage)
{
    startPlayers();
    videoAssistant surface(1, nullptr);
    surface.PlayLast();
    surface.PlayNext();
    surface.SwitchPlayPause();
    EXPECT_TRUE(surface.IsPaused());
    surface.SwitchPlayPause();
    EXPECT_FALSE(surface.IsPaused());
    surface.SwitchPlayPause();
    surface.Stop();
    ASSERT_TRUE(movie->hears(6));
    EXPECT_EQ(movie->messages(),
              QList<unsigned>({0x110007, 0x110008, 0x110004, 0x110005, 0x110004, 0x110006}));
    const QList<tagTold> told = movie->told();
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(told[i].wParam, 0u) << i;
    EXPECT_EQ(told[5].wParam, phone);
    EXPECT_TRUE(media->told().isEmpty());
}

TEST_F(VideoSurface, TearingDownGivesTheSurfaceUpAndBringsTheSoundBack)
{
    startPlayers();
    QDialog dialog;
    videoAssistant* surface = new videoAssistant(1, &dialog);
    dialog.show();
    kit::settle();
    dev_set_output_volume(80);
    surface->SetOutPutMute(1);
    EXPECT_EQ(dev_get_output_mute(), 1);
    surface->DestructRes();
    ASSERT_TRUE(media->hears(1) && movie->hears(1));
    EXPECT_EQ(media->messages(), QList<unsigned>{0x70002});
    EXPECT_FALSE(media->told()[0].bSent);
    EXPECT_EQ(movie->messages(), QList<unsigned>{0x110006});
    EXPECT_EQ(dev_get_output_mute(), 0);
    EXPECT_EQ(dev_get_output_volume(), 30);
}

TEST_F(VideoSurface, TheSessionEndsBeforeThePlayerStops)
{
    startPlayers();
    videoAssistant surface(1, nullptr);
    s_posted.clear();
    surface.DestructRes();
    EXPECT_EQ(s_posted, QList<unsigned>({0x70002, 0x110006}));
}

TEST_F(VideoSurface, TearingDownTwiceDoesNothingTheSecondTime)
{
    startPlayers();
    videoAssistant surface(1, nullptr);
    surface.DestructRes();
    dev_set_output_volume(70);
    dev_set_output_mute(1);
    surface.DestructRes();
    EXPECT_EQ(dev_get_output_volume(), 70);
    EXPECT_EQ(dev_get_output_mute(), 1);
    dev_set_output_mute(0);
    surface.PlayNext();
    ASSERT_TRUE(movie->hears(2) && media->hears(1));
    EXPECT_EQ(movie->messages(), QList<unsigned>({0x110006, 0x110008}));
    EXPECT_EQ(media->messages(), QList<unsigned>{0x70002});
}

TEST_F(VideoSurface, AClosedSurfaceAlwaysTearsDown)
{
    startPlayers();
    videoAssistant surface(1, nullptr);
    surface.show();
    surface.DestructRes();
    surface.close();
    surface.DestructRes();
    ASSERT_TRUE(movie->hears(2) && media->hears(2));
    surface.PlayNext();
    ASSERT_TRUE(movie->hears(3));
    EXPECT_EQ(movie->messages(), QList<unsigned>({0x110006, 0x110006, 0x110008}));
    EXPECT_EQ(media->messages(), QList<unsigned>({0x70002, 0x70002}));
}

TEST_F(VideoSurface, TheSpeakerIsClaimedWhileTheWindowIsActive)
{
    QDialog dialog;
    videoAssistant* surface = new videoAssistant(1, &dialog);
    dialog.show();
    dialog.activateWindow();
    kit::settle();
    EXPECT_EQ(dev_get_output_volume(), 50);
    QDialog other;
    other.show();
    other.activateWindow();
    kit::settle();
    EXPECT_EQ(dev_get_output_volume(), 30);
    (void)surface;
}

TEST_F(VideoSurface, ActivationIsConsumedAndDeactivationIsNot)
{
    Surface surface(1, nullptr);
    EXPECT_TRUE(consumes(surface, QEvent::WindowActivate));
    EXPECT_EQ(surface.nFocus, 1);
    EXPECT_FALSE(consumes(surface, QEvent::WindowDeactivate));
    EXPECT_EQ(surface.nFocus, 1);
    EXPECT_FALSE(consumes(surface, QEvent::Close));
    EXPECT_FALSE(consumes(surface, QEvent::User));
}

TEST_F(VideoSurface, EventsOfOthersAreNotItsOwn)
{
    Surface surface(1, nullptr);
    QObject other;
    QEvent event(QEvent::WindowActivate);
    EXPECT_FALSE(surface.eventFilter(&other, &event));
    EXPECT_EQ(surface.nFocus, 0);
    EXPECT_EQ(dev_get_output_volume(), 30);
}

TEST_F(VideoSurface, DuringACallTheSpeakerIsTheCalls)
{
    Surface surface(1, nullptr);
    videoAssistant::SetTalkWindowTest([] { return true; });
    EXPECT_TRUE(consumes(surface, QEvent::WindowActivate));
    EXPECT_EQ(surface.nFocus, 1);
    EXPECT_EQ(dev_get_output_volume(), 30);
    videoAssistant::SetTalkWindowTest([] { return false; });
    consumes(surface, QEvent::WindowActivate);
    EXPECT_EQ(dev_get_output_volume(), 50);
    videoAssistant::SetTalkWindowTest([] { return true; });
    consumes(surface, QEvent::WindowDeactivate);
    EXPECT_EQ(dev_get_output_volume(), 50) << "the claim stays";
}

TEST_F(VideoSurface, ThePanelsSurfaceDoesNotFilterItself)
{
    Surface panel(nullptr);
    QEvent event(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&panel, &event);
    EXPECT_EQ(panel.nFocus, 0);
    EXPECT_EQ(dev_get_output_volume(), 30);
    panel.show();
    panel.close();
    EXPECT_TRUE(traces().isEmpty());
    EXPECT_TRUE(panel.inherits("videoAssistant"));
    EXPECT_TRUE(panel.inherits("QLabel"));
}

TEST_F(VideoSurface, AClaimEndsWithItsHolder)
{
    {
        autoSpeaker speaker(60, 1);
        EXPECT_EQ(speaker.nType, 2);
        EXPECT_EQ(speaker.nFlag, 1);
        EXPECT_EQ(dev_get_output_volume(), 60);
        autoSpeaker later(70, 0);
        EXPECT_EQ(dev_get_output_volume(), 60);
        later.setNewVoiceInfo();
        EXPECT_EQ(dev_get_output_volume(), 70);
        later.setOldVoiceInfo();
        EXPECT_EQ(dev_get_output_volume(), 60);
    }
    EXPECT_EQ(dev_get_output_volume(), 30);
}

} // namespace
