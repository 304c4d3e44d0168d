// Calls at the real media server: what becomes of them when it dies, a device fails, or somebody says what is
// none of it.
#include "tests/kit/plain/processes.h"
#include "tests/players/callServiceStand.h"
#include <csignal>
#include <cstring>

namespace {

TEST_F(CallService, AServerThatIsNotThereHasNoAnswer)
{
    m_sessions.offer(1, {});
    EXPECT_EQ(m_news.nDescribed[1], 0);
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.nDescribed[1] == 1; }));
    EXPECT_EQ(m_news.described[1], "");
}

TEST_F(CallService, AServerThatHangsHasNoAnswerAfterAWhile)
{
    startMedia();
    kill(pid_t(m_media.processId()), SIGSTOP);
    m_sessions.offer(1, {});
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.nDescribed[1] == 1; }, 10000));
    EXPECT_EQ(m_news.nMissing, 1);
    kill(pid_t(m_media.processId()), SIGCONT);
    EXPECT_FALSE(offerOf(1).isEmpty());
    kit::waitUntil([] { return false; }, 300);
    EXPECT_EQ(m_news.nDescribed[1], 2) << "the late answer is nobody's";
}

TEST_F(CallService, AServerThatDiedIsToldOfAndTheNextOneTakesTheCall)
{
    startMedia();
    connect(1, 2);
    ASSERT_TRUE(isHeard());
    m_media.kill();
    m_media.waitForFinished();
    EXPECT_EQ(m_news.nLost, 0);
    startMedia();
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.nLost == 1; }));
    EXPECT_FALSE(m_sessions.sendTone(1, '5', 100));
    connect(1, 2);
    EXPECT_TRUE(isHeard());
}

TEST_F(CallService, DamagedMessagesAreRefusedWithALine)
{
    startMedia();
    const auto post = [](unsigned int message, const QByteArray& extra, unsigned int more = 0) {
        msgPostMsgToThreadEx(media(), message, 1, more, int(extra.size()), extra.constData());
    };
    post(MEDIA_MSG_CALL_OFFER, "short");
    EXPECT_TRUE(hasSaid("message 0x70030 of 5 bytes is refused: the size is wrong"));
    post(MEDIA_MSG_CALL_OFFER, QByteArray(sizeof(CALL_WISH), 'x'));
    EXPECT_TRUE(hasSaid("message 0x70030 of 64 bytes is refused: an address is none"));
    post(MEDIA_MSG_CALL_ANSWER, QByteArray(sizeof(CALL_WISH), 0));
    EXPECT_TRUE(hasSaid("message 0x70031 of 64 bytes is refused"));
    post(MEDIA_MSG_CALL_ANSWER, QByteArray(sizeof(CALL_WISH), 0) + "no end");
    EXPECT_TRUE(hasSaid("message 0x70031 of 70 bytes is refused: the description is no text"));
    CALL_WISH wish = {};
    strcpy(wish.szStunIP, "127.0.0.1");
    for (const uint32_t port : {0u, 65536u}) {
        wish.nStunPort = port;
        post(MEDIA_MSG_CALL_OFFER, QByteArray(reinterpret_cast<const char*>(&wish), sizeof wish));
    }
    EXPECT_TRUE(hasSaid("message 0x70030 of 64 bytes is refused: a port is out of range"));
    post(MEDIA_MSG_CALL_AGREE, QByteArray("v=0", 4));
    EXPECT_TRUE(hasSaid("message 0x70032 of 4 bytes is refused: there is no such call"));
    post(MEDIA_MSG_CALL_TONE, {}, 0xFFFFFFFF);
    EXPECT_TRUE(hasSaid("message 0x70035 of 0 bytes is refused"));
    post(MEDIA_MSG_CALL_JOIN, {}, 1);
    EXPECT_TRUE(hasSaid("message 0x70036 of 0 bytes is refused"));
    post(MEDIA_MSG_CALL_JUDGE, "short");
    EXPECT_TRUE(hasSaid("message 0x7003c of 5 bytes is refused: the size is wrong"));
    post(MEDIA_MSG_CALL_JUDGE, QByteArray(sizeof(CALL_WISH), 0));
    EXPECT_FALSE(offerOf(1).isEmpty());
}

