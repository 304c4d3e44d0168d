// Films on the screen: from the file through both players to the phone's viewer.
#include "host/services/players/videoFrames.h"
#include "players/loopback.h"
#include "support/host/video.h"
#include "tests/players/films.h"
#include "tests/players/playersTest.h"
#include <QUdpSocket>
#include <QtEndian>

namespace {

// The way through the coder changes a colour a little.
bool isNearly(QRgb colour, QRgb wanted)
{
    return qAbs(qRed(colour) - qRed(wanted)) < 24 && qAbs(qGreen(colour) - qGreen(wanted)) < 24 &&
           qAbs(qBlue(colour) - qBlue(wanted)) < 24;
}

class Pictures : public playersTest
{
protected:
    Pictures() : window(nullptr), viewer(&window)
    {
        QPalette palette;
        palette.setColor(QPalette::Window, QColor(255, 255, 0));
        window.setPalette(palette);
        window.setGeometry(0, 0, 800, 480);
        window.setWindowFlags(Qt::FramelessWindowHint);
        viewer.setGeometry(0, 0, 800, 480);
        window.show();
        viewer.ShowVideoViewer(1);
        viewer.ShowBackground(0);
        kit::settle();
    }
    static QRgb at(int x, int y) { return kit::screen().pixel(x, y); }
    static bool becomes(int x, int y, QRgb colour, int ms = 5000)
    {
        return kit::waitUntil([&] { return isNearly(at(x, y), colour); }, ms);
    }
    void playInSession(const QByteArray& path, const MEDIA_RECT& place)
    {
        const MOV_SDP sdp = ask(path);
        play(path);
        startSession(sdp, place);
    }

    QWidget window;
    QVideoViewer viewer;
};

TEST_F(Pictures, AnH264FilmIsShownInItsColours)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED, BLUE}, 25});
    startBoth();
    EXPECT_TRUE(isNearly(at(400, 240), BLACK));
    playInSession("/rundata/film.mp4", {0, 0, 800, 480});
    EXPECT_TRUE(becomes(400, 240, RED));
    EXPECT_TRUE(becomes(400, 240, BLUE));
    EXPECT_TRUE(isNearly(at(2, 2), BLUE));
    EXPECT_TRUE(isNearly(at(797, 477), BLUE));
}

TEST_F(Pictures, AnMpeg4FilmIsShownInItsColours)
{
    makeMpeg4(hostPath("/rundata/film.mp4"), {{RED, BLUE}, 25});
    startBoth();
    playInSession("/rundata/film.mp4", {0, 0, 800, 480});
    EXPECT_TRUE(becomes(400, 240, RED));
    EXPECT_TRUE(becomes(400, 240, BLUE));
}

TEST_F(Pictures, AnH263FilmIsShownInItsColours)
{
    makeH263(hostPath("/rundata/film.avi"), {{RED, BLUE}, 25});
    startBoth();
    playInSession("/rundata/film.avi", {0, 0, 800, 480});
    EXPECT_TRUE(becomes(400, 240, RED));
    EXPECT_TRUE(becomes(400, 240, BLUE));
    EXPECT_FALSE(said().contains("WARNING")) << said().constData();
}

TEST_F(Pictures, TheSessionsPlaceIsWhereThePictureIs)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 100});
    startBoth();
    playInSession("/rundata/film.mp4", {112, 50, 288, 200});
    EXPECT_TRUE(becomes(112, 50, RED));
    EXPECT_TRUE(isNearly(at(399, 249), RED));
    EXPECT_TRUE(isNearly(at(111, 100), BLACK));
    EXPECT_TRUE(isNearly(at(400, 100), BLACK));
    EXPECT_TRUE(isNearly(at(200, 49), BLACK));
    EXPECT_TRUE(isNearly(at(200, 250), BLACK));
}

TEST_F(Pictures, AChangeOfTheSessionMovesAndScalesThePicture)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 100});
    startBoth();
    playInSession("/rundata/film.mp4", {0, 0, 160, 120});
    EXPECT_TRUE(becomes(10, 10, RED));
    post(media(), MEDIA_MSG_SESSION_CHANGE, sessionParam(ask("/rundata/film.mp4"), {400, 200, 320, 240}));
    EXPECT_TRUE(becomes(719, 439, RED));
    EXPECT_TRUE(isNearly(at(400, 200), RED));
    EXPECT_TRUE(isNearly(at(10, 10), BLACK));
    tagVideoPicture picture;
    EXPECT_TRUE(kit::waitUntil([&] {
        return videoFrames::instance().newest(picture) && picture.nWidth == 320 && picture.nHeight == 240;
    })) << "the server makes it as large as it is shown";
}

