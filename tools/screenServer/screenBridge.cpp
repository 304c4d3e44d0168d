#include "tools/screenServer/screenBridge.h"

namespace {

constexpr qint64 kChunk = 64 << 10;
// What waits for a slow side; the rest waits in the other one, which then sends less.
constexpr qint64 kWaiting = 1 << 20;

} // namespace

ScreenBridge::ScreenBridge(QTcpSocket* browser, const tagHttpRequest& request, const QString& vncPath,
                           QObject* parent)
    : QObject(parent), m_browser(browser, request, nullptr)
{
    m_vnc.setReadBufferSize(kChunk);
    connect(&m_browser, &WebSocket::arrived, this, &ScreenBridge::toScreen);
    connect(&m_browser, &WebSocket::written, this, &ScreenBridge::toBrowser);
    connect(&m_browser, &WebSocket::ended, this, &QObject::deleteLater);
    connect(&m_vnc, &QLocalSocket::readyRead, this, &ScreenBridge::toBrowser);
    connect(&m_vnc, &QLocalSocket::bytesWritten, this, &ScreenBridge::toScreen);
    connect(&m_vnc, &QLocalSocket::disconnected, this, &ScreenBridge::end);
    connect(&m_vnc, &QLocalSocket::errorOccurred, this, &ScreenBridge::end);
    m_vnc.connectToServer(vncPath);
    toScreen();
}

// What closes while it is taken down has nobody to tell.
ScreenBridge::~ScreenBridge()
{
    m_vnc.disconnect(this);
    m_browser.disconnect(this);
}

void ScreenBridge::toScreen()
{
    while (m_vnc.bytesToWrite() < kWaiting) {
        const QByteArray bytes = m_browser.read();
        if (bytes.isEmpty())
            break;
        m_vnc.write(bytes);
    }
}

void ScreenBridge::toBrowser()
{
    while (m_vnc.bytesAvailable() > 0 && m_browser.bytesToWrite() < kWaiting)
        m_browser.send(m_vnc.read(kChunk));
}

void ScreenBridge::end()
{
    toBrowser();
    m_browser.close(WEB_SOCKET_GOING_AWAY, "The phone has ended.");
}
