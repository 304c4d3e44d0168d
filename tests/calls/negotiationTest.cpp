// What two sides agree upon by offer and answer, and what an answer does with an offer that lies.
#include "players/callNegotiation.h"
#include "tests/calls/describedText.h"
#include <gtest/gtest.h>

namespace {

const QByteArray kPeer = "192.0.2.7";

tagOwnMedia own()
{
    tagOwnMedia own;
    own.address = "192.0.2.1";
    own.nPort = 36000;
    own.nSession = 77;
    return own;
}

QByteArray described(const QByteArray& lines, const QByteArray& address = kPeer)
{
    return "v=0\r\no=- 1 1 IN IP4 " + address + "\r\ns=-\r\nc=IN IP4 " + address + "\r\nt=0 0\r\n" + lines;
}

// An offer of one line of sound with these attributes.
QByteArray sound(const QByteArray& formats, const QByteArray& attributes = {},
                 const QByteArray& transport = "RTP/AVP")
{
    return described("m=audio 5004 " + transport + ' ' + formats + "\r\n" + attributes);
}

QByteArray keyLine(int tag, const char* suite, char fill)
{
    return "a=crypto:" + QByteArray::number(tag) + ' ' + suite +
           " inline:" + QByteArray(30, fill).toBase64() + "\r\n";
}

class Negotiation : public testing::Test
{
protected:
    callNegotiation m_ours{own(), countedKeys()};
};

TEST_F(Negotiation, AnOfferNamesTheCodecsInTheOrderOfPreference)
{
    const QByteArray offer = m_ours.offer({});
    EXPECT_EQ(mediaLines(offer), "m=audio 36000 RTP/AVP 96 9 8 0 101|");
    for (const char* line :
         {"o=- 77 1 IN IP4 192.0.2.1\r\n", "c=IN IP4 192.0.2.1\r\n", "a=rtpmap:96 opus/48000/2\r\n",
          "a=fmtp:96 useinbandfec=1;maxplaybackrate=16000;sprop-maxcapturerate=16000\r\n",
          "a=rtpmap:9 G722/8000\r\n", "a=rtpmap:101 telephone-event/8000\r\n", "a=fmtp:101 0-15\r\n",
          "a=ptime:20\r\n", "a=rtcp:36001\r\n", "a=rtcp-mux\r\n", "a=sendrecv\r\n"})
        EXPECT_TRUE(offer.contains(line)) << line;
    EXPECT_FALSE(offer.contains("crypto"));
}

TEST_F(Negotiation, AnAnswerTakesOurPreferenceAndTheOtherSidesNumbers)
{
    const QByteArray answer = m_ours.answer(sound("0 8 111 100", "a=rtpmap:111 OPUS/48000/2\r\n"
                                                                 "a=rtpmap:100 telephone-event/8000\r\n"),
                                            {});
    EXPECT_EQ(mediaLines(answer), "m=audio 36000 RTP/AVP 111 100|");
    EXPECT_EQ(m_ours.agreed().send.eCodec, SOUND_CODEC::OPUS);
    EXPECT_EQ(m_ours.agreed().send.nPayload, 111);
    EXPECT_EQ(m_ours.agreed().nSendTones, 100);
    EXPECT_EQ(m_ours.agreed().peer, kPeer);
    EXPECT_EQ(m_ours.agreed().nPort, 5004);
    EXPECT_EQ(m_ours.agreed().nRtcpPort, 5005);
    EXPECT_TRUE(m_ours.agreed().bSends && m_ours.agreed().bReceives);
}

TEST_F(Negotiation, OfTheTonesThoseAreSentThatTheOtherSideNames)
{
    const std::pair<const char*, unsigned> all[] = {{"", 0xffff},
                                                    {"a=fmtp:100 0-9\r\n", 0x3ff},
                                                    {"a=fmtp:100 0-11,16,70-80\r\n", 0xfff},
                                                    {"a=fmtp:100 1, 3 ,15-400\r\n", 0x800a},
                                                    {"a=fmtp:100 16\r\n", 0},
                                                    {"a=fmtp:8 0-1\r\n", 0xffff},
                                                    {"a=fmtp:100 9-0\r\n", 0xffff},
                                                    {"a=fmtp:100 0-9-11\r\n", 0xffff},
                                                    {"a=fmtp:100 events=0-9\r\n", 0xffff}};
    for (const auto& [line, tones] : all) {
        m_ours.answer(sound("8 100", QByteArray("a=rtpmap:100 telephone-event/8000\r\n") + line), {});
        EXPECT_EQ(m_ours.agreed().nTones, tones) << line;
    }
}

TEST_F(Negotiation, EachCodecIsTakenWhenItIsTheOnlyOne)
{
    for (const auto& [payload, codec] : {std::pair("9", SOUND_CODEC::G722), std::pair("8", SOUND_CODEC::PCMA),
                                         std::pair("0", SOUND_CODEC::PCMU)}) {
        EXPECT_FALSE(m_ours.answer(sound(payload), {}).isEmpty());
        EXPECT_EQ(m_ours.agreed().send.eCodec, codec) << payload;
        EXPECT_EQ(m_ours.agreed().nSendTones, -1);
    }
}

TEST_F(Negotiation, NothingInCommonLeavesAllAsItWas)
{
    ASSERT_FALSE(m_ours.answer(sound("8"), {}).isEmpty());
    EXPECT_EQ(m_ours.answer(sound("18 4"), {}), "");
    EXPECT_EQ(m_ours.answer("no description", {}), "");
    EXPECT_EQ(m_ours.answer(sound("96", "a=rtpmap:96 opus/16000\r\n"), {}), "") << "another clock";
    EXPECT_EQ(m_ours.agreed().send.eCodec, SOUND_CODEC::PCMA);
}

TEST_F(Negotiation, WhatAnOfferLacksIsSaidAndNothingChanges)
{
    const QByteArray key = keyLine(1, "AES_CM_128_HMAC_SHA1_80", 'k');
    const QByteArray tones = "a=rtpmap:101 telephone-event/8000\r\n";
    const struct
    {
        QByteArray offer;
        CALL_FIT eFit;
        bool bEncrypt = false;
    } all[] = {{sound("8"), CALL_FITS},
               {sound("8", key, "RTP/SAVP"), CALL_FITS, true},
               {described("m=audio 5004 RTP/AVP 8\r\n", "0.0.0.0"), CALL_FITS},
               {described("m=image 5006 udptl t38\r\nm=audio 5004 RTP/AVP 8\r\n"), CALL_FITS},
               {"no description", CALL_NO_DESCRIPTION},
               {described(""), CALL_NO_DESCRIPTION},
               {described("m=image 5004 udptl t38\r\n"), CALL_NO_SOUND},
               {described("m=video 5004 RTP/AVP 96\r\na=rtpmap:96 VP8/90000\r\n"), CALL_NO_SOUND},
               {described("m=audio 0 RTP/AVP 8\r\nm=video 0 RTP/AVP 96\r\n"), CALL_NO_SOUND},
               {sound("8"), CALL_NO_TRANSPORT, true},
               {sound("8", {}, "RTP/SAVP"), CALL_NO_TRANSPORT},
               {sound("8", "a=fingerprint:sha-256 AA\r\n", "UDP/TLS/RTP/SAVPF"), CALL_NO_TRANSPORT},
               {described("m=audio 5004 RTP/AVP 8\r\nc=IN IP6 2001:db8::1\r\n"), CALL_NO_ADDRESS},
               {described("m=audio 5004 RTP/AVP 8\r\n", "224.0.0.5"), CALL_NO_ADDRESS},
               {"v=0\r\no=- 1 1 IN IP4 h\r\ns=-\r\nt=0 0\r\nm=audio 5004 RTP/AVP 8\r\n", CALL_NO_ADDRESS},
               {sound("18"), CALL_NO_FORMAT},
               {sound("101", tones), CALL_NO_FORMAT},
               {sound("8", "a=rtpmap:8 speex/8000\r\n"), CALL_NO_FORMAT},
               {described("m=image 5004 udptl t38\r\nm=audio 5006 RTP/AVP 18\r\nm=audio 0 RTP/AVP 8\r\n"),
                CALL_NO_FORMAT}};
    for (const auto& each : all) {
        tagMediaWant want;
        want.bEncrypt = each.bEncrypt;
        EXPECT_EQ(m_ours.judge(each.offer, want), each.eFit) << each.offer.constData();
        callNegotiation other(own(), countedKeys());
        EXPECT_EQ(other.answer(each.offer, want).isEmpty(), each.eFit != CALL_FITS) << each.offer.constData();
    }
    EXPECT_FALSE(m_ours.agreed().bSound);
    EXPECT_TRUE(m_ours.offer({}).contains("o=- 77 1 ")) << "nothing was described before";
}

TEST_F(Negotiation, ANumberThatIsMappedToSomethingElseIsNotWhatItUsuallyIs)
{
    EXPECT_EQ(m_ours.answer(sound("8", "a=rtpmap:8 speex/8000\r\n"), {}), "");
}

TEST_F(Negotiation, RefusedAndUnknownLinesKeepTheirPlaces)
{
    const QByteArray lines = "m=video 6000 RTP/AVP 99\r\na=rtpmap:99 H264/90000\r\n"
                             "m=audio 0 RTP/AVP 8\r\n"
                             "m=application 7000 UDP/BFCP *\r\n"
                             "m=audio 5004 RTP/AVP 0\r\n"
                             "m=audio 5006 RTP/AVP 8\r\n";
    const QByteArray answer = m_ours.answer(described(lines), {});
    EXPECT_EQ(mediaLines(answer), "m=video 0 RTP/AVP 99|m=audio 0 RTP/AVP 8|m=application 0 UDP/BFCP *|"
                                  "m=audio 36000 RTP/AVP 0|m=audio 0 RTP/AVP 8|");
    EXPECT_EQ(m_ours.agreed().nPort, 5004);
    EXPECT_EQ(mediaLines(m_ours.offer({})), "m=video 0 RTP/AVP 99|m=audio 0 RTP/AVP 8|"
                                            "m=application 0 UDP/BFCP *|m=audio 36000 RTP/AVP 96 9 8 0 101|"
                                            "m=audio 0 RTP/AVP 8|");
}

TEST_F(Negotiation, AReOfferRaisesTheVersionAndKeepsTheNumbers)
{
    m_ours.answer(sound("0 101 110", "a=rtpmap:101 opus/48000/2\r\na=rtpmap:110 telephone-event/8000\r\n"),
                  {});
    const QByteArray offer = m_ours.offer({});
    EXPECT_TRUE(offer.contains("o=- 77 2 IN IP4"));
    EXPECT_EQ(mediaLines(offer), "m=audio 36000 RTP/AVP 101 9 8 0 110|");
}

TEST_F(Negotiation, ANumberOfTheOtherSideIsNotGivenAnotherMeaning)
{
    m_ours.answer(sound("8 96 101", "a=rtpmap:96 speex/8000\r\na=rtpmap:101 speex/16000\r\n"), {});
    EXPECT_EQ(mediaLines(m_ours.offer({})), "m=audio 36000 RTP/AVP 97 9 8 0 98|");
}

TEST_F(Negotiation, AnAnswerToOurOfferIsTaken)
{
    m_ours.offer({});
    EXPECT_TRUE(
        m_ours.agree(sound("8 101", "a=rtpmap:101 telephone-event/8000\r\na=rtcp-mux\r\na=ptime:30\r\n")));
    EXPECT_EQ(m_ours.agreed().send.eCodec, SOUND_CODEC::PCMA);
    EXPECT_EQ(m_ours.agreed().nSendTones, 101);
    EXPECT_EQ(m_ours.agreed().nRtcpPort, 5004);
    EXPECT_EQ(m_ours.agreed().nPtime, 30);
    EXPECT_EQ(m_ours.agreed().take.size(), 5) << "all that was offered may come";
    EXPECT_TRUE(m_ours.agree(sound("0"))) << "another one after an early one";
    EXPECT_EQ(m_ours.agreed().send.eCodec, SOUND_CODEC::PCMU);
}

TEST_F(Negotiation, AnAnswerThatDoesNotFitChangesNothing)
{
    EXPECT_FALSE(m_ours.agree(sound("8"))) << "nothing was offered";
    m_ours.offer({});
    EXPECT_TRUE(m_ours.agree(sound("8")));
    m_ours.offer({});
    EXPECT_FALSE(m_ours.agree(sound("18")));
    EXPECT_FALSE(m_ours.agree(described("m=audio 5004 RTP/AVP 0\r\nm=audio 5006 RTP/AVP 0\r\n")));
    EXPECT_FALSE(m_ours.agree(sound("0", {}, "RTP/SAVP")));
    EXPECT_FALSE(m_ours.agree("v=0\r\n"));
    EXPECT_EQ(m_ours.agreed().send.eCodec, SOUND_CODEC::PCMA);
    m_ours.withdraw();
    EXPECT_FALSE(m_ours.agree(sound("0"))) << "the offer is withdrawn";
    EXPECT_EQ(m_ours.agreed().send.eCodec, SOUND_CODEC::PCMA);
}

TEST_F(Negotiation, AnAnswerWithOtherNumbersIsSentTheseAndTakenByBoth)
{
    const auto takenAs = [&](int payload) {
        for (const tagAgreedCodec& codec : m_ours.agreed().take) {
            if (codec.nPayload == payload)
                return codec.eCodec;
        }
        return SOUND_CODEC::NONE;
    };
    ASSERT_EQ(mediaLines(m_ours.offer({})), "m=audio 36000 RTP/AVP 96 9 8 0 101|");
    EXPECT_TRUE(m_ours.agree(
        sound("111 110", "a=rtpmap:111 opus/48000/2\r\na=rtpmap:110 telephone-event/48000\r\n")));
    EXPECT_EQ(m_ours.agreed().send.nPayload, 111);
    EXPECT_EQ(m_ours.agreed().nSendTones, 110);
    EXPECT_EQ(takenAs(96), SOUND_CODEC::OPUS);
    EXPECT_EQ(takenAs(111), SOUND_CODEC::OPUS);
    EXPECT_EQ(m_ours.agreed().take.size(), 7) << "tones by both numbers too";
    // What was offered under a number keeps its meaning for what comes.
    m_ours.offer({});
    EXPECT_TRUE(m_ours.agree(sound("96", "a=rtpmap:96 PCMA/8000\r\n")));
    EXPECT_EQ(m_ours.agreed().send.eCodec, SOUND_CODEC::PCMA);
    EXPECT_EQ(m_ours.agreed().send.nPayload, 96);
    EXPECT_EQ(takenAs(96), SOUND_CODEC::OPUS);
    EXPECT_EQ(takenAs(8), SOUND_CODEC::PCMA);
    EXPECT_EQ(m_ours.agreed().take.size(), 5);
}

TEST_F(Negotiation, AnAnswerMayRefuseTheSound)
{
    const QByteArray refusal = described("m=audio 0 RTP/AVP 8\r\n");
    m_ours.offer({});
    EXPECT_FALSE(m_ours.agree(refusal)) << "there is no call yet";
    EXPECT_TRUE(m_ours.agree(sound("8")));
    for (int time = 0; time < 2; ++time) {
        m_ours.offer({});
        EXPECT_TRUE(m_ours.agree(refusal));
        EXPECT_FALSE(m_ours.agreed().bSound);
    }
}

struct tagHold
{
    const char* pOffered;
    bool bHeld;
    const char* pAnswered;
    bool bSends;
    bool bReceives;
};

TEST_F(Negotiation, BothSidesMayHold)
{
    const tagHold holds[] = {
        {"sendrecv", false, "sendrecv", true, true},  {"sendonly", false, "recvonly", false, true},
        {"recvonly", false, "sendonly", true, false}, {"inactive", false, "inactive", false, false},
        {"sendrecv", true, "sendonly", false, false}, {"sendonly", true, "inactive", false, false},
        {"recvonly", true, "sendonly", false, false}, {"inactive", true, "inactive", false, false}};
    for (const tagHold& hold : holds) {
        const QByteArray answer =
            m_ours.answer(sound("8", QByteArray("a=") + hold.pOffered + "\r\n"), {hold.bHeld, false});
        EXPECT_TRUE(answer.contains(QByteArray("a=") + hold.pAnswered + "\r\n")) << hold.pOffered;
        EXPECT_EQ(m_ours.agreed().bSends, hold.bSends) << hold.pOffered;
        EXPECT_EQ(m_ours.agreed().bReceives, hold.bReceives) << hold.pOffered;
    }
}

TEST_F(Negotiation, AnOfferWithoutAPortStopsTheSoundUntilTheNextOne)
{
    const QByteArray stop = described("m=audio 0 RTP/AVP 8\r\n");
    EXPECT_EQ(m_ours.answer(stop, {}), "") << "nothing was there to stop";
    ASSERT_FALSE(m_ours.answer(sound("8"), {}).isEmpty());
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(mediaLines(m_ours.answer(stop, {})), "m=audio 0 RTP/AVP 8|");
        EXPECT_FALSE(m_ours.agreed().bSound || m_ours.agreed().bSends || m_ours.agreed().bReceives);
        EXPECT_TRUE(m_ours.agreed().bHeldByPeer);
    }
    EXPECT_EQ(m_ours.answer(sound("18"), {}), "") << "a line with a port wants another answer";
    EXPECT_EQ(mediaLines(m_ours.offer({})), "m=audio 36000 RTP/AVP 96 9 8 0 101|") << "we may take it up";
    EXPECT_EQ(mediaLines(m_ours.answer(sound("8"), {})), "m=audio 36000 RTP/AVP 8|");
    EXPECT_TRUE(m_ours.agreed().bSound && m_ours.agreed().bSends && m_ours.agreed().bReceives);
    EXPECT_FALSE(m_ours.agreed().bHeldByPeer);
}

