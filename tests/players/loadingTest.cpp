// The media server loads what shows a film with the first one, and the movie player waits for that. The test
// takes the part of one of them.
#include "host/services/messages/messageBus.h"
#include "places.h"
#include "players/loopback.h"
#include "tests/players/films.h"
#include "tests/players/playersTest.h"
#include <QUdpSocket>
#include <cstring>
#include <sys/prctl.h>

namespace {

struct tagHeard
{
    unsigned int message;
    unsigned int nPlay;
};

// One player in its process, and this one under the other's name.
class BesideOne : public PhoneTest, public chMsgProcesser
{
protected:
    BesideOne(const char* name, const char* program) : m_name(QByteArray("app_") + program)
    {
        EXPECT_EQ(messageServiceStart(name), 1);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
        m_process.start(QString(HX_BUILD_DIR "/bin/") + program, {"--sysroot", root()});
        EXPECT_TRUE(hears(PLAYER_MSG_UP)) << program;
    }
    ~BesideOne() override
    {
        m_process.kill();
        m_process.waitForFinished();
        messageServiceStop();
    }
    int TryThreadMessage(msgObject& msg) override
    {
        m_heard.append({msg.message, unsigned(msg.lParam)});
        return 1;
    }
    bool hears(unsigned int message)
    {
        return kit::waitUntil([&] { return places(message) > 0; }, 10000);
    }
    // How many messages had come with it, 0 when it has not.
    int places(unsigned int message) const
    {
        for (int i = 0; i < m_heard.size(); ++i) {
            if (m_heard[i].message == message)
                return i + 1;
        }
        return 0;
    }
    chThreadBase* player() const { return msgGetThreadByName(m_name.constData()); }

    QList<tagHeard> m_heard;

private:
    QByteArray m_name;
    QProcess m_process;
};

class BesideTheMediaServer : public BesideOne
{
protected:
    BesideTheMediaServer() : BesideOne("app_hxMovie", "hxMedia") {}
};

class BesideTheMoviePlayer : public BesideOne
{
protected:
    BesideTheMoviePlayer() : BesideOne("app_hxMedia", "hxMovie") {}
};

} // namespace

TEST_F(BesideTheMediaServer, TheFirstFilmHearsThatItsReceiverIsBeingLoaded)
{
    VOICE_PARAM session = {};
    session.nVidRemotePort = PLAYER_VIDEO_PORT;
    session.nAudRemotePort = PLAYER_AUDIO_PORT;
    PLAYER_STREAMS streams = {};
    strcpy(streams.sdp.szVidName, "H264");
    streams.sdp.nVidPayload = 97;
    streams.sdp.nVidRate = 90000;
    const auto play = [&](unsigned int number) {
        m_heard.clear();
        msgPostMsgToThreadEx(player(), MEDIA_MSG_SESSION_START, 7, 0, int(sizeof session), &session);
        msgPostMsgToThreadEx(player(), MEDIA_MSG_STREAMS, PLAYER_PORTS(0, PLAYER_VIDEO_PORT), number,
                             int(sizeof streams), &streams);
        EXPECT_TRUE(hears(MOVIE_MSG_RECEIVER));
    };
    play(1);
    EXPECT_EQ(places(MOVIE_MSG_RECEIVER_COMES), 1) << "and before it is there";
    EXPECT_EQ(m_heard.first().nPlay, 1u);
    play(2);
    EXPECT_EQ(places(MOVIE_MSG_RECEIVER_COMES), 0) << "it is loaded once";
}

TEST_F(BesideTheMoviePlayer, AReceiverThatIsBeingLoadedMissesNothing)
{
    makeH264(hostPath("/rundata/film.mp4"), {{RED}, 25});
    QUdpSocket socket;
    ASSERT_TRUE(socket.bind(QHostAddress(QString(loopbackAddress())), 35620));
    const ADDR_PARAM film = [] {
        ADDR_PARAM param = {};
        strcpy(param.szFile, "/rundata/film.mp4");
        param.nRemoteVideoPort = 35620;
        return param;
    }();
    msgPostMsgToThreadEx(player(), MOVIE_MSG_PLAY_PARAM, PLAYER_THREAD_NONE, 0, int(sizeof film), &film);
    ASSERT_TRUE(hears(MEDIA_MSG_STREAMS));
    const unsigned int play = m_heard[places(MEDIA_MSG_STREAMS) - 1].nPlay;
    const auto tell = [&](unsigned int message) { msgPostMsgToThread(player(), message, 0, play); };
    tell(MOVIE_MSG_RECEIVER_COMES);
    EXPECT_FALSE(kit::waitUntil([&] { return socket.hasPendingDatagrams(); }, 2000))
        << "twice as long as it waits for one of which it knows nothing";
    tell(MOVIE_MSG_RECEIVER);
    EXPECT_TRUE(kit::waitUntil([&] { return socket.hasPendingDatagrams(); }, 5000));
}
