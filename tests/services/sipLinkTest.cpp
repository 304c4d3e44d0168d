// Lines whose agent comes and goes, lies, or is not there: what the phone tells it, and what it shows.
#include "host/services/phone/sipLink.h"
#include "tests/kit/plain/processes.h"
#include "tests/services/sipStand.h"
#include "tests/sip/udpPeer.h"
#include <QCoreApplication>
#include <QDir>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr uint32_t OUT = SIP_CALL_FIRST;

class SipLink : public SipPhone
{
protected:
    // The agent is turned away, and the line shows it; another one is served.
    void expectTurnedAway()
    {
        EXPECT_TRUE(agent.isLeft());
        EXPECT_TRUE(kit::waitUntil([] { return stateOf(0) == LINE_REGISTER_FAILED; }));
        agentComes();
        EXPECT_TRUE(agent.next<tagSipAccount>(SIP_ACCOUNT));
        EXPECT_EQ(stateOf(0), LINE_REGISTERING);
    }
    qint64 ownAgent()
    {
        qint64 pid = 0;
        kit::waitUntil([&] { return (pid = kit::childOf(getpid(), "hxSip")) != 0; });
        return pid;
    }
    void expectRegistersAt(UdpPeer& server)
    {
        QByteArray request;
        EXPECT_TRUE(
            kit::waitUntil([&] { return (request = server.receive(1)).startsWith("REGISTER"); }, 15000));
        server.reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600");
        EXPECT_TRUE(kit::waitUntil([] { return stateOf(0) == LINE_DEFAULT_ACCOUNT; }, 15000));
    }
    void writeAccountAt(const UdpPeer& server)
    {
        writeAccount(0, "[account]\nEnable=1\nUserName=100\nSIPServerHost=127.0.0.1\nSIPServerPort=" +
                            QByteArray::number(server.port()) + "\n");
    }
};

} // namespace

TEST_F(SipLink, ADamagedRecordEndsTheAgentAndTheNextOneIsServed)
{
    begin();
    const char junk[64] = {1, 2, 3, 4, 5, 6, 7, 8};
    agent.tellBytes(junk, sizeof junk);
    expectTurnedAway();
    auto wrong = sipWire::make<tagSipLine>(SIP_LINE, 0);
    wrong.eState = 99;
    agent.tell(wrong);
    expectTurnedAway();
}

TEST_F(SipLink, WhatHasNoPlaceEndsTheAgent)
{
    boot();
    agentComes();
    ASSERT_TRUE(agent.next<tagSipAccount>(SIP_ACCOUNT));
    agent.tell(sipWire::make<tagSipHead>(SIP_HELLO, 0));
    expectTurnedAway();
    agent.tell(sipWire::make<tagSipHead>(SIP_END, 0)); // which is the phone's to say
    expectTurnedAway();
    agent.tell(arrival(IN));
    EXPECT_TRUE(kit::waitUntil([] { return calls().size() == 1; }));
    agent.tell(arrival(IN));
    expectTurnedAway();
    EXPECT_TRUE(waitsForEnd());
    EXPECT_TRUE(agent.comeTo(hostPath("/rundata/run/hxSip.link")));
}

