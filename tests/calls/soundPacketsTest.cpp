// What goes over the wire of one call's sound, packet by packet. The test is the clock: no frame goes out
// but by its hand.
#include "tests/calls/callStand.h"
#include "tests/players/wirePort.h"
#include <QtEndian>
#include <cmath>
#include <netinet/in.h>
#include <set>

namespace {

constexpr int kTones = 101;
constexpr int kOpus = 96;
constexpr short kLoud = 12000;
constexpr double kHertz = 500; // each frame ends where the next one begins

class SoundPackets : public CallStand
{
protected:
    SoundPackets()
    {
        std::unique_ptr<callSockets> sockets = callSockets::open();
        m_nPort = sockets->port();
        m_session = std::make_unique<callSession>(std::move(sockets));
    }
    // With the other side of this test, which takes reports on the port of its sound.
    tagAgreedSound both(SOUND_CODEC codec = SOUND_CODEC::PCMA, int ptime = 20) const
    {
        const tagSoundCodec* known = soundCodec(codec);
        tagAgreedSound agreed;
        agreed.bSound = agreed.bSends = agreed.bReceives = true;
        agreed.send = {codec, known->nPayload < 0 ? kOpus : known->nPayload, known->nClock};
        agreed.take = {agreed.send};
        agreed.peer = "127.0.0.1";
        agreed.nPort = agreed.nRtcpPort = m_peer.port();
        agreed.nSendTones = kTones;
        agreed.nPtime = ptime;
        return agreed;
    }
    tagAgreedSound held() const
    {
        tagAgreedSound agreed = both();
        agreed.bSends = false;
        return agreed;
    }
    void agree(const tagAgreedSound& agreed)
    {
        callSession::tagParts parts = callSession::build(agreed);
        m_session->agree(agreed, parts);
    }
    void say(int frames, short loud = kLoud)
    {
        for (int i = 0; i < frames; ++i) {
            short frame[callSession::FRAME_SAMPLES];
            for (int at = 0; at < callSession::FRAME_SAMPLES; ++at, ++m_nSaid)
                frame[at] = short(loud * std::sin(double(m_nSaid) / 5));
            m_session->send(frame);
        }
    }
    struct tagPacket
    {
        tagRtpHead head;
        QByteArray content;
    };
    // The next one of the sound.
    tagPacket next() const
    {
        tagPacket packet;
        QByteArray bytes = m_peer.next();
        while (isReport(bytes))
            bytes = m_peer.next();
        int start = 0, length = 0;
        EXPECT_TRUE(rtpPacket::read(reinterpret_cast<const unsigned char*>(bytes.constData()),
                                    int(bytes.size()), packet.head, start, length));
        packet.content = bytes.mid(start, length);
        return packet;
    }
    // So many frames of a tone.
    static QByteArray toneOf(int frames, soundEncoder& encoder)
    {
        QByteArray content;
        for (int i = 0; i < frames; ++i) {
            ToneVoice voice(kHertz);
            short frame[callSession::FRAME_SAMPLES];
            voice.read(frame);
            content += encoder.encode(frame, callSession::FRAME_SAMPLES).value(0);
        }
        return content;
    }
    static QByteArray toneOf(int frames)
    {
        return toneOf(frames, *soundEncoder::make(SOUND_CODEC::PCMA, 20));
    }
    // The other side's next one, of 20 ms by its time.
    void send(const QByteArray& content, SOUND_CODEC codec = SOUND_CODEC::PCMA)
    {
        unsigned char head[rtpPacket::HEAD_BYTES];
        const int number = m_nNext++;
        rtpPacket::write(
            {soundCodec(codec)->nPayload, false, quint16(number), quint32(number) * 160, m_nSource}, head);
        m_peer.say(m_nPort, QByteArray(reinterpret_cast<char*>(head), sizeof head) + content);
    }
    void bring(const QByteArray& content, SOUND_CODEC codec = SOUND_CODEC::PCMA)
    {
        send(content, codec);
        ++m_nCame;
        EXPECT_TRUE(waitFor([&] {
            m_session->receive(m_nNow);
            return m_session->reports().received() == m_nCame;
        }));
    }
    // So many packets of a tone come, each in its time, and are played as they are.
    void hear(SOUND_CODEC codec, int packets)
    {
        const std::unique_ptr<soundEncoder> encoder = soundEncoder::make(codec, 20);
        for (int i = 0; i < packets; ++i) {
            bring(toneOf(1, *encoder), codec);
            play(1);
        }
    }
    bool isLoud() const { return m_loudspeaker.heard(0.02).peak() > 0.1; }
    // How many frames are loud of one packet with so many frames of sound.
    int loudOf(int frames)
    {
        tagAgreedSound quiet = held();
        quiet.bReceives = false;
        agree(quiet);
        agree(both());
        bring(toneOf(frames));
        int loud = 0;
        for (int i = 0; i < 40; ++i) {
            play(1);
            loud += isLoud();
        }
        return loud;
    }
    void play(int frames)
    {
        for (int i = 0; i < frames; ++i, m_nNow += callSession::FRAME_MS * 1000) {
            short frame[callSession::FRAME_SAMPLES];
            m_session->play(frame, m_nNow);
            m_loudspeaker.write(frame);
        }
    }
    static bool isReport(const QByteArray& packet)
    {
        return rtpPacket::isRtcp(reinterpret_cast<const unsigned char*>(packet.constData()),
                                 int(packet.size()));
    }

