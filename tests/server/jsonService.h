#pragma once
// An imitation of a JSON service on the internet, with threads of its own.
#include <QByteArray>
#include <QByteArrayList>
#include <functional>
#include <list>
#include <mutex>
#include <thread>

class JsonService
{
public:
    // The whole answer for a target; an empty one ends the connection. Any thread.
    using Answers = std::function<QByteArray(const QByteArray& target)>;

    explicit JsonService(const Answers& answers);
    // Everybody who waits is let go.
    ~JsonService();

    QByteArray url() const { return "http://127.0.0.1:" + QByteArray::number(m_nPort); }
    // Of the requests so far, in their order.
    QByteArrayList targets() const;

    static QByteArray answer(const QByteArray& body, const QByteArray& status = "200 OK",
                             const QByteArray& fields = {});

private:
    void listen();
    void serve(int socket);

    Answers m_answers;
    int m_nSocket, m_nPort = 0;
    mutable std::mutex m_lock; // of all that follows
    QByteArrayList m_targets;
    std::list<std::thread> m_served;
    std::thread m_thread;
};
