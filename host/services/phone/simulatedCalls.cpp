#include "host/services/phone/simulatedCalls.h"
#include "host/services/phone/callNumber.h"
#include "support/host/api.h"
#include <QTimer>
#include <utility>

namespace {
const char* const kBusyNumber = "busy";
constexpr int kForwardersMax = 32; // that anybody asks for

QStringList forwardersOf(const tagCaller& caller)
{
    QStringList numbers = caller.forwardedBy.mid(0, kForwardersMax);
    for (QString& number : numbers)
        number.truncate(CALL_NUMBER_MAX);
    return numbers;
}
} // namespace

void simulatedCalls::add(const tagCall& call, bool wantsVideo)
{
    tagSimulated live;
    live.call = call;
    live.bWantsVideo = wantsVideo;
    m_calls.append(live);
}

int simulatedCalls::begin(const QString& number, int account, const tagCallOptions& options)
{
    tagCall call = callNew(number, account);
    call.options = options;
    call.bAnonymous = options.bAnonymous;
    add(call, true); // whoever is called here would like to see and be seen
    if (number != kBusyNumber)
        later(FIRST_RING_MS, call.nId, &simulatedCalls::ringsThere);
    later(RING_MS, call.nId, &simulatedCalls::answered);
    tell(call);
    return call.nId;
}

int simulatedCalls::pickUp(const QString& number, int account)
{
    const tagCall call = callNew(number, account);
    add(call, true);
    tell(call);
    const int index = indexOf(call.nId); // who was told may have hung up
    if (index >= 0)
        talk(index);
    return call.nId;
}

void simulatedCalls::arrive(const tagCaller& caller)
{
    tagCall call = callNew(caller.strNumber.left(CALL_NUMBER_MAX), caller.nLine);
    call.bIncoming = true;
    call.strName = caller.strName.left(CALL_NUMBER_MAX);
    call.strPicture = caller.strPicture;
    call.bAnonymous = caller.bAnonymous;
    call.forwardedBy = forwardersOf(caller);
    add(call, caller.bVideo);
    tellArrival(call);
}

bool simulatedCalls::ring(int id)
{
    const int index = indexOfRinging(id);
    if (index < 0)
        return false;
    m_calls[index].call.bRang = true;
    const tagCall call = m_calls[index].call;
    later(call.strNumber == kBusyNumber ? RING_MS : CALLER_MS, id, &simulatedCalls::givenUp);
    tell(call);
    return true;
}

void simulatedCalls::later(int ms, int id, void (simulatedCalls::*then)(int id))
{
    QTimer::singleShot(ms, Qt::PreciseTimer, this, [this, then, id] { (this->*then)(id); });
}

int simulatedCalls::indexOf(int id) const
{
    for (int i = 0; i < m_calls.size(); ++i) {
        if (m_calls[i].call.nId == id)
            return i;
    }
    return -1;
}

// Of a call from outside.
int simulatedCalls::indexOfRinging(int id) const
{
    const int index = indexOf(id);
    const bool rings =
        index >= 0 && m_calls[index].call.bIncoming && m_calls[index].call.eState == CALL_RINGING;
    return rings ? index : -1;
}

tagCall* simulatedCalls::talkingCall(int id)
{
    const int index = indexOf(id);
    return index >= 0 && m_calls[index].call.eState == CALL_TALKING ? &m_calls[index].call : nullptr;
}

void simulatedCalls::ringsThere(int id)
{
    const int index = indexOf(id);
    if (index < 0)
        return;
    m_calls[index].call.bRingsThere = true;
    tellOf(id);
}

void simulatedCalls::answered(int id)
{
    const int index = indexOf(id);
    if (index < 0)
        return;
    if (m_calls[index].call.strNumber == kBusyNumber)
        end(index, CALL_FAILED, "Busy");
    else
        talk(index);
}

void simulatedCalls::givenUp(int id)
{
    const int index = indexOfRinging(id);
    if (index >= 0)
        end(index, CALL_MISSED);
}

void simulatedCalls::talk(int index)
{
    tagSimulated& live = m_calls[index];
    live.call.eState = CALL_TALKING;
    live.call.bVideo = live.bWantsVideo && live.call.options.bVideo;
    live.talking.start();
    tell(live.shown());
}

bool simulatedCalls::answer(int id, const tagCallOptions& options)
{
    const int index = indexOfRinging(id);
    if (index < 0)
        return false;
    m_calls[index].call.options = options;
    talk(index);
    return true;
}

bool simulatedCalls::refuse(int id, CALL_END why)
{
    const int index = indexOfRinging(id);
    return index >= 0 && end(index, why);
}

bool simulatedCalls::deflect(int id, const QString& number)
{
    const int index = indexOfRinging(id);
    if (index < 0)
        return false;
    m_calls[index].call.strTarget = number;
    return end(index, CALL_FORWARDED);
}

