// Calls at the real media server, one by one: what is described, heard and seen.
#include "host/services/players/videoFrames.h"
#include "players/playerRecords.h"
#include "tests/kit/plain/processes.h"
#include "tests/kit/plain/stunServer.h"
#include "tests/players/callServiceStand.h"
#include "tests/players/callSide.h"
#include "tests/players/films.h"
#include "tests/players/pictureSide.h"
#include "tests/players/wirePort.h"
#include <csignal>

namespace {

TEST_F(CallService, WhatTheMicrophoneHearsComesOutAtTheOtherEndsLoudspeaker)
{
    startMedia();
    connect(1, 2);
    EXPECT_TRUE(isHeard());
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[1].nQuality == 4; }));
    EXPECT_EQ(m_news.streams[1].strSound, "Opus");
    EXPECT_EQ(m_news.streams[2].strSound, "Opus");
    EXPECT_FALSE(m_news.streams[1].bEncrypted);
    m_sessions.setMuted(1, true);
    EXPECT_TRUE(isHeard()) << "the other one still talks";
    m_sessions.setMuted(2, true);
    EXPECT_TRUE(isSilent());
}

TEST_F(CallService, AHoldNeedsNobodysConsent)
{
    startMedia();
    connect(1, 2);
    ASSERT_TRUE(isHeard());
    m_sessions.setStill(1, true);
    EXPECT_TRUE(isSilent()) << "he says nothing, and does not hear the other one";
    m_sessions.setStill(1, false);
    EXPECT_TRUE(isHeard());
    m_sessions.setStill(7, true);
    EXPECT_TRUE(hasSaid("message 0x7003d of 0 bytes is refused: there is no such call"));
}

// What a line with such a server wants.
tagMediaWish wishWith(const kit::StunServer& server)
{
    tagMediaWish wish;
    wish.stunServer = "127.0.0.1";
    wish.nStunPort = server.port();
    return wish;
}

TEST_F(CallService, DescriptionsSayWhereTheServerSeesThePorts)
{
    kit::StunServer server;
    kit::tagStunWays ways;
    ways.address = "127.0.0.45";
    ways.nPort = 45678;
    server.behave(ways);
    startMedia();
    tagMediaWish wish = wishWith(server);
    QByteArray offer = offerOf(1, wish);
    EXPECT_TRUE(offer.contains("c=IN IP4 127.0.0.45\r\n")) << offer.constData();
    EXPECT_TRUE(offer.contains("m=audio 45678 ")) << offer.constData();
    EXPECT_EQ(server.asked(), 2);
    // It is known from there on; pictures have ports of their own.
    EXPECT_TRUE(offerOf(1, wish).contains("m=audio 45678 "));
    EXPECT_EQ(server.asked(), 2);
    wish.options.bVideo = true;
    offer = offerOf(1, wish);
    EXPECT_TRUE(offer.contains("m=video 45678 ")) << offer.constData();
    EXPECT_EQ(server.asked(), 4);
    const QByteArray answer = answerOf(2, offerOf(3), wishWith(server));
    EXPECT_TRUE(answer.contains("m=audio 45678 ")) << answer.constData();
}

TEST_F(CallService, AServerThatSaysNothingKeepsNobodyElseWaitingAndTheCallGoesOnWithout)
{
    kit::StunServer server;
    kit::tagStunWays silent;
    silent.bSilent = true;
    server.behave(silent);
    startMedia();
    offerOf(3); // it is there
    m_sessions.offer(1, wishWith(server));
    ASSERT_TRUE(kit::waitUntil([&] { return server.asked() > 0; }));
    m_sessions.setMuted(1, true);
    m_sessions.setStill(1, true);
    EXPECT_TRUE(offerOf(2).contains("m=audio"));
    EXPECT_EQ(m_news.nDescribed[1], 0) << "it still waits";
    ASSERT_TRUE(kit::waitUntil([&] { return m_news.nDescribed[1] == 1; }));
    EXPECT_FALSE(m_news.described[1].isEmpty());
    // Each port was asked for as often as there was time.
    EXPECT_EQ(server.asked(), 6);
    m_sessions.agree(1, answerOf(4, m_news.described[1]));
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[1].nQuality == 4; }, 8000));
    EXPECT_TRUE(isSilent()) << "it was held before";
    m_sessions.setStill(1, false);
    EXPECT_TRUE(isHeard()) << "of the other one";
    m_sessions.setMuted(4, true);
    EXPECT_TRUE(isSilent()) << "it was muted before";
    m_sessions.setMuted(1, false);
    EXPECT_TRUE(isHeard());
}

