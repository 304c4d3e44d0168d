// What nobody should send, and does.
#include "tests/kit/plain/measuredMemory.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/callTest.h"
#include <QDir>
#include <QTcpServer>
#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <memory>
#include <poll.h>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

// The classes of torture: syntax that is valid and strange, invalid in each part, and lengths that lie.
QList<QByteArray> damaged(const QByteArray& invite)
{
    QList<QByteArray> all;
    const auto with = [&](const char* from, const char* to) {
        all.append(QByteArray(invite).replace(from, to));
    };
    with("CSeq: 1 INVITE", "CSeq: 99999999999999 INVITE");
    with("CSeq: 1 INVITE", "CSeq: 1 BYE");
    with("CSeq: 1 INVITE", "CSeq: -1 INVITE");
    with("Content-Length:", "Content-Length: -");
    with("Content-Length:", "Content-Length: 999999999\r\nX:");
    with("SIP/2.0\r\n", "SIP/7.0\r\n");
    with("SIP/2.0\r\n", "\r\n");
    with("INVITE sip:", "INVITE  sip:");
    with("INVITE sip:", "INVITE nobody:");
    with("INVITE sip:", "INVITE <sip:");
    with("Via: SIP/2.0/UDP", "Via: SIP/2.0/UNKNOWN");
    with("Via:", "Via: ;;,;,,\r\nX:");
    with("branch=z9hG4bK", "branch=");
    with("From: <sip:200@127.0.0.1>", "From: \"unterminated <sip:200@127.0.0.1>");
    with("From: <sip:200@127.0.0.1>", "From: <sip:127.0.0.1>");
    with("From: <sip:200@127.0.0.1>", "From: <tel:+1200>");
    with("From: <sip:200@127.0.0.1>", "From: <sip:%ZZ%00@[::1>");
    with("To: <sip:", "To: \"Watson, Thomas\" < sip:");
    with("Max-Forwards: 70", "Max-Forwards: 0");
    with("Max-Forwards: 70", "Max-Forwards: 300");
    with("Max-Forwards: 70", "Require: nothinghasthis, norhasanybody");
    with("Max-Forwards: 70", "Proxy-Require: x\r\nDate: Fri, 01 Jan 2010 16:00:00 EST");
    with("Contact: <sip:200", "Contact: *\r\nContact: \"\\\"><sip:200");
    with("Call-ID:", "Call-ID: a\r\nCall-ID:");
    with("Content-Type: application/sdp", "Content-Type: application/unknown\r\nContent-Encoding: gzip");
    with("Content-Type: application/sdp", "Content-Type: multipart/mixed;boundary=\"\"");
    with("Max-Forwards: 70", "Session-Expires: 0;refresher=nobody\r\nMin-SE: 99999999999");
    with("Max-Forwards: 70", "Replaces: a;to-tag;from-tag=\r\nJoin: x\r\nRefer-To: <sip:@?&=>");
    with("Max-Forwards: 70",
         "Privacy:\r\nAlert-Info: <>\r\nCall-Info: ;;\r\nP-Asserted-Identity: ,\r\nDiversion: sip:");
    with("Max-Forwards: 70", "Authorization: Digest realm=\"\\\r\nWWW-Authenticate: Digest");
    with("\r\n", "\n");
    with("\r\n", "\r\n \r\n");
    with("sip:", "sip:\xc3\x28\xff\xfe");
    with("INVITE", "NEWMETHOD");
    with("INVITE", "REGISTER");
    with("INVITE", "NOTIFY");
    with("INVITE", "REFER");
    with("INVITE", "PRACK");
    with("INVITE", "CANCEL");
    with("INVITE", "ACK");
    with("tag=caller", QByteArray("tag=" + QByteArray(60000, 'a')).constData());
    with("Max-Forwards: 70", QByteArray("X: " + QByteArray(40000, ';')).constData());
    with("Max-Forwards: 70", QByteArray("Via: SIP/2.0/UDP h;branch=z9hG4bK1\r\n").repeated(500).constData());
    // Every line missing, twice, empty, folded and without its name.
    for (const QByteArray& line : invite.left(invite.indexOf("\r\n\r\n")).split('\n')) {
        const QByteArray name = line.left(line.indexOf(':') + 1), whole = line + '\n';
        if (name.isEmpty() || !invite.contains(whole))
            continue;
        for (const QByteArray& other :
             {QByteArray(), whole + whole, name + "\r\n",
              name + "\r\n  \r\n\t" + line.mid(name.size()) + '\n', whole.mid(name.size() - 1),
              name.toUpper() + line.mid(name.size()).trimmed() + ", x\r\n"})
            all.append(QByteArray(invite).replace(whole, other));
    }
    with("CSeq: 1 INVITE", "CSeq: 1 INVITE\r\nRAck: 99999999999 1 INVITE\r\nRSeq: -1");
    with("Max-Forwards: 70", "Subject:\r\nRoute: <sip:h;lr>, <sip:[::1>, <>\r\nRecord-Route: sip:x");
    with("Max-Forwards: 70", "Expires: -1\r\nRetry-After: x\r\nTimestamp: a.b\r\nReason: ;;=\r\nEvent:");
    with("Max-Forwards: 70", "Refer-To: <sip:a?Replaces=%>\r\nRefer-To: <sip:b>\r\nReferred-By: @");
    with("Max-Forwards: 70", "Replaces: ;;\r\nReplaces: a;to-tag;from-tag;early-only=\r\nRequire: replaces");
    with("v=0\r\n", QByteArray("v=0\r\n\0\xff\x01\r\n", 11).constData());
    with("Content-Type: application/sdp",
         "MIME-Version: 1.0\r\nContent-Type: multipart/mixed;boundary=b\r\nContent-Disposition: ;handling=");
    all.append("SIP/2.0 200 OK\r\n" + invite.mid(invite.indexOf('\n') + 1));
    all.append("SIP/2.0 -1 \r\n\r\n");
    all.append("SIP/2.0 4294967301 huge\r\n" + invite.mid(invite.indexOf('\n') + 1));
    all.append(QByteArray(65000, '\r'));
    all.append(QByteArray(1000, '\0'));
    all.append("INVITE");
    for (qsizetype length = 0; length < invite.size(); length += 7)
        all.append(invite.left(length));
    return all;
}

