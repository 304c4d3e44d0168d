#include "host/services/phone/sipCalls.h"
#include "host/services/phone/callNumber.h"
#include "host/services/phone/sipReasons.h"
#include "support/host/api.h"
#include "support/host/trace.h"
#include <QTimer>
#include <utility>

namespace {

constexpr int kMsInSecond = 1000;
constexpr uint32_t kNoCommonMedia = 488;
constexpr uint32_t kOwnFault = 500;
constexpr uint32_t kMediaDoNotFit = 399; // a warning that does not say why
constexpr uint32_t kNothingHeard = 408;  // of a call that broke
constexpr const char* kNoSound = HX_TR("Sound is not available at present");
const QChar kSecretTone(0x2022);

const char* reasonOfBreak(const tagCall& call, uint32_t status = 0)
{
    if (call.eState == CALL_TALKING)
        return HX_TR("The connection was lost");
    return status == kNothingHeard ? HX_TR("The server does not answer")
                                   : HX_TR("The call could not be made");
}

} // namespace

sipCalls::sipCalls(sipLink& link, sipMedia& media, AccountOf accountOf, tagCallNews news)
    : phoneCalls(std::move(news)), m_link(link), m_orders(link), m_media(media),
      m_accountOf(std::move(accountOf))
{
    m_media.setNews(this);
}

sipCalls::~sipCalls()
{
    m_media.setNews(nullptr);
}

sipCalls::tagLive* sipCalls::find(int id)
{
    for (tagLive& live : m_calls) {
        if (live.call.nId == id)
            return &live;
    }
    return nullptr;
}

sipCalls::tagLive* sipCalls::findWire(uint32_t wire)
{
    for (tagLive& live : m_calls) {
        if (live.nWire == wire)
            return &live;
    }
    return nullptr;
}

sipCalls::tagLive* sipCalls::findTalking(int id)
{
    tagLive* live = find(id);
    return live && live->call.eState == CALL_TALKING ? live : nullptr;
}

sipCalls::tagLive* sipCalls::findRingingIn(int id)
{
    tagLive* live = find(id);
    return live && live->call.bIncoming && live->call.eState == CALL_RINGING ? live : nullptr;
}

tagMediaWish sipCalls::wishOf(const tagLive& live) const
{
    tagMediaWish wish;
    wish.options = live.call.options;
    wish.bHeld = live.call.bHeld;
    wish.bEncrypt = live.bSealed || m_accountOf(live.call.nAccount).bEncrypt;
    wish.bCameraNow = live.bCameraNow;
    wish.stunServer = m_stun[live.call.nAccount].address;
    wish.nStunPort = m_stun[live.call.nAccount].nPort;
    return wish;
}

// What follows a call, to the media one that begins, opens no camera that the user has not opened, and closes
// none that only rests: while either side holds the call no picture goes out. What was dialled and nobody has
// answered yet goes on as it was dialled.
tagCallOptions sipCalls::optionsGoingOn(const tagLive& live)
{
    tagCallOptions options = live.call.options;
    const bool isOnlyDialled = !live.call.bIncoming && !live.bAgreed;
    options.bCamera = options.bCamera && (isOnlyDialled || live.bShown || live.bCameraNow);
    return options;
}

bool sipCalls::end(int id, CALL_END why, const char* reason)
{
    const tagLive* live = find(id);
    if (!live)
        return false;
    tagCall call = live->shown();
    const int other = std::exchange(call.nJoined, 0);
    if (tagLive* joined = find(other))
        joined->call.nJoined = 0;
    m_calls.removeIf([id](const tagLive& each) { return each.call.nId == id; });
    m_media.end(id);
    if (why != CALL_FORWARDED && why != CALL_TRANSFERRED)
        call.strTarget.clear();
    tellEnd(call, why, reason);
    if (const tagLive* left = find(other))
        tell(*left);
    return true;
}