TEST_F(Negotiation, ASoundThatWasEncryptedIsOfferedSoAfterAStop)
{
    const QByteArray secure = sound("8", keyLine(1, "AES_CM_128_HMAC_SHA1_80", 'k'), "RTP/SAVP");
    ASSERT_FALSE(m_ours.answer(secure, {}).isEmpty());
    ASSERT_FALSE(m_ours.answer(described("m=audio 0 RTP/SAVP 8\r\n"), {}).isEmpty());
    EXPECT_TRUE(m_ours.offer({}).contains("RTP/SAVP"));
}

TEST_F(Negotiation, OfTwoLinesTheEncryptedOneIsTaken)
{
    const QByteArray answer =
        m_ours.answer(described("m=audio 5004 RTP/AVP 8\r\nm=audio 5006 RTP/SAVP 8\r\n" +
                                keyLine(1, "AES_CM_128_HMAC_SHA1_80", 'k')),
                      {});
    EXPECT_EQ(mediaLines(answer), "m=audio 0 RTP/AVP 8|m=audio 36000 RTP/SAVP 8|");
    EXPECT_EQ(m_ours.agreed().eSuite, CRYPTO_SUITE::AES_SHA1_80);
    callNegotiation other(own(), countedKeys());
    EXPECT_EQ(
        mediaLines(other.answer(described("m=audio 5004 RTP/AVP 8\r\nm=audio 5006 RTP/SAVP 8\r\n"), {})),
        "m=audio 36000 RTP/AVP 8|m=audio 0 RTP/SAVP 8|")
        << "without a key it is none";
}

