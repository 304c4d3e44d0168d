#pragma once
// What the tests of the engine's way to the network share.
#include "tests/kit/phoneTest.h"
#include <QNetworkProxy>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QtEndian>

// Says to the engine's proxy what the engine would.
class ProxyClient
{
public:
    explicit ProxyClient(quint16 port)
    {
        m_socket.setProxy(QNetworkProxy::NoProxy);
        m_socket.connectToHost(QHostAddress::LocalHost, port);
        m_socket.waitForConnected();
        m_socket.write(QByteArray("\x05\x01\x00", 3));
        EXPECT_EQ(read(2), QByteArray("\x05\x00", 2));
    }
    // 0: connected. kind: 1 and 4 for the bytes of an address, 3 for a name.
    int connectTo(char kind, const QByteArray& host, quint16 port)
    {
        QByteArray request("\x05\x01\x00", 3);
        request += kind;
        if (kind == 3)
            request += char(host.size());
        request += host;
        request.append(2, '\0');
        qToBigEndian(port, request.data() + request.size() - 2);
        m_socket.write(request);
        const QByteArray answer = read(10);
        return answer.size() < 2 ? -1 : answer[1];
    }
    QByteArray read(qsizetype bytes)
    {
        kit::waitUntil([&] { return m_socket.bytesAvailable() >= bytes; }, 10000);
        return m_socket.read(bytes);
    }
    QTcpSocket& socket() { return m_socket; }

private:
    QTcpSocket m_socket;
};

inline quint16 proxyPort()
{
    static const QRegularExpression port("--proxy-server=socks5://127\\.0\\.0\\.1:(\\d+)");
    return quint16(port.match(qgetenv("QTWEBENGINE_CHROMIUM_FLAGS")).captured(1).toUInt());
}
