// What is agreed on while a call from outside rings; until the user answers nothing is heard, and nothing is
// sent. A door phone is told the whole answer early, so that its pictures are seen, and the same one when the
// call is answered (RFC 3261 wants it so). Who wants an offer, and wants it early, has no other one later.
#include "host/services/phone/sipCalls.h"
#include <utility>

bool sipCalls::preview(int id, const tagCallOptions& options)
{
    tagLive* live = findRingingIn(id);
    if (!live || live->eAsked != ASKED_NOTHING || !live->otherOffer || live->otherOffer->isEmpty())
        return false;
    live->call.options = options;
    ask(*live, ASKED_PREVIEW);
    return true;
}

void sipCalls::previewWith(tagLive& live, const QByteArray& sdp)
{
    if (sdp.isEmpty())
        return;
    live.preview = sdp;
    m_orders.media(SIP_RING, live.nWire, sdp);
}

bool sipCalls::answerAsPreviewed(tagLive& live)
{
    if (live.preview.isEmpty())
        return false;
    m_orders.media(SIP_ANSWER, live.nWire, std::exchange(live.preview, {}));
    if (live.eAsked != ASKED_REPLY) // to another offer, which goes on
        live.otherOffer.reset();
    live.bOffered = live.bAgreedHeld = false;
    m_media.begin(live.call.nId);
    return true;
}

// Nothing reliable goes without the offer: where there is none, it goes with the answer of the user.
void sipCalls::earlyWith(tagLive& live, const QByteArray& offer)
{
    live.bOffered = live.bOfferedEarly = !offer.isEmpty();
    m_orders.media(SIP_RING, live.nWire, offer);
}

void sipCalls::agreedEarly(const tagSipMedia& media)
{
    tagLive* live = findWire(media.head.nId);
    if (!live || !live->bOfferedEarly || !std::exchange(live->bOffered, false))
        return;
    live->bEarly = true;
    m_media.agree(live->call.nId, QByteArray(media.szSdp));
    talkCounts(*live);
}

// Until then nobody has heard of it, and the caller is still called.
void sipCalls::talkCounts(tagLive& live)
{
    if (!std::exchange(live.bAnswerWaits, false))
        return;
    live.offered.invalidate();
    live.talking.start();
}

// Pictures were not offered while nobody knew whether the user wants them.
bool sipCalls::answerAsOfferedEarly(tagLive& live)
{
    if (!live.bOfferedEarly)
        return false;
    m_orders.media(SIP_ANSWER, live.nWire, {});
    live.bAnswerWaits = live.bOffered;
    if (live.bAnswerWaits) {
        live.talking.invalidate();
        live.offered.start();
    }
    if (live.eAsked != ASKED_REPLY)
        live.otherOffer.reset();
    live.bAgreedHeld = false;
    live.bMustOffer = live.bMustOffer || live.call.options.bVideo;
    live.bCameraNow = live.call.options.bCamera;
    m_media.begin(live.call.nId);
    return true;
}

// It rings, and the first offer is answered for good.
bool sipCalls::isEarly(const tagLive& live)
{
    return live.call.eState == CALL_RINGING && (live.bEarly || !live.preview.isEmpty());
}
