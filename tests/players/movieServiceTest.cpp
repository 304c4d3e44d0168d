// What the movie player does with its messages, good and bad.
#include "players/loopback.h"
#include "players/packetTimes.h"
#include "tests/players/films.h"
#include "tests/players/playersTest.h"
#include <QUdpSocket>

namespace {

class MoviePlayer : public playersTest
{
protected:
    MoviePlayer() { startMovie(); }
};

TEST_F(MoviePlayer, TheEndOfAFilmIsReportedOnce)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 25});
    QElapsedTimer clock;
    clock.start();
    play("/rundata/film.mp4");
    EXPECT_TRUE(kit::waitUntil([&] { return finished() > 0; }));
    EXPECT_GE(clock.elapsed(), 950) << "in real time";
    EXPECT_LT(clock.elapsed(), 2500);
    EXPECT_FALSE(kit::waitUntil([&] { return finished() > 1; }, 500));
}

TEST_F(MoviePlayer, NobodyIsToldWhoDidNotAsk)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 10});
    post(movie(), MOVIE_MSG_PLAY_PARAM, playParam("/rundata/film.mp4"), PLAYER_THREAD_NONE);
    EXPECT_FALSE(kit::waitUntil([&] { return finished() > 0; }, 1500));
}

TEST_F(MoviePlayer, StopEndsTheFilmWithoutAReport)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 25});
    play("/rundata/film.mp4");
    msgPostMsgToThread(movie(), MOVIE_MSG_STOP, PLAYER_THREAD_PHONE, 0);
    EXPECT_FALSE(kit::waitUntil([&] { return finished() > 0; }, 2000));
}

TEST_F(MoviePlayer, AFileThatIsNoFilmIsReportedButNotBeforeTwoSeconds)
{
    writeFile("/rundata/film.mp4", "This is a text.");
    QElapsedTimer clock;
    clock.start();
    play("/rundata/film.mp4");
    EXPECT_TRUE(kit::waitUntil([&] { return finished() > 0; }));
    EXPECT_GE(clock.elapsed(), 1900);
    EXPECT_TRUE(hasSaid("film.mp4"));
}

TEST_F(MoviePlayer, ADamagedFilmIsReportedWithoutHaste)
{
    makeH264(hostPath("/rundata/whole.mp4"));
    // The table at the end of the file is lost.
    writeFile("/rundata/film.mp4", readFile("/rundata/whole.mp4").left(2000));
    QElapsedTimer clock;
    clock.start();
    play("/rundata/film.mp4");
    EXPECT_TRUE(kit::waitUntil([&] { return finished() > 0; }, 7000));
    EXPECT_GE(clock.elapsed(), 1900);
}

TEST_F(MoviePlayer, AFilmThatFailedIsAskedForAgainWithoutMoreLinesUntilItsFileChanges)
{
    makeH264(hostPath("/rundata/whole.mp4"), {{RED}, 10});
    const QByteArray whole = readFile("/rundata/whole.mp4");
    writeFile("/rundata/film.mp4", "This is a text.");
    const auto playOnce = [&](const char* path) {
        const int before = finished();
        QElapsedTimer clock;
        clock.start();
        play(path);
        EXPECT_TRUE(kit::waitUntil([&] { return finished() > before; }, 8000));
        EXPECT_GE(clock.elapsed(), 1900) << "still without haste";
    };
    playOnce("/rundata/film.mp4");
    playOnce("/rundata/none.mp4");
    ask("/rundata/film.mp4"); // which has a line of its own, and all have come when this is answered
    EXPECT_TRUE(hasSaid("film.mp4: no stream that can be played"));
    EXPECT_TRUE(hasSaid("none.mp4: no file that can be read"));
    const QByteArray lines = said();
    playOnce("/rundata/film.mp4");
    playOnce("/rundata/none.mp4");
    EXPECT_EQ(said().toStdString(), lines.toStdString());
    writeFile("/rundata/film.mp4", whole);
    const int before = finished();
    QElapsedTimer clock;
    clock.start();
    play("/rundata/film.mp4");
    EXPECT_TRUE(kit::waitUntil([&] { return finished() > before; }));
    EXPECT_LT(clock.elapsed(), 1900);
}

TEST_F(MoviePlayer, AFileThatIsMissingIsReportedWithoutHaste)
{
    QElapsedTimer clock;
    clock.start();
    play("/rundata/none.mp4");
    EXPECT_TRUE(kit::waitUntil([&] { return finished() > 0; }));
    EXPECT_GE(clock.elapsed(), 1900);
    EXPECT_TRUE(hasSaid("/rundata/none.mp4: no file that can be read"));
}

TEST_F(MoviePlayer, AListWithoutAnyFilmIsGivenUp)
{
    writeFile("/rundata/text.mp4", "no film");
    playList({"/rundata/text.mp4", "/rundata/none.mp4"});
    EXPECT_TRUE(kit::waitUntil([&] { return finished() > 0; }, 7000));
    EXPECT_TRUE(hasSaid("nothing in the list can be played"));
}