TEST_F(Pictures, APausedPictureMovesToo)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 100});
    startBoth();
    playInSession("/rundata/film.mp4", {0, 0, 160, 120});
    EXPECT_TRUE(becomes(10, 10, RED));
    msgPostMsgToThread(movie(), MOVIE_MSG_PAUSE, 0, 0);
    // What was on its way has come when no picture follows for longer than the server keeps them.
    tagVideoPicture last;
    QElapsedTimer still;
    EXPECT_TRUE(kit::waitUntil([&] {
        tagVideoPicture now;
        videoFrames::instance().newest(now);
        if (!still.isValid() || now.nFrame != last.nFrame)
            still.start();
        last = now;
        return still.elapsed() > 400;
    }));
    post(media(), MEDIA_MSG_SESSION_CHANGE, sessionParam({}, {400, 200, 320, 240}));
    EXPECT_TRUE(becomes(700, 430, RED));
    EXPECT_TRUE(isNearly(at(10, 10), BLACK));
}

TEST_F(Pictures, TheHideRectangleIsLeftOut)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 100});
    startBoth();
    viewer.SetHideRect(QRect(100, 200, 120, 31), 0, 1);
    playInSession("/rundata/film.mp4", {0, 0, 800, 480});
    EXPECT_TRUE(becomes(99, 210, RED));
    EXPECT_EQ(at(100, 200), 0xffffff00);
    EXPECT_EQ(at(219, 230), 0xffffff00);
    EXPECT_TRUE(isNearly(at(220, 210), RED));
}

TEST_F(Pictures, AViewerThatIsNotShownPaintsNoPicture)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 100});
    startBoth();
    viewer.ShowVideoViewer(0);
    QVideoViewer shown(&window);
    shown.setGeometry(400, 0, 400, 480);
    shown.ShowBackground(0);
    shown.show();
    playInSession("/rundata/film.mp4", {0, 0, 800, 480});
    EXPECT_TRUE(becomes(600, 240, RED));
    EXPECT_EQ(at(200, 240), 0xffffff00);
    viewer.ShowVideoViewer(1);
    EXPECT_TRUE(becomes(200, 240, RED));
    viewer.ShowBackground(1);
    EXPECT_TRUE(becomes(200, 240, BLACK));
}

TEST_F(Pictures, TheEndOfTheSessionLeavesBlack)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 100});
    startBoth();
    playInSession("/rundata/film.mp4", {0, 0, 800, 480});
    EXPECT_TRUE(becomes(400, 240, RED));
    msgSendMsgToThread(media(), MEDIA_MSG_SESSION_STOP, 7, 0);
    EXPECT_TRUE(becomes(400, 240, BLACK));
}

TEST_F(Pictures, AListIsShownInTheSizeOfItsViewer)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 100});
    startBoth();
    viewer.setGeometry(100, 100, 400, 300);
    playList({"/rundata/film.mp4"});
    EXPECT_TRUE(becomes(300, 250, RED));
    tagVideoPicture picture;
    EXPECT_TRUE(kit::waitUntil([&] {
        return videoFrames::instance().newest(picture) && picture.nWidth == 400 && picture.nHeight == 300;
    }));
    EXPECT_TRUE(becomes(101, 101, RED));
    EXPECT_TRUE(becomes(498, 398, RED));
    EXPECT_EQ(at(99, 99), 0xffffff00);
}

TEST_F(Pictures, AListKeepsTheShapeOfItsFilms)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 100});
    startBoth();
    playList({"/rundata/film.mp4"}); // 4 to 3: 640 of 800 pixels
    EXPECT_TRUE(becomes(400, 240, RED));
    EXPECT_TRUE(becomes(82, 240, RED));
    EXPECT_TRUE(becomes(717, 240, RED));
    EXPECT_TRUE(becomes(76, 240, BLACK));
    EXPECT_TRUE(becomes(723, 240, BLACK));
}

TEST_F(Pictures, NextAndPreviousGoRoundTheList)
{
    makeH264(hostPath("/rundata/red.mp4"), {{RED}, 200});
    makeMpeg4(hostPath("/rundata/blue.mp4"), {{BLUE}, 200});
    makeH264(hostPath("/rundata/green.mp4"), {{GREEN}, 200});
    startBoth();
    playList({"/rundata/red.mp4", "/rundata/blue.mp4", "/rundata/green.mp4"});
    EXPECT_TRUE(becomes(400, 240, RED));
    msgPostMsgToThread(movie(), MOVIE_MSG_NEXT, 0, 0);
    EXPECT_TRUE(becomes(400, 240, BLUE));
    msgPostMsgToThread(movie(), MOVIE_MSG_PREVIOUS, 0, 0);
    EXPECT_TRUE(becomes(400, 240, RED));
    msgPostMsgToThread(movie(), MOVIE_MSG_PREVIOUS, 0, 0);
    EXPECT_TRUE(becomes(400, 240, GREEN));
    msgPostMsgToThread(movie(), MOVIE_MSG_NEXT, 0, 0);
    EXPECT_TRUE(becomes(400, 240, RED));
}

