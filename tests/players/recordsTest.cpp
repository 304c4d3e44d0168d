// What the players accept of other processes.
#include "players/playList.h"
#include "players/playerRecords.h"
#include <cstring>
#include <functional>
#include <gtest/gtest.h>

namespace {

ADDR_PARAM goodPlay()
{
    ADDR_PARAM play = {};
    strcpy(play.szFile, "/rundata/film.mp4");
    strcpy(play.szLocalIP, "192.168.1.2");
    strcpy(play.szRemoteIP, "192.168.1.2");
    play.nLocalAudioPort = 35800;
    play.nRemoteAudioPort = 35600;
    play.nLocalVideoPort = 35820;
    play.nRemoteVideoPort = 35620;
    return play;
}

VOICE_PARAM goodSession()
{
    VOICE_PARAM session = {};
    strcpy(session.szLocalIP, "127.0.0.1");
    session.nAudRemotePort = 35600;
    session.nVidRemotePort = 35620;
    session.nAudRate = 44100;
    session.nVidRate = 90000;
    session.nChannels = 2;
    strcpy(session.szVidMime, "H264");
    session.rcRemote = {112, 0, 288, 200};
    return session;
}

const char* fault(const std::function<void(ADDR_PARAM&)>& change)
{
    ADDR_PARAM play = goodPlay();
    change(play);
    ADDR_PARAM read;
    return playerRecords::readPlay(&play, sizeof play, read);
}

const char* fault(const std::function<void(VOICE_PARAM&)>& change)
{
    VOICE_PARAM session = goodSession();
    change(session);
    VOICE_PARAM read;
    return playerRecords::readSession(&session, sizeof session, read);
}

const char* pathFault(const char* text, int size)
{
    QByteArray path;
    return playerRecords::readPath(text, size, path);
}

} // namespace

TEST(PlayerRecords, GoodRecordsAreCopiedOut)
{
    const ADDR_PARAM play = goodPlay();
    ADDR_PARAM playRead = {};
    EXPECT_EQ(playerRecords::readPlay(&play, sizeof play, playRead), nullptr);
    EXPECT_EQ(memcmp(&play, &playRead, sizeof play), 0);
    const VOICE_PARAM session = goodSession();
    VOICE_PARAM sessionRead = {};
    EXPECT_EQ(playerRecords::readSession(&session, sizeof session, sessionRead), nullptr);
    EXPECT_EQ(memcmp(&session, &sessionRead, sizeof session), 0);
}

TEST(PlayerRecords, AnotherSizeIsRefused)
{
    ADDR_PARAM play = goodPlay();
    VOICE_PARAM session = goodSession();
    PLAYER_STREAMS streams = {};
    EXPECT_STREQ(playerRecords::readPlay(&play, sizeof play - 1, play), "the size is wrong");
    EXPECT_STREQ(playerRecords::readPlay(nullptr, sizeof play, play), "the size is wrong");
    EXPECT_STREQ(playerRecords::readSession(&session, sizeof session + 1, session), "the size is wrong");
    EXPECT_STREQ(playerRecords::readStreams(&streams, sizeof streams - 1, streams), "the size is wrong");
    EXPECT_EQ(playerRecords::readStreams(&streams, sizeof streams, streams), nullptr);
}

TEST(PlayerRecords, ATextThatDoesNotEndIsRefused)
{
    EXPECT_STREQ(fault([](ADDR_PARAM& play) { memset(play.szFile, '/', sizeof play.szFile); }),
                 "the path is no device path");
    EXPECT_STREQ(fault([](ADDR_PARAM& play) { memset(play.szRemoteIP, '1', sizeof play.szRemoteIP); }),
                 "an address is none");
    EXPECT_STREQ(fault([](VOICE_PARAM& session) { memset(session.szVidSdpParam, 'x', 256); }),
                 "a text does not end");
    EXPECT_STREQ(fault([](VOICE_PARAM& session) { memset(session.vidDec.szName, 'x', 24); }),
                 "a codec is none");
    PLAYER_STREAMS streams = {};
    memset(streams.sdp.szVidParam, 'x', sizeof streams.sdp.szVidParam);
    EXPECT_STREQ(playerRecords::readStreams(&streams, sizeof streams, streams), "a text does not end");
}

TEST(PlayerRecords, StreamsThatNobodyCanSendOrTurnAreRefused)
{
    PLAYER_STREAMS good = {};
    good.nSoundFrom = 40000;
    good.nPictureFrom = 40001;
    good.nQuarterTurns = 7;
    PLAYER_STREAMS read = {};
    EXPECT_EQ(playerRecords::readStreams(&good, sizeof good, read), nullptr);
    EXPECT_EQ(memcmp(&good, &read, sizeof good), 0);
    PLAYER_STREAMS bad = good;
    bad.nQuarterTurns = 8;
    EXPECT_STREQ(playerRecords::readStreams(&bad, sizeof bad, read), "a number is out of range");
    bad = good;
    bad.nPictureFrom = 53;
    EXPECT_STREQ(playerRecords::readStreams(&bad, sizeof bad, read), "a port is out of range");
}

TEST(PlayerRecords, ControlCharactersAreNoText)
{
    EXPECT_STREQ(fault([](ADDR_PARAM& play) { strcpy(play.szFile, "/a\nb"); }), "the path is no device path");
    EXPECT_STREQ(fault([](VOICE_PARAM& session) { strcpy(session.szVidMime, "H2\x1b"); }),
                 "a text does not end");
}

