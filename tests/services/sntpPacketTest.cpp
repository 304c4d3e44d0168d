// What an answer of a time server is worth, packet by packet.
#include "host/services/clock/sntpPacket.h"
#include "tests/kit/plain/timeServer.h"
#include <gtest/gtest.h>

namespace {

constexpr long long kNow = 1800000000; // in 2027
constexpr quint64 kNumber = 0x0123456789abcdefULL;
constexpr int kTripMs = 40;

tagSntpAnswer judged(const kit::tagTimeAnswer& answer, qint64 tripMs = kTripMs)
{
    return sntpJudge(kit::TimeServer::packet(answer, sntpQuestion(kNumber)), kNumber, tripMs);
}

kit::tagTimeAnswer good()
{
    kit::tagTimeAnswer answer;
    answer.nUtc = kNow;
    return answer;
}

void expectRefused(const kit::tagTimeAnswer& answer, const char* why)
{
    const tagSntpAnswer verdict = judged(answer);
    EXPECT_EQ(verdict.eKind, SNTP_REFUSED);
    EXPECT_EQ(verdict.strReason, why);
}

} // namespace

TEST(SntpPacket, TheQuestionSaysNothingButThatAClientAsksAndItsNumber)
{
    QByteArray expected(48, '\0');
    expected[0] = 0x23; // version 4, a client
    expected.replace(40, 8, QByteArray::fromHex("0123456789abcdef"));
    EXPECT_EQ(sntpQuestion(kNumber), expected);
}

TEST(SntpPacket, HalfOfTheWayIsAddedToTheServersTime)
{
    const tagSntpAnswer verdict = judged(good());
    EXPECT_EQ(verdict.eKind, SNTP_GOOD);
    EXPECT_EQ(verdict.nUtcMs, kNow * 1000 + kTripMs / 2);
    EXPECT_EQ(judged(good(), 0).nUtcMs, kNow * 1000);
}

TEST(SntpPacket, TheTimeThatTheServerHeldTheQuestionIsNotOfTheWay)
{
    kit::tagTimeAnswer held = good();
    held.nReceivedUtc = kNow - 1;
    EXPECT_EQ(judged(held, 1200).nUtcMs, kNow * 1000 + 100);
    EXPECT_EQ(judged(held, 950).nUtcMs, kNow * 1000) << "coarse clocks count to the server's favour";
}

TEST(SntpPacket, ItsFractionsAreThoseOfASecond)
{
    QByteArray packet = kit::TimeServer::packet(good(), sntpQuestion(kNumber));
    for (const int time : {32, 40})
        packet[time + 4] = char(0x80);
    EXPECT_EQ(sntpJudge(packet, kNumber, 0).nUtcMs, kNow * 1000 + 500);
}

TEST(SntpPacket, TheSecondsGoOnWhenTheirCounterBeginsAnewIn2036)
{
    for (const long long utc : {2085978495LL, 2085978497LL, 2177402399LL}) {
        kit::tagTimeAnswer answer = good();
        answer.nUtc = utc;
        const tagSntpAnswer verdict = judged(answer, 0);
        EXPECT_EQ(verdict.eKind, SNTP_GOOD) << verdict.strReason.constData();
        EXPECT_EQ(verdict.nUtcMs, utc * 1000);
    }
}

// It is 2038 everywhere until ten hours before the year ends in UTC.
TEST(SntpPacket, ATimeAfterTheYearsOfThePhoneIsRefused)
{
    for (const long long utc : {2177402400LL, 3660681600LL, 4102444800LL}) {
        kit::tagTimeAnswer answer = good();
        answer.nUtc = utc;
        expectRefused(answer, "its time is too far ahead");
    }
}

TEST(SntpPacket, WhatIsNoAnswerToTheQuestionLeavesTheWaitAsItIs)
{
    for (const int size : {0, 1, 47}) {
        kit::tagTimeAnswer answer = good();
        answer.nSize = size;
        EXPECT_EQ(judged(answer).eKind, SNTP_NOT_OURS) << size;
        EXPECT_EQ(judged(answer).strReason, "an answer of " + QByteArray::number(size) + " bytes");
    }
    kit::tagTimeAnswer answer = good();
    answer.bRepeatsNumber = false;
    EXPECT_EQ(judged(answer).eKind, SNTP_NOT_OURS);
    EXPECT_EQ(judged(answer).strReason, "an answer to another question");
    const QByteArray other = kit::TimeServer::packet(good(), sntpQuestion(kNumber + 1));
    EXPECT_EQ(sntpJudge(other, kNumber, kTripMs).eKind, SNTP_NOT_OURS);
}