TEST_F(Pictures, AListPlaysOnWithTheNextFilmAndBeginsAgain)
{
    makeH264(hostPath("/rundata/red.mp4"), {{RED}, 15});
    makeH264(hostPath("/rundata/blue.mp4"), {{BLUE}, 15});
    startBoth();
    playList({"/rundata/red.mp4", "/rundata/blue.mp4"});
    EXPECT_TRUE(becomes(400, 240, RED));
    EXPECT_TRUE(becomes(400, 240, BLUE));
    EXPECT_TRUE(becomes(400, 240, RED));
    EXPECT_EQ(finished(), 0);
}

TEST_F(Pictures, AListSkipsWhatCannotBePlayed)
{
    writeFile("/rundata/text.mp4", "no film");
    makeH264(hostPath("/rundata/blue.mp4"), {{BLUE}, 50});
    startBoth();
    playList({"/rundata/text.mp4", "/rundata/none.mp4", "/rundata/blue.mp4"});
    EXPECT_TRUE(becomes(400, 240, BLUE));
    EXPECT_EQ(finished(), 0);
}

TEST_F(Pictures, APauseHoldsThePictureUntilItIsResumed)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED, BLUE}, 25});
    startBoth();
    playInSession("/rundata/film.mp4", {0, 0, 800, 480});
    EXPECT_TRUE(becomes(400, 240, RED));
    msgPostMsgToThread(movie(), MOVIE_MSG_PAUSE, 0, 0);
    EXPECT_FALSE(becomes(400, 240, BLUE, 1700));
    EXPECT_TRUE(isNearly(at(400, 240), RED));
    msgPostMsgToThread(movie(), MOVIE_MSG_RESUME, 0, 0);
    EXPECT_TRUE(becomes(400, 240, BLUE));
}

TEST_F(Pictures, TheNextFilmOfAListThatPausesShowsHowItBeginsAndPauses)
{
    makeH264(hostPath("/rundata/red.mp4"), {{RED}, 200});
    makeH264(hostPath("/rundata/blue.mp4"), {{BLUE, GREEN}, 15});
    startBoth();
    playList({"/rundata/red.mp4", "/rundata/blue.mp4"});
    EXPECT_TRUE(becomes(400, 240, RED));
    msgPostMsgToThread(movie(), MOVIE_MSG_PAUSE, 0, 0);
    msgPostMsgToThread(movie(), MOVIE_MSG_NEXT, 0, 0);
    EXPECT_TRUE(becomes(400, 240, BLUE));
    EXPECT_FALSE(becomes(400, 240, GREEN, 1500)) << "it pauses";
    EXPECT_TRUE(isNearly(at(400, 240), BLUE));
    msgPostMsgToThread(movie(), MOVIE_MSG_RESUME, 0, 0);
    EXPECT_TRUE(becomes(400, 240, GREEN));
    EXPECT_TRUE(becomes(400, 240, RED)) << "and the list goes on";
    msgPostMsgToThread(movie(), MOVIE_MSG_PAUSE, 0, 0);
    playList({"/rundata/blue.mp4"});
    EXPECT_TRUE(becomes(400, 240, GREEN)) << "a list that starts does not pause";
}

TEST_F(Pictures, PacketsOfAnotherSenderAreNotShown)
{
    makeH264(hostPath("/rundata/red.mp4"), {{RED}, 150});
    makeH264(hostPath("/rundata/blue.mp4"), {{BLUE}, 25});
    startMovie();
    // Another program of this machine knows what packets look like, and the number of the play that comes.
    QUdpSocket other;
    const QHostAddress address{QString(loopbackAddress())};
    ASSERT_TRUE(other.bind(address, PLAYER_VIDEO_PORT));
    QList<QByteArray> packets;
    play("/rundata/blue.mp4");
    EXPECT_TRUE(kit::waitUntil([&] {
        while (other.hasPendingDatagrams()) {
            packets.append(QByteArray(int(other.pendingDatagramSize()), 0));
            other.readDatagram(packets.last().data(), packets.last().size());
        }
        return finished() == 1;
    }));
    ASSERT_GT(packets.size(), 20);
    other.close();
    ASSERT_TRUE(other.bind(address, 0));
    const auto attack = [&] {
        for (QByteArray packet : packets) {
            other.writeDatagram(packet, address, PLAYER_VIDEO_PORT);
            const quint32 source = qFromBigEndian<quint32>(packet.constData() + 8);
            qToBigEndian(source + 1, packet.data() + 8);
            other.writeDatagram(packet, address, PLAYER_VIDEO_PORT);
        }
    };
    startMedia();
    const MOV_SDP sdp = ask("/rundata/red.mp4");
    startSession(sdp, {0, 0, 800, 480});
    attack();
    EXPECT_FALSE(becomes(400, 240, BLUE, 700)) << "before a film";
    play("/rundata/red.mp4");
    EXPECT_TRUE(becomes(400, 240, RED));
    attack();
    EXPECT_FALSE(becomes(400, 240, BLUE, 1000)) << "into a film";
    EXPECT_TRUE(isNearly(at(400, 240), RED));
    EXPECT_TRUE(kit::waitUntil([&] { return finished() == 2; }, 8000));
    attack();
    EXPECT_FALSE(becomes(400, 240, BLUE, 700)) << "after a film";
}

