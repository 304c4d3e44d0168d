#include "players/movieService.h"
#include "host/services/players/filmFile.h"
#include "players/playerRecords.h"
#include "support/host/trace.h"
#include <QRandomGenerator>
#include <algorithm>
#include <cstring>

namespace {

const char* const kMedia = "app_hxMedia";
const char* const kPhone = "app_hxPhone";

void refuse(const msgObject& msg, const char* fault)
{
    nuxTrace(TRACE_NOTE, "message 0x%x of %d bytes is refused: %s", msg.message, msg.GetExtraSize(), fault);
}

tagTarget listTarget()
{
    tagTarget target;
    target.nSoundPort = PLAYER_AUDIO_PORT;
    target.nPicturePort = PLAYER_VIDEO_PORT;
    return target;
}

template <int size>
void copyText(char (&to)[size], const char* from)
{
    static_assert(size > 0);
    qstrncpy(to, from, size);
}

} // namespace

movieService::movieService() : m_nPlay(QRandomGenerator::global()->generate())
{
    m_later.setSingleShot(true);
}

int movieService::TryThreadMessage(msgObject& msg)
{
    switch (msg.message) {
    case MOVIE_MSG_GET_SDP:
        answerStreams(msg);
        return 1;
    case MOVIE_MSG_PLAY_PARAM:
        playOne(msg);
        return 1;
    case MOVIE_MSG_LIST_CLEAR:
        m_list.clear();
        return 1;
    case MOVIE_MSG_LIST_ADD:
        addToList(msg);
        return 1;
    case MOVIE_MSG_PLAY_LIST:
        playFromList(msg);
        return 1;
    case MOVIE_MSG_PREVIOUS:
    case MOVIE_MSG_NEXT:
        stepInList(msg.message == MOVIE_MSG_NEXT);
        return 1;
    case MOVIE_MSG_PAUSE:
    case MOVIE_MSG_RESUME:
        setPaused(msg.message == MOVIE_MSG_PAUSE);
        return 1;
    case MOVIE_MSG_STOP:
        stop();
        return 1;
    case MOVIE_MSG_RECEIVER:
    case MOVIE_MSG_RECEIVER_COMES:
        receiver(msg);
        return 1;
    case PLAYER_MSG_UP:
        mediaIsUp(msg);
        return 1;
    default:
        return 0;
    }
}

void movieService::answerStreams(msgObject& msg)
{
    QByteArray path;
    if (const char* fault = playerRecords::readPath(msg.GetExtraData(), msg.GetExtraSize(), path)) {
        refuse(msg, fault);
        return;
    }
    MOV_SDP sdp;
    if (!m_cache.find(path, sdp))
        return;
    msg.nResult = 1;
    msg.SetReplyData(&sdp, int(sizeof sdp));
}

void movieService::playOne(const msgObject& msg)
{
    ADDR_PARAM param;
    if (const char* fault = playerRecords::readPlay(msg.GetExtraData(), msg.GetExtraSize(), param)) {
        refuse(msg, fault);
        return;
    }
    stop();
    m_nListener = msg.wParam;
    tagTarget target;
    target.nSoundPort = param.nRemoteAudioPort;
    target.nPicturePort = param.nRemoteVideoPort;
    play(param.szFile, target);
}

void movieService::addToList(const msgObject& msg)
{
    QByteArray path;
    const char* fault = playerRecords::readPath(msg.GetExtraData(), msg.GetExtraSize(), path);
    if (!fault && !m_list.add(path))
        fault = "the list is full";
    if (fault)
        refuse(msg, fault);
}

void movieService::playFromList(const msgObject& msg)
{
    stop();
    if (m_list.isEmpty()) {
        nuxTrace(TRACE_NOTE, "the list to play is empty");
        return;
    }
    m_bList = true;
    m_nListener = msg.wParam;
    m_nFailed = 0;
    m_list.toFirst();
    startListSession();
    playPresent();
}

void movieService::stepInList(bool forward)
{
    if (!m_bList || m_list.isEmpty()) {
        nuxTrace(TRACE_NOTE, "no list plays");
        return;
    }
    if (forward)
        m_list.toNext();
    else
        m_list.toPrevious();
    m_nFailed = 0;
    playPresent();
}

// The state is that of the list: another film of it pauses too.
void movieService::setPaused(bool paused)
{
    m_bPaused = paused && (m_film || m_bList);
    if (!m_film)
        return;
    if (paused)
        m_film->pause();
    else
        m_film->resume();
}

void movieService::playPresent()
{
    if (!m_list.isEmpty())
        play(m_list.present(), listTarget());
}

