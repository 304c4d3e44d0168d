#pragma once
// The built phone in a process of its own, used by keys as somebody at its pages.
#include "bench/runningPhone.h"
#include "tests/kit/plain/controlLink.h"
#include <QJsonObject>

class SteeredPhone
{
public:
    enum : int { WAIT_MS = 15000 };

    // False when it does not come up to its home screen.
    bool start(const QStringList& options = QStringList());
    // The answer to a command; whoever gets none ends the bench.
    QJsonObject ask(const QStringList& words);
    void key(const char* name) { ask({"key", name}); }
    void type(const QString& digits);
    // False when it does not come to the top.
    bool waitPage(const char* className);
    // The screen of a call that has ended goes by itself, too.
    bool goHome();
    // From its home screen on, for so long, until it has given back what it has over.
    void rest(int ms);
    qint64 pid() const { return m_phone.pid(); }
    QString root() const { return m_phone.root(); }

private:
    RunningPhone m_phone;
    ControlLink m_link;
};
