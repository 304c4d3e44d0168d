// The phone's clock by a time server that really answers, or does what servers do when something is wrong.
#include "host/services/clock/networkTime.h"
#include "host/services/system/netWorld.h"
#include "host/services/system/phoneClock.h"
#include "support/host/clock.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/phoneTest.h"
#include "tests/kit/plain/timeServer.h"
#include <cstdlib>

#define SYSTEM_FILE "/rundata/config/system.ini"

namespace {

constexpr long long kServersUtc = 1800000000; // in 2027
constexpr int kWaitMs = 20000;
constexpr int kHourMs = networkTime::HOUR_MS;
constexpr int kSettleMs = 300; // in which what was saved has its effect

class NetworkTime : public PhoneTest
{
protected:
    NetworkTime() : server(kServersUtc)
    {
        netWorld().state = NET_UP;
        configure("strTimeName", "+00:00 ");
        configure("strZoneName", "Iceland, Reykjavik");
        configure("strPrimaryNTPServer", "127.0.0.1");
        configure("nNTPPort", QByteArray::number(server.port()));
        configure("bNTPEnable", "1");
        setClock(2031, 5, 6);
        mark();
    }
    static void configure(const char* key, const QByteArray& value)
    {
        nuxSetRegistryString(SYSTEM_FILE, "LocalTime", key, value);
    }
    static void setClock(int year, int month, int day)
    {
        netWorldSetClock(chTime(year, month, day, 12, 0, 0).GetTime());
    }
    static void start()
    {
        networkTime::instance().start();
        kit::stepTime(networkTime::START_MS);
    }
    // At once, as far as timers go.
    static void passHours(int hours)
    {
        kit::moveClocks(qint64(hours) * kHourMs);
        kit::settle();
    }
    static void saved() { msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_DATE_TIME, 0); }
    bool isAsked(int count)
    {
        return kit::waitUntil([&] { return server.asked() >= count; }, kWaitMs) && server.asked() == count;
    }
    // What the client says when the answer to its last question is there.
    static void answerMs(qint64 utcMs)
    {
        emit networkTime::instance().findChild<sntpClient*>()->answered(utcMs);
    }
    static long long storedAhead()
    {
        return strtoll(NUX_SubClass::nuxGetRegistryString(SYSTEM_FILE, "LocalTime", "nAheadMs", ""), nullptr,
                       10);
    }
    // What was sent has had its time to arrive.
    bool isNotAskedAgain(int count)
    {
        return !kit::waitUntil([&] { return server.asked() > count; }, 50) && server.asked() == count;
    }
    // The phone looks at what came, or did not come, and goes on.
    bool isTraced(const QString& text)
    {
        return kit::waitUntil([&] { return !traces().filter(text).isEmpty(); }, kWaitMs);
    }
    static bool isServersTime() { return std::abs(netGetLocalTime() - kServersUtc) < 30; }
    static bool isOwnTime()
    {
        return std::abs(netGetLocalTime() - chTime(2031, 5, 6, 12, 0, 0).GetTime()) < 2 * 3600;
    }
    void expectRefused(const QList<kit::tagTimeAnswer>& answers, const QString& why)
    {
        server.answer(answers);
        start();
        ASSERT_TRUE(isAsked(1));
        // Those who wait for a better one wait until their time is over.
        kit::waitUntil([&] { return !traces().filter(why).isEmpty(); }, 50);
        kit::stepTime(sntpClient::ANSWER_MS);
        EXPECT_TRUE(isTraced("Time server 127.0.0.1: " + why)) << qPrintable(traces().join("|"));
        EXPECT_TRUE(isOwnTime());
    }
    static kit::tagTimeAnswer good()
    {
        kit::tagTimeAnswer answer;
        answer.nUtc = kServersUtc;
        return answer;
    }

    kit::TimeServer server;
};

} // namespace

TEST_F(NetworkTime, TheServerIsAskedAtTheStartAndTheClockFollows)
{
    networkTime::instance().start();
    EXPECT_EQ(server.asked(), 0) << "the home screen comes first";
    kit::stepTime(networkTime::START_MS);
    ASSERT_TRUE(isTraced("the clock moves by"));
    EXPECT_TRUE(isServersTime());
    EXPECT_EQ(server.asked(), 1);
}