// The player asks for the session of its list itself: the phone names only files.
void movieService::startListSession() const
{
    VOICE_PARAM session = {};
    copyText(session.szLocalIP, "127.0.0.1");
    copyText(session.szAudRemoteIP, "127.0.0.1");
    copyText(session.szVidRemoteIP, "127.0.0.1");
    session.nAudRemotePort = PLAYER_AUDIO_PORT;
    session.nVidRemotePort = PLAYER_VIDEO_PORT;
    if (!msgPostMsgToThreadEx(msgGetThreadByName(kMedia), MEDIA_MSG_SESSION_START, MEDIA_SESSION_LIST, 0,
                              int(sizeof session), &session))
        nuxTrace(TRACE_NOTE, "the media server is not there, the list plays without it");
}

void movieService::play(const QByteArray& device, const tagTarget& where)
{
    m_later.stop();
    m_film.reset();
    tagTarget target = where;
    target.nSource = ++m_nPlay;
    target.pSoundSocket = m_soundSocket.get();
    target.pPictureSocket = m_pictureSocket.get();
    QByteArray file;
    m_device = device;
    m_stat = {};
    const bool isThere = filmFileFind(device, file, m_stat);
    const bool isKnown = m_failed.isKnown(device, m_stat);
    if (m_failed.isHopeless(device, m_stat)) {
        later(0, &movieService::giveUp);
        return;
    }
    if (!isKnown)
        nuxTrace(isThere ? TRACE_DETAIL : TRACE_NOTE, isThere ? "play %s" : "%s: no file that can be read",
                 device.constData());
    if (!isThere) {
        ended(filmPlay::END::FAILED);
        return;
    }
    const filmPlay::tagHandlers handlers = {
        [this](const PLAYER_STREAMS& streams) { return announce(streams); },
        [this](filmPlay::END how) { ended(how); }};
    m_film = std::make_unique<filmPlay>(file, target, isKnown, handlers);
    if (m_bPaused)
        m_film->pause();
    m_film->start();
}

// As it was before.
void movieService::giveUp()
{
    forgetFilm(filmPlay::END::FAILED);
}

void movieService::stop()
{
    m_bPaused = false;
    m_later.stop();
    m_film.reset();
    if (m_bList)
        msgPostMsgToThread(msgGetThreadByName(kMedia), MEDIA_MSG_SESSION_STOP, MEDIA_SESSION_LIST, 0);
    m_bList = false;
}

bool movieService::announce(const PLAYER_STREAMS& streams)
{
    const tagTarget& target = m_film->target();
    return msgPostMsgToThreadEx(msgGetThreadByName(kMedia), MEDIA_MSG_STREAMS,
                                PLAYER_PORTS(target.nSoundPort, target.nPicturePort), target.nSource,
                                int(sizeof streams), &streams) != 0;
}

void movieService::receiver(const msgObject& msg)
{
    if (!m_film || msg.lParam != m_film->target().nSource)
        return;
    if (msg.message == MOVIE_MSG_RECEIVER)
        m_film->receiverReady();
    else
        m_film->receiverComes();
}

// A media server that has just started knows nothing of what plays.
void movieService::mediaIsUp(const msgObject& msg)
{
    if (msg.wParam != PLAYER_MEDIA || !m_film)
        return;
    if (m_bList)
        startListSession();
    if (m_film->isPrepared())
        announce(m_film->description());
}

void movieService::ended(filmPlay::END how)
{
    if (how == filmPlay::END::FAILED)
        m_failed.add(m_device, m_stat, m_film && m_film->isPrepared());
    else
        m_failed.remove(m_device);
    forgetFilm(how);
}

void movieService::forgetFilm(filmPlay::END how)
{
    if (m_bList) {
        listEnded(how);
        return;
    }
    const qint64 age = m_film ? m_film->msSinceStart() : 0;
    m_film.reset();
    const int wait = how == filmPlay::END::FAILED ? FAILED_MS : SKIP_MS;
    later(std::max(0, wait - int(std::min<qint64>(age, wait))), &movieService::report);
}

void movieService::listEnded(filmPlay::END how)
{
    m_film.reset();
    m_nFailed = how == filmPlay::END::FAILED ? m_nFailed + 1 : 0;
    if (m_nFailed >= m_list.size()) {
        nuxTrace(TRACE_NOTE, "nothing in the list can be played");
        later(FAILED_MS, &movieService::report);
        return;
    }
    m_list.toNext();
    later(m_nFailed ? SKIP_MS : 0, &movieService::playPresent);
}

void movieService::later(int ms, void (movieService::*step)())
{
    m_later.disconnect();
    QObject::connect(&m_later, &QTimer::timeout, &m_later, [this, step] { (this->*step)(); });
    m_later.start(ms);
}

void movieService::report()
{
    if (m_bList)
        stop();
    if (m_nListener != PLAYER_THREAD_NONE)
        msgPostMsgToThread(msgGetThreadByName(kPhone), MOVIE_MSG_FINISHED, 0, 0);
}
