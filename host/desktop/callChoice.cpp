#include "host/desktop/callChoice.h"
#include <algorithm>

namespace {

// Those that talk together are held one after the other: none of them before both are.
bool isHeld(const QList<tagCall>& calls, const tagCall& call)
{
    const auto talksWith = [&](const tagCall& other) { return other.nId == call.nJoined && !other.bHeld; };
    return call.bHeld && (!call.nJoined || std::none_of(calls.begin(), calls.end(), talksWith));
}

} // namespace

tagCall callMostUrgent(const QList<tagCall>& calls, int shown)
{
    enum { HELD = 1, ACTIVE, ASKS };
    tagCall best;
    int highest = 0;
    for (const tagCall& call : calls) {
        const bool asks = call.bIncoming && call.eState == CALL_RINGING;
        const int rank = asks ? ASKS : isHeld(calls, call) ? HELD : ACTIVE;
        if (rank > highest || (rank == highest && (rank == ACTIVE || call.nId == shown)))
            best = call;
        highest = qMax(highest, rank);
    }
    return best;
}

tagCall callToSwap(const QList<tagCall>& calls, const tagCall& shown)
{
    tagCall first;
    bool isBehind = false;
    for (const tagCall& call : calls) {
        if (call.nId == shown.nId)
            isBehind = true;
        else if (call.eState != CALL_TALKING || call.nId == shown.nJoined)
            continue;
        else if (isBehind)
            return call;
        else if (!first.nId)
            first = call;
    }
    return first;
}

tagCall callToJoin(const QList<tagCall>& calls, const tagCall& shown)
{
    for (const tagCall& call : calls) {
        if (call.nId != shown.nId && call.eState == CALL_TALKING && !call.nJoined && !shown.nJoined)
            return call;
    }
    return tagCall();
}

QList<tagCall> callsTogether(const QList<tagCall>& calls, const tagCall& shown)
{
    if (!shown.nJoined)
        return {shown};
    QList<tagCall> together = calls;
    together.removeIf(
        [&](const tagCall& call) { return call.nId != shown.nId && call.nId != shown.nJoined; });
    return together.isEmpty() ? QList<tagCall>{shown} : together;
}
