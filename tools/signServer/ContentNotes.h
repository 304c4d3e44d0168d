#pragma once
// What is wrong with the content now: each complaint stands in the log once, for as long as it holds. Any
// thread.
#include <QHash>
#include <QMutex>
#include <QStringList>

class RequestLog;

class ContentNotes
{
public:
    // log outlives it.
    explicit ContentNotes(RequestLog& log) : m_log(log) {}

    // Found while a request was answered.
    void Add(const QStringList& complaints);
    // A look at all of the content begins; what is added from now on may be news to it.
    quint64 BeginLook();
    // It has ended: these are all that held at its beginning.
    // isWhole: and nothing had to be left for later.
    void EndLook(quint64 begin, const QStringList& complaints, bool isWhole);
    // The last look found out everything that there is to find.
    bool IsWhole() const;

    // At most LIMIT, sorted.
    QStringList List() const;
    enum : int { LIMIT = 1000 };

private:
    void Enter(const QString& complaint);

    RequestLog& m_log;
    mutable QMutex m_lock;
    QHash<QString, quint64> m_entries; // and the look during which each was added
    quint64 m_nLook = 0;
    bool m_bWhole = false;
};
