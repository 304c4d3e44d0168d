// Whom the engine's proxy serves, and what of a text gets through it to this machine's own server.
#include "host/web/peerOwner.h"
#include "tests/kit/fewDescriptors.h"
#include "tests/widgets/proxyClient.h"
#include "tests/widgets/webViewStand.h"
#include <QBuffer>
#include <QProcess>
#include <ctime>
#include <memory>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kHeld = 64; // as many as are served at a time
constexpr int kLongMs = 20000;

// Hears all that comes, and ends no connection.
class OpenServer : public QTcpServer
{
public:
    OpenServer()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket* client = nextPendingConnection();
            connect(client, &QTcpSocket::readyRead, this, [this, client] {
                heard += client->readAll();
                if (heard.endsWith("\r\n\r\n"))
                    client->write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
            });
        });
    }
    QByteArray heard;
};

class TextProxy : public WebView
{
protected:
    void start(const QTcpServer& exempt)
    {
        writeFile("/rundata/config/system.ini",
                  QString("[nDeck]\nstrServerURL=http://127.0.0.1:%1/\n").arg(exempt.serverPort()).toUtf8());
        view->setHtml(box("red"));
        ASSERT_TRUE(shows(Qt::red));
        ASSERT_NE(proxyPort(), 0);
    }
};

bool isEnded(QTcpSocket& socket)
{
    return kit::waitUntil([&] { return socket.state() == QAbstractSocket::UnconnectedState; }, kLongMs);
}

// How many of so many connections that greet together get an answer, said by a process of its own.
QByteArray answeredTo(const QStringList& user, int connections)
{
    const QString script = QString("for i in $(seq %2); do exec {c}<>/dev/tcp/127.0.0.1/%1 || exit 1;"
                                   " printf '\\5\\1\\0' >&$c; all=\"$all $c\"; done;"
                                   " for c in $all; do head -c 2 <&$c 2>/dev/null; done | wc -c")
                               .arg(proxyPort())
                               .arg(connections);
    const QStringList command = user + QStringList{"bash", "-c", script};
    QProcess process;
    process.start(command.first(), command.mid(1));
    kit::waitUntil([&] { return process.state() == QProcess::NotRunning; }, kLongMs);
    return process.readAllStandardOutput().trimmed();
}

const peerOwner::tagEnds kEnds{QHostAddress("127.0.0.1"), 0x1f9a, QHostAddress("127.0.0.1"), 0x17c0};

QByteArray row(const QByteArray& ends, const QByteArray& state, int uid)
{
    return "  12: " + ends + ' ' + state + " 00000000:00000000 00:00000000 00000000  " +
           QByteArray::number(uid) + "        0 4711 1 0000000000000000 20 4 30 10 -1\n";
}

double usedSeconds()
{
    timespec used;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return double(used.tv_sec) + double(used.tv_nsec) / 1e9;
}

std::optional<uid_t> uidOf(QByteArray rows)
{
    rows.prepend("  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid\n");
    QBuffer table(&rows);
    table.open(QIODevice::ReadOnly);
    return peerOwner::uidIn(table, kEnds);
}

} // namespace

TEST(PeerOwner, IsReadFromTheRowOfThePeersEnd)
{
    const QByteArray own = "0100007F:1F9A 0100007F:17C0";
    const QByteArray wide = "0000000000000000FFFF00000100007F:";
    EXPECT_EQ(uidOf(row(own, "01", 1234)), 1234u);
    EXPECT_EQ(uidOf(row(wide + "1F9A " + wide + "17C0", "01", 1234)), 1234u);
    // The proxy's own end, another address with that port, another connection of that port, a listener.
    const QByteArray others =
        row("0100007F:17C0 0100007F:1F9A", "01", 1) + row("0200007F:1F9A 0100007F:17C0", "01", 2) +
        row("0100007F:1F9A 0100007F:17C1", "01", 3) + row("0100007F:1F9A 00000000:0000", "0A", 4);
    EXPECT_EQ(uidOf(others), std::nullopt);
    EXPECT_EQ(uidOf(others + row(own, "01", 65534)), 65534u);
}

TEST(PeerOwner, OfAClosedConnectionIsNotKnown)
{
    for (const char* state : {"04", "05", "06", "07", "08"})
        EXPECT_EQ(uidOf(row("0100007F:1F9A 0100007F:17C0", state, 0)), std::nullopt) << state;
    EXPECT_EQ(uidOf("0100007F:1F9A 0100007F:17C0 01\n"), std::nullopt);
    EXPECT_EQ(uidOf("  12: 0100007F:1F9A 0100007F:17C0 01\n"), std::nullopt);
}

