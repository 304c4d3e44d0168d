#pragma once
// What the processes that are started from here on have asked the allocator for. They end with the phone that
// is started; the benchmark itself is not one of them.
#include <QTemporaryDir>
#include <QtGlobal>

class HeapFolder
{
public:
    // Until it is gone, each process that is started gets what tells it.
    HeapFolder();
    ~HeapFolder();
    HeapFolder(const HeapFolder&) = delete;
    HeapFolder& operator=(const HeapFolder&) = delete;
    // Of a process at rest.
    double usedKiB(qint64 pid) const;

private:
    QTemporaryDir m_folder;
};
