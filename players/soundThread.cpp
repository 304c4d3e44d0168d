#include "players/soundThread.h"
#include <QCoreApplication>
#include <sched.h>
#include <sys/resource.h>

namespace {

constexpr int kLeastRealTime = 1; // enough to come before whatever else the phone does
constexpr int kNice = -11;        // where nothing may be real-time

} // namespace

void soundThreadComesFirst()
{
    sched_param first = {};
    first.sched_priority = kLeastRealTime;
    if (sched_setscheduler(0, SCHED_RR | SCHED_RESET_ON_FORK, &first) != 0)
        setpriority(PRIO_PROCESS, 0, kNice);
}

void soundThreadIsAsOthers()
{
    const sched_param none = {};
    sched_setscheduler(0, SCHED_OTHER | SCHED_RESET_ON_FORK, &none);
    // As whoever has started the phone wanted it.
    setpriority(PRIO_PROCESS, 0, getpriority(PRIO_PROCESS, id_t(QCoreApplication::applicationPid())));
}
