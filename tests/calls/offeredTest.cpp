// Offers as the standards, phones and gateways write them, and what they are answered with.
#include "players/callNegotiation.h"
#include "tests/calls/describedText.h"
#include <gtest/gtest.h>

namespace {

const QByteArray kHead = "v=0\r\no=alice 2890844526 2890844526 IN IP4 192.0.2.7\r\ns= \r\n"
                         "c=IN IP4 192.0.2.7\r\nt=0 0\r\n";
const QByteArray kKey = QByteArray(30, 'k').toBase64();

tagOwnMedia own()
{
    tagOwnMedia own;
    own.address = "192.0.2.1";
    own.nPort = 36000;
    own.nPicturePort = 37000;
    own.nSession = 77;
    return own;
}

class Offered : public testing::Test
{
protected:
    // Of an offer that a call begins with; without pictures unless the user wants them.
    QByteArray answerTo(const QByteArray& offer, bool isVideo = false)
    {
        m_ours = callNegotiation(own(), countedKeys());
        tagMediaWant want;
        want.bVideo = isVideo;
        const QByteArray answer = m_ours.answer(offer, want);
        EXPECT_EQ(answer.isEmpty(), callNegotiation(own()).judge(offer, want) != CALL_FITS)
            << offer.constData();
        return answer;
    }

