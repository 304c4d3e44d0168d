#include "tests/kit/plain/measuredMemory.h"
#include "tests/kit/plain/processes.h"
#include <cstddef>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
// The compiler has no header for it.
extern "C" size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace {

constexpr const char* kOptions = "ASAN_OPTIONS";

} // namespace

qint64 kit::ownMemoryKiB()
{
#if defined(__SANITIZE_ADDRESS__)
    return qint64(__sanitizer_get_current_allocated_bytes() / 1024);
#else
    return statusKiB(getpid(), "VmRSS");
#endif
}

kit::NothingKept::NothingKept() : m_before(qgetenv(kOptions))
{
    qputenv(kOptions, m_before + ":quarantine_size_mb=0:thread_local_quarantine_size_kb=0");
}

kit::NothingKept::~NothingKept()
{
    qputenv(kOptions, m_before);
}
