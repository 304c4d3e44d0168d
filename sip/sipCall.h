#pragma once
// One call, from its INVITE to its BYE: signalling only, what its media are the phone says. It rings for a
// limited time, and its end is told once.
#include "sip/callBody.h"
#include "sip/callSetup.h"
#include "sip/challengeAnswers.h"
#include "sip/earlyAnswers.h"
#include "sip/floodGuard.h"
#include "sip/mediaOffer.h"
#include "sip/referral.h"
#include "sip/savedRequest.h"
#include "sip/sessionRefresh.h"
#include "sip/sipDialog.h"
#include "sip/sipStack.h"
#include "sip/sipTimer.h"
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class Registration;

// What others want to hear of a call; each may be empty.
struct tagCallHooks
{
    // A server says nothing to the call, or is out of service.
    std::function<void()> serverFails;
    // What becomes of a call that somebody has asked for; a final status is told once.
    std::function<void(uint32_t status, const std::string& phrase)> progress;
    // A call from outside was answered.
    std::function<void()> answered;
    // The other side has reached whom SIP_CONNECT names.
    std::function<void()> connected;
};

class SipCall : public StackOwner
{
public:
    SipCall(const tagSipStack& stack, uint32_t id);
    ~SipCall() override;

    // From here, by a line that is registered.
    void dial(const Registration& line, const tagSipDial& dial, const tagCallOrigin& origin,
              tagCallHooks hooks);
    // The INVITE of a call from outside, and its body; replaced: the call whose place it takes, 0 for none.
    void arrive(const Registration& line, const tagStackEvent& event, const tagSdpBody& body,
                uint32_t replaced, tagCallHooks hooks);

    // What the phone wants; what the call does not wait for is left alone.
    void ring(const std::string& sdp);
    void answer(const std::string& sdp);
    void refuse(uint32_t status, uint32_t warning = 0);
    void deflect(const std::string& target);
    // why: a status that the other side is told; 0 for none.
    void hangUp(uint32_t why = 0);
    void setMedia(const std::string& sdp);
    void delayMedia();
    void transfer(const std::string& target);
    void connectTo(const SipCall& other, std::function<void()> connected);
    void sendTone(char tone, uint32_t ms);

    // Nothing will come of it any more.
    bool isOver() const { return !m_pHandle; }
    // It was told that it has ended: it takes no room among the calls.
    bool hasEnded() const { return m_eStep == STEP_ENDED; }
    bool isTalking() const { return m_eStep == STEP_TALKING; }

    // What the other side has asked this one to call, from here on followed by tellReferral(), also where
    // that is elsewhere; null for nothing.
    const Referral* acceptReferral();
    void tellReferral(uint32_t status, const std::string& phrase);
    // Whether the header means this call, by the line.
    bool isMeantBy(const sip_replaces_t& replaces, uint32_t line) const;
    // What comes from that address comes from its other side, or from the line's server.
    bool isTrusted(const std::string& source) const;
    // The status that refuses another call in its place; 0 for none.
    uint32_t refusalToReplace(bool onlyEarly) const;
    void beReplaced();
    void onStack(const tagStackEvent& event) override;

private:
    struct tagTone
    {
        char cTone;
        uint32_t nMs;
    };
    // Nobody acknowledges what answers an UPDATE or a PRACK.
    enum OFFERED_BY { BY_INVITE, BY_UPDATE, BY_PRACK };
    enum STEP { STEP_NEW, STEP_RINGING, STEP_TALKING, STEP_ENDED };

