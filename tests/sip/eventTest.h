#pragma once
// A line that is registered, and its server, which tells of messages and extensions.
#include "tests/sip/callTest.h"
#include "tests/sip/noteTexts.h"

class SipEventsOf : public SipCalls
{
protected:
    void begin(const tagSipSetup& setup = AgentProcess::calmSetup()) { SipCalls::begin(setup); }
    // Its messages are told by nobody.
    void beginWithoutMessages(const tagSipSetup& setup = AgentProcess::calmSetup());
    // The next request of that event; what is asked for besides is refused. Empty when none comes.
    QByteArray nextSubscribe(const QByteArray& event, int ms = AgentProcess::WAIT_MS);
    // The next one that ends such a subscription; it is accepted.
    QByteArray nextFarewell(const QByteArray& event, int ms = AgentProcess::WAIT_MS);
    void accept(const QByteArray& subscribe, int expires = 600);
    // A note within the subscription; the status line of the reply.
    QByteArray note(const QByteArray& subscribe, const QByteArray& body,
                    const QByteArray& type = "application/dialog-info+xml",
                    const QByteArray& state = "active;expires=600", const QByteArray& lines = {});
    void sendNote(const QByteArray& subscribe, const QByteArray& body, const QByteArray& type,
                  const QByteArray& state, const QByteArray& lines = {});
    // One that nobody has asked for.
    QByteArray strangeNote(const QByteArray& user, const QByteArray& event, const QByteArray& body,
                           const QByteArray& type = "application/simple-message-summary");
    // Watches, and is accepted.
    QByteArray watched(uint32_t id, const char* number);
    // The next one that is told.
    void expectLamp(uint32_t id, SIP_LAMP_STATE lamp);
    void expectMessages(bool isKnown, uint32_t fresh, uint32_t old);
    bool isNothingTold(int ms = 300);

private:
    QByteArray nextOf(const QByteArray& event, bool isFarewell, int ms);
    int m_nNotes = 0;
};