TEST_F(Negotiation, ADirectionOfTheWholeDescriptionHoldsForALineWithoutOne)
{
    const QByteArray all =
        "v=0\r\no=- 1 1 IN IP4 192.0.2.7\r\ns=-\r\nc=IN IP4 192.0.2.7\r\nt=0 0\r\na=inactive\r\n";
    m_ours.answer(all + "m=audio 5004 RTP/AVP 8\r\n", {});
    EXPECT_FALSE(m_ours.agreed().bReceives);
    m_ours.answer(all + "m=audio 5004 RTP/AVP 8\r\na=sendrecv\r\n", {});
    EXPECT_TRUE(m_ours.agreed().bReceives);
}

TEST_F(Negotiation, AnAddressOfZerosHolds)
{
    const QByteArray answer = m_ours.answer(described("m=audio 5004 RTP/AVP 8\r\n", "0.0.0.0"), {});
    EXPECT_TRUE(answer.contains("a=recvonly"));
    EXPECT_TRUE(m_ours.agreed().bHeldByPeer);
    EXPECT_FALSE(m_ours.agreed().bSends);
    EXPECT_EQ(m_ours.agreed().nRtcpPort, 0);
}

TEST_F(Negotiation, AHoldIsOfferedAndTakenBack)
{
    m_ours.offer({});
    m_ours.agree(sound("8"));
    EXPECT_TRUE(m_ours.offer({true, false}).contains("a=sendonly\r\n"));
    EXPECT_TRUE(m_ours.agreed().bReceives) << "until the answer";
    EXPECT_TRUE(m_ours.agree(sound("8", "a=recvonly\r\n")));
    EXPECT_FALSE(m_ours.agreed().bSends || m_ours.agreed().bReceives);
    EXPECT_TRUE(m_ours.offer({}).contains("a=sendrecv\r\n"));
    EXPECT_TRUE(m_ours.agree(sound("8")));
    EXPECT_TRUE(m_ours.agreed().bSends && m_ours.agreed().bReceives);
}

