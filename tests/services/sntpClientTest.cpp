// The client of time servers with names of several addresses, slow look-ups and a proxy.
#include "host/services/clock/sntpClient.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/phoneTest.h"
#include "tests/kit/plain/timeServer.h"
#include "tests/services/ownNames.h"
#include <QNetworkProxy>
#include <QTcpServer>
#include <QUdpSocket>

namespace {

const char* const kName = "several.test";
constexpr int kWaitMs = 20000;

class SntpClient : public PhoneTest
{
protected:
    SntpClient() : server(1800000000)
    {
        QObject::connect(&client, &sntpClient::answered, [this] { ++answers; });
        QObject::connect(&client, &sntpClient::failed, [this](const QByteArray& why) { failures += why; });
    }
    static void setAddresses(const ownNames::Answer& addresses) { ownNames::set(kName, {addresses}); }
    // Takes questions at the server's port of that address, and says nothing.
    void beSilentAt(const char* address)
    {
        QUdpSocket* socket = new QUdpSocket(&silence);
        ASSERT_TRUE(socket->bind(QHostAddress(address), server.port())) << address;
    }
    bool hasAsked(int silent)
    {
        return kit::waitUntilHeld(
            [&] { return silence.findChildren<QUdpSocket*>()[silent]->hasPendingDatagrams(); }, kWaitMs);
    }

    kit::TimeServer server; // at 127.0.0.1
    QObject silence;
    sntpClient client;
    int answers = 0;
    QList<QByteArray> failures;
};

} // namespace

TEST_F(SntpClient, TheNextAddressIsAskedWhenOneIsSilent)
{
    beSilentAt("127.0.0.3");
    setAddresses({"127.0.0.3", "127.0.0.1"});
    const kit::HeldClocks held;
    client.ask(kName, server.port());
    ASSERT_TRUE(hasAsked(0));
    kit::stepTime(sntpClient::ANSWER_MS - 1);
    EXPECT_EQ(server.asked(), 0) << "it may still answer";
    kit::stepTime(1);
    EXPECT_TRUE(kit::waitUntilHeld([&] { return answers == 1; }, kWaitMs));
    EXPECT_TRUE(failures.isEmpty());
}

TEST_F(SntpClient, TheNextAddressIsAskedAtOnceWhereNobodyListens)
{
    setAddresses({"127.0.0.3", "127.0.0.4", "127.0.0.5", "127.0.0.1"});
    client.ask(kName, server.port());
    EXPECT_TRUE(kit::waitUntil([&] { return answers == 1; }, kWaitMs));
    EXPECT_TRUE(failures.isEmpty());
}

TEST_F(SntpClient, OfManyAddressesSomeAreAsked)
{
    setAddresses({"127.0.0.3", "127.0.0.4", "127.0.0.5", "127.0.0.6", "127.0.0.1"});
    client.ask(kName, server.port());
    EXPECT_TRUE(kit::waitUntil([&] { return !failures.isEmpty(); }, kWaitMs));
    EXPECT_EQ(failures, QList<QByteArray>{"nothing listens there"});
    EXPECT_EQ(server.asked(), 0);
}

TEST_F(SntpClient, ALookUpThatIsNotWantedAnyMoreAsksNobody)
{
    setAddresses({"127.0.0.1"});
    {
        ownNames::HeldLookUps held;
        client.ask(kName, server.port());
        ASSERT_TRUE(kit::waitUntil([&] { return held.waiting() > 0; }, kWaitMs));
        client.stop();
    }
    EXPECT_FALSE(kit::waitUntil([&] { return server.asked() > 0; }, 50));
    EXPECT_EQ(answers, 0);
    EXPECT_TRUE(failures.isEmpty());
}

TEST_F(SntpClient, AProxyOfTheApplicationIsNotAsked)
{
    QTcpServer proxy;
    ASSERT_TRUE(proxy.listen(QHostAddress::LocalHost));
    QNetworkProxy::setApplicationProxy(
        QNetworkProxy(QNetworkProxy::Socks5Proxy, "127.0.0.1", proxy.serverPort()));
    // Never for this machine; nobody has this address, and nothing has to come back.
    client.ask("192.0.2.1", server.port());
    kit::settle();
    EXPECT_FALSE(proxy.hasPendingConnections() || proxy.waitForNewConnection(50));
    client.stop();
    QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::NoProxy));
}
