#pragma once
// A phone that says what a test has it say, with an account at an exchange that asks for passwords.
#include "tests/sip/udpPeer.h"
#include <QByteArray>

class WirePhone
{
public:
    WirePhone(const QByteArray& user, uint32_t pbx, const QByteArray& password = {});

    UdpPeer& wire() { return m_wire; }
    QByteArray own() const { return "127.0.0.1:" + QByteArray::number(m_wire.port()); }
    QByteArray at(const QByteArray& user) const { return "sip:" + user + "@" + m_server; }
    // Which of the offered algorithms is answered; the first one by default.
    void answerBy(const QByteArray& algorithm) { m_algorithm = algorithm; }

    // A whole request; to: its address, with a tag within a dialog. lines: further header lines.
    QByteArray text(const QByteArray& method, const QByteArray& uri, const QByteArray& callId, int number,
                    const QByteArray& lines = {}, const QByteArray& body = {},
                    const QByteArray& to = {}) const;
    // Sends it and answers for the password; the reply, without the provisional ones. Empty when none comes.
    QByteArray ask(const QByteArray& method, const QByteArray& uri, const QByteArray& callId,
                   const QByteArray& lines = {}, const QByteArray& body = {}, const QByteArray& to = {});
    QByteArray registers(int seconds = 3600);
    // With plain sound, and another one before it.
    static QByteArray offer();
    // Begins a call with an offer; true when it was let through.
    bool calls(const QByteArray& user, const QByteArray& callId, const QByteArray& lines = {},
               const QByteArray& sdp = offer());
    void cancels(const QByteArray& user, const QByteArray& callId, const QByteArray& lines = {});
    // A request within the call that a reply has made.
    void within(const QByteArray& method, const QByteArray& reply, const QByteArray& lines = {},
                const QByteArray& body = {});
    // The next reply with that status, the others are dropped.
    QByteArray hears(int status, int ms = 15000);
    // The next request of that method, the others are dropped.
    QByteArray next(const QByteArray& method, int ms = 15000) { return m_wire.receive(method + " ", ms); }
    void reply(const QByteArray& request, const QByteArray& status, const QByteArray& lines = {},
               const QByteArray& body = {});
    void acknowledge(const QByteArray& reply);
    // The header with the answer to what the reply asks.
    QByteArray answerTo(const QByteArray& reply, const QByteArray& method, const QByteArray& uri) const;

private:
    UdpPeer m_wire;
    const QByteArray m_user;
    const QByteArray m_password;
    const uint32_t m_nServer;
    const QByteArray m_server;
    QByteArray m_algorithm;
    int m_nNumber = 0;
};

int statusOf(const QByteArray& reply);
