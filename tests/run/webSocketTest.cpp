// The screen's socket by the letter of its protocol: raw frames, as any client may send them.
#include "places.h"
#include "tests/server/signServer.h"
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QtEndian>
#include <csignal>
#include <memory>
#include <sys/prctl.h>
#include <thread>

namespace {

constexpr int kLongMs = 20000;
constexpr int kLargest = 1 << 20;

enum { CONTINUATION = 0, TEXT = 1, BINARY = 2, CLOSE = 8, PING = 9, PONG = 10 };

struct Frame
{
    int opcode = BINARY;
    QByteArray payload;
    bool last = true, masked = true;
    int reserved = 0;    // three bits
    int lengthBytes = 0; // the form of the length; 0: the shortest
    qint64 length = -1;  // another than the payload's

    QByteArray bytes() const
    {
        const quint64 told = length < 0 ? quint64(payload.size()) : quint64(length);
        const int form = lengthBytes ? lengthBytes : told < 126 ? 1 : told < 65536 ? 2 : 8;
        QByteArray all;
        all += char((last ? 0x80 : 0) | reserved << 4 | opcode);
        all += char((masked ? 0x80 : 0) | (form == 1 ? int(told) : form == 2 ? 126 : 127));
        for (int i = form == 1 ? 0 : form; i > 0; --i)
            all += char(told >> (8 * (i - 1)) & 0xff);
        const QByteArray mask = masked ? QByteArray("\x11\xfe\x00\x7a", 4) : QByteArray();
        all += mask;
        for (qsizetype i = 0; i < payload.size(); ++i)
            all += masked ? char(payload[i] ^ mask[i % 4]) : payload[i];
        return all;
    }
};

Frame frame(int opcode, const QByteArray& payload, bool last = true)
{
    Frame one;
    one.opcode = opcode;
    one.payload = payload;
    one.last = last;
    return one;
}

// The server's frames are whole, not masked, and here all of them short.
QList<Frame> framesOf(const QByteArray& bytes)
{
    QList<Frame> frames;
    for (qsizetype at = 0; at + 2 <= bytes.size();) {
        const int length = bytes[at + 1];
        EXPECT_TRUE(length >= 0 && length < 126);
        EXPECT_TRUE(bytes[at] & 0x80);
        frames.append(frame(bytes[at] & 0x0f, bytes.mid(at + 2, length)));
        at += 2 + length;
    }
    return frames;
}

class ScreenSocket : public testing::Test
{
protected:
    void SetUp() override
    {
        QFile page(m_folder.filePath("vnc.html"));
        ASSERT_TRUE(page.open(QIODevice::WriteOnly));
        page.close();
        ASSERT_TRUE(m_vnc.listen(m_folder.filePath("vnc")));
        m_server.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
        m_server.start(HX_BUILD_DIR "/bin/hxScreenServer",
                       {"--port", "0", "--page", m_folder.path(), m_folder.filePath("vnc")});
        ASSERT_TRUE(m_server.waitForStarted(kLongMs));
        while (!m_server.canReadLine())
            ASSERT_TRUE(m_server.waitForReadyRead(kLongMs));
        const QList<QByteArray> parts = m_server.readLine().trimmed().split('/');
        m_host = parts[2];
        m_token = parts[3];
    }
    void TearDown() override
    {
        EXPECT_EQ(m_server.state(), QProcess::Running);
        m_server.kill();
        m_server.waitForFinished(kLongMs);
    }

    std::unique_ptr<Wire> connection() const
    {
        return std::make_unique<Wire>(m_host.mid(m_host.indexOf(':') + 1).toInt());
    }
    QByteArray request(const QByteArray& fields, const QByteArray& method = "GET") const
    {
        return method + " /" + m_token + "/screen HTTP/1.1\r\nHost: " + m_host + "\r\nOrigin: http://" +
               m_host + "\r\n" + fields + "\r\n";
    }
    // What the display server was sent through the connection, as soon as it is so much.
    QByteArray arrived(qsizetype size)
    {
        if (!m_vnc.hasPendingConnections())
            m_vnc.waitForNewConnection(kLongMs);
        QLocalSocket* const socket = m_vnc.nextPendingConnection();
        QByteArray bytes;
        while (socket && bytes.size() < size &&
               (socket->bytesAvailable() || socket->waitForReadyRead(kLongMs)))
            bytes += socket->readAll();
        delete socket;
        return bytes;
    }
    std::unique_ptr<Wire> opened()
    {
        auto wire = connection();
        wire->send(request(kFields));
        const QByteArray answer = wire->readFor(kAnswer.size());
        EXPECT_EQ(answer, kAnswer);
        return wire;
    }
    // All that comes back until the server ends the connection.
    QList<Frame> repliesTo(const QByteArray& bytes)
    {
        const auto wire = opened();
        wire->trySend(bytes);
        const Answer answer = wire->readAll(kLongMs);
        EXPECT_TRUE(answer.ended);
        return framesOf(answer.raw);
    }
    // With which the server closes, when that is all that it says.
    int codeAfter(const QByteArray& bytes)
    {
        const QList<Frame> frames = repliesTo(bytes);
        const bool isClose = frames.size() == 1 && frames[0].opcode == CLOSE && frames[0].payload.size() >= 2;
        return isClose ? qFromBigEndian<quint16>(frames[0].payload.constData()) : 0;
    }

