#pragma once
// Which connections there are, and which of them wait for a request. There are never more than a set number:
// whoever has been silent for longest gives way to a new one. Any thread.
#include <QHash>
#include <QMutex>
#include <map>
#include <memory>

class BookedConnection
{
public:
    virtual ~BookedConnection() = default;
    // Any thread.
    virtual void End() = 0;
};

class ConnectionBook
{
public:
    explicit ConnectionBook(int most) : m_nMost(most) {}

    // False when all that there may be are being answered.
    bool Admit(const std::shared_ptr<BookedConnection>& connection);
    // Ends the one that has waited for longest, so that what it holds comes free.
    void EndLongestWait();
    // Its wait begins, if it has not already; an answer ends it.
    void Wait(const BookedConnection* connection);
    void Work(const BookedConnection* connection);
    void Leave(const BookedConnection* connection);
    void EndAll();

private:
    struct Entry
    {
        std::weak_ptr<BookedConnection> connection;
        quint64 ticket = 0; // of its wait
    };

    std::shared_ptr<BookedConnection> TakeLongestWait();

    const int m_nMost;
    QMutex m_lock;
    QHash<const BookedConnection*, Entry> m_entries;
    std::map<quint64, const BookedConnection*> m_waits; // the longest first
    quint64 m_nTickets = 0;
};
