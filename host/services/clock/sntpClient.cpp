#include "host/services/clock/sntpClient.h"
#include <QHostInfo>
#include <QNetworkProxy>
#include <QRandomGenerator>

sntpClient::sntpClient(QObject* parent) : QObject(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &sntpClient::onTime);
}

sntpClient::~sntpClient()
{
    stop();
}

void sntpClient::stop()
{
    m_timer.stop();
    if (m_nLookup >= 0)
        QHostInfo::abortHostLookup(m_nLookup);
    m_nLookup = -1;
    m_addresses.clear();
    if (!m_pSocket)
        return;
    // It may be telling us something just now.
    m_pSocket->disconnect(this);
    m_pSocket.release()->deleteLater();
}

void sntpClient::ask(const QString& server, quint16 port)
{
    stop();
    m_nPort = port;
    m_strWhy = "it has no address";
    const QHostAddress address(server);
    if (!address.isNull()) {
        takeAddresses({address});
        return;
    }
    m_timer.start(LOOKUP_MS);
    m_nLookup = QHostInfo::lookupHost(server, this, [this](const QHostInfo& info) {
        m_nLookup = -1;
        m_timer.stop();
        takeAddresses(info.addresses());
    });
}

void sntpClient::takeAddresses(const QList<QHostAddress>& addresses)
{
    m_addresses = addresses.mid(0, ADDRESSES);
    // Whoever asks hears of the end after ask() has returned.
    m_timer.start(0);
}

void sntpClient::askNext()
{
    if (m_addresses.isEmpty()) {
        fail(m_strWhy);
        return;
    }
    const QHostAddress address = m_addresses.takeFirst();
    m_pSocket = std::make_unique<QUdpSocket>();
    m_pSocket->setProxy(QNetworkProxy::NoProxy);
    // The system hands out a port at random, and lets through what comes from that server alone.
    m_pSocket->connectToHost(address, m_nPort);
    connect(m_pSocket.get(), &QUdpSocket::readyRead, this, &sntpClient::onDatagrams);
    m_nNumber = QRandomGenerator::system()->generate64();
    m_nDatagrams = 0;
    m_strWhy = "no answer";
    m_sent.start();
    const bool isSent = m_pSocket->write(sntpQuestion(m_nNumber)) == SNTP_PACKET_SIZE;
    if (!isSent)
        m_strWhy = m_pSocket->errorString().toUtf8();
    m_timer.start(isSent ? ANSWER_MS : 0);
}

void sntpClient::onDatagrams()
{
    // There is something to read that is no datagram: the system knows that nothing listens there.
    if (!m_pSocket->hasPendingDatagrams()) {
        m_strWhy = "nothing listens there";
        onTime();
        return;
    }
    while (m_pSocket && m_pSocket->hasPendingDatagrams()) {
        QByteArray datagram(LARGEST, '\0');
        datagram.truncate(qMax(qint64(0), m_pSocket->readDatagram(datagram.data(), datagram.size())));
        judge(datagram);
    }
}

void sntpClient::judge(const QByteArray& datagram)
{
    const tagSntpAnswer answer = sntpJudge(datagram, m_nNumber, m_sent.elapsed());
    switch (answer.eKind) {
    case SNTP_NOT_OURS:
        // Whoever floods the port does not keep the phone busy.
        m_strWhy = answer.strReason;
        if (++m_nDatagrams >= DATAGRAMS)
            onTime();
        return;
    case SNTP_REFUSED:
        m_strWhy = answer.strReason;
        onTime();
        return;
    case SNTP_KISS:
        fail(answer.strReason, true);
        return;
    case SNTP_GOOD:
        stop();
        emit answered(answer.nUtcMs);
        return;
    }
}

// The time for the name, or for the address that was asked, is over.
void sntpClient::onTime()
{
    const QList<QHostAddress> left = m_addresses;
    stop();
    m_addresses = left;
    askNext();
}

void sntpClient::fail(const QByteArray& why, bool isKiss)
{
    stop();
    emit failed(why, isKiss);
}
