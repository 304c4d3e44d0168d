// Lines over TLS: the server's certificate is checked, and the name in it.
#include "tests/kit/plain/ports.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/agentProcess.h"
#include "tests/sip/certificates.h"
#include "tests/sip/nameServer.h"
#include "tests/sip/udpPeer.h"
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <utility>

namespace {

constexpr const char* kName = "pbx.test";

class SipTls : public ::testing::Test
{
protected:
    // A server with the certificate and key of that folder, and a line at it. host: what the line calls it.
    void begin(const QString& certified, const std::string& host = "127.0.0.1")
    {
        begin(certified, host, agent);
    }
    void begin(const QString& certified, const std::string& host, AgentProcess& line,
               const QStringList& wants = {})
    {
        port = kit::freePort();
        kit::endWithUs(server);
        server.setWorkingDirectory(certified);
        const QString address = "127.0.0.1:" + QString::number(port);
        server.start("openssl", QStringList{"s_server", "-quiet", "-accept", address, "-cert", "server.pem",
                                            "-key", "server.key"} +
                                    wants);
        ASSERT_TRUE(server.waitForStarted());
        ASSERT_TRUE(kit::waits([&] { return UdpPeer::isListening(port); }, AgentProcess::WAIT_MS));
        ASSERT_TRUE(line.start(setupOfTls()));
        tagSipAccount account = accountAt(0, port, SIP_TLS);
        sipWire::setText(account.szServer, host);
        line.tell(account);
    }
    // That trusts the authority of the folder.
    tagSipSetup setupOfTls() const
    {
        tagSipSetup setup = AgentProcess::quickSetup();
        setup.nSilentMs = silentMs;
        setup.nTlsPort = kit::freePort();
        sipWire::setText(setup.szCertificates, folder.path().toStdString());
        sipWire::setText(setup.szNames, names.settings().toStdString());
        return setup;
    }
    // The next message that begins so.
    QByteArray receive(const QByteArray& start)
    {
        const auto whole = [&] {
            const qsizetype at = read.indexOf(start);
            return at >= 0 && read.indexOf("\r\n\r\n", at) > 0;
        };
        while (!whole() && server.waitForReadyRead(AgentProcess::WAIT_MS))
            read += server.readAllStandardOutput();
        const qsizetype at = read.indexOf(start);
        const QByteArray message =
            at < 0 ? QByteArray() : read.mid(at, read.indexOf("\r\n\r\n", at) + 4 - at);
        read = at < 0 ? QByteArray() : read.mid(at + message.size());
        return message;
    }
    void say(const QByteArray& message)
    {
        server.write(message);
        ASSERT_TRUE(server.waitForBytesWritten());
    }
    // The line registers at the server; what it has asked.
    QByteArray registerLine() { return registerLine(agent); }
    QByteArray registerLine(AgentProcess& line)
    {
        const QByteArray request = receive("REGISTER");
        say(UdpPeer::replyTo(request, "200 OK",
                             "Contact: " + headerOf(request, "Contact") + ";expires=3600"));
        EXPECT_TRUE(line.nextLine(0, SIP_LINE_REGISTERED));
        return request;
    }
    QByteArray contentOf(const char* name) const
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        return file.readAll();
    }
    void write(const char* name, const QByteArray& content) const
    {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        ASSERT_EQ(file.write(content), content.size());
    }
    void expectOnlyTlsRefused(const std::string& reason) const
    {
        AgentProcess other;
        ASSERT_TRUE(other.start(setupOfTls())) << reason;
        other.tell(accountAt(0, kit::freePort(), SIP_TLS));
        const tagSipLine* refused = other.nextLine(0, SIP_LINE_REFUSED);
        ASSERT_TRUE(refused) << reason;
        EXPECT_EQ(std::string(refused->szReason), reason);
        EXPECT_EQ(refused->eTls, SIP_TLS_OWN_FILES);
        UdpPeer peer;
        other.tell(accountAt(1, peer.port()));
        const QByteArray request = peer.receive("REGISTER");
        peer.reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600");
        EXPECT_TRUE(other.nextLine(1, SIP_LINE_REGISTERED)) << reason;
    }
    // The agent leaves the server, which ends with it.
    void end(AgentProcess& line)
    {
        line.closeLink();
        say(UdpPeer::replyTo(receive("REGISTER"), "200 OK"));
        EXPECT_TRUE(line.ends());
        stopServer();
    }
    void expectPrinted(AgentProcess& line, const QByteArray& text, const char* reason)
    {
        end(line);
        EXPECT_TRUE(line.output().contains(text + reason)) << reason << "\n" << line.output().constData();
    }
    void stopServer()
    {
        read.clear();
        if (server.state() == QProcess::NotRunning)
            return;
        server.kill();
        server.waitForFinished();
    }
    void expectToldWhy(const char* reason, SIP_TLS_FAULT fault)
    {
        const tagSipLine* line = agent.nextLine(0, SIP_LINE_FAILED);
        ASSERT_TRUE(line);
        EXPECT_EQ(line->eTls, fault);
        EXPECT_EQ(std::string(line->szReason), std::string("TLS: ") + reason);
        EXPECT_FALSE(server.state() == QProcess::Running && server.waitForReadyRead(300))
            << server.readAllStandardOutput().constData();
    }
    void SetUp() override
    {
        names.addAddress(kName, "127.0.0.1");
        names.start();
    }
    void TearDown() override { stopServer(); }
    uint32_t silentMs = 2 * AgentProcess::WAIT_MS; // a fault is told at once
    QTemporaryDir folder;
    NameServer names;
    QProcess server;
    QByteArray read;
    uint32_t port = 0;
    AgentProcess agent;
};

