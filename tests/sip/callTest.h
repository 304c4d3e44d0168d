#pragma once
// A line that is registered, and the other side of its calls: a peer that is its server too.
#include "tests/sip/agentProcess.h"
#include "tests/sip/udpPeer.h"
#include <QProcess>
#include <gtest/gtest.h>
#include <memory>

class SipCalls : public ::testing::Test
{
protected:
    // Starts agent and line.
    void begin(const tagSipSetup& setup = AgentProcess::quickSetup());
    // A scenario of this folder, against the agent; service: the user it calls.
    void startSipp(const char* scenario, uint32_t localPort, const QStringList& further = {});
    // It came to its end as it is written.
    void expectSippDone();

    // Calls the line; lines: further header lines, without their ends.
    QByteArray inviteText(const QByteArray& callId, const QByteArray& lines = {},
                          const QByteArray& sdp = "v=0\r\ns=offer\r\n");
    // A call has come in and talks; its id.
    uint32_t talkIn(const QByteArray& callId);
    // The same for a call from here.
    uint32_t talkOut(uint32_t id);
    void dial(uint32_t id, const char* target, bool isAnonymous = false);
    void acknowledge(const QByteArray& reply);
    // A request within a dialogue that the agent has answered with reply.
    QByteArray within(const QByteArray& method, const QByteArray& reply, int number,
                      const QByteArray& lines = {}, const QByteArray& body = {});
    template <typename Record>
    const Record* next(SIP_RECORD kind, uint32_t id, int ms = AgentProcess::WAIT_MS)
    {
        return reinterpret_cast<const Record*>(agent.next(kind, id, ms));
    }
    void tellMedia(SIP_RECORD kind, uint32_t id, const char* sdp);
    void tellStatus(SIP_RECORD kind, uint32_t id, uint32_t status = 0);
    void tellTarget(SIP_RECORD kind, uint32_t id, const char* target);
    void expectEnd(uint32_t id, SIP_ENDING ending, uint32_t status);

    AgentProcess agent;
    std::unique_ptr<UdpPeer> peer;
    QByteArray contact; // user that the line is reached by
    QByteArray lastAnswer;
    QByteArray lastInvite; // that the agent has sent
    QProcess sipp;
    QTemporaryDir folder;
};