TEST_F(NetworkTime, ItIsAskedEveryHour)
{
    start();
    ASSERT_TRUE(isTraced("the clock moves by"));
    kit::holdClocks(true);
    kit::moveClocks(kHourMs - 60000);
    kit::settle();
    kit::holdClocks(false);
    EXPECT_TRUE(isNotAskedAgain(1));
    mark();
    server.answer(kServersUtc + 7200);
    kit::moveClocks(60000);
    ASSERT_TRUE(isTraced("the clock moves by"));
    EXPECT_EQ(server.asked(), 2);
    EXPECT_LT(std::abs(netGetLocalTime() - kServersUtc - 7200), 30);
}

TEST_F(NetworkTime, ItIsAskedAtOnceWhenTheSettingsChange)
{
    configure("strPrimaryNTPServer", "");
    start();
    passHours(2);
    EXPECT_EQ(server.asked(), 0);
    configure("strPrimaryNTPServer", "localhost");
    saved();
    ASSERT_TRUE(isTraced("Time server localhost: the clock moves by")) << "a name counts as well";
    EXPECT_TRUE(isServersTime());
}

TEST_F(NetworkTime, BeforeTheStartNobodyIsAskedWhateverChanges)
{
    networkTime::instance();
    saved();
    passHours(2);
    EXPECT_TRUE(isNotAskedAgain(0));
}

TEST_F(NetworkTime, WhoSetsTheClockByHandAsksNobody)
{
    for (const char* off : {"0", "", "2", "yes"}) {
        configure("bNTPEnable", off);
        start();
        saved();
        passHours(2);
    }
    EXPECT_TRUE(isNotAskedAgain(0));
}

TEST_F(NetworkTime, AnAnswerThatComesAfterTheClockWasSetByHandIsLate)
{
    server.answer(QList<kit::tagTimeAnswer>{});
    start();
    ASSERT_TRUE(isAsked(1));
    // The page has stored its settings, and is about to say so.
    configure("bNTPEnable", "0");
    answerMs(kServersUtc * 1000);
    EXPECT_TRUE(isOwnTime());
    saved();
    passHours(2);
    EXPECT_TRUE(isNotAskedAgain(1));
}

TEST_F(NetworkTime, AnAnswerThatComesAfterTheServerWasChangedIsLate)
{
    server.answer(QList<kit::tagTimeAnswer>{});
    start();
    ASSERT_TRUE(isAsked(1));
    configure("strPrimaryNTPServer", "localhost");
    answerMs(kServersUtc * 1000);
    EXPECT_TRUE(isOwnTime());
}

TEST_F(NetworkTime, OtherChangesOfTheSettingsAskNobody)
{
    start();
    ASSERT_TRUE(isTraced("the clock moves by"));
    for (const unsigned kind : {CONFIG_CHANGED_DATE_TIME - 1u, CONFIG_CHANGED_DATE_TIME + 1u, 0u})
        msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, kind, 0);
    kit::stepTime(kSettleMs);
    EXPECT_TRUE(isNotAskedAgain(1));
}

TEST_F(NetworkTime, ASaveEndsTheQuestionThatIsUnderWay)
{
    server.answer(QList<kit::tagTimeAnswer>{});
    start();
    ASSERT_TRUE(isAsked(1));
    configure("bNTPEnable", "0");
    saved();
    kit::stepTime(2 * sntpClient::ANSWER_MS);
    EXPECT_TRUE(traces().filter("Time server").isEmpty()) << qPrintable(traces().join("|"));
}

TEST_F(NetworkTime, ASaveMakesThePauseBehindAFailureShortAgain)
{
    server.answer(QList<kit::tagTimeAnswer>{});
    start();
    for (int asked = 1; asked <= 3; ++asked) {
        ASSERT_TRUE(isAsked(asked));
        mark();
        kit::stepTime(sntpClient::ANSWER_MS);
        ASSERT_TRUE(isTraced("no answer"));
        kit::moveClocks(kHourMs);
        kit::settle();
    }
    ASSERT_TRUE(isAsked(4));
    saved();
    kit::stepTime(kSettleMs);
    ASSERT_TRUE(isAsked(5));
    mark();
    kit::stepTime(sntpClient::ANSWER_MS);
    ASSERT_TRUE(isTraced("no answer"));
    kit::stepTime(networkTime::RETRY_MS);
    EXPECT_TRUE(isAsked(6));
}

