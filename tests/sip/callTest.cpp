#include "tests/sip/callTest.h"

namespace {

QByteArray branchOf(const QByteArray& via)
{
    const qsizetype at = via.indexOf("branch=") + 7;
    const qsizetype end = via.indexOf(';', at);
    return via.mid(at, end < 0 ? -1 : end - at);
}

} // namespace

void SipCalls::begin(const tagSipSetup& setup)
{
    ASSERT_TRUE(agent.start(setup));
    peer = std::make_unique<UdpPeer>();
    contact = registersLine(0);
    ASSERT_FALSE(contact.isEmpty());
}

QByteArray SipCalls::registersLine(uint32_t line)
{
    agent.tell(accountAt(line, peer->port()));
    const QByteArray request = peer->receive("REGISTER");
    const QByteArray address = headerOf(request, "Contact");
    peer->reply(request, "200 OK", "Contact: " + address + ";expires=3600");
    if (!agent.nextLine(line, SIP_LINE_REGISTERED))
        return {};
    return address.mid(5, address.indexOf('@') - 5);
}

void SipCalls::acceptAnew()
{
    QByteArray request;
    do {
        request = peer->receive("REGISTER");
        ASSERT_NE(request.toStdString(), "");
        peer->reply(request, "200 OK", "Contact: " + headerOf(request, "Contact"));
    } while (headerOf(request, "Expires") == "0" || headerOf(request, "Contact").contains("expires=0"));
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
}

void SipCalls::startSipp(const QByteArray& scenario, uint32_t localPort, const QStringList& further)
{
    sipp.setLimit(20);
    sipp.start("sip/" + scenario, localPort, agent.port(), 1, QStringList{"-s", contact} + further);
}

QByteArray SipCalls::inviteText(const QByteArray& callId, const QByteArray& lines, const QByteArray& sdp)
{
    const QByteArray own = "127.0.0.1:" + QByteArray::number(peer->port());
    QByteArray text = "INVITE sip:" + contact + "@127.0.0.1:" + QByteArray::number(agent.port()) +
                      " SIP/2.0\r\nVia: SIP/2.0/UDP " + own + ";branch=z9hG4bK" + callId +
                      "\r\nTo: <sip:" + contact + "@127.0.0.1>\r\nCall-ID: " + callId +
                      "\r\nCSeq: 1 INVITE\r\nMax-Forwards: 70\r\nContact: <sip:200@" + own + ">\r\n";
    if (!lines.contains("From:"))
        text += "From: <sip:200@127.0.0.1>;tag=caller\r\n";
    if (!lines.isEmpty())
        text += lines + "\r\n";
    if (!sdp.isEmpty())
        text += "Content-Type: application/sdp\r\n";
    return text + "Content-Length: " + QByteArray::number(sdp.size()) + "\r\n\r\n" + sdp;
}

