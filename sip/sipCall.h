#pragma once
// One call, from its INVITE to its BYE: signalling only, what its media are the phone says. It rings for a
// limited time, and its end is told once.
#include "sip/challengeAnswers.h"
#include "sip/sipStack.h"
#include "sip/sipTimer.h"
#include <memory>
#include <string>

class Registration;

class SipCall : public StackOwner
{
public:
    SipCall(const tagSipStack& stack, uint32_t id);
    ~SipCall() override;

    // From here, by a line that is registered. replaces: a call that rings elsewhere and is taken from there,
    // as the header of that name has it; empty: none.
    void dial(const Registration& line, const tagSipDial& dial, const std::string& replaces = "");
    // The INVITE of a call from outside.
    void arrive(const Registration& line, const tagStackEvent& event);

    // What the phone wants; what the call does not wait for is left alone.
    void ring(const std::string& sdp);
    void answer(const std::string& sdp);
    void refuse(uint32_t status);
    void deflect(const std::string& target);
    void hangUp();
    void setMedia(const std::string& sdp);
    void transfer(const std::string& target);
    void sendTone(char tone, uint32_t ms);

    // Nothing will come of it any more.
    bool isOver() const { return !m_pHandle; }
    // It was told that it has ended: it takes no room among the calls.
    bool hasEnded() const { return m_eStep == STEP_ENDED; }
    void onStack(const tagStackEvent& event) override;

private:
    enum STEP { STEP_NEW, STEP_RINGING, STEP_TALKING, STEP_ENDED };

    void onInviteReply(const tagStackEvent& event);
    void onMediaReply(const tagStackEvent& event);
    void onOffer(const tagStackEvent& event);
    void onTransfer(uint32_t status);
    void talk(const std::string& sdp);
    void ringsTooLong();
    void end(SIP_ENDING ending, uint32_t status, const std::string& reason, const std::string& target = "");
    void respond(uint32_t status, const std::string& sdp = "");
    // The server has this long to take note of the end.
    void releaseSoon();
    void release();

    const tagSipStack& m_stack;
    const uint32_t m_nId;
    const bool m_bIncoming;
    nua_handle_t* m_pHandle = nullptr;
    std::unique_ptr<ChallengeAnswers> m_answers;
    std::string m_own;    // address of the line
    std::string m_server; // of the line
    std::string m_remoteSdp;
    STEP m_eStep = STEP_NEW;
    bool m_bOffered = false;  // by the other side, and not answered yet
    bool m_bOffering = false; // by this side
    SipTimer m_limit;         // of ringing, of the end
    SipTimer m_offer;
};
