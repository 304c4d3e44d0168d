#include "tests/server/signServer.h"
#include "places.h"
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <arpa/inet.h>
#include <csignal>
#include <poll.h>
#include <random>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int kStartMs = 20000;

bool waitFor(int socket, short events, qint64 ms)
{
    pollfd waiting = {socket, events, 0};
    return ms > 0 && poll(&waiting, 1, int(ms)) > 0;
}

// Leaves the rest of `raw` alone when it is no answer.
void takeApart(Answer& answer)
{
    const qsizetype end = answer.raw.indexOf("\r\n\r\n");
    if (!answer.raw.startsWith("HTTP/1.1 ") || end < 0)
        return;
    answer.status = answer.raw.mid(9, 3).toInt();
    for (const QByteArray& line : answer.raw.left(end).split('\n').mid(1)) {
        const qsizetype colon = line.indexOf(':');
        answer.fields[line.left(colon).trimmed().toLower()] = line.mid(colon + 1).trimmed();
    }
    answer.body = answer.raw.mid(end + 4);
}

} // namespace

Wire::Wire(int port, Connects connects) : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(uint16_t(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool connected = connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    EXPECT_TRUE(connected || connects == MayFail);
}

Wire::~Wire()
{
    close(m_socket);
}

void Wire::send(const QByteArray& bytes) const
{
    EXPECT_EQ(::send(m_socket, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL), bytes.size());
}

void Wire::trySend(const QByteArray& bytes) const
{
    ::send(m_socket, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL);
}

Answer Wire::readAll(int deadlineMs) const
{
    Answer answer;
    QElapsedTimer time;
    time.start();
    char block[65536];
    while (!answer.ended && waitFor(m_socket, POLLIN, deadlineMs - time.elapsed())) {
        const ssize_t n = recv(m_socket, block, sizeof block, 0);
        answer.ended = n <= 0;
        answer.raw.append(block, std::max<ssize_t>(n, 0));
    }
    answer.ms = time.elapsed();
    takeApart(answer);
    return answer;
}

QByteArray Wire::readFor(qint64 bytes, int deadlineMs) const
{
    QByteArray raw;
    QElapsedTimer time;
    time.start();
    char block[4096];
    while (raw.size() < bytes && waitFor(m_socket, POLLIN, deadlineMs - time.elapsed())) {
        const ssize_t n = recv(m_socket, block, sizeof block, 0);
        if (n <= 0)
            break;
        raw.append(block, n);
    }
    return raw;
}

Answer Wire::readOne(int deadlineMs)
{
    Answer answer;
    answer.raw = m_left;
    QElapsedTimer time;
    time.start();
    char block[65536];
    for (;;) {
        takeApart(answer);
        if (answer.status != 0 && answer.body.size() >= answer.announced())
            break;
        if (!waitFor(m_socket, POLLIN, deadlineMs - time.elapsed()))
            break;
        const ssize_t n = recv(m_socket, block, sizeof block, 0);
        if (n <= 0) {
            answer.ended = true;
            break;
        }
        answer.raw.append(block, n);
    }
    const qint64 length = std::max<qint64>(answer.announced(), 0);
    m_left = answer.body.mid(length);
    answer.body.truncate(length);
    return answer;
}

SignServerTest::SignServerTest()
{
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\nLobby=*\nHall=112233\n");
}

SignServerTest::~SignServerTest()
{
    stop();
}

void SignServerTest::start(const QStringList& options)
{
    startProgram(HX_BUILD_DIR "/bin/hxSignServer", options);
}

void SignServerTest::startProgram(const QString& program, const QStringList& options)
{
    // A test that dies takes its server with it.
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_process.start(program, QStringList{m_folder.path(), "--log", path("log")} + options);
    ASSERT_TRUE(m_process.waitForStarted(kStartMs));
    QElapsedTimer time;
    time.start();
    while (!m_process.canReadLine() && time.elapsed() < kStartMs && m_process.state() == QProcess::Running)
        m_process.waitForReadyRead(100);
    const QByteArray address = m_process.readLine().trimmed();
    ASSERT_TRUE(address.startsWith("http://")) << m_process.readAllStandardError().constData();
    m_port = address.mid(address.lastIndexOf(':') + 1).toInt();
}

void SignServerTest::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    EXPECT_TRUE(m_process.waitForFinished(kStartMs));
    EXPECT_EQ(m_process.exitCode(), 0);
}