TEST_F(Negotiation, AnEncryptedOfferIsAnsweredWithOurOwnKey)
{
    const QByteArray keys = keyLine(1, "AEAD_AES_256_GCM", 9) + keyLine(7, "AES_CM_128_HMAC_SHA1_32", 5) +
                            keyLine(8, "AES_CM_128_HMAC_SHA1_80", 6);
    const QByteArray answer = m_ours.answer(sound("8", keys, "RTP/SAVP"), {});
    EXPECT_EQ(mediaLines(answer), "m=audio 36000 RTP/SAVP 8|");
    EXPECT_EQ(answer.count("a=crypto"), 1);
    EXPECT_TRUE(answer.contains(keyLine(7, "AES_CM_128_HMAC_SHA1_32", 1)));
    EXPECT_EQ(m_ours.agreed().eSuite, CRYPTO_SUITE::AES_SHA1_32);
    EXPECT_EQ(m_ours.agreed().sendKey, QByteArray(30, 1));
    EXPECT_EQ(m_ours.agreed().takeKey, QByteArray(30, 5));
    EXPECT_TRUE(m_ours.offer({}).contains("RTP/SAVP")) << "what is encrypted stays so";
}

TEST_F(Negotiation, WhatIsEncryptedIsNotAnsweredInClear)
{
    const QByteArray secure = sound("8", keyLine(1, "AES_CM_128_HMAC_SHA1_80", 'k'), "RTP/SAVP");
    ASSERT_FALSE(m_ours.answer(secure, {}).isEmpty());
    EXPECT_EQ(m_ours.answer(sound("8"), {}), "");
    EXPECT_EQ(m_ours.agreed().sendKey, QByteArray(30, 1)) << "it goes on as it was";
    ASSERT_FALSE(m_ours.answer(described("m=audio 0 RTP/SAVP 8\r\n"), {}).isEmpty());
    EXPECT_EQ(m_ours.answer(sound("8"), {}), "") << "nor after a stop";
    EXPECT_FALSE(m_ours.answer(secure, {}).isEmpty());
}