// Of no call that anybody has.
QByteArray loose(const QByteArray& method, const QByteArray& user, uint32_t to, int number)
{
    const QByteArray id = method + QByteArray::number(number);
    return method + " sip:" + user + "@127.0.0.1:" + QByteArray::number(to) +
           " SIP/2.0\r\nVia: SIP/2.0/UDP 127.0.0.1:9;branch=z9hG4bK" + id +
           "\r\nFrom: <sip:200@127.0.0.1>;tag=a\r\nTo: <sip:" + user + "@127.0.0.1>;tag=b\r\nCall-ID: " + id +
           "\r\nCSeq: 1 " + method + "\r\nMax-Forwards: 70\r\nContent-Length: 0\r\n\r\n";
}

const QByteArray kChallenge = "Proxy-Authenticate: Digest realm=\"home\", nonce=\"theirs\", qop=\"auth\"";

// Somebody who calls the line from another address than its server's.
class SipStrangers : public SipCalls
{
protected:
    void begin()
    {
        SipCalls::begin();
        peer = std::make_unique<UdpPeer>("127.0.0.2");
    }
    QByteArray moved(QByteArray text) const
    {
        const QByteArray port = QByteArray::number(peer->port());
        return text.replace("127.0.0.1:" + port, "127.0.0.2:" + port);
    }
    uint32_t talk(const QByteArray& callId)
    {
        peer->send(moved(inviteText(callId)), agent.port());
        const tagSipHead* head = agent.next([](const tagSipHead& each) { return each.eKind == SIP_ARRIVED; });
        const uint32_t id = head ? head->nId : 0;
        tellMedia(SIP_ANSWER, id, "v=0\r\ns=answer\r\n");
        lastAnswer = peer->receive("SIP/2.0 200");
        peer->send(moved(within("ACK", lastAnswer, 1)), agent.port());
        return next<tagSipMedia>(SIP_TALK, id) ? id : 0;
    }
    // Neither the offer nor the end of the call is worth the password.
    void expectNoAnswerToChallenges(uint32_t id)
    {
        tellMedia(SIP_MEDIA, id, "v=0\r\ns=later\r\n");
        const QByteArray offer = peer->receive("INVITE");
        ASSERT_NE(offer.toStdString(), "");
        peer->reply(offer, "407 Proxy Authentication Required", kChallenge);
        EXPECT_NE(peer->receive("ACK").toStdString(), "");
        EXPECT_TRUE(next<tagSipMedia>(SIP_TALK, id));
        EXPECT_EQ(peer->receive(500).toStdString(), "");
        tellStatus(SIP_HANG_UP, id);
        const QByteArray bye = peer->receive("BYE");
        EXPECT_FALSE(bye.contains("theirs")) << bye.constData();
        peer->reply(bye, "407 Proxy Authentication Required", kChallenge);
        EXPECT_EQ(peer->receive(500).toStdString(), "");
        expectEnd(id, SIP_HUNG_UP, 0);
    }
};

} // namespace

