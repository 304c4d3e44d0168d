#include "tools/signServer/ConnectionBook.h"

bool ConnectionBook::Admit(const std::shared_ptr<BookedConnection>& connection)
{
    std::shared_ptr<BookedConnection> ended;
    {
        QMutexLocker locker(&m_lock);
        if (m_entries.size() >= m_nMost && !(ended = TakeLongestWait()))
            return false;
        m_entries[connection.get()].connection = connection;
    }
    if (ended)
        ended->End();
    Wait(connection.get());
    return true;
}

void ConnectionBook::EndLongestWait()
{
    std::shared_ptr<BookedConnection> ended;
    {
        QMutexLocker locker(&m_lock);
        ended = TakeLongestWait();
    }
    if (ended)
        ended->End();
}

// One that is just going has no entry that could be locked; the next one gives way then.
std::shared_ptr<BookedConnection> ConnectionBook::TakeLongestWait()
{
    while (!m_waits.empty()) {
        const BookedConnection* pLongest = m_waits.begin()->second;
        m_waits.erase(m_waits.begin());
        if (const auto connection = m_entries.take(pLongest).connection.lock())
            return connection;
    }
    return nullptr;
}

void ConnectionBook::Wait(const BookedConnection* connection)
{
    QMutexLocker locker(&m_lock);
    const auto entry = m_entries.find(connection);
    if (entry == m_entries.end() || entry->ticket != 0)
        return;
    entry->ticket = ++m_nTickets;
    m_waits[entry->ticket] = connection;
}

void ConnectionBook::Work(const BookedConnection* connection)
{
    QMutexLocker locker(&m_lock);
    const auto entry = m_entries.find(connection);
    if (entry == m_entries.end())
        return;
    m_waits.erase(entry->ticket);
    entry->ticket = 0;
}

void ConnectionBook::Leave(const BookedConnection* connection)
{
    QMutexLocker locker(&m_lock);
    m_waits.erase(m_entries.take(connection).ticket);
}

void ConnectionBook::EndAll()
{
    QList<std::shared_ptr<BookedConnection>> all;
    {
        QMutexLocker locker(&m_lock);
        for (const Entry& entry : m_entries)
            all.append(entry.connection.lock());
    }
    for (const auto& connection : all) {
        if (connection)
            connection->End();
    }
}
