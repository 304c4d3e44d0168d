// Lines over TLS: the server's certificate is checked, and the name in it.
#include "tests/kit/plain/processes.h"
#include "tests/sip/agentProcess.h"
#include "tests/sip/certificates.h"
#include "tests/sip/udpPeer.h"
#include <QProcess>
#include <gtest/gtest.h>

namespace {

class SipTls : public ::testing::Test
{
protected:
    // Certificates by an authority that the phone trusts: the server's is for that name.
    void begin(const QString& name)
    {
        ASSERT_TRUE(makeCertificates(folder.path(), name));
        const uint32_t port = UdpPeer::freePort();
        kit::endWithUs(server);
        server.setWorkingDirectory(folder.path());
        server.start("openssl", {"s_server", "-quiet", "-accept", "127.0.0.1:" + QString::number(port),
                                 "-cert", "server.pem", "-key", "server.key"});
        ASSERT_TRUE(server.waitForStarted());
        ASSERT_TRUE(kit::waits([&] { return UdpPeer::isListening(port); }, AgentProcess::WAIT_MS));
        tagSipSetup setup = AgentProcess::quickSetup();
        setup.nSilentMs = 2000;
        setup.nTlsPort = UdpPeer::freePort();
        sipWire::setText(setup.szCertificates, folder.path().toStdString());
        ASSERT_TRUE(agent.start(setup));
        agent.tell(accountAt(0, port, SIP_TLS));
    }
    void TearDown() override
    {
        server.kill();
        server.waitForFinished();
    }
    QTemporaryDir folder;
    QProcess server;
    AgentProcess agent;
};

} // namespace

TEST_F(SipTls, ALineRegistersAtAServerWhoseNameIsCertified)
{
    begin("127.0.0.1");
    QByteArray request;
    while (!request.contains("\r\n\r\n") && server.waitForReadyRead(AgentProcess::WAIT_MS))
        request += server.readAllStandardOutput();
    EXPECT_TRUE(headerOf(request, "Via").startsWith("SIP/2.0/TLS")) << request.constData();
    EXPECT_TRUE(headerOf(request, "Contact").contains("transport=tls")) << request.constData();
    server.write(
        UdpPeer::replyTo(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600"));
    ASSERT_TRUE(server.waitForBytesWritten());
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
}

TEST_F(SipTls, AServerOfAnotherNameIsToldNothing)
{
    begin("elsewhere.test");
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_FAILED));
    EXPECT_FALSE(server.waitForReadyRead(300)) << server.readAllStandardOutput().constData();
}