bool simulatedCalls::hangUp(int id)
{
    const int index = indexOf(id);
    return index >= 0 && end(index, indexOfRinging(id) < 0 ? CALL_HUNG_UP : CALL_DECLINED);
}

bool simulatedCalls::hangUpFromOutside(int id)
{
    const int index = indexOf(id);
    return index >= 0 && end(index, indexOfRinging(id) < 0 ? CALL_HUNG_UP : CALL_MISSED);
}

bool simulatedCalls::refuseFromOutside(int id, bool refuses)
{
    const bool talks = talkingCall(id) != nullptr;
    if (talks)
        m_calls[indexOf(id)].bRefuses = refuses;
    return talks;
}

bool simulatedCalls::setStreams(int id, const tagCallStreams& streams)
{
    const int index = indexOf(id);
    if (index < 0)
        return false;
    m_calls[index].call.streams = streams;
    return tellOf(id);
}

bool simulatedCalls::tellOf(int id)
{
    tell(m_calls[indexOf(id)].shown());
    return true;
}

bool simulatedCalls::setHeld(int id, bool held)
{
    tagCall* call = talkingCall(id);
    if (!call || call->bHeld == held)
        return false;
    call->bHeld = held;
    return tellOf(id);
}

bool simulatedCalls::holdFromOutside(int id, bool held)
{
    tagCall* call = talkingCall(id);
    if (!call || call->bRemoteHeld == held)
        return false;
    call->bRemoteHeld = held;
    return tellOf(id);
}

bool simulatedCalls::setMuted(int id, bool muted)
{
    tagCall* call = talkingCall(id);
    if (!call || call->bMuted == muted)
        return false;
    call->bMuted = muted;
    return tellOf(id);
}

bool simulatedCalls::transfer(int id, const QString& number)
{
    tagCall* call = talkingCall(id);
    if (!call)
        return false;
    if (m_calls[indexOf(id)].bRefuses)
        return tellRefused(id);
    call->strTarget = number;
    return end(indexOf(id), CALL_TRANSFERRED);
}

// The call goes on; its reason is told once.
bool simulatedCalls::tellRefused(int id)
{
    tagCall call = m_calls[indexOf(id)].shown();
    call.strReason = HX_TR("The other side refuses the transfer");
    tell(call);
    return true;
}

bool simulatedCalls::connect(int id, int other)
{
    tagCall* call = talkingCall(id);
    tagCall* second = talkingCall(other);
    if (!call || !second || call == second || call->nAccount == PHONE_LINE_PSTN ||
        second->nAccount == PHONE_LINE_PSTN)
        return false;
    if (m_calls[indexOf(id)].bRefuses)
        return tellRefused(id);
    call->strTarget = second->strNumber;
    second->strTarget = call->strNumber;
    end(indexOf(id), CALL_TRANSFERRED);
    // Who was told may have hung up.
    return indexOf(other) < 0 || end(indexOf(other), CALL_TRANSFERRED);
}

bool simulatedCalls::join(int id, int other)
{
    tagCall* call = talkingCall(id);
    tagCall* second = talkingCall(other);
    if (!call || !second || call == second || call->nJoined || second->nJoined)
        return false;
    call->nJoined = other;
    second->nJoined = id;
    tellOf(id);
    return indexOf(other) < 0 || tellOf(other);
}

bool simulatedCalls::split(int id)
{
    tagCall* call = talkingCall(id);
    if (!call || !call->nJoined)
        return false;
    const int other = std::exchange(call->nJoined, 0);
    talkingCall(other)->nJoined = 0;
    tellOf(id);
    return indexOf(other) < 0 || tellOf(other);
}

bool simulatedCalls::sendTone(int id, QChar tone, bool secret)
{
    tagCall* call = talkingCall(id);
    if (!call)
        return false;
    call->strTones += secret ? QChar(0x2022) : tone;
    return tellOf(id);
}

bool simulatedCalls::end(int index, CALL_END why, const char* reason)
{
    tagCall call = m_calls[index].shown();
    m_calls.removeAt(index);
    const int other = std::exchange(call.nJoined, 0);
    if (other)
        talkingCall(other)->nJoined = 0;
    tellEnd(call, why, reason);
    if (other && indexOf(other) >= 0)
        tellOf(other);
    return true;
}

tagCaller simulatedCalls::callerOf(int id) const
{
    const int index = indexOf(id);
    if (index < 0)
        return tagCaller();
    const tagSimulated& live = m_calls[index];
    return {live.call.strNumber,  live.call.nAccount, live.call.strName,    live.call.strPicture,
            live.call.bAnonymous, live.bWantsVideo,   live.call.forwardedBy};
}
