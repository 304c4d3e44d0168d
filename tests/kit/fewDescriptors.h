#pragma once
// Leaves the process this many descriptors to open, as long as it lives.
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

class FewDescriptors
{
public:
    explicit FewDescriptors(int left)
    {
        getrlimit(RLIMIT_NOFILE, &m_before);
        const int next = open("/dev/null", O_RDONLY | O_CLOEXEC);
        close(next);
        // All numbers below the next one are taken, those above may be too: the limit counts numbers.
        rlimit few = m_before;
        few.rlim_cur = rlim_t(next + left);
        setrlimit(RLIMIT_NOFILE, &few);
    }
    ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &m_before); }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;

private:
    rlimit m_before;
};
