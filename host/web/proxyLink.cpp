#include "host/web/proxyLink.h"
#include "host/services/transfers/ownAddress.h"
#include "host/web/readHead.h"
#include <QHostInfo>
#include <QNetworkProxy>
#include <QtEndian>

namespace {

constexpr char kVersion = 5;
constexpr char kConnect = 1;
constexpr int kHead = 4; // version, command, nothing, kind of address
enum ADDRESS_KIND : char { KIND_IPV4 = 1, KIND_NAME = 3, KIND_IPV6 = 4 };
constexpr int kIPv4Bytes = 4;
constexpr int kIPv6Bytes = 16;

// Of the address with what stands before it; 0 for a kind that there is not, -1 while too little is known.
int addressBytes(const QByteArray& request)
{
    switch (request[kHead - 1]) {
    case KIND_IPV4:
        return kIPv4Bytes;
    case KIND_IPV6:
        return kIPv6Bytes;
    case KIND_NAME:
        return request.size() > kHead ? 1 + uchar(request[kHead]) : -1;
    default:
        return 0;
    }
}

QByteArray hostOf(char kind, const QByteArray& address)
{
    if (kind == KIND_NAME)
        return address.mid(1);
    if (kind == KIND_IPV6)
        return QHostAddress(reinterpret_cast<const quint8*>(address.constData())).toString().toLatin1();
    return QHostAddress(qFromBigEndian<quint32>(address.constData())).toString().toLatin1();
}

} // namespace

proxyLink::proxyLink(QTcpSocket* client, const tagExempt& exempt, QObject* parent)
    : QObject(parent), m_pClient(client), m_exempt(exempt)
{
    client->setParent(this);
    client->setReadBufferSize(BUFFER);
    m_server.setReadBufferSize(BUFFER);
    m_server.setProxy(QNetworkProxy::NoProxy);
    m_limit.setSingleShot(true);
    m_limit.start(GREETING_MS);
    connect(&m_limit, &QTimer::timeout, this, &proxyLink::end);
    connect(client, &QTcpSocket::readyRead, this, &proxyLink::onClient);
    connect(client, &QTcpSocket::disconnected, this, &proxyLink::end);
    connect(client, &QTcpSocket::bytesWritten, this, [this] { pass(m_server, *m_pClient); });
    connect(&m_server, &QTcpSocket::connected, this, &proxyLink::onConnected);
    connect(&m_server, &QTcpSocket::errorOccurred, this, &proxyLink::onServerError);
    connect(&m_server, &QTcpSocket::readyRead, this, [this] { pass(m_server, *m_pClient); });
    connect(&m_server, &QTcpSocket::bytesWritten, this, &proxyLink::passOn);
    onClient();
}

void proxyLink::onClient()
{
    if (m_eState == GREETING && !readGreeting())
        return;
    if (m_eState == REQUEST && !readRequest())
        return;
    if (m_eState == HEAD)
        readHere();
    else if (m_eState == OPEN)
        passOn();
}

bool proxyLink::readGreeting()
{
    const QByteArray seen = m_pClient->peek(2);
    if (seen.size() < 2 || m_pClient->bytesAvailable() < 2 + uchar(seen[1]))
        return false;
    if (seen[0] != kVersion || !m_pClient->read(2 + uchar(seen[1])).mid(2).contains('\0')) {
        end();
        return false;
    }
    m_eState = REQUEST;
    m_pClient->write(QByteArray{"\x05\x00", 2});
    return true;
}

bool proxyLink::readRequest()
{
    const QByteArray seen = m_pClient->peek(kHead + 1);
    if (seen.size() < kHead)
        return false;
    const int bytes = addressBytes(seen);
    if (seen[0] != kVersion || seen[1] != kConnect || bytes == 0) {
        refuse(NOT_KNOWN);
        return false;
    }
    if (bytes < 0 || m_pClient->bytesAvailable() < kHead + bytes + int(sizeof(quint16)))
        return false;
    const QByteArray request = m_pClient->read(kHead + bytes + int(sizeof(quint16)));
    m_nPort = qFromBigEndian<quint16>(request.constData() + kHead + bytes);
    m_eState = CONNECTING;
    m_limit.start(CONNECT_MS);
    onRequest(hostOf(seen[kHead - 1], request.mid(kHead, bytes)));
    return true;
}

