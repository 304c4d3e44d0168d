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
    param.rcRemote = {region.left, region.top, region.right - region.left, region.bottom - region.top};
    param.rcLocal = {};
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
    if (pathFileExist(m_strFile) && GetMovieSDPFromFile(m_strFile, m_sdp))
        return true;
    m_sdp = defaultMovieSDP();
    return false;
}

bool nDeckVideoManager::GetMovieSDPFromFile(const char* file, MOV_SDP& sdp)
{
    nuxTrace(TRACE_DETAIL, "Get Movie SDP From File[%s]", file);
    chThreadRemote remote;
    if (!remote.CreateRemoteThread(kMovie))
        return false;
    chThreadBase* movie = remote.GetThread();
    msgObject* msg = movie->AllocThreadMessage(int(MOVIE_MSG_GET_SDP), true, int(strlen(file)) + 1, file);
    msg->wParam = threadNumber(kPhone);
    // The player is on this phone and answers at once; when it dies the wait ends.
    const bool answered = movie->EmitThreadMessage(*msg) && movie->WaitThreadMessageReply(*msg, -1);
    const bool taken = TakeReply(answered ? *msg : msgObject(), sdp);
    movie->CloseSendMessage(*msg);
    remote.DestroyRemoteThread();
    return taken;
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
    msgSendMsgToThreadEx(msgGetThreadByName(kMedia), MEDIA_MSG_SESSION_START, unsigned(m_nSessionId), 0,
                         int(sizeof m_ownParam), &m_ownParam);
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
    msgSendMsgToThread(msgGetThreadByName(kMedia), MEDIA_MSG_SESSION_STOP, unsigned(m_nSessionId), 0);
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
    const chString file = m_strFile;
    if (m_bPlaying)
        StopPlayVideo(0);
    m_strFile = file; // goes on in the other session
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