// It goes with the call, also when it is the timer that ends it.
std::shared_ptr<QTimer> sipCalls::timerOf(const tagLive& live, std::function<void(tagLive&)> due)
{
    const auto late = [this, due = std::move(due), id = live.call.nId, wire = live.nWire] {
        tagLive* ringing = find(id);
        if (ringing && ringing->nWire == wire && ringing->call.eState == CALL_RINGING)
            due(*ringing);
    };
    const std::shared_ptr<QTimer> timer(new QTimer(this), [](QTimer* each) {
        each->stop();
        each->deleteLater();
    });
    timer->setSingleShot(true);
    timer->callOnTimeout(this, late);
    return timer;
}

// The agent ends what rings too long; one that does not, and media that say nothing, leave no call ringing.
void sipCalls::limitRinging(tagLive& live)
{
    live.ringLimit = timerOf(live, [this](const tagLive& ringing) { ringsTooLong(ringing.call.nId); });
    live.ringLimit->start((RING_SECONDS + RING_LATE_SECONDS) * kMsInSecond);
}

void sipCalls::ringsTooLong(int id)
{
    const tagLive& live = *find(id);
    nuxTrace(TRACE_NOTE, "a call on line %d is left ringing", live.call.nAccount + 1);
    if (live.call.bIncoming) {
        m_orders.status(SIP_REFUSE, live.nWire, sipStatusOf(CALL_DISTURBED));
        end(id, CALL_MISSED);
    } else {
        const bool isOut = live.nWire != 0;
        m_orders.status(SIP_HANG_UP, live.nWire, 0);
        end(id, CALL_FAILED, isOut ? HX_TR("Nobody answers") : kNoSound);
    }
}

void sipCalls::ask(tagLive& live, ASKED what)
{
    live.eAsked = what;
    live.bAskAgain = false;
    live.bAskedHeld = live.call.bHeld;
    tagMediaWish wish = wishOf(live);
    const bool ringsIn = live.call.bIncoming && live.call.eState == CALL_RINGING;
    wish.bPreview = ringsIn; // what is agreed on before the user answers is heard and seen by nobody
    if (live.otherOffer && !live.otherOffer->isEmpty())
        m_media.answer(live.call.nId, *live.otherOffer, wish);
    else
        m_media.offer(live.call.nId, wish);
    // Media that are new do not know.
    if (live.call.bMuted || live.bSilenced)
        m_media.setMuted(live.call.nId, true);
    if (live.call.bHeld)
        m_media.setStill(live.call.nId, true);
}

// What the other side does not know yet.
void sipCalls::offerAnew(tagLive& live)
{
    const bool isQuiet = live.bAgreed && live.eAsked == ASKED_NOTHING && !live.bOffered && !live.bReplied;
    const bool isNews = live.bMustOffer || (live.call.bHeld != live.bAgreedHeld && !live.bSilenced);
    if (!isQuiet || !isNews)
        return;
    live.bMustOffer = false;
    ask(live, ASKED_OFFER);
}

int sipCalls::begin(const QString& number, int account, const tagCallOptions& options, bool picksUp)
{
    if (m_calls.size() >= SIP_CALLS_MAX || !sipOrders::fits(number.toUtf8())) {
        fail(number, account,
             m_calls.size() >= SIP_CALLS_MAX ? HX_TR("No line is free") : HX_TR("This cannot be dialled"));
        return 0;
    }
    tagLive live;
    live.call = callNew(number, account);
    live.call.options = options;
    live.call.bAnonymous = options.bAnonymous;
    live.bPicksUp = picksUp;
    m_calls.append(live);
    const int id = live.call.nId;
    limitRinging(m_calls.last());
    ask(m_calls.last(), ASKED_DIAL);
    tell(live.call);
    return id;
}

void sipCalls::dial(tagLive& live, const QByteArray& target)
{
    live.nWire = m_nNextWire++;
    live.bOffered = true;
    live.bEarly = live.call.bRingsThere = live.call.bUnheard = false;
    live.early.clear();
    live.nextEarly.clear();
    live.earlyPause.reset();
    limitRinging(live);
    const sipOrders::tagDial order = {live.call.nAccount, live.call.bAnonymous, live.nReferrer, target,
                                      live.offer,         live.forwardedBy};
    if (std::exchange(live.bPicksUp, false))
        m_orders.pickUp(live.nWire, order);
    else
        m_orders.dial(live.nWire, order);
}