TEST_F(CallService, ACallThatEndsWhileItsPortsAreAskedForLeavesNothing)
{
    kit::StunServer server;
    kit::tagStunWays silent;
    silent.bSilent = true;
    server.behave(silent);
    startMedia();
    for (int call = 1; call < 30; ++call) {
        const int before = server.asked();
        m_sessions.offer(call, wishWith(server));
        ASSERT_TRUE(kit::waitUntil([&] { return server.asked() > before; })) << call;
        m_sessions.end(call);
    }
    server.behave({});
    EXPECT_FALSE(offerOf(99, wishWith(server)).isEmpty()) << "there are ports and places for eight calls";
}

TEST_F(CallService, WhereALineIsRegisteredTheCodersAreThereBeforeTheCall)
{
    startMedia();
    EXPECT_FALSE(kit::waitUntil([&] { return isLoaded("libgstopus"); }, 1000)) << "nobody needs them";
    m_sessions.prepare();
    EXPECT_TRUE(kit::waitUntil([&] { return isLoaded("libgstopus") && isLoaded("libgstwebrtcdsp"); }));
    m_media.kill();
    m_media.waitForFinished();
    startMedia();
    EXPECT_TRUE(kit::waitUntil([&] { return isLoaded("libgstopus"); })) << "the next server knows it too";
}

TEST_F(CallService, AnEncryptedCallSaysSoAndTakesTones)
{
    startMedia();
    EXPECT_FALSE(m_sessions.sendTone(1, '5', 100)) << "there is no call";
    tagMediaWish wish;
    wish.bEncrypt = true;
    connect(1, 2, wish);
    EXPECT_TRUE(isHeard());
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[1].bEncrypted && m_news.streams[2].bEncrypted; }));
    EXPECT_TRUE(m_sessions.sendTone(1, '5', 100));
    EXPECT_FALSE(m_sessions.sendTone(1, 'x', 100));
    EXPECT_FALSE(said().contains("refused")) << said().constData();
    EXPECT_FALSE(said().contains("inline:"));
}

TEST_F(CallService, TonesThatTheOtherSideDoesNotNameAreLeftToTheSignalling)
{
    startMedia();
    QByteArray answer = answerOf(2, offerOf(1));
    ASSERT_TRUE(answer.contains(" 0-15\r\n")) << answer.constData();
    m_sessions.agree(1, answer.replace(" 0-15\r\n", " 0-9\r\n"));
    ASSERT_TRUE(kit::waitUntil([&] { return m_sessions.sendTone(1, '5', 100); }));
    for (const char tone : {'*', '#', 'A', 'D'})
        EXPECT_FALSE(m_sessions.sendTone(1, QChar(tone), 100)) << tone;
    EXPECT_FALSE(said().contains("refused")) << said().constData();
}

TEST_F(CallService, AnAnswerThatDoesNotFitIsToldUnlessAnotherOneFollows)
{
    startMedia();
    const QByteArray fitting = answerOf(2, offerOf(1));
    const QByteArray lie = "v=0\r\nc=IN IP4 127.0.0.1\r\nm=audio 36000 RTP/AVP 18\r\n";
    m_sessions.agree(1, lie);
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.nUnfit[1] == 1; }));
    m_sessions.agree(1, lie);
    m_sessions.agree(1, fitting);
    EXPECT_TRUE(isHeard());
    EXPECT_EQ(m_news.nUnfit[1], 1);
    EXPECT_EQ(m_news.nUnfit[2], 0);
}

