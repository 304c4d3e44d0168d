#pragma once
// Which of the phone's calls the call screen is about. User-interface thread.
#include "host/services/phone/tagCall.h"
#include <QList>

// A call that asks, then one that talks or goes out, the newest of these; then one that is held. shown, an
// id, stays before another like it. calls: not empty.
tagCall callMostUrgent(const QList<tagCall>& calls, int shown);
// The next one that could be talked to instead of the one that is shown; none when its id is 0.
tagCall callToSwap(const QList<tagCall>& calls, const tagCall& shown);
// The first that could talk with the one that is shown, where that talks with nobody else; none when its id
// is 0.
tagCall callToJoin(const QList<tagCall>& calls, const tagCall& shown);
// The one that is shown, and the one that talks with it, in the order in which they began.
QList<tagCall> callsTogether(const QList<tagCall>& calls, const tagCall& shown);
