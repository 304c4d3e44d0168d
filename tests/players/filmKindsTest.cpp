// Films as other makers write them: cut, turned, with sound of any kind, of codecs that nobody knows, and
// files that are none.
#include "host/services/players/videoFrames.h"
#include "tests/players/films.h"
#include "tests/players/playersTest.h"
#include <QFile>
#include <QTcpServer>
#include <QTransform>
#include <QtEndian>
#include <algorithm>
#include <cmath>
#include <ostream>
#include <utility>

namespace {

constexpr char kH264[] = "x264enc key-int-max=25 speed-preset=veryfast ! h264parse ! ";
constexpr char kBare[] = "video/x-h264,stream-format=byte-stream ! ";
// Above what a telephone carries.
constexpr char kTone[] = " audiotestsrc freq=9000 num-buffers=60 samplesperbuffer=1024 ! "
                         "audio/x-raw,rate=%2,channels=2 ! audioconvert ! ";

// The words of a box of an MP4 file.
class Mp4
{
public:
    explicit Mp4(const QByteArray& bytes) : m_bytes(bytes) {}
    quint32 word(const char* box, int offset) const
    {
        return qFromBigEndian<quint32>(m_bytes.constData() + m_bytes.indexOf(box) + offset);
    }
    void setWord(const char* box, int offset, quint32 value)
    {
        EXPECT_GE(m_bytes.indexOf(box), 0) << box;
        qToBigEndian(value, m_bytes.data() + m_bytes.indexOf(box) + offset);
    }
    const QByteArray& bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

class FilmKinds : public playersTest
{
protected:
    FilmKinds()
    {
        QObject::connect(&videoFrames::instance(), &videoFrames::changed, &m_context, [this] { look(); });
    }
    ~FilmKinds() override { qunsetenv("HX_SOUND_SINK"); }
    void playIn(const QByteArray& path, QSize size)
    {
        expectNoPicture();
        seen.clear();
        playersTest::playIn(path, size);
    }
    // The most that the loudspeaker got of a film of two seconds.
    float loudest(const QByteArray& path)
    {
        const QString heard = hostPath("/rundata/sound.raw");
        qputenv("HX_SOUND_SINK", "filesink async=false sync=false location=" + heard.toUtf8());
        startBoth();
        const MOV_SDP sdp = ask(path);
        EXPECT_STREQ(sdp.szAudName, "mpeg4-generic");
        EXPECT_EQ(sdp.nChannels, 2);
        play(path);
        startSession(sdp, {0, 0, 320, 240});
        EXPECT_TRUE(kit::waitUntil([&] { return finished() == 1; }, 8000));
        QFile file(heard);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        const auto* samples = reinterpret_cast<const float*>(bytes.constData());
        float most = 0;
        for (qsizetype i = 0; i < bytes.size() / qsizetype(sizeof(float)); ++i)
            most = std::max(most, std::fabs(samples[i]));
        return most;
    }
    // Tried at once, and answered at once. That the film is given up is told two seconds later.
    void expectNone(const QByteArray& path)
    {
        play(path);
        EXPECT_TRUE(hasSaid(path + ": ")) << said().constData();
        bool answered = true;
        QElapsedTimer clock;
        clock.start();
        ask(path, &answered);
        EXPECT_FALSE(answered) << path.constData();
        EXPECT_LT(clock.elapsed(), 1000) << path.constData();
    }

    // Turned so, each bears its number, from the first on. A busy machine paints not every one.
    void expectNumbersRise(const QTransform& back) const
    {
        int last = 0;
        for (const QImage& picture : seen) {
            const int number = numberIn(picture.transformed(back));
            EXPECT_GE(number, last);
            last = number;
        }
    }

