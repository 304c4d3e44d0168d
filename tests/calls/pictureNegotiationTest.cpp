// What two sides agree upon about pictures: who offers and takes them, how, and at which size.
#include "players/callNegotiation.h"
#include "tests/calls/describedText.h"
#include <gtest/gtest.h>

namespace {

tagOwnMedia ownMedia(int port = 36000)
{
    tagOwnMedia own;
    own.address = "192.0.2.1";
    own.nPort = port;
    own.nPicturePort = port + 2;
    own.nSession = 77;
    return own;
}

tagMediaWant video(bool camera = true)
{
    tagMediaWant want;
    want.bVideo = true;
    want.bCamera = camera;
    return want;
}

const QByteArray kHead = "v=0\r\no=- 1 1 IN IP4 192.0.2.7\r\ns=-\r\nc=IN IP4 192.0.2.7\r\nt=0 0\r\n";
const QByteArray kSound = "m=audio 5004 RTP/AVP 8\r\n";

QByteArray described(const QByteArray& formats, const QByteArray& lines,
                     const QByteArray& transport = "RTP/AVP")
{
    return kHead + kSound + "m=video 5006 " + transport + ' ' + formats + "\r\n" + lines;
}

QByteArray h264(int number, const QByteArray& parameters)
{
    const QByteArray payload = QByteArray::number(number);
    return "a=rtpmap:" + payload + " H264/90000\r\na=fmtp:" + payload + ' ' + parameters + "\r\n";
}

// What stands behind the line of pictures.
QByteArray pictureLines(const QByteArray& text)
{
    return text.mid(text.indexOf("m=video"));
}

class PictureNegotiation : public testing::Test
{
protected:
    callNegotiation m_ours{ownMedia(), countedKeys()};
    tagAgreedPicture agreed() const { return m_ours.agreedPicture(); }
};

TEST_F(PictureNegotiation, AnOfferNamesTheFormatsInTheOrderOfPreference)
{
    tagMediaWant want = video();
    want.nKbit = 512;
    const QByteArray offer = m_ours.offer(want);
    EXPECT_EQ(mediaLines(offer), "m=audio 36000 RTP/AVP 96 9 8 0 101|m=video 36002 RTP/AVP 97 98 99|");
    const QByteArray lines = pictureLines(offer);
    for (const char* line :
         {"b=AS:512\r\n", "a=rtpmap:97 H264/90000\r\n",
          "a=fmtp:97 profile-level-id=42e01f;packetization-mode=1;level-asymmetry-allowed=1\r\n",
          "a=fmtp:98 profile-level-id=42e01f;packetization-mode=0;level-asymmetry-allowed=1\r\n",
          "a=rtpmap:99 VP8/90000\r\n", "a=rtcp:36003\r\n", "a=rtcp-mux\r\n", "a=rtcp-fb:* nack pli\r\n",
          "a=rtcp-fb:* ccm fir\r\n", "a=sendrecv\r\n"})
        EXPECT_TRUE(lines.contains(line)) << line;
    EXPECT_FALSE(offer.contains("crypto"));
}

TEST_F(PictureNegotiation, WhoDoesNotWantThemOffersNone)
{
    EXPECT_FALSE(m_ours.offer({}).contains("video"));
    m_ours.setPicturePort(0);
    EXPECT_FALSE(m_ours.offer(video()).contains("video")) << "there is no port for them";
}

TEST_F(PictureNegotiation, ADirectionFollowsCameraAndHold)
{
    EXPECT_TRUE(pictureLines(m_ours.offer(video(false))).contains("a=recvonly\r\n"));
    tagMediaWant held = video();
    held.bHeld = true;
    EXPECT_TRUE(pictureLines(m_ours.offer(held)).contains("a=sendonly\r\n"));
    held.bCamera = false;
    EXPECT_TRUE(pictureLines(m_ours.offer(held)).contains("a=inactive\r\n"));
}

TEST_F(PictureNegotiation, AnAnswerTakesOurPreferenceAndTheOtherSidesNumbers)
{
    const QByteArray answer = m_ours.answer(
        described("110 111 112", "a=rtpmap:110 VP8/90000\r\n" +
                                     h264(111, "packetization-mode=0;profile-level-id=42001e") +
                                     h264(112, "profile-level-id=42C01E; packetization-mode=1")),
        video());
    EXPECT_EQ(mediaLines(answer), "m=audio 36000 RTP/AVP 8|m=video 36002 RTP/AVP 112|");
    EXPECT_TRUE(answer.contains("a=fmtp:112 profile-level-id=42c01e;packetization-mode=1\r\n"))
        << answer.constData();
    EXPECT_EQ(agreed().send.eCodec, PICTURE_CODEC::H264);
    EXPECT_EQ(agreed().send.nPayload, 112);
    EXPECT_EQ(agreed().peer, "192.0.2.7");
    EXPECT_EQ(agreed().nPort, 5006);
    EXPECT_EQ(agreed().nRtcpPort, 5007);
    EXPECT_TRUE(agreed().bSends && agreed().bReceives);
    EXPECT_FALSE(agreed().bPli || agreed().bFir);
}

TEST_F(PictureNegotiation, SinglePacketsAndVp8AreTakenWhenThereIsNothingElse)
{
    m_ours.answer(described("111", h264(111, "profile-level-id=42e01f")), video());
    EXPECT_EQ(agreed().send.nMode, 0) << "what it is when nobody says more";
    m_ours.answer(described("110 34", "a=rtpmap:110 vp8/90000\r\na=fmtp:110 max-fr=20;max-fs=400\r\n"),
                  video());
    EXPECT_EQ(agreed().send.eCodec, PICTURE_CODEC::VP8);
    EXPECT_EQ(agreed().bounds.nWidth, 352);
    EXPECT_EQ(agreed().bounds.nRate, 20);
}

TEST_F(PictureNegotiation, WhatIsNotSpokenHereIsRefusedInItsPlaceAndTheSoundGoesOn)
{
    for (const QByteArray& lines :
         {h264(97, "profile-level-id=64001f;packetization-mode=1"),
          h264(97, "profile-level-id=4d001f;packetization-mode=1"),
          h264(97, "profile-level-id=42e01f;packetization-mode=2"), QByteArray("a=rtpmap:97 H264/48000\r\n"),
          QByteArray("a=rtpmap:97 H265/90000\r\n")}) {
        const QByteArray answer = m_ours.answer(described("97", lines), video());
        EXPECT_EQ(mediaLines(answer), "m=audio 36000 RTP/AVP 8|m=video 0 RTP/AVP 97|") << lines.constData();
        EXPECT_FALSE(agreed().bPicture);
        EXPECT_TRUE(m_ours.agreed().bSound);
    }
    const QByteArray good = h264(97, "profile-level-id=42e01f;packetization-mode=1");
    EXPECT_TRUE(m_ours.answer(described("97", good), {}).contains("m=video 0 ")) << "nobody wants them here";
    EXPECT_TRUE(
        m_ours.answer(described("97", good + "c=IN IP4 127.0.0.1\r\n"), video()).contains("m=video 0 "))
        << "no machine of the network";
    EXPECT_TRUE(m_ours.answer(described("97", good, "RTP/SAVP"), video()).contains("m=video 0 ")) << "no key";
}

TEST_F(PictureNegotiation, OnlyOneLineOfPicturesIsTaken)
{
    const QByteArray good = h264(97, "profile-level-id=42e01f;packetization-mode=1");
    const QByteArray answer = m_ours.answer(kHead + "m=video 6000 RTP/AVP 97\r\n" + good + kSound +
                                                "m=video 6002 RTP/AVP 97\r\n" + good,
                                            video());
    EXPECT_EQ(mediaLines(answer), "m=video 36002 RTP/AVP 97|m=audio 36000 RTP/AVP 8|m=video 0 RTP/AVP 97|");
}

TEST_F(PictureNegotiation, ALevelBoundsSizeAndRateAndEachSideHasItsOwn)
{
    const auto boundsFor = [&](const char* level) {
        m_ours.answer(
            described("97", h264(97, QByteArray("packetization-mode=1;profile-level-id=42e0") + level)),
            video());
        return QByteArray::number(agreed().bounds.nWidth) + 'x' +
               QByteArray::number(agreed().bounds.nHeight) + '/' + QByteArray::number(agreed().bounds.nRate);
    };
    EXPECT_EQ(boundsFor("1f"), "640x480/30");
    EXPECT_EQ(boundsFor("16"), "640x480/16");
    EXPECT_EQ(boundsFor("14"), "352x288/30");
    EXPECT_EQ(boundsFor("0b"), "352x288/7");
    EXPECT_EQ(boundsFor("0a"), "176x144/15");
    const QByteArray answer = m_ours.answer(
        described("97", h264(97, "packetization-mode=1;profile-level-id=42e00a;level-asymmetry-allowed=1")),
        video());
    EXPECT_TRUE(answer.contains("profile-level-id=42e01f;packetization-mode=1;level-asymmetry-allowed=1"));
    EXPECT_EQ(agreed().bounds.nWidth, 176);
    for (const auto& [theirs, ours] : {std::pair("14", "14"), std::pair("1f", "1f"), std::pair("28", "1f")})
        EXPECT_TRUE(
            m_ours
                .answer(described("97", h264(97, QByteArray("packetization-mode=1;profile-level-id=42e0") +
                                                     theirs)),
                        video())
                .contains(QByteArray("profile-level-id=42e0") + ours + ";packetization-mode=1\r\n"))
            << theirs << ": one level for both, and none that is too much here";
}

TEST_F(PictureNegotiation, WhoeverStopsTheSoundStopsThePicturesToo)
{
    const QByteArray picture =
        "m=video 5006 RTP/AVP 97\r\n" + h264(97, "profile-level-id=42e01f;packetization-mode=1");
    ASSERT_FALSE(m_ours.answer(kHead + kSound + picture, video()).isEmpty());
    ASSERT_TRUE(agreed().bSends);
    const QByteArray answer = m_ours.answer(kHead + "m=audio 0 RTP/AVP 8\r\n" + picture, video());
    EXPECT_EQ(mediaLines(answer), "m=audio 0 RTP/AVP 8|m=video 0 RTP/AVP 97|");
    EXPECT_FALSE(agreed().bPicture || agreed().bSends) << "the camera";
}

TEST_F(PictureNegotiation, TheLowerBandwidthAndTheWantedRateHold)
{
    const QByteArray good = "b=AS:300\r\n" + h264(97, "profile-level-id=42e01f;packetization-mode=1");
    tagMediaWant want = video();
    want.nRate = 15;
    m_ours.answer(described("97", good), want);
    EXPECT_EQ(agreed().nKbit, 300);
    EXPECT_EQ(agreed().bounds.nRate, 15);
    want.nKbit = 200;
    EXPECT_TRUE(m_ours.answer(described("97", good), want).contains("b=AS:200\r\n"));
    EXPECT_EQ(agreed().nKbit, 200);
    want.nKbit = 500;
    m_ours.answer(described("97", good), want);
    EXPECT_EQ(agreed().nKbit, 300);
}

TEST_F(PictureNegotiation, FeedbackIsAgreedAsTheOtherSideHasIt)
{
    const QByteArray good = h264(97, "profile-level-id=42e01f;packetization-mode=1");
    m_ours.answer(described("97", good + "a=rtcp-fb:97 nack pli\r\n"), video());
    EXPECT_TRUE(agreed().bPli && !agreed().bFir);
    m_ours.answer(described("97", good + "a=rtcp-fb:* ccm fir\r\na=rtcp-fb:* nack\r\n"), video());
    EXPECT_TRUE(!agreed().bPli && agreed().bFir);
}

TEST_F(PictureNegotiation, AnAnswerToOursAgreesItAndARefusedOneLeavesTheSound)
{
    callNegotiation theirs(ownMedia(40000), countedKeys());
    EXPECT_TRUE(m_ours.agree(theirs.answer(m_ours.offer(video()), video(false))));
    EXPECT_TRUE(agreed().bPicture && agreed().bSends && !agreed().bReceives);
    EXPECT_EQ(agreed().nPort, 40002);
    EXPECT_EQ(agreed().nRtcpPort, 40002) << "both on one";
    EXPECT_TRUE(theirs.agreedPicture().bReceives && !theirs.agreedPicture().bSends);
    EXPECT_EQ(agreed().take.size(), 3);
    EXPECT_TRUE(m_ours.agree(theirs.answer(m_ours.offer(video()), {})));
    EXPECT_FALSE(agreed().bPicture);
    EXPECT_TRUE(m_ours.agreed().bSound);
}

TEST_F(PictureNegotiation, AnAnswerThatLiesIsNoPicture)
{
    const auto agree = [&](const QByteArray& line) {
        m_ours.offer(video());
        EXPECT_TRUE(m_ours.agree(kHead + kSound + line));
        return agreed().bPicture;
    };
    const QByteArray good = h264(97, "profile-level-id=42e01f;packetization-mode=1");
    EXPECT_TRUE(agree("m=video 5006 RTP/AVP 97\r\n" + good));
    EXPECT_FALSE(agree("m=video 5006 RTP/SAVP 97\r\n" + good)) << "another transport";
    // Our keys are there when an encrypted offer was refused before.
    tagMediaWant secure = video();
    secure.bEncrypt = true;
    m_ours.offer(secure);
    m_ours.withdraw();
    EXPECT_FALSE(agree("m=video 5006 RTP/SAVP 97\r\n" + good + "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:" +
                       QByteArray(30, 'k').toBase64() + "\r\n"))
        << "another transport, with a key";
    EXPECT_FALSE(agree("m=video 80 RTP/AVP 97\r\n" + good)) << "a system's port";
    EXPECT_FALSE(agree("m=video 5006 RTP/AVP 97\r\nc=IN IP4 224.0.0.1\r\n" + good)) << "many machines";
    EXPECT_FALSE(agree("m=video 5006 RTP/AVP 34\r\na=rtpmap:34 H263/90000\r\n")) << "never offered";
    EXPECT_FALSE(agree("m=audio 5006 RTP/AVP 8\r\n")) << "another kind";
}

TEST_F(PictureNegotiation, AReOfferAddsAndTakesThePictureAndEveryLineKeepsItsPlace)
{
    callNegotiation theirs(ownMedia(40000), countedKeys());
    EXPECT_TRUE(m_ours.agree(theirs.answer(m_ours.offer({}), video())));
    EXPECT_FALSE(agreed().bPicture);
    const QByteArray more = m_ours.offer(video());
    EXPECT_EQ(mediaLines(more), "m=audio 36000 RTP/AVP 96 9 8 0 101|m=video 36002 RTP/AVP 97 98 99|");
    EXPECT_TRUE(m_ours.agree(theirs.answer(more, video())));
    EXPECT_TRUE(agreed().bPicture && theirs.agreedPicture().bPicture);
    const QByteArray less = m_ours.offer({});
    EXPECT_EQ(mediaLines(less), "m=audio 36000 RTP/AVP 96 9 8 0 101|m=video 0 RTP/AVP 97|");
    EXPECT_TRUE(m_ours.agree(theirs.answer(less, video())));
    EXPECT_FALSE(agreed().bPicture || theirs.agreedPicture().bPicture);
    // The other side brings them back, on the same line and by the same numbers.
    EXPECT_EQ(mediaLines(theirs.offer(video())),
              "m=audio 40000 RTP/AVP 96 9 8 0 101|m=video 40002 RTP/AVP 97 98 99|");
}

TEST_F(PictureNegotiation, PicturesOfAnEncryptedCallHaveKeysOfTheirOwn)
{
    callNegotiation theirs(ownMedia(40000), countedKeys());
    tagMediaWant want = video();
    want.bEncrypt = true;
    const QByteArray offer = m_ours.offer(want);
    EXPECT_TRUE(pictureLines(offer).startsWith("m=video 36002 RTP/SAVP 97"));
    EXPECT_EQ(pictureLines(offer).count("a=crypto:"), 2);
    EXPECT_TRUE(m_ours.agree(theirs.answer(offer, video())));
    EXPECT_EQ(agreed().eSuite, CRYPTO_SUITE::AES_SHA1_80);
    EXPECT_EQ(agreed().sendKey, theirs.agreedPicture().takeKey);
    EXPECT_EQ(agreed().takeKey, theirs.agreedPicture().sendKey);
    EXPECT_NE(agreed().sendKey, m_ours.agreed().sendKey) << "one key for two streams can be broken";
    EXPECT_TRUE(m_ours.answer(described("97", h264(97, "profile-level-id=42e01f;packetization-mode=1")), want)
                    .isEmpty())
        << "nothing but encrypted";
}

TEST_F(PictureNegotiation, KeysOfPicturesThatWereOffAreNew)
{
    callNegotiation theirs(ownMedia(40000), countedKeys());
    tagMediaWant want = video();
    want.bEncrypt = true;
    ASSERT_TRUE(m_ours.agree(theirs.answer(m_ours.offer(want), video())));
    const QByteArray ours = agreed().sendKey;
    const QByteArray others = theirs.agreedPicture().sendKey;
    ASSERT_TRUE(m_ours.agree(theirs.answer(m_ours.offer(want), video())));
    EXPECT_TRUE(agreed().sendKey == ours && agreed().takeKey == others) << "they go on";
    tagMediaWant less;
    less.bEncrypt = true;
    ASSERT_TRUE(m_ours.agree(theirs.answer(m_ours.offer(less), video())));
    ASSERT_FALSE(agreed().bPicture);
    ASSERT_TRUE(m_ours.agree(theirs.answer(m_ours.offer(want), video())));
    EXPECT_TRUE(agreed().bPicture);
    EXPECT_NE(agreed().sendKey, ours);
    EXPECT_NE(agreed().takeKey, others);
}

TEST_F(PictureNegotiation, PicturesInClearDoNotComeToACallThatIsEncrypted)
{
    const QByteArray key =
        "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:" + QByteArray(30, 'k').toBase64() + "\r\n";
    const QByteArray secure = kHead + "m=audio 5004 RTP/SAVP 8\r\n" + key;
    const QByteArray format = h264(97, "profile-level-id=42e01f;packetization-mode=1");
    const QByteArray clear = secure + "m=video 5006 RTP/AVP 97\r\n" + format;
    const QByteArray sealed = secure + "m=video 5006 RTP/SAVP 97\r\n" + key + format;
    const auto has = [this](const QByteArray& offer) {
        EXPECT_FALSE(m_ours.answer(offer, video()).isEmpty()) << "its sound goes on";
        return agreed().bPicture;
    };
    EXPECT_FALSE(has(secure));
    EXPECT_FALSE(has(clear));
    EXPECT_TRUE(has(sealed));
    EXPECT_FALSE(has(clear));
    EXPECT_FALSE(has(clear));
    m_ours = callNegotiation(ownMedia(), countedKeys());
    EXPECT_TRUE(has(clear)) << "it begins so";
    EXPECT_TRUE(has(clear)) << "and goes on";
}

TEST_F(PictureNegotiation, NoAnswerBringsPicturesInClearIntoACallThatIsEncrypted)
{
    const QByteArray key =
        "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:" + QByteArray(30, 'k').toBase64() + "\r\n";
    const QByteArray secure = kHead + "m=audio 5004 RTP/SAVP 8\r\n" + key;
    const QByteArray format = h264(97, "profile-level-id=42e01f;packetization-mode=1");
    ASSERT_FALSE(m_ours.answer(secure + "m=video 5006 RTP/SAVP 97\r\n" + key + format, video()).isEmpty());
    ASSERT_TRUE(agreed().bPicture);
    m_ours.offer(video());
    EXPECT_TRUE(m_ours.agree(secure + "m=video 5006 RTP/SAVP 97\r\n" + key + format));
    EXPECT_TRUE(agreed().bPicture);
    m_ours.offer(video());
    EXPECT_TRUE(m_ours.agree(secure + "m=video 5006 RTP/AVP 97\r\n" + format));
    EXPECT_FALSE(agreed().bPicture);
    EXPECT_TRUE(m_ours.agreed().bSound);
}

TEST_F(PictureNegotiation, TheOtherSideOpensNoCameraThatTheCallBeganWithout)
{
    const QByteArray format = h264(97, "profile-level-id=42e01f;packetization-mode=1");
    const auto answered = [&](const tagMediaWant& want, const QByteArray& direction = "sendrecv") {
        const QByteArray lines =
            pictureLines(m_ours.answer(described("97", format + "a=" + direction + "\r\n"), want));
        EXPECT_EQ(lines.contains("a=send"), agreed().bSends);
        return lines.mid(lines.lastIndexOf("a=")).trimmed();
    };
    ASSERT_FALSE(m_ours.answer(kHead + kSound, video()).isEmpty());
    EXPECT_EQ(answered(video()), "a=recvonly");
    EXPECT_EQ(answered(video(), "recvonly"), "a=inactive");
    EXPECT_TRUE(pictureLines(m_ours.offer(video())).contains("a=recvonly\r\n")) << "nor does a hold of ours";
    m_ours.withdraw();
    tagMediaWant now = video();
    now.bCameraNow = true;
    EXPECT_EQ(answered(now), "a=sendrecv") << "the user does";
    EXPECT_EQ(answered(video(), "sendonly"), "a=recvonly");
    EXPECT_EQ(answered(video()), "a=sendrecv") << "who has seen it may hold and see it again";
    EXPECT_EQ(answered(video(false)), "a=recvonly") << "the user closes it";
    m_ours = callNegotiation(ownMedia(), countedKeys());
    EXPECT_EQ(answered(video()), "a=sendrecv") << "it begins so";
}

TEST_F(PictureNegotiation, AnAnswerWithFewerLinesHasTheSoundAndNoPicture)
{
    m_ours.offer(video());
    EXPECT_TRUE(m_ours.agree(kHead + kSound));
    EXPECT_TRUE(m_ours.agreed().bSound && m_ours.agreed().bSends);
    EXPECT_FALSE(agreed().bPicture);
    EXPECT_FALSE(m_ours.agree(described("97", h264(97, "profile-level-id=42e01f")) + kSound)) << "more";
}

TEST_F(PictureNegotiation, AnAnswerWhoseLinesAreInAnotherOrderIsNone)
{
    const QByteArray line = "m=video 5006 RTP/AVP 97\r\n" + h264(97, "profile-level-id=42e01f");
    m_ours.offer(video());
    EXPECT_FALSE(m_ours.agree(kHead + line + kSound));
    EXPECT_FALSE(m_ours.agreed().bSound || agreed().bPicture);
    EXPECT_TRUE(m_ours.agree(kHead + kSound + line)) << "a better one may follow";
}

TEST_F(PictureNegotiation, AHeldCallSendsAndTakesNothing)
{
    callNegotiation theirs(ownMedia(40000), countedKeys());
    tagMediaWant held = video();
    held.bHeld = true;
    EXPECT_TRUE(m_ours.agree(theirs.answer(m_ours.offer(held), video())));
    EXPECT_FALSE(agreed().bSends || agreed().bReceives);
    EXPECT_FALSE(theirs.agreedPicture().bSends);
    EXPECT_TRUE(m_ours.agree(theirs.answer(m_ours.offer(video()), video())));
    EXPECT_TRUE(agreed().bSends && agreed().bReceives && theirs.agreedPicture().bSends);
}

} // namespace
