#include "host/services/system/folderWatch.h"
#include "support/host/trace.h"
#include <QSocketNotifier>
#include <cerrno>
#include <cstring>
#include <sys/inotify.h>
#include <unistd.h>

namespace {

constexpr uint32_t kEvents = IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                             IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
constexpr size_t kReadSize = 16 * 1024;

} // namespace

folderWatch::folderWatch(QObject* parent) : QObject(parent)
{
    m_nFd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (m_nFd < 0) {
        nuxTrace(TRACE_NOTE, "Files cannot be watched: %s", strerror(errno));
        return;
    }
    m_pNotifier = new QSocketNotifier(m_nFd, QSocketNotifier::Read, this);
    connect(m_pNotifier, &QSocketNotifier::activated, this, [this] { Take(); });
}

folderWatch::~folderWatch()
{
    delete m_pNotifier;
    if (m_nFd >= 0)
        close(m_nFd);
}

void folderWatch::Add(const std::string& folder)
{
    if (m_folders.insert(folder).second)
        WatchNearest(folder);
}

void folderWatch::Clear()
{
    m_folders.clear();
    WatchAll();
}

void folderWatch::WatchAll()
{
    const std::set<int> old = std::move(m_watches);
    m_watches.clear();
    for (const std::string& folder : m_folders)
        WatchNearest(folder);
    for (int watch : old) {
        if (m_watches.count(watch) == 0)
            inotify_rm_watch(m_nFd, watch);
    }
}

// A folder that is not there yet comes with a change of the nearest one above that is.
void folderWatch::WatchNearest(std::string folder)
{
    if (m_nFd < 0)
        return;
    for (;;) {
        const int watch = inotify_add_watch(m_nFd, folder.c_str(), kEvents);
        if (watch >= 0) {
            m_watches.insert(watch);
            return;
        }
        const size_t slash = folder.rfind('/');
        if (slash == std::string::npos || folder == "/") {
            nuxTrace(TRACE_NOTE, "A folder cannot be watched: %s", strerror(errno));
            return;
        }
        folder.resize(slash == 0 ? 1 : slash);
    }
}

void folderWatch::Take()
{
    alignas(inotify_event) char events[kReadSize];
    while (read(m_nFd, events, sizeof events) > 0) {
    }
    // What was waited for may be there now, and what was watched may be gone.
    WatchAll();
    // The call may end this watch.
    const std::function<void()> call = m_call;
    if (call)
        call();
}
