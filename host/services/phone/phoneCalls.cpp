#include "host/services/phone/phoneCalls.h"
#include <algorithm>
#include <utility>

namespace {
constexpr int kMsInSecond = 1000;
constexpr int kUnheardMs = 2000; // of a network that works: not even a lost message takes so long
} // namespace

tagCall tagLiveCall::shown() const
{
    tagCall shown = call;
    shown.nSeconds = talking.isValid() ? int(talking.elapsed() / kMsInSecond) : 0;
    shown.bUnheard = call.bUnheard || (offered.isValid() && offered.elapsed() > kUnheardMs);
    return shown;
}

phoneCalls::phoneCalls(tagCallNews news) : m_news(std::move(news)) {}

void phoneCalls::fail(const QString& number, int account, const char* reason)
{
    tellEnd(callNew(number, account), CALL_FAILED, reason);
}

void phoneCalls::tellEnd(tagCall call, CALL_END why, const char* reason)
{
    // Who is called by the one he calls has missed nothing.
    const QList<tagCall> left = calls();
    const bool isMutual =
        why == CALL_MISSED && std::any_of(left.begin(), left.end(),
                                          [&](const tagCall& other) { return callIsMutual(call, other); });
    call.eState = CALL_ENDED;
    call.eEnd = isMutual ? CALL_HUNG_UP : why;
    call.strReason = reason;
    m_ended.prepend(call);
    if (m_ended.size() > ENDED_MAX)
        m_ended.removeLast();
    tell(call);
}

bool phoneCalls::isTalking() const
{
    const QList<tagCall> all = calls();
    return std::any_of(all.begin(), all.end(),
                       [](const tagCall& call) { return call.eState == CALL_TALKING; });
}
