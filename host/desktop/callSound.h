#pragma once
// What is heard of calls: the ring of one that comes in, as loud as it is set, and the volume of one that
// talks. User-interface thread.
#include "host/services/phone/tagCall.h"
#include "support/host/message.h"
#include "support/host/phone.h"

class callSound : public chMsgProcesser
{
public:
    static callSound& instance();
    // The call began, changed or ended.
    void onCall(const tagCall& call);
    // Of the ring while it rings, else of the talk: from now on, and for the calls to come.
    void changeVolume(int step);
    bool isRinging() const { return m_eState == RINGING; }
    // Until the next call comes in.
    void silence();
    bool isSilenced() const { return m_bSilenced; }
    // What was set for sound is heard at once.
    int TryThreadMessage(msgObject& msg) override;

private:
    enum STATE { QUIET, RINGING, TALKING };
    callSound();
    static STATE wantedState();
    void enter(STATE state);
    void leave();
    void takeSettings();
    void storeVolume();
    void ring();

    STATE m_eState = QUIET;
    voiceInfo m_claim;
    bool m_bSilenced = false;
    bool m_bChanged = false; // the volume, by hand
    int m_nLastIncoming = 0; // id
};