TEST_F(Negotiation, AKeyThatWasAtWorkDoesNotComeBack)
{
    const auto keyFor = [&](const char* suite) {
        EXPECT_FALSE(m_ours.answer(sound("8", keyLine(1, suite, 'k'), "RTP/SAVP"), {}).isEmpty());
        return m_ours.agreed().sendKey;
    };
    const QByteArray first = keyFor("AES_CM_128_HMAC_SHA1_80");
    EXPECT_EQ(keyFor("AES_CM_128_HMAC_SHA1_80"), first) << "one that is at work stays";
    const QByteArray second = keyFor("AES_CM_128_HMAC_SHA1_32");
    EXPECT_NE(second, first);
    const QByteArray third = keyFor("AES_CM_128_HMAC_SHA1_80");
    EXPECT_NE(third, first);
    const QByteArray offer = m_ours.offer({});
    EXPECT_TRUE(offer.contains("a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:" + third.toBase64() + "\r\n"));
    EXPECT_TRUE(offer.contains("a=crypto:2 AES_CM_128_HMAC_SHA1_32 inline:"));
    EXPECT_FALSE(offer.contains(second.toBase64()));
}

TEST_F(Negotiation, AnEncryptedOfferWithoutAKeyOfOursIsRefused)
{
    EXPECT_EQ(m_ours.answer(sound("8", {}, "RTP/SAVP"), {}), "");
    EXPECT_EQ(m_ours.answer(sound("8", keyLine(1, "AEAD_AES_256_GCM", 9), "RTP/SAVP"), {}), "");
    EXPECT_EQ(m_ours.answer(sound("8"), {false, true}), "") << "nothing but encrypted is wanted";
}

