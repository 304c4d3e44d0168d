#pragma once
// Memory that is measured. The sanitizers keep what was freed for a while, and put a margin around each
// block.
#include <QByteArray>

namespace kit {

// A process takes so many times the memory.
#if defined(__SANITIZE_ADDRESS__)
constexpr int kMemoryTimes = 3;
#else
constexpr int kMemoryTimes = 1;
#endif

// What this process holds, without what was freed and is kept.
qint64 ownMemoryKiB();

// While it lives, programs that are started keep nothing that they have freed.
class NothingKept
{
public:
    NothingKept();
    ~NothingKept();
    NothingKept(const NothingKept&) = delete;
    NothingKept& operator=(const NothingKept&) = delete;

private:
    const QByteArray m_before;
};

} // namespace kit