TEST_F(CallService, WhatCannotBeAnsweredIsDescribedAsNothing)
{
    startMedia();
    EXPECT_EQ(answerOf(1, "v=0\r\nm=audio 5004 RTP/AVP 18\r\n"), "");
    EXPECT_EQ(answerOf(1, QByteArray(20000, 'x')), "");
    EXPECT_FALSE(offerOf(1).isEmpty());
    EXPECT_FALSE(m_sessions.join(1, 2)) << "nobody talks";
}

TEST_F(CallService, WhetherAnOfferCouldBeAnsweredIsSaidWithoutACall)
{
    startMedia();
    const QByteArray offer = offerOf(1); // the server is up
    const auto judged = [&](const QByteArray& text, bool encrypt = false) {
        tagMediaWish wish;
        wish.bEncrypt = encrypt;
        const int question = m_sessions.judge(text, wish);
        EXPECT_FALSE(m_news.judged.contains(question)) << "not before the call has returned";
        EXPECT_TRUE(kit::waitUntil([&] { return m_news.judged.contains(question); }));
        return m_news.judged[question];
    };
    EXPECT_EQ(judged(offer), CALL_FITS) << "also from this machine";
    EXPECT_EQ(judged(offer, true), CALL_NO_TRANSPORT);
    EXPECT_EQ(judged(QByteArray(offer).replace("m=audio", "m=image")), CALL_NO_SOUND);
    EXPECT_EQ(judged("hello"), CALL_NO_DESCRIPTION);
    // More than there may be calls.
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(judged(offer), CALL_FITS);
    EXPECT_FALSE(offerOf(2).isEmpty());
}

TEST_F(CallService, WhereNobodyCanSayWhetherAnOfferFitsItDoes)
{
    const int early = m_sessions.judge("hello", {});
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.judged.contains(early); }));
    EXPECT_EQ(m_news.judged[early], CALL_FITS) << "there is no server";
    startMedia();
    EXPECT_FALSE(offerOf(1).isEmpty());
    kill(pid_t(m_media.processId()), SIGSTOP);
    const int late = m_sessions.judge("hello", {});
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.judged.contains(late); }, 10000));
    EXPECT_EQ(m_news.judged[late], CALL_FITS) << "it hangs";
    const int lost = m_sessions.judge("hello", {});
    m_media.kill();
    m_media.waitForFinished();
    startMedia();
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.judged.contains(lost); }));
    EXPECT_EQ(m_news.judged[lost], CALL_FITS) << "it died";
    const int heard = m_sessions.judge("hello", {});
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.judged.contains(heard); }));
    EXPECT_EQ(m_news.judged[heard], CALL_NO_DESCRIPTION);
}

TEST_F(CallService, VideoIsRefusedInItsPlace)
{
    startMedia();
    const QByteArray answer =
        answerOf(1, "v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=-\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
                    "m=audio 40000 RTP/AVP 8\r\nm=video 40002 RTP/AVP 99\r\n");
    EXPECT_TRUE(answer.contains("m=video 0 RTP/AVP 99\r\n")) << answer.constData();
}