// Calls that come in over TLS.
class SipTlsCalls : public SipTls
{
protected:
    void beginLine()
    {
        ASSERT_TRUE(makeCertificates(folder.path(), kName));
        begin(folder.path(), kName);
        const QByteArray contact = headerOf(registerLine(), "Contact");
        line = contact.mid(1, contact.indexOf('>') - 1);
    }
    // A request of the caller; lines: whole header lines with their ends.
    void ask(const QByteArray& method, int number, const QByteArray& lines, const QByteArray& body = {})
    {
        say(method + " " + line + " SIP/2.0\r\nVia: SIP/2.0/TLS 127.0.0.1:" + QByteArray::number(port) +
            ";branch=z9hG4bK" + callId + QByteArray::number(number) + method +
            "\r\nFrom: <sip:9@elsewhere.test>;tag=caller\r\nTo: " + to + "\r\nCall-ID: " + callId +
            "\r\nCSeq: " + QByteArray::number(number) + " " + method + "\r\nMax-Forwards: 70\r\n" + lines +
            "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    }
    // A call has come in whose caller is reached by these header lines, and talks; its id.
    uint32_t talkIn(const QByteArray& way)
    {
        callId = "in" + QByteArray::number(++calls);
        to = "<sip:user0@pbx.test>";
        ask("INVITE", 1, way + "Content-Type: application/sdp\r\n", kOffer);
        const auto* arrived = agent.next([](const tagSipHead& head) { return head.eKind == SIP_ARRIVED; });
        if (!arrived)
            return 0;
        const uint32_t id = arrived->nId;
        tellMedia(SIP_ANSWER, id, "v=0\r\ns=answer\r\n");
        to = headerOf(receive("SIP/2.0 200"), "To");
        ask("ACK", 1, {});
        return agent.next(SIP_TALK, id) ? id : 0;
    }
    void tellMedia(SIP_RECORD kind, uint32_t id, const char* sdp)
    {
        auto media = sipWire::make<tagSipMedia>(kind, id);
        sipWire::setText(media.szSdp, sdp);
        agent.tell(media);
    }
    void hold(uint32_t id) { tellMedia(SIP_MEDIA, id, "v=0\r\ns=hold\r\n"); }
    // The next request that begins so has come here, and is replied to.
    QByteArray takes(const QByteArray& method, const QByteArray& status = "200 OK",
                     const QByteArray& lines = {})
    {
        const QByteArray request = receive(method + " sip:");
        EXPECT_NE(request.toStdString(), "") << method.constData();
        if (method == "INVITE" && status.startsWith("200"))
            say(UdpPeer::replyTo(request, status, lines + "Content-Type: application/sdp", kOffer));
        else if (method != "ACK")
            say(UdpPeer::replyTo(request, status, lines));
        return request;
    }
    void expectSecondHasProof(const QByteArray& method, const QByteArray& nonce)
    {
        const QByteArray proof = headerOf(takes(method), "Authorization");
        EXPECT_EQ(paramOf(proof, "nonce").toStdString(), nonce.toStdString()) << method.constData();
    }
    static QByteArray challenge(const QByteArray& nonce)
    {
        return "WWW-Authenticate: Digest realm=\"home\", nonce=\"" + nonce + "\", qop=\"auth\"";
    }
    // Who answers to a call is somebody of whom the server knows.
    void holdIsAskedForThePassword(uint32_t id)
    {
        hold(id);
        takes("INVITE", "401 Unauthorized", challenge("offer"));
        takes("ACK");
        expectSecondHasProof("INVITE", "offer");
        takes("ACK");
        EXPECT_TRUE(agent.next(SIP_TALK, id));
    }
    // The caller wants somebody called who is in clear.
    void refersOn(uint32_t id, const QByteArray& target)
    {
        ask("REFER", 2, "Contact: <sip:9@127.0.0.1:9>\r\nRefer-To: <" + target + ">\r\n");
        ASSERT_TRUE(agent.next(SIP_REFERRED, id));
        auto call = sipWire::make<tagSipDial>(SIP_DIAL, 1);
        call.nReferrer = id;
        sipWire::setText(call.szTarget, target.toStdString());
        sipWire::setText(call.szSdp, kOffer);
        agent.tell(call);
        takes("NOTIFY");
        EXPECT_TRUE(takes("INVITE", "486 Busy Here").startsWith("INVITE " + target + " "));
        takes("NOTIFY");
        EXPECT_TRUE(agent.next(SIP_ENDED, 1));
    }

    static constexpr const char* kOffer = "v=0\r\ns=offer\r\n";
    QByteArray line; // its address
    QByteArray callId, to;
    int calls = 0;
};

} // namespace

TEST_F(SipTls, ALineRegistersAtAServerWhoseNameIsCertified)
{
    ASSERT_TRUE(makeCertificates(folder.path(), "127.0.0.1"));
    begin(folder.path());
    const QByteArray request = registerLine();
    EXPECT_TRUE(headerOf(request, "Via").startsWith("SIP/2.0/TLS")) << request.constData();
    EXPECT_TRUE(headerOf(request, "Contact").contains("transport=tls")) << request.constData();
}

TEST_F(SipTls, WhatAServerSaysThatIsKnownByItsNameIsBelieved)
{
    ASSERT_TRUE(makeCertificates(folder.path(), kName));
    begin(folder.path(), kName);
    const QByteArray contact = headerOf(registerLine(), "Contact");
    const QByteArray own = "127.0.0.1:" + QByteArray::number(port);
    say("INVITE " + contact.mid(1, contact.indexOf('>') - 1) + " SIP/2.0\r\nVia: SIP/2.0/TLS " + own +
        ";branch=z9hG4bKin\r\nFrom: <sip:9@elsewhere.test>;tag=caller\r\nTo: <sip:user0@" + kName +
        ">\r\nCall-ID: in\r\nCSeq: 1 INVITE\r\nMax-Forwards: 70\r\nContact: <sip:" + own +
        ";transport=tls>\r\nP-Asserted-Identity: \"Anna\" <sip:1001@" + kName +
        ">\r\nContent-Length: 0\r\n\r\n");
    const auto* arrived = reinterpret_cast<const tagSipArrived*>(
        agent.next([](const tagSipHead& head) { return head.eKind == SIP_ARRIVED; }));
    ASSERT_TRUE(arrived);
    EXPECT_EQ(std::string(arrived->szNumber), "1001");
    EXPECT_EQ(std::string(arrived->szName), "Anna");
}

TEST_F(SipTls, AServerOfAnotherNameIsToldNothing)
{
    ASSERT_TRUE(makeCertificates(folder.path(), "elsewhere.test"));
    begin(folder.path());
    expectToldWhy("the certificate is for another name", SIP_TLS_OTHER_NAME);
}

TEST_F(SipTls, ACertificateThatIsNotGoodAnyMoreIsSaidToBe)
{
    ASSERT_TRUE(makeCertificates(folder.path(), kName, -1));
    begin(folder.path(), kName);
    expectToldWhy("certificate has expired", SIP_TLS_EXPIRED);
}

TEST_F(SipTls, ACertificateThatIsNotGoodYetIsSaidToBe)
{
    ASSERT_TRUE(makeCertificates(folder.path(), kName));
    write("ca.cnf", "[ca]\ndefault_ca = own\n[own]\ndatabase = index.txt\nrand_serial = yes\n"
                    "default_md = sha256\npolicy = names\n[names]\ncommonName = supplied\n");
    write("index.txt", "");
    QProcess openssl;
    openssl.setWorkingDirectory(folder.path());
    openssl.start("openssl", {"ca", "-batch", "-notext", "-config", "ca.cnf", "-startdate", "20900101000000Z",
                              "-enddate", "20910101000000Z", "-in", "server.csr", "-cert", "cafile.pem",
                              "-keyfile", "ca.key", "-out", "server.pem", "-outdir", "."});
    ASSERT_TRUE(openssl.waitForFinished());
    ASSERT_EQ(openssl.exitCode(), 0) << openssl.readAllStandardError().constData();
    begin(folder.path(), kName);
    expectToldWhy("certificate is not yet valid", SIP_TLS_NOT_YET_VALID);
}

TEST_F(SipTls, AServerThatWantsAnotherCertificateOfThePhoneIsSaidTo)
{
    ASSERT_TRUE(makeCertificates(folder.path(), "127.0.0.1"));
    const QByteArray good = contentOf("agent.pem");
    for (const char* version : {"-tls1_3", "-tls1_2"}) {
        for (const bool isThere : {true, false}) {
            write("agent.pem", isThere ? good : QByteArray());
            AgentProcess other;
            begin(folder.path(), "127.0.0.1", other,
                  {version, "-Verify", "1", "-verify_return_error", "-CAfile", "cafile.pem"});
            const tagSipLine* line = other.nextLine(0, SIP_LINE_FAILED);
            ASSERT_TRUE(line) << version;
            // Before TLS 1.3 there is no word for one that is missing.
            const bool isTold = isThere || qstrcmp(version, "-tls1_3") == 0;
            EXPECT_EQ(line->eTls, isTold ? SIP_TLS_OWN_CERTIFICATE : SIP_TLS_REFUSED)
                << version << isThere << line->szReason;
            other.closeLink();
            EXPECT_TRUE(other.ends());
            stopServer();
        }
    }
}

TEST_F(SipTls, AServerThatAgreesOnNothingIsSaidTo)
{
    ASSERT_TRUE(makeCertificates(folder.path(), "127.0.0.1"));
    begin(folder.path(), "127.0.0.1", agent, {"-tls1_2", "-cipher", "ECDHE-RSA-AES128-GCM-SHA256"});
    const tagSipLine* line = agent.nextLine(0, SIP_LINE_FAILED);
    ASSERT_TRUE(line);
    EXPECT_EQ(line->eTls, SIP_TLS_REFUSED) << line->szReason;
}

TEST_F(SipTls, AnAuthorityThatNobodyTrustsIsSaidToBe)
{
    ASSERT_TRUE(makeCertificates(folder.path(), kName));
    ASSERT_TRUE(QFile::remove(folder.filePath("cafile.pem")));
    ASSERT_TRUE(QFile::copy(folder.filePath("own.pem"), folder.filePath("cafile.pem")));
    begin(folder.path(), kName);
    expectToldWhy("unable to get local issuer certificate", SIP_TLS_UNKNOWN_AUTHORITY);
}

TEST_F(SipTls, WhoSpeaksNoTlsIsSaidTo)
{
    ASSERT_TRUE(makeCertificates(folder.path(), kName));
    QTcpServer plain;
    ASSERT_TRUE(plain.listen(QHostAddress::LocalHost));
    ASSERT_TRUE(agent.start(setupOfTls()));
    agent.tell(accountAt(0, plain.serverPort(), SIP_TLS));
    ASSERT_TRUE(plain.waitForNewConnection(AgentProcess::WAIT_MS));
    QTcpSocket& link = *plain.nextPendingConnection();
    link.write("SIP/2.0 400 Bad Request\r\n\r\n");
    ASSERT_TRUE(link.waitForBytesWritten());
    expectToldWhy("wrong version number", SIP_TLS_NOT_SPOKEN);
}

TEST_F(SipTls, WithAuthoritiesThatCannotBeReadTheOtherLinesRegister)
{
    ASSERT_TRUE(makeCertificates(folder.path(), kName));
    const QByteArray broken = "-----BEGIN CERTIFICATE-----\nAAAA\n-----END CERTIFICATE-----\n";
    for (const QByteArray& content : {QByteArray(), QByteArray("garbage"), broken}) {
        write("cafile.pem", content);
        expectOnlyTlsRefused("The certificates of cafile.pem cannot be read");
    }
}

TEST_F(SipTls, AFileThatWouldHoldUpTheStackTakesTlsAwayAndNoOtherLine)
{
    ASSERT_TRUE(makeCertificates(folder.path(), kName));
    for (const char* name : {"cafile.pem", "agent.pem"}) {
        const QByteArray good = contentOf(name);
        const std::string file = name;
        ASSERT_TRUE(QFile::remove(folder.filePath(name)));
        ASSERT_EQ(mkfifo(folder.filePath(name).toUtf8().constData(), 0600), 0);
        expectOnlyTlsRefused(file + " is not a file");
        ASSERT_TRUE(QFile::remove(folder.filePath(name)));
        ASSERT_TRUE(QDir(folder.path()).mkdir(name));
        expectOnlyTlsRefused(file + " is not a file");
        ASSERT_TRUE(QDir(folder.path()).rmdir(name));
        // One that is a link may lead to whatever.
        write("other.pem", good);
        ASSERT_TRUE(QFile::link(folder.filePath("other.pem"), folder.filePath(name)));
        expectOnlyTlsRefused(file + " is not a file");
        ASSERT_TRUE(QFile::remove(folder.filePath(name)));
        write(name, good.repeated(int((1 << 20) / good.size()) + 1));
        expectOnlyTlsRefused(file + " is larger than 1 MB");
        write(name, good);
    }
}

TEST_F(SipTls, ASeedThatIsAPipeTakesTlsAwayAndNoOtherLine)
{
    ASSERT_TRUE(makeCertificates(folder.path(), kName));
    ASSERT_EQ(mkfifo(folder.filePath("tls_seed.dat").toUtf8().constData(), 0600), 0);
    expectOnlyTlsRefused("tls_seed.dat is not a file");
}

TEST_F(SipTls, NobodyIsAskedForThePasswordOfAKey)
{
    ASSERT_TRUE(makeCertificates(folder.path(), kName));
    const QStringList forms[] = {{"ec", "-aes256"}, {"pkcs8", "-topk8"}};
    for (const QStringList& form : forms) {
        QProcess openssl;
        openssl.setWorkingDirectory(folder.path());
        openssl.start("openssl", form + QStringList{"-passout", "pass:secret", "-in", "ca.key"});
        ASSERT_TRUE(openssl.waitForFinished());
        const QByteArray key = openssl.readAllStandardOutput();
        ASSERT_TRUE(key.contains("ENCRYPTED")) << key.constData();
        write("agent.pem", key + contentOf("own.pem"));
        expectOnlyTlsRefused("The key of agent.pem has a password");
    }
}

TEST_F(SipTls, AnOwnCertificateThatCannotBeUsedIsToldOfAndTheLineRegisters)
{
    ASSERT_TRUE(makeCertificates(folder.path(), "127.0.0.1"));
    const QByteArray good = contentOf("agent.pem"), own = contentOf("own.pem");
    const QByteArray key = good.left(good.size() - own.size()), otherKey = contentOf("ca.key");
    const std::pair<QByteArray, const char*> files[] = {
        {QByteArray(), "no start line"},
        {QByteArray(3000, '\x9c'), "no start line"},
        {good.left(good.size() - own.size() / 2), "bad end line"},
        {key, "no start line"},
        {otherKey + own, "key values mismatch"},
    };
    for (const auto& file : files) {
        write("agent.pem", file.first);
        AgentProcess other;
        EXPECT_NO_FATAL_FAILURE(begin(folder.path(), "127.0.0.1", other));
        registerLine(other);
        expectPrinted(other, "agent.pem cannot be used, TLS goes on without it: ", file.second);
    }
}

TEST_F(SipTls, AServerThatWantsItIsShownTheOwnCertificateInWhicheverOrder)
{
    ASSERT_TRUE(makeCertificates(folder.path(), "127.0.0.1"));
    const QByteArray good = contentOf("agent.pem"), own = contentOf("own.pem");
    for (const QByteArray& content : {good, own + good.left(good.size() - own.size())}) {
        write("agent.pem", content);
        AgentProcess other;
        EXPECT_NO_FATAL_FAILURE(begin(folder.path(), "127.0.0.1", other,
                                      {"-Verify", "1", "-verify_return_error", "-CAfile", "own.pem"}));
        registerLine(other);
        end(other);
        EXPECT_FALSE(other.output().contains("agent.pem")) << other.output().constData();
    }
}

TEST_F(SipTls, ALineWithoutCertificatesIsToldSo)
{
    ASSERT_TRUE(agent.start());
    agent.tell(accountAt(0, kit::freePort(), SIP_TLS));
    const tagSipLine* refused = agent.nextLine(0, SIP_LINE_REFUSED);
    ASSERT_TRUE(refused);
    EXPECT_STREQ(refused->szReason, "There are no certificates for TLS");
    EXPECT_EQ(refused->eTls, SIP_TLS_OWN_FILES);
}

TEST_F(SipTls, AServerThatSendsTheLineToAnOpenWayIsNotFollowed)
{
    ASSERT_TRUE(makeCertificates(folder.path(), kName));
    UdpPeer open;
    const QByteArray there = "sip:127.0.0.1:" + QByteArray::number(open.port());
    begin(folder.path(), kName);
    for (const uint32_t status : {302u, 305u}) {
        for (const QByteArray& contact : {there, there + ";transport=udp", there + ";transport=tcp"}) {
            SCOPED_TRACE(contact.toStdString());
            say(UdpPeer::replyTo(receive("REGISTER"), QByteArray::number(status) + " Elsewhere",
                                 "Contact: <" + contact + ">"));
            const tagSipLine* line = agent.nextLine(0, SIP_LINE_FAILED);
            ASSERT_TRUE(line);
            EXPECT_EQ(line->nStatus, status);
        }
    }
    EXPECT_EQ(open.receive(200).toStdString(), "");
}

TEST_F(SipTls, WhoIsToBeCalledOverTlsIsCalled)
{
    ASSERT_TRUE(makeCertificates(folder.path(), kName));
    begin(folder.path(), kName);
    registerLine();
    auto dial = sipWire::make<tagSipDial>(SIP_DIAL, 1);
    sipWire::setText(dial.szTarget, "300");
    sipWire::setText(dial.szSdp, "v=0\r\n");
    agent.tell(dial);
    say(UdpPeer::replyTo(receive("INVITE sip:"), "302 Moved Temporarily", "Contact: <sips:301@pbx.test>"));
    const auto* ended = reinterpret_cast<const tagSipEnded*>(agent.next(SIP_ENDED, 1));
    ASSERT_TRUE(ended);
    EXPECT_STREQ(ended->szTarget, "sips:301@pbx.test");
    dial.head.nId = 2;
    sipWire::setText(dial.szTarget, ended->szTarget);
    agent.tell(dial);
    EXPECT_NE(receive("INVITE sips:301@pbx.test ").toStdString(), "");
}

TEST_F(SipTls, ACallIsNotLedToAnOpenWayNorToAnAddressThatNoCertificateNames)
{
    UdpPeer open;
    QTcpServer further;
    ASSERT_TRUE(further.listen(QHostAddress::LocalHost));
    ASSERT_TRUE(makeCertificates(folder.path(), kName));
    begin(folder.path(), kName);
    registerLine();
    const auto talk = [this](uint32_t id, const QByteArray& contact) {
        auto call = sipWire::make<tagSipDial>(SIP_DIAL, id);
        sipWire::setText(call.szTarget, "300");
        sipWire::setText(call.szSdp, "v=0\r\ns=offer\r\n");
        agent.tell(call);
        say(UdpPeer::replyTo(receive("INVITE sip:"), "200 OK",
                             "Contact: <" + contact + ">\r\nContent-Type: application/sdp",
                             "v=0\r\ns=answer\r\n"));
        return agent.next(SIP_TALK, id) != nullptr;
    };
    const QByteArray plain = "sip:127.0.0.1:" + QByteArray::number(open.port());
    const QByteArray numeric = "sip:127.0.0.1:" + QByteArray::number(further.serverPort()) + ";transport=tls";
    uint32_t id = 0;
    for (const QByteArray& contact : {plain, plain + ";transport=tcp", numeric}) {
        SCOPED_TRACE(contact.toStdString());
        ASSERT_TRUE(talk(++id, contact));
        EXPECT_NE(receive("ACK sip:").toStdString(), "");
        agent.tell(sipWire::make<tagSipStatus>(SIP_HANG_UP, id));
        say(UdpPeer::replyTo(receive("BYE sip:"), "200 OK"));
    }
    EXPECT_EQ(open.receive(200).toStdString(), "");
    EXPECT_FALSE(further.hasPendingConnections() || further.waitForNewConnection(200));
    // A name can be certified.
    ASSERT_TRUE(talk(++id, QByteArray("sip:") + kName + ':' + QByteArray::number(further.serverPort()) +
                               ";transport=tls"));
    EXPECT_TRUE(further.waitForNewConnection(AgentProcess::WAIT_MS));
}

TEST_F(SipTlsCalls, NothingOfACallThatCameInGoesAnOpenWay)
{
    beginLine();
    UdpPeer twin("127.0.0.1", port), open;
    QTcpServer plain, numeric;
    ASSERT_EQ(twin.port(), port);
    ASSERT_TRUE(plain.listen(QHostAddress::LocalHost) && numeric.listen(QHostAddress::LocalHost));
    const auto placeOf = [](uint32_t number) { return "127.0.0.1:" + QByteArray::number(number); };
    const QByteArray atOpen = "sip:9@" + placeOf(open.port());
    const QByteArray ways[] = {
        "Contact: <sip:9@" + placeOf(port) + ">\r\n",
        "Contact: <" + atOpen + ">\r\n",
        "Contact: <sip:9@" + placeOf(plain.serverPort()) + ";transport=tcp>\r\n",
        "Contact: <sip:9@" + placeOf(numeric.serverPort()) + ";transport=tls>\r\n",
        "Record-Route: <sip:" + placeOf(open.port()) + ";lr>\r\nContact: <sip:9@pbx.test;transport=tls>\r\n",
    };
    for (const QByteArray& way : ways) {
        SCOPED_TRACE(way.toStdString());
        const uint32_t id = talkIn(way);
        ASSERT_NE(id, 0u);
        holdIsAskedForThePassword(id);
        auto tone = sipWire::make<tagSipTone>(SIP_TONE, id);
        tone.nTone = '5';
        tone.nMs = 100;
        agent.tell(tone);
        EXPECT_NE(headerOf(takes("INFO"), "Authorization").toStdString(), "");
        auto transfer = sipWire::make<tagSipTarget>(SIP_TRANSFER, id);
        sipWire::setText(transfer.szTarget, "400");
        agent.tell(transfer);
        takes("REFER", "603 Decline");
        EXPECT_TRUE(agent.next(SIP_TRANSFERRED, id));
        agent.tell(sipWire::make<tagSipStatus>(SIP_HANG_UP, id));
        takes("BYE", "401 Unauthorized", challenge("end") + ", stale=true");
        expectSecondHasProof("BYE", "end");
    }
    EXPECT_EQ(twin.receive(200).toStdString(), "");
    EXPECT_EQ(open.receive(200).toStdString(), "");
    EXPECT_FALSE(plain.hasPendingConnections() || plain.waitForNewConnection(200));
    EXPECT_FALSE(numeric.hasPendingConnections() || numeric.waitForNewConnection(200));
}

TEST_F(SipTlsCalls, WhomACallThatCameInWantsCalledIsCalledAndToldOfOverTls)
{
    beginLine();
    UdpPeer open;
    const QByteArray place = "127.0.0.1:" + QByteArray::number(open.port());
    const uint32_t id = talkIn("Contact: <sip:9@" + place + ">\r\n");
    ASSERT_NE(id, 0u);
    refersOn(id, "sip:400@" + place + ";transport=udp");
    EXPECT_EQ(open.receive(200).toStdString(), "");
}

// The stack believes the last of several.
TEST_F(SipTlsCalls, AnAddressThatSaysTwoThingsLeadsToNoOpenWay)
{
    beginLine();
    for (const char* second : {";transport=udp", ";transport=tcp", ";maddr=127.0.0.1;transport=udp"}) {
        SCOPED_TRACE(second);
        const uint32_t place = kit::freePort();
        QTcpServer further;
        ASSERT_TRUE(further.listen(QHostAddress::LocalHost, quint16(place)));
        UdpPeer open("127.0.0.1", place);
        ASSERT_EQ(open.port(), place);
        const QByteArray user = QByteArray("9@") + kName + ':' + QByteArray::number(place);
        for (const QByteArray& way : {"sip:" + user + ";transport=tls", "sips:" + user}) {
            const uint32_t id = talkIn("Contact: <" + way + second + ">\r\n");
            ASSERT_NE(id, 0u);
            hold(id);
            ASSERT_TRUE(further.waitForNewConnection(AgentProcess::WAIT_MS)) << way.constData();
            QTcpSocket& link = *further.nextPendingConnection();
            ASSERT_TRUE(link.waitForReadyRead(AgentProcess::WAIT_MS));
            EXPECT_EQ(int(link.peek(1).at(0)), 22) << "it wants no TLS: " << link.readAll().constData();
            link.abort();
            agent.tell(sipWire::make<tagSipStatus>(SIP_HANG_UP, id));
            EXPECT_TRUE(agent.next(SIP_ENDED, id));
        }
        EXPECT_EQ(open.receive(200).toStdString(), "");
    }
}

TEST_F(SipTlsCalls, WhereTheServerIsGoneACallThatCameInEndsAndNothingIsSaidInClear)
{
    beginLine();
    UdpPeer open("127.0.0.1", port);
    ASSERT_EQ(open.port(), port);
    const uint32_t id = talkIn("Contact: <sip:9@127.0.0.1:" + QByteArray::number(port) + ">\r\n");
    ASSERT_NE(id, 0u);
    stopServer();
    hold(id);
    EXPECT_TRUE(agent.next(SIP_TALK, id)) << "the hold is not settled";
    agent.tell(sipWire::make<tagSipStatus>(SIP_HANG_UP, id));
    EXPECT_TRUE(agent.next(SIP_ENDED, id));
    EXPECT_EQ(open.receive(500).toStdString(), "");
}

TEST_F(SipTls, ANameThatTheMachineItselfKnowsIsCertifiedAsAnyOther)
{
    ASSERT_TRUE(makeCertificates(folder.path(), "localhost"));
    begin(folder.path(), "localhost");
    EXPECT_TRUE(registerLine().startsWith("REGISTER sip:localhost:"));
}

TEST_F(SipTls, AServerThatSaysNothingIsNotToldWhatAnotherOneOfItsNameHasDone)
{
    silentMs = 2000;
    QTcpServer mute;
    ASSERT_TRUE(mute.listen(QHostAddress::LocalHost));
    ASSERT_TRUE(makeCertificates(folder.path(), "other.test"));
    begin(folder.path(), kName);
    tagSipAccount account = accountAt(1, mute.serverPort(), SIP_TLS);
    sipWire::setText(account.szServer, kName);
    agent.tell(account);
    for (int failed = 0; failed < 2;) {
        const auto* line = reinterpret_cast<const tagSipLine*>(agent.next([](const tagSipHead& head) {
            return head.eKind == SIP_LINE &&
                   reinterpret_cast<const tagSipLine&>(head).eState == SIP_LINE_FAILED;
        }));
        ASSERT_TRUE(line);
        EXPECT_STREQ(line->szReason, line->head.nId == 1 ? "The server does not answer"
                                                         : "TLS: the certificate is for another name");
        failed += line->head.nId == 1;
    }
}

// The stack reads them once.
TEST_F(SipTls, TheAgentBeginsAnewWhenItsCertificatesHaveBecomeUsable)
{
    ASSERT_TRUE(makeCertificates(folder.path(), kName));
    const QByteArray good = contentOf("cafile.pem");
    const tagSipAccount account = accountAt(0, kit::freePort(), SIP_TLS);
    for (const bool isSaved : {true, false}) {
        AgentProcess phone;
        write("cafile.pem", "garbage");
        tagSipSetup setup = setupOfTls();
        setup.nRetryLastMs = isSaved ? 600000 : setup.nRetryLastMs;
        ASSERT_TRUE(phone.start(setup));
        phone.tell(account);
        const tagSipLine* refused = phone.nextLine(0, SIP_LINE_REFUSED);
        ASSERT_TRUE(refused);
        EXPECT_GT(refused->nRetryMs, 0u);
        write("cafile.pem", "other garbage");
        phone.tell(account);
        ASSERT_TRUE(phone.nextLine(0, SIP_LINE_REFUSED));
        ASSERT_FALSE(phone.ends(300)) << "they are of no more use than before";
        write("cafile.pem", good);
        if (isSaved)
            phone.tell(account);
        EXPECT_TRUE(phone.ends()) << isSaved;
        EXPECT_EQ(phone.exitCode(), 0);
    }
}
