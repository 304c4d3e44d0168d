// Where a text may not get to, whatever it asks with: the services of this machine.
#include "tests/widgets/proxyClient.h"
#include "tests/widgets/webViewStand.h"
#include <QHostInfo>
#include <QNetworkInterface>
#include <QUdpSocket>

namespace {

// Every way to the network that a text has. %1: the address, with a slash at its end; %2: the same for
// sockets; %3: its host and port.
const char* const kWays = R"html(
    <link rel=stylesheet href='%1style'><link rel=prefetch href='%1prefetch'>
    <link rel=preconnect href='%1'><link rel=dns-prefetch href='%1'><link rel=preload as=image href='%1preload'>
    <link rel=modulepreload href='%1module'><link rel=icon href='%1icon'><link rel=manifest href='%1manifest'>
    <style>@import '%1import'; @font-face { font-family: f; src: url(%1font) } i { font-family: f }</style>
    <i>x</i><img src='%1image'><script src='%1script'></script><video src='%1video'></video>
    <audio src='%1audio'></audio><object data='%1object'></object><embed src='%1embed'>
    <iframe src='%1frame'></iframe><iframe name=inside></iframe>
    <form id=plain target=inside method=post action='%1form'><input name=a value=b></form>
    <script>
    document.forms[document.forms.length - 1].submit();
    fetch('%1fetch').catch(() => 0);
    fetch('%1fetchpost', {method: 'POST', mode: 'no-cors', body: 'x'}).catch(() => 0);
    fetch('%1keepalive', {method: 'POST', mode: 'no-cors', keepalive: true, body: 'x'}).catch(() => 0);
    for (let method of ['GET', 'POST', 'PUT']) {
        let request = new XMLHttpRequest; request.open(method, '%1xhr'); request.send('x');
    }
    try { navigator.sendBeacon('%1beacon', 'x'); } catch (e) {}
    try { new WebSocket('%2socket'); } catch (e) {}
    try { new EventSource('%1events'); } catch (e) {}
    try { new Worker(URL.createObjectURL(new Blob(["importScripts('%1worker')"]))); } catch (e) {}
    try { navigator.serviceWorker.register('%1service').catch(() => 0); } catch (e) {}
    try {
        let peer = new RTCPeerConnection({iceServers: [{urls: 'stun:%3'},
            {urls: ['turn:%3?transport=tcp', 'turn:%3'], username: 'a', credential: 'b'}]});
        peer.createDataChannel('a');
        peer.createOffer().then(offer => peer.setLocalDescription(offer));
    } catch (e) {}
    </script>)html";

QString ways(const QString& authority)
{
    return QString(kWays).arg("http://" + authority + '/', "ws://" + authority + '/', authority);
}

// The same port, for every address of the machine, both kinds.
class Victim
{
public:
    Victim()
    {
        server.listen(QHostAddress::Any);
        QObject::connect(&server, &QTcpServer::newConnection, &server, [this] {
            while (QTcpSocket* client = server.nextPendingConnection())
                heard.append(client->localAddress().toString());
        });
        packets.bind(QHostAddress::Any, server.serverPort());
        QObject::connect(&packets, &QUdpSocket::readyRead, &server, [this] {
            heard.append("packet");
            packets.readDatagram(nullptr, 0);
        });
    }
    QString port() const { return QString::number(server.serverPort()); }
    QTcpServer server;
    QUdpSocket packets;
    QStringList heard;
};

QStringList ownHosts()
{
    QStringList hosts{
        "127.0.0.1", "127.9.9.9", "localhost",          "a.localhost", "0.0.0.0",
        "[::1]",     "[::]",      "[::ffff:127.0.0.1]", "0x7f.1",      QHostInfo::localHostName()};
    for (const QHostAddress& address : QNetworkInterface::allAddresses()) {
        QHostAddress plain = address;
        plain.setScopeId(QString());
        hosts.append(address.protocol() == QAbstractSocket::IPv6Protocol ? '[' + plain.toString() + ']'
                                                                         : plain.toString());
    }
    return hosts;
}

class TextReach : public WebView
{
protected:
    // Puts the ways up, and after them something that the server which may be reached hears.
    void tryWays(const QString& html, WebServer& allowed)
    {
        mayReach(allowed);
        const QString last = QString("<script>setTimeout(() => fetch('%1last'), 800)</script>");
        view->setHtml(html + last.arg(allowed.address()));
        ASSERT_TRUE(kit::waitUntil([&] { return heard(allowed, "last"); }, kEngineMs)) << traced();
    }
    static bool heard(const WebServer& server, const char* path)
    {
        const QByteArray word = QByteArray(" /") + path + ' ';
        return std::any_of(server.asked.begin(), server.asked.end(),
                           [&](const QByteArray& line) { return line.contains(word); });
    }
};

QByteArray bytesOf(const char* address)
{
    const Q_IPV6ADDR bytes = QHostAddress(QString(address)).toIPv6Address();
    return QByteArray(reinterpret_cast<const char*>(&bytes), sizeof bytes);
}

} // namespace

TEST_F(TextReach, NoServiceOfThisMachineHearsOfAText)
{
    Victim victim;
    WebServer allowed;
    for (const QString& host : ownHosts()) {
        allowed.asked.clear();
        tryWays(ways(host + ':' + victim.port()), allowed);
        EXPECT_EQ(victim.heard.join(' '), "") << qPrintable(host);
    }
    EXPECT_EQ(victim.heard.join(' '), "");
    EXPECT_NE(traced().find("rich text may not reach 127.0.0.1:" + victim.port().toStdString()),
              std::string::npos)
        << traced();
}