TEST_F(SipCalls, DamagedMessagesOfEveryKindDoNotEndItOrTheCallThatTalks)
{
    begin(AgentProcess::calmSetup());
    const uint32_t id = talkOut(1);
    ASSERT_NE(id, 0u);
    const QList<QByteArray> messages = damaged(inviteText("damaged", "X-Last: 1"));
    EXPECT_GT(messages.size(), 90);
    uint32_t arrived = 0;
    for (int i = 0; i < messages.size(); ++i) {
        QByteArray message = messages[i];
        message.replace("damaged", "damaged" + QByteArray::number(i));
        peer->send(message, agent.port());
        while (const tagSipHead* head =
                   agent.next([](const tagSipHead& each) { return each.eKind == SIP_ARRIVED; }, 5)) {
            tellStatus(SIP_REFUSE, head->nId, 486);
            ++arrived;
        }
        ASSERT_TRUE(agent.isRunning()) << i << messages[i].left(300).constData();
    }
    EXPECT_GT(arrived, 0u); // some of it is strange and nothing more
    tellStatus(SIP_HANG_UP, id);
    const QByteArray bye = peer->receive("BYE");
    EXPECT_NE(bye.toStdString(), "");
    peer->reply(bye, "200 OK");
    expectEnd(id, SIP_HUNG_UP, 0);
    EXPECT_NE(talkOut(2), 0u);
}

TEST_F(SipCalls, AFloodOfCallsIsRefusedAndLeavesNothingBehind)
{
    const kit::NothingKept nothing;
    begin();
    peer->send(inviteText("one"), agent.port());
    peer->send(inviteText("two"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, SIP_CALL_FIRST_INCOMING + 1));
    tellMedia(SIP_RING, SIP_CALL_FIRST_INCOMING, "");
    tellMedia(SIP_RING, SIP_CALL_FIRST_INCOMING + 1, "");
    EXPECT_NE(peer->receive("SIP/2.0 180").toStdString(), "");
    EXPECT_NE(peer->receive("SIP/2.0 180").toStdString(), "");
    const auto flood = [&](const QByteArray& name, int count) {
        for (int i = 0; i < count; ++i) {
            peer->send(inviteText(name + QByteArray::number(i)), agent.port());
            const QByteArray busy = peer->receive("SIP/2.0 486");
            ASSERT_NE(busy.toStdString(), "") << i;
            acknowledge(busy);
        }
    };
    // What is refused is remembered for five seconds, for those who repeat themselves.
    const auto waitUntilForgotten = [&] { EXPECT_TRUE(agent.isQuiet(6000)); };
    flood("a", 1000);
    waitUntilForgotten();
    const qint64 before = kit::statusKiB(agent.pid(), "VmRSS");
    flood("b", 1000);
    waitUntilForgotten();
    const qint64 after = kit::statusKiB(agent.pid(), "VmRSS");
    EXPECT_LT(after - before, 1000 * kit::kMemoryTimes) << before;
    EXPECT_FALSE(agent.next([](const tagSipHead& head) { return head.eKind == SIP_ARRIVED; }, 100));
    flood("c", 300); // in all more than are noted at a time
    tellStatus(SIP_REFUSE, SIP_CALL_FIRST_INCOMING, 486);
    expectEnd(SIP_CALL_FIRST_INCOMING, SIP_REFUSED, 486);
}

