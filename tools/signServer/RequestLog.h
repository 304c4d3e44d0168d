#pragma once
// The server's log: one line a request, and what the folder's content gets wrong. Any thread.
#include <QByteArray>
#include <QMutex>
#include <cstdio>

class RequestLog
{
public:
    // Appends to the file; an empty name is the standard output. 0 when it cannot be written.
    int Open(const QByteArray& file);
    ~RequestLog();
    // Put behind the time; shown at once.
    void Line(const QByteArray& text);

private:
    QMutex m_lock;
    FILE* m_file = stdout;
};
