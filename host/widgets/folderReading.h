#pragma once
// A folder of a removable disk, read on a thread of its own. User-interface thread.
#include "support/file/chDiskWork.h"
#include "support/file/diskFolder.h"
#include <QByteArray>
#include <QObject>
#include <atomic>
#include <functional>
#include <memory>
#include <vector>

class FolderReading
{
public:
    // folder: device path; filter: which of its files are of interest, as pathMatchFilter has it.
    FolderReading(const QByteArray& folder, const QByteArray& filter);
    // Gives it up.
    ~FolderReading();

    bool waitFor(int ms) const { return m_work->Wait(ms) != 0; }
    bool isOver() const { return m_work->IsOver() != 0; }
    // When it is over: whether it could be read.
    bool isFolder() const { return m_work->Result() != 0; }
    // When it is over: folders, then files, each in the order of their names; what is hidden is left out.
    const std::vector<tagDiskEntry>& entries() const;
    // done is called from the event loop when it is over, unless this is gone by then.
    void tell(std::function<void()> done);

private:
    struct Content;
    std::shared_ptr<Content> m_content; // the reading thread's until it is over
    std::unique_ptr<QObject> m_bell;
    std::unique_ptr<chDiskWork> m_work; // goes before the bell that it rings
};