class CallPictures : public CallService
{
protected:
    CallPictures()
    {
        const QString file = hostPath("/rundata/picture.png");
        EXPECT_TRUE(numberedPicture(QSize(640, 480), kNumber).save(file));
        qputenv("HX_PICTURE_SOURCE",
                ("filesrc location=" + file + " ! pngdec ! imagefreeze is-live=true").toUtf8());
    }
    ~CallPictures() override { qunsetenv("HX_PICTURE_SOURCE"); }
    static tagMediaWish video()
    {
        tagMediaWish wish;
        wish.options.bVideo = wish.options.bCamera = true;
        wish.options.nFrameRate = 15;
        return wish;
    }
    // The surface has the shape of the pictures.
    void startPictures()
    {
        startMedia();
        videoFrames::instance().askForSize(QSize(640, 480));
    }
    // The other side's camera is this test's.
    void connectPictures(int call, PictureSide& other, const tagMediaWish& wish = video())
    {
        tagMediaWant want;
        want.bVideo = want.bCamera = true;
        want.nRate = 15;
        const QByteArray answer = other.negotiation->answer(offerOf(call, wish), want);
        m_sessions.agree(call, answer);
        other.apply();
    }
    static QImage shown()
    {
        tagVideoPicture picture;
        if (!videoFrames::instance().newest(picture))
            return {};
        return QImage(picture.pPixels, picture.nWidth, picture.nHeight, QImage::Format_RGB32).copy();
    }
    static bool isShown(int ms = 20000)
    {
        return kit::waitUntil([] { return numberIn(shown()) == kNumber; }, ms);
    }
    // In the middle of that part, as the strips of a number are.
    static int numberAt(const QRect& place) { return numberIn(shown().copy(place)); }

    static constexpr int kNumber = 173;
    const bool m_bToolkit = (gst_init(nullptr, nullptr), true);
    PictureSide m_other;
};

TEST_F(CallPictures, ThePictureOfTheOtherSideComesToThePhoneAndTheOwnOneLiesInItsCorner)
{
    startPictures();
    videoFrames::instance().askForOwn(QRect(440, 20, 160, 120));
    connectPictures(1, m_other);
    EXPECT_TRUE(isShown());
    EXPECT_EQ(shown().size(), QSize(640, 480));
    EXPECT_TRUE(kit::waitUntil([&] { return numberAt(QRect(440, 20, 160, 120)) == kNumber; }, 8000));
    EXPECT_TRUE(kit::waitUntil(
        [&] { return m_news.streams[1].strPicture == "H.264" && m_news.streams[1].nOwnPicture == 1; }));
    EXPECT_EQ(m_news.streams[1].nOtherPicture, 1);
    EXPECT_TRUE(kit::waitUntil([&] { return m_other.seen.nNumber == kNumber; }, 8000));
    videoFrames::instance().askForOwn(QRect());
    EXPECT_TRUE(kit::waitUntil([&] { return numberAt(QRect(440, 20, 160, 120)) != kNumber; }, 8000));
}

TEST_F(CallPictures, TheCornersOfTheOwnPictureAreRound)
{
    startPictures();
    connectPictures(1, m_other);
    ASSERT_TRUE(isShown());
    // At that end the other side's picture is dark, and the own one light.
    for (const bool isLeft : {true, false}) {
        const QRect place(isLeft ? 330 : 400, 20, 160, 120);
        videoFrames::instance().askForOwn(place);
        ASSERT_TRUE(kit::waitUntil([&] { return numberAt(place) == kNumber; }, 8000));
        const QImage seen = shown();
        const int x = isLeft ? place.left() : place.right();
        EXPECT_GT(qGray(seen.pixel(x, place.center().y())), 128);
        EXPECT_LT(qGray(seen.pixel(x, place.top())), 128);
        EXPECT_LT(qGray(seen.pixel(x, place.bottom())), 128);
    }
}

TEST_F(CallPictures, WithoutACameraThereIsNoOwnPicture)
{
    qputenv("HX_PICTURE_SOURCE", "none");
    startMedia();
    // What the phone waits for is none of the time that a busy machine takes to load the coders.
    m_sessions.prepare();
    ASSERT_TRUE(kit::waitUntil([&] { return isLoaded("libgstopus") && isLoaded("libgstwebrtcdsp"); }, 20000));
    const QByteArray offer = offerOf(1, video());
    EXPECT_TRUE(offer.contains("a=recvonly\r\n")) << offer.constData();
    m_sessions.agree(1, answerOf(2, offer, video()));
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[1].nOwnPicture == 0; }, 20000));
    EXPECT_EQ(m_news.streams[1].strPicture, "") << "neither side has one to send";
}

