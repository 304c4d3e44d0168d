// Calls that are put through, by either side, and those that get to somebody else than was dialled.
#include "host/services/phone/callNumber.h"
#include "host/services/phone/sipCalls.h"
#include "host/services/phone/sipReasons.h"
#include "support/host/api.h"
#include "support/host/trace.h"
#include <utility>

bool sipCalls::transfer(int id, const QString& number)
{
    tagLive* live = findTalking(id);
    if (!live || live->bTransferring || live->bAnswerWaits ||
        !m_orders.target(SIP_TRANSFER, live->nWire, number.toUtf8()))
        return false;
    live->bTransferring = true;
    live->call.strTarget = number;
    tell(*live);
    return true;
}

bool sipCalls::connect(int id, int other)
{
    tagLive* one = findTalking(id);
    tagLive* two = findTalking(other);
    if (!one || !two || one == two || one->bTransferring || two->bTransferring || !one->bAgreed ||
        !two->bAgreed)
        return false;
    m_orders.connect(one->nWire, two->nWire);
    one->bTransferring = two->bTransferring = true;
    one->bRefused = two->bRefused = false;
    one->nConnecting = other;
    two->nConnecting = id;
    one->call.strTarget = two->call.strNumber;
    two->call.strTarget = one->call.strNumber;
    tellBoth(id, other);
    return true;
}

void sipCalls::transferred(const tagSipStatus& status)
{
    tagLive* live = findWire(status.head.nId);
    if (!live || !live->bTransferring)
        return;
    const int id = live->call.nId, other = live->nConnecting;
    const tagLive* second = find(other);
    if (status.nStatus < 300) {
        for (const int each : {id, other}) {
            if (const tagLive* over = find(each)) {
                m_orders.status(SIP_HANG_UP, over->nWire, 0);
                end(each, CALL_TRANSFERRED);
            }
        }
        return;
    }
    live->bRefused = true;
    // It is enough that one of them calls the other.
    if (second && !second->bRefused) {
        m_orders.connect(second->nWire, live->nWire);
        return;
    }
    tagCall refused = live->shown(); // it is told once
    refused.strReason = sipReasonOfTransfer(status.nStatus, status.bTaken != 0);
    if (!status.bTaken)
        refused.strTarget.clear();
    stopTransfer(id);
    stopTransfer(other);
    tell(refused);
    if (const tagLive* left = find(other))
        tell(*left);
}

void sipCalls::stopTransfer(int id)
{
    tagLive* live = find(id);
    if (!live)
        return;
    live->bTransferring = false;
    live->nConnecting = 0;
    live->call.strTarget.clear();
}

// It is sent on there as well; the SIP_ENDED that follows begins with the best place.
void sipCalls::placeTold(const tagSipTarget& place)
{
    tagLive* live = findWire(place.head.nId);
    if (live && live->newPlaces.size() < SIP_PLACES_MAX - 1)
        live->newPlaces.append(QByteArray(place.szTarget));
}

// The same call, elsewhere.
bool sipCalls::redirect(tagLive& live, const QByteArray& target)
{
    tagPlace place = {target, live.forwardedBy, live.call.forwardedBy};
    place.forwardedBy.append(live.target.isEmpty() ? live.call.strNumber.toUtf8() : live.target);
    place.shownForwardedBy.append(live.call.strReached.isEmpty() ? live.call.strNumber
                                                                 : live.call.strReached);
    // Ahead of those that were left before.
    const QList<QByteArray> others = std::exchange(live.newPlaces, {});
    for (auto other = others.rbegin(); other != others.rend(); ++other)
        live.places.prepend({*other, place.forwardedBy, place.shownForwardedBy});
    while (live.places.size() > REDIRECTIONS_MAX)
        live.places.removeLast();
    return goTo(live, place) || goToNextPlace(live, 0);
}

bool sipCalls::goTo(tagLive& live, const tagPlace& place)
{
    const bool isAddress = place.target.startsWith("sip:") || place.target.startsWith("sips:");
    const bool waits = !live.call.bIncoming && live.call.eState == CALL_RINGING;
    if (!isAddress || !waits || live.nSentOn >= REDIRECTIONS_MAX)
        return false;
    const tagAccountFile& account = m_accountOf(live.call.nAccount);
    ++live.nSentOn;
    live.forwardedBy = place.forwardedBy;
    live.call.forwardedBy = place.shownForwardedBy;
    live.call.strReached = callNumberAt(QString::fromUtf8(place.target), account.strServer, account.nPort);
    live.call.strTarget = callTextOf(QString::fromUtf8(place.target));
    live.target = place.target;
    if (!findWire(live.nReferrer))
        live.nReferrer = 0; // it goes on without who asked for it
    dial(live, place.target);
    tell(live);
    return true;
}

