#pragma once
// What the tests of the signage video share: the players' side, and a file that plays.
#include "host/services/messages/messageBus.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "host/services/system/netWorld.h"
#include "signage/nDeckVideoManager.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "tests/media/fakePlayer.h"
#include "tests/media/mediaTest.h"
#include <arpa/inet.h>
#include <atomic>
#include <memory>

inline constexpr int kSettleMs = 500;
inline constexpr int kSession = 7; // of a call

inline constexpr char kFile[] = "/rundata/nDeck/a.mp4";
inline constexpr char kOther[] = "/rundata/nDeck/b.mp4";

template <class RECORD>
QByteArray bytesOf(const RECORD& record)
{
    return QByteArray(reinterpret_cast<const char*>(&record), sizeof record);
}

template <class RECORD>
RECORD recordOf(const tagTold& told)
{
    RECORD record = {};
    EXPECT_EQ(told.extra.size(), int(sizeof record));
    memcpy(&record, told.extra.constData(), std::min(sizeof record, size_t(told.extra.size())));
    return record;
}

inline MOV_SDP fileSDP(const char* audio = "MP4A-LATM", const char* video = "h264")
{
    MOV_SDP sdp = {};
    sdp.nAudPayload = 101;
    qstrncpy(sdp.szAudName, audio, sizeof sdp.szAudName);
    qstrncpy(sdp.szAudParam, "101 config=1190", sizeof sdp.szAudParam);
    sdp.nAudRate = 48000;
    sdp.nChannels = 1;
    sdp.nVidPayload = 102;
    qstrncpy(sdp.szVidName, video, sizeof sdp.szVidName);
    qstrncpy(sdp.szVidParam, "102 packetization-mode=1", sizeof sdp.szVidParam);
    sdp.nVidRate = 90000;
    return sdp;
}

class SignageVideo : public MediaTest
{
protected:
    SignageVideo()
    {
        EXPECT_EQ(messageServiceStart("app_hxPhone"), 1);
        enable(1);
        in_addr own = {};
        EXPECT_EQ(inet_pton(AF_INET, "192.168.1.20", &own), 1);
        netWorld().address = own;
        writeFile(kFile, "film");
        writeFile(kOther, "film");
        setCalls(0, 0);
        dev_set_output_mute(0);
    }
    ~SignageVideo() override
    {
        netWorld() = tagNetWorld();
        messageServiceStop();
    }
    static void enable(int on) { setKey("bEnable", on); }
    static void setKey(const char* key, int value)
    {
        nuxSetRegistryInt("/rundata/config/system.ini", "nDeck", key, value);
    }
    static void setCalls(int total, int talk)
    {
        auto* simulation = dynamic_cast<phoneSimulation*>(&phoneService::instance().backend());
        ASSERT_NE(simulation, nullptr);
        simulation->setCalls(total, talk);
    }
    void startPlayers(const QByteArray& sdp = bytesOf(fileSDP()))
    {
        movie = std::make_unique<FakePlayer>("app_hxMovie", [sdp](const tagTold&) { return sdp; });
        media = std::make_unique<FakePlayer>("app_hxMedia", [this](const tagTold&) {
            muteAtMedia = dev_get_output_mute(); // the phone waits meanwhile
            return QByteArray();
        });
        forgetAll(); // the phone waits for answers, not for threads and connections that begin
    }
    static nDeckVideoManager& manager() { return GetNDeckVideoManager(); }
    static chRect region() { return chRect(96, 10, 400, 250); }
    void prepare()
    {
        EXPECT_TRUE(manager().SetPlayFile(kFile));
        EXPECT_TRUE(manager().SetPlayRegion(region()));
        forgetAll();
    }
    // Also what is still under way to the movie player.
    void forgetAll()
    {
        movieMessages();
        movie->forget();
        media->forget();
    }
    void start()
    {
        manager().StartPlayVideo();
        kit::stepTime(kSettleMs);
    }
    void play()
    {
        startPlayers();
        prepare();
        start();
        EXPECT_TRUE(manager().IsMoviePlaying());
        EXPECT_TRUE(movie->hears(1));
        EXPECT_TRUE(media->hears(1));
        forgetAll();
    }
    // What the movie player was told up to now: a last message comes behind all others.
    QList<unsigned> movieMessages()
    {
        const int before = int(movie->told().size());
        msgPostMsgToThread(msgGetThreadByName("app_hxMovie"), kLast, 0, 0);
        EXPECT_TRUE(kit::waitUntil([&] { return movie->messages().mid(before).contains(kLast); }));
        QList<unsigned> all = movie->messages();
        all.removeAll(kLast);
        return all;
    }
    static constexpr unsigned kLast = 0x5555;
    static constexpr unsigned kPhone = PLAYER_THREAD_PHONE;

    std::unique_ptr<FakePlayer> movie;
    std::unique_ptr<FakePlayer> media;
    std::atomic<int> muteAtMedia{-1};
};
