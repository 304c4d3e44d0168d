// What the media server does with its messages, good and bad.
#include "players/rtpDescription.h"
#include "tests/players/playersTest.h"
#include <cstring>

namespace {

class MediaServer : public playersTest
{
protected:
    MediaServer() { startMedia(); }
    static int send(unsigned int message, int size, const void* block, unsigned int wParam = 0)
    {
        return msgSendMsgToThreadEx(media(), message, wParam, 0, size, block);
    }
};

TEST_F(MediaServer, ASessionThatIsNoRecordIsRefusedWithALine)
{
    VOICE_PARAM session = sessionParam({}, {0, 0, 800, 480});
    EXPECT_EQ(send(MEDIA_MSG_SESSION_START, 100, &session), 0);
    EXPECT_TRUE(hasSaid("message 0x70001 of 100 bytes is refused: the size is wrong"));
    session.rcRemote.width = 100000;
    EXPECT_EQ(send(MEDIA_MSG_SESSION_START, sizeof session, &session), 0);
    EXPECT_TRUE(hasSaid("message 0x70001 of 1564 bytes is refused: a rectangle is out of range"));
    EXPECT_EQ(send(MEDIA_MSG_SESSION_START, 0, nullptr), 0);
    EXPECT_TRUE(hasSaid("message 0x70001 of 0 bytes is refused"));
}

TEST_F(MediaServer, WithoutASessionNothingChanges)
{
    const VOICE_PARAM session = sessionParam({}, {0, 0, 800, 480});
    send(MEDIA_MSG_SESSION_CHANGE, sizeof session, &session);
    EXPECT_TRUE(hasSaid("message 0x7000d of 1564 bytes is refused: there is no session"));
    EXPECT_EQ(send(MEDIA_MSG_SESSION_STOP, 0, nullptr), 0);
}

TEST_F(MediaServer, OtherMessagesThatAreNoneAreRefusedWithALine)
{
    PLAYER_STREAMS streams = {};
    send(MEDIA_MSG_STREAMS, sizeof streams, &streams, PLAYER_PORTS(80, 0));
    EXPECT_TRUE(hasSaid("message 0x70020 of 460 bytes is refused: a port is out of range"));
    msgPostMsgToThread(media(), MEDIA_MSG_PICTURE_SIZE, 0x7FFFFFFF, 480);
    EXPECT_TRUE(hasSaid("message 0x70021 of 0 bytes is refused: the size is out of range"));
}

TEST_F(MediaServer, AStreamThatNothingDecodesCostsALineOnly)
{
    MOV_SDP sdp = {};
    strcpy(sdp.szVidName, "VP8");
    sdp.nVidPayload = 97;
    sdp.nVidRate = 90000;
    startSession(sdp, {0, 0, 800, 480});
    EXPECT_TRUE(hasSaid("the stream VP8 on port 35620 cannot be shown"));
    EXPECT_EQ(m_media.state(), QProcess::Running);
}

TEST_F(MediaServer, ASessionIsAnsweredAtOnce)
{
    MOV_SDP sdp = {};
    strcpy(sdp.szVidName, "H264");
    sdp.nVidPayload = 97;
    sdp.nVidRate = 90000;
    QElapsedTimer clock;
    clock.start();
    startSession(sdp, {0, 0, 800, 480});
    startSession(sdp, {0, 0, 800, 480});
    EXPECT_LT(clock.elapsed(), 300);
}

TEST(RtpDescription, TheRecordGivesTheStreamsBack)
{
    tagStream sound;
    sound.nPayload = 96;
    sound.name = "mpeg4-generic";
    sound.param = "96 mode=AAC-hbr;config=1210";
    sound.nRate = 44100;
    sound.nChannels = 2;
    tagStream picture;
    picture.nPayload = 97;
    picture.name = "H264";
    picture.param = "97 packetization-mode=1";
    picture.nRate = 90000;
    MOV_SDP sdp;
    rtpDescription::store(sound, picture, sdp);
    EXPECT_TRUE(rtpDescription::soundOf(sdp) == sound);
    EXPECT_TRUE(rtpDescription::pictureOf(sdp) == picture);
}

TEST(RtpDescription, ParametersThatAreTooLongLoseTheirLongestPart)
{
    tagStream picture;
    picture.nPayload = 97;
    picture.name = "H264";
    picture.param =
        "97 packetization-mode=1;sprop-parameter-sets=" + QByteArray(300, 'A') + ";profile-level-id=42C033";
    picture.nRate = 90000;
    MOV_SDP sdp;
    rtpDescription::store({}, picture, sdp);
    EXPECT_STREQ(sdp.szVidParam, "97 packetization-mode=1;profile-level-id=42C033");
    EXPECT_STREQ(sdp.szAudName, "");
}

TEST(RtpDescription, WhatHasNoNameOrRateHasNoCaps)
{
    EXPECT_EQ(rtpDescription::toCaps({}, true), nullptr);
    tagStream picture;
    picture.name = "H264";
    EXPECT_EQ(rtpDescription::toCaps(picture, true), nullptr);
}

} // namespace