TEST_F(SipLink, NobodyElseOfTheMachineMayBeTheAgent)
{
    const mode_t before = umask(0);
    boot();
    umask(before);
    const QByteArray path = hostPath("/rundata/run/hxSip.link").toUtf8();
    struct stat about = {};
    ASSERT_EQ(::stat(path.constData(), &about), 0);
    EXPECT_EQ(about.st_mode & 0777u, 0600u);
    if (geteuid() != 0)
        GTEST_SKIP() << "another user can be played by root alone";
    // Not even where he finds it open.
    const QByteArray folder = path.left(path.lastIndexOf('/'));
    ASSERT_EQ(chmod(path.constData(), 0666), 0);
    ASSERT_EQ(chmod(folder.constData(), 0755), 0);
    const pid_t stranger = fork();
    if (stranger == 0) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        strcpy(address.sun_path, "hxSip.link");
        const int link = socket(AF_UNIX, SOCK_STREAM, 0);
        const timeval limit = {10, 0};
        setsockopt(link, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        char first = 0;
        if (chdir(folder.constData()) != 0 || setuid(65534) != 0 ||
            connect(link, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
            _exit(2);
        const ssize_t count = recv(link, &first, 1, 0);
        _exit(count == 0 || (count < 0 && errno == ECONNRESET) ? 0 : 1);
    }
    int status = -1;
    ASSERT_TRUE(kit::waitUntil([&] { return waitpid(stranger, &status, WNOHANG) == stranger; }, 15000));
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << "1: he is told something; 2: he does not reach it";
    agentComes();
    EXPECT_TRUE(agent.next<tagSipAccount>(SIP_ACCOUNT));
}

TEST_F(SipLink, AnAgentIsNotThereBeforeItsHello)
{
    boot();
    EXPECT_EQ(stateOf(0), LINE_REGISTERING);
    ASSERT_TRUE(agent.comeTo(hostPath("/rundata/run/hxSip.link")));
    ASSERT_TRUE(agent.next<tagSipSetup>(SIP_SETUP));
    EXPECT_TRUE(agent.isQuiet(SIP_ACCOUNT));
    tellLine(0, SIP_LINE_REGISTERED);
    expectTurnedAway();

    agent.leave();
    EXPECT_TRUE(kit::waitUntil([] { return stateOf(0) == LINE_REGISTER_FAILED; }));
    ASSERT_TRUE(agent.comeTo(hostPath("/rundata/run/hxSip.link")));
    ASSERT_TRUE(agent.next<tagSipSetup>(SIP_SETUP));
    kit::stepTime(9000);
    EXPECT_TRUE(agent.isQuiet(SIP_ACCOUNT));
    kit::stepTime(2000);
    expectTurnedAway();
}

TEST_F(SipLink, AnAgentThatGivesNoSignOfLifeIsEndedWithItsCalls)
{
    begin();
    talksOut();
    kit::stepTime(60000);
    EXPECT_GE(agent.nPings, 11);
    EXPECT_EQ(call().eState, CALL_TALKING);
    EXPECT_EQ(stateOf(0), LINE_DEFAULT_ACCOUNT);
    agent.bFrozen = true;
    kit::stepTime(9000);
    EXPECT_EQ(call().eState, CALL_TALKING) << "it may be late once";
    kit::stepTime(7000);
    EXPECT_TRUE(waitsForEnd());
    EXPECT_EQ(lastEnded().eEnd, CALL_FAILED);
    EXPECT_EQ(lastEnded().strReason, "The connection was lost");
    expectTurnedAway();
}

TEST_F(SipLink, AFloodLeavesTheEventLoopItsTurns)
{
    begin();
    mark();
    QByteArray flood;
    for (int i = 0; i < 300; ++i) {
        auto record = sipWire::make<tagSipLine>(SIP_LINE, 0);
        record.eState = i % 2 ? SIP_LINE_REGISTERED : SIP_LINE_FAILED;
        flood.append(reinterpret_cast<const char*>(&record), sizeof record);
    }
    agent.tellBytes(flood.constData(), size_t(flood.size()));
    QCoreApplication::processEvents();
    EXPECT_LE(traces().filter("line 1 ").size(), 32);
    EXPECT_TRUE(kit::waitUntil([&] { return traces().filter("line 1 ").size() == 300; }));
    EXPECT_EQ(stateOf(0), LINE_DEFAULT_ACCOUNT);
}

TEST_F(SipLink, AnAgentThatReadsNothingIsEndedBeforeThePhonesMemoryIs)
{
    begin();
    talksOut();
    agent.stopReading();
    // Each is answered with a whole description.
    constexpr int kEnough = 2 * (sipLink::WAITING_MAX / SIP_SDP_SIZE);
    for (int offer = 0; offer < kEnough && stateOf(0) == LINE_DEFAULT_ACCOUNT; ++offer)
        tellMedia(SIP_OFFER, OUT, "anew");
    EXPECT_TRUE(waitsForEnd());
    expectTurnedAway();
}

TEST_F(SipLink, WhatOneAgentWasNotToldIsNotToldToTheNext)
{
    begin();
    talksOut();
    agent.stopReading();
    media->bTakesTones = false;
    constexpr int kMoreThanASocketHolds = 2000;
    for (int tone = 0; tone < kMoreThanASocketHolds; ++tone)
        phoneService::instance().backend().sendTone(call().nId, '5', false);
    EXPECT_EQ(stateOf(0), LINE_DEFAULT_ACCOUNT);
    agent.leave();
    EXPECT_TRUE(kit::waitUntil([] { return stateOf(0) == LINE_REGISTER_FAILED; }));
    ASSERT_TRUE(agent.comeTo(hostPath("/rundata/run/hxSip.link")));
    EXPECT_TRUE(agent.isQuiet(SIP_TONE)) << "digits of a call that is over";
}

TEST_F(SipLink, OneAgentIsServedAtATime)
{
    begin();
    kit::ScriptedAgent second;
    ASSERT_TRUE(second.comeTo(hostPath("/rundata/run/hxSip.link")));
    EXPECT_TRUE(second.isLeft());
    EXPECT_EQ(stateOf(0), LINE_DEFAULT_ACCOUNT);
}

TEST_F(SipLink, TheOwnAgentRegistersComesAgainAfterItsDeathAndUnregistersAtTheEnd)
{
    UdpPeer server;
    writeAccountAt(server);
    boot(sipBackend::AGENT_OWN);
    const qint64 first = ownAgent();
    ASSERT_NE(first, 0);
    // Nobody else is taken for it.
    EXPECT_TRUE(agent.comeTo(hostPath("/rundata/run/hxSip.link")));
    EXPECT_TRUE(agent.isLeft());
    expectRegistersAt(server);

    ASSERT_EQ(::kill(pid_t(first), SIGKILL), 0);
    EXPECT_TRUE(kit::waitUntil([] { return stateOf(0) == LINE_REGISTER_FAILED; }));
    kit::stepTime(250);
    expectRegistersAt(server);
    EXPECT_NE(ownAgent(), first);

    phoneService::instance().setBackend(nullptr);
    bool leaves = false;
    while (!leaves) { // one of before may have come twice
        const QByteArray last = server.receive("REGISTER", 1000);
        ASSERT_NE(last.toStdString(), "");
        leaves = headerOf(last, "Expires") == "0" || headerOf(last, "Contact").contains("expires=0");
    }
    EXPECT_EQ(kit::childOf(getpid(), "hxSip"), 0);
}

TEST_F(SipLink, TheOwnAgentThatIsFrozenIsReplacedAndOneThatDiesAgainAndAgainIsSoonBack)
{
    UdpPeer server;
    writeAccountAt(server);
    boot(sipBackend::AGENT_OWN);
    expectRegistersAt(server);
    const qint64 first = ownAgent();
    // The steps leave it the time to answer, however busy the machine is.
    const auto rests = [first] { return kit::statusKiB(first, "voluntary_ctxt_switches"); };
    for (int i = 0; i < 6; ++i) {
        const qint64 before = rests();
        kit::stepTime(5000);
        EXPECT_TRUE(kit::waitUntil([&] { return rests() > before; }, 20000));
        const QByteArray late = server.receive(1);
        EXPECT_EQ(stateOf(0), LINE_DEFAULT_ACCOUNT) << late.toStdString();
    }
    EXPECT_EQ(ownAgent(), first);
    ASSERT_EQ(::kill(pid_t(first), SIGSTOP), 0);
    qint64 now = first;
    const auto comesAnew = [&] {
        const qint64 before = now;
        return kit::waitUntil(
            [&] {
                kit::stepTime(100);
                now = kit::childOf(getpid(), "hxSip");
                return now != 0 && now != before;
            },
            20000);
    };
    ASSERT_TRUE(comesAnew());
    EXPECT_EQ(traces().filter("is not alive any more").size(), 1);

    mark();
    for (int i = 0; i < 7; ++i) {
        ASSERT_EQ(::kill(pid_t(now), SIGKILL), 0);
        ASSERT_TRUE(comesAnew()) << i;
    }
    const QStringList deaths = traces().filter("hxSip was killed");
    ASSERT_EQ(deaths.size(), 7);
    EXPECT_TRUE(deaths[0].endsWith("in 400 ms") || deaths[0].endsWith("in 200 ms"));
    for (int i = 5; i < 7; ++i)
        EXPECT_TRUE(deaths[i].endsWith("in 5000 ms")) << deaths[i].toStdString();
}

TEST_F(SipLink, ALongPathOfTheRunFolderIsServedToo)
{
    UdpPeer server;
    writeAccountAt(server);
    const QString folder = root() + "/" + QString(120, 'x');
    ASSERT_TRUE(QDir().mkpath(folder));
    setenv("HX_RUN_FOLDER", folder.toUtf8().constData(), 1);
    boot(sipBackend::AGENT_OWN);
    expectRegistersAt(server);
}
