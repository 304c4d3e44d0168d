#include "host/services/phone/simulatedCalls.h"
#include "support/host/net.h"
#include <QTimer>

namespace {
const char* const kBusyNumber = "busy";
constexpr int kMsInSecond = 1000;
} // namespace

tagCall simulatedCalls::newCall(const QString& number, int account)
{
    tagCall call;
    call.nId = ++m_nLastId;
    call.strNumber = number;
    call.nAccount = account;
    call.nStartTime = netGetLocalTime();
    return call;
}

int simulatedCalls::begin(const QString& number, int account)
{
    return add(newCall(number, account), RING_MS, &simulatedCalls::answered);
}

int simulatedCalls::ring(const QString& number, int account, const QString& name)
{
    tagCall call = newCall(number, account);
    call.bIncoming = true;
    call.strName = name;
    return add(call, number == kBusyNumber ? RING_MS : CALLER_MS, &simulatedCalls::givenUp);
}

int simulatedCalls::add(const tagCall& call, int ms, void (simulatedCalls::*then)(int id))
{
    m_calls.append({call, QElapsedTimer()});
    QTimer::singleShot(ms, Qt::PreciseTimer, this, [this, then, id = call.nId] { (this->*then)(id); });
    m_changed(call);
    return call.nId;
}

void simulatedCalls::refuse(const QString& number, int account, const char* reason)
{
    tagCall call = newCall(number, account);
    call.eState = CALL_ENDED;
    call.strReason = reason;
    m_changed(call);
}

void simulatedCalls::turnAway(const QString& number, int account, const QString& name)
{
    tagCall call = newCall(number, account);
    call.bIncoming = true;
    call.strName = name;
    call.eState = CALL_ENDED;
    m_changed(call);
}

int simulatedCalls::indexOf(int id) const
{
    for (int i = 0; i < m_calls.size(); ++i) {
        if (m_calls[i].call.nId == id)
            return i;
    }
    return -1;
}

void simulatedCalls::answered(int id)
{
    const int index = indexOf(id);
    if (index < 0)
        return;
    if (m_calls[index].call.strNumber == kBusyNumber) {
        end(index, "Busy");
        return;
    }
    talk(index);
}

void simulatedCalls::givenUp(int id)
{
    const int index = indexOf(id);
    if (index >= 0 && m_calls[index].call.eState == CALL_RINGING)
        end(index, "");
}

void simulatedCalls::talk(int index)
{
    m_calls[index].call.eState = CALL_TALKING;
    m_calls[index].talking.start();
    m_changed(shown(m_calls[index]));
}

bool simulatedCalls::answer(int id)
{
    const int index = indexOf(id);
    const bool rings =
        index >= 0 && m_calls[index].call.bIncoming && m_calls[index].call.eState == CALL_RINGING;
    if (rings)
        talk(index);
    return rings;
}

bool simulatedCalls::hangUp(int id)
{
    const int index = indexOf(id);
    if (index >= 0)
        end(index, "");
    return index >= 0;
}

void simulatedCalls::end(int index, const char* reason)
{
    tagCall call = shown(m_calls[index]);
    m_calls.removeAt(index);
    call.eState = CALL_ENDED;
    call.strReason = reason;
    m_changed(call);
}

tagCall simulatedCalls::shown(const tagLiveCall& live)
{
    tagCall call = live.call;
    call.nSeconds = live.talking.isValid() ? int(live.talking.elapsed() / kMsInSecond) : 0;
    return call;
}

QList<tagCall> simulatedCalls::calls() const
{
    QList<tagCall> all;
    for (const tagLiveCall& live : m_calls)
        all.append(shown(live));
    return all;
}

bool simulatedCalls::isTalking() const
{
    for (const tagLiveCall& live : m_calls) {
        if (live.call.eState == CALL_TALKING)
            return true;
    }
    return false;
}