TEST_F(CallPictures, HoldTakesThePictureAwayAndTheEndGivesItsMemoryBack)
{
    startPictures();
    const auto shared = [&] { return kit::statusKiB(m_media.processId(), "RssShmem"); };
    const qint64 before = shared();
    connectPictures(1, m_other);
    ASSERT_TRUE(isShown());
    EXPECT_GT(shared(), before + 1000);
    tagMediaWish held = video();
    held.bHeld = true;
    connectPictures(1, m_other, held);
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[1].strPicture.isEmpty(); }, 8000));
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[1].nOwnPicture == 0; }, 8000))
        << "the camera is off";
    EXPECT_TRUE(kit::waitUntil([&] { return m_other.seen.nNumber == -1; }, 8000));
    connectPictures(1, m_other);
    ASSERT_TRUE(isShown());
    m_sessions.end(1);
    EXPECT_TRUE(kit::waitUntil([&] { return shown().isNull() && shared() < before + 200; }, 8000))
        << shared();
}

TEST_F(CallPictures, AHoldClosesTheCameraWithoutAnybodysConsent)
{
    startPictures();
    connectPictures(1, m_other);
    ASSERT_TRUE(kit::waitUntil([&] { return m_other.seen.nNumber == kNumber; }, 20000));
    m_sessions.setStill(1, true);
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[1].nOwnPicture == 0; }, 8000));
    EXPECT_TRUE(kit::waitUntil([&] { return m_other.seen.nNumber == -1; }, 8000));
    m_sessions.setStill(1, false);
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[1].nOwnPicture == 1; }, 8000));
    EXPECT_TRUE(kit::waitUntil([&] { return m_other.seen.nNumber == kNumber; }, 8000));
}

TEST_F(CallPictures, TheLockIsShownOnlyWhereThePicturesAreEncryptedToo)
{
    startMedia();
    const QByteArray key =
        "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:" + QByteArray(30, 'k').toBase64() + "\r\n";
    const QByteArray sound = "v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=-\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
                             "m=audio 40000 RTP/SAVP 8\r\n" +
                             key;
    const QByteArray format =
        "a=rtpmap:97 H264/90000\r\na=fmtp:97 profile-level-id=42e01f;packetization-mode=1\r\n";
    EXPECT_TRUE(answerOf(1, sound + "m=video 40002 RTP/AVP 97\r\n" + format, video()).contains("a=crypto"));
    answerOf(2, sound + "m=video 40004 RTP/SAVP 97\r\n" + key + format, video());
    for (const int call : {1, 2}) {
        const tagCallStreams& streams = m_news.streams[call];
        EXPECT_TRUE(
            kit::waitUntil([&] { return !streams.strSound.isEmpty() && !streams.strPicture.isEmpty(); }));
        EXPECT_EQ(streams.bEncrypted, call == 2) << "of sound alone it would be a lie";
    }
}

TEST_F(CallPictures, TheCameraOfACallThatBeganWithoutOpensForTheUserAlone)
{
    startMedia();
    const QByteArray sound = "v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=-\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
                             "m=audio 40000 RTP/AVP 8\r\n";
    const QByteArray picture = "m=video 40002 RTP/AVP 97\r\na=rtpmap:97 H264/90000\r\n"
                               "a=fmtp:97 profile-level-id=42e01f;packetization-mode=1\r\n";
    tagMediaWish wish = video();
    EXPECT_FALSE(answerOf(1, sound, wish).isEmpty());
    const QByteArray asked = answerOf(1, sound + picture, wish);
    EXPECT_TRUE(asked.mid(asked.indexOf("m=video")).contains("a=recvonly")) << asked.constData();
    wish.bCameraNow = true;
    const QByteArray opened = answerOf(1, sound + picture, wish);
    EXPECT_TRUE(opened.mid(opened.indexOf("m=video")).contains("a=sendrecv")) << opened.constData();
}