TEST_F(NetworkTime, ADifferenceThatNobodySeesIsNotStored)
{
    start();
    ASSERT_TRUE(isTraced("the clock moves by"));
    kit::holdClocks(true);
    answerMs((kServersUtc + 60) * 1000);
    answerMs(kServersUtc * 1000);
    const long long stored = storedAhead();
    for (const int ms : {999, -999}) {
        answerMs(kServersUtc * 1000 + ms);
        EXPECT_EQ(storedAhead(), stored) << ms;
    }
    answerMs(kServersUtc * 1000 + 1000);
    EXPECT_EQ(storedAhead() - stored, 1000);
    kit::holdClocks(false);
}

TEST_F(NetworkTime, SecondsBefore1970AreCutDownwardsAsThoseAfterIt)
{
    start();
    ASSERT_TRUE(isTraced("the clock moves by"));
    kit::holdClocks(true);
    for (const auto& [ms, seconds] : {std::pair{0, 0}, std::pair{999, 0}, std::pair{-1, -1},
                                      std::pair{-1000, -1}, std::pair{-1001, -2}}) {
        answerMs(ms);
        EXPECT_EQ(netGetLocalTime(), seconds) << ms;
    }
    kit::holdClocks(false);
}

TEST_F(NetworkTime, WhileTheNetworkIsDownItIsLookedForAndNobodyIsAsked)
{
    netWorld().state = NET_STARTING;
    start();
    for (int looks = 0; looks < 5; ++looks) {
        kit::moveClocks(networkTime::NETWORK_MS);
        kit::settle();
    }
    EXPECT_EQ(server.asked(), 0);
    EXPECT_TRUE(traces().filter("Time server").isEmpty());
    netWorld().state = NET_UP;
    kit::moveClocks(networkTime::NETWORK_MS);
    EXPECT_TRUE(isTraced("the clock moves by"));
}

TEST_F(NetworkTime, ASilentServerIsAskedAgainLessAndLessOften)
{
    server.answer(QList<kit::tagTimeAnswer>{});
    start();
    ASSERT_TRUE(isAsked(1));
    kit::stepTime(sntpClient::ANSWER_MS);
    ASSERT_TRUE(isTraced("Time server 127.0.0.1: no answer"));
    EXPECT_TRUE(isOwnTime());
    int asked = 1;
    for (const int pause : {15, 30, 60, 120, 240, 480, 960, 1920, 3600, 3600}) {
        kit::holdClocks(true);
        kit::moveClocks(pause * 1000 - 1000);
        kit::settle();
        EXPECT_EQ(server.asked(), asked) << pause;
        kit::holdClocks(false);
        kit::stepTime(1000);
        ASSERT_TRUE(isAsked(++asked)) << pause;
        kit::stepTime(sntpClient::ANSWER_MS);
    }
    // After an answer it begins anew.
    server.answer(kServersUtc);
    saved();
    ASSERT_TRUE(isTraced("the clock moves by"));
    server.answer(QList<kit::tagTimeAnswer>{});
    passHours(1);
    ASSERT_TRUE(isAsked(asked + 2));
    kit::stepTime(sntpClient::ANSWER_MS + 15000);
    EXPECT_TRUE(isAsked(asked + 3));
}

TEST_F(NetworkTime, WhereNothingListensIsKnownAtOnceAndTraced)
{
    configure("nNTPPort", "1");
    start();
    ASSERT_TRUE(isTraced("Time server 127.0.0.1: "));
    EXPECT_TRUE(traces().filter("no answer").isEmpty());
    EXPECT_TRUE(isOwnTime());
}

TEST_F(NetworkTime, AServerWithoutAnAddressIsTraced)
{
    // No such names are given out.
    configure("strPrimaryNTPServer", "time.invalid");
    start();
    kit::waitUntil([&] { return !traces().filter("it has no address").isEmpty(); }, 100);
    kit::stepTime(sntpClient::LOOKUP_MS);
    EXPECT_TRUE(isTraced("Time server time.invalid: it has no address"));
    EXPECT_TRUE(isOwnTime());
}

