#pragma once
// A phone without a SIP stack: it registers the accounts of the configuration and makes calls that answer
// themselves, and the control interface moves it: also by calls from outside. User-interface thread.
#include "host/services/phone/phoneBackend.h"
#include "host/services/phone/simulatedAccounts.h"
#include "host/services/phone/simulatedCalls.h"

class HX_HOST_API phoneSimulation : public phoneBackend, public chMsgProcesser
{
public:
    phoneSimulation();
    // The simulation at work; null when another backend is.
    static phoneSimulation* instance();

    // False for an index or a state that is none.
    bool setLine(int index, const tagLineSetting& setting);
    // Non-zero: the phone has an analogue line.
    void setPstn(int pstn) { m_nPstn = pstn; }
    // Calls that are there beside those made here, and whether one of them is talking.
    void setCalls(int total, int talk);

    // A call from outside, on a line of 0 to PHONE_ACCOUNT_COUNT - 1, or PHONE_LINE_PSTN where there is that
    // line; it rings, unless do-not-disturb refuses it. False for a line that is none, and for an empty
    // number.
    bool ring(const QString& number, int line, const QString& name);

    void start(phoneEvents* events) override;
    tagAccountInfo account(int index) const override { return m_accounts.info(index); }
    int defaultAccount() const override { return m_accounts.defaultAccount(); }
    int dial(const QString& number, int account, int flags) override;
    bool answer(int id) override { return m_calls.answer(id); }
    bool hangUp(int id) override { return m_calls.hangUp(id); }
    QList<tagCall> calls() const override { return m_calls.calls(); }
    int callTotal() const override { return m_nOtherCalls + int(m_calls.calls().size()); }
    bool isInTalk() const override { return m_bOtherTalk || m_calls.isTalking(); }
    bool hasPstn() const override { return m_nPstn != 0; }

    int TryThreadMessage(msgObject& msg) override;

private:
    bool isReady(int line) const;

    phoneEvents* m_pEvents = nullptr;
    simulatedAccounts m_accounts;
    simulatedCalls m_calls;
    int m_nPstn = 0;
    int m_nOtherCalls = 0;
    bool m_bOtherTalk = false;
};
