#include "tests/players/playersTest.h"
#include "host/services/messages/messageBus.h"
#include "host/services/players/videoFrames.h"
#include "places.h"
#include "tests/players/films.h"
#include <cstring>
#include <sys/prctl.h>

namespace {

template <int size>
void copyText(char (&to)[size], const QByteArray& from)
{
    qstrncpy(to, from.constData(), size);
}

} // namespace

int playersTest::Ears::TryThreadMessage(msgObject& msg)
{
    nFinished += msg.message == MOVIE_MSG_FINISHED;
    nUp += msg.message == PLAYER_MSG_UP;
    return msg.message == MOVIE_MSG_FINISHED;
}

playersTest::playersTest()
{
    EXPECT_EQ(messageServiceStart("app_hxPhone"), 1);
}

playersTest::~playersTest()
{
    for (QProcess* process : {&m_movie, &m_media}) {
        process->kill();
        process->waitForFinished();
    }
    messageServiceStop();
}

void playersTest::start(QProcess& process, const char* program, const char* thread)
{
    process.setProcessChannelMode(getenv("HX_TRACE") ? QProcess::ForwardedChannels
                                                     : QProcess::MergedChannels);
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    const int before = up();
    process.start(QString(HX_BUILD_DIR "/bin/") + program, {"--sysroot", root()});
    EXPECT_TRUE(kit::waitUntil([&] { return up() > before && msgGetThreadByName(thread); }, 10000))
        << program;
}

void playersTest::startBoth()
{
    startMovie();
    startMedia();
}

MOV_SDP playersTest::ask(const QByteArray& path, bool* answered)
{
    MOV_SDP sdp = {};
    chThreadBase* thread = movie();
    EXPECT_TRUE(thread);
    msgObject* msg =
        thread->AllocThreadMessage(MOVIE_MSG_GET_SDP, true, int(path.size()) + 1, path.constData());
    msg->wParam = PLAYER_THREAD_PHONE;
    EXPECT_EQ(thread->EmitThreadMessage(*msg), 1);
    const int replied = thread->WaitThreadMessageReply(*msg, 5000);
    EXPECT_EQ(replied, 1);
    const bool isWhole = replied && msg->GetExtraSize() == int(sizeof sdp);
    if (isWhole)
        memcpy(&sdp, msg->GetExtraData(), sizeof sdp);
    else
        EXPECT_EQ(msg->GetExtraSize(), 0);
    if (answered)
        *answered = isWhole;
    thread->CloseSendMessage(*msg);
    return sdp;
}

void playersTest::expectNoPicture()
{
    tagVideoPicture old;
    EXPECT_TRUE(kit::waitUntil([&] { return !videoFrames::instance().newest(old); })) << "of another test";
}

void playersTest::playIn(const QByteArray& path, QSize size)
{
    startBoth();
    const MOV_SDP sdp = ask(path);
    play(path);
    startSession(sdp, {0, 0, size.width(), size.height()});
}

ADDR_PARAM playersTest::playParam(const QByteArray& path)
{
    ADDR_PARAM param = {};
    copyText(param.szFile, path);
    copyText(param.szLocalIP, "127.0.0.1");
    copyText(param.szRemoteIP, "127.0.0.1");
    param.nLocalAudioPort = 35800;
    param.nLocalVideoPort = 35820;
    param.nRemoteAudioPort = 35600;
    param.nRemoteVideoPort = 35620;
    return param;
}

VOICE_PARAM playersTest::sessionParam(const MOV_SDP& sdp, const MEDIA_RECT& place)
{
    VOICE_PARAM param = {};
    copyText(param.szLocalIP, "127.0.0.1");
    copyText(param.szAudRemoteIP, "127.0.0.1");
    copyText(param.szVidRemoteIP, "127.0.0.1");
    param.nAudLocalPort = 35800;
    param.nAudRemotePort = 35600;
    param.nVidLocalPort = 35820;
    param.nVidRemotePort = 35620;
    param.audDec.nPayload = param.audEnc.nPayload = sdp.nAudPayload;
    param.vidDec.nPayload = param.vidEnc.nPayload = sdp.nVidPayload;
    param.nAudRate = sdp.nAudRate;
    param.nVidRate = sdp.nVidRate;
    param.nChannels = sdp.nChannels;
    copyText(param.szAudMime, sdp.szAudName);
    copyText(param.szVidMime, sdp.szVidName);
    copyText(param.szAudSdpParam, sdp.szAudParam);
    copyText(param.szVidSdpParam, sdp.szVidParam);
    param.rcRemote = place;
    return param;
}

void playersTest::play(const QByteArray& path)
{
    EXPECT_EQ(post(movie(), MOVIE_MSG_PLAY_PARAM, playParam(path), PLAYER_THREAD_PHONE), 1);
}

void playersTest::startSession(const MOV_SDP& sdp, const MEDIA_RECT& place)
{
    const VOICE_PARAM session = sessionParam(sdp, place);
    EXPECT_EQ(msgSendMsgToThreadEx(media(), MEDIA_MSG_SESSION_START, 7, 0, int(sizeof session), &session), 1);
}

void playersTest::playList(const QList<QByteArray>& paths)
{
    msgPostMsgToThread(movie(), MOVIE_MSG_LIST_CLEAR, 0, 0);
    for (const QByteArray& path : paths)
        msgPostMsgToThreadEx(movie(), MOVIE_MSG_LIST_ADD, 0, 0, int(path.size()) + 1, path.constData());
    msgPostMsgToThread(movie(), MOVIE_MSG_PLAY_LIST, PLAYER_THREAD_PHONE, 0);
}

bool playersTest::hasSaid(const QByteArray& text, int ms)
{
    return kit::waitUntil([&] { return said().contains(text); }, ms);
}

QByteArray playersTest::said()
{
    m_said += m_movie.readAll() + m_media.readAll();
    return m_said;
}
