// Every picture of a film comes, in its order and at its time. The pictures bear numbers.
#include "host/services/players/videoFrames.h"
#include "tests/players/films.h"
#include "tests/players/playersTest.h"
#include <algorithm>

namespace {

constexpr QSize kSize(320, 240);
constexpr char kAvi[] = "avimux name=m ! filesink name=out %1 ! ";
constexpr char kMp4[] = "mp4mux name=m ! filesink name=out %1 ! ";
constexpr char kMpeg4[] = "avenc_mpeg4 bitrate=800000 ";
constexpr char kH264[] = "x264enc key-int-max=25 speed-preset=veryfast ";
constexpr char kBare[] = "! h264parse ! video/x-h264,stream-format=byte-stream ! ";

struct tagSeen
{
    int nNumber;
    int nPlace; // among the pictures of the media server, from 0
    qint64 nMs;
};

class EveryPicture : public playersTest
{
protected:
    EveryPicture()
    {
        m_clock.start();
        QObject::connect(&videoFrames::instance(), &videoFrames::changed, &m_context, [this] { look(); });
    }
    void playNumbered(const QByteArray& path)
    {
        expectNoPicture();
        seen.clear();
        playIn(path, kSize);
    }
    // Until the end is told and the last picture is there.
    void playWhole(const QByteArray& path, int last, int ms = 8000)
    {
        playNumbered(path);
        EXPECT_TRUE(kit::waitUntil([&] { return finished() == 1; }, ms));
        EXPECT_TRUE(kit::waitUntil([&] { return !seen.isEmpty() && seen.last().nNumber == last; }, 2000))
            << (seen.isEmpty() ? -2 : seen.last().nNumber);
    }
    // None was lost or put out of order on the way to the phone, which may itself skip some.
    void expectAll(int first, int count) const
    {
        ASSERT_FALSE(seen.isEmpty());
        EXPECT_GE(seen.size(), count / 2);
        for (const tagSeen& one : seen)
            EXPECT_EQ(one.nNumber, first + one.nPlace);
        EXPECT_EQ(seen.last().nPlace, count - 1);
    }
    // A picture lasts as long as the next: of three that come at once, two have no time.
    void expectEvenPace(qint64 frameMs) const
    {
        ASSERT_FALSE(seen.isEmpty());
        int hasty = 0;
        for (qsizetype i = 1; i < seen.size(); ++i) {
            hasty += seen[i].nMs - seen[i - 1].nMs < frameMs / 3 * (seen[i].nPlace - seen[i - 1].nPlace);
        }
        EXPECT_LE(hasty, seen.size() / 4) << "of " << seen.size();
        const qint64 ideal = frameMs * (seen.last().nPlace - seen.first().nPlace);
        EXPECT_NEAR(double(seen.last().nMs - seen.first().nMs), double(ideal), double(ideal) / 5);
    }

    QList<tagSeen> seen;

private:
    void look()
    {
        tagVideoPicture picture;
        if (!videoFrames::instance().next(picture))
            return;
        const QImage image(picture.pPixels, picture.nWidth, picture.nHeight, picture.nWidth * 4,
                           QImage::Format_RGB32);
        if (seen.isEmpty() || seen.last().nPlace != int(picture.nFrame) - 1)
            seen.append({numberIn(image), int(picture.nFrame) - 1, m_clock.elapsed()});
        videoFrames::instance().painted(picture);
    }
    QObject m_context;
    QElapsedTimer m_clock;
};

QString withTimes(const QString& coder)
{
    return coder + "! identity name=stamp ! ";
}

} // namespace

TEST_F(EveryPicture, OfMpeg4InMp4IsShownAtItsTime)
{
    makeNumberedFilm(hostPath("/rundata/film.mp4"), kMp4 + withTimes(kMpeg4) + "m.");
    playWhole("/rundata/film.mp4", 49);
    expectAll(0, 50);
    expectEvenPace(40);
}