TEST(PlayerRecords, OnlyDevicePathsArePlayed)
{
    EXPECT_STREQ(fault([](ADDR_PARAM& play) { strcpy(play.szFile, "film.mp4"); }),
                 "the path is no device path");
    EXPECT_STREQ(fault([](ADDR_PARAM& play) { play.szFile[0] = 0; }), "the path is no device path");
    EXPECT_EQ(pathFault("/a", 3), nullptr);
    EXPECT_STREQ(pathFault("/a", 2), "the path is no text");
    EXPECT_STREQ(pathFault("/a\0b", 5), "the path is no text");
    EXPECT_STREQ(pathFault("", 1), "the path is no text");
    EXPECT_STREQ(pathFault(nullptr, 0), "the path is no text");
    EXPECT_STREQ(pathFault("ab", 3), "the path is no device path");
    const QByteArray longest = '/' + QByteArray(playerRecords::MAX_PATH - 1, 'a');
    EXPECT_EQ(pathFault(longest.constData(), int(longest.size()) + 1), nullptr);
    const QByteArray longer = longest + 'a';
    EXPECT_STREQ(pathFault(longer.constData(), int(longer.size()) + 1), "the path is no text");
}

TEST(PlayerRecords, AddressesAreDottedOrNone)
{
    EXPECT_EQ(fault([](ADDR_PARAM& play) { play.szRemoteIP[0] = 0; }), nullptr);
    EXPECT_STREQ(fault([](ADDR_PARAM& play) { strcpy(play.szRemoteIP, "phone"); }), "an address is none");
    EXPECT_STREQ(fault([](ADDR_PARAM& play) { strcpy(play.szLocalIP, "1.2.3.400"); }), "an address is none");
    EXPECT_STREQ(fault([](VOICE_PARAM& session) { strcpy(session.szVidRemoteIP, "::1"); }),
                 "an address is none");
}

TEST(PlayerRecords, PortsOfTheSystemAndSharedPortsAreRefused)
{
    EXPECT_STREQ(fault([](ADDR_PARAM& play) { play.nRemoteAudioPort = 1023; }), "a port is out of range");
    EXPECT_EQ(fault([](ADDR_PARAM& play) { play.nRemoteAudioPort = 1024; }), nullptr);
    EXPECT_STREQ(fault([](ADDR_PARAM& play) { play.nRemoteAudioPort = 35620; }), "a port is out of range");
    EXPECT_STREQ(fault([](VOICE_PARAM& session) { session.nVidRemotePort = 80; }), "a port is out of range");
    EXPECT_EQ(fault([](ADDR_PARAM& play) { play.nRemoteAudioPort = 0; }), nullptr) << "only the picture";
    EXPECT_STREQ(fault([](ADDR_PARAM& play) { play.nRemoteAudioPort = play.nRemoteVideoPort = 0; }),
                 "no stream has a port");
    uint16_t audio = 0;
    uint16_t video = 0;
    EXPECT_EQ(playerRecords::readPorts(PLAYER_PORTS(35600, 35620), audio, video), nullptr);
    EXPECT_EQ(audio, 35600);
    EXPECT_EQ(video, 35620);
    EXPECT_STREQ(playerRecords::readPorts(PLAYER_PORTS(22, 35620), audio, video), "a port is out of range");
}

TEST(PlayerRecords, HugeRectanglesAreRefused)
{
    EXPECT_EQ(fault([](VOICE_PARAM& session) { session.rcRemote = {0, 0, 1280, 800}; }), nullptr);
    EXPECT_EQ(fault([](VOICE_PARAM& session) { session.rcRemote = {}; }), nullptr);
    for (const MEDIA_RECT& rect :
         {MEDIA_RECT{0, 0, 1281, 480}, MEDIA_RECT{0, 0, 800, 801}, MEDIA_RECT{0, 0, -1, 10},
          MEDIA_RECT{1281, 0, 10, 10}, MEDIA_RECT{0, -801, 10, 10},
          MEDIA_RECT{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}})
        EXPECT_STREQ(fault([&](VOICE_PARAM& session) { session.rcRemote = rect; }),
                     "a rectangle is out of range");
}

TEST(PlayerRecords, NumbersHaveTheirRange)
{
    EXPECT_STREQ(fault([](VOICE_PARAM& session) { session.nChannels = 9; }), "a number is out of range");
    EXPECT_STREQ(fault([](VOICE_PARAM& session) { session.nAudRate = -1; }), "a number is out of range");
    EXPECT_STREQ(fault([](VOICE_PARAM& session) { session.nVidRate = 1000001; }), "a number is out of range");
    EXPECT_STREQ(fault([](VOICE_PARAM& session) { session.vidDec.nPayload = 128; }), "a codec is none");
}

TEST(PlayList, GoesRoundBothWays)
{
    playList list;
    EXPECT_EQ(list.present(), "");
    list.toNext();
    list.toPrevious();
    for (const char* path : {"/a", "/b", "/c"})
        EXPECT_TRUE(list.add(path));
    EXPECT_EQ(list.present(), "/a");
    list.toPrevious();
    EXPECT_EQ(list.present(), "/c");
    list.toNext();
    list.toNext();
    EXPECT_EQ(list.present(), "/b");
    list.toFirst();
    EXPECT_EQ(list.present(), "/a");
    list.clear();
    EXPECT_TRUE(list.isEmpty());
}

TEST(PlayList, HasAnEnd)
{
    playList list;
    for (int i = 0; i < playList::MAX_FILES; ++i)
        ASSERT_TRUE(list.add("/a"));
    EXPECT_FALSE(list.add("/b"));
    EXPECT_EQ(list.size(), playList::MAX_FILES);
}
