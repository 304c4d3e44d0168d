// A call that comes in, before anybody hears of it: whether it could be talked at all is asked first.
#include "host/services/phone/callNumber.h"
#include "host/services/phone/sipCalls.h"
#include "host/services/phone/sipReasons.h"
#include "support/host/api.h"
#include "support/host/trace.h"
#include <QUrl>
#include <algorithm>

namespace {

constexpr int kLiveMax = 2 * SIP_CALLS_MAX; // no agent of ours has more

QString textOf(const char* text)
{
    return callTextOf(QString::fromUtf8(text));
}

// Only the server itself is asked: whoever else is named there would learn when this phone rings.
QString pictureOf(const char* address, const QString& server)
{
    const QUrl url(QString::fromLatin1(address), QUrl::StrictMode);
    const bool isOwn = url.isValid() && url.userInfo().isEmpty() && !server.isEmpty() &&
                       url.host().compare(server, Qt::CaseInsensitive) == 0;
    return isOwn ? url.toString(QUrl::FullyEncoded) : QString();
}

} // namespace

void sipCalls::arrive(const tagSipArrived& arrived)
{
    const uint32_t wire = arrived.head.nId;
    const bool isArriving =
        std::any_of(m_arriving.begin(), m_arriving.end(),
                    [wire](const tagArriving& each) { return each.record.head.nId == wire; });
    if (isArriving || findWire(wire)) {
        m_link.discard("gave the number of a call twice");
    } else if (m_calls.size() >= kLiveMax || m_arriving.size() >= SIP_JUDGED_MAX) {
        m_orders.status(SIP_REFUSE, wire, sipStatusOf(CALL_BUSY));
    } else if (!arrived.szSdp[0]) {
        decide(arrived, CALL_FITS);
    } else {
        tagMediaWish wish;
        wish.bEncrypt = m_accountOf(int(arrived.nLine)).bEncrypt;
        m_arriving.append({m_media.judge(QByteArray(arrived.szSdp), wish), arrived});
    }
}

void sipCalls::mediaJudged(int question, CALL_FIT fit)
{
    const auto judged =
        std::find_if(m_arriving.begin(), m_arriving.end(),
                     [question](const tagArriving& each) { return each.nQuestion == question; });
    if (judged == m_arriving.end())
        return;
    const tagSipArrived record = judged->record;
    m_arriving.erase(judged);
    decide(record, fit);
}

void sipCalls::endArriving(const tagSipEnded& ended)
{
    const auto gone = std::find_if(m_arriving.begin(), m_arriving.end(), [&](const tagArriving& each) {
        return each.record.head.nId == ended.head.nId;
    });
    if (gone == m_arriving.end())
        return;
    const tagCall call = callOf(gone->record);
    m_arriving.erase(gone);
    const bool isElsewhere = ended.eEnding == SIP_ELSEWHERE;
    tellEnd(call, isElsewhere ? CALL_HUNG_UP : CALL_MISSED,
            isElsewhere ? HX_TR("Another phone has answered") : "");
}

void sipCalls::refuseUnfit(const tagLive& live)
{
    m_orders.status(SIP_REFUSE, live.nWire, live.nRefusal ? live.nRefusal : sipStatusOf(CALL_UNFIT),
                    live.nWarning);
}

tagCall sipCalls::callOf(const tagSipArrived& arrived) const
{
    tagCall call = callNew(textOf(arrived.szNumber), int(arrived.nLine));
    call.bIncoming = true;
    call.strName = textOf(arrived.szName);
    call.strPicture = pictureOf(arrived.szPicture, m_accountOf(call.nAccount).strServer);
    call.bAnonymous = arrived.bAnonymous != 0;
    call.bAsksAnswer = arrived.bAutoAnswer != 0;
    for (uint32_t i = 0; i < arrived.nForwards; ++i)
        call.forwardedBy.append(textOf(arrived.szForwardedBy[i]));
    return call;
}

void sipCalls::decide(const tagSipArrived& arrived, CALL_FIT fit)
{
    tagLive live;
    live.nWire = arrived.head.nId;
    live.call = callOf(arrived);
    live.call.bUnfit = arrived.nRefusal != 0 || fit != CALL_FITS;
    live.nRefusal = arrived.nRefusal;
    live.nWarning = sipWarningOf(fit);
    live.otherOffer = QByteArray(arrived.szSdp);
    live.bWantsEarly = arrived.bWantsEarly != 0;
    if (live.call.bUnfit)
        nuxTrace(TRACE_NOTE, "a call to line %d cannot be talked: %u %u", live.call.nAccount + 1,
                 live.nRefusal, live.nWarning);
    if (arrived.nReplaces) {
        takeOver(live, arrived.nReplaces);
        return;
    }
    m_calls.append(live);
    limitRinging(m_calls.last());
    tellArrival(live.call);
    // What nobody decided would ring without anybody hearing it.
    const tagLive* undecided = findRingingIn(live.call.nId);
    if (undecided && !undecided->bRings)
        refuse(live.call.nId, CALL_BUSY);
}
