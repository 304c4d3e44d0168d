// What one side of a call says is heard at the other: measured tones over real ports.
#include "players/rtpPeer.h"
#include "tests/calls/callStand.h"
#include "tests/calls/lossyWay.h"
#include "tests/calls/steppedCall.h"
#include "tests/kit/plain/measuredMemory.h"
#include "tests/players/wirePort.h"
#include <dirent.h>
#include <unistd.h>

namespace {

constexpr double kOne = 440;
constexpr double kOther = 1000;
constexpr double kThird = 1700;

class CallSound : public CallStand
{
protected:
    // ptime: ms of sound in a packet.
    static void agree(SteppedCall& call, const char* codec, tagMediaWant want = {},
                      int ptime = callSession::FRAME_MS)
    {
        const QByteArray answer =
            call.otherNegotiation().answer(only(call.negotiation().offer(want), codec), {});
        ASSERT_TRUE(call.negotiation().agree(answer)) << answer.constData();
        call.apply(ptime);
    }

    CallPhone m_one{kOne};
    CallPhone m_other{kOther};
};

// One of them has a call with each of the two others.
class CallSoundOfThree : public CallSound
{
protected:
    CallPhone m_third{kThird};
    CallEnd m_toOther{m_one, 1};
    CallEnd m_toThird{m_one, 2};
    CallEnd m_atOther{m_other, 1};
    CallEnd m_atThird{m_third, 1};
};

class EachCodec : public CallSound, public testing::WithParamInterface<const char*>
{
};

TEST_P(EachCodec, IsHeardInBothDirections)
{
    CallEnd one(m_one, 1);
    CallEnd other(m_other, 1);
    connect(one, other, GetParam());
    EXPECT_STRCASEEQ(soundCodec(one.agreed().send.eCodec)->pName, GetParam());
    EXPECT_TRUE(waitFor([&] { return m_one.hears(kOther) && m_other.hears(kOne); }));
    EXPECT_FALSE(m_one.hears(kOne)) << "nobody hears himself";
}

TEST_P(EachCodec, IsHeardEncrypted)
{
    CallEnd one(m_one, 1);
    CallEnd other(m_other, 1);
    connect(one, other, GetParam(), {false, true});
    EXPECT_NE(one.agreed().eSuite, CRYPTO_SUITE::NONE);
    EXPECT_TRUE(waitFor([&] { return m_one.hears(kOther) && m_other.hears(kOne); }));
}

TEST_P(EachCodec, IsHeardThroughLossAndJitter)
{
    SteppedCall call(kOne, kOther, 5, 40);
    ASSERT_NO_FATAL_FAILURE(agree(call, GetParam()));
    call.run(5000);
    const kit::RecordedSound heard = call.otherVoice().heard(3);
    for (double at = 0; at < 3; at += 0.2)
        EXPECT_TRUE(heard.from(at, 0.2, soundCoder::SAMPLE_RATE).has(kOne)) << at;
    EXPECT_LT(heard.longestQuiet(), callSession::FRAME_SAMPLES) << "what is lost is made up for";
    const jitterBuffer& buffer = call.otherSession().buffer();
    EXPECT_GT(buffer.counts().nPlayed, 100);
    EXPECT_GT(buffer.counts().nLost, 0);
    EXPECT_GE(buffer.delayMs(), jitterBuffer::LEAST_MS);
}

INSTANTIATE_TEST_SUITE_P(All, EachCodec, testing::Values("opus", "G722", "PCMA", "PCMU"));

TEST_F(CallSound, OneWhoHoldsHearsNothingAndIsNotHeard)
{
    CallEnd one(m_one, 1);
    CallEnd other(m_other, 1);
    connect(one, other, "PCMA");
    ASSERT_TRUE(waitFor([&] { return m_one.hears(kOther) && m_other.hears(kOne); }));
    connect(one, other, "PCMA", {true, false});
    EXPECT_TRUE(waitFor([&] { return m_one.hearsNothing() && m_other.hearsNothing(); }));
    connect(one, other, "PCMA");
    EXPECT_TRUE(waitFor([&] { return m_one.hears(kOther) && m_other.hears(kOne); }));
}

TEST_F(CallSound, OneWhoIsMutedIsNotHeardButHears)
{
    CallEnd one(m_one, 1);
    CallEnd other(m_other, 1);
    connect(one, other);
    ASSERT_TRUE(waitFor([&] { return m_other.hears(kOne); }));
    one.with([](callSession& session) { session.setMuted(true); });
    EXPECT_TRUE(waitFor([&] { return m_other.hearsNothing(); }));
    EXPECT_TRUE(waitFor([&] { return m_one.hears(kOther); }));
    one.with([](callSession& session) { session.setMuted(false); });
    EXPECT_TRUE(waitFor([&] { return m_other.hears(kOne); }));
}

TEST_F(CallSoundOfThree, WhatOneWhoIsJoinedHoldsIsStillWhateverIsAgreed)
{
    connect(m_toOther, m_atOther, "PCMA");
    connect(m_toThird, m_atThird, "opus");
    ASSERT_TRUE(m_one.desk.join(1, 2));
    ASSERT_TRUE(waitFor([&] { return m_one.hears(kOther) && m_other.hears(kOne) && m_other.hears(kThird); }));
    m_toOther.with([](callSession& session) { session.setStill(true); });
    EXPECT_TRUE(waitFor([&] { return m_other.hearsNothing(); }));
    EXPECT_TRUE(waitFor([&] { return m_one.hears(kThird) && !m_one.hears(kOther); }));
    EXPECT_TRUE(waitFor([&] { return m_third.hears(kOne) && !m_third.hears(kOther); }));
    m_toOther.with([](callSession& session) { session.setStill(false); });
    EXPECT_TRUE(waitFor([&] { return m_one.hears(kOther) && m_other.hears(kOne) && m_other.hears(kThird); }));
}

TEST_F(CallSoundOfThree, ThreeWhoAreJoinedHearEachOtherUntilTheyAreSplit)
{
    connect(m_toOther, m_atOther, "PCMA");
    connect(m_toThird, m_atThird, "opus");
    ASSERT_TRUE(waitFor([&] { return m_other.hears(kOne) && m_third.hears(kOne); }));
    EXPECT_TRUE(waitFor([&] { return m_one.hears(kOther) && m_one.hears(kThird); })) << "two calls at once";
    EXPECT_FALSE(m_other.hears(kThird));
    ASSERT_TRUE(m_one.desk.join(1, 2));
    EXPECT_TRUE(waitFor([&] { return m_other.hears(kThird) && m_third.hears(kOther); }));
    EXPECT_TRUE(waitFor([&] {
        return m_other.hears(kOne) && m_third.hears(kOne) && m_one.hears(kOther) && m_one.hears(kThird);
    }));
    m_one.desk.split(2);
    EXPECT_TRUE(waitFor([&] { return !m_other.hears(kThird) && !m_third.hears(kOther); }));
    EXPECT_TRUE(waitFor([&] { return m_other.hears(kOne) && m_third.hears(kOne); }));
    EXPECT_FALSE(m_one.desk.join(1, 7));
    // Who is joined with another leaves the first.
    CallEnd here(m_one, 3);
    CallEnd there(m_other, 3);
    connect(here, there);
    ASSERT_TRUE(m_one.desk.join(1, 2));
    ASSERT_TRUE(m_one.desk.join(3, 1));
    EXPECT_EQ(m_one.desk.joinedWith(1), 3);
    EXPECT_EQ(m_one.desk.joinedWith(2), 0);
}

TEST_F(CallSoundOfThree, WhoIsMutedIsHeardByNobodyOfThreeWhoHearEachOther)
{
    connect(m_toOther, m_atOther, "PCMA");
    connect(m_toThird, m_atThird, "PCMA");
    ASSERT_TRUE(m_one.desk.join(1, 2));
    const auto hears = [](const CallPhone& phone, double one, double two) {
        return phone.hears(one) && phone.hears(two);
    };
    ASSERT_TRUE(waitFor([&] { return hears(m_other, kOne, kThird) && hears(m_third, kOne, kOther); }));
    for (CallEnd* end : {&m_toOther, &m_toThird})
        end->with([](callSession& session) { session.setMuted(true); });
    EXPECT_TRUE(waitFor([&] { return !m_other.hears(kOne) && !m_third.hears(kOne); }));
    EXPECT_TRUE(waitFor([&] { return m_other.hears(kThird) && m_third.hears(kOther); }));
    EXPECT_TRUE(hears(m_one, kOther, kThird));
}

TEST_F(CallSound, NewKeysOfEitherSideAreThoseFromThereOn)
{
    CallEnd one(m_one, 1);
    CallEnd other(m_other, 1);
    const tagMediaWant secure = {false, true};
    connect(one, other, "PCMA", secure);
    ASSERT_TRUE(waitFor([&] { return m_one.hears(kOther) && m_other.hears(kOne); }));
    for (CallEnd* renewed : {&one, &other}) {
        const tagAgreedSound before = one.agreed();
        renewed->negotiateAnew();
        connect(one, other, "PCMA", secure);
        EXPECT_TRUE(one.agreed().sendKey != before.sendKey || one.agreed().takeKey != before.takeKey);
        m_one.voice.forget();
        m_other.voice.forget();
        pass(500); // what is heard of before
        EXPECT_TRUE(waitFor([&] { return m_one.hears(kOther) && m_other.hears(kOne); }));
    }
}

TEST_F(CallSoundOfThree, OneOfTwoCallsIsHeldAndSilentWhileTheOtherTalks)
{
    connect(m_toOther, m_atOther, "PCMU");
    connect(m_toThird, m_atThird, "G722");
    ASSERT_TRUE(waitFor([&] { return m_one.hears(kOther) && m_one.hears(kThird); }));
    connect(m_toOther, m_atOther, "PCMU", {true, false});
    EXPECT_TRUE(waitFor([&] { return !m_one.hears(kOther) && m_other.hearsNothing(); }));
    EXPECT_TRUE(waitFor([&] { return m_one.hears(kThird) && m_third.hears(kOne); }));
}

// Each from another port, as a stranger does who does not know it.
void sendFrom(const char* from, int port, const QByteArray& packet)
{
    WirePort(from).say(port, packet);
}

// PCMA in both directions, with that port.
void agreeWith(CallEnd& one, int port, const QByteArray& peer = "127.0.0.1", const QByteArray& own = {})
{
    tagAgreedSound agreed;
    agreed.bSound = agreed.bReceives = agreed.bSends = true;
    agreed.send = {SOUND_CODEC::PCMA, 8, 8000};
    agreed.take = {agreed.send};
    agreed.own = own;
    agreed.peer = peer;
    agreed.nPort = port;
    callSession::tagParts parts = callSession::build(agreed);
    one.with([&](callSession& session) { session.agree(agreed, parts); });
}

// A loud square wave, as PCMA.
QByteArray loudPacket(quint16 number, quint32 source = 0xBAD)
{
    unsigned char head[rtpPacket::HEAD_BYTES];
    rtpPacket::write({8, false, number, number * 160u, source}, head);
    return QByteArray(reinterpret_cast<char*>(head), sizeof head) +
           QByteArray("\x2a\x2a\xaa\xaa", 4).repeated(40);
}

TEST_F(CallSound, TwoLoudVoicesTogetherAreLoudAndNotBroken)
{
    CallPhone silent(0);
    CallEnd one(silent, 1), two(silent, 2);
    const WirePort first, second;
    agreeWith(one, first.port());
    agreeWith(two, second.port());
    // As loud as can be, on one side of nothing: all of both lie upon each other.
    unsigned char head[rtpPacket::HEAD_BYTES];
    quint16 said = 0;
    const auto isLoud = [&] {
        rtpPacket::write({8, false, said, said * 160u, 0x600D}, head);
        const QByteArray packet =
            QByteArray(reinterpret_cast<char*>(head), sizeof head) + QByteArray(160, '\xaa');
        first.say(one.port, packet);
        second.say(two.port, packet);
        const kit::RecordedSound heard = silent.voice.heard(0.06);
        return ++said > 20 && std::all_of(heard.samples().begin(), heard.samples().end(),
                                          [](float sample) { return sample > 0.9F; });
    };
    EXPECT_TRUE(waitFor(isLoud));
    for (CallEnd* end : {&one, &two})
        end->with([](callSession& session) { EXPECT_GT(session.buffer().counts().nPlayed, 0); });
}

TEST_F(CallSound, AStrangerIsNotHeard)
{
    CallPhone silent(0);
    CallEnd one(m_one, 1);
    CallEnd other(silent, 1);
    connect(one, other, "PCMA");
    for (quint16 n = 0; n < 40; ++n) {
        sendFrom("127.0.0.2", one.port, loudPacket(n));
        pass(20);
        EXPECT_LT(m_one.voice.heard(0.1).peak(), 0.01);
    }
    qint64 strangers = 0;
    waitFor([&] {
        one.with([&](callSession& session) { strangers = session.strangers(); });
        return strangers >= 40;
    });
    EXPECT_GE(strangers, 40);
    EXPECT_LT(strangers, 80) << "each counts once; a late packet of another test may come to this port";
    for (quint16 n = 0; n < 40; ++n) {
        sendFrom("127.0.0.1", one.port, loudPacket(n));
        pass(20);
    }
    EXPECT_LT(m_one.voice.heard(1).peak(), 0.01) << "from another port, when the right one is known";
}

TEST_F(CallSound, WhatAStrangerReportsIsNotBelieved)
{
    CallEnd one(m_one, 1);
    const WirePort peer;
    const WirePort stranger("127.0.0.2");
    agreeWith(one, peer.port());
    const QByteArray spoken = peer.next();
    ASSERT_GT(spoken.size(), rtpPacket::HEAD_BYTES);
    // Of what this side says, half is lost.
    const QByteArray report =
        QByteArray("\x81\xc9\0\x07her1", 8) + spoken.mid(8, 4) + QByteArray("\x80", 1) + QByteArray(19, '\0');
    const auto lossIs = [&](int percent) {
        int told = -1;
        one.with([&](callSession& session) { told = session.reports().lossThereInPercent(); });
        return told == percent;
    };
    stranger.say(one.port + 1, report);
    pass(200);
    EXPECT_TRUE(lossIs(0));
    peer.say(one.port + 1, report);
    EXPECT_TRUE(waitFor([&] { return lossIs(50); }));
}

TEST_F(CallSound, AProgramOfThisMachineIsHeardFromTheMachinesOwnAddress)
{
    CallEnd one(m_one, 1);
    const WirePort stranger("127.0.0.4");
    const WirePort peer("127.0.0.3");
    agreeWith(one, peer.port(), "127.0.0.2", "127.0.0.3");
    qint64 strangers = 0, received = 0;
    const auto look = [&](callSession& session) {
        strangers = session.strangers();
        received = session.reports().received();
    };
    stranger.say(one.port, loudPacket(0));
    EXPECT_TRUE(waitFor([&] {
        one.with(look);
        return strangers == 1;
    }));
    EXPECT_EQ(received, 0);
    peer.say(one.port, loudPacket(0));
    EXPECT_TRUE(waitFor([&] {
        one.with(look);
        return received == 1;
    }));
    EXPECT_EQ(strangers, 1);
}

TEST_F(CallSound, BeforeAnythingWasHeardAnotherPortOfTheSameAddressMayBeIt)
{
    CallEnd one(m_one, 1);
    const WirePort peer;
    agreeWith(one, 9); // nobody's
    quint16 said = 0;
    EXPECT_TRUE(waitFor([&] {
        peer.say(one.port, loudPacket(said++));
        return m_one.voice.heard(0.3).peak() > 0.3;
    }));
    EXPECT_TRUE(waitFor([&] { return peer.came() > 0; }));
    one.with([](callSession& session) { EXPECT_EQ(session.strangers(), 4) << "until it was a row"; });
}

TEST_F(CallSound, WhatIsNoRowFromOnePortDoesNotTakeTheCall)
{
    CallEnd one(m_one, 1);
    const WirePort peer;
    const WirePort stranger;
    agreeWith(one, peer.port());
    for (quint16 n = 0; n < 40; ++n) {
        stranger.say(one.port, loudPacket(quint16(n * 2)));
        stranger.say(one.port, loudPacket(n, n));
        sendFrom("127.0.0.1", one.port, loudPacket(n));
    }
    peer.came();
    pass(300);
    EXPECT_EQ(stranger.came(), 0);
    EXPECT_GT(peer.came(), 0);
    EXPECT_LT(m_one.voice.heard(0.3).peak(), 0.01);
}

TEST_F(CallSound, TheAgreedPortTakesTheCallBackFromWhoeverSpokeBefore)
{
    CallEnd one(m_one, 1);
    const WirePort peer;
    const WirePort stranger;
    agreeWith(one, peer.port());
    for (quint16 n = 0; n < 30; ++n)
        stranger.say(one.port, loudPacket(n));
    ASSERT_TRUE(waitFor([&] { return stranger.came() > 0; })) << "nobody else has spoken yet";
    ASSERT_TRUE(waitFor([&] { return m_one.voice.heard(0.3).peak() < 0.01; }));
    quint16 said = 0;
    const auto bothSpeak = [&] {
        peer.say(one.port, loudPacket(said, 0x600D));
        stranger.say(one.port, loudPacket(quint16(30 + said)));
        ++said;
    };
    EXPECT_TRUE(waitFor([&] {
        bothSpeak();
        return m_one.voice.heard(0.2).peak() > 0.3;
    }));
    peer.came();
    stranger.came();
    for (int i = 0; i < 15; ++i) {
        bothSpeak();
        pass(20);
    }
    EXPECT_TRUE(waitFor([&] { return peer.came() > 0; }));
    EXPECT_EQ(stranger.came(), 0);
    one.with([](callSession& session) { EXPECT_GT(session.strangers(), 4) << "not only those of the row"; });
}

// The other side's port is one that its router has given it, and that nobody has agreed on.
TEST_F(CallSound, WhoHasOnlyThrownARowDoesNotKeepThePlaceOfWhoGoesOnSpeaking)
{
    CallEnd one(m_one, 1);
    const WirePort peer;
    const WirePort stranger;
    agreeWith(one, 9); // nobody's
    for (quint16 n = 0; n < 5; ++n)
        stranger.say(one.port, loudPacket(n));
    ASSERT_TRUE(waitFor([&] { return stranger.came() > 0; }));
    quint16 said = 0;
    const auto isHeard = [&] {
        peer.say(one.port, loudPacket(said++, 0x600D));
        return peer.came() > 0;
    };
    ASSERT_TRUE(waitFor(isHeard));
    stranger.came();
    // While it speaks no row of another takes its place.
    for (int i = 0; i < 20; ++i) {
        peer.say(one.port, loudPacket(said++, 0x600D));
        for (quint16 n = 0; n < 10; ++n)
            stranger.say(one.port, loudPacket(quint16(100 + 10 * i + n)));
        pass(20);
    }
    EXPECT_EQ(stranger.came(), 0);
    EXPECT_GT(peer.came(), 0);
}

TEST(RtpPeer, ASealSaysFromAnyPortOfItsAddressThatItIsTheOtherSide)
{
    for (const CRYPTO_SUITE suite : {CRYPTO_SUITE::AES_SHA1_80, CRYPTO_SUITE::NONE}) {
        const bool isSealed = suite != CRYPTO_SUITE::NONE;
        tagAgreedStream agreed;
        agreed.peer = "127.0.0.1";
        agreed.nPort = agreed.nRtcpPort = 40000;
        agreed.eSuite = suite;
        rtpPeer peer;
        peer.agree(agreed);
        sockaddr_in from = peer.rtp();
        ASSERT_TRUE(peer.is(from) && peer.takes(from, {}, 0));
        from.sin_port = htons(40010);
        EXPECT_EQ(peer.is(from) && peer.takes(from, {}, 20000), isSealed);
        EXPECT_EQ(ntohs(peer.rtp().sin_port), isSealed ? 40010 : 40000);
        EXPECT_EQ(ntohs(peer.rtcp().sin_port), isSealed ? 40010 : 40000);
        from.sin_addr.s_addr = htonl(0x7f000002);
        EXPECT_FALSE(peer.is(from)) << "another address may be anybody's";
    }
}

TEST_F(CallSound, WhatIsNotSealedIsNotHeardInAnEncryptedCall)
{
    CallPhone silent(0);
    CallEnd one(m_one, 1);
    CallEnd other(silent, 1);
    connect(one, other, "PCMA", {false, true});
    for (quint16 n = 0; n < 40; ++n) {
        sendFrom("127.0.0.1", one.port, loudPacket(n));
        pass(20);
        EXPECT_LT(m_one.voice.heard(0.1).peak(), 0.01);
    }
    EXPECT_TRUE(waitFor([&] { return silent.hears(kOne); })) << "and does not turn the sound to the stranger";
}

TEST_F(CallSound, BothSidesReportToEachOther)
{
    SteppedCall call(kOne, kOther, 0, 0);
    ASSERT_NO_FATAL_FAILURE(agree(call, "PCMA", {false, true}));
    call.run(3000);
    for (callSession* session : {&call.session(), &call.otherSession()}) {
        EXPECT_GT(session->reports().reportsRead(), 0);
        EXPECT_EQ(session->reports().lossThereInPercent(), 0);
        EXPECT_EQ(session->quality(call.nowUs()), 4);
    }
}

TEST_F(CallSound, QualityFallsWithLossAndIsNoneWhenNothingComes)
{
    SteppedCall call(kOne, kOther, 30, 0);
    ASSERT_NO_FATAL_FAILURE(agree(call, "PCMA"));
    int quality = 4;
    for (int second = 0; second < 10 && !(quality >= 0 && quality < 3); ++second) {
        call.run(1000);
        quality = call.session().quality(call.nowUs());
    }
    EXPECT_TRUE(quality >= 0 && quality < 3) << quality;
    call.setLoss(100);
    for (int second = 0; second < 4; ++second) {
        EXPECT_NE(quality, 0) << second;
        call.run(1000);
        quality = call.session().quality(call.nowUs());
    }
    EXPECT_EQ(quality, 0);
}

TEST_F(CallSound, QualityIsNotKnownBeforeAnythingHasCome)
{
    SteppedCall call(kOne, kOther, 100, 0);
    ASSERT_NO_FATAL_FAILURE(agree(call, "PCMA"));
    EXPECT_EQ(call.session().quality(call.nowUs()), -1);
    call.run(1000);
    EXPECT_EQ(call.session().quality(call.nowUs()), -1);
    call.run(3000);
    EXPECT_EQ(call.session().quality(call.nowUs()), 0) << "nobody speaks";
}

TEST_F(CallSound, AToneGoesAsAnEventAndIsNotHeardAsNoise)
{
    for (const char* codec : {"PCMA", "opus"}) {
        CallPhone silent(0);
        CallEnd one(silent, 1);
        CallEnd other(m_other, 1);
        negotiate(one, other, codec);
        const LossyWay way(one.port, other.port, 0, 0);
        other.apply(way.port());
        one.apply(way.port());
        pass(300);
        m_other.voice.forget();
        one.with([](callSession& session) {
            EXPECT_TRUE(session.sendTone('5', 100));
            EXPECT_TRUE(session.sendTone('#', 100));
            EXPECT_FALSE(session.sendTone('x', 100));
        });
        EXPECT_TRUE(waitFor([&] { return way.tones(101) == "5#"; })) << way.tones(101).constData();
        pass(300);
        EXPECT_LT(m_other.voice.heard(2).peak(), 0.01) << codec;
    }
}

TEST_F(CallSound, ToneIsNotTakenWhenTheOtherSideDoesNotKnowIt)
{
    CallEnd one(m_one, 1);
    one.negotiation->answer("v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=-\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
                            "m=audio 40000 RTP/AVP 8\r\n",
                            {});
    one.apply();
    one.with([](callSession& session) { EXPECT_FALSE(session.sendTone('5', 100)); });
}

TEST_F(CallSound, PacketsOfEachLengthAreHeard)
{
    for (const int ms : {10, 30, 40, 60}) {
        SCOPED_TRACE(ms);
        SteppedCall call(kOne, kOther, 0, 0);
        ASSERT_NO_FATAL_FAILURE(agree(call, "PCMU", {}, ms));
        call.run(1500);
        const kit::RecordedSound heard = call.otherVoice().heard(1);
        EXPECT_TRUE(heard.has(kOne));
        EXPECT_LT(heard.longestQuiet(), 160) << "without a gap";
    }
}

int entriesOf(const char* folder)
{
    int count = 0;
    DIR* dir = opendir(folder);
    while (dir && readdir(dir))
        ++count;
    closedir(dir);
    return count;
}

bool isFree(int port)
{
    const int probe = socket(AF_INET, SOCK_DGRAM, 0);
    sockaddr_in place = {};
    place.sin_family = AF_INET;
    place.sin_port = htons(uint16_t(port));
    const bool isBound = bind(probe, reinterpret_cast<sockaddr*>(&place), sizeof place) == 0;
    close(probe);
    return isBound;
}

TEST_F(CallSound, PortsAreFreeAfterTheCall)
{
    int port = 0;
    {
        CallEnd one(m_one, 1);
        port = one.port;
        EXPECT_EQ(port % 2, 0);
        EXPECT_FALSE(isFree(port) || isFree(port + 1));
    }
    EXPECT_TRUE(isFree(port) && isFree(port + 1));
}

TEST_F(CallSound, TwoHundredCallsLeaveNothingBehind)
{
    static const char* const kCodecs[] = {"opus", "G722", "PCMA", "PCMU"};
    const auto call = [this](int number) {
        CallEnd one(m_one, number);
        CallEnd other(m_other, number);
        connect(one, other, kCodecs[number % 4], {false, number % 2 == 0});
        pass(45);
        m_one.voice.forget(); // what was heard is none of the call's
        m_other.voice.forget();
    };
    for (int i = 0; i < 40; ++i)
        call(i);
    const int threads = entriesOf("/proc/self/task");
    const int handles = entriesOf("/proc/self/fd");
    const qint64 before = kit::ownMemoryKiB();
    for (int i = 0; i < 200; ++i)
        call(i);
    EXPECT_EQ(entriesOf("/proc/self/task"), threads);
    EXPECT_EQ(entriesOf("/proc/self/fd"), handles);
    EXPECT_LT(kit::ownMemoryKiB() - before, 1000);
}

} // namespace
