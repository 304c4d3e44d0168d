#pragma once
// What an import does away from the page: it copies the file, and has a picture scaled. Shared by the page
// and the thread that runs it.
#include "media/pictureScaling.h"
#include "support/file/chFileImport.h"
#include <atomic>
#include <string>

class ImportJob
{
public:
    // Device paths; a width or height of 0: the file is copied and no more.
    ImportJob(const char* source, const char* target, int width, int height);
    // On a thread of its own; once. 1 when the file is where it should be.
    int Run();
    // The disk has gone: Run() answers 0 soon.
    void Abort();
    // A person has thought better of it: as Abort, and nothing of the file stays.
    void Cancel();
    int Percent() const { return m_copy.Percent(); }

private:
    bool CopyAndScale();

    chFileImport m_copy;
    const tagScaleOrder m_order;
    std::atomic<bool> m_bAborted{false};
    std::atomic<bool> m_bCancelled{false};
};
