#include "signage/nDeckVideoManager.h"
#include "media/videoAssistant.h"
#include "signage/movieParam.h"
#include "signage/nDeckScreen.h"
#include "signage/serverConfig.h"
#include "support/file/path.h"
#include "support/host/net.h"
#include "support/host/phone.h"
#include "support/host/trace.h"

namespace {

const char* const kMovie = "app_hxMovie";
const char* const kMedia = "app_hxMedia";
const char* const kPhone = "app_hxPhone";

constexpr int kAlignment = 16; // pixels of the video plane
constexpr int kSettleMs = 500; // a burst of show and resize events is over
constexpr int kNoSession = -1;
constexpr int kOwnSession = 0;
constexpr int kAudioLocalPort = 35800;
constexpr int kAudioRemotePort = 35600;
constexpr int kVideoPortOffset = 20;

unsigned int threadNumber(const char* name)
{
    return playerThreadNumber(msgGetThreadByName(name));
}

bool isClientEnabled()
{
    return nDeckIsEnabled();
}

bool isShownInTalk()
{
    return GetNDeckScreen().GetWindowType() == NDECK_WINDOW_TALK;
}

int alignedUp(int value)
{
    const int over = (value % kAlignment + kAlignment) % kAlignment;
    return over ? value + kAlignment - over : value;
}

bool isEmptyRegion(const chRect& region)
{
    return region.right <= region.left || region.bottom <= region.top;
}

void setVideoRects(VOICE_PARAM& param, const chRect& region)
{
    param.rcLocal = {};
    param.rcRemote = {};
    if (!isEmptyRegion(region))
        param.rcRemote = {region.left, region.top, region.right - region.left, region.bottom - region.top};
}

template <int SIZE>
bool fillAddress(char (&field)[SIZE])
{
    return !field[0] && copyPlayerText(field, addr2String(netGetLocalIPv4()));
}

// Each that is empty: player and server talk over the phone's own address.
bool fillAddresses(VOICE_PARAM& param)
{
    const bool local = fillAddress(param.szLocalIP);
    const bool audio = fillAddress(param.szAudRemoteIP);
    const bool video = fillAddress(param.szVidRemoteIP);
    return local || audio || video;
}

void setCodec(MEDIA_CODEC& codec, int payload, const char* name)
{
    codec.nPayload = payload;
    copyPlayerText(codec.szName, name);
}

[[maybe_unused]] const bool s_talkWindowTest = (videoAssistant::SetTalkWindowTest(isShownInTalk), true);

} // namespace

// Never destroyed: the display stops its video when it ends itself.
nDeckVideoManager& GetNDeckVideoManager()
{
    static nDeckVideoManager* manager = new nDeckVideoManager;
    return *manager;
}

nDeckVideoManager::nDeckVideoManager()
{
    InitializeManager();
}

void nDeckVideoManager::InitializeManager()
{
    if (isClientEnabled())
        GetMovieSDP();
}

void nDeckVideoManager::UninitializeManager()
{
    if (!isClientEnabled())
        return;
    StopPlayVideo(1);
    m_sdp = {};
}

bool nDeckVideoManager::GetMovieSDP()
{
    m_question.drop();
    if (pathFileExist(m_strFile) && GetMovieSDPFromFile(m_strFile, m_sdp))
        return true;
    m_sdp = defaultMovieSDP();
    return false;
}

bool nDeckVideoManager::GetMovieSDPFromFile(const char* file, MOV_SDP& sdp)
{
    nuxTrace(TRACE_DETAIL, "Get Movie SDP From File[%s]", file);
    if (!m_question.ask(kMovie, MOVIE_MSG_GET_SDP, threadNumber(kPhone), int(strlen(file)) + 1, file))
        return false;
    msgObject reply;
    return m_question.wait(reply) && TakeReply(reply, sdp);
}

// A player that was busy may have answered by now; until then the default stands.
void nDeckVideoManager::TakeLateReply()
{
    msgObject reply;
    if (m_question.isOpen() && m_question.wait(reply))
        TakeReply(reply, m_sdp);
}

