#pragma once
// Copies a file from a disk that anybody may have filled, and that may be pulled meanwhile. The target is put
// in place when it is complete; until then nothing of it is in its folder under its name.
#include "support/text/nuxExport.h"
#include <atomic>
#include <string>

class chAtomicFile;

class NUX_API chFileImport
{
public:
    // Device paths. source: a plain file that no link leads to (diskFolder.h). target: what else than a file
    // has its name stays, but for a link, which the file takes the place of.
    chFileImport(const char* source, const char* target) : m_strSource(source), m_strTarget(target) {}
    // Copies, on the thread of its caller; once. 1 when the target is in place and whole, not yet safe from a
    // loss of power.
    int Run();
    // Any thread: Run() ends soon and answers 0, unless the target is in place already (0 is answered then).
    int Cancel();
    // Any thread: how far it is, 0 to 100.
    int Percent() const;

private:
    enum STATE { COPYING, CANCELLED, COMPLETE };
    bool CopyTo(chAtomicFile& target, int fd);

    const std::string m_strSource;
    const std::string m_strTarget;
    std::atomic<int> m_eState{COPYING};
    std::atomic<long long> m_nSize{0}; // bytes
    std::atomic<long long> m_nDone{0};
};
