#include "tests/pbx/baresipPair.h"

namespace {

const QByteArray kOurs = "1001";
const QByteArray kTheirs = "1002";

} // namespace

bool BaresipPair::check(bool good, const char* fault)
{
    if (!good)
        m_fault = fault;
    return good;
}

bool BaresipPair::startExchange()
{
    return check(m_exchange.start({"--md5"}), "the exchange does not start");
}

bool BaresipPair::startPhones(tagPhoneSetup ours, const tagBaresipSound& theirs, bool isCalled)
{
    m_bCalled = isCalled;
    ours.user = kOurs;
    ours.password = RegistrarProcess::passwordOf(kOurs);
    ours.server = port();
    return check(m_phone.start(ours), "the phone does not register") &&
           check(m_other.start(kTheirs, port(), RegistrarProcess::passwordOf(kTheirs), isCalled, theirs) &&
                     m_other.prints("[1 binding]"),
                 "the other phone does not register");
}

bool BaresipPair::ring()
{
    m_other.dial(kOurs, port());
    return check(m_phone.rings(), "it does not ring");
}

bool BaresipPair::talk()
{
    const bool isUnderWay = m_bCalled ? check(m_phone.dial(kTheirs), "the phone does not call")
                                      : ring() && check(m_phone.answer(), "the call cannot be answered");
    return isUnderWay && check(m_phone.talks() && m_other.tells("CALL_ESTABLISHED"), "they do not talk");
}

bool BaresipPair::hangUp()
{
    return check(m_phone.hangUp() && m_other.tells("CALL_CLOSED"), "the call does not end");
}
