#include "bench/sipExchange.h"
#include "tests/kit/plain/processes.h"

namespace {

constexpr int kLookMs = 20;
const QByteArray kRealm = "phones";
const QByteArray kNonce = "4c1d90";
const QByteArray kVia = "Via: SIP/2.0/UDP 127.0.0.1:";

QByteArray methodOf(const QByteArray& message)
{
    return message.left(message.indexOf(' '));
}

// Between the brackets of an address.
QByteArray bare(const QByteArray& header)
{
    const qsizetype start = header.indexOf('<') + 1;
    return header.mid(start, header.indexOf('>', start) - start);
}

QByteArray userOf(const QByteArray& address)
{
    const qsizetype start = address.indexOf(':') + 1;
    return address.mid(start, address.indexOf('@') - start);
}

// Of "sip:user@host:port;more".
uint32_t portOf(const QByteArray& address)
{
    const QByteArray place = address.mid(address.indexOf('@') + 1).split(';').first().split('>').first();
    return place.mid(place.indexOf(':') + 1).toUInt();
}

// Where the message came from, by its topmost Via.
uint32_t senderOf(const QByteArray& message)
{
    const QByteArray via = headerOf(message, "Via").split(';').first();
    return via.mid(via.lastIndexOf(':') + 1).toUInt();
}

bool isLeaving(const QByteArray& request)
{
    return headerOf(request, "Expires") == "0" || headerOf(request, "Contact").contains("expires=0");
}

} // namespace

SipExchange::SipExchange(int seconds, uint32_t called)
    : m_nSeconds(seconds), m_nCalled(called), m_thread([this] { run(); })
{
}

SipExchange::~SipExchange()
{
    m_bEnds = true;
    m_thread.join();
}

QByteArray SipExchange::contactOf(const QByteArray& user) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_contacts.value(user);
}

bool SipExchange::waitForPhones(int count, int ms) const
{
    return kit::waits(
        [&] {
            const std::lock_guard<std::mutex> lock(m_mutex);
            return m_contacts.size() >= count;
        },
        ms);
}

void SipExchange::startClock()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_clock.start();
}

double SipExchange::lastCameMs() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_lastCameMs;
}

void SipExchange::run()
{
    while (!m_bEnds) {
        const QByteArray message = m_socket.receive(kLookMs);
        if (message.startsWith("SIP/2.0 "))
            leadBack(message);
        else if (message.contains(" SIP/2.0\r\n"))
            takeRequest(message);
    }
}

void SipExchange::takeRequest(const QByteArray& request)
{
    const QByteArray method = methodOf(request);
    if (method == "REGISTER")
        takeRegister(request);
    else if (method == "SUBSCRIBE")
        takeSubscribe(request);
    else
        leadOn(request);
}

void SipExchange::takeRegister(const QByteArray& request)
{
    const QByteArray user = userOf(bare(headerOf(request, "To")));
    const QByteArray answer = headerOf(request, "Authorization");
    if (answer.isEmpty() ||
        paramOf(answer, "response") != digestOf("REGISTER", answer, user, passwordOf(user))) {
        m_socket.reply(request, "401 Unauthorized",
                       "WWW-Authenticate: Digest realm=\"" + kRealm + "\", nonce=\"" + kNonce +
                           "\", algorithm=SHA-256, qop=\"auth\"");
        return;
    }
    const QByteArray contact = headerOf(request, "Contact");
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (isLeaving(request)) {
            m_contacts.remove(user);
        } else {
            if (!m_contacts.contains(user) && m_clock.isValid())
                m_lastCameMs = double(m_clock.nsecsElapsed()) / 1e6;
            m_contacts[user] = bare(contact).mid(4).split(';').first();
            ++m_nRenewals;
        }
    }
    m_socket.reply(request, "200 OK",
                   isLeaving(request) ? QByteArray()
                                      : "Contact: " + contact + ";expires=" + QByteArray::number(m_nSeconds));
}

// One note for each: another number of messages every time.
void SipExchange::takeSubscribe(const QByteArray& request)
{
    const QByteArray seconds = headerOf(request, "Expires") == "0" ? "0" : QByteArray::number(m_nSeconds);
    const QByteArray own = "Contact: <sip:exchange@127.0.0.1:" + QByteArray::number(port()) + ">";
    if (headerOf(request, "Event") != "message-summary") {
        m_socket.reply(request, "489 Bad Event");
        return;
    }
    m_socket.reply(request, "200 OK", own + "\r\nExpires: " + seconds);
    ++m_nRenewals;
    ++m_nNotes;
    const QByteArray number = QByteArray::number(m_nNotes), to = headerOf(request, "To");
    const QByteArray body = "Messages-Waiting: yes\r\nVoice-Message: " + number + "/0\r\n";
    const QByteArray state = seconds == "0" ? "terminated;reason=timeout" : "active;expires=" + seconds;
    m_socket.answer("NOTIFY " + bare(headerOf(request, "Contact")) + " SIP/2.0\r\n" + kVia +
                    QByteArray::number(port()) + ";branch=z9hG4bKnote" + number + "\r\nFrom: " + to +
                    (to.contains(";tag=") ? "" : ";tag=peer") + "\r\nTo: " + headerOf(request, "From") +
                    "\r\nCall-ID: " + headerOf(request, "Call-ID") + "\r\nCSeq: " + number +
                    " NOTIFY\r\nMax-Forwards: 70\r\nEvent: message-summary\r\nSubscription-State: " + state +
                    "\r\n" + own +
                    "\r\nContent-Type: application/simple-message-summary\r\nContent-Length: " +
                    QByteArray::number(body.size()) + "\r\n\r\n" + body);
}

// By a branch that says which one it came with: what belongs to a request goes on as it did.
void SipExchange::leadOn(QByteArray request)
{
    const QByteArray own = "<sip:127.0.0.1:" + QByteArray::number(port()) + ";lr>\r\n";
    request.replace("\r\nRoute: " + own, "\r\n");
    const QByteArray address = request.split(' ').value(1);
    const uint32_t wanted = portOf(address);
    const QByteArray via = headerOf(request, "Via");
    const qsizetype at = via.indexOf("branch=") + 7;
    const QByteArray branch = via.mid(at).split(';').first();
    const qsizetype line = request.indexOf("\r\n") + 2;
    const QByteArray route = request.startsWith("INVITE") ? "Record-Route: " + own : QByteArray();
    m_socket.send(request.left(line) + kVia + QByteArray::number(port()) + ";branch=" + branch + "x\r\n" +
                      route + request.mid(line),
                  wanted == port() ? m_nCalled : wanted);
}

// Who answers may have written several Via in one line.
void SipExchange::leadBack(const QByteArray& reply)
{
    const qsizetype start = reply.indexOf("\r\n" + kVia + QByteArray::number(port()) + ";branch=");
    const qsizetype end = reply.indexOf("\r\n", start + 2), comma = reply.indexOf(", ", start);
    if (start < 0 || end < 0)
        return;
    const bool isFolded = comma > 0 && comma < end;
    const QByteArray rest =
        reply.left(start) + (isFolded ? "\r\nVia: " + reply.mid(comma + 2) : reply.mid(end));
    if (headerOf(rest, "Via").isEmpty())
        return; // to a note of our own
    m_socket.send(rest, senderOf(rest));
}
