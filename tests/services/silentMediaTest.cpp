// What a phone without a media process agrees on: a sound that nobody sends, or nothing.
#include "host/services/phone/silentMedia.h"
#include "tests/kit/phoneTest.h"
#include <QHash>

namespace {

struct Heard : public sipMediaNews
{
    void mediaDescribed(int, const QByteArray& sdp) override { described = sdp; }
    void mediaMissing(int) override {}
    void mediaJudged(int question, CALL_FIT fit) override { judged[question] = fit; }
    void mediaChanged(int, const tagCallStreams&) override {}
    void mediaLost() override {}

    QByteArray described = "nothing yet";
    QHash<int, CALL_FIT> judged;
};

class SilentMedia : public PhoneTest
{
protected:
    SilentMedia() { m_media.setNews(&m_heard); }
    // The lines of the answer; none where there is no answer.
    QByteArray linesOf(const QByteArray& offer, bool encrypt)
    {
        tagMediaWish wish;
        wish.bEncrypt = encrypt;
        const int question = m_media.judge(offer, wish);
        EXPECT_FALSE(m_heard.judged.contains(question)) << "not before the call has returned";
        m_heard.described = "nothing yet";
        m_media.answer(1, offer, wish);
        EXPECT_TRUE(kit::waitUntil([&] { return m_heard.described != "nothing yet"; }));
        EXPECT_EQ(m_heard.judged.value(question, CALL_NO_DESCRIPTION) == CALL_FITS,
                  !m_heard.described.isEmpty());
        const qsizetype at = m_heard.described.indexOf("m=");
        return at < 0 ? QByteArray() : m_heard.described.mid(at);
    }

    Heard m_heard;
    silentMedia m_media;
};

TEST_F(SilentMedia, OneKnownSoundIsTakenAndEverythingElseKeepsItsPlace)
{
    EXPECT_EQ(
        linesOf("v=0\r\nm=video 4002 RTP/AVP 96\r\nm=audio 4000 RTP/AVP 18 0 8\r\nm=audio 4004 RTP/AVP 0\r\n",
                false),
        "m=video 0 RTP/AVP 96\r\nm=audio 9 RTP/AVP 8\r\na=inactive\r\nm=audio 0 RTP/AVP 0\r\n");
    EXPECT_EQ(linesOf("v=0\r\nm=audio 4000 RTP/AVP 0\r\n", false), "m=audio 9 RTP/AVP 0\r\na=inactive\r\n");
}

TEST_F(SilentMedia, WhatCannotBeTalkedIsJudgedSoBeforeItIsAnswered)
{
    for (const char* lines :
         {"m=audio 4000 RTP/AVP 18\r\n", "m=audio 0 RTP/AVP 8\r\n", "m=image 4000 udptl t38\r\n",
          "m=audio 4000 RTP/SAVP 8\r\n", "m=video 4000 RTP/AVP 8\r\n", ""})
        EXPECT_EQ(linesOf(QByteArray("v=0\r\n") + lines, false), "") << lines;
    EXPECT_EQ(linesOf("v=0\r\nm=audio 4000 RTP/AVP 8\r\n", true), "") << "there is nothing to encrypt with";
    const QByteArray line = "m=audio 4000 RTP/AVP 8\r\n";
    EXPECT_NE(linesOf("v=0\r\n" + line.repeated(silentMedia::STREAMS_MAX), false), "");
    EXPECT_EQ(linesOf("v=0\r\n" + line.repeated(silentMedia::STREAMS_MAX + 1), false), "");
}

} // namespace
