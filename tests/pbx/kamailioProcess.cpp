#include "tests/pbx/kamailioProcess.h"
#include "places.h"
#include "tests/kit/plain/ports.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/certificates.h"
#include "tests/sip/udpPeer.h"
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

constexpr int kWaitMs = 15000;
// Where Debian puts what only servers need.
constexpr const char* kProgram = "/usr/sbin/kamailio";
constexpr const char* kTables = "/usr/share/kamailio/dbtext/kamailio/";

} // namespace

bool KamailioProcess::writeSettings(const char* algorithm, bool hasTls)
{
    QFile model(HX_SOURCE_DIR "/tests/pbx/kamailio.cfg");
    if (!model.open(QIODevice::ReadOnly))
        return false;
    QByteArray text = model.readAll();
    text.replace("@PORT@", QByteArray::number(m_nPort))
        .replace("@TLS_PORT@", QByteArray::number(m_nTlsPort))
        .replace("@ALGORITHM@", algorithm)
        .replace("@NEXT@", QByteArray::number(m_nNext))
        .replace("@FOLDER@", m_program.path().toUtf8());
    if (m_nNext)
        text.prepend("#!define WITH_NEXT\n");
    if (m_bPresence)
        text.prepend("#!define WITH_PRESENCE\n");
    if (!hasTls)
        return m_program.write("kamailio.cfg", "#!KAMAILIO\n" + text);
    const QByteArray folder = m_program.path().toUtf8();
    const QByteArray profile = "method = TLSv1.2+\nprivate_key = " + folder +
                               "/server.key\ncertificate = " + folder + "/server.pem\nca_list = " + folder +
                               "/cafile.pem\nverify_certificate = no\nrequire_certificate = no\n";
    return makeCertificates(m_program.path(), "127.0.0.1") &&
           m_program.write("tls.cfg", "[server:default]\n" + profile + "[client:default]\n" + profile) &&
           m_program.write("kamailio.cfg", "#!KAMAILIO\n#!define WITH_TLS\n" + text);
}

// One of its modules wants tables, empty ones as they come with the package.
bool KamailioProcess::makeTables()
{
    if (!m_bPresence)
        return true;
    const QString tables = m_program.path("tables");
    bool done = QDir().mkpath(tables);
    for (const char* name : {"version", "pua"})
        done = (QFile::exists(tables + '/' + name) ||
                QFile::copy(QString(kTables) + name, tables + '/' + name)) &&
               done;
    return done;
}

void KamailioProcess::start(const char* algorithm, bool hasTls)
{
    ASSERT_TRUE(QFile::exists(kProgram)) << "the packages kamailio and kamailio-tls-modules are missing";
    if (!m_nPort) {
        m_nPort = kit::freePort();
        m_nTlsPort = kit::freePort();
    }
    ASSERT_TRUE(writeSettings(algorithm, hasTls) && makeTables());
    ASSERT_TRUE(m_program.start(kProgram, {"-f", m_program.path("kamailio.cfg"), "-DD", "-E", "-m", "32",
                                           "-M", "4", "-w", m_program.path(), "-Y", m_program.path(), "-P",
                                           m_program.path("pid")}));
    const bool isUp = kit::waits(
        [&] { return UdpPeer::isListening(hasTls ? m_nTlsPort : m_nPort) || !m_program.isRunning(); },
        kWaitMs);
    ASSERT_TRUE(isUp && m_program.isRunning()) << output().constData();
    // It takes what comes when it answers.
    UdpPeer peer;
    const QByteArray request =
        "OPTIONS sip:127.0.0.1:" + QByteArray::number(m_nPort) +
        " SIP/2.0\r\nVia: SIP/2.0/UDP 127.0.0.1:" + QByteArray::number(peer.port()) +
        ";branch=z9hG4bKup\r\nFrom: <sip:a@a>;tag=a\r\nTo: <sip:b@b>\r\nCall-ID: up\r\n"
        "CSeq: 1 OPTIONS\r\nMax-Forwards: 9\r\nContent-Length: 0\r\n\r\n";
    ASSERT_TRUE(kit::waits(
        [&] {
            peer.send(request, m_nPort);
            return !peer.receive("SIP/2.0 200", 100).isEmpty();
        },
        kWaitMs))
        << output().constData();
}

bool KamailioProcess::isRegistered(const QByteArray& user)
{
    UdpPeer peer;
    const QByteArray uri = "sip:" + user + "@127.0.0.1:" + QByteArray::number(m_nPort);
    peer.send("MESSAGE " + uri + " SIP/2.0\r\nVia: SIP/2.0/UDP 127.0.0.1:" + QByteArray::number(peer.port()) +
                  ";branch=z9hG4bK" + QByteArray::number(peer.port()) + "\r\nFrom: <sip:a@a>;tag=a\r\nTo: <" +
                  uri + ">\r\nCall-ID: c" + QByteArray::number(peer.port()) +
                  "\r\nCSeq: 1 MESSAGE\r\nMax-Forwards: 9\r\nContent-Length: 0\r\n\r\n",
              m_nPort);
    const QByteArray reply = peer.receive("SIP/2.0 200");
    EXPECT_NE(reply.toStdString(), "");
    return reply.startsWith("SIP/2.0 200 Registered");
}