TEST_F(EveryPicture, OfMpeg4InAviIsShownAtItsTime)
{
    makeNumberedFilm(hostPath("/rundata/film.avi"), QString(kAvi) + kMpeg4 + "! m.");
    playWhole("/rundata/film.avi", 49);
    expectAll(0, 50);
    expectEvenPace(40);
}

TEST_F(EveryPicture, OfMpeg4ThatRefersForwardIsShownAtItsTime)
{
    makeNumberedFilm(hostPath("/rundata/film.avi"), QString(kAvi) + kMpeg4 + "max-bframes=2 ! m.");
    playWhole("/rundata/film.avi", 49);
    expectAll(0, 50);
    expectEvenPace(40);
}

TEST_F(EveryPicture, OfAFilmThatPlaysAgainIsShownAgain)
{
    makeNumberedFilm(hostPath("/rundata/film.avi"), QString(kAvi) + kMpeg4 + "max-bframes=2 ! m.");
    playWhole("/rundata/film.avi", 49);
    seen.clear();
    play("/rundata/film.avi");
    EXPECT_TRUE(kit::waitUntil([&] { return finished() == 2; }));
    EXPECT_TRUE(kit::waitUntil([&] { return !seen.isEmpty() && seen.last().nNumber == 49; }));
    expectAll(-50, 100);
    expectEvenPace(40);
}

TEST_F(EveryPicture, OfH263IsShownAtItsTime)
{
    makeNumberedFilm(hostPath("/rundata/film.avi"), QString(kAvi) + "avenc_h263 bitrate=800000 ! m.",
                     {50, QSize(352, 288)});
    playWhole("/rundata/film.avi", 49);
    expectAll(0, 50);
    expectEvenPace(40);
}

TEST_F(EveryPicture, OfH264InMp4IsShownAtItsTime)
{
    makeNumberedFilm(hostPath("/rundata/film.mp4"), QString(kMp4) + kH264 + "bframes=3 ! h264parse ! m.");
    playWhole("/rundata/film.mp4", 49);
    expectAll(0, 50);
    expectEvenPace(40);
}

TEST_F(EveryPicture, OfH264InAviIsShownAtAnEvenPace)
{
    makeNumberedFilm(hostPath("/rundata/film.avi"), QString(kAvi) + kH264 + "bframes=0 " + kBare + "m.");
    playWhole("/rundata/film.avi", 49);
    expectAll(0, 50);
    expectEvenPace(40);
}

TEST_F(EveryPicture, OfH264InAviThatRefersForwardIsShownAtAnEvenPace)
{
    makeNumberedFilm(hostPath("/rundata/film.avi"), QString(kAvi) + kH264 + "bframes=3 " + kBare + "m.");
    playWhole("/rundata/film.avi", 49);
    expectAll(0, 50);
    expectEvenPace(40);
}

TEST_F(EveryPicture, OfABareH264StreamIsShownAtAnEvenPace)
{
    makeNumberedFilm(hostPath("/rundata/film.h264"), QString("identity name=m ! filesink name=out %1 ! ") +
                                                         kH264 + "bframes=3 " + kBare + "m.");
    playWhole("/rundata/film.h264", 49);
    expectAll(0, 50);
    expectEvenPace(40);
}

TEST_F(EveryPicture, OfASlowFilmComesAtItsTime)
{
    tagNumbered slow;
    slow.nFrames = 5;
    slow.nRate = 1;
    slow.nSeconds = 2;
    makeNumberedFilm(hostPath("/rundata/film.mp4"), QString(kMp4) + kH264 + "bframes=3 ! h264parse ! m.",
                     slow);
    QElapsedTimer clock;
    playNumbered("/rundata/film.mp4");
    clock.start();
    EXPECT_TRUE(kit::waitUntil([&] { return !seen.isEmpty(); }, 1500));
    EXPECT_TRUE(kit::waitUntil([&] { return seen.last().nNumber == 4; }, 15000));
    expectAll(0, 5);
    for (qsizetype i = 1; i < seen.size(); ++i) {
        EXPECT_NEAR(double(seen[i].nMs - seen[i - 1].nMs), 2000, 500);
    }
}
