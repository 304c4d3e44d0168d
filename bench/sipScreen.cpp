#include "bench/sipScreen.h"
#include "bench/answeringServer.h"
#include "bench/callPhone.h"
#include "bench/callScreen.h"
#include "bench/sipExchange.h"
#include "bench/sipUsers.h"
#include "bench/threadWatch.h"
#include "host/desktop/frmDial.h"
#include <QElapsedTimer>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int kCalls = 200;
constexpr int kSeconds = 3600;
constexpr int kWaitMs = 20000;
constexpr int kRestMs = 50;
constexpr double kInviteMs = 20;
constexpr double kRingsMs = 50;
const QByteArray kSdp = "v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=-\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
                        "m=audio 40000 RTP/AVP 8 0\r\na=sendrecv\r\n";

// Whoever the phone calls is busy, and knows when he was called.
class BusyPhone
{
public:
    BusyPhone()
        : m_server([this](UdpPeer& socket, const QByteArray& message) {
              if (!message.startsWith("INVITE"))
                  return;
              m_nCalledNs = m_clock.nsecsElapsed();
              socket.reply(message, "486 Busy Here");
          })
    {
        m_clock.start();
    }
    uint32_t port() const { return m_server.port(); }
    double nowMs() const { return double(m_clock.nsecsElapsed()) / 1e6; }
    // Since the beginning; 0 when he was not called since the last forget().
    double calledMs() const { return double(m_nCalledNs) / 1e6; }
    void forget() { m_nCalledNs = 0; }

private:
    QElapsedTimer m_clock;
    std::atomic<qint64> m_nCalledNs{0};
    AnsweringServer m_server;
};

void addTimes(RatioTable& table, const QString& what, std::vector<double> times, double limitMs)
{
    std::sort(times.begin(), times.end());
    table.add(QString("%1, median of %2").arg(what).arg(times.size()), times[times.size() / 2], limitMs,
              "ms");
    table.add("99th percentile of these", times[size_t(std::floor(double(times.size()) * 0.99)) - 1], limitMs,
              "ms");
}

// Of the phone's contact at the exchange.
QByteArray requestTo(const QByteArray& contact, const QByteArray& method, const UdpPeer& caller, int call,
                     const QByteArray& to, const QByteArray& body = {})
{
    const QByteArray own = "127.0.0.1:" + QByteArray::number(caller.port());
    const QByteArray id = "call" + QByteArray::number(call);
    return method + " sip:" + contact + " SIP/2.0\r\nVia: SIP/2.0/UDP " + own + ";branch=z9hG4bK" + id +
           "\r\nFrom: \"Caller " + QByteArray::number(call) + "\" <sip:" + QByteArray::number(4700 + call) +
           "@127.0.0.1>;tag=caller\r\nTo: " + to + "\r\nCall-ID: " + id + "\r\nCSeq: 1 " + method +
           "\r\nMax-Forwards: 70\r\nContact: <sip:200@" + own + ">\r\n" +
           (body.isEmpty() ? "" : "Content-Type: application/sdp\r\n") +
           "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

void benchIn(RatioTable& table, const QByteArray& contact, const CallScreen& screen, TurnWatch& turns)
{
    const uint32_t agent = contact.mid(contact.lastIndexOf(':') + 1).toUInt();
    UdpPeer caller;
    std::vector<double> times;
    int wrong = 0;
    for (int call = 0; call < kCalls; ++call) {
        const QByteArray invite = requestTo(contact, "INVITE", caller, call, "<sip:1001@127.0.0.1>", kSdp);
        const QString name = QString("Caller %1").arg(call);
        const tagCost cost = untilPainted(
            screen, turns, [&] { caller.send(invite, agent); }, [&] { return screen.rings(name); });
        times.push_back(cost.waited);
        turns.turnFor(kRestMs);
        wrong += !screen.hasAnswerKey();
        endCall(screen, turns);
        const QByteArray refusal = caller.receive("SIP/2.0 603", kWaitMs);
        wrong += refusal.isEmpty();
        caller.send(requestTo(contact, "ACK", caller, call, headerOf(refusal, "To")), agent);
    }
    addTimes(table, "INVITE in to ringing on the screen", times, kRingsMs);
    table.add("calls of these that were not shown or not declined", wrong, 0, "");
}

void benchOut(RatioTable& table, BusyPhone& busy, const CallScreen& screen, TurnWatch& turns)
{
    std::vector<double> times;
    for (int call = 0; call < kCalls; ++call) {
        busy.forget();
        inNextTurn([call] { dialScreenOpen(QString::number(7100 + call), -1); });
        turns.turnUntil([] { return topWindow() && topWindow()->inherits("frmDial"); });
        turns.turnFor(kRestMs);
        const QPoint key = middleOf(topWindow()->findChild<QWidget*>("btnCall"));
        const double before = busy.nowMs();
        touchAt(key);
        const bool isCalled = turns.turnUntil([&] { return busy.calledMs() > 0; });
        times.push_back(isCalled ? busy.calledMs() - before : HUGE_VAL);
        turns.turnFor(kRestMs);
        endCall(screen, turns);
    }
    addTimes(table, "touch that dials to the INVITE on the wire", times, kInviteMs);
}

} // namespace

void benchSipScreen(RatioTable& table, int& argc, char** argv)
{
    BusyPhone busy;
    SipExchange exchange(kSeconds, busy.port());
    CallPhone phone(argc, argv);
    putSipAccount(phone.root(), 0, {"1001", exchange.port()});
    TurnWatch turns;
    if (!phone.bootReal(turns) || !turns.turnUntil([&] { return !exchange.contactOf("1001").isEmpty(); }))
        qFatal("the phone does not register");
    turns.turnFor(1000);
    const CallScreen screen;
    benchIn(table, exchange.contactOf("1001"), screen, turns);
    benchOut(table, busy, screen, turns);
}
