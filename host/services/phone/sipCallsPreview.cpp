// What a door phone shows while it rings. The other side is told the whole answer early, and the same one
// when the call is answered (RFC 3261 wants it so); until then the media take its pictures and nothing else.
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
    live.otherOffer.reset();
    live.bOffered = live.bAgreedHeld = false;
    m_media.begin(live.call.nId);
    return true;
}
