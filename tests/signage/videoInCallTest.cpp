// The signage video and a call, which share the media server.
#include "media/videoAssistant.h"
#include "signage/nDeckWindow.h"
#include "tests/signage/signageVideo.h"
#include <QEvent>

namespace {

using SignageVideoInCall = SignageVideo;

TEST_F(SignageVideoInCall, ACallStopsTheVideoAndALaterStartIsRefusedWhileItTalks)
{
    play();
    setCalls(1, 1);
    VOICE_PARAM call = {};
    EXPECT_TRUE(manager().SetPlayParam(&call, kSession));
    EXPECT_TRUE(isTraced(QString::asprintf("SetPlayParam(%p, 7)!", static_cast<void*>(&call))));
    EXPECT_FALSE(manager().IsMoviePlaying());
    EXPECT_EQ(movieMessages(), QList<unsigned>{0x110006});
    EXPECT_EQ(media->messages(), QList<unsigned>{0x70002});
    manager().SetPlayRegion(region());
    start();
    EXPECT_TRUE(isTraced("---------------not start----------"));
    EXPECT_FALSE(manager().IsMoviePlaying());
    EXPECT_EQ(movieMessages(), QList<unsigned>{0x110006});
    EXPECT_EQ(media->messages(), QList<unsigned>{0x70002});
    EXPECT_EQ(call.nAudLocalPort, 0) << "nobody touches the call's ports";
}

TEST_F(SignageVideoInCall, ACallThatOnlyTheHostKnowsOfRefusesTheStartToo)
{
    startPlayers();
    prepare();
    setCalls(1, 1);
    start();
    EXPECT_TRUE(isTraced("---------------not start----------"));
    EXPECT_TRUE(movieMessages().isEmpty());
    setCalls(1, 0); // rings, and nobody talks
    start();
    EXPECT_TRUE(manager().IsMoviePlaying());
}

TEST_F(SignageVideoInCall, WhenTheCallEndsTheFilePlaysInItsOwnSessionAgain)
{
    play();
    setCalls(1, 1);
    VOICE_PARAM call = {};
    manager().SetPlayParam(&call, kSession);
    setCalls(0, 0);
    EXPECT_TRUE(manager().SetPlayParam(nullptr, 99));
    forgetAll();
    manager().SetPlayRegion(region());
    start();
    ASSERT_TRUE(movie->hears(1) && media->hears(1));
    EXPECT_STREQ(recordOf<ADDR_PARAM>(movie->told()[0]).szFile, kFile);
    EXPECT_EQ(media->told()[0].message, 0x70001u);
    EXPECT_EQ(media->told()[0].wParam, 0u) << "its own session";
    EXPECT_EQ(recordOf<VOICE_PARAM>(media->told()[0]).rcRemote.width, 304);
}

TEST_F(SignageVideoInCall, AVideoInTalkPlaysInTheSessionOfTheCall)
{
    setKey("bPlayVideoInTalk", 1);
    startPlayers();
    prepare();
    setCalls(1, 1);
    VOICE_PARAM call = {};
    qstrncpy(call.szLocalIP, "10.0.0.1", sizeof call.szLocalIP);
    qstrncpy(call.szVidRemoteIP, "10.0.0.3", sizeof call.szVidRemoteIP);
    call.nAudLocalPort = 5000;
    call.nAudRemotePort = 6000;
    call.audDec.nPayload = 8;
    EXPECT_TRUE(manager().SetPlayParam(&call, kSession));
    EXPECT_STREQ(call.szLocalIP, "10.0.0.1");
    EXPECT_STREQ(call.szAudRemoteIP, "192.168.1.20");
    EXPECT_STREQ(call.szVidRemoteIP, "10.0.0.3");
    EXPECT_EQ(call.audDec.nPayload, 8) << "its audio is there";
    EXPECT_EQ(call.nVidLocalPort, 5020);
    EXPECT_EQ(call.nVidRemotePort, 6020);
    EXPECT_EQ(call.rcRemote.width, 304);
    start();
    EXPECT_TRUE(manager().IsMoviePlaying());
    ASSERT_TRUE(movie->hears(1));
    const ADDR_PARAM to = recordOf<ADDR_PARAM>(movie->told()[0]);
    EXPECT_STREQ(to.szLocalIP, "10.0.0.1");
    EXPECT_STREQ(to.szRemoteIP, "10.0.0.3");
    EXPECT_EQ(to.nLocalAudioPort, 0) << "no audio was added";
    EXPECT_EQ(to.nRemoteVideoPort, 6020);
    manager().SetPlayRegion(chRect(0, 0, 160, 160));
    ASSERT_TRUE(media->hears(1));
    EXPECT_EQ(media->told()[0].message, 0x7000du);
    EXPECT_EQ(media->told()[0].wParam, unsigned(kSession));
    manager().PausePlayVideo();
    manager().StopPlayVideo(0);
    EXPECT_EQ(movieMessages(), QList<unsigned>({0x110002, 0x110006}));
    EXPECT_EQ(media->messages(), QList<unsigned>{0x7000d}) << "the session is the call's";
    EXPECT_EQ(dev_get_output_mute(), 0);
    EXPECT_EQ(manager().GetPlayRegion(), chRect(0, 0, 160, 160));
}

TEST_F(SignageVideoInCall, ACallWithBothStreamsNeedsNothingAndPlaysNothing)
{
    setKey("bPlayVideoInTalk", 1);
    startPlayers();
    prepare();
    VOICE_PARAM call = {};
    qstrncpy(call.szLocalIP, "10.0.0.1", sizeof call.szLocalIP);
    qstrncpy(call.szAudRemoteIP, "10.0.0.2", sizeof call.szAudRemoteIP);
    qstrncpy(call.szVidRemoteIP, "10.0.0.3", sizeof call.szVidRemoteIP);
    call.nAudLocalPort = call.nAudRemotePort = call.nVidLocalPort = call.nVidRemotePort = 5000;
    EXPECT_TRUE(manager().SetPlayParam(&call, kSession));
    start();
    EXPECT_TRUE(isTraced("m_bMakeUpParam = 0, bOk = 0 movelpay = "));
    EXPECT_TRUE(movieMessages().isEmpty());
}

TEST_F(SignageVideoInCall, TheSameParametersAgainChangeNothing)
{
    setKey("bPlayVideoInTalk", 1);
    startPlayers();
    prepare();
    VOICE_PARAM call = {};
    manager().SetPlayParam(&call, kSession);
    start();
    EXPECT_TRUE(manager().IsMoviePlaying());
    EXPECT_TRUE(manager().SetPlayParam(&call, kSession));
    EXPECT_TRUE(manager().IsMoviePlaying());
    EXPECT_TRUE(manager().SetPlayParam(&call, kSession + 1));
    EXPECT_FALSE(manager().IsMoviePlaying());
}

TEST_F(SignageVideoInCall, ToldAgainThatThereIsNoCallItMakesItsParametersUpAnew)
{
    play();
    manager().PausePlayVideo();
    EXPECT_TRUE(manager().SetPlayParam(nullptr, 0));
    forgetAll();
    start();
    ASSERT_TRUE(media->hears(1));
    const VOICE_PARAM voice = recordOf<VOICE_PARAM>(media->told()[0]);
    EXPECT_EQ(voice.nAudLocalPort, 35800);
    EXPECT_EQ(voice.rcRemote.width, 304);
}

TEST_F(SignageVideoInCall, TheWindowOfACallLeavesTheSpeakerToTheCall)
{
    manager();
    dev_set_output_volume(30);
    videoAssistant surface(1, nullptr);
    QEvent event(QEvent::WindowActivate);
    GetnDeckWindow().setNDeckWindowType(NDECK_WINDOW_TALK);
    surface.eventFilter(&surface, &event);
    EXPECT_EQ(dev_get_output_volume(), 30);
    GetnDeckWindow().setNDeckWindowType(NDECK_WINDOW_PAGE);
    surface.eventFilter(&surface, &event);
    EXPECT_EQ(dev_get_output_volume(), 50);
}

} // namespace