TEST_F(TextReach, TheSignageServerOfThisMachineMayBeReadFromAndIsSentNothing)
{
    WebServer allowed;
    tryWays(ways(QString("127.0.0.1:%1").arg(allowed.serverPort())), allowed);
    for (const char* path : {"style", "prefetch", "preload", "import", "font", "image", "script", "video",
                             "frame", "fetch", "xhr", "events", "worker"})
        EXPECT_TRUE(heard(allowed, path)) << path;
    for (const QByteArray& line : std::as_const(allowed.asked))
        EXPECT_TRUE(line.isEmpty() || line.startsWith("GET ")) << line.left(40).toHex().constData();
    EXPECT_FALSE(heard(allowed, "socket"));
}

TEST_F(TextReach, AnotherPortOfTheServersAddressIsNotTheServer)
{
    Victim victim;
    WebServer allowed;
    tryWays(ways("127.0.0.1:" + victim.port()) + ways("localhost:" + QString::number(allowed.serverPort())),
            allowed);
    EXPECT_EQ(victim.heard.join(' '), "");
    EXPECT_FALSE(heard(allowed, "image"));
}

TEST_F(TextReach, ARedirectLeadsNoFurther)
{
    Victim victim;
    WebServer allowed;
    allowed.redirect = "http://127.0.0.1:" + victim.port().toUtf8() + '/';
    tryWays(ways(QString("127.0.0.1:%1").arg(allowed.serverPort())), allowed);
    EXPECT_TRUE(heard(allowed, "image"));
    EXPECT_TRUE(heard(allowed, "frame"));
    EXPECT_EQ(victim.heard.join(' '), "");
}

TEST_F(TextReach, WhereANameLeadsIsJudgedByTheAddressThatIsConnectedTo)
{
    view->setHtml(box("red"));
    ASSERT_TRUE(shows(Qt::red));
    ASSERT_NE(proxyPort(), 0);
    Victim victim;
    const quint16 port = victim.server.serverPort();
    for (const QString& host : ownHosts()) {
        const QByteArray name = QString(host).remove('[').remove(']').toUtf8();
        EXPECT_NE(ProxyClient(proxyPort()).connectTo(3, name, port), 0) << name.constData();
    }
    EXPECT_NE(ProxyClient(proxyPort()).connectTo(1, QByteArray("\x7f\0\0\1", 4), port), 0);
    EXPECT_NE(ProxyClient(proxyPort()).connectTo(1, QByteArray("\0\0\0\0", 4), port), 0);
    for (const char* address : {"::1", "::", "::ffff:127.0.0.1", "::127.0.0.1", "fe80::1"})
        EXPECT_NE(ProxyClient(proxyPort()).connectTo(4, bytesOf(address), port), 0) << address;
    EXPECT_EQ(victim.heard.join(' '), "");
}

TEST_F(TextReach, WhatIsNoReadingRequestDoesNotGetToTheServerOfThisMachine)
{
    WebServer allowed;
    mayReach(allowed);
    view->setHtml(box("red"));
    ASSERT_TRUE(shows(Qt::red));
    for (const char* word :
         {"POST / HTTP/1.1\r\n", "OPTIONS * HTTP/1.1\r\n", "HEADS / HTTP/1.1\r\n", "\x16\x03\x01\x02"}) {
        ProxyClient client(proxyPort());
        ASSERT_EQ(client.connectTo(3, "127.0.0.1", allowed.serverPort()), 0);
        client.socket().write(word);
        EXPECT_TRUE(kit::waitUntil(
            [&] { return client.socket().state() == QAbstractSocket::UnconnectedState; }, 10000));
    }
    EXPECT_EQ(allowed.asked.size(), 0);
}

TEST_F(TextReach, WhatMayBeReachedIsPassedOnWhole)
{
    WebServer allowed;
    writeFile("/rundata/config/system.ini",
              QString("[nDeck]\nstrServerURL=https://127.0.0.1:%1/\n").arg(allowed.serverPort()).toUtf8());
    view->setHtml(box("red"));
    ASSERT_TRUE(shows(Qt::red));
    // In place of the signage server, encrypted: as much as both sides hold only in turns, then the end.
    QTcpServer echo;
    const quint16 port = allowed.serverPort();
    allowed.close();
    ASSERT_TRUE(echo.listen(QHostAddress::LocalHost, port));
    QByteArray got;
    const QByteArray block = "\x16" + QByteArray(1 << 20, 'x');
    QObject::connect(&echo, &QTcpServer::newConnection, &echo, [&] {
        QTcpSocket* client = echo.nextPendingConnection();
        QObject::connect(client, &QTcpSocket::readyRead, client, [&got, &block, client] {
            got += client->readAll();
            if (got.size() < 2 * block.size())
                return;
            client->write(got);
            client->disconnectFromHost();
        });
    });
    ProxyClient client(proxyPort());
    ASSERT_EQ(client.connectTo(3, "127.0.0.1", port), 0);
    client.socket().write(block + block);
    QByteArray back;
    EXPECT_TRUE(kit::waitUntil(
        [&] {
            back += client.socket().readAll();
            return client.socket().state() == QAbstractSocket::UnconnectedState;
        },
        20000));
    EXPECT_EQ(back.size(), 2 * block.size());
}
