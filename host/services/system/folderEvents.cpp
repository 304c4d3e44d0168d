#include "host/services/system/folderEvents.h"
#include "support/host/trace.h"
#include <QAbstractEventDispatcher>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/inotify.h>
#include <unistd.h>

namespace {

constexpr uint32_t kEvents = IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                             IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
constexpr size_t kReadSize = 16 * 1024;

} // namespace

std::shared_ptr<folderEvents> folderEvents::OfThread()
{
    thread_local const std::shared_ptr<folderEvents> it(new folderEvents);
    return it;
}

folderEvents::folderEvents() : m_nFd(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    if (m_nFd < 0)
        nuxTrace(TRACE_NOTE, "Files cannot be watched: %s", strerror(errno));
}

folderEvents::~folderEvents()
{
    m_pNotifier.reset();
    if (m_nFd >= 0)
        close(m_nFd);
}

// The first watch may be older than the thread's event loop.
void folderEvents::Listen()
{
    if (m_pNotifier || m_nFd < 0 || !QAbstractEventDispatcher::instance())
        return;
    m_pNotifier = std::make_unique<QSocketNotifier>(m_nFd, QSocketNotifier::Read);
    QObject::connect(m_pNotifier.get(), &QSocketNotifier::activated, m_pNotifier.get(), [this] { Take(); });
}

int folderEvents::Add(folderListener* listener, const std::string& folder)
{
    Listen();
    const int number = inotify_add_watch(m_nFd, folder.c_str(), kEvents);
    if (number >= 0)
        m_listeners[number].insert(listener);
    return number;
}

void folderEvents::Remove(folderListener* listener, int number)
{
    const auto found = m_listeners.find(number);
    if (found == m_listeners.end())
        return;
    found->second.erase(listener);
    if (!found->second.empty())
        return;
    m_listeners.erase(found);
    inotify_rm_watch(m_nFd, number);
}

// An unknown number of changes is told once.
void folderEvents::Take()
{
    alignas(inotify_event) char events[kReadSize];
    std::set<int> numbers;
    bool hasLost = false;
    ssize_t size;
    while ((size = read(m_nFd, events, sizeof events)) > 0) {
        for (const char* at = events; at < events + size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(at);
            at += sizeof *event + event->len;
            // That a watch has ended is no change of its folder.
            if ((event->mask & IN_IGNORED) == 0)
                numbers.insert(event->wd);
            hasLost = hasLost || (event->mask & IN_Q_OVERFLOW) != 0;
        }
    }
    Tell(numbers, hasLost);
}

bool folderEvents::Hears(folderListener* listener) const
{
    return std::any_of(m_listeners.begin(), m_listeners.end(),
                       [listener](const auto& watched) { return watched.second.count(listener) > 0; });
}

void folderEvents::Tell(const std::set<int>& numbers, bool isForAll)
{
    std::set<folderListener*> told;
    for (const auto& [number, listeners] : m_listeners) {
        if (isForAll || numbers.count(number) > 0)
            told.insert(listeners.begin(), listeners.end());
    }
    for (folderListener* listener : told) {
        if (Hears(listener))
            listener->FolderChanged();
    }
}
