#pragma once
// A phone without a SIP stack: it registers the accounts of the configuration and makes calls that answer
// themselves, and the control interface moves it: also by calls from outside. User-interface thread.
#include "host/services/phone/callsBackend.h"
#include "host/services/phone/simulatedAccounts.h"
#include "host/services/phone/simulatedCalls.h"
#include "host/services/phone/simulatedLamps.h"

class HX_HOST_API phoneSimulation : public callsBackend, public chMsgProcesser
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
    // line. False for a line that is none, and for a caller without a number who does not hide it.
    bool ringFrom(const tagCaller& caller);
    bool ring(const QString& number, int line, const QString& name);
    // What the other side of a call does. False when there is no such call, or it does not wait for that.
    bool holdFromOutside(int id, bool held) { return m_calls.holdFromOutside(id, held); }
    bool hangUpFromOutside(int id) { return m_calls.hangUpFromOutside(id); }
    bool refuseFromOutside(int id, bool refuses) { return m_calls.refuseFromOutside(id, refuses); }
    // What goes over the wire of a call.
    bool setStreams(int id, const tagCallStreams& streams) { return m_calls.setStreams(id, streams); }
    // The extensions of the servers.
    simulatedLamps& extensions() { return m_lamps; }

    void start(phoneEvents* events) override;
    tagAccountInfo account(int index) const override { return m_accounts.info(index); }
    int defaultAccount() const override { return m_accounts.defaultAccount(); }
    int dial(const QString& number, int account, const tagCallOptions& options) override;
    using callsBackend::ring;
    bool deflect(int id, const QString& number) override;
    int callTotal() const override { return m_nOtherCalls + callsBackend::callTotal(); }
    bool isInTalk() const override { return m_bOtherTalk || callsBackend::isInTalk(); }
    bool hasPstn() const override { return m_nPstn != 0; }
    phoneLamps* lamps() override { return &m_lamps; }

    int TryThreadMessage(msgObject& msg) override;

private:
    bool isReady(int line) const;
    int lineOf(const QString& number) const;

    phoneEvents* m_pEvents = nullptr;
    simulatedAccounts m_accounts;
    simulatedCalls m_calls;
    simulatedLamps m_lamps;
    int m_nPstn = 0;
    int m_nOtherCalls = 0;
    bool m_bOtherTalk = false;
};
