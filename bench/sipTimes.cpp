#include "bench/sipTimes.h"
#include "bench/answeringServer.h"
#include "bench/runningPhone.h"
#include "bench/sipExchange.h"
#include "bench/sipUsers.h"
#include "host/services/phone/sipBackend.h"
#include "tests/kit/plain/ports.h"
#include "tests/pbx/kamailioProcess.h"
#include "tests/sip/agentProcess.h"
#include "tests/sip/nameServer.h"
#include <QElapsedTimer>
#include <QThread>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int kRounds = 5;
constexpr int kSeconds = 3600;
constexpr int kWaitMs = 20000;
constexpr int kRestSeconds = 40; // the stack keeps what it may have to repeat
constexpr double kRegisteredMs = 500;
constexpr double kAgentMegabytes = 14;

double msOf(const QElapsedTimer& clock)
{
    return double(clock.nsecsElapsed()) / 1e6;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

tagSipSetup phoneSetup()
{
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nSilentMs = sipBackend::SILENT_MS;
    setup.nRetryMs = sipBackend::RETRY_MS;
    setup.nRetryLastMs = sipBackend::RETRY_LAST_MS;
    setup.nOfferMs = sipBackend::OFFER_MS;
    return setup;
}

QByteArray userOf(uint32_t line)
{
    return "100" + QByteArray::number(line + 1);
}

tagSipAccount accountOf(uint32_t line, uint32_t port, SIP_TRANSPORT transport)
{
    tagSipAccount account = accountAt(line, port, transport);
    sipWire::setText(account.szUser, userOf(line).toStdString());
    sipWire::setText(account.szAuthName, "");
    sipWire::setText(account.szPassword, SipExchange::passwordOf(userOf(line)).toStdString());
    return account;
}

struct tagRegistered
{
    double sinceStartMs = HUGE_VAL;
    double sinceToldMs = HUGE_VAL;
};

// All four lines, from the start of the agent's process on.
tagRegistered registerAll(AgentProcess& agent, const tagSipSetup& setup, uint32_t port,
                          SIP_TRANSPORT transport)
{
    QElapsedTimer sinceStart, sinceTold;
    sinceStart.start();
    if (!agent.start(setup))
        qFatal("the agent does not start");
    sinceTold.start();
    for (uint32_t line = 0; line < SIP_LINE_COUNT; ++line)
        agent.tell(accountOf(line, port, transport));
    uint32_t registered = 0;
    const auto isOne = [](const tagSipHead& head) {
        return head.eKind == SIP_LINE &&
               reinterpret_cast<const tagSipLine&>(head).eState == SIP_LINE_REGISTERED;
    };
    while (registered < SIP_LINE_COUNT && agent.next(isOne, kWaitMs))
        ++registered;
    if (registered < SIP_LINE_COUNT)
        qFatal("only %u lines register", registered);
    return {msOf(sinceStart), msOf(sinceTold)};
}

// At a server that nobody here wrote.
void registerOverTls(RatioTable& table)
{
    KamailioProcess server;
    server.start("MD5", true);
    tagSipSetup setup = phoneSetup();
    sipWire::setText(setup.szCertificates, server.certificates().toStdString());
    std::vector<double> sinceStart, sinceTold;
    double megabytes = 0;
    for (int round = 0; round < kRounds; ++round) {
        AgentProcess agent;
        setup.nPort = kit::freePort();
        setup.nTlsPort = kit::freePort();
        const tagRegistered took = registerAll(agent, setup, server.tlsPort(), SIP_TLS);
        sinceStart.push_back(took.sinceStartMs);
        sinceTold.push_back(took.sinceToldMs);
        if (round > 0)
            continue;
        QThread::sleep(kRestSeconds);
        megabytes = residentMegabytes(agent.pid());
    }
    table.add("hxSip with four accounts over TLS, at rest", megabytes, kAgentMegabytes, "MB");
    table.add("four accounts over TLS: start of hxSip to the last one registered", median(sinceStart),
              kRegisteredMs, "ms");
    table.add("their connection, certificate and digests alone", median(sinceTold), kRegisteredMs, "ms");
}

// The whole phone: it starts its agent by itself.
void registerWithPhone(RatioTable& table)
{
    std::vector<double> took;
    for (int round = 0; round < kRounds; ++round) {
        SipExchange exchange(kSeconds, kit::freePort());
        RunningPhone phone;
        for (int line = 0; line < SIP_LINE_COUNT; ++line)
            putSipAccount(phone.root(), line, {userOf(uint32_t(line)), exchange.port()});
        exchange.startClock();
        if (!phone.start({"--sip"}) || !exchange.waitForPhones(SIP_LINE_COUNT, kWaitMs))
            qFatal("the phone does not register");
        took.push_back(exchange.lastCameMs());
    }
    table.add("start of the phone's process to its four accounts registered", median(took), kRegisteredMs,
              "ms");
}

enum FAULT { DEAD, SILENT, OUT_OF_SERVICE, FAULTS };
const char* const kFaults[] = {"dead", "silent", "out of service"};
constexpr double kFaultMs[] = {1000, 5000, 1000};

// A domain of two servers, the first of which fails.
class TwoServers
{
public:
    explicit TwoServers(FAULT fault) : m_eFault(fault)
    {
        m_pFirst = std::make_unique<AnsweringServer>(
            [this](UdpPeer& socket, const QByteArray& message) { answer(socket, message); });
        m_pSecond = std::make_unique<AnsweringServer>([this](UdpPeer& socket, const QByteArray& message) {
            if (message.startsWith("REGISTER"))
                accept(socket, message);
            else if (message.startsWith("INVITE") && !m_nTookNs)
                m_nTookNs = m_clock.nsecsElapsed();
        });
        m_names.addService("_sip._udp.phones.test", 10, m_pFirst->port(), "one.phones.test");
        m_names.addService("_sip._udp.phones.test", 20, m_pSecond->port(), "two.phones.test");
        m_names.addAddress("one.phones.test", "127.0.0.1");
        m_names.addAddress("two.phones.test", "127.0.0.1");
        m_names.start();
        tagSipSetup setup = phoneSetup();
        sipWire::setText(setup.szNames, m_names.settings().toStdString());
        if (!m_agent.start(setup))
            qFatal("the agent does not start");
    }

    double registerMs()
    {
        fail();
        m_clock.start();
        return tellAccount() ? msOf(m_clock) : HUGE_VAL;
    }
    // The line is registered at the first one, which fails then.
    double callMs()
    {
        if (!tellAccount())
            return HUGE_VAL;
        fail();
        auto dial = sipWire::make<tagSipDial>(SIP_DIAL, 1);
        sipWire::setText(dial.szTarget, "300");
        sipWire::setText(dial.szSdp, "v=0\r\ns=offer\r\n");
        m_clock.start();
        m_agent.tell(dial);
        for (int look = 0; look < kWaitMs && !m_nTookNs; ++look)
            QThread::msleep(1);
        return m_nTookNs ? double(m_nTookNs) / 1e6 : HUGE_VAL;
    }

private:
    static void accept(UdpPeer& socket, const QByteArray& request)
    {
        socket.reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600");
    }
    void answer(UdpPeer& socket, const QByteArray& request)
    {
        if (m_bFails && m_eFault == OUT_OF_SERVICE)
            socket.reply(request, "503 Service Unavailable");
        else if (!m_bFails && request.startsWith("REGISTER"))
            accept(socket, request);
    }
    void fail()
    {
        m_bFails = true;
        if (m_eFault == DEAD)
            m_pFirst.reset();
    }
    bool tellAccount()
    {
        tagSipAccount account = accountAt(0, 0);
        sipWire::setText(account.szServer, "phones.test");
        m_agent.tell(account);
        return m_agent.nextLine(0, SIP_LINE_REGISTERED, kWaitMs) != nullptr;
    }

    const FAULT m_eFault;
    std::atomic<bool> m_bFails{false};
    std::atomic<qint64> m_nTookNs{0};
    QElapsedTimer m_clock;
    std::unique_ptr<AnsweringServer> m_pFirst, m_pSecond;
    NameServer m_names;
    AgentProcess m_agent;
};

} // namespace

void benchRegistration(RatioTable& table)
{
    registerOverTls(table);
    registerWithPhone(table);
}

void benchFailover(RatioTable& table)
{
    for (int fault = 0; fault < FAULTS; ++fault) {
        std::vector<double> registers, calls;
        for (int round = 0; round < kRounds; ++round) {
            registers.push_back(TwoServers(FAULT(fault)).registerMs());
            calls.push_back(TwoServers(FAULT(fault)).callMs());
        }
        const QString what = QString("from a server that is %1 to the next: ").arg(kFaults[fault]);
        table.add(what + "a line", *std::max_element(registers.begin(), registers.end()), kFaultMs[fault],
                  "ms");
        table.add(what + "a call", *std::max_element(calls.begin(), calls.end()), kFaultMs[fault], "ms");
    }
}
