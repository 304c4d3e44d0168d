#include "tests/pbx/wirePhone.h"
#include "tests/pbx/registrarProcess.h"
#include <QList>

namespace {

QList<QByteArray> headersOf(const QByteArray& message, const QByteArray& name)
{
    QList<QByteArray> all;
    const QByteArray head = message.left(message.indexOf("\r\n\r\n"));
    for (const QByteArray& line : head.split('\n')) {
        if (line.left(line.indexOf(':')).toLower() == name.toLower())
            all.append(line.mid(line.indexOf(':') + 1).trimmed());
    }
    return all;
}

QByteArray addressIn(const QByteArray& header)
{
    const qsizetype start = header.indexOf('<') + 1;
    return header.mid(start, header.indexOf('>') - start);
}

int numberOf(const QByteArray& message)
{
    return headerOf(message, "CSeq").split(' ').first().toInt();
}

} // namespace

int statusOf(const QByteArray& reply)
{
    return reply.startsWith("SIP/2.0 ") ? reply.mid(8, 3).toInt() : 0;
}

WirePhone::WirePhone(const QByteArray& user, uint32_t pbx, const QByteArray& password)
    : m_user(user), m_password(password.isEmpty() ? RegistrarProcess::passwordOf(user) : password),
      m_nServer(pbx), m_server("127.0.0.1:" + QByteArray::number(pbx))
{
}

