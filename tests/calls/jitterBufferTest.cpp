// The packets of a stream in order, as long as they are waited for and no longer.
#include "players/jitterBuffer.h"
#include <gtest/gtest.h>
#include <random>

namespace {

constexpr int kClock = 8000;
constexpr qint64 kMs = 1000;
constexpr qint64 kFrame = 20 * kMs;

class Buffer : public testing::Test
{
protected:
    // Packet number n of a stream that began at 0, so many ms under way.
    void bring(int n, qint64 wayMs)
    {
        m_buffer.put(quint16(65530 + n), quint32(0xFFFFFF00u + n * 160), kClock, {8, QByteArray::number(n)},
                     n * kFrame + wayMs * kMs);
    }
    QByteArray take(qint64 nowUs)
    {
        tagHeldPacket packet;
        switch (m_buffer.take(nowUs, packet)) {
        case jitterBuffer::TAKEN::PACKET:
            return packet.content;
        case jitterBuffer::TAKEN::LOST:
            return "lost";
        case jitterBuffer::TAKEN::LATE:
            return "late";
        default:
            return "nothing";
        }
    }
    jitterBuffer m_buffer;
};

TEST_F(Buffer, PacketsAreHeldForSixtyMilliseconds)
{
    bring(0, 0);
    EXPECT_EQ(take(40 * kMs), "nothing");
    EXPECT_EQ(take(60 * kMs), "0");
}

TEST_F(Buffer, PacketsComeInOrderAndOnceThoughTheNumbersTurnOver)
{
    for (const int n : {0, 2, 1, 1, 3, 6, 5, 4, 5, 8, 7})
        bring(n, 0);
    for (int n = 0; n < 9; ++n)
        EXPECT_EQ(take(n * kFrame + 60 * kMs), QByteArray::number(n));
}

TEST_F(Buffer, OneThatIsMissingIsLostWhenItsTimeHasCome)
{
    for (const int n : {0, 1, 3, 4, 5})
        bring(n, 0);
    EXPECT_EQ(take(60 * kMs), "0");
    EXPECT_EQ(take(80 * kMs), "1");
    EXPECT_EQ(take(100 * kMs), "lost");
    EXPECT_EQ(take(120 * kMs), "3");
    bring(2, 120);
    EXPECT_EQ(m_buffer.counts().nLost, 1);
    EXPECT_EQ(m_buffer.counts().nLate, 1);
}

TEST_F(Buffer, APauseIsFilledForAWhileOnlyAndThePacketThatComesLateIsPlayed)
{
    bring(0, 0);
    EXPECT_EQ(take(60 * kMs), "0");
    EXPECT_EQ(take(80 * kMs), "late");
    bring(1, 70);
    EXPECT_EQ(take(100 * kMs), "1");
    for (int i = 0; i < jitterBuffer::MAX_CONCEALED; ++i)
        EXPECT_EQ(take((120 + 20 * i) * kMs), "late");
    EXPECT_EQ(take(400 * kMs), "nothing");
    EXPECT_EQ(m_buffer.counts().nLost, 0);
}

TEST_F(Buffer, TheDelayFollowsTheJitterUpAndDown)
{
    std::minstd_rand chance(7);
    int missed = 0;
    int n = 0;
    const auto run = [&](int packets, int jitterMs) {
        missed = 0;
        for (int end = n + packets; n < end; ++n) {
            bring(n, 20 + int(chance() % unsigned(jitterMs + 1)));
            const QByteArray taken = take(n * kFrame + 200 * kMs);
            missed += taken == "late" || taken == "lost";
        }
    };
    run(200, 0);
    EXPECT_EQ(m_buffer.delayMs(), jitterBuffer::LEAST_MS);
    run(200, 150);
    EXPECT_GT(m_buffer.delayMs(), 130);
    EXPECT_LE(m_buffer.delayMs(), jitterBuffer::MOST_MS);
    run(1500, 10);
    EXPECT_LT(m_buffer.delayMs(), 80);
    EXPECT_EQ(missed, 0);
}

TEST_F(Buffer, TheDelayHasABound)
{
    for (int n = 0; n < 100; ++n)
        bring(n, n % 10 == 9 ? 2 * jitterBuffer::MOST_MS : 0);
    EXPECT_EQ(m_buffer.delayMs(), jitterBuffer::MOST_MS);
}

TEST_F(Buffer, AWayThatIsLongerFromNowOnIsNoJitterInTheEnd)
{
    for (int n = 0; n < 50; ++n)
        bring(n, 0);
    for (int n = 50; n < 60; ++n)
        bring(n, 200);
    EXPECT_GT(m_buffer.delayMs(), 200);
    for (int n = 60; n < 1500; ++n)
        bring(n, 200);
    EXPECT_EQ(m_buffer.delayMs(), jitterBuffer::LEAST_MS);
}

TEST_F(Buffer, WhatOneLatePacketHasDelayedIsCaughtUpWith)
{
    int last = 0;
    int held = 0;
    for (int n = 0; n < 1500; ++n) {
        bring(n, n == 20 ? 250 : 0);
        bool isNumber = false;
        const int taken = take(n * kFrame).toInt(&isNumber);
        last = isNumber ? taken : last;
        held = std::max(held, n - last);
    }
    EXPECT_GT(held, 10) << "the late one was waited for";
    EXPECT_LE(1499 - last, 6);
    EXPECT_EQ(m_buffer.counts().nLost, 0);
}

TEST_F(Buffer, AGapOfTheSenderIsNotFilledPacketByPacket)
{
    for (int n = 0; n < 3; ++n)
        bring(n, 0);
    for (int n = 0; n < 3; ++n)
        EXPECT_EQ(take(n * kFrame + 60 * kMs), QByteArray::number(n));
    bring(90, 0);
    EXPECT_EQ(take(90 * kFrame + 60 * kMs), "90");
    EXPECT_EQ(m_buffer.counts().nLost, 0);
}

TEST_F(Buffer, AStreamThatCountsAnewIsPlayedAfterAWhile)
{
    for (int n = 0; n < 100; ++n) {
        bring(n, 0);
        take(n * kFrame + 60 * kMs);
    }
    int played = 0;
    for (int n = 0; n < 40; ++n) {
        const qint64 nowUs = (100 + n) * kFrame;
        m_buffer.put(quint16(65530 + 20 + n), quint32(0xFFFFFF00u + (100 + n) * 160), kClock, {8, "anew"},
                     nowUs);
        played += take(nowUs + 60 * kMs) == "anew";
    }
    EXPECT_GT(played, 20);
}

TEST_F(Buffer, AnotherStreamIsPlayedAfterAWhileThoughItsNumbersAreOthers)
{
    for (int n = 0; n < 5; ++n)
        bring(n, 0);
    EXPECT_EQ(take(60 * kMs), "0");
    m_buffer.put(30000, 5, kClock, {8, "new"}, 200 * kMs);
    EXPECT_EQ(take(260 * kMs), "new");
}

TEST_F(Buffer, PacketsThatAreTooLateNowAndThenDoNotBeginTheStreamAnew)
{
    int silent = 0;
    for (int n = 0; n < 600; ++n) {
        if (n % 20 != 0)
            bring(n, 0);
        if (n > 40 && n % 20 == 5)
            bring(n - 25, 500);
        const bool isSilent = take(n * kFrame) == "nothing";
        silent += n > 100 && isSilent; // by then it is held as long as can be
    }
    EXPECT_GT(m_buffer.counts().nLate, 20);
    EXPECT_EQ(silent, 0);
}

TEST_F(Buffer, ALongPauseOfTheSenderIsNoDelay)
{
    bring(0, 0);
    EXPECT_EQ(take(60 * kMs), "0");
    bring(1, 60000);
    EXPECT_EQ(take(60020 * kMs), "nothing");
    EXPECT_EQ(take(60080 * kMs), "1");
}

TEST_F(Buffer, AFloodIsBounded)
{
    for (int n = 0; n < 2000; ++n)
        bring(n, -n * 20);
    tagHeldPacket packet;
    int taken = 0;
    while (m_buffer.take(3600000 * kMs, packet) == jitterBuffer::TAKEN::PACKET)
        ++taken;
    EXPECT_LE(taken, jitterBuffer::MAX_PACKETS);
}

TEST_F(Buffer, ToneHasItsPlaceAmongTheSoundAndSaysNothingOfTheDelay)
{
    bring(0, 0);
    bring(1, 0);
    for (int n = 2; n < 12; ++n)
        m_buffer.putSilent(quint16(65530 + n), {-1, "tone"}, n * kFrame);
    bring(12, 0);
    for (int n = 0; n < 13; ++n)
        EXPECT_EQ(take(n * kFrame + 60 * kMs), n < 2 || n == 12 ? QByteArray::number(n) : "tone") << n;
    EXPECT_EQ(m_buffer.delayMs(), jitterBuffer::LEAST_MS);
}

TEST_F(Buffer, AToneFromFarAwayIsNoPartOfTheSound)
{
    bring(0, 0);
    EXPECT_EQ(take(60 * kMs), "0");
    bring(1, 0);
    bring(2, 0);
    m_buffer.putSilent(quint16(65530 + 20000), {-1, "tone"}, 50 * kMs);
    bring(3, 0);
    for (int n = 1; n < 4; ++n)
        EXPECT_EQ(take(n * kFrame + 60 * kMs), QByteArray::number(n));
}

TEST_F(Buffer, WhatWasCountedStaysWhenAnotherSourceBegins)
{
    for (const int n : {0, 2})
        bring(n, 0);
    for (int n = 0; n < 3; ++n)
        take(n * kFrame + 60 * kMs);
    m_buffer.clear();
    EXPECT_EQ(m_buffer.counts().nPlayed, 2);
    EXPECT_EQ(m_buffer.counts().nLost, 1);
}

TEST_F(Buffer, OneOfLongPacketsThatIsMissingIsWaitedForAsLongAsItLasts)
{
    const auto bringLong = [this](int n) {
        m_buffer.put(quint16(n), quint32(n) * 480, kClock, {8, QByteArray::number(n)}, n * 3 * kFrame);
    };
    for (const int n : {0, 1, 3})
        bringLong(n);
    EXPECT_EQ(take(60 * kMs), "0");
    EXPECT_EQ(take(120 * kMs), "1");
    EXPECT_EQ(take(160 * kMs), "late");
    EXPECT_EQ(take(180 * kMs), "lost");
    EXPECT_EQ(take(240 * kMs), "3");
}

} // namespace