TEST_F(SipCalls, DamagedRepliesDoNotEndACallThatGoesOut)
{
    begin();
    dial(1, "300");
    const QByteArray invite = peer->receive("INVITE");
    const QByteArray good = UdpPeer::replyTo(invite, "180 Ringing",
                                             "Contact: <sip:300@127.0.0.1>\r\n"
                                             "Content-Type: application/sdp",
                                             "v=0\r\n");
    const QByteArray head = good.left(good.indexOf("\r\n\r\n"));
    for (const QByteArray& line : head.split('\n')) {
        const QByteArray name = line.left(line.indexOf(':') + 1), whole = line + '\n';
        for (const QByteArray& other : {QByteArray(), whole + whole, name + "\r\n", name + " ;;,<\r\n"})
            peer->answer(QByteArray(good).replace(whole, other));
    }
    for (const char* status : {"SIP/2.0 0 x", "SIP/2.0 99 x", "SIP/2.0 700 x", "SIP/3.0 180 x",
                               "SIP/2.0 1800 x", "SIP/2.0 180", "SIP/2.0", "180 Ringing"})
        peer->answer(QByteArray(good).replace("SIP/2.0 180 Ringing", status));
    for (qsizetype length = 0; length < head.size(); length += 3)
        peer->answer(good.left(length));
    peer->answer(QByteArray(good).replace("Contact: ", "Require: 100rel\r\nRSeq: 4294967296\r\nContact: "));
    ASSERT_TRUE(agent.isRunning());
    peer->reply(invite, "486 Busy Here");
    const auto* ended = next<tagSipEnded>(SIP_ENDED, 1);
    ASSERT_TRUE(ended);
    EXPECT_NE(talkOut(2), 0u);
}

TEST_F(SipCalls, AFloodOfStrangersTakesNeitherMemoryNorTheCallsOfTheServer)
{
    constexpr int kStrangers = 8, kBurst = 40, kBursts = 100;
    const kit::NothingKept nothing;
    begin();
    std::vector<std::unique_ptr<UdpPeer>> strangers;
    for (int i = 0; i < kStrangers; ++i)
        strangers.push_back(std::make_unique<UdpPeer>(("127.0.0." + std::to_string(2 + i)).c_str()));
    int calls = 0;
    const auto callOfTheServer = [&] {
        const uint32_t id = talkIn("server" + QByteArray::number(++calls));
        ASSERT_NE(id, 0u);
        tellStatus(SIP_HANG_UP, id);
        const QByteArray bye = peer->receive("BYE");
        ASSERT_NE(bye.toStdString(), "");
        peer->reply(bye, "200 OK");
        ASSERT_TRUE(next<tagSipEnded>(SIP_ENDED, id));
    };
    callOfTheServer();
    const qint64 before = kit::statusKiB(agent.pid(), "VmRSS");
    for (int burst = 0; burst < kBursts; ++burst) {
        for (int i = 0; i < kBurst; ++i) {
            const QByteArray name = "f" + QByteArray::number(burst * kBurst + i);
            const QByteArray text = inviteText(name).replace(contact, "100");
            strangers[size_t(i % kStrangers)]->send(text, agent.port());
        }
        ASSERT_NO_FATAL_FAILURE(callOfTheServer()) << burst;
    }
    const qint64 after = kit::statusKiB(agent.pid(), "VmRSS");
    EXPECT_LT(after - before, 6000 * kit::kMemoryTimes) << before;
    EXPECT_TRUE(agent.isRunning());
}

TEST_F(SipCalls, WhoWasCalledAndIsNoServerGetsNoAnswerToHisChallenges)
{
    begin();
    UdpPeer called("127.0.0.2");
    ASSERT_NE(talkOut(1), 0u);
    tellMedia(SIP_MEDIA, 1, "v=0\r\ns=later\r\n");
    const QByteArray offer = peer->receive("INVITE");
    ASSERT_NE(offer.toStdString(), "");
    called.send(UdpPeer::replyTo(offer, "407 Proxy Authentication Required", kChallenge), agent.port());
    EXPECT_TRUE(next<tagSipMedia>(SIP_TALK, 1));
    EXPECT_EQ(peer->receive("INVITE", 500).toStdString(), "");
    // The server may ask.
    tellMedia(SIP_MEDIA, 1, "v=0\r\ns=later\r\n");
    peer->reply(peer->receive("INVITE"), "407 Proxy Authentication Required", kChallenge);
    EXPECT_TRUE(headerOf(peer->receive("INVITE"), "Proxy-Authorization").contains("theirs"));
}