TEST_F(Negotiation, AnOfferOfNothingButEncryptionHasTwoSuitesAndTakesTheAnswersChoice)
{
    const QByteArray offer = m_ours.offer({false, true});
    EXPECT_EQ(mediaLines(offer), "m=audio 36000 RTP/SAVP 96 9 8 0 101|");
    EXPECT_TRUE(offer.contains(keyLine(1, "AES_CM_128_HMAC_SHA1_80", 1)));
    EXPECT_TRUE(offer.contains(keyLine(2, "AES_CM_128_HMAC_SHA1_32", 2)));
    EXPECT_FALSE(m_ours.agree(sound("8")));
    EXPECT_FALSE(m_ours.agree(sound("8", keyLine(3, "AES_CM_128_HMAC_SHA1_80", 5), "RTP/SAVP")));
    EXPECT_TRUE(m_ours.agree(sound("8", keyLine(2, "AES_CM_128_HMAC_SHA1_32", 5), "RTP/SAVP")));
    EXPECT_EQ(m_ours.agreed().sendKey, QByteArray(30, 2));
    EXPECT_EQ(m_ours.agreed().takeKey, QByteArray(30, 5));
    EXPECT_TRUE(m_ours.offer({}).contains(keyLine(2, "AES_CM_128_HMAC_SHA1_32", 2))) << "the key stays";
}

