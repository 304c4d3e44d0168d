#include "players/mediaService.h"
#include "players/playerRecords.h"
#include "support/host/trace.h"

namespace {

const char* const kMovie = "app_hxMovie";

void refuse(const msgObject& msg, const char* fault)
{
    nuxTrace(TRACE_NOTE, "message 0x%x of %d bytes is refused: %s", msg.message, msg.GetExtraSize(), fault);
}

} // namespace

mediaService::mediaService(pictureScreen& screen) : m_elements([this] { applySoon(); }), m_screen(screen)
{
    m_apply.setSingleShot(true);
    QObject::connect(&m_apply, &QTimer::timeout, &m_apply, [this] { apply(); });
}

int mediaService::TryThreadMessage(msgObject& msg)
{
    switch (msg.message) {
    case MEDIA_MSG_SESSION_START:
        startSession(msg);
        return 1;
    case MEDIA_MSG_SESSION_CHANGE:
        changeSession(msg);
        return 1;
    case MEDIA_MSG_SESSION_STOP:
        stopSession(msg);
        return 1;
    case MEDIA_MSG_STREAMS:
        takeStreams(msg);
        return 1;
    case MEDIA_MSG_PICTURE_SIZE:
        takeSize(msg);
        return 1;
    case MEDIA_MSG_VOLUME:
        takeVolume(msg);
        return 1;
    case MEDIA_MSG_MUTE:
        setSound(m_nVolume, msg.wParam != 0);
        return 1;
    case PLAYER_MSG_UP:
        movieIsUp(msg);
        return 1;
    default:
        return 0;
    }
}

void mediaService::startSession(msgObject& msg)
{
    VOICE_PARAM session;
    if (const char* fault = playerRecords::readSession(msg.GetExtraData(), msg.GetExtraSize(), session)) {
        refuse(msg, fault);
        return;
    }
    msg.nResult = 1;
    m_session = session;
    m_nId = msg.wParam;
    m_bSession = true;
    m_bOwed = true;
    setSound(m_nVolume, false);
    setPlace(session.rcRemote);
    // While the player reads the file. A call without pictures needs none of them.
    if (session.nVidRemotePort != 0)
        m_elements.load();
    applySoon();
}

void mediaService::changeSession(const msgObject& msg)
{
    VOICE_PARAM session;
    const char* fault = playerRecords::readSession(msg.GetExtraData(), msg.GetExtraSize(), session);
    if (!fault && !m_bSession)
        fault = "there is no session";
    if (fault) {
        refuse(msg, fault);
        return;
    }
    m_session.rcRemote = session.rcRemote;
    setPlace(session.rcRemote);
    m_screen.moveFilm(m_place);
}

void mediaService::stopSession(const msgObject& msg)
{
    // The player ends its own session late, when the phone may have started another one.
    if (!m_bSession || (msg.wParam == MEDIA_SESSION_LIST && m_nId != MEDIA_SESSION_LIST))
        return;
    m_bSession = false;
    m_bAnnounced = false;
    dropStreams();
}

void mediaService::takeStreams(const msgObject& msg)
{
    PLAYER_STREAMS streams;
    uint16_t audio = 0;
    uint16_t video = 0;
    const char* fault = playerRecords::readStreams(msg.GetExtraData(), msg.GetExtraSize(), streams);
    if (!fault)
        fault = playerRecords::readPorts(msg.wParam, audio, video);
    if (fault) {
        refuse(msg, fault);
        return;
    }
    m_streams = streams;
    m_nSoundPort = audio;
    m_nPicturePort = video;
    m_nPlay = msg.lParam;
    m_bAnnounced = audio != 0 || video != 0;
    m_bOwed = m_bAnnounced;
    if (!m_bAnnounced)
        dropStreams(); // nothing comes any more
    else if (m_bSession)
        applySoon();
}

void mediaService::takeSize(const msgObject& msg)
{
    const QSize size(int(msg.wParam), int(msg.lParam));
    if (size.width() <= 0 || size.height() <= 0 || size.width() > playerRecords::MAX_WIDTH ||
        size.height() > playerRecords::MAX_HEIGHT) {
        refuse(msg, "the size is out of range");
        return;
    }
    m_screen.setSurface(size);
}