bool nDeckVideoManager::TakeReply(const msgObject& reply, MOV_SDP& sdp)
{
    if (reply.GetExtraSize() != int(sizeof sdp)) {
        nuxTrace(TRACE_DETAIL, "SDP Extra Size(%d != %d) Error!", reply.GetExtraSize(), int(sizeof sdp));
        return false;
    }
    if (!reply.GetExtraData()) {
        nuxTrace(TRACE_DETAIL, "SDP Extra Data Error!");
        return false;
    }
    memcpy(&sdp, reply.GetExtraData(), sizeof sdp);
    endMovieTexts(sdp);
    nuxTrace(TRACE_DETAIL, "Print Movie SDP");
    PrintMovieSDP(sdp);
    return true;
}

bool nDeckVideoManager::SetPlayFile(const char* file)
{
    if (!isClientEnabled())
        return false;
    if (!m_bPlaying) {
        m_strFile = file;
        GetMovieSDP();
        return true;
    }
    StopMovie();
    m_strFile = file;
    if (SetAddrFile(m_strFile))
        PlayMovie(kPhone, m_addrParam);
    return true;
}

bool nDeckVideoManager::SetPlayRegion(chRect region)
{
    if (!isClientEnabled())
        return false;
    region.left = alignedUp(region.left);
    const int width = region.right - region.left;
    if (width % kAlignment)
        region.right = region.left + width / kAlignment * kAlignment;
    m_rcPlay = region;
    if (!m_pVoiceParam)
        return true;
    setVideoRects(*m_pVoiceParam, m_rcPlay);
    if (m_bPlaying)
        msgPostMsgToThreadEx(msgGetThreadByName(kMedia), MEDIA_MSG_SESSION_CHANGE, unsigned(m_nSessionId), 0,
                             int(sizeof *m_pVoiceParam), m_pVoiceParam);
    return true;
}

void nDeckVideoManager::StartPlayVideo()
{
    if (isClientEnabled())
        m_timer.SetTimer(kSettleMs, nullptr, this, &nDeckVideoManager::OnTimerStartPlayVideo);
}

int nDeckVideoManager::OnTimerStartPlayVideo(msgObject&)
{
    m_timer.KillTimer();
    if (!isClientEnabled())
        return 1;
    if (isEmptyRegion(m_rcPlay)) {
        nuxTrace(TRACE_DETAIL, "Play Region(%d, %d, %d, %d) is invalid!", m_rcPlay.left, m_rcPlay.top,
                 m_rcPlay.right, m_rcPlay.bottom);
        return 1;
    }
    nuxTrace(TRACE_DETAIL, "StartPlayVideo!");
    if (!msgGetThreadByName(kMovie))
        return 1;
    if (!m_pVoiceParam) {
        nuxTrace(TRACE_DETAIL, "---------------VoiceParam is NuLL------");
        m_ownParam = {};
        m_pVoiceParam = &m_ownParam;
        m_nSessionId = kOwnSession;
        m_bMakeUpParam = 0;
    }
    if (IsCallInTheWay()) {
        nuxTrace(TRACE_DETAIL, "---------------not start----------");
        return 1;
    }
    const bool bOk = StartMovie();
    nuxTrace(TRACE_DETAIL, "m_bMakeUpParam = %d, bOk = %d movelpay = %s", m_bMakeUpParam, bOk,
             m_addrParam.szFile);
    if (bOk && IsOwnParam())
        StartOwnSession();
    return 1;
}

// A call owns the media server; inside of its session video plays only when that is wanted.
bool nDeckVideoManager::IsCallInTheWay() const
{
    const bool isWanted = !IsOwnParam() && nDeckPlaysVideoInTalk();
    return !isWanted && phone_GetCallTotal() && phone_IsPhoneInTalk();
}

bool nDeckVideoManager::StartMovie()
{
    if (m_bMakeUpParam)
        return !m_strFile.IsEmpty() && SetAddrFile(m_strFile) && PlayMovie(kPhone, m_addrParam);
    m_bMakeUpParam = SetVoiceParam(*m_pVoiceParam, m_strFile);
    return m_bMakeUpParam && PlayMovie(kPhone, m_addrParam);
}

bool nDeckVideoManager::SetVoiceParam(VOICE_PARAM& param, const chString& file)
{
    if (!NUX_ASSERT(msgGetThreadByName(kMovie) != nullptr, "Movie Play isn't running!") ||
        !NUX_ASSERT(pathFileExist(file), "File isn't exist!") || !HasSDP())
        return false;
    const bool addresses = fillAddresses(param);
    const bool audio = AddAudio(param);
    const bool video = AddVideo(param);
    if ((audio || video) && !SetAddrParam(param, file, audio, video))
        return false;
    return addresses || audio || video;
}