TEST(CallCrypto, AKeyIsReadWholeOrNotAtAll)
{
    tagCrypto crypto;
    const QByteArray key = QByteArray(30, 'k').toBase64();
    const QByteArray suite = " AES_CM_128_HMAC_SHA1_80 ";
    EXPECT_TRUE(callCrypto::read("1" + suite + "inline:" + key, crypto));
    EXPECT_EQ(crypto.key, QByteArray(30, 'k'));
    EXPECT_TRUE(callCrypto::read("1" + suite + "inline:" + key + "|2^20 WSH=64", crypto));
    EXPECT_TRUE(callCrypto::read("1" + suite.toLower() + "INLINE:" + key + "|2^20 wsh=64", crypto));
    EXPECT_TRUE(callCrypto::read("1" + suite + "inline:" + key + " -X=1 WSH=64 -y", crypto))
        << "who does not know them may leave them";
    EXPECT_EQ(crypto.eSuite, CRYPTO_SUITE::AES_SHA1_80);
    EXPECT_EQ(crypto.mark, "");
    const std::pair<const char*, QByteArray> marks[] = {{"|2^20|1:4", QByteArray("\0\0\0\1", 4)},
                                                        {"|258:2", QByteArray("\1\2", 2)},
                                                        {"|2^20|255:1", "\xff"},
                                                        {"|7:128", QByteArray(127, 0) + '\7'}};
    for (const auto& [text, mark] : marks) {
        EXPECT_TRUE(callCrypto::read("1" + suite + "inline:" + key + text, crypto)) << text;
        EXPECT_EQ(crypto.mark, mark) << text;
        EXPECT_EQ(crypto.key, QByteArray(30, 'k'));
    }
    for (const char* mark : {"|2^20|256:1", "|1:129", "|1:0", "|1:-1", "|:4", "|a:4", "|1:", "|1:4|2^20",
                             "|2^20|1:4|1:4", "|1:4|1:4", "|2^20|2^20|1:4"})
        EXPECT_FALSE(callCrypto::read("1" + suite + "inline:" + key + mark, crypto)) << mark;
    for (const QByteArray& bad :
         {QByteArray(), "0" + suite + "inline:" + key, "1" + suite + key, "x" + suite + "inline:" + key,
          "1" + suite + "inline:" + key + ";inline:" + key, "1" + suite + "inline:" + key + "|2^20;" + key,
          "1" + suite + "inline:" + key.left(36), "1" + suite + "inline:" + key + " UNENCRYPTED_SRTP",
          "1" + suite + "inline:" + key + " X=1", "1" + suite + "inline:" + key + " -X=1 KDR=1",
          "1" + suite + "inline:****" + key})
        EXPECT_FALSE(callCrypto::read(bad, crypto)) << bad.constData();
}

TEST(CallCrypto, TwoRandomKeysDiffer)
{
    EXPECT_EQ(callCrypto::randomBytes(30).size(), 30);
    EXPECT_NE(callCrypto::randomBytes(30), callCrypto::randomBytes(30));
}

TEST(Addresses, SoundGoesToOneMachineOnly)
{
    for (const char* address : {"192.0.2.7", "10.0.0.1", "169.254.3.4", "223.1.2.3"})
        EXPECT_TRUE(callNegotiation::mayHearUs(address, 5004, false)) << address;
    for (const char* address : {"0.0.0.0", "0.1.2.3", "224.0.0.1", "239.255.255.250", "240.0.0.1",
                                "255.255.255.255", "127.0.0.1", "example.com", "", "::1"})
        EXPECT_FALSE(callNegotiation::mayHearUs(address, 5004, false)) << address;
    EXPECT_TRUE(callNegotiation::mayHearUs("127.0.0.1", 5004, true));
    EXPECT_FALSE(callNegotiation::mayHearUs("192.0.2.7", 1023, false));
    EXPECT_FALSE(callNegotiation::mayHearUs("192.0.2.7", 65536, false));
}