void mediaService::takeVolume(const msgObject& msg)
{
    if (msg.wParam > soundVolume::LOUDEST) {
        refuse(msg, "the volume is out of range");
        return;
    }
    setSound(int(msg.wParam), m_bMute);
}

void mediaService::setSound(int volume, bool mute)
{
    m_nVolume = volume;
    m_bMute = mute;
    if (m_soundStream)
        m_soundStream->setVolume(volume, mute);
}

// A player that has just started sends nothing: what the one before sent is over.
void mediaService::movieIsUp(const msgObject& msg)
{
    if (msg.wParam != PLAYER_MOVIE)
        return;
    m_bAnnounced = false;
    dropStreams();
}

void mediaService::applySoon()
{
    m_apply.start(0);
}

// The player may send less than the session takes: beside a call a film has no sound.
bool mediaService::isAnnounced() const
{
    const bool isSound = m_nSoundPort == 0 || m_nSoundPort == m_session.nAudRemotePort;
    const bool isPicture = m_nPicturePort == 0 || m_nPicturePort == m_session.nVidRemotePort;
    return m_bAnnounced && isSound && isPicture;
}

tagIncoming mediaService::pictureToTake() const
{
    const int port = m_session.nVidRemotePort;
    if (!isAnnounced() || m_nPicturePort == 0)
        return {rtpDescription::pictureOf(m_session), port};
    return {rtpDescription::pictureOf(m_streams.sdp), port, m_streams.nPictureFrom, m_streams.nQuarterTurns,
            m_streams.bDecodeOrder != 0};
}

tagIncoming mediaService::soundToTake() const
{
    const int port = m_session.nAudRemotePort;
    if (!isAnnounced() || m_nSoundPort == 0)
        return {rtpDescription::soundOf(m_session), port};
    return {rtpDescription::soundOf(m_streams.sdp), port, m_streams.nSoundFrom};
}

void mediaService::apply()
{
    if (m_elements.areComing()) {
        if (isAnnounced() && m_bOwed)
            tellMovie(MOVIE_MSG_RECEIVER_COMES);
        return;
    }
    renew(m_pictureStream, pictureToTake(), true);
    renew(m_soundStream, soundToTake(), false);
    if (isAnnounced() && m_bOwed)
        tellMovie(MOVIE_MSG_RECEIVER);
    m_bOwed = m_bOwed && !isAnnounced();
}

void mediaService::tellMovie(unsigned int message) const
{
    msgPostMsgToThread(msgGetThreadByName(kMovie), message, PLAYER_PORTS(m_nSoundPort, m_nPicturePort),
                       m_nPlay);
}

void mediaService::renew(std::unique_ptr<mediaStream>& stream, const tagIncoming& wanted, bool isPicture)
{
    if (stream && stream->isFor(wanted) && !stream->hasFailed() && stream->takeFrom(wanted.nFrom))
        return;
    stream.reset();
    if (wanted.nPort == 0 || wanted.stream.name.isEmpty())
        return;
    mediaStream::PictureHandler onPicture;
    if (isPicture)
        onPicture = [this](const GstVideoFrame& frame) { showPicture(frame); };
    stream = std::make_unique<mediaStream>(wanted, m_clock, onPicture);
    stream->setVolume(m_nVolume, m_bMute);
    if (!stream->start() || !stream->takeFrom(wanted.nFrom))
        stream.reset();
}

void mediaService::setPlace(const MEDIA_RECT& rect)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_place = QRect(rect.x, rect.y, rect.width, rect.height);
}

// What was received but is not due yet goes too.
void mediaService::dropStreams()
{
    m_apply.stop();
    m_soundStream.reset();
    m_pictureStream.reset();
    m_screen.endFilm();
}

void mediaService::showPicture(const GstVideoFrame& frame)
{
    QRect place;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        place = m_place;
    }
    m_screen.showFilm(frame, place, m_scaler);
}