QByteArray WirePhone::text(const QByteArray& method, const QByteArray& uri, const QByteArray& callId,
                           int number, const QByteArray& lines, const QByteArray& body,
                           const QByteArray& to) const
{
    QByteArray text = method + " " + uri + " SIP/2.0\r\nVia: SIP/2.0/UDP " + own() + ";branch=z9hG4bK" +
                      method + QByteArray::number(number) + callId + ";rport\r\nFrom: <" + at(m_user) +
                      ">;tag=f" + callId + "\r\nTo: " + (to.isEmpty() ? "<" + uri + ">" : to) +
                      "\r\nCall-ID: " + callId + "\r\nCSeq: " + QByteArray::number(number) + " " + method +
                      "\r\nMax-Forwards: 70\r\n";
    if (!lines.contains("Contact:") && method != "REGISTER")
        text += "Contact: <sip:" + m_user + "@" + own() + ">\r\n";
    if (!lines.isEmpty())
        text += lines + "\r\n";
    if (!body.isEmpty() && !lines.contains("Content-Type:"))
        text += "Content-Type: application/sdp\r\n";
    return text + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

QByteArray WirePhone::answerTo(const QByteArray& reply, const QByteArray& method, const QByteArray& uri) const
{
    const bool isProxy = statusOf(reply) == 407;
    for (const QByteArray& question : headersOf(reply, isProxy ? "Proxy-Authenticate" : "WWW-Authenticate")) {
        const QByteArray algorithm = paramOf(question, "algorithm");
        if (!m_algorithm.isEmpty() && algorithm != m_algorithm)
            continue;
        QByteArray answer = QByteArray("Digest username=\"") + m_user + "\", realm=\"" +
                            paramOf(question, "realm") + "\", nonce=\"" + paramOf(question, "nonce") +
                            "\", uri=\"" + uri + "\", algorithm=" + algorithm +
                            ", qop=auth, nc=00000001, cnonce=\"own\"";
        answer += ", response=\"" + digestOf(method, answer, m_user, m_password) + "\"";
        return (isProxy ? "Proxy-Authorization: " : "Authorization: ") + answer;
    }
    return {};
}

QByteArray WirePhone::ask(const QByteArray& method, const QByteArray& uri, const QByteArray& callId,
                          const QByteArray& lines, const QByteArray& body, const QByteArray& to)
{
    QByteArray more = lines;
    QByteArray reply;
    for (int turn = 0; turn < 2; ++turn) {
        const QByteArray mark = QByteArray::number(++m_nNumber) + " " + method;
        m_wire.send(text(method, uri, callId, m_nNumber, more, body, to), m_nServer);
        do {
            reply = m_wire.receive("SIP/2.0 ");
        } while (!reply.isEmpty() && (statusOf(reply) < 200 || headerOf(reply, "CSeq") != mark));
        const QByteArray answer = answerTo(reply, method, uri);
        if (answer.isEmpty())
            break;
        more = lines.isEmpty() ? answer : lines + "\r\n" + answer;
    }
    return reply;
}

QByteArray WirePhone::registers(int seconds)
{
    const QByteArray contact = "Contact: <sip:" + m_user + "@" + own() + ">;expires=";
    return ask("REGISTER", "sip:" + m_server, "reg" + QByteArray::number(m_wire.port()),
               contact + QByteArray::number(seconds) + "\r\n" + "X-Phone: test", {}, "<" + at(m_user) + ">");
}

QByteArray WirePhone::offer()
{
    return "v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=offer\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
           "m=audio 40000 RTP/AVP 96 8\r\na=rtpmap:96 opus/48000/2\r\n";
}

bool WirePhone::calls(const QByteArray& user, const QByteArray& callId, const QByteArray& lines,
                      const QByteArray& sdp)
{
    m_wire.send(text("INVITE", at(user), callId, ++m_nNumber, lines, sdp), m_nServer);
    const QByteArray question = hears(407);
    acknowledge(question);
    const QByteArray answer = answerTo(question, "INVITE", at(user));
    if (answer.isEmpty())
        return false;
    m_wire.send(text("INVITE", at(user), callId, ++m_nNumber,
                     lines.isEmpty() ? answer : lines + "\r\n" + answer, sdp),
                m_nServer);
    return true;
}

void WirePhone::cancels(const QByteArray& user, const QByteArray& callId, const QByteArray& lines)
{
    QByteArray cancel = text("CANCEL", at(user), callId, m_nNumber, lines);
    cancel.replace("z9hG4bKCANCEL", "z9hG4bKINVITE");
    m_wire.send(cancel, m_nServer);
}

QByteArray WirePhone::hears(int status, int ms)
{
    return m_wire.receive("SIP/2.0 " + QByteArray::number(status), ms);
}

void WirePhone::reply(const QByteArray& request, const QByteArray& status, const QByteArray& lines,
                      const QByteArray& body)
{
    // Record-Route and To go back as they came; each phone has a tag of its own.
    QByteArray more = "Contact: <sip:" + m_user + "@" + own() + ">";
    for (const QByteArray& route : headersOf(request, "Record-Route"))
        more += "\r\nRecord-Route: " + route;
    if (!lines.isEmpty())
        more += "\r\n" + lines;
    QByteArray text = UdpPeer::replyTo(request, status, more, body);
    text.replace(";tag=peer\r\n", ";tag=p" + QByteArray::number(m_wire.port()) + "\r\n");
    m_wire.send(text, m_nServer);
}

void WirePhone::acknowledge(const QByteArray& reply)
{
    const QByteArray callId = headerOf(reply, "Call-ID"), to = headerOf(reply, "To");
    if (statusOf(reply) < 300) {
        within("ACK", reply);
        return;
    }
    QByteArray ack = text("ACK", addressIn(to), callId, numberOf(reply), {}, {}, to);
    ack.replace("z9hG4bKACK", "z9hG4bKINVITE");
    m_wire.send(ack, m_nServer);
}

void WirePhone::within(const QByteArray& method, const QByteArray& reply, const QByteArray& lines,
                       const QByteArray& body)
{
    const int number = method == "ACK" ? numberOf(reply) : ++m_nNumber;
    QByteArray more = "Route: " + headerOf(reply, "Record-Route");
    if (!lines.isEmpty())
        more += "\r\n" + lines;
    m_wire.send(text(method, addressIn(headerOf(reply, "Contact")), headerOf(reply, "Call-ID"), number, more,
                     body, headerOf(reply, "To")),
                m_nServer);
}