TEST(SntpPacket, WhatFollowsThePacketIsNotLookedAt)
{
    kit::tagTimeAnswer answer = good();
    answer.nSize = 68;
    EXPECT_EQ(judged(answer).eKind, SNTP_GOOD);
}

TEST(SntpPacket, OnlyAServerAnswers)
{
    for (const int mode : {0, 1, 2, 3, 5, 6, 7}) {
        kit::tagTimeAnswer answer = good();
        answer.nMode = quint8(mode);
        expectRefused(answer, ("its mode is " + QByteArray::number(mode)).constData());
    }
    for (const int version : {0, 5, 7}) {
        kit::tagTimeAnswer answer = good();
        answer.nVersion = quint8(version);
        expectRefused(answer, ("its version is " + QByteArray::number(version)).constData());
    }
    for (const int version : {1, 2, 3, 4}) {
        kit::tagTimeAnswer answer = good();
        answer.nVersion = quint8(version);
        EXPECT_EQ(judged(answer).eKind, SNTP_GOOD) << version;
    }
}

TEST(SntpPacket, AServerThatAsksToBeLeftAloneSaysWhy)
{
    for (const char* code : {"RATE", "DENY", "RSTR"}) {
        kit::tagTimeAnswer answer = good();
        answer.nStratum = 0;
        answer.nLeap = 3;
        answer.strReference = code;
        EXPECT_EQ(judged(answer).eKind, SNTP_KISS);
        EXPECT_EQ(judged(answer).strReason, code);
    }
    kit::tagTimeAnswer answer = good();
    answer.nStratum = 0;
    answer.strReference = QByteArray("\x1b[\n%", 4);
    EXPECT_EQ(judged(answer).strReason, "?[?%") << "what is traced is text";
}

TEST(SntpPacket, AServerWithoutAGoodClockOfItsOwnIsRefused)
{
    kit::tagTimeAnswer answer = good();
    answer.nLeap = 3;
    expectRefused(answer, "its clock is not synchronised");
    for (const int leap : {1, 2}) {
        answer.nLeap = quint8(leap);
        EXPECT_EQ(judged(answer).eKind, SNTP_GOOD) << leap;
    }
    for (const int stratum : {16, 17, 255}) {
        answer = good();
        answer.nStratum = quint8(stratum);
        expectRefused(answer, ("its stratum is " + QByteArray::number(stratum)).constData());
    }
    for (const int stratum : {1, 15}) {
        answer.nStratum = quint8(stratum);
        EXPECT_EQ(judged(answer).eKind, SNTP_GOOD) << stratum;
    }
    answer = good();
    answer.nRootDelay = 0x80000000;
    expectRefused(answer, "its root delay is negative");
    answer.nRootDelay = 0;
    answer.nRootDispersion = 16 << 16;
    expectRefused(answer, "its clock is too far from its source");
    answer.nRootDispersion = (16 << 16) - 1;
    EXPECT_EQ(judged(answer).eKind, SNTP_GOOD);
    answer.nRootDelay = 2;
    expectRefused(answer, "its clock is too far from its source");
    answer.nRootDelay = 0x7fffffff;
    answer.nRootDispersion = 0xffffffff;
    expectRefused(answer, "its clock is too far from its source");
    answer = good();
    answer.nSetUtc = kNow + 1;
    expectRefused(answer, "its clock was set in its future");
    answer.nSetUtc = kNow;
    EXPECT_EQ(judged(answer).eKind, SNTP_GOOD);
}

TEST(SntpPacket, AnAnswerWhoseTimesCannotBeIsRefused)
{
    kit::tagTimeAnswer answer = good();
    answer.bHasSent = false;
    answer.nSetUtc = 0;
    expectRefused(answer, "it says no time");
    answer = good();
    answer.bHasReceived = false;
    expectRefused(answer, "it says no time");
    answer = good();
    answer.nReceivedUtc = kNow + 1;
    expectRefused(answer, "it answered before it was asked");
    answer.nReceivedUtc = kNow - 1;
    expectRefused(answer, "it took longer than the answer did");
    answer = good();
    answer.nUtc = 1735689599; // the last second of 2024
    expectRefused(answer, "its time is long past");
    answer.nUtc += 1;
    EXPECT_EQ(judged(answer, 0).eKind, SNTP_GOOD);
}
