#include "host/services/system/folderWatch.h"
#include "support/host/trace.h"
#include <cerrno>
#include <cstring>

folderWatch::folderWatch(QObject* parent) : QObject(parent), m_pEvents(folderEvents::OfThread()) {}

folderWatch::~folderWatch()
{
    for (int number : m_watches)
        m_pEvents->Remove(this, number);
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
            m_pEvents->Remove(this, watch);
    }
}

// A folder that is not there yet comes with a change of the nearest one above that is.
void folderWatch::WatchNearest(std::string folder)
{
    for (;;) {
        const int watch = m_pEvents->Add(this, folder);
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

void folderWatch::FolderChanged()
{
    // What was waited for may be there now, and what was watched may be gone.
    WatchAll();
    // The call may end this watch.
    const std::function<void()> call = m_call;
    if (call)
        call();
}