// Who is busy, or will not, is so wherever he is called; and who has asked for the call was told what became
// of it.
bool sipCalls::goToNextPlace(tagLive& live, uint32_t status)
{
    enum : uint32_t {
        UNKNOWN_MEDIA = 415,
        ANONYMITY_DISALLOWED = 433,
        BUSY = 486,
        TERMINATED = 487,
        NOT_ACCEPTABLE = 488,
        EVERYWHERE = 600
    };
    const QList<uint32_t> last = {UNKNOWN_MEDIA, ANONYMITY_DISALLOWED, BUSY, TERMINATED, NOT_ACCEPTABLE};
    if (last.contains(status) || status >= EVERYWHERE || (live.nReferrer && findWire(live.nReferrer)))
        return false;
    while (!live.places.isEmpty()) {
        if (goTo(live, live.places.takeFirst()))
            return true;
    }
    return false;
}

// Who picks up has dialled the extension where it rings, and talks with who has called there.
void sipCalls::peerTold(const tagSipPeer& peer)
{
    tagLive* live = findWire(peer.head.nId);
    if (!live || live->call.bIncoming)
        return;
    const tagAccountFile& account = m_accountOf(live->call.nAccount);
    live->call.strNumber = callNumberAt(QString::fromUtf8(peer.szAddress), account.strServer, account.nPort);
    live->call.strName = callTextOf(QString::fromUtf8(peer.szName));
    tell(live->call);
}

void sipCalls::goOnAs(tagLive& next, const tagLive& before)
{
    next.call.options = optionsGoingOn(before);
    next.call.options.bByHand = false;
    next.call.bHeld = before.call.bHeld;
    next.call.bMuted = before.call.bMuted;
}

// The other side of a call that is there goes on as somebody else: nothing rings, and who was not to hear the
// user does not hear him then.
void sipCalls::takeOver(tagLive live, uint32_t replaced)
{
    if (live.call.bUnfit) {
        refuseUnfit(live);
        return;
    }
    if (const tagLive* before = findWire(replaced))
        goOnAs(live, *before);
    live.call.eState = CALL_TALKING;
    live.call.bRang = true; // it is heard at once
    live.talking.start();
    m_calls.append(live);
    ask(m_calls.last(), ASKED_ANSWER);
    tell(live.call);
}

// It costs the owner of the line: only where he wants that. The call is made beside the one whose other side
// wants it, which ends that one when it talks.
void sipCalls::referred(const tagSipReferred& referred)
{
    const tagLive* live = findWire(referred.head.nId);
    const QByteArray target = referred.szTarget;
    if (!live)
        return;
    if (!m_accountOf(live->call.nAccount).bTransferByOther) {
        nuxTrace(TRACE_NOTE, "the other side of a call on line %d wants another one made: refused",
                 live->call.nAccount + 1);
        m_orders.status(SIP_REFUSE, live->nWire, sipStatusOf(CALL_DECLINED));
        return;
    }
    const bool isAddress = target.startsWith("sip:") || target.startsWith("sips:");
    if (live->call.eState != CALL_TALKING || !isAddress || m_calls.size() >= SIP_CALLS_MAX) {
        m_orders.status(SIP_REFUSE, live->nWire,
                        isAddress ? sipStatusOf(CALL_BUSY) : sipStatusOf(CALL_DECLINED));
        return;
    }
    tagLive next;
    const tagAccountFile& account = m_accountOf(live->call.nAccount);
    next.call = callNew(callNumberAt(QString::fromUtf8(target), account.strServer, account.nPort),
                        live->call.nAccount);
    goOnAs(next, *live);
    next.call.bAnonymous = next.call.options.bAnonymous;
    next.nReferrer = live->nWire;
    next.target = target;
    m_calls.append(next);
    limitRinging(m_calls.last());
    ask(m_calls.last(), ASKED_DIAL);
    tell(next.call);
}