bool sipCalls::ring(int id)
{
    tagLive* live = findRingingIn(id);
    if (!live)
        return false;
    // Others rang while it was looked at.
    if (m_calls.size() > SIP_CALLS_MAX)
        return false;
    live->bRings = live->call.bRang = true;
    if (live->bWantsEarly)
        ask(*live, ASKED_EARLY);
    else
        m_orders.media(SIP_RING, live->nWire, {});
    tell(*live);
    return true;
}

// It talks from here on for whoever uses the phone; what the two sides agree on follows.
bool sipCalls::answer(int id, const tagCallOptions& options)
{
    tagLive* live = findRingingIn(id);
    if (!live)
        return false;
    live->call.options = options;
    live->call.eState = CALL_TALKING;
    live->talking.start();
    if (!answerAsPreviewed(*live) && !answerAsOfferedEarly(*live))
        ask(*live, ASKED_ANSWER);
    tell(*live);
    return true;
}

bool sipCalls::refuse(int id, CALL_END why)
{
    const tagLive* live = findRingingIn(id);
    if (!live)
        return false;
    if (why == CALL_UNFIT) {
        refuseUnfit(*live);
        return end(id, why, sipReasonOf(kNoCommonMedia));
    }
    m_orders.status(SIP_REFUSE, live->nWire, sipStatusOf(why));
    return end(id, why);
}

bool sipCalls::deflect(int id, const QString& number)
{
    tagLive* live = findRingingIn(id);
    if (!live || !m_orders.target(SIP_DEFLECT, live->nWire, number.toUtf8()))
        return false;
    live->call.strTarget = number;
    return end(id, CALL_FORWARDED);
}

bool sipCalls::hangUp(int id)
{
    if (findRingingIn(id))
        return refuse(id, CALL_DECLINED);
    const tagLive* live = find(id);
    if (!live)
        return false;
    m_orders.status(SIP_HANG_UP, live->nWire, 0);
    return end(id, CALL_HUNG_UP);
}

bool sipCalls::setHeld(int id, bool held)
{
    tagLive* live = findTalking(id);
    if (!live || live->call.bHeld == held)
        return false;
    live->call.bHeld = held;
    m_media.setStill(id, held); // the other side may hear of it late, or never
    if (live->bSilenced) {
        live->bSilenced = false;
        m_media.setMuted(id, live->call.bMuted);
    }
    offerAnew(*live);
    tell(*live);
    return true;
}

bool sipCalls::setMuted(int id, bool muted)
{
    tagLive* live = findTalking(id);
    if (!live || live->call.bMuted == muted)
        return false;
    live->call.bMuted = muted;
    m_media.setMuted(id, muted || live->bSilenced);
    tell(*live);
    return true;
}

bool sipCalls::setCamera(int id, bool on)
{
    tagLive* live = findTalking(id);
    if (!live)
        return false;
    live->call.options.bVideo = live->call.options.bVideo || on;
    live->call.options.bCamera = live->bCameraNow = on;
    live->bMustOffer = true;
    offerAnew(*live);
    tell(*live);
    return true;
}

bool sipCalls::sendTone(int id, QChar tone, bool secret)
{
    tagLive* live = findTalking(id);
    if (!live)
        return false;
    if (!m_media.sendTone(id, tone, TONE_MS))
        m_orders.tone(live->nWire, tone, TONE_MS);
    live->call.strTones += secret ? kSecretTone : tone;
    tell(*live);
    return true;
}

// It is told once, and the call goes on.
void sipCalls::tonesRefused(uint32_t wire)
{
    const tagLive* live = findWire(wire);
    if (!live || live->call.eState != CALL_TALKING)
        return;
    tagCall refused = live->shown();
    refused.strReason = HX_TR("Key tones do not arrive");
    tell(refused);
}

