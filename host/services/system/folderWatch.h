#pragma once
// Tells when names in some folders come, go or are written to. Lives on the thread that made it, which
// needs an event loop. A folder that is not there is waited for.
#include "host/services/system/folderEvents.h"
#include <QObject>
#include <functional>
#include <memory>
#include <set>
#include <string>

class folderWatch : public QObject, private folderListener
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
    void FolderChanged() override;

    std::shared_ptr<folderEvents> m_pEvents;
    std::set<std::string> m_folders;
    std::set<int> m_watches;
    std::function<void()> m_call;
};