TEST_F(MoviePlayer, AnEmptyListPlaysNothing)
{
    playList({});
    EXPECT_TRUE(hasSaid("the list to play is empty"));
    msgPostMsgToThread(movie(), MOVIE_MSG_NEXT, 0, 0);
    EXPECT_TRUE(hasSaid("no list plays"));
}

TEST_F(MoviePlayer, MessagesThatAreNoRecordsAreRefusedWithALine)
{
    ADDR_PARAM param = playParam("/rundata/film.mp4");
    param.nRemoteVideoPort = 22;
    post(movie(), MOVIE_MSG_PLAY_PARAM, param);
    EXPECT_TRUE(hasSaid("message 0x110002 of 204 bytes is refused: a port is out of range"));
    msgPostMsgToThreadEx(movie(), MOVIE_MSG_PLAY_PARAM, 0, 0, 10, "0123456789");
    EXPECT_TRUE(hasSaid("message 0x110002 of 10 bytes is refused: the size is wrong"));
    msgPostMsgToThreadEx(movie(), MOVIE_MSG_LIST_ADD, 0, 0, 4, "/abc");
    EXPECT_TRUE(hasSaid("message 0x110009 of 4 bytes is refused: the path is no text"));
    bool answered = true;
    ask("relative.mp4", &answered);
    EXPECT_FALSE(answered);
    EXPECT_TRUE(hasSaid("the path is no device path"));
}

TEST_F(MoviePlayer, PacketsComeAtThePaceOfTheFilm)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 40});
    QUdpSocket socket;
    ASSERT_TRUE(socket.bind(QHostAddress(QString(loopbackAddress())), 35620));
    QElapsedTimer clock;
    QList<qint64> times;
    play("/rundata/film.mp4");
    EXPECT_TRUE(kit::waitUntil([&] {
        while (socket.hasPendingDatagrams()) {
            if (times.isEmpty())
                clock.start();
            QByteArray packet(int(socket.pendingDatagramSize()), 0);
            socket.readDatagram(packet.data(), packet.size());
            const int payload = quint8(packet[1]) & 0x7f;
            EXPECT_TRUE(payload == 97 || payload == packetTimes::END_PAYLOAD) << payload;
            times.append(clock.elapsed());
        }
        return finished() > 0;
    }));
    ASSERT_GE(times.size(), 40);
    EXPECT_GE(times.last(), 1300);
    EXPECT_LE(times.last(), 2200);
    // Half of them in half of the time.
    EXPECT_NEAR(double(times[times.size() / 2]), double(times.last()) / 2, 350);
}

TEST_F(MoviePlayer, PacketsOfATurnComeTogether)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 50});
    QUdpSocket socket;
    ASSERT_TRUE(socket.bind(QHostAddress(QString(loopbackAddress())), 35620));
    QElapsedTimer pause;
    int turns = 0;
    play("/rundata/film.mp4");
    EXPECT_TRUE(kit::waitUntil([&] {
        while (socket.hasPendingDatagrams()) {
            turns += !pause.isValid() || pause.elapsed() > 60;
            pause.start();
            socket.readDatagram(nullptr, 0);
        }
        return finished() > 0;
    }));
    EXPECT_GE(turns, 13);
    EXPECT_LE(turns, 19) << "a turn is three pictures";
}

TEST_F(MoviePlayer, TheEndComesInItsTimeThoughTheLastPacketsWentEarlier)
{
    // The last picture, at 920 ms, goes out with a turn that began at 840.
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 24});
    QUdpSocket socket;
    ASSERT_TRUE(socket.bind(QHostAddress(QString(loopbackAddress())), 35620));
    play("/rundata/film.mp4");
    EXPECT_TRUE(kit::waitUntil([&] { return socket.hasPendingDatagrams(); }));
    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(kit::waitUntil([&] { return finished() > 0; }));
    EXPECT_GE(clock.elapsed(), 900);
}

TEST_F(MoviePlayer, APauseStopsThePackets)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 100});
    QUdpSocket socket;
    ASSERT_TRUE(socket.bind(QHostAddress(QString(loopbackAddress())), 35620));
    play("/rundata/film.mp4");
    const auto drain = [&] {
        int count = 0;
        for (; socket.hasPendingDatagrams(); ++count)
            socket.readDatagram(nullptr, 0);
        return count;
    };
    EXPECT_TRUE(kit::waitUntil([&] { return drain() > 0; }));
    msgPostMsgToThread(movie(), MOVIE_MSG_PAUSE, 0, 0);
    ask("/rundata/film.mp4"); // answered when the pause has begun
    drain();
    EXPECT_FALSE(kit::waitUntil([&] { return drain() > 0; }, 500));
    msgPostMsgToThread(movie(), MOVIE_MSG_RESUME, 0, 0);
    EXPECT_TRUE(kit::waitUntil([&] { return drain() > 0; }));
}

} // namespace