TEST(PeerOwner, IsNotLookedForWithoutEnd)
{
    const QByteArray other = row("0200007F:1F9A 0100007F:17C0", "01", 2);
    const QByteArray own = row("0100007F:1F9A 0100007F:17C0", "01", 5);
    EXPECT_EQ(uidOf(other.repeated(peerOwner::ROWS / 2) + own), 5u);
    EXPECT_EQ(uidOf(other.repeated(peerOwner::ROWS) + own), std::nullopt);
}

// Takes real connections.
class Host
{
public:
    Host() { EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost)); }
    // The host's end of one; null when none came.
    QTcpSocket* connected(QTcpSocket& client, const char* address = "127.0.0.1")
    {
        client.setProxy(QNetworkProxy::NoProxy);
        client.connectToHost(QHostAddress(address), m_server.serverPort());
        EXPECT_TRUE(kit::waitUntil([&] { return m_server.hasPendingConnections(); }, kLongMs)) << address;
        return m_server.nextPendingConnection();
    }

private:
    QTcpServer m_server;
};

peerOwner::tagEnds endsOf(const QTcpSocket& one)
{
    return {one.peerAddress(), one.peerPort(), one.localAddress(), one.localPort()};
}

TEST(PeerOwner, IsKnownForRealConnectionsOfBothKinds)
{
    Host host;
    for (const char* address : {"127.0.0.1", "::ffff:127.0.0.1"}) {
        QTcpSocket client;
        QTcpSocket* const accepted = host.connected(client, address);
        ASSERT_NE(accepted, nullptr);
        EXPECT_TRUE(peerOwner::isOwn(*accepted)) << address;
    }
}

TEST(PeerOwner, IsToldByTheKernelForOneOpenConnectionAlone)
{
    Host host;
    for (const char* address : {"127.0.0.1", "::ffff:127.0.0.1"}) {
        QTcpSocket client;
        QTcpSocket* const accepted = host.connected(client, address);
        ASSERT_NE(accepted, nullptr);
        const peerOwner::tagEnds ends = endsOf(*accepted);
        uid_t uid = 4711;
        ASSERT_EQ(peerOwner::ask(ends, uid), peerOwner::ANSWER_FOUND) << address;
        EXPECT_EQ(uid, geteuid());
        EXPECT_EQ(peerOwner::uidInTables(ends), geteuid());
        // The listener is there, this connection is not.
        const peerOwner::tagEnds none{ends.farAddress, ends.farPort, ends.address, quint16(ends.port ^ 1)};
        EXPECT_EQ(peerOwner::ask(none, uid), peerOwner::ANSWER_NOT_OPEN);
        client.abort();
        EXPECT_TRUE(
            kit::waitUntil([&] { return accepted->state() == QAbstractSocket::UnconnectedState; }, kLongMs));
        EXPECT_EQ(peerOwner::ask(ends, uid), peerOwner::ANSWER_NOT_OPEN);
    }
}

TEST(PeerOwner, CostsTheSameHoweverManySocketsAreOpen)
{
    constexpr int kConnections = 500;
    const FewDescriptors room(2 * kConnections + 100);
    Host host;
    std::vector<std::unique_ptr<QTcpSocket>> clients;
    QList<QTcpSocket*> accepted;
    for (int i = 0; i < kConnections; ++i) {
        clients.push_back(std::make_unique<QTcpSocket>());
        accepted.append(host.connected(*clients.back()));
        ASSERT_NE(accepted.last(), nullptr);
    }
    constexpr int kTimes = 20;
    uid_t uid = 0;
    const double begin = usedSeconds();
    for (int i = 0; i < kTimes; ++i)
        EXPECT_EQ(peerOwner::ask(endsOf(*accepted[i * kConnections / kTimes]), uid), peerOwner::ANSWER_FOUND);
    const double asked = usedSeconds();
    for (int i = 0; i < kTimes; ++i)
        EXPECT_TRUE(peerOwner::uidInTables(endsOf(*accepted[i * kConnections / kTimes])));
    EXPECT_LT(5 * (asked - begin), usedSeconds() - asked);
}

