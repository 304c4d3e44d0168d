// The sound of films: as loud as the phone is set, while it plays and from its beginning.
#include "host/services/players/filmSound.h"
#include "players/loopback.h"
#include "support/host/phone.h"
#include "tests/players/films.h"
#include "tests/players/playersTest.h"
#include <QFile>
#include <QUdpSocket>
#include <algorithm>
#include <arpa/inet.h>
#include <cmath>
#include <cstring>

namespace {

constexpr int kSecond = 44100 * 2; // samples of both channels
constexpr float kLoudest = 0.5f;   // the least that the test tone reaches

class FilmSound : public playersTest
{
protected:
    FilmSound() { filmSound::start(); }
    ~FilmSound() override
    {
        qunsetenv("HX_SOUND_SINK");
        dev_set_output_mute(0);
    }
    // What the loudspeaker gets, as a file of floats.
    void startWithLoudspeaker()
    {
        qputenv("HX_SOUND_SINK",
                "filesink async=false sync=false location=" + hostPath("/rundata/sound.raw").toUtf8());
        startBoth();
    }
    void startFilm(int frames = 100)
    {
        makeH264(hostPath("/rundata/film.mp4"), {{RED}, frames});
        playInSession();
    }
    void playInSession()
    {
        const MOV_SDP sdp = ask("/rundata/film.mp4");
        play("/rundata/film.mp4");
        startSession(sdp, {0, 0, 800, 480});
    }
    QList<float> samples() const
    {
        QFile file(hostPath("/rundata/sound.raw"));
        QList<float> all;
        if (file.open(QIODevice::ReadOnly)) {
            all.resize(file.size() / qint64(sizeof(float)));
            file.read(reinterpret_cast<char*>(all.data()), all.size() * qint64(sizeof(float)));
        }
        return all;
    }
    // The loudest of the samples from number first on; -1 when there are not enough of them.
    float peak(qsizetype first, qsizetype count) const
    {
        const QList<float> all = samples();
        if (all.size() < first + count)
            return -1;
        float most = 0;
        for (qsizetype i = first; i < first + count; ++i)
            most = std::max(most, std::fabs(all[i]));
        return most;
    }
    // Waits for it; the coder's own beginning is left out.
    float peakOfBeginning()
    {
        EXPECT_TRUE(kit::waitUntil([&] { return samples().size() > kSecond; }));
        return peak(kSecond / 4, kSecond / 2);
    }
    float lastPeak() const
    {
        return peak(std::max<qsizetype>(0, samples().size() - kSecond / 8), kSecond / 8);
    }
    // The largest step from a sample to the next of its channel.
    float largestStep() const
    {
        const QList<float> all = samples();
        float most = 0;
        for (qsizetype i = kSecond / 4; i + 2 < all.size(); ++i)
            most = std::max(most, std::fabs(all[i + 2] - all[i]));
        return most;
    }
};

TEST_F(FilmSound, ABeginningFilmIsAsLoudAsThePhoneIsSet)
{
    dev_set_output_volume(100);
    startWithLoudspeaker();
    startFilm();
    const float loudest = peakOfBeginning();
    EXPECT_GT(loudest, kLoudest);
    EXPECT_LE(loudest, 1.1f);
    dev_set_output_volume(50);
    EXPECT_TRUE(kit::waitUntil([&] { return lastPeak() < loudest / 4; }));
    msgSendMsgToThread(media(), MEDIA_MSG_SESSION_STOP, 7, 0);
    playInSession();
    EXPECT_TRUE(kit::waitUntil([&] { return samples().size() < kSecond / 2; })) << "a file anew";
    EXPECT_NEAR(peakOfBeginning(), loudest / 8, loudest / 40) << "an eighth is what people hear as the half";
}

TEST_F(FilmSound, AChangeIsHeardInTheMiddleOfTheFilmWithoutAClick)
{
    dev_set_output_volume(100);
    startWithLoudspeaker();
    startFilm();
    EXPECT_GT(peakOfBeginning(), kLoudest);
    dev_set_output_volume(0);
    EXPECT_TRUE(kit::waitUntil([&] { return lastPeak() == 0; }));
    const qsizetype before = samples().size();
    EXPECT_GT(before, kSecond) << "the stream was not begun anew";
    dev_set_output_volume(100);
    EXPECT_TRUE(kit::waitUntil([&] { return lastPeak() > kLoudest; }));
    EXPECT_LT(largestStep(), 0.1f);
}

TEST_F(FilmSound, AMuteWhileAFilmPlaysSilencesItUntilItIsTakenBack)
{
    dev_set_output_volume(100);
    startWithLoudspeaker();
    startFilm();
    EXPECT_GT(peakOfBeginning(), kLoudest);
    dev_set_output_mute(1);
    EXPECT_TRUE(kit::waitUntil([&] { return lastPeak() == 0; }));
    dev_set_output_mute(0);
    EXPECT_TRUE(kit::waitUntil([&] { return lastPeak() > kLoudest; }));
}

TEST_F(FilmSound, AFilmBeginsAloudThoughThePhoneMutesItsOutputForIt)
{
    dev_set_output_volume(100);
    startWithLoudspeaker();
    dev_set_output_mute(1);
    startFilm();
    EXPECT_GT(peakOfBeginning(), kLoudest);
    dev_set_output_volume(99); // says nothing about the mute
    EXPECT_GT(lastPeak(), kLoudest);
}

TEST_F(FilmSound, AServerThatWasStartedAnewIsToldTheVolume)
{
    dev_set_output_volume(100);
    startWithLoudspeaker();
    dev_set_output_volume(0);
    m_media.kill();
    m_media.waitForFinished();
    startMedia();
    startFilm();
    EXPECT_EQ(peakOfBeginning(), 0);
}

TEST_F(FilmSound, AVolumeOutOfRangeIsRefusedWithALine)
{
    startMedia();
    msgPostMsgToThread(media(), MEDIA_MSG_VOLUME, 101, 0);
    EXPECT_TRUE(hasSaid("message 0x70022 of 0 bytes is refused: the volume is out of range"));
}

// Bytes that wait at a port of this device root and that nobody reads; -1 when nobody has the port.
int waitingAt(int port)
{
    QFile file("/proc/net/udp");
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray place =
        QByteArray::number(inet_addr(loopbackAddress().constData()), 16).rightJustified(8, '0') + ':' +
        QByteArray::number(port, 16);
    for (const QByteArray& line : file.readAll().split('\n')) {
        const QList<QByteArray> words = line.simplified().split(' ');
        if (words.size() > 4 && words[1] == place.toUpper())
            return words[4].split(':').last().toInt(nullptr, 16);
    }
    return -1;
}

TEST_F(FilmSound, WithoutALoudspeakerThePortIsHeldAndNothingIsDone)
{
    qputenv("HX_SOUND_SINK", "fakesink");
    startBoth();
    EXPECT_EQ(waitingAt(PLAYER_AUDIO_PORT), -1);
    startFilm();
    EXPECT_TRUE(kit::waitUntil([&] { return waitingAt(PLAYER_AUDIO_PORT) > 0; }));
    EXPECT_TRUE(kit::waitUntil([&] { return finished() == 1; }, 8000));
    EXPECT_GT(waitingAt(PLAYER_AUDIO_PORT), 0);
}

TEST_F(FilmSound, AMissingSoundDeviceCostsOneLine)
{
    startBoth();
    startFilm(10);
    EXPECT_TRUE(kit::waitUntil([&] { return finished() == 1; }));
    msgSendMsgToThread(media(), MEDIA_MSG_SESSION_STOP, 7, 0);
    playInSession();
    EXPECT_TRUE(kit::waitUntil([&] { return finished() == 2; }));
    EXPECT_LE(said().count("no sound device is found"), 1);
    EXPECT_FALSE(said().contains("ALSA lib")) << said().constData();
    EXPECT_FALSE(said().contains("AL lib"));
}

} // namespace