TEST_F(SipStrangers, WhoIsInACallGetsNoAnswerToItsChallenges)
{
    begin();
    const uint32_t id = talk("strange");
    ASSERT_NE(id, 0u);
    expectNoAnswerToChallenges(id);
}

TEST_F(SipStrangers, WhoGivesUpIsHeard)
{
    begin();
    const QByteArray invite = moved(inviteText("givesUp"));
    peer->send(invite, agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, SIP_CALL_FIRST_INCOMING));
    QByteArray cancel = invite.left(invite.indexOf("Content-Type")).replace("INVITE", "CANCEL");
    peer->send(cancel + "Content-Length: 0\r\n\r\n", agent.port());
    expectEnd(SIP_CALL_FIRST_INCOMING, SIP_CANCELLED, 0);
}

TEST_F(SipCalls, AFloodOfWhatBelongsToNoCallTakesNeitherMemoryNorTheCall)
{
    constexpr int kEach = 5000, kPause = 50;
    const kit::NothingKept nothing;
    begin();
    const uint32_t id = talkIn("talks");
    ASSERT_NE(id, 0u);
    for (const char* host : {"127.0.0.2", "127.0.0.1"}) {
        UdpPeer source(host);
        const qint64 before = kit::statusKiB(agent.pid(), "VmRSS");
        for (const char* method : {"ACK", "CANCEL", "BYE"}) {
            for (int i = 0; i < kEach; ++i) {
                source.send(loose(method, contact, agent.port(), i), agent.port());
                if (i % kPause == 0 && !agent.isQuiet(5))
                    FAIL() << method << i;
            }
        }
        EXPECT_TRUE(agent.isQuiet(300));
        EXPECT_LT(kit::statusKiB(agent.pid(), "VmRSS") - before, 6000 * kit::kMemoryTimes) << host;
    }
    peer->send(within("BYE", lastAnswer, 2), agent.port());
    expectEnd(id, SIP_HUNG_UP, 0);
}

namespace {

// Connections of one address that say what they are told to.
class Crowd
{
public:
    explicit Crowd(std::string host) : m_host(std::move(host)) {}
    ~Crowd()
    {
        for (const int socket : m_sockets)
            close(socket);
    }
    Crowd(const Crowd&) = delete;
    void connectTo(uint32_t port, int count, const QByteArray& text = {})
    {
        for (int i = 0; i < count; ++i) {
            const int made = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
            sockaddr_in own = placeOf(m_host.c_str(), 0), other = placeOf("127.0.0.1", port);
            ASSERT_EQ(bind(made, reinterpret_cast<sockaddr*>(&own), sizeof own), 0);
            ASSERT_EQ(connect(made, reinterpret_cast<sockaddr*>(&other), sizeof other), 0) << i;
            send(made, text.constData(), size_t(text.size()), MSG_NOSIGNAL);
            m_sockets.push_back(made);
        }
    }
    // The last one is told something.
    bool isAnswered() const
    {
        pollfd entry = {m_sockets.back(), POLLIN, 0};
        char byte = 0;
        return poll(&entry, 1, AgentProcess::WAIT_MS) > 0 &&
               recv(m_sockets.back(), &byte, 1, MSG_PEEK | MSG_DONTWAIT) == 1;
    }
    // Those that the other side has not ended.
    int open() const
    {
        return int(std::count_if(m_sockets.begin(), m_sockets.end(), [](int socket) {
            char bytes[4096];
            ssize_t count = 0;
            while ((count = recv(socket, bytes, sizeof bytes, MSG_DONTWAIT)) > 0) {
            }
            return count < 0 && errno == EAGAIN;
        }));
    }

private:
    static sockaddr_in placeOf(const char* host, uint32_t port)
    {
        sockaddr_in place = {};
        place.sin_family = AF_INET;
        place.sin_port = htons(uint16_t(port));
        inet_pton(AF_INET, host, &place.sin_addr);
        return place;
    }

