#include "tests/sip/callTest.h"
#include "places.h"
#include "tests/kit/plain/processes.h"
#include <QFile>

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
    agent.tell(accountAt(0, peer->port()));
    const QByteArray request = peer->receive("REGISTER");
    const QByteArray address = headerOf(request, "Contact");
    contact = address.mid(5, address.indexOf('@') - 5);
    peer->reply(request, "200 OK", "Contact: " + address + ";expires=3600");
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
}

void SipCalls::startSipp(const char* scenario, uint32_t localPort, const QStringList& further)
{
    kit::endWithUs(sipp);
    sipp.setWorkingDirectory(folder.path());
    sipp.setProcessChannelMode(QProcess::MergedChannels);
    sipp.start("sipp", QStringList{"127.0.0.1:" + QString::number(agent.port()), "-sf",
                                   QString(HX_SOURCE_DIR "/tests/sip/") + scenario, "-i", "127.0.0.1", "-p",
                                   QString::number(localPort), "-s", contact, "-m", "1", "-nostdin",
                                   "-timeout", "20", "-trace_err", "-error_file", folder.filePath("errors")} +
                           further);
    ASSERT_TRUE(sipp.waitForStarted());
    ASSERT_TRUE(
        kit::waits([&] { return UdpPeer("127.0.0.1", localPort).port() == 0; }, AgentProcess::WAIT_MS));
}

void SipCalls::expectSippDone()
{
    ASSERT_TRUE(sipp.waitForFinished(30000));
    QFile errors(folder.filePath("errors"));
    const QByteArray said = errors.open(QIODevice::ReadOnly) ? errors.readAll() : QByteArray();
    EXPECT_EQ(sipp.exitCode(), 0) << said.constData();
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

uint32_t SipCalls::talkIn(const QByteArray& callId)
{
    peer->send(inviteText(callId), agent.port());
    const tagSipHead* head = agent.next([](const tagSipHead& each) { return each.eKind == SIP_ARRIVED; });
    if (!head)
        return 0;
    const uint32_t id = head->nId;
    tellMedia(SIP_ANSWER, id, "v=0\r\ns=answer\r\n");
    lastAnswer = peer->receive("SIP/2.0 200");
    acknowledge(lastAnswer);
    return next<tagSipMedia>(SIP_TALK, id) ? id : 0;
}

uint32_t SipCalls::talkOut(uint32_t id)
{
    dial(id, "300");
    lastInvite = peer->receive("INVITE");
    lastAnswer = UdpPeer::replyTo(lastInvite, "200 OK",
                                  "Contact: <sip:300@127.0.0.1:" + QByteArray::number(peer->port()) +
                                      ">\r\nContent-Type: application/sdp",
                                  "v=0\r\ns=answer\r\n");
    peer->answer(lastAnswer);
    return peer->receive("ACK").isEmpty() || !next<tagSipMedia>(SIP_TALK, id) ? 0 : id;
}

void SipCalls::dial(uint32_t id, const char* target, bool isAnonymous)
{
    auto record = sipWire::make<tagSipDial>(SIP_DIAL, id);
    record.bAnonymous = isAnonymous;
    sipWire::setText(record.szTarget, target);
    sipWire::setText(record.szSdp, "v=0\r\ns=offer\r\n");
    agent.tell(record);
}

void SipCalls::tellMedia(SIP_RECORD kind, uint32_t id, const char* sdp)
{
    auto record = sipWire::make<tagSipMedia>(kind, id);
    sipWire::setText(record.szSdp, sdp);
    agent.tell(record);
}

void SipCalls::tellStatus(SIP_RECORD kind, uint32_t id, uint32_t status)
{
    auto record = sipWire::make<tagSipStatus>(kind, id);
    record.nStatus = status;
    agent.tell(record);
}

void SipCalls::tellTarget(SIP_RECORD kind, uint32_t id, const char* target)
{
    auto record = sipWire::make<tagSipTarget>(kind, id);
    sipWire::setText(record.szTarget, target);
    agent.tell(record);
}

void SipCalls::expectEnd(uint32_t id, SIP_ENDING ending, uint32_t status)
{
    const auto* ended = next<tagSipEnded>(SIP_ENDED, id);
    ASSERT_TRUE(ended) << id;
    EXPECT_EQ(ended->eEnding, uint32_t(ending)) << ended->szReason;
    EXPECT_EQ(ended->nStatus, status) << ended->szReason;
}