    const WirePort m_peer;
    int m_nPort = 0;
    std::unique_ptr<callSession> m_session;
    qint64 m_nSaid = 0;
    int m_nNext = 0; // of the other side
    quint32 m_nSource = 5;
    int m_nCame = 0; // of that source
    qint64 m_nNow = callDesk::nowUs();
    ToneVoice m_loudspeaker{0};
};

TEST_F(SoundPackets, TheFirstOneOfATalkIsMarkedAndTimeGoesOnWhileItIsHeld)
{
    agree(both());
    say(2);
    const tagPacket first = next(), second = next();
    EXPECT_TRUE(first.head.bMarker);
    EXPECT_FALSE(second.head.bMarker);
    EXPECT_EQ(second.head.nTime, first.head.nTime + 160);
    agree(held());
    say(10);
    agree(both());
    say(2);
    const tagPacket third = next();
    EXPECT_TRUE(third.head.bMarker);
    EXPECT_EQ(third.head.nSequence, quint16(second.head.nSequence + 1)) << "nothing went out meanwhile";
    EXPECT_EQ(third.head.nTime, second.head.nTime + 11 * 160);
    EXPECT_FALSE(next().head.bMarker);
}

TEST_F(SoundPackets, TheTimeOfOpusIsThatOfItsOwnClock)
{
    agree(both(SOUND_CODEC::OPUS));
    say(2);
    const tagPacket first = next(), second = next();
    EXPECT_EQ(second.head.nTime - first.head.nTime, 960u);
    ASSERT_TRUE(m_session->sendTone('5', 100));
    say(9);
    for (int packet = 0; packet < 7; ++packet)
        EXPECT_EQ(next().head.nPayload, kTones);
    EXPECT_EQ(next().head.nTime - second.head.nTime, 9 * 960u) << "also behind a tone";
}

TEST_F(SoundPackets, TheOtherSideMayChangeItsMindAmongWhatWasOffered)
{
    tagAgreedSound agreed = both();
    agreed.take.append({SOUND_CODEC::PCMU, 0, 8000});
    agree(agreed);
    hear(SOUND_CODEC::PCMA, 30);
    EXPECT_GT(m_loudspeaker.heard(0.3).share(kHertz), 0.9);
    hear(SOUND_CODEC::PCMU, 30);
    EXPECT_GT(m_loudspeaker.heard(0.3).share(kHertz), 0.9) << "another law makes noise of it";
}

TEST_F(SoundPackets, WhatWasSaidBeforeAHoldIsNotHeardAfterIt)
{
    agree(both());
    hear(SOUND_CODEC::PCMA, 10);
    ASSERT_GT(m_loudspeaker.heard(0.02).peak(), 0.1);
    tagAgreedSound quiet = held();
    quiet.bReceives = false;
    agree(quiet);
    play(50);
    EXPECT_LT(m_loudspeaker.heard(0.9).peak(), 0.01);
    agree(both());
    play(20);
    EXPECT_LT(m_loudspeaker.heard(0.39).peak(), 0.01);
    hear(SOUND_CODEC::PCMA, 20);
    EXPECT_GT(m_loudspeaker.heard(0.1).peak(), 0.1);
}

TEST_F(SoundPackets, WhatOnePacketHoldsBeyondItsTimeIsNotHeardForLong)
{
    const int most = loudOf(5);
    EXPECT_GE(most, 5);
    EXPECT_LE(loudOf(8), most + 1);
}

TEST_F(SoundPackets, WhatALongOneHoldsEndsWithAHold)
{
    agree(both());
    bring(toneOf(5));
    for (int i = 0; i < 20 && !isLoud(); ++i)
        play(1);
    ASSERT_TRUE(isLoud());
    tagAgreedSound quiet = held();
    quiet.bReceives = false;
    agree(quiet);
    play(1);
    EXPECT_FALSE(isLoud());
}

TEST_F(SoundPackets, AnotherSourceIsNotLateByTheNumbersOfTheOneBefore)
{
    agree(both());
    hear(SOUND_CODEC::PCMA, 30);
    m_nSource = 6;
    m_nNext = 0;
    for (int i = 0; i < 4; ++i)
        send(toneOf(1)); // which may be a stranger's
    m_nCame = 0;
    hear(SOUND_CODEC::PCMA, 8);
    EXPECT_EQ(m_session->buffer().counts().nLate, 0);
    EXPECT_TRUE(isLoud());
}

TEST_F(SoundPackets, EachIsAsLongAsItsTimeFromTheFirstOn)
{
    for (const SOUND_CODEC codec : {SOUND_CODEC::G722, SOUND_CODEC::PCMA, SOUND_CODEC::PCMU}) {
        for (const int ms : {10, 20, 30, 60}) {
            agree(both(codec, ms));
            say(6);
            for (int packet = 0; packet < 120 / ms; ++packet)
                EXPECT_EQ(next().content.size(), ms * 8) << soundCodec(codec)->pName << ' ' << packet;
        }
    }
}

TEST_F(SoundPackets, AllOfOneToneHaveItsTimeAndTheNextOneHasAnother)
{
    agree(both());
    ASSERT_TRUE(m_session->sendTone('5', 100) && m_session->sendTone('5', 100));
    say(16);
    QList<quint32> times;
    for (int packet = 0; packet < 14; ++packet) {
        const tagPacket tone = next();
        ASSERT_EQ(tone.head.nPayload, kTones);
        EXPECT_EQ(tone.content[0], 5);
        EXPECT_EQ(tone.head.bMarker, packet % 7 == 0) << packet;
        if (!times.contains(tone.head.nTime))
            times.append(tone.head.nTime);
    }
    ASSERT_EQ(times.size(), 2) << "as many digits as were typed";
    EXPECT_EQ(times[1] - times[0], 8 * 160u) << "five frames of the tone, and three of the pause";
}

TEST_F(SoundPackets, ATonePressedThatTheOtherSideDoesNotTakeIsNotSent)
{
    tagAgreedSound agreed = both();
    agreed.nTones = 0x3ff;
    agree(agreed);
    for (const char tone : {'*', '#', 'A', 'D', 'x'})
        EXPECT_FALSE(m_session->sendTone(tone, 100)) << tone;
    EXPECT_TRUE(m_session->sendTone('0', 100) && m_session->sendTone('9', 100));
    EXPECT_EQ(m_session->tonesTaken(), 0x3ffu);
    agreed.nSendTones = -1;
    agree(agreed);
    EXPECT_FALSE(m_session->sendTone('0', 100));
    EXPECT_EQ(m_session->tonesTaken(), 0u);
}

TEST_F(SoundPackets, TonesThatWaitedAtAHoldAreNotSentAfterIt)
{
    agree(both());
    for (const char tone : {'1', '2', '3'})
        ASSERT_TRUE(m_session->sendTone(tone, 100));
    say(1);
    EXPECT_EQ(next().head.nPayload, kTones);
    agree(held());
    say(1);
    agree(both());
    say(20);
    for (int packet = 0; packet < 20; ++packet)
        EXPECT_EQ(next().head.nPayload, 8) << packet;
}

TEST_F(SoundPackets, WhatWasSaidBeforeAToneIsNotSaidAfterIt)
{
    agree(both(SOUND_CODEC::PCMA, 60));
    say(5);
    next();
    ASSERT_TRUE(m_session->sendTone('5', 100));
    say(8, 0);
    for (int packet = 0; packet < 7; ++packet)
        ASSERT_EQ(next().head.nPayload, kTones);
    say(3, 0);
    const tagPacket after = next();
    ASSERT_EQ(after.content.size(), 480);
    // The quietest two steps of either sign.
    const auto isQuiet = [](char coded) { return (quint8(coded) & 0x7e) == 0x54; };
    EXPECT_LT(480 - std::count_if(after.content.begin(), after.content.end(), isQuiet), 60);
}

TEST_F(SoundPackets, WhoLeavesSaysSo)
{
    agree(both());
    say(1);
    const quint32 source = next().head.nSource;
    m_session.reset();
    const QByteArray farewell = m_peer.next();
    ASSERT_TRUE(isReport(farewell));
    ASSERT_GE(farewell.size(), 8);
    const char* last = farewell.constData() + farewell.size() - 8;
    EXPECT_EQ(quint8(last[1]), 203);
    EXPECT_EQ(qFromBigEndian<quint32>(last + 4), source);
}

// In a packet of 20 ms of one channel the second bit behind the first byte says so (RFC 6716).
int repeating(const QList<QByteArray>& packets)
{
    int count = 0;
    for (const QByteArray& packet : packets)
        count += packet.size() > 1 && (packet[0] & 0x80) == 0 && (packet[1] & 0x40) != 0;
    return count;
}

TEST_F(SoundPackets, WhoHearsThatPacketsAreLostSendsTheirSoundOnceMore)
{
    agree(both(SOUND_CODEC::OPUS));
    const auto spoken = [this] {
        QList<QByteArray> packets;
        for (int i = 0; i < 50; ++i) {
            say(1, short(kLoud / (1 + i % 5)));
            packets.append(next().content);
        }
        return packets;
    };
    EXPECT_EQ(repeating(spoken()), 0);
    say(1);
    const quint32 source = qToBigEndian(next().head.nSource);
    QByteArray report("\x81\xc9\0\x07her1", 8);
    report.append(reinterpret_cast<const char*>(&source), 4);
    report += QByteArray("\x40", 1) + QByteArray(19, '\0'); // a quarter
    m_peer.say(m_nPort, report);
    ASSERT_TRUE(waitFor([&] {
        m_session->receive(callDesk::nowUs());
        return m_session->reports().lossThereInPercent() == 25;
    }));
    EXPECT_GT(repeating(spoken()), 25);
}

TEST_F(SoundPackets, OneThatWasCutIsNone)
{
    const std::unique_ptr<callSockets> sockets = callSockets::open();
    unsigned char packet[100];
    sockaddr_in from = {};
    qint64 age = 0;
    m_peer.say(sockets->port(), QByteArray(101, 'x'));
    m_peer.say(sockets->port(), QByteArray(100, 'y'));
    int size = 0;
    const auto comes = [&] { return (size = sockets->take(false, packet, sizeof packet, from, age)) != 0; };
    ASSERT_TRUE(waitFor(comes));
    EXPECT_EQ(size, -1);
    ASSERT_TRUE(waitFor(comes));
    EXPECT_EQ(size, 100);
    EXPECT_EQ(packet[0], 'y');
}

TEST_F(SoundPackets, NobodyGuessesTheirPortsAndRoutersKnowThemForSpeech)
{
    constexpr int kExpedited = 0xb8; // RFC 3246
    std::set<int> ports;
    for (int call = 0; call < 8; ++call) {
        const std::unique_ptr<callSockets> sockets = callSockets::open();
        ports.insert(sockets->port());
        for (const bool isReport : {false, true}) {
            int service = 0;
            socklen_t size = sizeof service;
            EXPECT_EQ(getsockopt(sockets->descriptor(isReport), IPPROTO_IP, IP_TOS, &service, &size), 0);
            EXPECT_EQ(service, kExpedited);
        }
    }
    EXPECT_GT(ports.size(), 1u);
}

// The part that makes up for lost sound writes beyond its end where it is asked for less than 20 ms.
TEST_F(SoundPackets, ForOneOfTenMillisecondsThatIsLostTwentyAreMadeUp)
{
    const std::unique_ptr<soundDecoder> decoder = soundDecoder::make(SOUND_CODEC::PCMU);
    std::vector<short> samples;
    decoder->decode(QByteArray(80, '\x2a'), samples);
    const size_t heard = samples.size();
    decoder->conceal(samples);
    EXPECT_GE(samples.size() - heard, size_t(soundCoder::SAMPLE_RATE / 50));
}

} // namespace
