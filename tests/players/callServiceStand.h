#pragma once
// Calls at the real media server, as the phone asks for them: two servers would need two phones, so that a
// call goes from one of the server's calls to another, or to this test.
#include "host/services/phone/mediaSessions.h"
#include "players/callNegotiation.h"
#include "tests/kit/plain/recordedSound.h"
#include "tests/players/playersTest.h"
#include <QDir>
#include <QFile>
#include <QHash>

struct CallNews : public sipMediaNews
{
    void mediaDescribed(int call, const QByteArray& sdp) override
    {
        ++nDescribed[call];
        described[call] = sdp;
    }
    void mediaMissing(int call) override
    {
        ++nMissing;
        mediaDescribed(call, {});
    }
    void mediaChanged(int call, const tagCallStreams& changed) override { streams[call] = changed; }
    void mediaLost() override { ++nLost; }
    void mediaUnfit(int call) override { ++nUnfit[call]; }
    void mediaJudged(int question, CALL_FIT fit) override { judged[question] = fit; }

    QHash<int, QByteArray> described;
    QHash<int, int> nDescribed;
    QHash<int, tagCallStreams> streams;
    QHash<int, int> nUnfit;
    QHash<int, CALL_FIT> judged;
    int nMissing = 0;
    int nLost = 0;
};

class CallService : public playersTest
{
protected:
    static constexpr int kRate = 16000;
    static constexpr double kHertz = 440;

    CallService()
    {
        qputenv("HX_SOUND_SOURCE", "audiotestsrc is-live=true volume=0.3 samplesperbuffer=160 freq=440");
        qputenv("HX_SOUND_SINK", kit::recordingSink(hostPath("/rundata/sound.raw")));
        qputenv("HX_SOUND_PROCESSING", "off"); // a tone is noise
        m_sessions.setNews(&m_news);
    }
    ~CallService() override
    {
        for (const char* name : {"HX_SOUND_SOURCE", "HX_SOUND_SINK", "HX_SOUND_PROCESSING"})
            qunsetenv(name);
    }
    QByteArray offerOf(int call, const tagMediaWish& wish = {})
    {
        const int before = m_news.nDescribed[call];
        m_sessions.offer(call, wish);
        EXPECT_EQ(m_news.nDescribed[call], before) << "not before the call has returned";
        EXPECT_TRUE(kit::waitUntil([&] { return m_news.nDescribed[call] > before; }));
        return m_news.described[call];
    }
    QByteArray answerOf(int call, const QByteArray& offer, const tagMediaWish& wish = {})
    {
        const int before = m_news.nDescribed[call];
        m_sessions.answer(call, offer, wish);
        EXPECT_TRUE(kit::waitUntil([&] { return m_news.nDescribed[call] > before; }));
        return m_news.described[call];
    }
    static tagOwnMedia onThisMachine(int port, int picturePort = 0)
    {
        return {"127.0.0.1", port, picturePort, true, 1};
    }
    void connect(int from, int to, const tagMediaWish& wish = {})
    {
        m_sessions.agree(from, answerOf(to, offerOf(from, wish)));
    }
    kit::RecordedSound heard() const { return kit::RecordedSound(hostPath("/rundata/sound.raw")); }
    bool isHeard(int ms = 8000)
    {
        return kit::waitUntil([&] { return heard().last(0.3, kRate).has(kHertz); }, ms);
    }
    // The coder's part of the toolkit.
    bool isLoaded(const char* library) const
    {
        QFile maps(QString("/proc/%1/maps").arg(m_media.processId()));
        return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(library);
    }
    bool isLoudspeakerOpen() const
    {
        for (const QFileInfo& handle : QDir(QString("/proc/%1/fd").arg(m_media.processId()))
                                           .entryInfoList(QDir::AllEntries | QDir::System)) {
            if (handle.symLinkTarget().endsWith("/sound.raw"))
                return true;
        }
        return false;
    }
    bool isSilent()
    {
        return kit::waitUntil(
            [&] { return heard().seconds(kRate) > 0.3 && heard().last(0.3, kRate).peak() < 0.005; }, 8000);
    }

    CallNews m_news;
    mediaSessions m_sessions;
};
