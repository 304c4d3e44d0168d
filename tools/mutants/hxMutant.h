// Included ahead of every file of a copy that tools/mutants/mutants.py made.
#ifdef __cplusplus
#include <bitset>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

// True when mutant n is the one that is on. With HX_MUTANT_TRACE=FILE the numbers that were asked are
// appended to the file.
inline bool hxMutant(int n)
{
    static const char* const chosen = getenv("HX_MUTANT");
    static const int active = chosen ? atoi(chosen) : 0;
    static const char* const trace = getenv("HX_MUTANT_TRACE");
    static const int file = trace ? ::open(trace, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644) : -1;
    if (file >= 0) {
        static std::bitset<65536> seen;
        if (!seen[size_t(n)]) {
            seen[size_t(n)] = true;
            char text[16];
            const int size = snprintf(text, sizeof text, "%d\n", n);
            if (::write(file, text, size_t(size)) != size)
                abort();
        }
    }
    return n == active;
}
#endif