bool nDeckVideoManager::HasSDP()
{
    TakeLateReply();
    if (!isAllZero(m_sdp))
        return true;
    nuxTrace(TRACE_DETAIL, "SDP is NULL, ReGet Movie SDP!");
    const bool found = GetMovieSDP();
    nuxTrace(TRACE_DETAIL, found ? "Get New SDP Successfully!" : "Still Can't Get New SDP!");
    return found;
}

bool nDeckVideoManager::AddAudio(VOICE_PARAM& param) const
{
    if (param.nAudLocalPort && param.nAudRemotePort)
        return false;
    nuxTrace(TRACE_DETAIL, "Add Voice Param Audio!");
    param.nAudRemotePort = kAudioRemotePort;
    param.nAudLocalPort = kAudioLocalPort;
    const char* name = audioCodecName(m_sdp.szAudName);
    if (!name) {
        nuxTrace(TRACE_NOTE, "Can't Find Fit Audio Codec Name,Use Default PCMA!");
        name = "PCMA";
    }
    setCodec(param.audEnc, m_sdp.nAudPayload, name);
    setCodec(param.audDec, m_sdp.nAudPayload, name);
    param.nAudRate = m_sdp.nAudRate;
    param.nChannels = m_sdp.nChannels;
    copyPlayerText(param.szAudMime, m_sdp.szAudName);
    copyPlayerText(param.szAudSdpParam, m_sdp.szAudParam);
    return true;
}

bool nDeckVideoManager::AddVideo(VOICE_PARAM& param) const
{
    if (param.nVidLocalPort && param.nVidRemotePort)
        return false;
    nuxTrace(TRACE_DETAIL, "Add Voice Param Video!");
    param.nVidRemotePort = uint16_t(param.nAudRemotePort + kVideoPortOffset);
    param.nVidLocalPort = uint16_t(param.nAudLocalPort + kVideoPortOffset);
    const char* name = videoCodecName(m_sdp.szVidName);
    setCodec(param.vidEnc, m_sdp.nVidPayload, name);
    setCodec(param.vidDec, m_sdp.nVidPayload, name);
    param.nVidRate = m_sdp.nVidRate;
    copyPlayerText(param.szVidMime, m_sdp.szVidName);
    copyPlayerText(param.szVidSdpParam, m_sdp.szVidParam);
    setVideoRects(param, m_rcPlay);
    return true;
}

bool nDeckVideoManager::SetAddrParam(const VOICE_PARAM& param, const chString& file, bool audio, bool video)
{
    m_addrParam = {};
    if (!SetAddrFile(file))
        return false;
    copyPlayerText(m_addrParam.szLocalIP, param.szLocalIP);
    copyPlayerText(m_addrParam.szRemoteIP, param.szVidRemoteIP);
    if (audio) {
        m_addrParam.nLocalAudioPort = param.nAudLocalPort;
        m_addrParam.nRemoteAudioPort = param.nAudRemotePort;
    }
    if (video) {
        m_addrParam.nLocalVideoPort = param.nVidLocalPort;
        m_addrParam.nRemoteVideoPort = param.nVidRemotePort;
    }
    nuxTrace(TRACE_DETAIL, "Print Movie Param");
    PrintMovieParam(m_addrParam);
    return true;
}

bool nDeckVideoManager::SetAddrFile(const chString& file)
{
    if (copyPlayerText(m_addrParam.szFile, file))
        return true;
    nuxTrace(TRACE_NOTE, "Movie path is too long: %s", file.GetText());
    return false;
}

bool nDeckVideoManager::PlayMovie(const char* thread, const ADDR_PARAM& param)
{
    m_bPlaying = msgPostMsgToThreadEx(msgGetThreadByName(kMovie), MOVIE_MSG_PLAY_PARAM, threadNumber(thread),
                                      0, int(sizeof param), &param);
    return m_bPlaying != 0;
}