void sipCalls::take(const sipWire::Reader& record)
{
    switch (record.head().eKind) {
    case SIP_ARRIVED:
        arrive(record.as<tagSipArrived>());
        break;
    case SIP_PROGRESS:
        progress(record.as<tagSipProgress>());
        break;
    case SIP_TALK:
        talk(record.as<tagSipMedia>());
        break;
    case SIP_EARLY:
        agreedEarly(record.as<tagSipMedia>());
        break;
    case SIP_OFFER:
        otherOffers(record.as<tagSipMedia>());
        break;
    case SIP_ENDED:
        ended(record.as<tagSipEnded>());
        break;
    case SIP_TRANSFERRED:
        transferred(record.as<tagSipStatus>());
        break;
    case SIP_PLACE:
        placeTold(record.as<tagSipTarget>());
        break;
    case SIP_TONES_REFUSED:
        tonesRefused(record.head().nId);
        break;
    case SIP_REFERRED:
        referred(record.as<tagSipReferred>());
        break;
    case SIP_PEER:
        peerTold(record.as<tagSipPeer>());
        break;
    case SIP_STUN:
        m_stun[record.head().nId] = {QByteArray(record.as<tagSipStun>().szAddress),
                                     int(record.as<tagSipStun>().nPort)};
        break;
    default:
        break;
    }
}

void sipCalls::talk(const tagSipMedia& media)
{
    tagLive* live = findWire(media.head.nId);
    const QByteArray sdp = media.szSdp;
    if (!live || findRingingIn(live->call.nId))
        return;
    const int id = live->call.nId;
    const bool begins = live->call.eState == CALL_RINGING;
    const bool wasHeld = live->call.bHeld;
    talkCounts(*live);
    live->offered.invalidate();
    live->call.bUnheard = false;
    if (sdp.isEmpty())
        agreeWaiting(*live);
    live->nextEarly.clear();
    if (std::exchange(live->bOffered, false)) {
        if (!sdp.isEmpty()) {
            live->bAgreedHeld = live->bAskedHeld;
            m_media.agree(id, sdp);
        } else if (live->bAgreed) {
            refusedOffer(*live);
        } else if (!live->bEarly) {
            m_orders.status(SIP_HANG_UP, live->nWire, kNoCommonMedia);
            end(id, CALL_FAILED, sipReasonOf(kNoCommonMedia));
            return;
        }
    }
    live->bReplied = false;
    live->bAgreed = true;
    if (begins) {
        live->call.eState = CALL_TALKING;
        live->call.strTarget.clear();
        live->talking.start();
    }
    offerAnew(*live);
    if (begins || live->call.bHeld != wasHeld)
        tell(*live);
}

// One that is not held hears nothing of the user all the same; one that cannot be taken back stays held.
void sipCalls::refusedOffer(tagLive& live)
{
    m_media.withdraw(live.call.nId);
    if (live.call.bHeld == live.bAgreedHeld)
        return;
    if (live.call.bHeld) {
        live.bSilenced = true;
        m_media.setMuted(live.call.nId, true);
    } else {
        live.call.bHeld = true;
    }
}

void sipCalls::otherOffers(const tagSipMedia& media)
{
    tagLive* live = findWire(media.head.nId);
    const bool wasEarly = live && isEarly(*live);
    if (!live || !(wasEarly || live->call.eState == CALL_TALKING) || live->eAsked == ASKED_ANSWER)
        return;
    live->otherOffer = QByteArray(media.szSdp);
    if (live->eAsked != ASKED_NOTHING) {
        live->bAskAgain = true;
        return;
    }
    live->offered.invalidate();
    // What was agreed on early stands until this is answered.
    if (wasEarly) {
        agreeWaiting(*live);
        live->bOffered = false;
    }
    if (std::exchange(live->bOffered, false)) {
        m_media.withdraw(live->call.nId);
        live->bMustOffer = true;
    }
    ask(*live, ASKED_REPLY);
}

