#pragma once
// A phone without a SIP stack: it registers the accounts of the configuration and makes calls that answer
// themselves, and the control interface moves it: also by calls from outside. User-interface thread.
#include "host/services/phone/phoneBackend.h"
#include "host/services/phone/simulatedAccounts.h"
#include "host/services/phone/simulatedCalls.h"
#include "host/services/phone/simulatedLamps.h"

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
    bool ring(int id) override { return m_calls.ring(id); }
    bool answer(int id, const tagCallOptions& options) override { return m_calls.answer(id, options); }
    bool refuse(int id, CALL_END why) override { return m_calls.refuse(id, why); }
    bool deflect(int id, const QString& number) override;
    bool hangUp(int id) override { return m_calls.hangUp(id); }
    bool setHeld(int id, bool held) override { return m_calls.setHeld(id, held); }
    bool setMuted(int id, bool muted) override { return m_calls.setMuted(id, muted); }
    bool transfer(int id, const QString& number) override { return m_calls.transfer(id, number); }
    bool connect(int id, int other) override { return m_calls.connect(id, other); }
    bool join(int id, int other) override { return m_calls.join(id, other); }
    bool split(int id) override { return m_calls.split(id); }
    bool sendTone(int id, QChar tone, bool secret) override { return m_calls.sendTone(id, tone, secret); }
    QList<tagCall> calls() const override { return m_calls.calls(); }
    QList<tagCall> endedCalls() const override { return m_calls.endedCalls(); }
    int callTotal() const override { return m_nOtherCalls + int(m_calls.calls().size()); }
    bool isInTalk() const override { return m_bOtherTalk || m_calls.isTalking(); }
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
