#include "host/web/rendererWatch.h"
#include "host/web/processUse.h"
#include <algorithm>
#include <csignal>
#include <unistd.h>

namespace {

constexpr int kPercent = 100;
// What the process may take at all, its stacks and what the engine needs included: a text that is quick is
// stopped by the system.
constexpr qint64 kMost = 320 * 1024 * 1024;

} // namespace

rendererWatch::rendererWatch()
{
    m_timer.setInterval(LOOK_MS);
    connect(&m_timer, &QTimer::timeout, this, &rendererWatch::look);
}

rendererWatch& rendererWatch::instance()
{
    static rendererWatch* watch = new rendererWatch;
    return *watch;
}

void rendererWatch::use(QObject* user, pid_t process, bool hasText)
{
    m_users[user] = {process, hasText};
    if (process > 0 && !m_processes.contains(process)) {
        processLimitMemory(process, kMost);
        m_processes[process] = {processUse(process).nProcessorMs, m_budget.nSavedMs};
    }
    m_nRests = 0;
    if (m_timer.isActive() || process <= 0)
        return;
    m_since.start();
    m_nPhone = processUse(getpid()).nMemory;
    m_timer.start();
}

void rendererWatch::leave(QObject* user)
{
    m_users.remove(user);
}

int rendererWatch::texts(pid_t process) const
{
    return int(std::count_if(m_users.begin(), m_users.end(),
                             [process](const User& user) { return user.process == process && user.bText; }));
}

void rendererWatch::look()
{
    const qint64 passed = m_since.restart();
    const QList<pid_t> all = m_processes.keys();
    bool hasText = false;
    for (const pid_t process : all) {
        hasText = hasText || texts(process) > 0;
        lookAt(process, passed);
    }
    lookAtPhone(hasText);
    rest(hasText);
}

void rendererWatch::lookAtPhone(bool hasText)
{
    const qint64 memory = processUse(getpid()).nMemory;
    const bool isTooLarge = memory > m_nPhone + PHONE_MEMORY;
    if (!hasText || isTooLarge)
        m_nPhone = memory;
    if (!hasText || !isTooLarge)
        return;
    const QList<pid_t> all = m_processes.keys();
    for (const pid_t process : all)
        end(process, TOO_LARGE);
}

void rendererWatch::rest(bool hasText)
{
    m_nRests = hasText ? 0 : m_nRests + 1;
    if (m_nRests >= REST_LOOKS || m_processes.isEmpty())
        m_timer.stop();
}

void rendererWatch::lookAt(pid_t process, qint64 passed)
{
    const tagProcessUse use = processUse(process);
    if (!use.bThere) {
        m_processes.remove(process);
        return;
    }
    const bool hasText = texts(process) > 0;
    Process& known = m_processes[process];
    known.nSaved += passed * (hasText ? m_budget.nSharePercent : REST_PERCENT) / kPercent;
    known.nSaved = std::min<qint64>(known.nSaved, hasText ? m_budget.nSavedMs : REST_SAVED_MS);
    known.nSaved -= use.nProcessorMs - known.nTaken;
    known.nTaken = use.nProcessorMs;
    if (known.nSaved < 0)
        end(process, TOO_BUSY);
    else if (use.nMemory > (hasText ? MEMORY : REST_MEMORY))
        end(process, TOO_LARGE);
}

void rendererWatch::end(pid_t process, REASON reason)
{
    if (process <= 0)
        return;
    emit ending(process, reason);
    m_processes.remove(process);
    kill(process, SIGKILL);
}
