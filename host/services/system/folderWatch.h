#pragma once
// Tells when names in some folders come, go or are written to. Lives on the thread that made it, which
// needs an event loop. A folder that is not there is waited for.
#include <QObject>
#include <functional>
#include <set>
#include <string>

class QSocketNotifier;

class folderWatch : public QObject
{
public:
    explicit folderWatch(QObject* parent = nullptr);
    ~folderWatch() override;
    // folder: a machine path. An unknown number of changes is told in one call.
    void Add(const std::string& folder);
    void Clear();
    void SetCall(std::function<void()> call) { m_call = std::move(call); }

private:
    void WatchAll();
    void WatchNearest(std::string folder);
    void Take();

    int m_nFd = -1;
    QSocketNotifier* m_pNotifier = nullptr;
    std::set<std::string> m_folders;
    std::set<int> m_watches;
    std::function<void()> m_call;
};
