// What many send at once, and what is heard of it.
#include "tests/kit/plain/measuredMemory.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/callTest.h"
#include <QElapsedTimer>
#include <arpa/inet.h>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int kBurst = 60;       // more than a stranger may say at once, and less than a server may
constexpr int kOfAStranger = 20; // at once
constexpr int kQuietMs = 1500;
constexpr int kOneMoreMs = 500; // until he may say one more

class SipFloods : public SipCalls
{
protected:
    QByteArray question(const QByteArray& name)
    {
        return inviteText(name, {}, "").replace("INVITE", "OPTIONS");
    }
    // How many of so many questions are answered, as long as answers come.
    int heard(UdpPeer& source, const QByteArray& name)
    {
        const QByteArray own = QByteArray::number(peer->port()), its = QByteArray::number(source.port());
        for (int i = 0; i < kBurst; ++i)
            source.send(question(name + QByteArray::number(i)).replace(":" + own, ":" + its), agent.port());
        int count = 0;
        while (count < kBurst &&
               !source.receive("SIP/2.0", count ? kQuietMs : AgentProcess::WAIT_MS).isEmpty())
            ++count;
        return count;
    }
    void wait(int ms)
    {
        agent.next([](const tagSipHead&) { return false; }, ms);
    }
};

// Datagrams that each seem to come from another address of this machine.
class Forger
{
public:
    Forger() : m_nSocket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}
    ~Forger() { close(m_nSocket); }
    Forger(const Forger&) = delete;

    bool send(const QByteArray& message, uint32_t port, unsigned number)
    {
        sockaddr_in to = {};
        to.sin_family = AF_INET;
        to.sin_port = htons(uint16_t(port));
        to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        iovec part = {const_cast<char*>(message.constData()), size_t(message.size())};
        alignas(cmsghdr) char bytes[CMSG_SPACE(sizeof(in_pktinfo))] = {};
        msghdr head = {};
        head.msg_name = &to;
        head.msg_namelen = sizeof to;
        head.msg_iov = &part;
        head.msg_iovlen = 1;
        head.msg_control = bytes;
        head.msg_controllen = sizeof bytes;
        cmsghdr* control = CMSG_FIRSTHDR(&head);
        control->cmsg_level = IPPROTO_IP;
        control->cmsg_type = IP_PKTINFO;
        control->cmsg_len = CMSG_LEN(sizeof(in_pktinfo));
        in_pktinfo info = {};
        info.ipi_spec_dst.s_addr = htonl(0x7f010000 + number);
        memcpy(CMSG_DATA(control), &info, sizeof info);
        return sendmsg(m_nSocket, &head, 0) == ssize_t(message.size());
    }

private:
    int m_nSocket;
};

} // namespace

TEST_F(SipFloods, AServerWhoseAccountWasTakenAwayIsAStrangerFromThenOn)
{
    begin(AgentProcess::calmSetup());
    EXPECT_EQ(heard(*peer, "server"), kBurst);
    agent.tell(sipWire::make<tagSipAccount>(SIP_ACCOUNT, 0));
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_NONE));
    peer->reply(peer->receive("REGISTER"), "200 OK");
    QElapsedTimer timer;
    timer.start();
    const int later = heard(*peer, "stranger");
    EXPECT_GT(later, 0);
    EXPECT_LE(later, kOfAStranger + timer.elapsed() / kOneMoreMs);
}

TEST_F(SipFloods, AddressesThatAreForgedTakeNoMemory)
{
    constexpr unsigned kFirst = 2000, kAll = 60000, kAtOnce = 100;
    const kit::NothingKept nothing;
    begin(AgentProcess::calmSetup());
    Forger forger;
    const QByteArray text = question("forged");
    qint64 before = 0;
    for (unsigned i = 0; i < kAll; ++i) {
        if (i == kFirst)
            before = kit::statusKiB(agent.pid(), "VmRSS");
        ASSERT_TRUE(forger.send(text, agent.port(), i)) << i;
        if (i % kAtOnce == 0)
            wait(4);
    }
    wait(300);
    EXPECT_LT(kit::statusKiB(agent.pid(), "VmRSS") - before, 3000 * kit::kMemoryTimes) << before;
    EXPECT_NE(talkIn("talks"), 0u);
}

TEST_F(SipFloods, AStrangersEndOfWhatNeverBeganIsNotEvenAnswered)
{
    begin(AgentProcess::calmSetup());
    peer = std::make_unique<UdpPeer>("127.0.0.2");
    takeBack(inviteText("never"));
    peer->send(question("there"), agent.port());
    EXPECT_EQ(headerOf(peer->receive("SIP/2.0"), "CSeq").toStdString(), "1 OPTIONS");
}

TEST_F(SipFloods, APhoneThatReadsNothingMoreIsTakenForDead)
{
    constexpr int kMost = 1000;
    begin(AgentProcess::calmSetup());
    int calls = 0;
    for (; calls < kMost && !agent.ends(0); ++calls) {
        const QByteArray invite = inviteText("call" + QByteArray::number(calls));
        peer->send(invite, agent.port());
        takeBack(invite);
        const QByteArray ended = peer->receive("SIP/2.0 487", 3000);
        if (ended.isEmpty())
            break;
        acknowledge(ended);
    }
    EXPECT_GT(calls, 50) << "some patience it has";
    EXPECT_LT(calls, kMost);
    EXPECT_TRUE(agent.ends());
    EXPECT_FALSE(agent.hasCrashed());
}