    const std::string m_host;
    std::vector<int> m_sockets;
};

int filesOf(qint64 pid)
{
    return int(QDir(QString("/proc/%1/fd").arg(pid)).entryList(QDir::AllEntries | QDir::System).size());
}

} // namespace

TEST_F(SipCalls, AThousandConnectionsOfAStrangerTakeNoRoomFromTheLines)
{
    constexpr int kMany = 1000;
    begin();
    const int before = filesOf(agent.pid());
    rlimit files = {};
    getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = files.rlim_max;
    setrlimit(RLIMIT_NOFILE, &files);
    Crowd crowd("127.0.0.2");
    ASSERT_NO_FATAL_FAILURE(crowd.connectTo(agent.port(), kMany));
    EXPECT_TRUE(kit::waits([&] { return filesOf(agent.pid()) < before + 20; }, AgentProcess::WAIT_MS))
        << filesOf(agent.pid());
    EXPECT_TRUE(kit::waits([&] { return crowd.open() == 0; }, AgentProcess::WAIT_MS)) << "they say nothing";
    // While the next crowd is there, a line registers over a connection and calls come and go.
    ASSERT_NO_FATAL_FAILURE(crowd.connectTo(agent.port(), kMany, "INVITE "));
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    agent.tell(accountAt(1, server.serverPort(), SIP_TCP));
    ASSERT_TRUE(server.waitForNewConnection(AgentProcess::WAIT_MS));
    EXPECT_NE(talkIn("talks"), 0u);
    EXPECT_TRUE(agent.isRunning());
}

TEST_F(SipCalls, WhoSpeaksOverAConnectionKeepsItAndIsOneOfAFew)
{
    begin();
    const auto question = [this](const char* host, int number) {
        QByteArray text = loose("OPTIONS", contact, agent.port(), number).replace("/UDP", "/TCP");
        return text.replace(";tag=b", "").replace("127.0.0.1:9", QByteArray(host) + ":9");
    };
    Crowd speaks("127.0.0.3");
    ASSERT_NO_FATAL_FAILURE(speaks.connectTo(agent.port(), 1, question("127.0.0.3", 1)));
    ASSERT_TRUE(speaks.isAnswered());
    // As many silent ones of others as there are places, and more.
    std::vector<std::unique_ptr<Crowd>> others;
    for (int i = 0; i < 12; ++i) {
        others.push_back(std::make_unique<Crowd>("127.0.1." + std::to_string(2 + i)));
        ASSERT_NO_FATAL_FAILURE(others.back()->connectTo(agent.port(), 20));
    }
    EXPECT_TRUE(kit::waits(
        [&] {
            return std::all_of(others.begin(), others.end(),
                               [](const auto& each) { return each->open() == 0; });
        },
        AgentProcess::WAIT_MS));
    EXPECT_EQ(speaks.open(), 1);
    // The server's own may be silent.
    Crowd servers("127.0.0.1");
    ASSERT_NO_FATAL_FAILURE(servers.connectTo(agent.port(), 10));
    EXPECT_TRUE(agent.isQuiet(2000));
    EXPECT_EQ(servers.open(), 10);
}

TEST_F(SipCalls, SilentConnectionsOfManyAddressesHaveSoManyPlacesTogether)
{
    constexpr int kHosts = 12, kEach = 8, kPlaces = 48;
    begin(AgentProcess::calmSetup());
    const int before = filesOf(agent.pid());
    std::vector<std::unique_ptr<Crowd>> crowds;
    for (int i = 0; i < kHosts; ++i) {
        crowds.push_back(std::make_unique<Crowd>("127.0.1." + std::to_string(2 + i)));
        ASSERT_NO_FATAL_FAILURE(crowds.back()->connectTo(agent.port(), kEach));
    }
    EXPECT_NE(talkIn("talks"), 0u); // they all have been seen to
    EXPECT_LE(filesOf(agent.pid()) - before, kPlaces + 8);
}
