#pragma once
// Holds the processes that draw texts to what a phone can spare, and ends one that takes more. No timer runs
// while no text is shown and the processes rest. User-interface thread.
#include "host/widgets/webPanel.h"
#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QTimer>
#include <sys/types.h>

class rendererWatch : public QObject
{
    Q_OBJECT
public:
    enum REASON { TOO_BUSY, TOO_LARGE, HANGS };
    enum : int {
        LOOK_MS = 250,
        // Of the processor when no text is there, in place of the budget.
        REST_PERCENT = 5,
        REST_SAVED_MS = 1000,
        REST_LOOKS = 12
    };
    // Bytes, without programs and files; the second while no text is shown.
    static constexpr qint64 MEMORY = 128 * 1024 * 1024;
    static constexpr qint64 REST_MEMORY = 64 * 1024 * 1024;

    // What the phone itself may grow by while texts are shown: the engine keeps some of theirs there.
    static constexpr qint64 PHONE_MEMORY = 128 * 1024 * 1024;

    static rendererWatch& instance();
    // Of all texts of a process together, from its next look on.
    void setBudget(const tagTextBudget& budget) { m_budget = budget; }
    // user draws with that process, a text or nothing; 0 for no process.
    void use(QObject* user, pid_t process, bool hasText);
    void leave(QObject* user);
    int texts(pid_t process) const;
    // Tells, then ends it.
    void end(pid_t process, REASON reason);

signals:
    void ending(pid_t process, int reason);

private:
    struct User
    {
        pid_t process = 0;
        bool bText = false;
    };
    struct Process
    {
        qint64 nTaken = 0; // processor time, ms
        qint64 nSaved = 0;
    };
    rendererWatch();
    void look();
    void lookAtPhone(bool hasText);
    void lookAt(pid_t process, qint64 passed);
    void rest(bool hasText);
    tagTextBudget m_budget;
    QHash<QObject*, User> m_users;
    QHash<pid_t, Process> m_processes;
    QElapsedTimer m_since;
    QTimer m_timer;
    qint64 m_nPhone = 0; // its memory when the first of the texts came
    int m_nRests = 0;
};
