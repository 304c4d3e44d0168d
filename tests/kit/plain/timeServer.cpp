#include "tests/kit/plain/timeServer.h"
#include <QtEndian>
#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr quint64 kSecondsFrom1900To1970 = 2208988800ULL;
constexpr int kTransmitTime = 40;

void putTime(QByteArray& packet, int at, long long utc)
{
    qToBigEndian((quint64(utc) + kSecondsFrom1900To1970) << 32, packet.data() + at);
}

int boundSocket(const char* address, quint16& port)
{
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in name = {};
    name.sin_family = AF_INET;
    inet_pton(AF_INET, address, &name.sin_addr);
    socklen_t size = sizeof name;
    bind(socket, reinterpret_cast<sockaddr*>(&name), size);
    getsockname(socket, reinterpret_cast<sockaddr*>(&name), &size);
    port = ntohs(name.sin_port);
    return socket;
}

} // namespace

kit::TimeServer::TimeServer(long long utc)
{
    quint16 other = 0;
    m_nSocket = boundSocket("127.0.0.1", m_nPort);
    m_nElsewhere = boundSocket("127.0.0.2", other);
    answer(utc);
    if (pipe2(m_aStop, O_CLOEXEC) == 0)
        m_thread = std::thread([this] { serve(); });
}

kit::TimeServer::~TimeServer()
{
    close(m_aStop[1]);
    if (m_thread.joinable())
        m_thread.join();
    for (const int descriptor : {m_aStop[0], m_nSocket, m_nElsewhere})
        close(descriptor);
}

QByteArray kit::TimeServer::lastQuestion() const
{
    const std::lock_guard<std::mutex> guard(m_lock);
    return m_question;
}

void kit::TimeServer::answer(const QList<tagTimeAnswer>& answers)
{
    const std::lock_guard<std::mutex> guard(m_lock);
    m_answers = answers;
}

void kit::TimeServer::answer(long long utc)
{
    tagTimeAnswer good;
    good.nUtc = utc;
    answer(QList<tagTimeAnswer>{good});
}

QByteArray kit::TimeServer::packet(const tagTimeAnswer& answer, const QByteArray& question)
{
    QByteArray packet(48, '\0');
    packet[0] = char(answer.nLeap << 6 | answer.nVersion << 3 | answer.nMode);
    packet[1] = char(answer.nStratum);
    qToBigEndian(answer.nRootDelay, packet.data() + 4);
    qToBigEndian(answer.nRootDispersion, packet.data() + 8);
    packet.replace(12, 4, answer.strReference.leftJustified(4, '\0', true));
    putTime(packet, 16, answer.nSetUtc < 0 ? answer.nUtc - 60 : answer.nSetUtc);
    if (answer.bRepeatsNumber)
        packet.replace(24, 8, question.mid(kTransmitTime, 8));
    if (answer.bHasReceived)
        putTime(packet, 32, answer.nReceivedUtc < 0 ? answer.nUtc : answer.nReceivedUtc);
    if (answer.bHasSent)
        putTime(packet, kTransmitTime, answer.nUtc);
    packet.resize(qMin(answer.nSize, 48));
    return packet.leftJustified(answer.nSize, '\0');
}

void kit::TimeServer::serve()
{
    pollfd waits[] = {{m_nSocket, POLLIN, 0}, {m_aStop[0], POLLIN, 0}};
    while (poll(waits, 2, -1) >= 0 && waits[1].revents == 0) {
        char buffer[256];
        sockaddr_in from = {};
        socklen_t size = sizeof from;
        const ssize_t length =
            recvfrom(m_nSocket, buffer, sizeof buffer, 0, reinterpret_cast<sockaddr*>(&from), &size);
        if (length < 0)
            continue;
        QList<tagTimeAnswer> answers;
        QByteArray question(buffer, int(length));
        {
            const std::lock_guard<std::mutex> guard(m_lock);
            m_question = question;
            answers = m_answers;
        }
        for (const tagTimeAnswer& answer : answers) {
            const QByteArray packet = TimeServer::packet(answer, question);
            sendto(m_bElsewhere ? m_nElsewhere : m_nSocket, packet.constData(), size_t(packet.size()), 0,
                   reinterpret_cast<sockaddr*>(&from), size);
        }
        // Whoever sees the count finds the answer sent.
        ++m_nAsked;
    }
}
