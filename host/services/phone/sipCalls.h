#pragma once
// The calls that the SIP user agent makes: what the phone wants of them goes to the agent, and what becomes
// of them is told. Descriptions of media are passed between the agent and sipMedia unread; of each call one
// offer is on its way at a time, and what the phone wants meanwhile is offered after it. User-interface
// thread.
#include "host/services/phone/accountFiles.h"
#include "host/services/phone/phoneCalls.h"
#include "host/services/phone/sipMedia.h"
#include "host/services/phone/sipOrders.h"
#include <QObject>
#include <QTimer>
#include <array>
#include <functional>
#include <memory>
#include <optional>

class sipCalls : public QObject, public phoneCalls, public sipMediaNews
{
public:
    enum : int {
        TONE_MS = 160,
        REDIRECTIONS_MAX = 5,  // of one call that goes out
        RING_SECONDS = 180,    // longer than a forward or an answering machine waits
        RING_LATE_SECONDS = 5, // until an agent that leaves a call ringing is not waited for any more
        EARLY_PAUSE_MS = 500   // at least between two descriptions that are agreed on while it rings there
    };

    using AccountOf = std::function<const tagAccountFile&(int line)>;

    // Link and media outlive the calls.
    sipCalls(sipLink& link, sipMedia& media, AccountOf accountOf, tagCallNews news);
    ~sipCalls() override;

    // The call's id; 0 when it was not begun, which is told. picksUp: it takes the call that rings at the
    // number.
    int begin(const QString& number, int account, const tagCallOptions& options, bool picksUp = false);
    bool ring(int id) override;
    bool preview(int id, const tagCallOptions& options) override;
    bool answer(int id, const tagCallOptions& options) override;
    bool refuse(int id, CALL_END why) override;
    bool deflect(int id, const QString& number) override;
    bool hangUp(int id) override;
    bool setHeld(int id, bool held) override;
    bool setMuted(int id, bool muted) override;
    bool setCamera(int id, bool on) override;
    bool transfer(int id, const QString& number) override;
    bool connect(int id, int other) override;
    bool join(int id, int other) override;
    bool split(int id) override;
    bool sendTone(int id, QChar tone, bool secret) override;

    // A record of the agent about a call.
    void take(const sipWire::Reader& record);
    void agentIsGone();
    QList<tagCall> calls() const override { return allShown(m_calls); }

    void mediaDescribed(int call, const QByteArray& sdp) override { described(call, sdp, false); }
    void mediaMissing(int call) override { described(call, {}, true); }
    void mediaUnfit(int call) override;
    void mediaJudged(int question, CALL_FIT fit) override;
    void mediaChanged(int call, const tagCallStreams& streams) override;
    void mediaLost() override;

private:
    // What the media are asked for.
    enum ASKED {
        ASKED_NOTHING,
        ASKED_DIAL,    // the offer of a call that goes out
        ASKED_ANSWER,  // what answers a call that came in
        ASKED_PREVIEW, // the same, of one that still rings
        ASKED_EARLY,   // the offer to whoever calls and wants one while it rings
        ASKED_OFFER,   // another offer, of a call that talks
        ASKED_REPLY    // the answer to another offer of the other side
    };
    // Where a call from here may go, and who has sent it there.
    struct tagPlace
    {
        QByteArray target;
        QList<QByteArray> forwardedBy;
        QStringList shownForwardedBy;
    };
    struct tagLive : public tagLiveCall
    {
        uint32_t nWire = 0; // its id at the agent; 0 before it has one
        ASKED eAsked = ASKED_NOTHING;
        bool bAskAgain = false;     // what is asked for is out of date
        bool bOffered = false;      // by this side, and not answered yet
        bool bReplied = false;      // to the other side's offer, which it has not acknowledged yet
        bool bAgreed = false;       // the media of the call
        bool bEarly = false;        // they were agreed while it rings
        bool bWantsEarly = false;   // who calls wants an offer while it rings
        bool bOfferedEarly = false; // and has it
        bool bAnswerWaits = false;  // the user has answered, and he has not answered that
        bool bMustOffer = false;    // the media of before are gone
        bool bAskedHeld = false;    // what the last description said
        bool bAgreedHeld = false;   // what the other side knows
        bool bSilenced = false;     // it refused to be held: it does not hear the user
        bool bSealed = false;       // it was encrypted, and stays so
        bool bCameraNow = false;    // the user has opened the camera in the call
        bool bShown = false;        // the other side has been sent his picture
        bool bJoinAgain = false;    // the media that joined it are gone
        bool bRings = false;
        bool bPicksUp = false; // when it begins
        bool bTransferring = false;
        int nConnecting = 0;                  // the call whose other side this one's is to talk with
        uint32_t nReferrer = 0;               // the agent's id of the call that asked for this one
        std::shared_ptr<QTimer> ringLimit;    // how long it may ring
        QByteArray early;                     // the last one that was agreed on while it rings there
        QByteArray nextEarly;                 // the newest that waits for its time; empty: none does
        std::shared_ptr<QTimer> earlyPause;   // until then
        QList<tagPlace> places;               // where it may go as well, the better one first
        QList<QByteArray> newPlaces;          // of the redirection that is being told
        int nSentOn = 0;                      // so often has it gone elsewhere
        QByteArray target;                    // where it goes; empty: the number of the call
        QList<QByteArray> forwardedBy;        // where it has been
        bool bRefused = false;                // its other side, which was asked to call that of nConnecting
        QByteArray offer;                     // of a call that goes out
        QByteArray preview;                   // the answer of one that rings, as the other side knows it
        std::optional<QByteArray> otherOffer; // that is not answered yet; an empty one asks for one
        uint32_t nRefusal = 0;                // of one that cannot be talked; 0: as all of them
        uint32_t nWarning = 0;                // the same: why its media do not fit
    };
    // Nobody has heard of it yet.
    struct tagArriving
    {
        int nQuestion = 0; // whether it can be talked
        tagSipArrived record;
    };

