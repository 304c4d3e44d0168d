#pragma once
// The whole phone, 1001, and one that nobody here wrote, 1002, at the exchange that comes along: who comes
// up, and one call between them.
#include "tests/pbx/baresipProcess.h"
#include "tests/pbx/registrarProcess.h"
#include "tests/pbx/talkingPhone.h"

class BaresipPair
{
public:
    // Each is false when it does not come so far: fault() says why.
    bool startExchange();
    // Both register there. isCalled: the other one answers by itself, and the phone calls it; else it calls.
    // The account of ours is filled in here.
    bool startPhones(tagPhoneSetup ours, const tagBaresipSound& theirs, bool isCalled = false);
    // The other one calls, and is not answered yet.
    bool ring();
    // One call, until both talk.
    bool talk();
    bool hangUp();

    QByteArray fault() { return m_fault + "\n" + m_exchange.output() + "\n" + m_other.output(); }
    uint32_t port() const { return m_exchange.port(); }
    TalkingPhone& phone() { return m_phone; }
    BaresipProcess& other() { return m_other; }

private:
    bool check(bool good, const char* fault);

    RegistrarProcess m_exchange;
    TalkingPhone m_phone;
    BaresipProcess m_other;
    bool m_bCalled = false;
    QByteArray m_fault;
};
