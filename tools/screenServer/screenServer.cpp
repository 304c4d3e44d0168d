#include "tools/screenServer/screenServer.h"
#include "tools/screenServer/pageConnection.h"
#include "tools/screenServer/screenBridge.h"

namespace {

// Of requests under way, and of browsers.
constexpr int kVisitorLimit = 64;
constexpr int kBrowserLimit = 16;

} // namespace

ScreenServer::ScreenServer(const QString& vncPath, const QString& folder)
    : m_strVncPath(vncPath), m_folder(folder), m_token(AccessRule::newToken())
{
    connect(&m_pages, &QTcpServer::newConnection, this, &ScreenServer::onVisitor);
}

bool ScreenServer::listen(int port)
{
    if (!m_folder.isThere())
        m_strWhy = "the files of the page are missing";
    else if (!m_pages.listen(QHostAddress::LocalHost, quint16(port)))
        m_strWhy = QString("cannot listen on port %1: %2").arg(port).arg(m_pages.errorString());
    else
        m_rule = std::make_unique<AccessRule>(m_token, m_pages.serverPort());
    return m_rule != nullptr;
}

QByteArray ScreenServer::address() const
{
    return "http://127.0.0.1:" + QByteArray::number(m_pages.serverPort()) + '/' + m_token + '/';
}

void ScreenServer::onVisitor()
{
    while (QTcpSocket* socket = m_pages.nextPendingConnection()) {
        m_visitors.removeAll(nullptr);
        // Whoever has been silent the longest makes room, so that nobody keeps the others out.
        if (m_visitors.size() >= kVisitorLimit)
            delete m_visitors.takeFirst().data();
        auto* const visitor = new PageConnection(socket, *m_rule, m_folder, this);
        connect(visitor, &PageConnection::screenWanted, this, &ScreenServer::onScreenWanted);
        m_visitors.append(visitor);
        visitor->begin();
    }
}

void ScreenServer::onScreenWanted(QTcpSocket* socket, const tagHttpRequest& request)
{
    if (findChildren<ScreenBridge*>().size() >= kBrowserLimit)
        delete socket;
    else
        new ScreenBridge(socket, request, m_strVncPath, this);
}