    callNegotiation m_ours{own(), countedKeys()};
};

TEST_F(Offered, TheExamplesOfTheStandardAreAnsweredInTheirPlaces)
{
    const QByteArray names = "a=rtpmap:0 PCMU/8000\r\na=rtpmap:8 PCMA/8000\r\na=rtpmap:97 iLBC/8000\r\n";
    const QByteArray tones = "a=rtpmap:98 telephone-event/8000\r\n";
    const QByteArray h261 = "a=rtpmap:31 H261/90000\r\n";
    const struct
    {
        const char* szWhat;
        QByteArray offer;
        const char* szLines;
    } all[] = {{"sound and pictures that are not known here",
                "m=audio 49170 RTP/AVP 0 8 97\r\n" + names + "m=video 51372 RTP/AVP 31 32\r\n" + h261 +
                    "a=rtpmap:32 MPV/90000\r\n",
                "m=audio 36000 RTP/AVP 8|m=video 0 RTP/AVP 31|"},
               {"one codec of several", "m=audio 49170 RTP/AVP 97 0\r\n" + names, "m=audio 36000 RTP/AVP 0|"},
               {"sound, and its keys in a stream of their own",
                "m=audio 49170 RTP/AVP 0\r\na=rtpmap:0 PCMU/8000\r\nm=audio 49172 RTP/AVP 98\r\n" + tones +
                    "a=sendonly\r\n",
                "m=audio 36000 RTP/AVP 0|m=audio 0 RTP/AVP 98|"},
               {"keys beside the sound", "m=audio 49170 RTP/AVP 0 98\r\n" + names + tones,
                "m=audio 36000 RTP/AVP 0 98|"},
               {"a line that was taken away", "m=audio 49170 RTP/AVP 0\r\nm=video 0 RTP/AVP 31\r\n" + h261,
                "m=audio 36000 RTP/AVP 0|m=video 0 RTP/AVP 31|"},
               {"pictures first", "m=video 51372 RTP/AVP 31\r\n" + h261 + "m=audio 49170 RTP/AVP 0\r\n",
                "m=video 0 RTP/AVP 31|m=audio 36000 RTP/AVP 0|"}};
    for (const auto& each : all)
        EXPECT_EQ(mediaLines(answerTo(kHead + each.offer)), each.szLines) << each.szWhat;
}

TEST_F(Offered, OfSeveralLinesOfSoundOneIsTaken)
{
    const char* const all[][2] = {
        {"m=audio 5004 RTP/AVP 18\r\nm=audio 5006 RTP/AVP 0\r\n",
         "m=audio 0 RTP/AVP 18|m=audio 36000 RTP/AVP 0|"},
        {"m=audio 5004 RTP/AVP 0\r\nm=audio 5006 RTP/AVP 8\r\n",
         "m=audio 36000 RTP/AVP 0|m=audio 0 RTP/AVP 8|"},
        {"m=audio 0 RTP/AVP 8\r\nm=audio 5006 RTP/AVP 8\r\n", "m=audio 0 RTP/AVP 8|m=audio 36000 RTP/AVP 8|"},
        {"m=audio 5004 RTP/SAVP 8\r\nm=audio 5006 RTP/AVP 8\r\n",
         "m=audio 0 RTP/SAVP 8|m=audio 36000 RTP/AVP 8|"},
        {"m=audio 5004 UDP/TLS/RTP/SAVPF 8\r\nm=audio 5006 RTP/AVPF 8\r\n",
         "m=audio 0 UDP/TLS/RTP/SAVPF 8|m=audio 36000 RTP/AVPF 8|"},
        {"m=audio 5004 RTP/AVP 8\r\nc=IN IP6 2001:db8::1\r\nm=audio 5006 RTP/AVP 8\r\n",
         "m=audio 0 RTP/AVP 8|m=audio 36000 RTP/AVP 8|"}};
    for (const auto& [offer, lines] : all)
        EXPECT_EQ(mediaLines(answerTo(kHead + offer)), lines) << offer;
}

TEST_F(Offered, WhatIsNoSoundIsRefusedInItsPlace)
{
    for (const char* line :
         {"m=application 5070 UDP/BFCP *", "m=text 5008 RTP/AVP 98", "m=image 5010 udptl t38",
          "m=message 7394 TCP/TLS/MSRP *", "m=application 9 UDP/DTLS/SCTP webrtc-datachannel"}) {
        QByteArray refused(line);
        const QList<QByteArray> words = refused.split(' ');
        refused.replace(' ' + words[1] + ' ', " 0 ");
        EXPECT_EQ(mediaLines(answerTo(kHead + line + "\r\nm=audio 5004 RTP/AVP 8\r\n")),
                  refused + "|m=audio 36000 RTP/AVP 8|");
    }
}

TEST_F(Offered, AGatewayOfBrowsersIsAnsweredWithoutItsBundle)
{
    const QByteArray offer =
        "v=0\r\no=- 4611731400430051336 2 IN IP4 127.0.0.1\r\ns=-\r\nt=0 0\r\na=group:BUNDLE audio video\r\n"
        "a=extmap-allow-mixed\r\na=msid-semantic: WMS stream\r\n"
        "m=audio 5004 RTP/SAVPF 111 63 103 9 0 8 13 110 126\r\nc=IN IP4 192.0.2.7\r\n"
        "a=rtcp:9 IN IP4 0.0.0.0\r\na=candidate:1 1 udp 2113937151 192.0.2.7 5004 typ host generation 0\r\n"
        "a=ice-ufrag:abcd\r\na=ice-pwd:0123456789012345678901\r\na=ice-options:trickle\r\n"
        "a=crypto:1 AEAD_AES_128_GCM inline:" +
        QByteArray(28, 'g').toBase64() + "\r\na=crypto:2 AES_CM_128_HMAC_SHA1_80 inline:" + kKey +
        "\r\na=mid:audio\r\na=extmap:1 urn:ietf:params:rtp-hdrext:ssrc-audio-level\r\na=sendrecv\r\n"
        "a=rtcp-mux\r\na=rtcp-rsize\r\na=rtpmap:111 opus/48000/2\r\na=rtcp-fb:111 transport-cc\r\n"
        "a=fmtp:111 minptime=10;useinbandfec=1\r\na=rtpmap:63 red/48000/2\r\na=fmtp:63 111/111\r\n"
        "a=rtpmap:103 ISAC/16000\r\na=rtpmap:9 G722/8000\r\na=rtpmap:13 CN/8000\r\n"
        "a=rtpmap:110 telephone-event/48000\r\na=rtpmap:126 telephone-event/8000\r\n"
        "a=ssrc:1001 cname:abc\r\n"
        "m=video 5004 RTP/SAVPF 96 97\r\nc=IN IP4 192.0.2.7\r\na=mid:video\r\na=rtcp-mux\r\n"
        "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:" +
        kKey +
        "\r\na=rtpmap:96 VP8/90000\r\na=rtcp-fb:96 nack\r\na=rtcp-fb:96 NACK PLI\r\na=rtpmap:97 rtx/90000\r\n"
        "a=fmtp:97 apt=96\r\n";
    for (const bool isVideo : {false, true}) {
        const QByteArray answer = answerTo(offer, isVideo);
        EXPECT_EQ(mediaLines(answer), isVideo ? "m=audio 36000 RTP/SAVPF 111 110|m=video 37000 RTP/SAVPF 96|"
                                              : "m=audio 36000 RTP/SAVPF 111 110|m=video 0 RTP/SAVPF 96|");
        EXPECT_FALSE(answer.contains("BUNDLE")) << answer.constData();
        EXPECT_TRUE(answer.contains("a=crypto:2 AES_CM_128_HMAC_SHA1_80 inline:")) << answer.constData();
        EXPECT_TRUE(answer.contains("a=rtcp-mux\r\n"));
        EXPECT_EQ(m_ours.agreed().takeKey, QByteArray(30, 'k'));
        EXPECT_EQ(m_ours.agreed().nRtcpPort, 5004);
        EXPECT_EQ(m_ours.agreedPicture().bPli, isVideo);
    }
}

TEST_F(Offered, AnAddressCountsWhereItStands)
{
    const QByteArray head = "v=0\r\no=- 1 1 IN IP6 2001:db8::1\r\ns=-\r\n";
    const QByteArray six = "c=IN IP6 2001:db8::1\r\n", four = "c=IN IP4 192.0.2.9\r\n",
                     line = "m=audio 5004 RTP/AVP 8\r\n";
    const struct
    {
        QByteArray offer;
        const char* szPeer; // null: there is nothing in common
    } all[] = {{head + four + "t=0 0\r\n" + line, "192.0.2.9"},
               {head + "t=0 0\r\n" + line + four, "192.0.2.9"},
               {head + six + "t=0 0\r\n" + line + four, "192.0.2.9"},
               {head + "c=in ip4 192.0.2.9\r\n" + line, "192.0.2.9"},
               {head + four + "t=0 0\r\n" + line + six, nullptr},
               {head + six + "t=0 0\r\n" + line, nullptr},
               {head + "t=0 0\r\n" + line, nullptr},
               {head + "c=IN IP4 phone.example.com\r\nt=0 0\r\n" + line, nullptr}};
    for (const auto& each : all) {
        EXPECT_EQ(answerTo(each.offer).isEmpty(), each.szPeer == nullptr) << each.offer.constData();
        EXPECT_TRUE(!each.szPeer || m_ours.agreed().peer == each.szPeer) << each.offer.constData();
    }
}

TEST_F(Offered, ZerosHoldFromTheBeginningOn)
{
    const QByteArray answer = answerTo(
        "v=0\r\no=- 1 1 IN IP4 192.0.2.7\r\ns=-\r\nc=IN IP4 0.0.0.0\r\nt=0 0\r\nm=audio 9 RTP/AVP 8\r\n");
    EXPECT_EQ(mediaLines(answer), "m=audio 36000 RTP/AVP 8|");
    EXPECT_TRUE(answer.contains("a=recvonly\r\n")) << answer.constData();
    EXPECT_TRUE(m_ours.agreed().bHeldByPeer);
    EXPECT_FALSE(m_ours.agreed().bSends || m_ours.agreed().bReceives);
}

TEST_F(Offered, TheCaseOfWordsSaysNothing)
{
    const QByteArray key = "a=crypto:1 aes_cm_128_hmac_sha1_80 inline:" + kKey + "\r\n";
    const struct
    {
        QByteArray offer;
        const char* szLines;
    } all[] = {{"m=audio 5004 rtp/avp 8\r\n", "m=audio 36000 rtp/avp 8|"},
               {"m=AUDIO 5004 Rtp/Avpf 8\r\n", "m=audio 36000 Rtp/Avpf 8|"},
               {"m=audio 5004 rtp/savp 8\r\n" + key, "m=audio 36000 rtp/savp 8|"},
               {"m=audio 5004 RTP/AVP 97 98\r\na=rtpmap:97 pcma/8000\r\na=rtpmap:98 Telephone-Event/8000\r\n",
                "m=audio 36000 RTP/AVP 97 98|"},
               {"m=audio 5004 RTP/AVP 97\r\na=rtpmap:97 OPUS/48000/2\r\n", "m=audio 36000 RTP/AVP 97|"},
               {"m=audio 5004 RTP/AVP 8\r\nm=Video 5006 rtp/avp 97\r\na=rtpmap:97 h264/90000\r\n"
                "a=fmtp:97 Profile-Level-ID=42E01F;Packetization-Mode=1\r\n",
                "m=audio 36000 RTP/AVP 8|m=video 37000 rtp/avp 97|"}};
    for (const auto& each : all)
        EXPECT_EQ(mediaLines(answerTo(kHead + each.offer, true)), each.szLines) << each.offer.constData();
    // What was encrypted is offered so again, and the other side may answer in small letters.
    answerTo(kHead + "m=audio 5004 rtp/savpf 8\r\n" + key);
    const QByteArray offer = m_ours.offer({});
    EXPECT_TRUE(mediaLines(offer).startsWith("m=audio 36000 RTP/SAVPF ")) << offer.constData();
    EXPECT_TRUE(m_ours.agree(kHead + "m=audio 5004 rtp/savpf 8\r\n" + key));
    EXPECT_EQ(m_ours.agreed().eSuite, CRYPTO_SUITE::AES_SHA1_80);
    EXPECT_FALSE(m_ours.agree(kHead + "m=audio 5004 rtp/avpf 8\r\n"));
}

TEST_F(Offered, WhatIsWrittenLooselyIsReadAllTheSame)
{
    const QByteArray sound = "m=audio 36000 RTP/AVP 8|";
    const std::pair<QByteArray, const char*> all[] = {
        {kHead + "m=audio 5004/2 RTP/AVP 8\r\n", "two ports"},
        {kHead + "m=audio 5004 RTP/AVP 8 \r\n", "a blank behind"},
        {kHead + "m=audio  5004  RTP/AVP  8\r\n", "blanks between"},
        {QByteArray(kHead + "m=audio 5004 RTP/AVP 8\r\n").replace("\r\n", "\n"), "other ends of lines"},
        {kHead + "m=audio 5004 RTP/AVP 8", "no last end"},
        {kHead + "m=audio 5004 RTP/AVP 8\r\n\r\n\r\n", "empty lines behind"},
        {kHead + "i=info\r\nb=X-YZ:128\r\nz=0 0\r\nk=prompt\r\na=tool:x\r\na=\r\nm=audio 5004 RTP/AVP 8\r\n",
         "lines that nobody reads"},
        {kHead + "m=audio 5004 RTP/AVP 8\r\na=rtpmap:8 PCMA/8000/1\r\n", "one channel"},
        {kHead + "m=audio 5004 RTP/AVP 8\r\na=rtpmap: 8  PCMA/8000\r\n", "blanks in a map"},
        {kHead + "m=audio 5004 RTP/AVP 300 x 8\r\n", "formats that are none"},
        {"v=0\r\nc=IN IP4 192.0.2.7\r\nm=audio 5004 RTP/AVP 8\r\n", "nothing but what is needed"}};
    for (const auto& [offer, what] : all)
        EXPECT_EQ(mediaLines(answerTo(offer)), sound) << what;
}

TEST_F(Offered, OfTheKeysThatAreOfferedTheFirstOneThatIsKnownIsTakenWithItsMark)
{
    const QByteArray known = " AES_CM_128_HMAC_SHA1_80 inline:" + kKey;
    const auto offer = [](const QByteArray& keys) { return kHead + "m=audio 5004 RTP/SAVP 8\r\n" + keys; };
    const QByteArray other =
        "a=crypto:1 AES_256_CM_HMAC_SHA1_80 inline:" + QByteArray(46, 'o').toBase64() + "\r\n";
    QByteArray answer =
        answerTo(offer(other + "a=crypto:2" + known + "|2^20|1:4\r\na=crypto:3" + known + "\r\n"));
    EXPECT_TRUE(
        answer.contains("a=crypto:2 AES_CM_128_HMAC_SHA1_80 inline:" + QByteArray(30, 1).toBase64() + "\r\n"))
        << "ours bears no mark: " << answer.constData();
    EXPECT_EQ(m_ours.agreed().takeMark, QByteArray("\0\0\0\1", 4));
    // A stop keeps it.
    EXPECT_FALSE(m_ours.answer(kHead + "m=audio 0 RTP/SAVP 8\r\n", {}).isEmpty());
    EXPECT_EQ(m_ours.agreed().takeMark, QByteArray("\0\0\0\1", 4));
    answer = answerTo(offer(other + "a=crypto:2" + known + "|1:129\r\na=crypto:3" + known + "\r\n"));
    EXPECT_TRUE(answer.contains("a=crypto:3 ")) << answer.constData();
    EXPECT_EQ(m_ours.agreed().takeMark, "");
    EXPECT_EQ(answerTo(offer(other)), "");
    // An answer to our keys may have a mark too.
    m_ours = callNegotiation(own(), countedKeys());
    tagMediaWant want;
    want.bEncrypt = true;
    m_ours.offer(want);
    EXPECT_TRUE(m_ours.agree(offer("a=crypto:1" + known + "|2^31|513:2\r\n")));
    EXPECT_EQ(m_ours.agreed().takeMark, "\2\1");
}

TEST_F(Offered, AFaxInACallIsRefusedAndTheSoundGoesOn)
{
    const QByteArray fax = "m=image 5010 udptl t38\r\na=T38FaxVersion:0\r\na=T38MaxBitRate:14400\r\n";
    ASSERT_NE(answerTo(kHead + "m=audio 5004 RTP/AVP 8\r\n"), "");
    for (const QByteArray& lines : {fax, "m=audio 0 RTP/AVP 8\r\n" + fax, fax + "m=audio 0 RTP/AVP 8\r\n"}) {
        EXPECT_EQ(m_ours.answer(kHead + lines, {}), "") << lines.constData();
        EXPECT_TRUE(m_ours.agreed().bSound && m_ours.agreed().bSends && m_ours.agreed().bReceives);
        EXPECT_EQ(m_ours.agreed().nPort, 5004);
    }
    // With a sound of its own it is left out alone.
    EXPECT_EQ(mediaLines(m_ours.answer(kHead + "m=audio 5006 RTP/AVP 0\r\n" + fax, {})),
              "m=audio 36000 RTP/AVP 0|m=image 0 udptl t38|");
    EXPECT_EQ(m_ours.agreed().nPort, 5006);
}

} // namespace
