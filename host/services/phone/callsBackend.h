#pragma once
// A backend whose calls are kept by another object: what is to be done to them goes there.
#include "host/services/phone/phoneBackend.h"
#include "host/services/phone/phoneCalls.h"

class HX_HOST_API callsBackend : public phoneBackend
{
public:
    bool ring(int id) override { return m_pCalls->ring(id); }
    bool preview(int id, const tagCallOptions& options) override { return m_pCalls->preview(id, options); }
    bool answer(int id, const tagCallOptions& options) override { return m_pCalls->answer(id, options); }
    bool refuse(int id, CALL_END why) override { return m_pCalls->refuse(id, why); }
    bool deflect(int id, const QString& number) override { return m_pCalls->deflect(id, number); }
    bool hangUp(int id) override { return m_pCalls->hangUp(id); }
    bool setHeld(int id, bool held) override { return m_pCalls->setHeld(id, held); }
    bool setMuted(int id, bool muted) override { return m_pCalls->setMuted(id, muted); }
    bool setCamera(int id, bool on) override { return m_pCalls->setCamera(id, on); }
    bool transfer(int id, const QString& number) override { return m_pCalls->transfer(id, number); }
    bool connect(int id, int other) override { return m_pCalls->connect(id, other); }
    bool join(int id, int other) override { return m_pCalls->join(id, other); }
    bool split(int id) override { return m_pCalls->split(id); }
    bool sendTone(int id, QChar tone, bool secret) override { return m_pCalls->sendTone(id, tone, secret); }
    QList<tagCall> calls() const override { return m_pCalls->calls(); }
    QList<tagCall> endedCalls() const override { return m_pCalls->endedCalls(); }
    int callTotal() const override { return int(m_pCalls->calls().size()); }
    bool isInTalk() const override { return m_pCalls->isTalking(); }

protected:
    // Before the start; they live as long as the backend does.
    void passTo(phoneCalls& calls) { m_pCalls = &calls; }

private:
    phoneCalls* m_pCalls = nullptr;
};