    void invite();
    void nextServer();
    void inviteAnew();
    void sendOffer(const std::string& sdp);
    // Of the other side.
    void onRequest(const tagStackEvent& event);
    // The other side, or the way to it, knows of no call.
    bool isGone(const tagStackEvent& event) const;
    void giveUp(const tagStackEvent& event);
    void onState(const tagStackEvent& event);
    void onInviteReply(const tagStackEvent& event);
    // Before the call talks.
    void onSetupReply(const tagStackEvent& event);
    void onFinalReply(const tagStackEvent& event);
    void onMoved(std::vector<std::string> places, uint32_t status, const std::string& phrase);
    void onTaken(const tagStackEvent& event);
    void onMediaReply(const tagStackEvent& event);
    void sendNextTone();
    void onToneReply(const tagStackEvent& event);
    void onUpdateReply(const tagStackEvent& event);
    void onCancel(const tagStackEvent& event);
    void onOffer(const tagStackEvent& event);
    void takeOffer(std::unique_ptr<SavedRequest> request, const std::string& sdp, OFFERED_BY by);
    // The user has answered, and so says the wire.
    void sendAnswer();
    // Not yet: what the caller is told while it rings, or has told, is not settled.
    bool isAnswerKept() const;
    // The caller has acknowledged what was told while it rings.
    void onEarlyAcknowledged(const tagStackEvent& event);
    // To what the phone has offered while it rings.
    void onEarlyAnswer(const std::string& sdp);
    void onReferred(const tagStackEvent& event);
    void onReferReply(const tagStackEvent& event);
    void onTransferNote(const tagStackEvent& event);
    void onTransfer(uint32_t status, bool isTaken);
    void refer(const std::string& address);
    void sendReferral(uint32_t status, const std::string& phrase);
    // The call is still there.
    void refresh();
    void refreshByInvite();
    // The phone has answered an offer that the other side has taken back.
    void takeBack(bool hasTaken);
    // What the other side has is offered to the phone alone, and its answer is nobody's.
    void offerToPhone();
    void talk(const std::string& sdp);
    void limitRinging(const sip_t& invite);
    void ringsTooLong();
    void end(SIP_ENDING ending, uint32_t status, const std::string& reason, const std::string& target = "");
    void respond(uint32_t status, const std::string& sdp = "", uint32_t warning = 0);
    void respondTo(const SavedRequest& request, uint32_t status, const std::string& sdp = "");
    // To what the other side has offered.
    void respondToOffer(uint32_t status, const std::string& sdp = "");
    void tellProgress(uint32_t status, const std::string& phrase);
    // To the phone.
    void tellUnderWay(uint32_t status, const std::string& sdp = "");
    void stopTimers();
    void sendBye(uint32_t why = 0);
    // The other side, or a server, has said what becomes of it.
    void onByeReply(uint32_t status);
    // The server has this long to take note of the end.
    void releaseSoon();
    void release();

    const tagSipStack& m_stack;
    const uint32_t m_nId;
    const bool m_bIncoming;
    nua_handle_t* m_pHandle = nullptr;
    tagCallHooks m_hooks;
    std::unique_ptr<CallSetup> m_setup; // of a call from here
    std::unique_ptr<floodGuard::Dialog> m_dialog;
    std::unique_ptr<ChallengeAnswers> m_answers;
    std::unique_ptr<Referral> m_referral;
    std::unique_ptr<SavedRequest> m_offered; // by the other side, and not answered yet
    OFFERED_BY m_eOfferedBy = BY_INVITE;     // that
    bool m_bHeard = false;                   // of a call from here: something has come from a server
    bool m_bAgreedEarly = false;             // while it rings: the first offer is answered for good
    bool m_bMovedEarly = false;              // and another one of the caller's after it
    bool m_bWantsEarly = false;              // the caller wants the phone's offer as soon as it rings
    bool m_bAcknowledges = false;            // the caller, what is told while it rings
    bool m_bEarlyWaits = false;              // a description told so that he has not acknowledged yet
    bool m_bSilenceTold = false;             // the phone believes that nothing has
    bool m_bByeGoes = false;                 // that has no final reply yet
    bool m_bReferred = false;                // the other side has taken what it was asked to call
    bool m_bMoved = false;                   // what it has asked for is elsewhere, and the phone may follow
    enum { NOT_TAKEN_BACK, TAKEN_BACK, AS_BEFORE } m_eTakenBack = NOT_TAKEN_BACK; // what the phone answers
    std::deque<tagTone> m_tones; // that were not answered; the first one is on its way
    bool m_bBareTones = false;   // without anything but the key
    bool m_bTonesRefused = false;
    bool m_bTonesTold = false; // the phone knows that they do not get through
    uint32_t m_nLine = 0;
    std::string m_own;                   // address of the line
    std::string m_server;                // of the line
    std::string m_remote;                // address of the other side
    std::string m_source;                // numeric one that its messages come from
    std::string m_ownSdp;                // that the other side has
    std::optional<std::string> m_answer; // of the user, which goes once the caller has acknowledged that
    std::string m_remoteSdp;
    EarlyAnswers m_early;    // of a call from here
    std::string m_agreedSdp; // of the other side, before its offer
    tagDialogName m_name;
    STEP m_eStep = STEP_NEW;
    MediaOffer m_offer;
    SessionRefresh m_session;
    SipTimer m_limit; // of ringing, of the end
    SipTimer m_silent;
    SipTimer m_phone; // of its answer to an offer
    SipTimer m_asked; // of its answer to a referral, and to where that is
};
