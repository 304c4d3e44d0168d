#pragma once
// A step of sound from samples to packets, or back, on the caller's thread.
#include <QByteArray>
#include <QList>

class soundStep
{
public:
    virtual ~soundStep() = default;

    // What comes out is appended to output(). False when it does not go on.
    virtual bool push(const void* data, int bytes, qint64 ns) = 0;
    // So much is missing.
    virtual bool pushGap(qint64 ns) = 0;
    QList<QByteArray>& output() { return m_output; }

private:
    QList<QByteArray> m_output;
};
