// The streams of a film, as the movie player answers them.
#include "tests/players/films.h"
#include "tests/players/playersTest.h"
#include <QFile>
#include <sys/stat.h>

namespace {

class Streams : public playersTest
{
protected:
    Streams() { startMovie(); }
};

TEST_F(Streams, AnH264FilmWithAacTellsBothStreams)
{
    makeH264(hostPath("/rundata/film.mp4"));
    const MOV_SDP sdp = ask("/rundata/film.mp4");
    EXPECT_EQ(sdp.nAudPayload, 96);
    EXPECT_STREQ(sdp.szAudName, "mpeg4-generic");
    EXPECT_EQ(sdp.nAudRate, 44100);
    EXPECT_EQ(sdp.nChannels, 2);
    EXPECT_TRUE(QByteArray(sdp.szAudParam).startsWith("96 ")) << sdp.szAudParam;
    EXPECT_TRUE(QByteArray(sdp.szAudParam).contains("mode=AAC-hbr")) << sdp.szAudParam;
    EXPECT_TRUE(QByteArray(sdp.szAudParam).contains("config=1210")) << sdp.szAudParam;
    EXPECT_EQ(sdp.nVidPayload, 97);
    EXPECT_STREQ(sdp.szVidName, "H264");
    EXPECT_EQ(sdp.nVidRate, 90000);
    EXPECT_TRUE(QByteArray(sdp.szVidParam).startsWith("97 ")) << sdp.szVidParam;
    EXPECT_TRUE(QByteArray(sdp.szVidParam).contains("sprop-parameter-sets=")) << sdp.szVidParam;
}

TEST_F(Streams, AnMpeg4FilmTellsItsConfiguration)
{
    makeMpeg4(hostPath("/rundata/film.mp4"));
    const MOV_SDP sdp = ask("/rundata/film.mp4");
    EXPECT_STREQ(sdp.szVidName, "MP4V-ES");
    EXPECT_EQ(sdp.nVidRate, 90000);
    EXPECT_TRUE(QByteArray(sdp.szVidParam).contains("config=000001")) << sdp.szVidParam;
    EXPECT_STREQ(sdp.szAudName, "mpeg4-generic");
}

TEST_F(Streams, AnH263FilmWithPcmaTellsBothStreams)
{
    makeH263(hostPath("/rundata/film.avi"));
    const MOV_SDP sdp = ask("/rundata/film.avi");
    EXPECT_STREQ(sdp.szVidName, "H263-1998");
    EXPECT_EQ(sdp.nVidRate, 90000);
    EXPECT_STREQ(sdp.szAudName, "PCMA");
    EXPECT_EQ(sdp.nAudPayload, 8);
    EXPECT_EQ(sdp.nAudRate, 8000);
    EXPECT_EQ(sdp.nChannels, 1);
}

TEST_F(Streams, AFilmWithoutSoundHasNone)
{
    makeFilm(hostPath("/rundata/film.mp4"), "mp4mux name=m ! filesink name=out %1 ! x264enc ! h264parse ! m.",
             {});
    const MOV_SDP sdp = ask("/rundata/film.mp4");
    EXPECT_STREQ(sdp.szVidName, "H264");
    EXPECT_EQ(sdp.nAudPayload, 0);
    EXPECT_STREQ(sdp.szAudName, "");
    EXPECT_EQ(sdp.nChannels, 0);
}

TEST_F(Streams, SoundOfAnotherKindGoesOutAsAac)
{
    makeFilm(
        hostPath("/rundata/film.mkv"),
        "matroskamux name=m ! filesink name=out %1 ! x264enc ! h264parse ! m. audiotestsrc num-buffers=50 ! "
        "audio/x-raw,rate=44100,channels=2 ! audioconvert ! flacenc ! m.",
        {});
    const MOV_SDP sdp = ask("/rundata/film.mkv");
    EXPECT_STREQ(sdp.szVidName, "H264");
    EXPECT_STREQ(sdp.szAudName, "mpeg4-generic");
    EXPECT_EQ(sdp.nAudRate, 44100);
    EXPECT_EQ(sdp.nChannels, 2);
}

TEST_F(Streams, AChangedFileIsReadAgain)
{
    makeH264(hostPath("/rundata/film.mp4"));
    EXPECT_STREQ(ask("/rundata/film.mp4").szVidName, "H264");
    makeMpeg4(hostPath("/rundata/film.mp4"));
    EXPECT_STREQ(ask("/rundata/film.mp4").szVidName, "MP4V-ES");
}

TEST_F(Streams, AFileThatIsNoFilmIsAnsweredSoonAndWithoutARecord)
{
    writeFile("/rundata/text.mp4", QByteArray(100000, 'x'));
    writeFile("/rundata/empty.mp4", "");
    for (const char* path : {"/rundata/text.mp4", "/rundata/empty.mp4", "/rundata/none.mp4", "/rundata"}) {
        QElapsedTimer clock;
        clock.start();
        bool answered = true;
        ask(path, &answered);
        EXPECT_FALSE(answered) << path;
        EXPECT_LT(clock.elapsed(), 2000) << path;
    }
}

TEST_F(Streams, APipeIsNotWaitedFor)
{
    writeFile("/rundata/other", "");
    ASSERT_EQ(mkfifo(hostPath("/rundata/pipe.mp4").toUtf8().constData(), 0600), 0);
    bool answered = true;
    ask("/rundata/pipe.mp4", &answered);
    EXPECT_FALSE(answered);
    EXPECT_TRUE(hasSaid("/rundata/pipe.mp4: no file that can be read"));
}

TEST_F(Streams, FilesOutsideTheDeviceRootAreNotOpened)
{
    QTemporaryDir outside;
    makeH264(outside.filePath("film.mp4"));
    writeFile("/rundata/other", "");
    ASSERT_TRUE(QFile::link(outside.filePath("film.mp4"), hostPath("/rundata/link.mp4")));
    const QByteArray up = "/../../../../../.." + outside.filePath("film.mp4").toUtf8();
    for (const QByteArray& path :
         {QByteArray("/rundata/link.mp4"), up, outside.filePath("film.mp4").toUtf8()}) {
        bool answered = true;
        ask(path, &answered);
        EXPECT_FALSE(answered) << path.constData();
    }
}

TEST_F(Streams, AQuestionIsAnsweredWhileAFilmPlays)
{
    makeH264(hostPath("/rundata/film.mp4"));
    makeMpeg4(hostPath("/rundata/other.mp4"));
    play("/rundata/film.mp4");
    QElapsedTimer clock;
    clock.start();
    EXPECT_STREQ(ask("/rundata/other.mp4").szVidName, "MP4V-ES");
    EXPECT_LT(clock.elapsed(), 1000);
    EXPECT_TRUE(kit::waitUntil([&] { return finished() == 1; }));
}

} // namespace