TEST_F(TextProxy, ServesNoOtherUser)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can play another user";
    OpenServer server;
    start(server);
    EXPECT_EQ(answeredTo({"env"}, 1), "2");
    EXPECT_EQ(answeredTo({"setpriv", "--reuid=65534", "--clear-groups"}, 1), "0");
}

TEST_F(TextProxy, IsNotFilledByAnotherUser)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can play another user";
    OpenServer server;
    start(server);
    QProcess stranger;
    stranger.start("setpriv", {"--reuid=65534", "--clear-groups", "bash", "-c",
                               QString("for i in $(seq %2); do exec {c}<>/dev/tcp/127.0.0.1/%1; done; echo;"
                                       " read")
                                   .arg(proxyPort())
                                   .arg(2 * kHeld)});
    ASSERT_TRUE(kit::waitUntil([&] { return stranger.bytesAvailable() > 0; }, kLongMs));
    EXPECT_EQ(ProxyClient(proxyPort()).connectTo(3, "127.0.0.1", server.serverPort()), 0);
    stranger.write("\n");
    ASSERT_TRUE(kit::waitUntil([&] { return stranger.state() == QProcess::NotRunning; }, kLongMs));
}

TEST_F(TextProxy, GreetingsThatSayNothingMoreEnd)
{
    OpenServer server;
    start(server);
    std::vector<std::unique_ptr<ProxyClient>> silent;
    for (int i = 0; i < 8; ++i)
        silent.push_back(std::make_unique<ProxyClient>(proxyPort()));
    for (const auto& client : silent)
        EXPECT_TRUE(isEnded(client->socket()));
}

TEST_F(TextProxy, OneRequestGoesOutToThisMachine)
{
    OpenServer server;
    start(server);
    const QByteArray head = "GET /read HTTP/1.1\r\nHost: a\r\n\r\n";
    ProxyClient client(proxyPort());
    ASSERT_EQ(client.connectTo(3, "127.0.0.1", server.serverPort()), 0);
    // In pieces, as it may come.
    client.socket().write(head.first(20));
    client.socket().flush();
    kit::settle();
    client.socket().write(head.mid(20, head.size() - 22));
    client.socket().flush();
    kit::settle();
    EXPECT_EQ(server.heard, "");
    client.socket().write("\r\n");
    EXPECT_EQ(client.read(15), "HTTP/1.1 200 OK");
    EXPECT_EQ(server.heard, head);
    client.socket().write("POST /posted HTTP/1.1\r\nHost: a\r\nContent-Length: 0\r\n\r\n");
    EXPECT_TRUE(isEnded(client.socket()));
    EXPECT_EQ(server.heard, head);
}

TEST_F(TextProxy, WhatCouldBeASecondRequestDoesNotGoOutToThisMachine)
{
    OpenServer server;
    start(server);
    const QByteArray post = "POST /posted HTTP/1.1\r\nHost: a\r\nContent-Length: 0\r\n\r\n";
    const QByteArrayList heads = {"GET / HTTP/1.1\r\nHost: a\r\n\r\n" + post,
                                  "HEAD / HTTP/1.1\r\n\r\nx",
                                  "GET / HTTP/1.1\n\n" + post,
                                  "GET / HTTP/1.1\r\nHost: a\n\n" + post,
                                  "GET / HTTP/1.1\r\nHost: a\r\r" + post,
                                  "GET /\r\n" + post,
                                  "GET / HTTP/1.1\r\nContent-Length: 5\r\n\r\n",
                                  "GET / HTTP/1.1\r\ntransfer-ENCODING: chunked\r\n\r\n",
                                  "GET /" + QByteArray(1 << 17, 'x')};
    for (const QByteArray& head : heads) {
        ProxyClient client(proxyPort());
        ASSERT_EQ(client.connectTo(3, "127.0.0.1", server.serverPort()), 0);
        client.socket().write(head);
        EXPECT_TRUE(isEnded(client.socket())) << head.left(60).constData();
    }
    EXPECT_EQ(server.heard, "");
}

TEST_F(TextProxy, ATextReadsAgainFromAServerThatKeepsConnectionsOpen)
{
    OpenServer server;
    start(server);
    view->setHtml(QString("<script>(async () => { for (let i = 0; i < 5; ++i)"
                          " await fetch('http://127.0.0.1:%1/read' + i, {mode: 'no-cors'}); })()</script>")
                      .arg(server.serverPort()));
    EXPECT_TRUE(kit::waitUntil([&] { return server.heard.contains("GET /read4 "); }, kEngineMs))
        << server.heard.constData();
}
