#pragma once
// A signage server that wants to harm the phone. It answers with any bytes, at any length and pace. One
// thread a connection, one request a connection.
#include <QByteArray>
#include <QMap>
#include <QStringList>
#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

class HostileServer
{
public:
    // The connection of one request. The server's thread of it.
    class Wire
    {
    public:
        Wire(int socket, const std::atomic<bool>& stopping) : m_socket(socket), m_stopping(stopping) {}
        // False when the phone has hung up, or the server stops.
        bool send(const QByteArray& bytes);
        bool pause(int ms);
        // A whole answer with its length.
        bool answer(const QByteArray& body, const QByteArray& status = "200 OK");
        // Only its head; no length for a negative size.
        bool head(qint64 size);
        bool isOver() const { return m_stopping; }

    private:
        int m_socket;
        const std::atomic<bool>& m_stopping;
    };
    // target: without its percent signs.
    using Answer = std::function<void(Wire& wire, const QByteArray& target)>;

    explicit HostileServer(const Answer& answer);
    ~HostileServer();
    QString url() const { return QString("http://127.0.0.1:%1").arg(m_nPort); }
    // Targets of the requests so far, as they came.
    QList<QByteArray> targets() const;
    int requestsFor(const QByteArray& text) const;
    // A good registration reply.
    static const QByteArray& registered();

private:
    void listenLoop();
    void serve(int socket);

    Answer m_answer;
    int m_listener = -1;
    int m_nPort = 0;
    std::atomic<bool> m_stopping{false};
    mutable std::mutex m_lock;
    QList<QByteArray> m_targets;
    std::thread m_listening;
};