TEST_F(Pictures, AnotherFilmInTheSameSessionMayHaveAnotherCodec)
{
    makeH264(hostPath("/rundata/red.mp4"), {{RED}, 100});
    makeH263(hostPath("/rundata/blue.avi"), {{BLUE}, 100});
    startBoth();
    playInSession("/rundata/red.mp4", {0, 0, 800, 480});
    EXPECT_TRUE(becomes(400, 240, RED));
    msgPostMsgToThread(movie(), MOVIE_MSG_STOP, 0, 0);
    play("/rundata/blue.avi");
    EXPECT_TRUE(becomes(400, 240, BLUE));
}

TEST_F(Pictures, ASessionThatStartsInTheMiddleOfAFilmShowsItAtOnce)
{
    // One whole picture at the beginning only.
    makeFilm(hostPath("/rundata/film.mp4"),
             "mp4mux name=m ! filesink name=out %1 ! x264enc key-int-max=1000 speed-preset=veryfast ! "
             "h264parse ! m.",
             {{RED}, 250});
    startBoth();
    play("/rundata/film.mp4");
    // Nobody receives: it plays on after a moment.
    QElapsedTimer clock;
    clock.start();
    kit::waitUntil([&] { return clock.elapsed() > 2000; });
    startSession(ask("/rundata/film.mp4"), {0, 0, 800, 480});
    // What is left of the film has no other whole picture.
    EXPECT_TRUE(becomes(400, 240, RED));
    EXPECT_EQ(finished(), 0);
}

TEST_F(Pictures, TheMediaServersDeathLeavesBlackAndItsSuccessorShowsTheListAgain)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 250});
    startBoth();
    playList({"/rundata/film.mp4"});
    EXPECT_TRUE(becomes(400, 240, RED));
    m_media.kill();
    m_media.waitForFinished();
    EXPECT_TRUE(becomes(400, 240, BLACK));
    startMedia();
    EXPECT_TRUE(becomes(400, 240, RED));
}

TEST_F(Pictures, APlayersSuccessorPlaysWhatIsAskedOfIt)
{
    makeH264(hostPath("/rundata/red.mp4"), {{RED}, 250});
    makeH264(hostPath("/rundata/blue.mp4"), {{BLUE}, 100});
    startBoth();
    playInSession("/rundata/red.mp4", {0, 0, 800, 480});
    EXPECT_TRUE(becomes(400, 240, RED));
    m_movie.kill();
    m_movie.waitForFinished();
    startMovie();
    EXPECT_TRUE(becomes(400, 240, BLACK)) << "the picture of the one that died does not stay";
    play("/rundata/blue.mp4");
    EXPECT_TRUE(becomes(400, 240, BLUE));
}

TEST_F(Pictures, TheEndOfAListDoesNotEndTheSessionOfTheNextFilm)
{
    makeH264(hostPath("/rundata/red.mp4"), {{RED}, 100});
    makeH264(hostPath("/rundata/blue.mp4"), {{BLUE}, 100});
    startBoth();
    playList({"/rundata/red.mp4"});
    EXPECT_TRUE(becomes(400, 240, RED));
    const MOV_SDP sdp = ask("/rundata/blue.mp4");
    startSession(sdp, {0, 0, 800, 480});
    play("/rundata/blue.mp4"); // only now the player ends its list
    EXPECT_TRUE(becomes(400, 240, BLUE));
}

TEST_F(Pictures, AFilmThatIsAskedForAgainAtItsEndLoops)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED, BLUE}, 12});
    startBoth();
    playInSession("/rundata/film.mp4", {0, 0, 800, 480});
    for (int round = 1; round <= 2; ++round) {
        EXPECT_TRUE(becomes(400, 240, RED));
        EXPECT_TRUE(kit::waitUntil([&] { return finished() == round; }));
        play("/rundata/film.mp4");
        EXPECT_TRUE(becomes(400, 240, BLUE));
    }
}

} // namespace
