#include "host/web/engineProxy.h"
#include "host/web/peerOwner.h"
#include <QNetworkProxy>
#include <QTcpSocket>

engineProxy::engineProxy()
{
    m_thread.setObjectName("hxWebProxy");
    moveToThread(&m_thread);
    m_thread.start();
    QMetaObject::invokeMethod(this, &engineProxy::listen, Qt::BlockingQueuedConnection);
}

engineProxy::~engineProxy()
{
    m_thread.quit();
    m_thread.wait();
}

void engineProxy::listen()
{
    m_pServer = new QTcpServer(this);
    m_pServer->setProxy(QNetworkProxy::NoProxy);
    connect(m_pServer, &QTcpServer::newConnection, this, &engineProxy::onConnection);
    if (m_pServer->listen(QHostAddress::LocalHost))
        m_nPort = m_pServer->serverPort();
}

void engineProxy::onConnection()
{
    while (QTcpSocket* client = m_pServer->nextPendingConnection()) {
        const auto links = m_pServer->findChildren<proxyLink*>(Qt::FindDirectChildrenOnly);
        if (links.size() >= CONNECTIONS || !peerOwner::isOwn(*client)) {
            client->abort();
            client->deleteLater();
            continue;
        }
        auto* link = new proxyLink(client, exempt(), m_pServer);
        connect(link, &proxyLink::refused, this, &engineProxy::onRefused);
    }
}

void engineProxy::onRefused(const QByteArray& target)
{
    if (m_told.size() >= TARGETS_TOLD || m_told.contains(target))
        return;
    m_told.insert(target);
    emit refused(QString::fromUtf8(target));
}

void engineProxy::setExempt(const tagExempt& exempt)
{
    const QMutexLocker lock(&m_mutex);
    m_exempt = exempt;
}

tagExempt engineProxy::exempt() const
{
    const QMutexLocker lock(&m_mutex);
    return m_exempt;
}