    QList<QImage> seen;

private:
    void look()
    {
        tagVideoPicture picture;
        if (!videoFrames::instance().next(picture))
            return;
        seen.append(
            QImage(picture.pPixels, picture.nWidth, picture.nHeight, picture.nWidth * 4, QImage::Format_RGB32)
                .copy());
        videoFrames::instance().painted(picture);
    }
    QObject m_context;
};

// Where a header lays a picture: x becomes a*x + c*y, and y becomes b*x + d*y.
struct tagLaying
{
    int a, b, c, d;
};

void PrintTo(const tagLaying& laying, std::ostream* stream)
{
    *stream << laying.a << laying.b << laying.c << laying.d;
}

class LaidFilm : public FilmKinds, public ::testing::WithParamInterface<tagLaying>
{
};

} // namespace

TEST_P(LaidFilm, IsShownAsItsHeaderSays)
{
    const auto [a, b, c, d] = GetParam();
    const QString path = hostPath("/rundata/film.mp4");
    makeNumberedFilm(path, QString("mp4mux name=m ! filesink name=out %1 ! ") + kH264 + "m.");
    Mp4 film(readFile("/rundata/film.mp4"));
    for (const auto& [offset, number] : {std::pair(44, a), {48, b}, {56, c}, {60, d}})
        film.setWord("tkhd", offset, quint32(number) << 16);
    writeFile("/rundata/film.mp4", film.bytes());
    playIn("/rundata/film.mp4", a == 0 ? QSize(240, 320) : QSize(320, 240));
    const QTransform back = QTransform(a, b, c, d, 0, 0).inverted();
    ASSERT_TRUE(
        kit::waitUntil([&] { return !seen.isEmpty() && numberIn(seen.last().transformed(back)) > 5; }));
    expectNumbersRise(back);
}

INSTANTIATE_TEST_SUITE_P(Mirrored, LaidFilm,
                         ::testing::Values(tagLaying{-1, 0, 0, 1}, tagLaying{0, 1, 1, 0}));
INSTANTIATE_TEST_SUITE_P(Turned, LaidFilm, ::testing::Values(tagLaying{0, -1, 1, 0}));

TEST_F(FilmKinds, OfAFilmThatWasCutNothingBeforeTheCutIsShown)
{
    const QString path = hostPath("/rundata/film.mp4");
    makeNumberedFilm(path, QString("mp4mux name=m ! filesink name=out %1 ! ") + kH264 + "m.");
    Mp4 film(readFile("/rundata/film.mp4"));
    // From picture 30 on; the last one that needs no other is number 25.
    const quint32 cut = film.word("mdhd", 16) * 30 / 25;
    film.setWord("elst", 16, film.word("elst", 16) + cut);
    film.setWord("elst", 12, film.word("elst", 12) * 20 / 50);
    writeFile("/rundata/film.mp4", film.bytes());
    playIn("/rundata/film.mp4", QSize(320, 240));
    ASSERT_TRUE(kit::waitUntil([&] { return finished() == 1; }));
    ASSERT_TRUE(kit::waitUntil([&] { return !seen.isEmpty() && numberIn(seen.last()) == 49; }));
    // A busy machine paints not every one: that none came before the cut is told by their number too.
    EXPECT_GE(numberIn(seen.first()), 30);
    tagVideoPicture last;
    ASSERT_TRUE(videoFrames::instance().newest(last));
    EXPECT_EQ(last.nFrame, 20u) << "neither more nor fewer";
}

TEST_F(FilmKinds, AFilmThatWasTakenUprightIsShownUpright)
{
    const QString path = hostPath("/rundata/film.mp4");
    makeNumberedFilm(path, QString("mp4mux name=m ! filesink name=out %1 ! ") + kH264 + "m.");
    const auto turned = [&](quint32 a, quint32 b, quint32 c, quint32 d) {
        Mp4 film(readFile("/rundata/film.mp4"));
        film.setWord("tkhd", 44, a << 16);
        film.setWord("tkhd", 48, b << 16);
        film.setWord("tkhd", 56, c << 16);
        film.setWord("tkhd", 60, d << 16);
        writeFile("/rundata/film.mp4", film.bytes());
    };
    const quint32 minus = 0xFFFF;
    turned(0, 1, minus, 0);
    playIn("/rundata/film.mp4", QSize(240, 320));
    const QTransform back = QTransform().rotate(-90);
    ASSERT_TRUE(kit::waitUntil([&] {
        return !seen.isEmpty() && numberIn(seen.last().transformed(back)) > 5;
    })) << "a quarter turn";
    expectNumbersRise(back);
    turned(minus, 0, 0, minus);
    seen.clear();
    play("/rundata/film.mp4");
    ASSERT_TRUE(kit::waitUntil([&] {
        return !seen.isEmpty() && numberIn(seen.last().transformed(QTransform().rotate(180))) > 5;
    })) << "half a turn";
}

TEST_F(FilmKinds, PlainSoundKeepsItsQuality)
{
    makeFilm(hostPath("/rundata/film.avi"),
             QString("avimux name=m ! filesink name=out %1 ! ") + kH264 + kBare + "m." +
                 QString(kTone).replace("%2", "44100") + "m.",
             {});
    EXPECT_GT(loudest("/rundata/film.avi"), 0.3f);
}

TEST_F(FilmKinds, Mp3KeepsItsQuality)
{
    makeFilm(hostPath("/rundata/film.mkv"),
             QString("matroskamux name=m ! filesink name=out %1 ! ") + kH264 + "m." +
                 QString(kTone).replace("%2", "44100") + "lamemp3enc ! mpegaudioparse ! m.",
             {});
    EXPECT_GT(loudest("/rundata/film.mkv"), 0.3f);
}

TEST_F(FilmKinds, OpusKeepsItsQuality)
{
    makeFilm(hostPath("/rundata/film.mkv"),
             QString("matroskamux name=m ! filesink name=out %1 ! ") + kH264 + "m." +
                 QString(kTone).replace("%2", "48000") + "opusenc ! m.",
             {});
    EXPECT_GT(loudest("/rundata/film.mkv"), 0.3f);
}

TEST_F(FilmKinds, AFilmIsShownThoughNobodyTakesItsSound)
{
    const QString pcm = QString(kTone).replace("%2", "44100") + "m.";
    const QString avi = "avimux name=m ! filesink name=out ";
    startBoth();
    const QStringList kinds = {avi + pcm + " %1 ! " + kH264 + kBare + "m.",
                               avi + pcm + " %1 ! avenc_mpeg4 ! m.",
                               avi + QString(pcm).replace("m.", "lamemp3enc ! m.") + " %1 ! avenc_mpeg4 ! m.",
                               avi + " %1 ! avenc_mpeg4 ! m."};
    for (const QString& kind : kinds) {
        makeNumberedFilm(hostPath("/rundata/film.avi"), kind);
        expectNoPicture();
        seen.clear();
        VOICE_PARAM session = sessionParam(ask("/rundata/film.avi"), {0, 0, 320, 240});
        ADDR_PARAM param = playParam("/rundata/film.avi");
        // The sound is that of a call.
        session.nAudRemotePort = 34002;
        param.nRemoteAudioPort = 0;
        post(movie(), MOVIE_MSG_PLAY_PARAM, param, PLAYER_THREAD_PHONE);
        post(media(), MEDIA_MSG_SESSION_START, session, 1);
        ASSERT_TRUE(kit::waitUntil([&] { return !seen.isEmpty() && numberIn(seen.last()) == 49; }))
            << qPrintable(kind);
        msgPostMsgToThread(movie(), MOVIE_MSG_STOP, PLAYER_THREAD_PHONE, 0);
        msgPostMsgToThread(media(), MEDIA_MSG_SESSION_STOP, 1, 0);
    }
}

TEST_F(FilmKinds, AFilmWithTwoLanguagesIsShown)
{
    const QString pcm = QString(kTone).replace("%2", "44100") + "m.";
    makeNumberedFilm(hostPath("/rundata/film.avi"),
                     "avimux name=m ! filesink name=out " + pcm + pcm + " %1 ! " + kH264 + kBare + "m.");
    playIn("/rundata/film.avi", QSize(320, 240));
    ASSERT_TRUE(kit::waitUntil([&] { return !seen.isEmpty() && numberIn(seen.last()) == 49; }));
}

TEST_F(FilmKinds, OfACodecThatNobodyKnowsNobodyWaitsForAPicture)
{
    const tagColours few = {{RED}, 10};
    makeFilm(hostPath("/rundata/vp8.webm"), "webmmux name=m ! filesink name=out %1 ! vp8enc deadline=1 ! m.",
             few);
    makeFilm(hostPath("/rundata/hevc.mp4"),
             "mp4mux name=m ! filesink name=out %1 ! x265enc speed-preset=ultrafast ! h265parse ! m.", few);
    makeFilm(hostPath("/rundata/jpeg.avi"), "avimux name=m ! filesink name=out %1 ! jpegenc ! m.", few);
    makeFilm(hostPath("/rundata/mpeg2.mkv"),
             "matroskamux name=m ! filesink name=out %1 ! mpeg2enc ! mpegvideoparse ! m.", few);
    startMovie();
    for (const char* path :
         {"/rundata/vp8.webm", "/rundata/hevc.mp4", "/rundata/jpeg.avi", "/rundata/mpeg2.mkv"})
        expectNone(path);
    EXPECT_TRUE(kit::waitUntil([&] { return finished() > 0; })) << "the last one";
}

TEST_F(FilmKinds, AFileThatNamesOthersOpensNone)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const QByteArray address = "http://127.0.0.1:" + QByteArray::number(server.serverPort()) + "/film";
    makeH264(hostPath("/rundata/whole.mp4"), {{RED}, 10});
    const QByteArray local = "file://" + hostPath("/rundata/whole.mp4").toUtf8();
    const QByteArray list = "#EXTM3U\n#EXT-X-TARGETDURATION:5\n#EXTINF:5,\n%1.ts\n#EXT-X-ENDLIST\n";
    writeFile("/rundata/far.mp4", QByteArray(list).replace("%1", address));
    writeFile("/rundata/near.mp4", QByteArray(list).replace("%1.ts", local));
    writeFile("/rundata/list.mp4", local + "\n");
    writeFile("/rundata/names.mp4", "#EXTM3U\n" + address + "\n");
    writeFile("/rundata/smil.mp4",
              "<?xml version=\"1.0\"?><smil><body><video src=\"" + address + "\"/></body></smil>");
    writeFile("/rundata/dash.mp4", "<?xml version=\"1.0\"?><MPD xmlns=\"urn:mpeg:dash:schema:mpd:2011\" "
                                   "type=\"static\"><BaseURL>" +
                                       address + "</BaseURL></MPD>");
    writeFile("/rundata/sdp.mp4", "v=0\r\no=- 0 0 IN IP4 127.0.0.1\r\ns=a\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
                                  "m=video 45678 RTP/AVP 96\r\na=rtpmap:96 H264/90000\r\n");
    startMovie();
    for (const char* name : {"far", "near", "list", "names", "smil", "dash", "sdp"})
        expectNone(QByteArray("/rundata/") + name + ".mp4");
    EXPECT_TRUE(kit::waitUntil([&] { return finished() > 0; })) << "the last one";
    EXPECT_FALSE(server.hasPendingConnections());
}
