// Calls over a way that loses, doubles and reorders what goes over it.
#include "tests/sip/badWay.h"
#include "tests/sip/callTest.h"
#include <QElapsedTimer>
#include <QSet>
#include <memory>

namespace {

class SipLoss : public SipCalls
{
protected:
    // Answers the call as a phone does that is heard now and then, until the phone and it agree.
    bool serve(uint32_t id)
    {
        QByteArray answer;
        bool isAcknowledged = false, isTalking = false;
        QElapsedTimer limit;
        limit.start();
        for (int round = 0; limit.elapsed() < 30000; ++round) {
            const QByteArray message = peer->receive(50);
            if (message.startsWith("INVITE")) {
                last = headerOf(message, "Call-ID");
                calls.insert(last);
                answer = UdpPeer::replyTo(message, "200 OK",
                                          "Contact: <sip:300@127.0.0.1:" + QByteArray::number(way->front()) +
                                              ">\r\nContent-Type: application/sdp",
                                          "v=0\r\ns=answer\r\n");
            }
            isAcknowledged = isAcknowledged || message.startsWith("ACK");
            isTalking = isTalking || agent.next(SIP_TALK, id, 1);
            if (isAcknowledged && isTalking)
                return true;
            if (message.startsWith("INVITE") || (!answer.isEmpty() && !isAcknowledged && round % 10 == 0))
                peer->send(answer, way->back());
        }
        return false;
    }
    // Of the last call.
    bool seesTheEnd()
    {
        QElapsedTimer limit;
        limit.start();
        while (limit.elapsed() < 30000) {
            const QByteArray message = peer->receive(50);
            if (!message.startsWith("BYE") || headerOf(message, "Call-ID") != last)
                continue;
            peer->send(UdpPeer::replyTo(message, "200 OK"), way->back());
            return true;
        }
        return false;
    }

    std::unique_ptr<BadWay> way;
    QSet<QByteArray> calls;
    QByteArray last;
};

} // namespace

TEST_F(SipLoss, CallsAreMadeOnceAndEndOverAWayThatLosesAThird)
{
    const uint32_t rounds = qEnvironmentVariableIsSet("HX_LONG") ? 40 : 4;
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nSilentMs = 30000;
    ASSERT_TRUE(agent.start(setup));
    peer = std::make_unique<UdpPeer>();
    way = std::make_unique<BadWay>(agent.port(), peer->port());
    agent.tell(accountAt(0, way->front()));
    const QByteArray request = peer->receive("REGISTER");
    peer->send(UdpPeer::replyTo(request, "200 OK", "Contact: " + headerOf(request, "Contact")), way->back());
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    way->setBad(true);
    for (uint32_t id = 1; id <= rounds; ++id) {
        dial(id, "300");
        ASSERT_TRUE(serve(id)) << id;
        EXPECT_EQ(calls.size(), qsizetype(id));
        tellStatus(SIP_HANG_UP, id);
        expectEnd(id, SIP_HUNG_UP, 0);
        EXPECT_TRUE(seesTheEnd()) << id;
    }
}
