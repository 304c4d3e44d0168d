#include "host/desktop/callMedia.h"
#include "host/desktop/displayClient.h"
#include "host/services/phone/phoneService.h"
#include "support/host/module.h"
#include "support/host/net.h"
#include "support/host/player.h"
#include <cstring>

namespace {

constexpr int kAudioPayload = 8;
constexpr int kAudioRate = 8000;
const char* const kAudioName = "PCMA";
const char* const kMediaServer = "app_hxMedia";

template <int Size>
void setText(char (&field)[Size], const char* text)
{
    qstrncpy(field, text, Size);
}

MEDIA_CODEC audioCodec()
{
    MEDIA_CODEC codec = {};
    codec.nPayload = kAudioPayload;
    setText(codec.szName, kAudioName);
    return codec;
}

VOICE_PARAM sessionOf(const tagCall& call)
{
    VOICE_PARAM param = {};
    const chString address = addr2String(netGetLocalIPv4());
    setText(param.szLocalIP, address);
    setText(param.szAudRemoteIP, address);
    setText(param.szVidRemoteIP, address);
    const int port =
        callMedia::FIRST_AUDIO_PORT + call.nId % callMedia::CALLS_WITH_PORTS * callMedia::PORTS_OF_A_CALL;
    param.nAudLocalPort = uint16_t(port);
    param.nAudRemotePort = uint16_t(port + 2);
    param.audEnc = param.audDec = audioCodec();
    param.nAudRate = kAudioRate;
    param.nChannels = 1;
    setText(param.szAudMime, kAudioName);
    return param;
}

} // namespace

callMedia::callMedia()
{
    m_watch.setInterval(WATCH_MS);
    QObject::connect(&m_watch, &QTimer::timeout, [this] { watch(); });
}

void callMedia::onCall(const tagCall& call)
{
    if (call.eState == CALL_TALKING && m_nSession == 0) {
        begin(call);
        return;
    }
    if (call.eState != CALL_ENDED || call.nId != m_nSession)
        return;
    end();
    for (const tagCall& other : phoneService::instance().calls()) {
        if (other.eState == CALL_TALKING && m_nSession == 0)
            begin(other);
    }
}

// The signage client first: it stops what it plays, and may put its video into the record.
void callMedia::begin(const tagCall& call)
{
    m_nSession = call.nId;
    m_param = sessionOf(call);
    tell();
    startSession();
    m_watch.start();
}

// The signage client keeps off the sound of either kind of call by the ports of the record.
VOICE_PARAM callMedia::toSend() const
{
    VOICE_PARAM param = m_param;
    if (phoneService::instance().backend().hasOwnSound())
        param.nAudLocalPort = param.nAudRemotePort = 0;
    return param;
}

void callMedia::startSession()
{
    m_sent = toSend();
    msgPostMsgToThreadEx(msgGetThreadByName(kMediaServer), MEDIA_MSG_SESSION_START, unsigned(m_nSession), 0,
                         sizeof(m_sent), &m_sent);
}

// The client puts a video into the record when it comes to one, and moves its picture, and says nothing,
// unless the video plays already.
void callMedia::watch()
{
    VOICE_PARAM moved = toSend();
    moved.rcRemote = m_sent.rcRemote;
    if (memcmp(&moved, &m_sent, sizeof(moved)) != 0)
        startSession();
    else if (memcmp(&m_param.rcRemote, &m_sent.rcRemote, sizeof(m_sent.rcRemote)) != 0)
        moveSession();
}

void callMedia::moveSession()
{
    m_sent = toSend();
    msgPostMsgToThreadEx(msgGetThreadByName(kMediaServer), MEDIA_MSG_SESSION_CHANGE, unsigned(m_nSession), 0,
                         sizeof(m_sent), &m_sent);
}

void callMedia::end()
{
    msgPostMsgToThread(msgGetThreadByName(kMediaServer), MEDIA_MSG_SESSION_STOP, unsigned(m_nSession), 0);
    m_nSession = 0;
    m_watch.stop();
    tell();
}

void callMedia::tellOfCall()
{
    if (m_nSession)
        tell();
}

void callMedia::tell()
{
    if (hostModule().setPlayParam)
        hostModule().setPlayParam(m_nSession ? &m_param : nullptr, m_nSession);
}

int callMedia::TryThreadMessage(msgObject& msg)
{
    if (msg.message == MOVIE_MSG_FINISHED && hostModule().onMovieMessage)
        hostModule().onMovieMessage(msg);
    if (msg.message == PLAYER_MSG_UP && msg.wParam == PLAYER_MEDIA && m_nSession)
        startSession();
    // The film may be that of a page.
    return 0;
}

void callMediaInstall()
{
    static callMedia* media = nullptr;
    if (media)
        return;
    media = new callMedia;
    phoneService::instance().addCallListener([](const tagCall& call) { media->onCall(call); });
    // While it is off the client hears nothing.
    QObject::connect(&displayClient::instance(), &displayClient::enabledChanged, [](bool enabled) {
        if (enabled)
            media->tellOfCall();
    });
}
