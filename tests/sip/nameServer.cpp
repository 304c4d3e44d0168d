#include "tests/sip/nameServer.h"
#include <QFile>
#include <algorithm>
#include <arpa/inet.h>
#include <gtest/gtest.h>

namespace {

constexpr int kAddress = 1, kAddress6 = 28, kService = 33, kHeadBytes = 12, kTailBytes = 4;

QByteArray twoBytes(uint32_t number)
{
    return QByteArray(1, char(number >> 8)) + char(number & 0xff);
}

QByteArray nameOnTheWire(const QByteArray& name)
{
    QByteArray bytes;
    for (const QByteArray& part : name.split('.'))
        bytes += char(part.size()) + part;
    return bytes + '\0';
}

} // namespace

void NameServer::addAddress(const QByteArray& name, const QByteArray& address)
{
    QByteArray data;
    for (const QByteArray& part : address.split('.'))
        data += char(part.toInt());
    m_records.append({name, kAddress, data});
}

void NameServer::addAddress6(const QByteArray& name, const QByteArray& address)
{
    QByteArray data(sizeof(in6_addr), 0);
    inet_pton(AF_INET6, address.constData(), data.data());
    m_records.append({name, kAddress6, data});
}

void NameServer::addService(const QByteArray& name, int priority, uint32_t port, const QByteArray& target,
                            int weight)
{
    m_records.append(
        {name, kService,
         twoBytes(uint32_t(priority)) + twoBytes(uint32_t(weight)) + twoBytes(port) + nameOnTheWire(target)});
}

void NameServer::start()
{
    QFile file(settings());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("nameserver 127.0.0.1\nport " + QByteArray::number(m_socket.port()) + "\n");
    m_thread = std::thread([this] {
        while (!m_bEnds) {
            const QByteArray query = m_socket.receive(50);
            if (query.size() > kHeadBytes)
                m_socket.answer(answerTo(query));
        }
    });
}

NameServer::~NameServer()
{
    m_bEnds = true;
    if (m_thread.joinable())
        m_thread.join();
}

QByteArray NameServer::settings() const
{
    return m_folder.filePath("names").toUtf8();
}

QByteArray NameServer::answerTo(const QByteArray& query) const
{
    const qsizetype end = query.indexOf('\0', kHeadBytes) + 1;
    const QByteArray name = query.mid(kHeadBytes, end - kHeadBytes);
    const int type = uchar(query[end + 1]);
    QByteArray answers;
    int count = 0;
    for (const tagRecord& record : m_records) {
        if (record.nType != type || nameOnTheWire(record.name) != name)
            continue;
        answers += twoBytes(0xc000 | kHeadBytes) + twoBytes(uint32_t(type)) + twoBytes(1) + twoBytes(0) +
                   twoBytes(60) + twoBytes(uint32_t(record.data.size())) + record.data;
        ++count;
    }
    // A name that has records of another kind is known all the same.
    const bool isKnown = std::any_of(m_records.begin(), m_records.end(), [&](const tagRecord& record) {
        return nameOnTheWire(record.name) == name;
    });
    return query.left(2) + twoBytes(isKnown ? 0x8180 : 0x8183) + twoBytes(1) + twoBytes(uint32_t(count)) +
           twoBytes(0) + twoBytes(0) + query.mid(kHeadBytes, end + kTailBytes - kHeadBytes) + answers;
}