TEST_F(Negotiation, AnOfferThatLiesAboutItsPlaceIsRefused)
{
    for (const char* address : {"224.0.0.5", "127.0.0.1", "255.255.255.255"})
        EXPECT_EQ(m_ours.answer(described("m=audio 5004 RTP/AVP 8\r\n", address), {}), "") << address;
    EXPECT_EQ(m_ours.answer(described("m=audio 80 RTP/AVP 8\r\n"), {}), "");
    EXPECT_EQ(m_ours.answer(described("m=audio 70000 RTP/AVP 8\r\n"), {}), "");
    EXPECT_EQ(m_ours.answer(described("m=audio -1 RTP/AVP 8\r\n"), {}), "");
    EXPECT_FALSE(m_ours.answer(sound("8", "a=rtcp:22\r\n"), {}).isEmpty());
    EXPECT_EQ(m_ours.agreed().nRtcpPort, 0);
    m_ours.answer(described("m=audio 65534 RTP/AVP 8\r\na=rtcp:70000\r\n"), {});
    EXPECT_EQ(m_ours.agreed().nRtcpPort, 65535);
}

TEST_F(Negotiation, TheOwnAddressOfALineGoesBeforeThatOfAll)
{
    m_ours.answer(described("m=audio 5004 RTP/AVP 8\r\nc=IN IP4 192.0.2.99\r\n"), {});
    EXPECT_EQ(m_ours.agreed().peer, "192.0.2.99");
    EXPECT_EQ(m_ours.answer(described("m=audio 5004 RTP/AVP 8\r\nc=IN IP6 2001:db8::1\r\n"), {}), "");
}

TEST_F(Negotiation, PacketsAreAsLongAsTheOtherSideWants)
{
    for (const auto& [lines, ms] :
         {std::pair("a=ptime:10\r\n", 10), std::pair("a=ptime:60\r\n", 60), std::pair("a=ptime:1\r\n", 10),
          std::pair("a=ptime:500\r\n", 60), std::pair("a=ptime:60\r\na=maxptime:40\r\n", 40),
          std::pair("", 20), std::pair("a=ptime:-5\r\n", 20), std::pair("a=ptime:45\r\n", 40)}) {
        m_ours.answer(sound("8", lines), {});
        EXPECT_EQ(m_ours.agreed().nPtime, ms) << lines;
    }
    m_ours.answer(sound("96", "a=rtpmap:96 opus/48000/2\r\na=ptime:30\r\n"), {});
    EXPECT_EQ(m_ours.agreed().nPtime, 20) << "Opus has no frame of 30 ms";
}

TEST_F(Negotiation, TonesHaveTheClockOfTheSoundWhereTheyCan)
{
    m_ours.answer(sound("96 101 102", "a=rtpmap:96 opus/48000/2\r\na=rtpmap:101 telephone-event/8000\r\n"
                                      "a=rtpmap:102 telephone-event/48000\r\n"),
                  {});
    EXPECT_EQ(m_ours.agreed().nSendTones, 102);
    EXPECT_EQ(m_ours.agreed().nTonesClock, 48000);
}

TEST_F(Negotiation, LargeAndDamagedTextsAreRefused)
{
    const QByteArray line = "m=audio 5004 RTP/AVP 8\r\n";
    EXPECT_EQ(m_ours.answer(described(line + QByteArray("a=x\r\n").repeated(4000)), {}), "");
    EXPECT_FALSE(m_ours.answer(described(line + QByteArray("a=x\r\n").repeated(3000)), {}).isEmpty());
    EXPECT_EQ(m_ours.answer(described(line.repeated(17)), {}), "");
    EXPECT_EQ(m_ours.answer(described(line + QByteArray("a=x\0y\r\n", 7)), {}), "");
    EXPECT_EQ(m_ours.answer(described("m=audio\r\n"), {}), "");
}

TEST_F(Negotiation, TwoOfUsUnderstandEachOther)
{
    tagOwnMedia other = own();
    other.address = kPeer;
    other.nPort = 36010;
    callNegotiation theirs(other);
    for (const bool encrypt : {false, true}) {
        const QByteArray answer = theirs.answer(m_ours.offer({false, encrypt}), {});
        ASSERT_TRUE(m_ours.agree(answer));
        EXPECT_EQ(m_ours.agreed().send.eCodec, SOUND_CODEC::OPUS);
        EXPECT_EQ(m_ours.agreed().send.nPayload, theirs.agreed().take[0].nPayload);
        EXPECT_EQ(m_ours.agreed().sendKey, theirs.agreed().takeKey);
        EXPECT_EQ(m_ours.agreed().takeKey, theirs.agreed().sendKey);
        EXPECT_EQ(!m_ours.agreed().sendKey.isEmpty(), encrypt);
    }
}

} // namespace