TEST_F(NetworkTime, WhatIsNoServerIsNotAsked)
{
    for (const char* name : {"-bad-", "a b", "300.1.1.1", "0.0.0.0", "host:123"}) {
        configure("strPrimaryNTPServer", name);
        mark();
        start();
        EXPECT_TRUE(isTraced(QString("\"%1\" is no time server").arg(name)));
    }
    configure("strPrimaryNTPServer", "127.0.0.1");
    for (const char* port : {"0", "-1", "65536", "x", "12 3"}) {
        configure("nNTPPort", port);
        mark();
        start();
        EXPECT_TRUE(isTraced(QString("Time server 127.0.0.1: \"%1\" is no port").arg(port)));
        EXPECT_TRUE(traces().filter("is no time server").isEmpty()) << port;
    }
    EXPECT_TRUE(isOwnTime());
}

TEST_F(NetworkTime, ItsPortIs123WhereNoneIsConfigured)
{
    nuxSetRegistryString(SYSTEM_FILE, "LocalTime", "nNTPPort", "");
    writeFile(SYSTEM_FILE, readFile(SYSTEM_FILE).replace("nNTPPort=\n", ""));
    EXPECT_EQ(nuxGetRegistryInt(SYSTEM_FILE, "LocalTime", "nNTPPort", networkTime::PORT), 123);
    start();
    kit::waitUntil([&] { return !traces().filter("Time server 127.0.0.1: ").isEmpty(); }, 100);
    kit::stepTime(sntpClient::ANSWER_MS);
    EXPECT_TRUE(isTraced("Time server 127.0.0.1: "));
    EXPECT_EQ(server.asked(), 0);
}

TEST_F(NetworkTime, AKissOfRateIsObeyedForAnHour)
{
    kit::tagTimeAnswer kiss = good();
    kiss.nStratum = 0;
    kiss.strReference = "RATE";
    expectRefused({kiss}, "it asks to be left alone, RATE");
    server.answer(kServersUtc);
    kit::holdClocks(true);
    kit::moveClocks(kHourMs - sntpClient::ANSWER_MS - 60000);
    kit::settle();
    kit::holdClocks(false);
    EXPECT_TRUE(isNotAskedAgain(1));
    kit::moveClocks(60000);
    EXPECT_TRUE(isTraced("the clock moves by"));
}

TEST_F(NetworkTime, AKissOfRateIsObeyedAcrossSavesToo)
{
    kit::tagTimeAnswer kiss = good();
    kiss.nStratum = 0;
    kiss.strReference = "RATE";
    expectRefused({kiss}, "it asks to be left alone, RATE");
    server.answer(kServersUtc);
    for (int i = 0; i < 5; ++i) {
        saved();
        kit::stepTime(5000);
    }
    EXPECT_TRUE(isNotAskedAgain(1));
    // Nobody else has said so.
    configure("strPrimaryNTPServer", "localhost");
    saved();
    kit::stepTime(kSettleMs); // and no more, or its answer might come too late
    ASSERT_TRUE(isTraced("Time server localhost: the clock moves by"));
    configure("strPrimaryNTPServer", "127.0.0.1");
    saved();
    kit::stepTime(5000);
    EXPECT_TRUE(isNotAskedAgain(2));
    passHours(1);
    EXPECT_TRUE(isAsked(3));
}

TEST_F(NetworkTime, ManyChangesInARowMakeOneQuestion)
{
    start();
    ASSERT_TRUE(isTraced("the clock moves by"));
    mark();
    for (int i = 0; i < 200; ++i) {
        saved();
        kit::settle();
    }
    ASSERT_TRUE(isTraced("the clock moves by"));
    EXPECT_TRUE(isNotAskedAgain(2));
}

TEST_F(NetworkTime, ATimeFarAheadChangesNothing)
{
    kit::tagTimeAnswer answer = good();
    answer.nUtc = 3660681600LL; // in 2086
    expectRefused({answer}, "its time is too far ahead");
}

TEST_F(NetworkTime, AServerThatForbidsItIsNotAskedAgainBeforeSomebodySaves)
{
    kit::tagTimeAnswer kiss = good();
    kiss.nStratum = 0;
    kiss.strReference = "DENY";
    expectRefused({kiss}, "it asks to be left alone, DENY");
    passHours(3);
    EXPECT_TRUE(isNotAskedAgain(1));
    server.answer(kServersUtc);
    saved();
    EXPECT_TRUE(isTraced("the clock moves by"));
}

