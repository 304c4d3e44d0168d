// Calls at the real media server beside each other and in bad times: joined and split, taken back, refused,
// after a sleep of the machine, without a microphone.
#include "places.h"
#include "tests/kit/plain/processes.h"
#include "tests/players/callServiceStand.h"
#include "tests/players/callSide.h"
#include "tests/players/wirePort.h"
#include <QElapsedTimer>
#include <QProcessEnvironment>
#include <csignal>

namespace {

TEST_F(CallService, TwoThatAreJoinedHearEachOtherUntilTheyAreSplit)
{
    constexpr double kOther = 1000, kThird = 1700;
    gst_init(nullptr, nullptr);
    startMedia();
    CallPhone other(kOther), third(kThird);
    CallEnd one(other, 1), two(third, 2);
    for (CallEnd* end : {&one, &two}) {
        m_sessions.agree(end->call, end->negotiation->answer(offerOf(end->call), {}));
        end->apply();
    }
    EXPECT_TRUE(kit::waitUntil([&] { return other.hears(kHertz) && third.hears(kHertz); }, 8000));
    EXPECT_FALSE(other.hears(kThird) || third.hears(kOther));
    ASSERT_TRUE(kit::waitUntil([&] { return m_sessions.join(1, 2); }));
    EXPECT_TRUE(kit::waitUntil([&] { return other.hears(kThird) && third.hears(kOther); }, 8000));
    EXPECT_TRUE(kit::waitUntil([&] { return other.hears(kHertz) && third.hears(kHertz); }, 8000));
    m_sessions.split(2);
    EXPECT_TRUE(kit::waitUntil([&] { return !other.hears(kThird) && !third.hears(kOther); }, 8000))
        << "what they say alone is heard by the other one";
    EXPECT_TRUE(kit::waitUntil([&] { return other.hears(kHertz) && third.hears(kHertz); }, 8000));
}

TEST_F(CallService, WhoIsHeldByTheOtherSideHearsOfIt)
{
    startMedia();
    connect(1, 2);
    ASSERT_TRUE(isHeard());
    EXPECT_FALSE(m_news.streams[2].bOtherHolds);
    tagMediaWish held;
    held.bHeld = true;
    connect(1, 2, held);
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[2].bOtherHolds; }));
    EXPECT_FALSE(m_news.streams[1].bOtherHolds);
    connect(1, 2);
    EXPECT_TRUE(kit::waitUntil([&] { return !m_news.streams[2].bOtherHolds; }));
}

TEST_F(CallService, TonesAreNotWrittenToTheLog)
{
    startMedia();
    connect(1, 2);
    ASSERT_TRUE(kit::waitUntil([&] { return m_sessions.sendTone(1, '9', 100); }));
    mark();
    for (const char tone : {'1', '3', '7'})
        EXPECT_TRUE(m_sessions.sendTone(1, QChar(tone), 100));
    EXPECT_FALSE(offerOf(3).isEmpty()) << "behind them";
    EXPECT_EQ(traces(), QStringList());
    EXPECT_EQ(said().count("tone"), 0) << said().constData();
}

TEST_F(CallService, AnOfferThatIsTakenBackCannotBeAgreedOnAnyMore)
{
    startMedia();
    const QByteArray answer = answerOf(2, offerOf(1));
    m_sessions.withdraw(1);
    m_sessions.agree(1, answer);
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.nUnfit[1] == 1; }));
    m_sessions.agree(1, answerOf(2, offerOf(1)));
    EXPECT_TRUE(isHeard());
}

TEST_F(CallService, CallsThatHaveNothingInCommonLeaveRoomForOthers)
{
    startMedia();
    for (int call = 1; call < 20; ++call)
        EXPECT_EQ(answerOf(call, "v=0\r\nm=audio 5004 RTP/AVP 18\r\n"), "") << call;
    EXPECT_FALSE(offerOf(20).isEmpty());
}

// As on a phone, whose root is the machine's.
TEST_F(CallService, OfAPhoneItselfNoProgramIsSentSound)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("HX_SYSROOT");
    environment.insert("HX_RUN_FOLDER", hostPath("/rundata/run"));
    m_media.setProcessEnvironment(environment);
    kit::endWithUs(m_media);
    m_media.start(HX_BUILD_DIR "/bin/hxMedia", QStringList());
    ASSERT_TRUE(kit::waitUntil([&] { return up() > 0 && media(); }, 10000));
    const QByteArray offer = "v=0\r\no=- 1 1 IN IP4 192.0.2.7\r\ns=-\r\nc=IN IP4 192.0.2.7\r\nt=0 0\r\n"
                             "m=audio 40000 RTP/AVP 8\r\n";
    tagMediaWish held;
    held.bHeld = true;
    EXPECT_EQ(answerOf(1, QByteArray(offer).replace("192.0.2.7", "127.0.0.1"), held), "");
    EXPECT_FALSE(answerOf(2, offer, held).isEmpty());
}

TEST_F(CallService, NobodyMakesUpForWhatAMachineThatSleptHasNotSaid)
{
    startMedia();
    const WirePort there;
    callNegotiation negotiation(onThisMachine(there.port()));
    m_sessions.agree(1, negotiation.answer(offerOf(1), {}));
    ASSERT_FALSE(there.next().isEmpty());
    kill(pid_t(m_media.processId()), SIGSTOP);
    kit::waitUntil([] { return false; }, 2000);
    there.came();
    QElapsedTimer timer;
    timer.start();
    kill(pid_t(m_media.processId()), SIGCONT);
    EXPECT_FALSE(there.next().isEmpty());
    kit::waitUntil([] { return false; }, 300);
    const int came = there.came();
    EXPECT_LE(came, timer.elapsed() / callSession::FRAME_MS + 30);
}

// What was asked may have been what it died of: nobody asks the next one the same by itself.
TEST_F(CallService, AServerThatDiesOverAQuestionHasNoAnswer)
{
    startMedia();
    kill(pid_t(m_media.processId()), SIGSTOP);
    m_sessions.offer(1, {});
    m_media.kill();
    m_media.waitForFinished();
    startMedia();
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.nLost == 1; }));
    EXPECT_EQ(m_news.nMissing, 1);
    EXPECT_EQ(m_news.described[1], "");
    EXPECT_FALSE(offerOf(1).isEmpty());
}

TEST_F(CallService, AMicrophoneThatIsPulledOutLeavesTheLoudspeakerThere)
{
    qputenv("HX_SOUND_SOURCE", "audiotestsrc is-live=true samplesperbuffer=441 ! identity error-after=60");
    startMedia();
    connect(1, 2);
    ASSERT_TRUE(hasSaid("no microphone is found", 8000)) << said().constData();
    const double before = heard().seconds(kRate);
    EXPECT_TRUE(kit::waitUntil([&] { return heard().seconds(kRate) > before + 1; }, 8000));
}

} // namespace
