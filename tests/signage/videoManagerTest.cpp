#include "signage/nDeckDisplay.h"
#include "tests/kit/kitTime.h"
#include "tests/signage/signageVideo.h"
#include <QSemaphore>

namespace {

chRect aligned(int left, int right)
{
    GetNDeckVideoManager().SetPlayRegion(chRect(left, 5, right, 77));
    return GetNDeckVideoManager().GetPlayRegion();
}

TEST_F(SignageVideo, TheRegionIsMovedToTheGridOfTheVideoPlane)
{
    EXPECT_EQ(aligned(100, 400), chRect(112, 5, 400, 77));
    EXPECT_EQ(aligned(96, 400), chRect(96, 5, 400, 77));
    EXPECT_EQ(aligned(96, 390), chRect(96, 5, 96 + 288, 77));
    EXPECT_EQ(aligned(1, 18), chRect(16, 5, 16, 77));
    EXPECT_EQ(aligned(-20, 100), chRect(-16, 5, 96, 77));
    EXPECT_EQ(aligned(-16, 0), chRect(-16, 5, 0, 77));
}

TEST_F(SignageVideo, AFileIsAskedForItsDescriptionAndThePhoneWaits)
{
    startPlayers();
    EXPECT_TRUE(manager().SetPlayFile(kFile));
    ASSERT_EQ(movie->told().size(), 1);
    const tagTold asked = movie->told()[0];
    EXPECT_TRUE(asked.bSent);
    EXPECT_EQ(asked.message, 0x110001u);
    EXPECT_EQ(asked.wParam, kPhone);
    EXPECT_EQ(asked.extra, QByteArray(kFile, sizeof kFile));
    const QStringList told = traces();
    const qsizetype first = told.indexOf(QString("Get Movie SDP From File[%1]").arg(kFile));
    ASSERT_GE(first, 0);
    EXPECT_EQ(told.mid(first + 1),
              QStringList({"Print Movie SDP", "Aud Dec Codec Payload: 101", "Aud Dec Codec Name: MP4A-LATM",
                           "Aud Dec Codec Param: 101 config=1190", "Aud Codec Rate: 48000",
                           "Channel Number: 1", "Vid Dec Codec Payload: 102", "Vid Dec Codec Name: h264",
                           "Vid Dec Codec Param: 102 packetization-mode=1", "Vid Codec Rate: 90000"}));
}

TEST_F(SignageVideo, AReplyOfAnotherSizeIsRefusedAndTheDefaultStands)
{
    startPlayers(QByteArray(451, 'x'));
    prepare();
    EXPECT_TRUE(isTraced("SDP Extra Size(451 != 452) Error!"));
    start();
    ASSERT_TRUE(media->hears(1));
    const VOICE_PARAM session = recordOf<VOICE_PARAM>(media->told()[0]);
    EXPECT_STREQ(session.szAudMime, "mpeg4-generic");
    EXPECT_STREQ(
        session.szAudSdpParam,
        "96 profile-level-id=15;mode=AAC-hbr;sizelength=13;indexlength=3;indexdeltalength=3;config=1210");
    EXPECT_EQ(session.audDec.nPayload, 96);
    EXPECT_EQ(session.nAudRate, 44100);
    EXPECT_EQ(session.nChannels, 2);
    EXPECT_STREQ(session.szVidMime, "H264");
    EXPECT_STREQ(session.szVidSdpParam, "97 packetization-mode=1;profile-level-id=42C033;"
                                        "sprop-parameter-sets=Z0LAM6tAsEtCAAADAAIAAAMAYR4wZUA=,aM48gA==");
    EXPECT_EQ(session.vidDec.nPayload, 97);
    EXPECT_EQ(session.nVidRate, 90000);
    EXPECT_STREQ(session.audDec.szName, "AACLC");
    EXPECT_STREQ(session.vidDec.szName, "H264");
}

TEST_F(SignageVideo, APlayerThatDiesEndsTheWait)
{
    startPlayers(FakePlayer::kDeath);
    EXPECT_TRUE(manager().SetPlayFile(kFile));
    EXPECT_TRUE(isTraced("SDP Extra Size(0 != 452) Error!"));
}

TEST_F(SignageVideo, APlayerThatIsBusyIsNotWaitedForAndItsLateAnswerCounts)
{
    QSemaphore busy;
    std::atomic<bool> answered{false};
    movie = std::make_unique<FakePlayer>("app_hxMovie", [&](const tagTold&) {
        busy.acquire();
        answered = true;
        return bytesOf(fileSDP());
    });
    media = std::make_unique<FakePlayer>("app_hxMedia");
    EXPECT_TRUE(manager().SetPlayFile(kFile));
    EXPECT_FALSE(answered) << "the phone goes on";
    EXPECT_TRUE(manager().SetPlayRegion(region()));
    busy.release();
    EXPECT_TRUE(kit::waitUntil([&] { return answered.load(); }));
    start();
    ASSERT_TRUE(media->hears(1));
    EXPECT_EQ(recordOf<VOICE_PARAM>(media->told()[0]).vidDec.nPayload, 102);
    manager().StopPlayVideo(1);
}

TEST_F(SignageVideo, PlayersThatStandStillHoldNothingUp)
{
    QSemaphore still;
    std::atomic<int> answered{0};
    const FakePlayer::Answer answer = [&](const tagTold&) {
        still.acquire();
        ++answered;
        return QByteArray();
    };
    movie = std::make_unique<FakePlayer>("app_hxMovie", answer);
    media = std::make_unique<FakePlayer>("app_hxMedia", answer);
    EXPECT_TRUE(manager().SetPlayFile(kFile));
    EXPECT_TRUE(manager().SetPlayRegion(region()));
    start();
    EXPECT_TRUE(manager().IsMoviePlaying());
    ASSERT_TRUE(media->hears(1));
    const VOICE_PARAM session = recordOf<VOICE_PARAM>(media->told()[0]);
    EXPECT_EQ(session.vidDec.nPayload, 97) << "the default stands";
    manager().StopPlayVideo(1);
    EXPECT_EQ(answered, 0) << "nobody was waited for";
    still.release(10);
    movie->end(); // before what they answer with is gone
    media->end();
}

TEST_F(SignageVideo, AFileThatIsNotThereIsNotAskedFor)
{
    startPlayers();
    EXPECT_TRUE(manager().SetPlayFile("/rundata/nDeck/none.mp4"));
    EXPECT_TRUE(manager().SetPlayFile(""));
    EXPECT_TRUE(manager().SetPlayFile(nullptr));
    EXPECT_TRUE(movieMessages().isEmpty());
}

TEST_F(SignageVideo, TheMovieStartsHalfASecondAfterTheLastCallOfABurst)
{
    startPlayers();
    prepare();
    const kit::HeldClocks held;
    manager().StartPlayVideo();
    kit::stepTime(400);
    manager().StartPlayVideo();
    kit::stepTime(400);
    manager().StartPlayVideo();
    kit::stepTime(kSettleMs - 1);
    EXPECT_FALSE(manager().IsMoviePlaying());
    kit::stepTime(1);
    EXPECT_TRUE(manager().IsMoviePlaying());
    kit::stepTime(5000);
    EXPECT_EQ(movieMessages(), QList<unsigned>{0x110002}) << "once";
}

TEST_F(SignageVideo, AStartSendsTheStreamsToThePhoneItselfAndTheSessionAfterTheMute)
{
    startPlayers();
    prepare();
    start();
    ASSERT_TRUE(movie->hears(1) && media->hears(1));
    const tagTold play = movie->told()[0];
    EXPECT_EQ(play.message, 0x110002u);
    EXPECT_FALSE(play.bSent);
    EXPECT_EQ(play.wParam, kPhone);
    const ADDR_PARAM to = recordOf<ADDR_PARAM>(play);
    EXPECT_STREQ(to.szFile, kFile);
    EXPECT_STREQ(to.szLocalIP, "192.168.1.20");
    EXPECT_STREQ(to.szRemoteIP, "192.168.1.20");
    EXPECT_EQ(to.nLocalAudioPort, 35800);
    EXPECT_EQ(to.nRemoteAudioPort, 35600);
    EXPECT_EQ(to.nLocalVideoPort, 35820);
    EXPECT_EQ(to.nRemoteVideoPort, 35620);

    const tagTold session = media->told()[0];
    EXPECT_EQ(session.message, 0x70001u);
    EXPECT_TRUE(session.bSent);
    EXPECT_EQ(session.wParam, 0u);
    EXPECT_EQ(muteAtMedia, 1);
    const VOICE_PARAM voice = recordOf<VOICE_PARAM>(session);
    EXPECT_STREQ(voice.szLocalIP, "192.168.1.20");
    EXPECT_STREQ(voice.szAudRemoteIP, "192.168.1.20");
    EXPECT_STREQ(voice.szVidRemoteIP, "192.168.1.20");
    EXPECT_EQ(voice.nAudLocalPort, 35800);
    EXPECT_EQ(voice.nAudRemotePort, 35600);
    EXPECT_EQ(voice.nVidLocalPort, 35820);
    EXPECT_EQ(voice.nVidRemotePort, 35620);
    EXPECT_EQ(voice.audEnc.nPayload, 101);
    EXPECT_EQ(voice.audDec.nPayload, 101);
    EXPECT_STREQ(voice.audEnc.szName, "AACLC");
    EXPECT_STREQ(voice.audDec.szName, "AACLC");
    EXPECT_EQ(voice.vidEnc.nPayload, 102);
    EXPECT_EQ(voice.vidDec.nPayload, 102);
    EXPECT_STREQ(voice.vidEnc.szName, "H264");
    EXPECT_STREQ(voice.vidDec.szName, "H264");
    EXPECT_EQ(voice.nAudRate, 48000);
    EXPECT_EQ(voice.nVidRate, 90000);
    EXPECT_EQ(voice.nChannels, 1);
    EXPECT_STREQ(voice.szAudMime, "MP4A-LATM");
    EXPECT_STREQ(voice.szVidMime, "h264");
    EXPECT_STREQ(voice.szAudSdpParam, "101 config=1190");
    EXPECT_STREQ(voice.szVidSdpParam, "102 packetization-mode=1");
    EXPECT_EQ(voice.rcRemote.x, 96);
    EXPECT_EQ(voice.rcRemote.y, 10);
    EXPECT_EQ(voice.rcRemote.width, 304);
    EXPECT_EQ(voice.rcRemote.height, 240);
    EXPECT_EQ(voice.rcLocal.width, 0);

    for (const char* line :
         {"StartPlayVideo!", "---------------VoiceParam is NuLL------", "Add Voice Param Audio!",
          "Add Voice Param Video!", "Print Movie Param", "File Path: /rundata/nDeck/a.mp4",
          "Local IP Address: 192.168.1.20", "Remote IP Address: 192.168.1.20", "Local Audio Port: 35800",
          "Remote Audio Port: 35600", "Local Video Port: 35820", "Remote Video Port: 35620",
          "m_bMakeUpParam = 1, bOk = 1 movelpay = /rundata/nDeck/a.mp4"})
        EXPECT_TRUE(isTraced(line)) << line;
}

struct tagNames
{
    const char* audio;
    const char* video;
    const char* audioCodec;
    const char* videoCodec;
};

TEST_F(SignageVideo, TheCodecsFollowTheNamesOfTheStreams)
{
    for (const tagNames& names :
         {tagNames{"mp4a-latm", "MP4V-ES", "AACLC", "MPEG4"},
          tagNames{"MPEG4-GENERIC", "mp4v-es", "AACLC", "MPEG4"},
          tagNames{"PCMU", "H263-1998", "PCMA", "H263"}, tagNames{"", "VP8", "PCMA", "H263"},
          tagNames{"AMR", "H264", "PCMA", "H264"}}) {
        startPlayers(bytesOf(fileSDP(names.audio, names.video)));
        prepare();
        start();
        ASSERT_TRUE(media->hears(1));
        const VOICE_PARAM voice = recordOf<VOICE_PARAM>(media->told()[0]);
        EXPECT_STREQ(voice.audEnc.szName, names.audioCodec) << names.audio;
        EXPECT_STREQ(voice.audDec.szName, names.audioCodec) << names.audio;
        EXPECT_STREQ(voice.vidEnc.szName, names.videoCodec) << names.video;
        EXPECT_STREQ(voice.vidDec.szName, names.videoCodec) << names.video;
        manager().StopPlayVideo(0);
        movie.reset();
        media.reset();
    }
    EXPECT_EQ(traces().count("Can't Find Fit Audio Codec Name,Use Default PCMA!"), 3);
}

TEST_F(SignageVideo, TextsOfThePlayerThatDoNotEndAreCut)
{
    MOV_SDP sdp = fileSDP();
    memset(sdp.szAudName, 'a', sizeof sdp.szAudName);
    memset(sdp.szVidParam, 'v', sizeof sdp.szVidParam);
    startPlayers(bytesOf(sdp));
    prepare();
    start();
    ASSERT_TRUE(media->hears(1));
    const VOICE_PARAM voice = recordOf<VOICE_PARAM>(media->told()[0]);
    EXPECT_STREQ(voice.szAudMime, QByteArray(PLAYER_NAME_SIZE - 1, 'a').constData());
    EXPECT_STREQ(voice.szVidSdpParam, QByteArray(PLAYER_PARAM_SIZE - 1, 'v').constData());
}

TEST_F(SignageVideo, AnEmptyRegionStartsNothing)
{
    startPlayers();
    prepare();
    manager().SetPlayRegion(chRect(0, 0, -1, -1));
    start();
    EXPECT_TRUE(isTraced("Play Region(0, 0, 0, -1) is invalid!"));
    EXPECT_FALSE(isTraced("StartPlayVideo!"));
    EXPECT_TRUE(movieMessages().isEmpty());
}

TEST_F(SignageVideo, WithoutAPlayerNothingStarts)
{
    EXPECT_TRUE(manager().SetPlayFile(kFile));
    EXPECT_TRUE(manager().SetPlayRegion(region()));
    start();
    EXPECT_TRUE(isTraced("StartPlayVideo!"));
    EXPECT_FALSE(isTraced("---------------VoiceParam is NuLL------"));
    EXPECT_FALSE(manager().IsMoviePlaying());
}

TEST_F(SignageVideo, WithoutAFileNothingStarts)
{
    startPlayers();
    prepare();
    manager().SetPlayFile("/rundata/nDeck/none.mp4");
    start();
    EXPECT_FALSE(manager().IsMoviePlaying());
    EXPECT_TRUE(isTraced("m_bMakeUpParam = 0, bOk = 0 movelpay = "));
    EXPECT_TRUE(movieMessages().isEmpty());
    EXPECT_TRUE(media->told().isEmpty());
    EXPECT_EQ(dev_get_output_mute(), 0);
}

TEST_F(SignageVideo, AnEmptyDescriptionIsAskedForAgain)
{
    startPlayers(QByteArray(sizeof(MOV_SDP), '\0'));
    prepare();
    start();
    EXPECT_TRUE(isTraced("SDP is NULL, ReGet Movie SDP!"));
    EXPECT_TRUE(isTraced("Get New SDP Successfully!"));
    EXPECT_EQ(movieMessages(), QList<unsigned>({0x110001, 0x110002}));
}

TEST_F(SignageVideo, AnEmptyDescriptionThatStaysUnknownStartsNothing)
{
    std::atomic<int> asked{0};
    movie = std::make_unique<FakePlayer>("app_hxMovie", [&asked](const tagTold&) {
        return ++asked == 1 ? QByteArray(sizeof(MOV_SDP), '\0') : QByteArray();
    });
    media = std::make_unique<FakePlayer>("app_hxMedia");
    prepare();
    start();
    EXPECT_TRUE(isTraced("Still Can't Get New SDP!"));
    EXPECT_FALSE(manager().IsMoviePlaying());
    EXPECT_EQ(movieMessages(), QList<unsigned>{0x110001});
}

TEST_F(SignageVideo, APathThatDoesNotFitTheRecordStartsNothing)
{
    startPlayers();
    prepare();
    const QByteArray longPath = "/rundata/nDeck/" + QByteArray(200, 'n') + ".mp4";
    writeFile(longPath, "film");
    manager().SetPlayFile(longPath);
    start();
    EXPECT_FALSE(manager().IsMoviePlaying());
    EXPECT_TRUE(isTraced("Movie path is too long: " + QString::fromUtf8(longPath)));
    EXPECT_FALSE(movieMessages().contains(0x110002u));
}

TEST_F(SignageVideo, ANewFileTakesThePlaceOfThePlayingOneWithinTheSession)
{
    play();
    EXPECT_TRUE(manager().SetPlayFile(kOther));
    EXPECT_TRUE(manager().IsMoviePlaying());
    ASSERT_EQ(movieMessages(), QList<unsigned>({0x110006, 0x110002}));
    const ADDR_PARAM to = recordOf<ADDR_PARAM>(movie->told()[1]);
    EXPECT_STREQ(to.szFile, kOther);
    EXPECT_EQ(to.nRemoteAudioPort, 35600);
    EXPECT_TRUE(media->told().isEmpty());
    EXPECT_EQ(dev_get_output_mute(), 1);
}

TEST_F(SignageVideo, AMoveOfTheRegionIsToldToTheSessionWhileItPlays)
{
    play();
    manager().SetPlayRegion(chRect(100, 20, 400, 250));
    ASSERT_TRUE(media->hears(1));
    const tagTold change = media->told()[0];
    EXPECT_EQ(change.message, 0x7000du);
    EXPECT_FALSE(change.bSent) << "nobody waits";
    const VOICE_PARAM voice = recordOf<VOICE_PARAM>(change);
    EXPECT_EQ(voice.rcRemote.x, 112);
    EXPECT_EQ(voice.rcRemote.y, 20);
    EXPECT_EQ(voice.rcRemote.width, 288);
    EXPECT_EQ(voice.rcRemote.height, 230);
    EXPECT_EQ(voice.rcLocal.height, 0);
    EXPECT_EQ(voice.nAudLocalPort, 35800);
}

TEST_F(SignageVideo, AFinishedFilePlaysAgainUntilSomethingStopsIt)
{
    play();
    msgObject finished(MOVIE_MSG_FINISHED, 0, 0);
    EXPECT_EQ(manager().OnMovieAdMessage(finished), 1);
    EXPECT_EQ(manager().OnMovieAdMessage(finished), 1);
    msgObject other(0x120003, 0, 0);
    EXPECT_EQ(manager().OnMovieAdMessage(other), 0);
    ASSERT_EQ(movieMessages(), QList<unsigned>({0x110002, 0x110002}));
    EXPECT_STREQ(recordOf<ADDR_PARAM>(movie->told()[1]).szFile, kFile);
    manager().StopPlayVideo(0);
    EXPECT_EQ(manager().OnMovieAdMessage(finished), 1);
    EXPECT_EQ(movieMessages(), QList<unsigned>({0x110002, 0x110002, 0x110006}));
}

TEST_F(SignageVideo, APlayerThatStartedAgainIsToldWhatPlays)
{
    play();
    msgBroadpostThreadMsg(PLAYER_MSG_UP, PLAYER_MOVIE, 0);
    kit::settle();
    EXPECT_EQ(movieMessages(), QList<unsigned>{0x110002});
    EXPECT_TRUE(media->told().isEmpty());
    msgBroadpostThreadMsg(PLAYER_MSG_UP, PLAYER_MEDIA, 0);
    kit::settle();
    EXPECT_EQ(media->messages(), QList<unsigned>{0x70001});
    EXPECT_EQ(movieMessages(), QList<unsigned>{0x110002});
    manager().StopPlayVideo(0);
    forgetAll();
    msgBroadpostThreadMsg(PLAYER_MSG_UP, PLAYER_MOVIE, 0);
    msgBroadpostThreadMsg(PLAYER_MSG_UP, PLAYER_MEDIA, 0);
    kit::settle();
    EXPECT_TRUE(movieMessages().isEmpty());
    EXPECT_TRUE(media->told().isEmpty());
}

TEST_F(SignageVideo, APauseKeepsTheParametersForAQuickStart)
{
    play();
    manager().PausePlayVideo();
    EXPECT_TRUE(isTraced("PausePlayVideo!"));
    EXPECT_FALSE(manager().IsMoviePlaying());
    EXPECT_EQ(dev_get_output_mute(), 0);
    ASSERT_EQ(media->messages(), QList<unsigned>{0x70002});
    EXPECT_TRUE(media->told()[0].bSent);
    EXPECT_EQ(media->told()[0].wParam, 0u);
    EXPECT_EQ(muteAtMedia, 1) << "the sound comes back after the session";
    start();
    EXPECT_EQ(movieMessages(), QList<unsigned>({0x110006, 0x110002})) << "nobody is asked again";
    EXPECT_EQ(media->messages(), QList<unsigned>({0x70002, 0x70001}));
    EXPECT_EQ(dev_get_output_mute(), 1);
}

TEST_F(SignageVideo, APauseEndsAStartThatWaits)
{
    startPlayers();
    prepare();
    manager().StartPlayVideo();
    kit::stepTime(100);
    manager().PausePlayVideo();
    kit::stepTime(5000);
    EXPECT_FALSE(manager().IsMoviePlaying());
    EXPECT_TRUE(movieMessages().isEmpty());
    EXPECT_TRUE(media->told().isEmpty());
}

TEST_F(SignageVideo, AStopEndsTheSessionAndForgetsIt)
{
    play();
    manager().StopPlayVideo(0);
    EXPECT_FALSE(manager().IsMoviePlaying());
    EXPECT_EQ(movieMessages(), QList<unsigned>{0x110006});
    ASSERT_EQ(media->messages(), QList<unsigned>{0x70002});
    EXPECT_TRUE(media->told()[0].bSent);
    EXPECT_EQ(dev_get_output_mute(), 0);
    start();
    EXPECT_TRUE(isTraced("Play Region(0, 0, -1, -1) is invalid!"));
    EXPECT_EQ(movieMessages(), QList<unsigned>{0x110006});
    manager().SetPlayRegion(region());
    start();
    EXPECT_TRUE(isTraced("m_bMakeUpParam = 0, bOk = 0 movelpay = ")) << "the file is forgotten too";
    EXPECT_EQ(movieMessages(), QList<unsigned>{0x110006});
}

TEST_F(SignageVideo, AStopAlsoForgetsAMovieThatPauses)
{
    play();
    manager().PausePlayVideo();
    manager().StopPlayVideo(0);
    forgetAll();
    manager().SetPlayFile(kOther);
    manager().SetPlayRegion(region());
    start();
    ASSERT_EQ(movieMessages(), QList<unsigned>({0x110001, 0x110002}));
    EXPECT_STREQ(recordOf<ADDR_PARAM>(movie->told()[1]).szFile, kOther);
}

TEST_F(SignageVideo, AnotherFileSetDuringAPauseIsTheOneThatPlays)
{
    play();
    manager().PausePlayVideo();
    manager().SetPlayFile(kOther);
    forgetAll();
    start();
    ASSERT_EQ(movieMessages(), QList<unsigned>{0x110002});
    EXPECT_STREQ(recordOf<ADDR_PARAM>(movie->told()[0]).szFile, kOther);
}

TEST_F(SignageVideo, AStopEndsAStartThatWaits)
{
    startPlayers();
    prepare();
    manager().StartPlayVideo();
    manager().StopPlayVideo(0);
    kit::stepTime(5000);
    EXPECT_TRUE(movieMessages().isEmpty());
    EXPECT_TRUE(media->told().isEmpty());
}

TEST_F(SignageVideo, WithTheClientDisabledOnlyAForcedStopWorks)
{
    play();
    enable(0);
    EXPECT_FALSE(manager().SetPlayFile(kOther));
    EXPECT_FALSE(manager().SetPlayRegion(chRect(0, 0, 160, 160)));
    start();
    manager().PausePlayVideo();
    VOICE_PARAM call = {};
    EXPECT_FALSE(manager().SetPlayParam(&call, kSession));
    msgObject finished(MOVIE_MSG_FINISHED, 0, 0);
    EXPECT_EQ(manager().OnMovieAdMessage(finished), 0);
    EXPECT_FALSE(manager().IsMoviePlaying());
    manager().UninitializeManager();
    manager().StopPlayVideo(0);
    EXPECT_TRUE(movieMessages().isEmpty());
    EXPECT_TRUE(media->told().isEmpty());
    manager().StopPlayVideo(1);
    EXPECT_EQ(movieMessages(), QList<unsigned>{0x110006});
    EXPECT_EQ(media->messages(), QList<unsigned>{0x70002});
    EXPECT_EQ(dev_get_output_mute(), 0);
}

TEST_F(SignageVideo, AStartThatWaitsWhenTheClientIsDisabledPlaysNothing)
{
    startPlayers();
    prepare();
    manager().StartPlayVideo();
    enable(0);
    kit::stepTime(5000);
    EXPECT_FALSE(isTraced("StartPlayVideo!"));
    EXPECT_TRUE(movieMessages().isEmpty());
}

TEST_F(SignageVideo, TheEndOfTheClientStopsItAlsoWhenItIsDisabledByThen)
{
    play();
    enable(0);
    OnUnLaunchNDeck();
    EXPECT_EQ(movieMessages(), QList<unsigned>{0x110006});
    EXPECT_EQ(media->messages(), QList<unsigned>{0x70002});
    EXPECT_EQ(dev_get_output_mute(), 0);
}

TEST_F(SignageVideo, TheEndOfTheManagerStopsWhatPlays)
{
    play();
    manager().UninitializeManager();
    EXPECT_EQ(movieMessages(), QList<unsigned>{0x110006});
    EXPECT_EQ(media->messages(), QList<unsigned>{0x70002});
}

TEST_F(SignageVideo, AMissingMediaServerHoldsNothingUp)
{
    startPlayers();
    prepare();
    media.reset();
    start();
    EXPECT_TRUE(manager().IsMoviePlaying());
    EXPECT_EQ(movieMessages(), QList<unsigned>{0x110002});
}

} // namespace