TEST_F(CallPictures, AsManyPicturesAndBitsGoOutAsTheLineSays)
{
    startMedia();
    tagMediaWish wish = video();
    wish.options.nBandwidth = 512;
    wish.options.nFrameRate = 5;
    const QByteArray offer = offerOf(1, wish);
    EXPECT_TRUE(offer.contains("b=AS:512\r\n")) << offer.constData();
    const WirePort there;
    callNegotiation negotiation(onThisMachine(40000, there.port()));
    tagMediaWant want;
    want.bVideo = true;
    m_sessions.agree(1, negotiation.answer(offer, want));
    QList<quint32> times;
    while (times.size() < 6) {
        const QByteArray packet = there.next();
        ASSERT_FALSE(packet.isEmpty());
        const auto* bytes = reinterpret_cast<const unsigned char*>(packet.constData());
        tagRtpHead head;
        int start = 0, length = 0;
        if (!rtpPacket::isRtcp(bytes, int(packet.size())) &&
            rtpPacket::read(bytes, int(packet.size()), head, start, length) && !times.contains(head.nTime))
            times.append(head.nTime);
    }
    EXPECT_GT((times.last() - times.first()) / 5, quint32(PICTURE_CLOCK / 8)) << "five a second";
}

TEST_F(CallPictures, PicturesThatDoNotComeOrEndAreToldOf)
{
    startPictures();
    m_other.session->setCamera(false);
    connectPictures(1, m_other);
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[1].strPicture == "H.264"; }, 8000));
    EXPECT_EQ(m_news.streams[1].nOtherPicture, 0);
    m_other.session->setCamera(true);
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[1].nOtherPicture == 1; }, 20000));
    EXPECT_TRUE(isShown());
    m_other.session->setCamera(false);
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[1].nOtherPicture == 0; }, 8000));
    EXPECT_EQ(m_news.streams[1].strPicture, "H.264") << "it is still agreed on";
    EXPECT_TRUE(shown().isNull());
}

TEST_F(CallPictures, APreviewShowsTheOtherSideAndNothingGoesThereUntilItBegins)
{
    startPictures();
    tagMediaWant want;
    want.bVideo = want.bCamera = true;
    want.nRate = 15;
    tagMediaWish wish = video();
    wish.bPreview = true;
    ASSERT_TRUE(m_other.negotiation->agree(answerOf(1, m_other.negotiation->offer(want), wish)));
    m_other.apply();
    EXPECT_TRUE(isShown());
    EXPECT_EQ(m_news.streams[1].nOwnPicture, 0);
    EXPECT_EQ(m_news.streams[1].nQuality, -1) << "no sound is taken";
    EXPECT_FALSE(isLoudspeakerOpen());
    EXPECT_EQ(m_other.seen.nOther, 0);
    m_sessions.begin(1);
    EXPECT_TRUE(kit::waitUntil([&] { return m_other.seen.nNumber == kNumber; }, 20000));
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[1].nOwnPicture == 1 && isLoudspeakerOpen(); }));
    EXPECT_TRUE(isShown());
}

TEST_F(CallPictures, WhoIsSeenBeforeTheAnswerHearsNothingOfACallBeside)
{
    startMedia();
    CallPhone other(0), door(0);
    CallEnd one(other, 1), two(door, 2);
    m_sessions.agree(1, one.negotiation->answer(offerOf(1), {}));
    one.apply();
    ASSERT_TRUE(kit::waitUntil([&] { return other.hears(kHertz); }, 8000));
    const WirePort pictures;
    two.negotiation = std::make_unique<callNegotiation>(onThisMachine(two.port, pictures.port()));
    tagMediaWant want;
    want.bVideo = want.bCamera = true;
    tagMediaWish wish = video();
    wish.bPreview = true;
    ASSERT_TRUE(two.negotiation->agree(answerOf(2, two.negotiation->offer(want), wish)));
    two.apply();
    EXPECT_FALSE(kit::waitUntil([&] { return door.hears(kHertz); }, 800));
    EXPECT_TRUE(other.hears(kHertz));
    m_sessions.begin(2);
    EXPECT_TRUE(kit::waitUntil([&] { return door.hears(kHertz); }, 8000));
    // Where there is nothing to be seen the other side goes on hearing that it rings.
    EXPECT_EQ(answerOf(3, one.negotiation->offer({}), wish), "");
}