QByteArray SipCalls::within(const QByteArray& method, const QByteArray& reply, int number,
                            const QByteArray& lines, const QByteArray& body)
{
    // Of a call from the agent, it is the caller.
    const bool isOurs =
        !lastInvite.isEmpty() && headerOf(reply, "Call-ID") == headerOf(lastInvite, "Call-ID");
    QByteArray remote = isOurs ? headerOf(lastInvite, "Contact") : headerOf(reply, "Contact");
    if (remote.isEmpty()) // of a refusal
        remote = "<sip:" + contact + "@127.0.0.1:" + QByteArray::number(agent.port()) + ">";
    const QByteArray own = "127.0.0.1:" + QByteArray::number(peer->port());
    const QByteArray local = isOurs ? headerOf(lastInvite, "To") + ";tag=peer" : headerOf(reply, "From");
    const QByteArray other = isOurs ? headerOf(lastInvite, "From") : headerOf(reply, "To");
    QByteArray text = method + " " + remote.mid(1, remote.indexOf('>') - 1) +
                      " SIP/2.0\r\nVia: SIP/2.0/UDP " + own + ";branch=z9hG4bK" + method +
                      QByteArray::number(number) + headerOf(reply, "Call-ID") + "\r\nFrom: " + local +
                      "\r\nTo: " + other + "\r\nCall-ID: " + headerOf(reply, "Call-ID") +
                      "\r\nCSeq: " + QByteArray::number(number) + " " + method +
                      "\r\nMax-Forwards: 70\r\nContact: <sip:200@" + own + ">\r\n";
    if (!lines.isEmpty())
        text += lines + "\r\n";
    return text + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

void SipCalls::acknowledge(const QByteArray& reply)
{
    QByteArray ack = within("ACK", reply, headerOf(reply, "CSeq").split(' ').first().toInt());
    // A refusal is acknowledged within the transaction itself.
    if (!reply.startsWith("SIP/2.0 2"))
        ack.replace(headerOf(ack, "Via"), headerOf(reply, "Via").split(';').first() +
                                              ";branch=" + branchOf(headerOf(reply, "Via")));
    peer->send(ack, agent.port());
}

void SipCalls::takeBack(const QByteArray& invite)
{
    const QByteArray number = headerOf(invite, "CSeq");
    QByteArray cancel = invite.left(invite.indexOf("\r\n\r\n") + 2);
    cancel.replace(0, 6, "CANCEL");
    cancel.replace("CSeq: " + number, "CSeq: " + number.split(' ').first() + " CANCEL");
    for (const char* name : {"Content-Type: ", "Content-Length: "}) {
        const qsizetype at = cancel.indexOf(name);
        if (at >= 0)
            cancel.remove(at, cancel.indexOf('\n', at) + 1 - at);
    }
    peer->send(cancel + "Content-Length: 0\r\n\r\n", agent.port());
}

QByteArray SipCalls::arriveWithoutOffer(uint32_t id)
{
    const QByteArray invite = inviteText("early" + QByteArray::number(id), "Require: 100rel", "");
    peer->send(invite, agent.port());
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, id);
    EXPECT_TRUE(arrived && arrived->bWantsEarly == 1u);
    return invite;
}

void SipCalls::acknowledgeEarly(const QByteArray& early, int number, const QByteArray& sdp)
{
    QByteArray lines = "RAck: " + headerOf(early, "RSeq") + " 1 INVITE";
    if (!sdp.isEmpty())
        lines += "\r\nContent-Type: application/sdp";
    peer->send(within("PRACK", early, number, lines, sdp), agent.port());
    EXPECT_EQ(headerOf(peer->receive("SIP/2.0 200"), "CSeq").toStdString(),
              std::to_string(number) + " PRACK");
}

uint32_t SipCalls::talkIn(const QByteArray& callId)
{
    peer->send(inviteText(callId), agent.port());
    const tagSipArrived* arrived = nextArrived();
    if (!arrived)
        return 0;
    const uint32_t id = arrived->head.nId;
    tellMedia(SIP_ANSWER, id, "v=0\r\ns=answer\r\n");
    lastAnswer = peer->receive("SIP/2.0 200");
    acknowledge(lastAnswer);
    return next<tagSipMedia>(SIP_TALK, id) ? id : 0;
}

uint32_t SipCalls::talkOut(uint32_t id)
{
    dial(id, "300");
    do // a question within the call before may still be on its way
        lastInvite = peer->receive("INVITE");
    while (headerOf(lastInvite, "To").contains(";tag="));
    lastAnswer = UdpPeer::replyTo(lastInvite, "200 OK", withSdp(), "v=0\r\ns=answer\r\n");
    peer->answer(lastAnswer);
    return peer->receive("ACK").isEmpty() || !next<tagSipMedia>(SIP_TALK, id) ? 0 : id;
}

QByteArray SipCalls::takesRefer()
{
    const QByteArray refer = peer->receive("REFER");
    EXPECT_NE(refer.toStdString(), "");
    peer->reply(refer, "202 Accepted", ownContact());
    return refer;
}

void SipCalls::notesRefer(int number, const QByteArray& state, const QByteArray& outcome)
{
    peer->send(within("NOTIFY", lastInvite, number,
                      "Event: refer\r\nContent-Type: message/sipfrag\r\nSubscription-State: " + state,
                      outcome),
               agent.port());
}
