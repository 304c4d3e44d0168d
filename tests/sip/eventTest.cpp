#include "tests/sip/eventTest.h"
#include <QElapsedTimer>

void SipEventsOf::beginWithoutMessages(const tagSipSetup& setup)
{
    begin(setup);
    const QByteArray subscribe = nextSubscribe("message-summary");
    ASSERT_FALSE(subscribe.isEmpty());
    peer->reply(subscribe, "489 Bad Event");
}

QByteArray SipEventsOf::nextSubscribe(const QByteArray& event, int ms)
{
    return nextOf(event, false, ms);
}

QByteArray SipEventsOf::nextFarewell(const QByteArray& event, int ms)
{
    const QByteArray farewell = nextOf(event, true, ms);
    if (!farewell.isEmpty())
        peer->reply(farewell, "200 OK");
    return farewell;
}

QByteArray SipEventsOf::nextOf(const QByteArray& event, bool isFarewell, int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms) {
        const QByteArray subscribe = peer->receive("SUBSCRIBE", int(ms - timer.elapsed()));
        if (headerOf(subscribe, "Event") == event && (headerOf(subscribe, "Expires") == "0") == isFarewell)
            return subscribe;
        if (!subscribe.isEmpty())
            peer->reply(subscribe, "489 Bad Event");
    }
    return {};
}

void SipEventsOf::accept(const QByteArray& subscribe, int expires)
{
    peer->reply(subscribe, "200 OK",
                "Expires: " + QByteArray::number(expires) +
                    "\r\nContact: <sip:events@127.0.0.1:" + QByteArray::number(peer->port()) + ">");
}

void SipEventsOf::sendNote(const QByteArray& subscribe, const QByteArray& body, const QByteArray& type,
                           const QByteArray& state, const QByteArray& lines)
{
    const QByteArray number = QByteArray::number(++m_nNotes);
    const QByteArray own = "127.0.0.1:" + QByteArray::number(peer->port());
    QByteArray to = headerOf(subscribe, "Contact");
    to = to.mid(to.indexOf('<') + 1);
    to = to.left(to.indexOf('>'));
    QByteArray from = headerOf(subscribe, "To");
    if (!from.contains(";tag="))
        from += ";tag=peer";
    QByteArray text = "NOTIFY " + to + " SIP/2.0\r\nVia: SIP/2.0/UDP " + own + ";branch=z9hG4bKnote" +
                      number + "\r\nFrom: " + from + "\r\nTo: " + headerOf(subscribe, "From") +
                      "\r\nCall-ID: " + headerOf(subscribe, "Call-ID") + "\r\nCSeq: " + number +
                      " NOTIFY\r\nMax-Forwards: 70\r\nContact: <sip:events@" + own +
                      ">\r\nEvent: " + headerOf(subscribe, "Event") + "\r\nSubscription-State: " + state +
                      "\r\n";
    if (!lines.isEmpty())
        text += lines + "\r\n";
    if (!body.isEmpty())
        text += "Content-Type: " + type + "\r\n";
    peer->send(text + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body, agent.port());
}

QByteArray SipEventsOf::note(const QByteArray& subscribe, const QByteArray& body, const QByteArray& type,
                             const QByteArray& state, const QByteArray& lines)
{
    sendNote(subscribe, body, type, state, lines);
    const QByteArray reply = peer->receive("SIP/2.0");
    return reply.left(reply.indexOf('\r'));
}

QByteArray SipEventsOf::strangeNote(const QByteArray& user, const QByteArray& event, const QByteArray& body,
                                    const QByteArray& type)
{
    const QByteArray number = QByteArray::number(++m_nNotes);
    peer->send("NOTIFY sip:" + user + "@127.0.0.1:" + QByteArray::number(agent.port()) +
                   " SIP/2.0\r\nVia: SIP/2.0/UDP 127.0.0.1:" + QByteArray::number(peer->port()) +
                   ";branch=z9hG4bKstrange" + number +
                   "\r\nFrom: <sip:pbx@127.0.0.1>;tag=pbx\r\nTo: <sip:" + user +
                   "@127.0.0.1>\r\nCall-ID: strange" + number + "\r\nCSeq: 1 NOTIFY\r\nMax-Forwards: 70\r\n" +
                   "Contact: <sip:pbx@127.0.0.1:" + QByteArray::number(peer->port()) +
                   ">\r\nEvent: " + event + "\r\nSubscription-State: active\r\nContent-Type: " + type +
                   "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body,
               agent.port());
    const QByteArray reply = peer->receive("SIP/2.0");
    return reply.left(reply.indexOf('\r'));
}

QByteArray SipEventsOf::watched(uint32_t id, const char* number)
{
    watch(id, number);
    const QByteArray subscribe = nextSubscribe("dialog");
    accept(subscribe);
    return subscribe;
}

void SipEventsOf::expectLamp(uint32_t id, SIP_LAMP_STATE lamp)
{
    const auto* told = reinterpret_cast<const tagSipLamp*>(
        agent.next([](const tagSipHead& head) { return head.eKind == SIP_LAMP; }));
    ASSERT_TRUE(told) << lamp;
    EXPECT_EQ(told->head.nId, id);
    EXPECT_EQ(told->eLamp, uint32_t(lamp));
}

void SipEventsOf::expectMessages(bool isKnown, uint32_t fresh, uint32_t old)
{
    const auto* told = next<tagSipMessages>(SIP_MESSAGES, 0);
    ASSERT_TRUE(told) << fresh;
    EXPECT_EQ(told->bKnown, uint32_t(isKnown));
    EXPECT_EQ(told->nNew, fresh);
    EXPECT_EQ(told->nOld, old);
}

bool SipEventsOf::isNothingTold(int ms)
{
    return agent.isQuiet(ms);
}