TEST_F(CallPictures, WhoIsSeenBeforeTheAnswerMayStopThatBeforeIt)
{
    startPictures();
    tagMediaWant want;
    want.bVideo = want.bCamera = true;
    tagMediaWish wish = video();
    wish.bPreview = true;
    ASSERT_TRUE(m_other.negotiation->agree(answerOf(1, m_other.negotiation->offer(want), wish)));
    const QByteArray answer = answerOf(1, m_other.negotiation->offer({}), wish);
    EXPECT_TRUE(answer.contains("m=audio")) << answer.constData();
    ASSERT_TRUE(m_other.negotiation->agree(answer));
    EXPECT_FALSE(isLoudspeakerOpen());
    m_sessions.begin(1);
    EXPECT_TRUE(kit::waitUntil([&] { return isLoudspeakerOpen(); }));
}

TEST_F(CallPictures, WhatIsOfferedEarlyIsSilentUntilItBegins)
{
    startMedia();
    tagMediaWish wish;
    wish.bPreview = true;
    CallPhone quick(0), slow(0);
    CallEnd one(quick, 1), two(slow, 2);
    m_sessions.agree(1, one.negotiation->answer(offerOf(1, wish), {}));
    one.apply();
    EXPECT_FALSE(kit::waitUntil([&] { return quick.hears(kHertz); }, 800));
    EXPECT_FALSE(isLoudspeakerOpen()) << "nor is a microphone";
    m_sessions.begin(1);
    EXPECT_TRUE(kit::waitUntil([&] { return quick.hears(kHertz); }, 8000));
    EXPECT_TRUE(isLoudspeakerOpen());
    // The user may be quicker than the other side's answer.
    const QByteArray offer = offerOf(2, wish);
    m_sessions.begin(2);
    m_sessions.agree(2, two.negotiation->answer(offer, {}));
    two.apply();
    EXPECT_TRUE(kit::waitUntil([&] { return slow.hears(kHertz); }, 8000));
}

TEST_F(CallPictures, OfTwoCallsTheOneThatBeganLastHasTheCameraUntilItEnds)
{
    startPictures();
    connectPictures(1, m_other);
    EXPECT_TRUE(kit::waitUntil([&] { return m_other.seen.nNumber == kNumber; }, 20000));
    PictureSide third;
    connectPictures(2, third);
    EXPECT_TRUE(kit::waitUntil([&] { return third.seen.nNumber == kNumber; }, 20000));
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[1].nOwnPicture == 0; }));
    EXPECT_EQ(m_news.streams[2].nOwnPicture, 1);
    EXPECT_TRUE(kit::waitUntil([&] { return m_other.seen.nNumber == -1; }, 8000));
    connectPictures(1, m_other);
    EXPECT_EQ(m_news.streams[2].nOwnPicture, 1) << "who is asked once more does not take it";
    m_sessions.end(2);
    EXPECT_TRUE(kit::waitUntil([&] { return m_other.seen.nNumber == kNumber; }, 20000));
    EXPECT_EQ(m_news.streams[1].nOwnPicture, 1);
}

TEST_F(CallPictures, APlaceBeyondTheScreenIsRefused)
{
    startMedia();
    msgPostMsgToThread(media(), MEDIA_MSG_OWN_PLACE, 0xFFFFFFFF, 0xFFFFFFFF);
    EXPECT_TRUE(hasSaid("message 0x70039 of 0 bytes is refused: the place is out of range"));
    const QByteArray before = said();
    msgPostMsgToThread(media(), MEDIA_MSG_OWN_PLACE, unsigned(playerRecords::MAX_WIDTH) << 16, 1 << 16 | 1);
    EXPECT_TRUE(kit::waitUntil([&] { return said() != before; })) << "to the right of it";
}

} // namespace
