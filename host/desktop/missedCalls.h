#pragma once
// How many calls came while nobody answered, since the list of calls was looked at. It is kept in "nMissed"
// of "CallHistory" in the user's key file, which is written on a task thread. User-interface thread.
#include <QObject>
#include <atomic>

class missedCalls : public QObject
{
    Q_OBJECT
public:
    enum { COUNT_MAX = 99 };

    // Counts from the first call on.
    static missedCalls& instance();
    int count() const { return m_nCount; }
    // The list of calls has been opened.
    void clear();

signals:
    void changed();

private:
    missedCalls();
    void setCount(int count);
    std::atomic<int> m_nCount{0}; // the task thread stores whatever it is then
};
