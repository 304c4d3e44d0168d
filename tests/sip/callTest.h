#pragma once
// A line that is registered, and the other side of its calls: a peer that is its server too.
#include "tests/sip/agentOrders.h"
#include "tests/sip/sippRun.h"
#include "tests/sip/udpPeer.h"
#include <memory>

class SipCalls : public ::testing::Test, protected AgentOrders
{
protected:
    SipCalls() : AgentOrders("v=0\r\ns=offer\r\n") {}
    // Starts agent and line.
    void begin(const tagSipSetup& setup = AgentProcess::quickSetup());
    // Registers a line at the peer; the user that it is reached by.
    QByteArray registersLine(uint32_t line);
    // The line registers at the peer once more, and is accepted.
    void acceptAnew();
    // A scenario of this folder, against the agent; service: the user it calls.
    void startSipp(const QByteArray& scenario, uint32_t localPort, const QStringList& further = {});

    // Calls the line; lines: further header lines, without their ends.
    QByteArray inviteText(const QByteArray& callId, const QByteArray& lines = {},
                          const QByteArray& sdp = "v=0\r\ns=offer\r\n");
    // A call has come in and talks; its id.
    uint32_t talkIn(const QByteArray& callId);
    // The same for a call from here.
    uint32_t talkOut(uint32_t id);
    void acknowledge(const QByteArray& reply);
    // Of an INVITE that has no final answer yet.
    void takeBack(const QByteArray& invite);
    // Somebody calls who wants an offer, and as soon as it rings; his INVITE.
    QByteArray arriveWithoutOffer(uint32_t id);
    // Of an answer before the one of the user; sdp: the answer to what it has offered.
    void acknowledgeEarly(const QByteArray& early, int number, const QByteArray& sdp = {});
    // A request within a dialogue that the agent has answered with reply.
    QByteArray within(const QByteArray& method, const QByteArray& reply, int number,
                      const QByteArray& lines = {}, const QByteArray& body = {});

    QByteArray ownContact() const { return peer->contactLine(); }
    QByteArray withSdp() const { return peer->linesWithSdp(); }
    // The agent asks for a call, and that is taken; the request.
    QByteArray takesRefer();
    // What the other side of the call of lastInvite tells of the call that it was asked for.
    void notesRefer(int number, const QByteArray& state, const QByteArray& outcome);

    std::unique_ptr<UdpPeer> peer;
    QByteArray contact; // user that the line is reached by
    QByteArray lastAnswer;
    QByteArray lastInvite; // that the agent has sent
    SippRun sipp;
};
