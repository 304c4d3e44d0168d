#pragma once
// A registrar and proxy that nobody here wrote: it asks for passwords and connects registered phones.
#include "tests/kit/plain/sideProgram.h"
#include <QByteArray>
#include <cstdint>

class KamailioProcess
{
public:
    // Before it starts: it tells of calls and messages to who watches them.
    void setPresence() { m_bPresence = true; }
    // Before it starts: it is the proxy in front of the server at that port.
    void setNext(uint32_t port) { m_nNext = port; }
    // algorithm: "MD5" or "SHA-256". hasTls: with a certificate for 127.0.0.1. Fails the test when it does
    // not come up. One that was ended starts at the same ports.
    void start(const char* algorithm = "MD5", bool hasTls = false);
    void end() { m_program.end(); }
    uint32_t port() const { return m_nPort; }
    uint32_t tlsPort() const { return m_nTlsPort; }
    // Of the authority that has signed its certificate, as the agent wants it.
    QString certificates() const { return m_program.path(); }
    // Whether the user has a phone there.
    bool isRegistered(const QByteArray& user);
    QByteArray output() { return m_program.output().right(4000); }

private:
    bool writeSettings(const char* algorithm, bool hasTls);
    bool makeTables();

    kit::SideProgram m_program;
    bool m_bPresence = false;
    uint32_t m_nNext = 0;
    uint32_t m_nPort = 0;
    uint32_t m_nTlsPort = 0;
};
