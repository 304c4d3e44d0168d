// Where a server can send a transfer on to, by address, by name and by names that change: never from
// elsewhere into this machine.
#include "host/services/system/hostLog.h"
#include "host/services/transfers/ownAddress.h"
#include "support/host/http.h"
#include "tests/kit/phoneTest.h"
#include "tests/services/httpFetch.h"
#include "tests/services/httpServer.h"
#include "tests/services/ownNames.h"
#include <QNetworkInterface>

namespace {

// Not loopback; null on a machine without a network.
QHostAddress addressOnTheNetwork()
{
    for (const QHostAddress& address : QNetworkInterface::allAddresses()) {
        if (address.protocol() == QAbstractSocket::IPv4Protocol && !address.isLoopback() &&
            !address.isLinkLocal())
            return address;
    }
    return QHostAddress();
}

// There is no other machine: this one's address on the network stands for it.
class HttpRedirect : public PhoneTest
{
protected:
    void SetUp() override
    {
        PhoneTest::SetUp();
        if (kElsewhere.isNull())
            GTEST_SKIP() << "this machine has no network";
        ownAddress::interfaces() = [] { return QList<QHostAddress>(); };
        server.onRequest = [this](QTcpSocket& socket, const QByteArray&) { socket.write(sentTo(target)); };
        victim.onRequest = [](QTcpSocket& socket, const QByteArray&) {
            socket.write(httpServer::answer("secret"));
        };
    }
    void TearDown() override
    {
        ownAddress::interfaces() = &QNetworkInterface::allAddresses;
        PhoneTest::TearDown();
    }
    static QByteArray sentTo(const QByteArray& url)
    {
        return httpServer::head("302 Found", {"Location: " + url, "Content-Length: 2"}) + "on";
    }
    static QByteArray under(const QByteArray& host, const httpServer& its)
    {
        const QByteArray url = its.url("/x");
        return "http://" + host + url.mid(url.lastIndexOf(':'));
    }
    // The last transfer.
    static bool isToldAsBarred()
    {
        const auto lines = hostLogFrom(1);
        const auto last = std::find_if(lines.rbegin(), lines.rend(), [](const auto& line) {
            return line.strText.startsWith("transfer from");
        });
        return last != lines.rend() && last->strText.endsWith("failed: it is sent on to where it may not go");
    }

    const QHostAddress kElsewhere = addressOnTheNetwork();
    const QByteArray kThere = kElsewhere.toString().toLatin1();
    httpServer victim;
    httpServer server{kElsewhere};
    QByteArray target;
};

} // namespace

TEST_F(HttpRedirect, AServerElsewhereCannotSendATransferIntoThisMachine)
{
    for (const char* own :
         {"127.0.0.1", "localhost", "[::ffff:127.0.0.1]", "0.0.0.0", "0x7f.1", "/127.0.0.1"}) {
        target = under(own, victim);
        EXPECT_EQ(httpFetch(server.url("/")), 0) << own;
        EXPECT_EQ(victim.opened, 0) << own;
        EXPECT_TRUE(isToldAsBarred()) << own;
    }
}

TEST_F(HttpRedirect, AnAddressWithoutAHostOpensNothing)
{
    target = under("/127.0.0.1", victim);
    EXPECT_EQ(httpFetch(victim.url("/")), 1);
    EXPECT_EQ(httpFetch(server.url("/")), 0);
    victim.onRequest = server.onRequest;
    EXPECT_EQ(httpFetch(victim.url("/")), 0);
    EXPECT_EQ(victim.paths, (QList<QByteArray>{"/", "/"}));
}

TEST_F(HttpRedirect, ANameThatChangesOpensNothing)
{
    ownNames::set("always.test", {{"127.0.0.1"}});
    ownNames::set("later.test", {{kThere}, {"127.0.0.1"}});
    ownNames::set("among.test", {{kThere, "127.0.0.1"}});
    for (const char* name : {"always.test", "later.test", "among.test"}) {
        target = under(name, victim);
        EXPECT_EQ(httpFetch(server.url("/")), 0) << name;
        EXPECT_EQ(victim.opened, 0) << name;
    }
    EXPECT_TRUE(isToldAsBarred());
}

TEST_F(HttpRedirect, AServerThatClaimsToBeHereAsWellIsElsewhere)
{
    ownNames::set("both.test", {{kThere, "127.0.0.1"}});
    target = victim.url("/");
    EXPECT_EQ(httpFetch(under("both.test", server)), 0);
    EXPECT_EQ(server.paths.size(), 1);
    EXPECT_EQ(victim.opened, 0);
}

TEST_F(HttpRedirect, AConnectionIntoThisMachineThatIsOpenAlreadyIsNotUsed)
{
    target = under("localhost", victim);
    EXPECT_EQ(httpFetch(target), 1);
    EXPECT_EQ(httpFetch(server.url("/")), 0);
    EXPECT_EQ(victim.paths.size(), 1);
    EXPECT_TRUE(isToldAsBarred());
}

TEST_F(HttpRedirect, NobodyComesBackFromElsewhere)
{
    httpServer first;
    first.onRequest = [this](QTcpSocket& socket, const QByteArray&) {
        socket.write(sentTo(server.url("/")));
    };
    target = victim.url("/");
    EXPECT_EQ(httpFetch(first.url("/")), 0);
    EXPECT_EQ(server.paths.size(), 1);
    EXPECT_EQ(victim.opened, 0);
}

TEST_F(HttpRedirect, AServerOfThisMachineMaySendOnWithinIt)
{
    httpServer first;
    first.onRequest = [this](QTcpSocket& socket, const QByteArray&) {
        socket.write(sentTo(victim.url("/")));
    };
    EXPECT_EQ(httpFetch(first.url("/")), 1);
    EXPECT_EQ(readFile("/rundata/data/got"), "secret");
}

TEST_F(HttpRedirect, AServerElsewhereMaySendOnElsewhere)
{
    httpServer other(kElsewhere);
    other.onRequest = victim.onRequest;
    target = other.url("/");
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(httpFetch(server.url("/")), 1);
    EXPECT_EQ(other.opened, 1);
}
