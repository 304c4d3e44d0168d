#pragma once
// Plays the video of a layout: the movie player streams the file to ports of this phone, and the media server
// shows what arrives there. Every call does nothing, and answers 0, while the signage client is disabled, but
// for StopPlayVideo(1). User-interface thread.
#include "signage/playerQuestion.h"
#include "support/host/api.h"
#include "support/host/geometry.h"
#include "support/host/message.h"
#include "support/host/player.h"
#include "support/text/chString.h"
#include <cstdint>

class nDeckVideoManager : public chMsgProcesser
{
public:
    nDeckVideoManager();

    // file: device path, empty or null for none. A playing movie is replaced at once. Waits a frame or two
    // for the player's description of the file; one that comes later is taken when the movie starts.
    bool SetPlayFile(const char* file);
    // Pixels of the screen; width is right - left, height bottom - top. Moved to what the video plane can
    // show: GetPlayRegion() tells where to.
    bool SetPlayRegion(chRect region);
    chRect GetPlayRegion() const { return m_rcPlay; }
    // Half a second after the last call, when nothing speaks against it.
    void StartPlayVideo();
    void PausePlayVideo(); // a later start is quick
    // bForce non-zero: also while the client is disabled.
    void StopPlayVideo(int bForce);
    // A call takes the media server: its record stays the caller's, and lives until the next call of this.
    // Null: no call.
    HX_MODULE_API bool SetPlayParam(VOICE_PARAM* param, int sessionId);
    bool IsMoviePlaying() const;
    // What the player says; 1 when it was taken.
    HX_MODULE_API int OnMovieAdMessage(msgObject& msg);
    void InitializeManager();
    void UninitializeManager();
    int TryThreadMessage(msgObject& msg) override;

private:
    bool GetMovieSDP();
    bool GetMovieSDPFromFile(const char* file, MOV_SDP& sdp);
    void TakeLateReply();
    static bool TakeReply(const msgObject& reply, MOV_SDP& sdp);
    int OnTimerStartPlayVideo(msgObject& msg);
    bool IsCallInTheWay() const;
    bool StartMovie();
    bool SetVoiceParam(VOICE_PARAM& param, const chString& file);
    bool HasSDP();
    bool AddAudio(VOICE_PARAM& param) const;
    bool AddVideo(VOICE_PARAM& param) const;
    bool SetAddrParam(const VOICE_PARAM& param, const chString& file, bool audio, bool video);
    bool SetAddrFile(const chString& file);
    bool PlayMovie(const char* thread, const ADDR_PARAM& param);
    void PlayNextMovFile();
    void StopMovie();
    void StartOwnSession();
    void StopOwnSession();
    void TellMedia(unsigned int message, int size, const void* data) const;
    void OnPlayerUp(unsigned int program);
    void ForgetOwnSession();
    bool IsOwnParam() const { return m_pVoiceParam == &m_ownParam; }

    int32_t m_bPlaying = 0;
    chString m_strFile;
    MOV_SDP m_sdp = {};
    playerQuestion m_question; // after the streams of the file
    ADDR_PARAM m_addrParam = {};
    chRect m_rcPlay;
    VOICE_PARAM* m_pVoiceParam = nullptr; // a call's, or m_ownParam; null: none
    VOICE_PARAM m_ownParam = {};
    int32_t m_nSessionId = -1;
    int32_t m_bMakeUpParam = 0; // the parameters are ready
    chThreadTimer m_timer;
};

HX_MODULE_API nDeckVideoManager& GetNDeckVideoManager();
