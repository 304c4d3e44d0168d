// What two sides of a stream report to each other, number by number: loss, jitter, the time that a packet is
// under way, and wishes for a new picture. The clock is the test's.
#include "players/rtcpReports.h"
#include <QtEndian>
#include <gtest/gtest.h>

namespace {

constexpr quint32 kHere = 1;
constexpr quint32 kThere = 2;
constexpr qint64 kSecond = 1000000;
constexpr qint64 kFrame = kSecond / 50;
constexpr int kClock = 8000;
constexpr qsizetype kBlock = 8;     // where the block of who only takes begins
constexpr qsizetype kTimeOfDay = 8; // of who sends

quint32 wordAt(const QByteArray& packet, qsizetype at)
{
    return packet.size() < at + 4 ? 0xdead : qFromBigEndian<quint32>(packet.constData() + at);
}

class StreamReports : public testing::Test
{
protected:
    // Packet n of this side, so long under way.
    void bring(quint16 n, qint64 wayUs = 0)
    {
        m_there.took({8, false, n, n * 160u, kHere}, kClock, n * kFrame + wayUs, true);
    }
    static void tell(rtcpReports& to, const QByteArray& report, qint64 nowUs)
    {
        to.read(reinterpret_cast<const unsigned char*>(report.constData()), int(report.size()), nowUs);
    }

    rtcpReports m_here{kHere, "here"};
    rtcpReports m_there{kThere, "there"};
};

TEST_F(StreamReports, LossIsThatSinceTheReportBeforeAndThatOfAll)
{
    for (quint16 n = 1; n < 100; n += 2)
        bring(n);
    const QByteArray first = m_there.report(kSecond);
    EXPECT_EQ(wordAt(first, kBlock), kHere);
    EXPECT_NEAR(double(wordAt(first, kBlock + 4) >> 24), 256 * 49 / 99, 1);
    EXPECT_EQ(wordAt(first, kBlock + 4) & 0xffffff, 49u);
    for (quint16 n = 100; n < 200; ++n)
        bring(n);
    const QByteArray second = m_there.report(2 * kSecond);
    EXPECT_EQ(wordAt(second, kBlock + 4) >> 24, 0u) << "what was lost long ago is no loss of now";
    EXPECT_EQ(wordAt(second, kBlock + 4) & 0xffffff, 49u);
}

TEST_F(StreamReports, JitterIsToldInUnitsOfTheClock)
{
    for (quint16 n = 0; n < 200; ++n)
        bring(n, n % 2 == 0 ? 0 : kFrame);
    EXPECT_NEAR(wordAt(m_there.report(kSecond), kBlock + 12), 160, 10);
}

TEST_F(StreamReports, TheTimeThatAReportLayThereIsNoneThatItWasUnderWay)
{
    m_here.sent(0, 160);
    bring(0);
    QByteArray report = m_here.report(1);
    qToBigEndian(wordAt(report, kTimeOfDay) - 5, report.data() + kTimeOfDay); // five seconds ago
    tell(m_there, report, 1 * kSecond);
    const QByteArray answer = m_there.report(5 * kSecond);
    EXPECT_EQ(wordAt(answer, kBlock + 20), 4u * 65536);
    tell(m_here, answer, 5 * kSecond);
    EXPECT_EQ(m_here.reportsRead(), 1);
    EXPECT_GE(m_here.roundTripMs(), 990);
    EXPECT_LT(m_here.roundTripMs(), 3500);
}

TEST_F(StreamReports, WhatIsToldOfSomebodyElseIsNotAboutThisSide)
{
    rtcpReports third(3, "third");
    for (quint16 n = 1; n < 100; n += 2)
        bring(n);
    const QByteArray report = m_there.report(kSecond);
    tell(third, report, kSecond);
    EXPECT_EQ(third.reportsRead(), 0);
    EXPECT_EQ(third.lossThereInPercent(), 0);
    tell(m_here, report, kSecond);
    EXPECT_EQ(m_here.lossThereInPercent(), 49);
}

TEST_F(StreamReports, TheyComeEveryFewSecondsAndTheSecondOneSoon)
{
    EXPECT_TRUE(m_here.isDue(1));
    m_here.report(kSecond);
    EXPECT_FALSE(m_here.isDue(kSecond + 900 * rtcpReports::FIRST_MS));
    EXPECT_TRUE(m_here.isDue(kSecond + 1000 * rtcpReports::FIRST_MS));
    m_here.report(2 * kSecond);
    EXPECT_FALSE(m_here.isDue(2 * kSecond + 700 * rtcpReports::EVERY_MS));
    EXPECT_TRUE(m_here.isDue(2 * kSecond + 1300 * rtcpReports::EVERY_MS));
}

// Whoever has made a picture for a number makes none for its repetition.
TEST_F(StreamReports, EachWishForANewPictureHasANumberOfItsOwn)
{
    bring(0);
    const QByteArray first = m_there.pictureLost(true);
    const QByteArray second = m_there.pictureLost(true);
    EXPECT_EQ(wordAt(first, first.size() - 8), kHere);
    EXPECT_NE(wordAt(first, first.size() - 4) >> 24, wordAt(second, second.size() - 4) >> 24);
}

TEST_F(StreamReports, AnotherSourceIsCountedFromItsOwnBeginning)
{
    for (quint16 n = 0; n < 50; n += 2)
        bring(n);
    m_there.report(kSecond);
    for (quint16 n = 0; n < 10; ++n)
        m_there.took({8, false, quint16(30000 + n), n * 160u, 9}, kClock, kSecond + n * kFrame, true);
    EXPECT_EQ(m_there.expected(), 10);
    EXPECT_EQ(m_there.received(), 10);
    const QByteArray report = m_there.report(2 * kSecond);
    EXPECT_EQ(wordAt(report, kBlock), 9u);
    EXPECT_EQ(wordAt(report, kBlock + 4), 0u) << "nothing of it is lost";
    EXPECT_EQ(wordAt(report, kBlock + 12), 0u) << "nor does it come unevenly";
}

TEST_F(StreamReports, ATonesTimeIsNoJitter)
{
    for (quint16 n = 0; n < 100; ++n) {
        bring(n);
        m_there.took({101, false, quint16(n + 1), 7, kHere}, kClock, n * kFrame, false);
    }
    EXPECT_EQ(wordAt(m_there.report(2 * kSecond), kBlock + 12), 0u);
}

} // namespace
