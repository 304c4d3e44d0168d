#pragma once
// Who has the media server: a call that talks, or nobody. A call's session is told to the signage client,
// which has to stand back for it, or may lend its video channel; what the movie player says goes to that
// client as well. The sound of real lines is none of the session: a device opens once. User-interface thread.
#include "host/services/phone/tagCall.h"
#include "support/host/message.h"
#include "support/host/player.h"
#include <QTimer>

class callMedia : public chMsgProcesser
{
public:
    // The first even port of the calls' audio. The simulated phone's calls have no video, so that channel of
    // their sessions is free.
    enum : int { FIRST_AUDIO_PORT = 34000, PORTS_OF_A_CALL = 4, CALLS_WITH_PORTS = 100 };
    enum : int { WATCH_MS = 500 };

    callMedia();
    // The call began, changed or ended.
    void onCall(const tagCall& call);
    // A signage client that has just come up learns of the call that is there.
    void tellOfCall();
    int TryThreadMessage(msgObject& msg) override;

private:
    void begin(const tagCall& call);
    void end();
    void startSession();
    void moveSession();
    void tell();
    void watch();
    VOICE_PARAM toSend() const;
    int m_nSession = 0;       // id of the call that has the server; 0: none
    VOICE_PARAM m_param = {}; // shared with the signage client while the call talks
    VOICE_PARAM m_sent = {};
    QTimer m_watch;
};

// Has it follow the phone's calls from now on.
void callMediaInstall();
