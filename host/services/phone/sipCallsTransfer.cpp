// Calls that are put through, by either side.
#include "host/services/phone/callNumber.h"
#include "host/services/phone/sipCalls.h"
#include "host/services/phone/sipReasons.h"
#include "support/host/api.h"
#include "support/host/trace.h"

bool sipCalls::transfer(int id, const QString& number)
{
    tagLive* live = findTalking(id);
    if (!live || live->bTransferring || !m_orders.target(SIP_TRANSFER, live->nWire, number.toUtf8()))
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
    one->nConnecting = other;
    two->nConnecting = id;
    one->call.strTarget = two->call.strNumber;
    two->call.strTarget = one->call.strNumber;
    tellBoth(id, other);
    return true;
}

void sipCalls::transferred(const tagSipStatus& status)
{
    const tagLive* live = findWire(status.head.nId);
    if (!live || !live->bTransferring)
        return;
    const int id = live->call.nId, other = live->nConnecting;
    if (status.nStatus < 300) {
        for (const int each : {id, other}) {
            if (const tagLive* over = find(each)) {
                m_orders.status(SIP_HANG_UP, over->nWire, 0);
                end(each, CALL_TRANSFERRED);
            }
        }
        return;
    }
    stopTransfer(id);
    stopTransfer(other);
    tagCall refused = find(id)->shown(); // it is told once
    refused.strReason = HX_TR("The other side refuses the transfer");
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

// The other side of a call that is there goes on as somebody else: nothing rings.
void sipCalls::takeOver(tagLive live, uint32_t replaced)
{
    if (const tagLive* before = findWire(replaced))
        live.call.options = optionsGoingOn(*before);
    live.call.eState = CALL_TALKING;
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
    next.call.options = optionsGoingOn(*live);
    next.call.bAnonymous = next.call.options.bAnonymous;
    next.nReferrer = live->nWire;
    next.target = target;
    m_calls.append(next);
    limitRinging(next);
    ask(m_calls.last(), ASKED_DIAL);
    tell(next.call);
}
