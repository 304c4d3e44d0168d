#pragma once
// The system's one watch of folders that all folderWatch of a thread share: to end a watch of its own takes
// the system some 20 ms, and a user may have only so many. Lives on the thread that asked for it, which needs
// an event loop.
#include <QSocketNotifier>
#include <map>
#include <memory>
#include <set>
#include <string>

class folderListener
{
public:
    // Of an unknown number of changes. It may end any listener.
    virtual void FolderChanged() = 0;

protected:
    ~folderListener() = default;
};

class folderEvents
{
public:
    // Ends with the last that holds it, but not before the thread does.
    static std::shared_ptr<folderEvents> OfThread();
    ~folderEvents();
    folderEvents(const folderEvents&) = delete;
    folderEvents& operator=(const folderEvents&) = delete;

    // The system's number for the folder, of which the listener hears from now on. Negative, with errno, when
    // there is no such folder or it cannot be watched.
    int Add(folderListener* listener, const std::string& folder);
    void Remove(folderListener* listener, int number);

private:
    folderEvents();
    void Listen();
    void Take();
    bool Hears(folderListener* listener) const;
    void Tell(const std::set<int>& numbers, bool isForAll);

    int m_nFd;
    std::unique_ptr<QSocketNotifier> m_pNotifier;
    std::map<int, std::set<folderListener*>> m_listeners;
};