TEST_F(NetworkTime, AServerThatRestrictsItIsNotAskedAgainEither)
{
    kit::tagTimeAnswer kiss = good();
    kiss.nStratum = 0;
    kiss.strReference = "RSTR";
    expectRefused({kiss}, "it asks to be left alone, RSTR");
    passHours(3);
    EXPECT_TRUE(isNotAskedAgain(1));
}

TEST_F(NetworkTime, AServerThatIsNotSynchronisedChangesNothing)
{
    kit::tagTimeAnswer answer = good();
    answer.nLeap = 3;
    expectRefused({answer}, "its clock is not synchronised");
}

TEST_F(NetworkTime, AServerOfNoStratumChangesNothing)
{
    kit::tagTimeAnswer answer = good();
    answer.nStratum = 16;
    expectRefused({answer}, "its stratum is 16");
}

TEST_F(NetworkTime, AnAnswerThatSaysNoTimeChangesNothing)
{
    kit::tagTimeAnswer answer = good();
    answer.bHasSent = false;
    expectRefused({answer}, "it says no time");
}

TEST_F(NetworkTime, AShortAnswerChangesNothing)
{
    kit::tagTimeAnswer answer = good();
    answer.nSize = 40;
    expectRefused({answer}, "an answer of 40 bytes");
}

TEST_F(NetworkTime, AnAnswerToAnotherQuestionChangesNothing)
{
    kit::tagTimeAnswer answer = good();
    answer.bRepeatsNumber = false;
    expectRefused({answer}, "an answer to another question");
}

TEST_F(NetworkTime, AnAnswerFromAnotherAddressChangesNothing)
{
    server.answerFromElsewhere(true);
    expectRefused({good()}, "no answer");
}

TEST_F(NetworkTime, AGoodAnswerBehindForgedOnesCounts)
{
    kit::tagTimeAnswer forged = good();
    forged.bRepeatsNumber = false;
    forged.nUtc += 86400;
    kit::tagTimeAnswer cut = good();
    cut.nSize = 12;
    server.answer({forged, cut, good()});
    start();
    ASSERT_TRUE(isTraced("the clock moves by"));
    EXPECT_TRUE(isServersTime());
}

TEST_F(NetworkTime, AFloodOfForgedAnswersEndsTheQuestion)
{
    kit::tagTimeAnswer forged = good();
    forged.bRepeatsNumber = false;
    QList<kit::tagTimeAnswer> answers(sntpClient::DATAGRAMS, forged);
    answers.append(good());
    server.answer(answers);
    start();
    EXPECT_TRUE(isTraced("Time server 127.0.0.1: an answer to another question"));
    EXPECT_TRUE(isOwnTime()) << "what comes behind them is not looked at";
}

TEST_F(NetworkTime, TheForgedAnswersOfOneQuestionDoNotCountForTheNext)
{
    kit::tagTimeAnswer forged = good();
    forged.bRepeatsNumber = false;
    QList<kit::tagTimeAnswer> answers(sntpClient::DATAGRAMS - 1, forged);
    answers.append(good());
    server.answer(answers);
    start();
    ASSERT_TRUE(isTraced("the clock moves by"));
    mark();
    saved();
    kit::stepTime(kSettleMs);
    EXPECT_TRUE(isTraced("the clock moves by")) << qPrintable(traces().join("|"));
}

TEST_F(NetworkTime, EachQuestionHasANumberOfItsOwn)
{
    start();
    ASSERT_TRUE(isTraced("the clock moves by"));
    const QByteArray first = server.lastQuestion();
    mark();
    saved();
    ASSERT_TRUE(isTraced("the clock moves by"));
    EXPECT_EQ(first.size(), 48);
    EXPECT_EQ(first.left(40), server.lastQuestion().left(40));
    EXPECT_NE(first.mid(40), server.lastQuestion().mid(40));
}

TEST_F(NetworkTime, TheMachinesClockStaysAsItIs)
{
    timespec before, after;
    clock_gettime(CLOCK_REALTIME, &before);
    start();
    ASSERT_TRUE(isTraced("the clock moves by"));
    clock_gettime(CLOCK_REALTIME, &after);
    EXPECT_LT(after.tv_sec - before.tv_sec, 60);
    EXPECT_TRUE(isServersTime());
}
