#include "tools/screenServer/screenBridge.h"

namespace {

constexpr qint64 kChunk = 64 << 10;
// What waits for a slow browser; the rest waits in the display server, which then sends fewer pictures.
constexpr qint64 kWaiting = 1 << 20;
// A pasted text is the longest message of a browser.
constexpr quint64 kMessageLimit = 1 << 20;

} // namespace

ScreenBridge::ScreenBridge(QWebSocket* browser, const QString& vncPath, QObject* parent)
    : QObject(parent), m_pBrowser(browser)
{
    m_pBrowser->setParent(this);
    m_pBrowser->setMaxAllowedIncomingFrameSize(kMessageLimit);
    m_pBrowser->setMaxAllowedIncomingMessageSize(kMessageLimit);
    m_vnc.setReadBufferSize(kChunk);
    connect(m_pBrowser, &QWebSocket::binaryMessageReceived, this,
            [this](const QByteArray& bytes) { m_vnc.write(bytes); });
    connect(m_pBrowser, &QWebSocket::bytesWritten, this, &ScreenBridge::toBrowser);
    connect(m_pBrowser, &QWebSocket::disconnected, this, &QObject::deleteLater);
    connect(&m_vnc, &QLocalSocket::readyRead, this, &ScreenBridge::toBrowser);
    connect(&m_vnc, &QLocalSocket::disconnected, this, &ScreenBridge::end);
    connect(&m_vnc, &QLocalSocket::errorOccurred, this, &ScreenBridge::end);
    m_vnc.connectToServer(vncPath);
}

void ScreenBridge::toBrowser()
{
    while (m_vnc.bytesAvailable() > 0 && m_pBrowser->bytesToWrite() < kWaiting)
        m_pBrowser->sendBinaryMessage(m_vnc.read(kChunk));
}

void ScreenBridge::end()
{
    toBrowser();
    m_pBrowser->close(QWebSocketProtocol::CloseCodeGoingAway, "The phone has ended.");
}