void sipCalls::described(int id, const QByteArray& sdp, bool isMissing)
{
    tagLive* live = find(id);
    if (!live || live->eAsked == ASKED_NOTHING)
        return;
    const ASKED asked = std::exchange(live->eAsked, ASKED_NOTHING);
    const QByteArray usable = sdp.size() < SIP_SDP_SIZE ? sdp : QByteArray();
    if (live->bAskAgain)
        return askForReply(*live, asked);
    switch (asked) {
    case ASKED_NOTHING:
        return;
    case ASKED_DIAL:
        return dialWith(*live, usable);
    case ASKED_ANSWER:
        return answerWith(*live, usable, isMissing);
    case ASKED_PREVIEW:
        return previewWith(*live, usable);
    case ASKED_EARLY:
        return earlyWith(*live, usable);
    case ASKED_OFFER:
        return offerWith(*live, usable);
    case ASKED_REPLY:
        return replyWith(*live, usable, isMissing);
    }
}

// The other side has offered meanwhile: its offer goes first.
void sipCalls::askForReply(tagLive& live, ASKED outOfDate)
{
    if (outOfDate == ASKED_OFFER) {
        m_media.withdraw(live.call.nId);
        live.bMustOffer = true;
    }
    ask(live, ASKED_REPLY);
}

void sipCalls::dialWith(tagLive& live, const QByteArray& offer)
{
    live.offer = offer;
    if (offer.isEmpty())
        end(live.call.nId, CALL_FAILED, kNoSound);
    else
        dial(live, live.target.isEmpty() ? live.call.strNumber.toUtf8() : live.target);
}

void sipCalls::answerWith(tagLive& live, const QByteArray& sdp, bool isMissing)
{
    if (sdp.isEmpty()) {
        m_orders.status(SIP_REFUSE, live.nWire, isMissing ? kOwnFault : kNoCommonMedia,
                        isMissing ? 0 : kMediaDoNotFit);
        end(live.call.nId, CALL_FAILED, isMissing ? kNoSound : sipReasonOf(kNoCommonMedia));
        return;
    }
    live.bOffered = live.otherOffer->isEmpty();
    live.bAgreedHeld = live.bAskedHeld;
    live.otherOffer.reset();
    m_orders.media(SIP_ANSWER, live.nWire, sdp);
}

void sipCalls::offerWith(tagLive& live, const QByteArray& offer)
{
    live.bOffered = !offer.isEmpty();
    if (live.bOffered) {
        live.offered.start();
        m_orders.media(SIP_MEDIA, live.nWire, offer);
        return;
    }
    const bool wasHeld = live.call.bHeld;
    refusedOffer(live);
    if (live.call.bHeld != wasHeld)
        tell(live);
}

// An empty answer refuses.
void sipCalls::replyWith(tagLive& live, const QByteArray& answer, bool isMissing)
{
    live.bReplied = !answer.isEmpty();
    live.bOffered = live.bReplied && live.otherOffer->isEmpty();
    if (live.bReplied)
        live.bAgreedHeld = live.bAskedHeld;
    if (live.bReplied && !live.preview.isEmpty())
        live.preview = answer;
    live.otherOffer.reset();
    if (isMissing)
        m_orders.noMedia(live.nWire);
    else
        m_orders.media(SIP_MEDIA, live.nWire, answer);
    offerAnew(live);
}

// What the other side took for an agreement is none: while it talks it would hear nothing, or more than it
// should. Of an early answer nothing is lost.
void sipCalls::mediaUnfit(int id)
{
    tagLive* live = find(id);
    if (!live)
        return;
    live->bEarly = false;
    live->early.clear();
    if (findRingingIn(id)) {
        live->nWarning = kMediaDoNotFit;
        refuse(id, CALL_UNFIT);
    } else if (live->call.eState == CALL_TALKING) {
        m_orders.status(SIP_HANG_UP, live->nWire, kNoCommonMedia);
        end(id, CALL_FAILED, sipReasonOf(kNoCommonMedia));
    }
}

