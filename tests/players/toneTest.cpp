// The phone's tones: what is played is heard, as loud as it is set, until it is stopped.
#include "host/services/players/filmSound.h"
#include "host/services/players/playerSound.h"
#include "host/services/players/soundOutput.h"
#include "host/services/players/speaker.h"
#include "support/host/phone.h"
#include "tests/kit/plain/recordedSound.h"
#include "tests/players/films.h"
#include "tests/players/playersTest.h"
#include <QFile>
#include <cmath>

namespace {

constexpr int kRate = 16000;

class Tones : public playersTest
{
protected:
    Tones()
    {
        qputenv("HX_SOUND_SINK", kit::recordingSink(hostPath("/rundata/sound.raw")));
        filmSound::start();
        soundOutput::setInstance(std::make_unique<playerSound>());
        dev_set_output_volume(100);
        dev_set_output_mute(0);
    }
    ~Tones() override
    {
        soundOutput::setInstance(nullptr);
        qunsetenv("HX_SOUND_SINK");
    }
    kit::RecordedSound heard() const { return kit::RecordedSound(hostPath("/rundata/sound.raw")); }
    void writeTone(const char* name, double hertz, double seconds)
    {
        writeFile(name, kit::waveFile(hertz, seconds, kRate));
    }
    bool isHeard(double hertz, int ms = 8000)
    {
        return kit::waitUntil([&] { return heard().last(0.25, kRate).has(hertz); }, ms);
    }
    bool isSilent()
    {
        kit::StillSound sound(hostPath("/rundata/sound.raw"));
        return kit::waitUntil([&] { return sound.isStill(); }, 8000);
    }
};

TEST_F(Tones, ARingToneIsHeardAsItIsInItsFile)
{
    startMedia();
    writeTone("/rundata/a.wav", 440, 3);
    EXPECT_EQ(phone_PlayRing("/rundata/a.wav", 1), 1);
    ASSERT_TRUE(isHeard(440));
    EXPECT_FALSE(heard().last(0.25, kRate).has(660));
    EXPECT_NEAR(heard().last(0.25, kRate).peak(), 0.8, 0.05);
}

TEST_F(Tones, AnotherOneTakesItsPlace)
{
    startMedia();
    writeTone("/rundata/a.wav", 440, 3);
    writeTone("/rundata/b.wav", 660, 3);
    phone_PlayRing("/rundata/a.wav", 1);
    ASSERT_TRUE(isHeard(440));
    phone_PlayRing("/rundata/b.wav", 1);
    ASSERT_TRUE(isHeard(660));
    EXPECT_TRUE(kit::waitUntil([&] { return !heard().last(0.25, kRate).has(440); }));
}

TEST_F(Tones, AVolumeIsHeardWhileItPlays)
{
    startMedia();
    writeTone("/rundata/a.wav", 440, 3);
    phone_PlayRing("/rundata/a.wav", 1);
    ASSERT_TRUE(isHeard(440));
    const qint64 before = heard().size();
    dev_set_output_volume(50);
    EXPECT_TRUE(kit::waitUntil([&] { return std::fabs(heard().last(0.25, kRate).peak() - 0.1) < 0.01; }))
        << "an eighth is what people hear as the half";
    EXPECT_GT(heard().size(), before) << "it was not begun anew";
    dev_set_output_mute(1);
    EXPECT_TRUE(kit::waitUntil([&] { return heard().last(0.25, kRate).peak() == 0; }));
    dev_set_output_mute(0);
    EXPECT_TRUE(isHeard(440));
}

TEST_F(Tones, AShortOneGoesRoundAndRoundWithoutAGap)
{
    startMedia();
    writeTone("/rundata/a.wav", 500, 0.3); // whole waves
    phone_PlayRing("/rundata/a.wav", 1);
    ASSERT_TRUE(kit::waitUntil([&] { return heard().seconds(kRate) > 1.2; }, 8000));
    const kit::RecordedSound turns = heard().from(0.05, 1.1, kRate);
    EXPECT_TRUE(turns.has(500));
    EXPECT_LT(turns.longestQuiet(), kRate / 100);
}

TEST_F(Tones, OneThatIsPlayedOnceEnds)
{
    startMedia();
    writeTone("/rundata/a.wav", 440, 0.3);
    phone_PlayRing("/rundata/a.wav", 0);
    ASSERT_TRUE(kit::waitUntil([&] { return heard().size() > 0; }, 8000));
    EXPECT_TRUE(isSilent());
    EXPECT_NEAR(heard().seconds(kRate), 0.3, 0.05);
}

TEST_F(Tones, StoppedIsSilent)
{
    startMedia();
    writeTone("/rundata/a.wav", 440, 3);
    phone_PlayRing("/rundata/a.wav", 1);
    ASSERT_TRUE(isHeard(440));
    phone_StopRing(0);
    EXPECT_TRUE(isSilent());
}

TEST_F(Tones, TheFactorysTonesAreHeard)
{
    startMedia();
    for (const char* tone : {"Classic", "Chime", "Marimba"}) {
        QFile::remove(hostPath("/rundata/sound.raw"));
        const QByteArray file = QByteArray("/phone/resource/sysdata/ring/") + tone + ".wav";
        EXPECT_EQ(phone_PlayRing(file, 1), 1) << tone;
        EXPECT_TRUE(kit::waitUntil([&] { return heard().peak() > 0.3; }, 8000)) << tone;
        phone_StopRing(0);
    }
}

TEST_F(Tones, AnMp3IsHeard)
{
    startMedia();
    makeFilm(hostPath("/rundata/a.mp3"),
             "%1 ! fakesink audiotestsrc num-buffers=130 freq=440 ! audio/x-raw,rate=44100,channels=1 ! "
             "audioconvert ! lamemp3enc ! filesink name=out",
             {});
    phone_PlayRing("/rundata/a.mp3", 1);
    EXPECT_TRUE(kit::waitUntil([&] { return heard().last(0.25, 44100).has(440); }, 8000));
}

TEST_F(Tones, AKeyIsHeardAsItsTwoSounds)
{
    startMedia();
    phone_PlayDTMF('A');
    ASSERT_TRUE(kit::waitUntil([&] { return heard().seconds(kRate) > 0.17; }, 8000));
    const kit::RecordedSound tone = heard().from(0.02, 0.14, kRate);
    EXPECT_TRUE(tone.has(697));
    EXPECT_TRUE(tone.has(1633));
    EXPECT_FALSE(tone.has(1209));
    EXPECT_NEAR(tone.peak(), 0.8, 0.1);
    EXPECT_TRUE(isSilent());
    EXPECT_NEAR(heard().seconds(kRate), 0.18, 0.01);
}

TEST_F(Tones, AKeyThatIsNoneIsRefusedWithALine)
{
    startMedia();
    phone_PlayDTMF('x');
    EXPECT_TRUE(hasSaid("message 0x70026 of 0 bytes is refused: there is no such key"));
}

TEST_F(Tones, APathThatIsNoneIsRefusedWithALine)
{
    startMedia();
    msgPostMsgToThreadEx(media(), MEDIA_MSG_TONE_PLAY, 1, 1, 5, "a.wav");
    EXPECT_TRUE(hasSaid("message 0x70024 of 5 bytes is refused"));
}

TEST_F(Tones, AServerThatWasStartedAnewGoesOn)
{
    startMedia();
    writeTone("/rundata/a.wav", 440, 3);
    phone_PlayRing("/rundata/a.wav", 1);
    ASSERT_TRUE(isHeard(440));
    dev_set_output_volume(50);
    m_media.kill();
    m_media.waitForFinished();
    QFile::remove(hostPath("/rundata/sound.raw"));
    startMedia();
    ASSERT_TRUE(isHeard(440));
    EXPECT_NEAR(heard().last(0.25, kRate).peak(), 0.1, 0.01);
}

TEST_F(Tones, ACallRingsWithTheNextToneWhenOneCannotBePlayed)
{
    startMedia();
    writeFile("/rundata/bad.wav", "no sound at all, but a file");
    writeTone("/rundata/a.wav", 440, 3);
    speaker::instance().ringForCall({"/rundata/none.wav", "/rundata/bad.wav", "/rundata/a.wav"});
    EXPECT_TRUE(isHeard(440));
    speaker::instance().endCallRing();
    EXPECT_TRUE(isSilent());
}

TEST_F(Tones, AFileOfNoSoundAtAllKeepsNobodyBusy)
{
    startMedia();
    writeTone("/rundata/a.wav", 440, 0.001);
    phone_PlayRing("/rundata/a.wav", 1);
    EXPECT_TRUE(isSilent());
    EXPECT_LT(heard().seconds(kRate), 0.5);
}

TEST_F(Tones, SoundBesideAFilm)
{
    startBoth();
    writeTone("/rundata/a.wav", 440, 3);
    phone_PlayRing("/rundata/a.wav", 1);
    ASSERT_TRUE(isHeard(440));
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 100});
    const MOV_SDP sdp = ask("/rundata/film.mp4");
    play("/rundata/film.mp4");
    startSession(sdp, {0, 0, 800, 480});
    EXPECT_TRUE(kit::waitUntil([&] { return finished() == 1; }, 15000)) << "the film plays to its end";
}

} // namespace