    const QByteArray kFields = "Upgrade: websocket\r\nConnection: keep-alive, Upgrade\r\n"
                               "Sec-WebSocket-Version: 13\r\n"
                               "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n";
    // The key and its answer are those that the protocol gives as an example.
    const QByteArray kAnswer = "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\n"
                               "Connection: Upgrade\r\n"
                               "Sec-WebSocket-Accept: s3pPLMBiTxaQ9kYGzzhZRbK+xOo=\r\n\r\n";
    QTemporaryDir m_folder;
    QLocalServer m_vnc;
    QProcess m_server;
    QByteArray m_host, m_token;
};

TEST_F(ScreenSocket, CarriesMessagesOfEveryLengthAndForm)
{
    QByteArray sent, all;
    const auto add = [&](const QByteArray& payload) {
        sent += frame(BINARY, payload).bytes();
        all += payload;
    };
    for (const int size : {0, 1, 125, 126, 65535, 65536, kLargest})
        add(noise(size, unsigned(size)));
    // In parts, with what controls the connection between them.
    sent += frame(BINARY, "one ", false).bytes() + frame(PONG, "unasked").bytes() +
            frame(CONTINUATION, "", false).bytes() + frame(CONTINUATION, "two", true).bytes();
    all += "one two";
    const auto wire = opened();
    std::thread sender([&] { wire->send(sent); });
    EXPECT_EQ(arrived(all.size()), all);
    sender.join();
}

TEST_F(ScreenSocket, AFrameThatComesLetterByLetterIsWhole)
{
    const auto wire = opened();
    const QByteArray bytes = frame(BINARY, noise(200)).bytes();
    for (const char letter : bytes)
        wire->send(QByteArray(1, letter));
    EXPECT_EQ(arrived(200), noise(200));
}

TEST_F(ScreenSocket, AnswersAPingAndClosesAsItIsAsked)
{
    const QByteArray close("\x03\xe8", 2);
    for (const QByteArray& payload : {QByteArray(), QByteArray(125, 'p')}) {
        const QList<Frame> frames =
            repliesTo(frame(PING, payload).bytes() + frame(CLOSE, close + "Good bye").bytes());
        ASSERT_EQ(frames.size(), 2);
        EXPECT_EQ(frames[0].opcode, PONG);
        EXPECT_EQ(frames[0].payload, payload);
        EXPECT_EQ(frames[1].opcode, CLOSE);
        EXPECT_EQ(frames[1].payload, close);
    }
    const QList<Frame> frames = repliesTo(frame(CLOSE, "").bytes());
    ASSERT_EQ(frames.size(), 1);
    EXPECT_TRUE(frames[0].payload.isEmpty());
}

TEST_F(ScreenSocket, WhatBreaksTheProtocolIsClosedWith1002)
{
    QList<QPair<const char*, QByteArray>> wrong;
    const auto add = [&](const char* what, const Frame& one) { wrong.append({what, one.bytes()}); };
    Frame one = frame(BINARY, "hello");
    one.masked = false;
    add("not masked", one);
    one = frame(PING, "");
    one.masked = false;
    add("a ping that is not masked", one);
    for (const int bit : {1, 2, 4}) {
        one = frame(BINARY, "hello");
        one.reserved = bit;
        add("a reserved bit", one);
    }
    for (const int opcode : {3, 4, 5, 6, 7, 11, 12, 13, 14, 15})
        add("an unknown opcode", frame(opcode, ""));
    for (const int opcode : {CLOSE, PING, PONG}) {
        add("a control frame in parts", frame(opcode, "", false));
        one = frame(opcode, QByteArray(126, 'a'));
        add("too long a control frame", one);
    }
    for (const auto& [length, form] : {std::pair(125, 2), std::pair(125, 8), std::pair(65535, 8)}) {
        one = frame(BINARY, QByteArray(length, 'a'));
        one.lengthBytes = form;
        add("a length in a longer form", one);
    }
    one = frame(BINARY, "");
    one.lengthBytes = 8;
    one.length = qint64(quint64(1) << 62) | 5;
    QByteArray negative = one.bytes();
    negative[2] = char(0xc0);
    wrong.append({"a length with its first bit", negative});
    add("the end of nothing", frame(CONTINUATION, "hello"));
    wrong.append(
        {"a message within another", frame(BINARY, "one", false).bytes() + frame(BINARY, "two").bytes()});
    add("half a code", frame(CLOSE, "\x03"));
    for (const int code : {0, 999, 1004, 1005, 1006, 1015, 2999, 5000}) {
        const char bytes[] = {char(code >> 8), char(code & 0xff)};
        add("a code that is never sent", frame(CLOSE, QByteArray(bytes, 2)));
    }
    for (const auto& [what, bytes] : wrong)
        EXPECT_EQ(codeAfter(bytes), 1002) << what;
    EXPECT_TRUE(m_vnc.waitForNewConnection(kLongMs));
    while (QLocalSocket* socket = m_vnc.nextPendingConnection())
        EXPECT_FALSE(socket->waitForReadyRead(0)) << "nothing of it came through";
}

TEST_F(ScreenSocket, WhatIsNotTakenIsToldByItsCode)
{
    EXPECT_EQ(codeAfter(frame(TEXT, "hello").bytes()), 1003);
    Frame large = frame(BINARY, "only its head");
    large.length = kLargest + 1;
    EXPECT_EQ(codeAfter(large.bytes()), 1009);
    large.length = qint64(1) << 62;
    EXPECT_EQ(codeAfter(large.bytes()), 1009);
    QByteArray parts = frame(BINARY, QByteArray(kLargest / 2, 'a'), false).bytes();
    parts += frame(CONTINUATION, QByteArray(kLargest / 2, 'a'), false).bytes();
    EXPECT_EQ(codeAfter(parts + frame(CONTINUATION, "a").bytes()), 1009);
    EXPECT_EQ(codeAfter(frame(CLOSE, "\x03\xe8\xff\xfe").bytes()), 1007);
    EXPECT_EQ(codeAfter(frame(CLOSE, "\x03\xe8Gr\xc3\xbc\xc3\x9f").bytes()), 1000);
}

TEST_F(ScreenSocket, OpensToARequestByTheLetterOnly)
{
    const auto statusOf = [this](const QByteArray& from, const QByteArray& to, const char* method = "GET") {
        const auto wire = connection();
        QByteArray fields = kFields;
        EXPECT_TRUE(fields.contains(from));
        wire->send(request(fields.replace(from, to), method));
        return wire->readFor(12).mid(9, 3).toInt();
    };
    EXPECT_EQ(statusOf("websocket\r", "WebSocket\r"), 101);
    EXPECT_EQ(statusOf("keep-alive, Upgrade", "upgrade"), 101);
    EXPECT_EQ(statusOf("Upgrade: websocket", "Upgrade: h2c"), 426);
    EXPECT_EQ(statusOf("keep-alive, Upgrade", "keep-alive"), 426);
    EXPECT_EQ(statusOf(": 13", ": 8"), 426);
    EXPECT_EQ(statusOf("Sec-WebSocket-Version: 13\r\n", ""), 426);
    EXPECT_EQ(statusOf("dGhlIHNhbXBsZSBub25jZQ==", "c2hvcnQ="), 426);
    EXPECT_EQ(statusOf("dGhlIHNhbXBsZSBub25jZQ==", "dGhlIHNhbXBsZSBub25jZ*=="), 426);
    EXPECT_EQ(statusOf("Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n", ""), 426);
    EXPECT_EQ(statusOf("", "", "HEAD"), 426);
}

TEST_F(ScreenSocket, WhoEndsWithoutAWordLeavesNothingBehind)
{
    for (int i = 0; i < 40; ++i) {
        const auto wire = opened();
        wire->send(frame(BINARY, noise(1000)).bytes().left(500 + i));
    }
    EXPECT_EQ(codeAfter(frame(TEXT, "x").bytes()), 1003) << "there is room again";
}

} // namespace
