// Lines over TLS: the server's certificate is checked, and the name in it.
#include "tests/kit/plain/processes.h"
#include "tests/sip/agentProcess.h"
#include "tests/sip/udpPeer.h"
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

namespace {

class SipTls : public ::testing::Test
{
protected:
    // Certificates by an authority that the phone trusts: the server's is for that name.
    void begin(const QString& name)
    {
        ASSERT_TRUE(
            openssl({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                     "-days", "2", "-subj", "/CN=Authority", "-keyout", "ca.key", "-out", "cafile.pem"}));
        ASSERT_TRUE(openssl({"req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                             "-subj", "/CN=" + name, "-keyout", "server.key", "-out", "server.csr"}));
        ASSERT_TRUE(openssl({"x509", "-req", "-in", "server.csr", "-CA", "cafile.pem", "-CAkey", "ca.key",
                             "-CAcreateserial", "-days", "2", "-out", "server.pem"}));
        // The phone's own: no server of the test asks for it.
        ASSERT_TRUE(
            openssl({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                     "-days", "2", "-subj", "/CN=phone", "-keyout", "agent.pem", "-out", "own.pem"}));
        QFile own(folder.filePath("own.pem")), agentFile(folder.filePath("agent.pem"));
        ASSERT_TRUE(own.open(QIODevice::ReadOnly) && agentFile.open(QIODevice::Append));
        agentFile.write(own.readAll());
        agentFile.close();

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
    bool openssl(const QStringList& arguments)
    {
        QProcess process;
        process.setWorkingDirectory(folder.path());
        process.start("openssl", arguments);
        return process.waitForFinished() && process.exitCode() == 0;
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