void sipCalls::mediaChanged(int id, const tagCallStreams& streams)
{
    tagLive* live = find(id);
    if (!live || live->call.streams == streams)
        return;
    live->call.streams = streams;
    live->bShown = live->bShown || streams.nOwnPicture > 0;
    live->bSealed = live->bSealed || streams.bEncrypted;
    live->call.bVideo = !streams.strPicture.isEmpty();
    live->call.bRemoteHeld = streams.bOtherHolds;
    joinAgain(*live);
    tell(*live);
}

void sipCalls::mediaLost()
{
    for (tagLive& live : m_calls) {
        if (live.bAgreed)
            live.call.options = optionsGoingOn(live);
        live.call.streams = tagCallStreams();
        live.call.bVideo = false;
        // Once it talks: that was the answer, or the offer.
        live.bMustOffer = live.bMustOffer || !live.preview.isEmpty() || live.bOfferedEarly;
        live.preview.clear();
        live.bJoinAgain = live.call.nJoined != 0;
        if (live.eAsked != ASKED_NOTHING) {
            ask(live, live.bAskAgain ? ASKED_REPLY : live.eAsked);
        } else if (live.nWire && live.call.eState != CALL_RINGING) {
            live.bMustOffer = true;
            offerAnew(live);
        } else if (!live.call.bIncoming) {
            live.bMustOffer = true; // once it talks
        }
    }
    for (const tagCall& call : calls()) {
        if (const tagLive* live = find(call.nId))
            tell(*live);
    }
}

void sipCalls::ended(const tagSipEnded& ended)
{
    tagLive* live = findWire(ended.head.nId);
    if (!live) {
        endArriving(ended);
        return;
    }
    const int id = live->call.nId;
    const bool asksUser = findRingingIn(id) != nullptr;
    // For the agent it rings until the answer of the user is on its way.
    const bool rangThere = ended.eEnding == SIP_CANCELLED || ended.eEnding == SIP_UNANSWERED;
    const bool ringsIn = asksUser || live->bAnswerWaits || (live->call.bIncoming && rangThere);
    const bool wentOn = live->bTransferring;
    if (ringsIn)
        live->talking.invalidate();
    const char* const lost = reasonOfBreak(live->call, ended.eEnding == SIP_BROKEN ? ended.nStatus : 0);
    nuxTrace(TRACE_NOTE, "a call on line %d has ended: %u %u %s", live->call.nAccount + 1, ended.eEnding,
             ended.nStatus, ended.szReason);
    switch (ended.eEnding) {
    case SIP_REDIRECTED:
        if (!redirect(*live, QByteArray(ended.szTarget)))
            end(id, CALL_FAILED, lost);
        break;
    case SIP_REFUSED:
        if (!goToNextPlace(*live, ended.nStatus))
            end(id, asksUser ? CALL_UNFIT : CALL_FAILED, sipReasonOf(ended.nStatus));
        break;
    case SIP_ELSEWHERE:
        end(id, CALL_HUNG_UP, HX_TR("Another phone has answered"));
        break;
    case SIP_UNANSWERED:
        end(id, ringsIn ? CALL_MISSED : CALL_FAILED, ringsIn ? "" : HX_TR("Nobody answers"));
        break;
    case SIP_BROKEN:
        end(id, ringsIn ? CALL_MISSED : CALL_FAILED, ringsIn ? "" : lost);
        break;
    default:
        end(id, ringsIn ? CALL_MISSED : wentOn ? CALL_TRANSFERRED : CALL_HUNG_UP);
        break;
    }
}

void sipCalls::agentIsGone()
{
    m_stun = {};
    for (const tagArriving& arriving : std::exchange(m_arriving, {}))
        tellEnd(callOf(arriving.record), CALL_MISSED, "");
    for (const tagCall& call : calls()) {
        const bool ringsIn = findRingingIn(call.nId) || find(call.nId)->bAnswerWaits;
        end(call.nId, ringsIn ? CALL_MISSED : CALL_FAILED, ringsIn ? "" : reasonOfBreak(call));
    }
}