void SignServerTest::write(const QByteArray& name, const QByteArray& bytes) const
{
    const QString file = path(name);
    QDir().mkpath(QFileInfo(file).path());
    QFile out(file);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(bytes);
}

QByteArray SignServerTest::log() const
{
    QFile file(path("log"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Answer SignServerTest::get(const QByteArray& target, const QByteArray& fields, int deadlineMs) const
{
    Wire wire(m_port);
    wire.send("GET " + target + " HTTP/1.1\r\nHost: sign.test:80\r\nConnection: close\r\n" + fields + "\r\n");
    return wire.readAll(deadlineMs);
}

Answer SignServerTest::ask(const QByteArray& method, const QByteArray& target, const QByteArray& body) const
{
    Wire wire(m_port);
    wire.send(
        method + " " + target +
        " HTTP/1.1\r\nHost: 127.0.0.1:80\r\nConnection: close\r\nX-Signage-Change: 1\r\nContent-Length: " +
        QByteArray::number(body.size()) + "\r\nContent-Type: text/plain\r\n\r\n" + body);
    return wire.readAll();
}

Answer SignServerTest::enroll(const QByteArray& name, const QByteArray& phone, const QByteArray& key,
                              const QByteArray& password) const
{
    return get("/service/register.htm?serverKey=" + key + "&password=" + password + "&clientName=" + name +
               "&hardwareKey=" + phone + "&clientType=hx7206&version=2.0&language=en");
}

Answer SignServerTest::schedule(const QByteArray& phone) const
{
    return get("/service/getschedule.htm?serverKey=key&hardwareKey=" + phone +
               "&clientType=hx7206&version=2.0&language=en");
}

QByteArray SignServerTest::fileTarget(const QByteArray& name, const QByteArray& type) const
{
    return "/service/getfile.htm?serverKey=key&hardwareKey=aabbcc&clientType=hx7206&version=2.0&language=en"
           "&fileType=" +
           type + "&filePath=" + name;
}

Answer SignServerTest::file(const QByteArray& name, const QByteArray& type, const QByteArray& fields) const
{
    return get(fileTarget(name, type), fields);
}

QByteArray resultOf(const QByteArray& reply)
{
    QXmlStreamReader xml(reply);
    QStringList path;
    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::EndElement)
            path.removeLast();
        if (token != QXmlStreamReader::StartElement)
            continue;
        path.append(xml.name().toString());
        const QString whole = path.join('/');
        if (whole == "norvane/ndeck/result/success" || whole == "norvane/ndeck/result/error")
            return xml.readElementText().toUtf8();
    }
    return QByteArray();
}

QList<QByteArray> rowsOf(const QByteArray& reply, const QByteArray& element)
{
    QList<QByteArray> rows;
    QXmlStreamReader xml(reply);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != QString::fromUtf8(element))
            continue;
        QByteArrayList row;
        for (const QXmlStreamAttribute& attribute : xml.attributes())
            row.append((attribute.name().toString() + "=" + attribute.value().toString()).toUtf8());
        rows.append(row.join(' '));
    }
    return rows;
}

bool isXml(const QByteArray& reply)
{
    QXmlStreamReader xml(reply);
    while (!xml.atEnd())
        xml.readNext();
    return !xml.hasError();
}

QByteArray noise(int size, unsigned seed)
{
    std::mt19937 dice(seed);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = char(dice() & 0xff);
    return bytes;
}