void proxyLink::onRequest(const QByteArray& host)
{
    m_target = host + ':' + QByteArray::number(m_nPort);
    const QHostAddress address(QString::fromUtf8(host));
    if (!address.isNull()) {
        judge({address});
        return;
    }
    QHostInfo::lookupHost(QString::fromUtf8(host), this,
                          [this](const QHostInfo& info) { judge(info.addresses()); });
}

void proxyLink::judge(const QList<QHostAddress>& addresses)
{
    const bool isHere = ownAddress::isAnyOwn(addresses);
    if (isHere && m_target != m_exempt.target) {
        emit refused(m_target);
        refuse(NOT_ALLOWED);
        return;
    }
    m_addresses = addresses;
    if (!isHere) {
        tryNext();
        return;
    }
    m_eState = HEAD;
    answer(DONE);
    onClient();
}

// To this machine, one request that reads goes out. What is encrypted is left to the engine's own guard.
void proxyLink::readHere()
{
    HEAD_STATE state = HEAD_WHOLE;
    if (m_exempt.isEncrypted) {
        if (m_pClient->bytesAvailable() == 0)
            return;
        constexpr char kHandshake = 0x16;
        state = m_pClient->peek(1)[0] == kHandshake ? HEAD_WHOLE : HEAD_REFUSED;
    } else {
        m_bHeadOnly = true;
        const qsizetype looked = m_head.size();
        m_head += m_pClient->readAll();
        state = readHead(m_head, looked);
    }
    if (state == HEAD_REFUSED) {
        m_pClient->abort();
    } else if (state == HEAD_WHOLE) {
        m_eState = CONNECTING;
        tryNext();
    }
}

void proxyLink::tryNext()
{
    if (m_addresses.isEmpty())
        refuse(UNREACHABLE);
    else
        m_server.connectToHost(m_addresses.takeFirst(), m_nPort);
}

void proxyLink::onConnected()
{
    m_limit.stop();
    m_eState = OPEN;
    m_server.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    answer(DONE);
    m_server.write(m_head);
    passOn();
}

void proxyLink::onServerError()
{
    if (m_eState == CONNECTING) {
        m_server.abort();
        tryNext();
        return;
    }
    // What it still said has to arrive.
    m_pClient->write(m_server.readAll());
    m_pClient->disconnectFromHost();
}

void proxyLink::answer(REPLY reply)
{
    if (m_bAnswered)
        return;
    m_bAnswered = true;
    QByteArray bytes(kHead + kIPv4Bytes + int(sizeof(quint16)), '\0');
    bytes[0] = kVersion;
    bytes[1] = char(reply);
    bytes[kHead - 1] = KIND_IPV4;
    m_pClient->write(bytes);
}

void proxyLink::refuse(REPLY reply)
{
    answer(reply);
    m_pClient->disconnectFromHost();
}

void proxyLink::end()
{
    m_limit.stop();
    m_pClient->disconnect(this);
    m_server.disconnect(this);
    deleteLater();
}

// The engine takes an end after an answer for that of an idle connection, and asks again on a new one.
void proxyLink::passOn()
{
    if (!m_bHeadOnly)
        pass(*m_pClient, m_server);
    else if (m_pClient->bytesAvailable() > 0)
        end();
}

// No more than the other side takes: what waits here is bounded.
void proxyLink::pass(QTcpSocket& from, QTcpSocket& to)
{
    if (m_eState != OPEN || to.bytesToWrite() >= BUFFER)
        return;
    const QByteArray bytes = from.read(BUFFER);
    if (!bytes.isEmpty())
        to.write(bytes);
}