int nDeckVideoManager::OnMovieAdMessage(msgObject& msg)
{
    if (!isClientEnabled() || msg.message != MOVIE_MSG_FINISHED)
        return 0;
    PlayNextMovFile();
    return 1;
}

// The file plays again, until something stops it.
void nDeckVideoManager::PlayNextMovFile()
{
    if (!m_bPlaying)
        return;
    if (isAllZero(m_addrParam)) {
        nuxTrace(TRACE_DETAIL, "Movie Play Param is NULL!");
        return;
    }
    if (SetAddrFile(m_strFile))
        PlayMovie(kPhone, m_addrParam);
}

void nDeckVideoManager::StopMovie()
{
    m_bPlaying = 0;
    msgPostMsgToThread(msgGetThreadByName(kMovie), MOVIE_MSG_STOP, threadNumber(kPhone), 0);
}

void nDeckVideoManager::StartOwnSession()
{
    dev_set_output_mute(1);
    TellMedia(MEDIA_MSG_SESSION_START, int(sizeof m_ownParam), &m_ownParam);
}

void nDeckVideoManager::TellMedia(unsigned int message, int size, const void* data) const
{
    playerQuestion question;
    msgObject done;
    if (question.ask(kMedia, message, unsigned(m_nSessionId), size, data))
        question.wait(done);
}

int nDeckVideoManager::TryThreadMessage(msgObject& msg)
{
    if (msg.message == PLAYER_MSG_UP)
        OnPlayerUp(msg.wParam);
    return 0;
}

// A player that took the place of one that died knows nothing of the movie.
void nDeckVideoManager::OnPlayerUp(unsigned int program)
{
    if (!IsMoviePlaying())
        return;
    if (program == PLAYER_MOVIE)
        PlayMovie(kPhone, m_addrParam);
    else if (program == PLAYER_MEDIA && IsOwnParam())
        StartOwnSession();
}

void nDeckVideoManager::StopOwnSession()
{
    TellMedia(MEDIA_MSG_SESSION_STOP, 0, nullptr);
    dev_set_output_mute(0);
}

void nDeckVideoManager::PausePlayVideo()
{
    if (!isClientEnabled())
        return;
    nuxTrace(TRACE_DETAIL, "PausePlayVideo!");
    m_timer.KillTimer();
    if (!m_bPlaying)
        return;
    StopMovie();
    if (IsOwnParam())
        StopOwnSession();
}

void nDeckVideoManager::StopPlayVideo(int bForce)
{
    if (!bForce && !isClientEnabled())
        return;
    m_timer.KillTimer();
    const bool wasPlaying = m_bPlaying != 0;
    if (wasPlaying)
        StopMovie();
    if (wasPlaying && IsOwnParam())
        StopOwnSession();
    // A movie that was paused must not come back with the next file's start.
    if (IsOwnParam())
        ForgetOwnSession();
    m_strFile = chString();
    m_question.drop();
}

void nDeckVideoManager::ForgetOwnSession()
{
    m_ownParam = {};
    m_nSessionId = kNoSession;
    m_pVoiceParam = nullptr;
    m_rcPlay = chRect();
    m_bMakeUpParam = 0;
    m_addrParam = {};
}

bool nDeckVideoManager::SetPlayParam(VOICE_PARAM* param, int sessionId)
{
    if (!isClientEnabled())
        return false;
    nuxTrace(TRACE_DETAIL, "SetPlayParam(%p, %d)!", static_cast<void*>(param), sessionId);
    const bool isNoCall = !param;
    if (isNoCall) {
        m_ownParam = {};
        m_bMakeUpParam = 0;
        param = &m_ownParam;
        sessionId = kOwnSession;
    }
    if (param == m_pVoiceParam && sessionId == m_nSessionId)
        return true;
    // Goes on in the other session, where it was.
    const chString file = m_strFile;
    const chRect region = m_rcPlay;
    if (m_bPlaying)
        StopPlayVideo(0);
    m_strFile = file;
    m_rcPlay = region;
    m_pVoiceParam = param;
    m_nSessionId = sessionId;
    if (isNoCall || nDeckPlaysVideoInTalk())
        m_bMakeUpParam = SetVoiceParam(*m_pVoiceParam, m_strFile);
    return true;
}

bool nDeckVideoManager::IsMoviePlaying() const
{
    return m_bPlaying && isClientEnabled();
}