TEST_F(CallService, MoreCallsThanThereMayBeAreRefusedAndEndedOnesMakeRoom)
{
    startMedia();
    for (int call = 1; call <= 8; ++call)
        EXPECT_FALSE(offerOf(call).isEmpty());
    EXPECT_EQ(offerOf(9), "");
    m_sessions.end(3);
    EXPECT_FALSE(offerOf(9).isEmpty());
}

TEST_F(CallService, WithoutDevicesCallsAreSilentAndGoOn)
{
    qputenv("HX_SOUND_SOURCE", "");
    qputenv("HX_SOUND_SINK", "fakesink");
    startMedia();
    connect(1, 2);
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[1].nQuality == 4; }, 8000));
}

TEST_F(CallService, AMicrophoneThatFailsTakesNoLoudspeakerWithIt)
{
    qputenv("HX_SOUND_SOURCE", "filesrc location=/nothing/there ! wavparse");
    startMedia();
    connect(1, 2);
    EXPECT_TRUE(kit::waitUntil([&] { return heard().seconds(kRate) > 1; }, 8000));
    EXPECT_EQ(said().count("no microphone is found"), 1) << said().constData();
    EXPECT_TRUE(kit::waitUntil([&] { return m_news.streams[1].nQuality == 4; }, 8000));
}

TEST_F(CallService, AfterTheLastCallTheSoundStopsAndItsThreadsAreGone)
{
    startMedia();
    const auto threads = [&] { return kit::statusKiB(m_media.processId(), "Threads"); };
    connect(1, 2);
    ASSERT_TRUE(isHeard());
    EXPECT_TRUE(isLoudspeakerOpen());
    m_sessions.end(1);
    m_sessions.end(2);
    kit::StillSound sound(hostPath("/rundata/sound.raw"));
    EXPECT_TRUE(kit::waitUntil([&] { return sound.isStill(); }, 8000));
    EXPECT_TRUE(kit::waitUntil([&] { return !isLoudspeakerOpen(); }, 8000));
    const qint64 after = threads();
    for (int round = 0; round < 3; ++round) {
        connect(1, 2);
        ASSERT_TRUE(isHeard());
        EXPECT_GT(threads(), after);
        m_sessions.end(1);
        m_sessions.end(2);
        EXPECT_TRUE(kit::waitUntil([&] { return threads() <= after; }, 8000));
    }
}

// Whoever says it is another process, which may be damaged.
TEST_F(CallService, WhatTheServerSaysIsTakenWithinItsBounds)
{
    startMedia();
    connect(1, 2);
    ASSERT_TRUE(kit::waitUntil([&] { return m_news.streams[1].nQuality == 4; }));
    const auto say = [this](unsigned int message, unsigned int number, const QByteArray& extra) {
        msgObject msg(message, 1, number, extra.constData(), int(extra.size()));
        m_sessions.TryThreadMessage(msg);
    };
    CALL_STREAMS streams = {};
    for (const int quality : {77, -77}) {
        streams.nQuality = quality;
        say(MEDIA_MSG_CALL_STREAMS, 0, QByteArray(reinterpret_cast<const char*>(&streams), sizeof streams));
        EXPECT_EQ(m_news.streams[1].nQuality, quality > 0 ? 4 : -1);
    }
    // No server answers while it is asked.
    kill(pid_t(m_media.processId()), SIGSTOP);
    const int described = m_news.nDescribed[1];
    m_sessions.offer(1, {});
    for (unsigned int number = 0; number < 100; number += 99)
        say(MEDIA_MSG_CALL_DESCRIBED, number, QByteArray("v=0\r\n", 6));
    EXPECT_EQ(m_news.nDescribed[1], described) << "to a question that nobody has asked";
    for (unsigned int number = 1; m_news.nDescribed[1] == described && number < 99; ++number)
        say(MEDIA_MSG_CALL_DESCRIBED, number, "v=0\r\nx");
    EXPECT_EQ(m_news.nDescribed[1], described + 1);
    EXPECT_EQ(m_news.described[1], "") << "it has no end";
    kill(pid_t(m_media.processId()), SIGCONT);
}

} // namespace
