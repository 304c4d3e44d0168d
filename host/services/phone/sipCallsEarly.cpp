// What a call from here hears of its other side before that has answered. A new description may be told with
// each word from there, and each has streams made anew: so many a second are, and the last one counts.
#include "host/services/phone/sipCalls.h"
#include <QTimer>
#include <utility>

namespace {

constexpr uint32_t kRinging = 180;
constexpr uint32_t kSessionProgress = 183;

} // namespace

void sipCalls::progress(const tagSipProgress& progress)
{
    tagLive* live = findWire(progress.head.nId);
    if (!live || !(live->bOffered || live->bEarly) || live->call.eState != CALL_RINGING)
        return;
    if (progress.szSdp[0] && live->bOffered)
        hearsEarly(*live, QByteArray(progress.szSdp));
    const bool rings = progress.nStatus == kRinging || progress.nStatus == kSessionProgress;
    const bool isUnheard = progress.nStatus == 0;
    const bool wasUnheard = std::exchange(live->call.bUnheard, isUnheard);
    const bool rang = live->call.bRingsThere;
    live->call.bRingsThere = rang || rings;
    if (wasUnheard != isUnheard || live->call.bRingsThere != rang)
        tell(*live);
}

void sipCalls::hearsEarly(tagLive& live, const QByteArray& sdp)
{
    live.bEarly = true;
    live.nextEarly = sdp == live.early ? QByteArray() : sdp;
    if (!live.earlyPause || !live.earlyPause->isActive())
        agreeWaiting(live);
}

void sipCalls::agreeWaiting(tagLive& live)
{
    if (live.nextEarly.isEmpty())
        return;
    live.early = std::exchange(live.nextEarly, {});
    m_media.agree(live.call.nId, live.early);
    if (!live.earlyPause)
        live.earlyPause = timerOf(live, [this](tagLive& paused) { agreeWaiting(paused); });
    live.earlyPause->start(EARLY_PAUSE_MS);
}