    tagLive* find(int id);
    tagLive* findWire(uint32_t wire);
    tagLive* findTalking(int id);
    tagLive* findRingingIn(int id);
    tagMediaWish wishOf(const tagLive& live) const;
    static tagCallOptions optionsGoingOn(const tagLive& live);
    // What the user has set in a call is so in the one that follows it.
    static void goOnAs(tagLive& next, const tagLive& before);
    using phoneCalls::tell;
    void tell(const tagLive& live) const { tell(live.shown()); }
    void joinAgain(tagLive& live);
    void tellBoth(int id, int other);
    void ask(tagLive& live, ASKED what);
    void offerAnew(tagLive& live);
    void dial(tagLive& live, const QByteArray& target);
    void placeTold(const tagSipTarget& place);
    bool redirect(tagLive& live, const QByteArray& target);
    // Where it may go as well, after a refusal that says nothing of who was called.
    bool goToNextPlace(tagLive& live, uint32_t status);
    bool goTo(tagLive& live, const tagPlace& place);
    bool end(int id, CALL_END why, const char* reason = "");

    void arrive(const tagSipArrived& arrived);
    tagCall callOf(const tagSipArrived& arrived) const;
    void decide(const tagSipArrived& arrived, CALL_FIT fit);
    void refuseUnfit(const tagLive& live);
    // The caller gave up meanwhile.
    void endArriving(const tagSipEnded& ended);
    void progress(const tagSipProgress& progress);
    void talk(const tagSipMedia& media);
    void refusedOffer(tagLive& live);
    void otherOffers(const tagSipMedia& media);
    void described(int id, const QByteArray& sdp, bool isMissing);
    bool answerAsPreviewed(tagLive& live);
    bool answerAsOfferedEarly(tagLive& live);
    void earlyWith(tagLive& live, const QByteArray& offer);
    void agreedEarly(const tagSipMedia& media);
    static bool isEarly(const tagLive& live);
    // The answer of the user is on its way to the caller.
    static void talkCounts(tagLive& live);
    void askForReply(tagLive& live, ASKED outOfDate);
    // What was asked for is there; empty: it is not.
    void dialWith(tagLive& live, const QByteArray& offer);
    void answerWith(tagLive& live, const QByteArray& sdp, bool isMissing);
    void previewWith(tagLive& live, const QByteArray& sdp);
    void offerWith(tagLive& live, const QByteArray& offer);
    void replyWith(tagLive& live, const QByteArray& answer, bool isMissing);
    void ended(const tagSipEnded& ended);
    void transferred(const tagSipStatus& status);
    void tonesRefused(uint32_t wire);
    void takeOver(tagLive live, uint32_t replaced);
    void peerTold(const tagSipPeer& peer);
    void referred(const tagSipReferred& referred);
    void stopTransfer(int id);
    // While it rings there.
    void hearsEarly(tagLive& live, const QByteArray& sdp);
    void agreeWaiting(tagLive& live);
    // Of a call that rings, in either direction.
    std::shared_ptr<QTimer> timerOf(const tagLive& live, std::function<void(tagLive&)> due);
    void limitRinging(tagLive& live);
    void ringsTooLong(int id);

    // Of a line; heard to answer.
    struct tagStunServer
    {
        QByteArray address; // empty: none
        int nPort = 0;
    };

    sipLink& m_link;
    sipOrders m_orders;
    sipMedia& m_media;
    AccountOf m_accountOf;
    QList<tagLive> m_calls;
    QList<tagArriving> m_arriving;
    std::array<tagStunServer, SIP_LINE_COUNT> m_stun;
    uint32_t m_nNextWire = SIP_CALL_FIRST;
};
