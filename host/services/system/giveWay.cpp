#include "host/services/system/giveWay.h"
#include <sys/resource.h>
#include <unistd.h>

// A system that refuses it leaves the thread as it was, which costs evenness only.
void threadGiveWay(int nice)
{
    static thread_local int present = 0;
    if (present == nice)
        return;
    present = nice;
    setpriority(PRIO_PROCESS, id_t(gettid()), nice);
}
