// The phone with real lines: thousands of calls with SIPp as the other side, what its processes hold
// afterwards, what they hold at rest, and what somebody waits for a line or a call.
//   bench_sipcalls [screen] [times] [rest] [many]   these parts alone
//   HX_SIP_CALLS                                    how many calls; 10000. A call every second for a day are
//                                                   86400
//   HX_CALLS_SEED                                   of the run to repeat
#include "bench/heapFolder.h"
#include "bench/heldThings.h"
#include "bench/manySipCalls.h"
#include "bench/phoneBench.h"
#include "bench/runningPhone.h"
#include "bench/sipExchange.h"
#include "bench/sipScreen.h"
#include "bench/sipTimes.h"
#include "bench/sipUsers.h"
#include "support/host/phone.h"
#include "tests/kit/plain/ports.h"
#include <QCoreApplication>
#include <QThread>
#include <cstdio>

namespace {

constexpr int kCalls = 10000;
constexpr int kFirstCalls = 1000;
constexpr int kOthersPerSecond = 20;
constexpr int kOthersSeconds = 60;
constexpr double kMostGrowth = 1; // percent
constexpr int kPhoneRestSeconds = 40;
constexpr double kUnchanged = 1; // percent

void addGrowth(RatioTable& table, const ManySipCalls& calls, const tagHeld* before)
{
    for (int i = 0; i < ManySipCalls::PROCESSES; ++i) {
        const auto process = ManySipCalls::PROCESS(i);
        const tagHeld now = calls.held(process);
        const QString name = ManySipCalls::nameOf(process);
        table.add(name + ": memory in use grown since the first thousand calls",
                  grownBy(now.usedKiB, before[i].usedKiB), kMostGrowth, "%");
        table.add(name + ": private memory grown", grownBy(now.dirtyKiB, before[i].dirtyKiB), kMostGrowth,
                  "%");
        table.add(name + ": handles grown", now.handles - before[i].handles, 0, "");
        table.add(name + ": threads grown", now.threads - before[i].threads, 0, "");
    }
}

void benchMany(RatioTable& table, unsigned seed)
{
    const int wished = qEnvironmentVariableIntValue("HX_SIP_CALLS");
    const int count = wished > kFirstCalls ? wished : kCalls;
    ManySipCalls calls(seed);
    if (!calls.start())
        qFatal("the phone did not start");
    calls.play(kFirstCalls);
    // The first thousand of them include those that find no room.
    int refused = calls.refuseOthers(kOthersPerSecond, kOthersSeconds);
    calls.rest();
    tagHeld before[ManySipCalls::PROCESSES];
    for (int i = 0; i < ManySipCalls::PROCESSES; ++i)
        before[i] = calls.held(ManySipCalls::PROCESS(i));
    // A rest now and then: a run of hours that is cut short has told what it held until then.
    while (calls.begun() < count) {
        calls.play(qMin(int(kCalls), count - calls.begun()));
        if (calls.begun() < count)
            calls.rest();
    }
    refused += calls.refuseOthers(kOthersPerSecond, kOthersSeconds);
    calls.rest();
    calls.printActs();
    printf("%5d calls that found no room, %d a second\n", refused, kOthersPerSecond);
    addGrowth(table, calls, before);
    table.add(QString("of %1 calls, those lost, stuck or otherwise than done").arg(calls.begun()),
              calls.wrongs(), 0, "");
    table.add("runs of SIPp in which a call went otherwise", calls.failedRuns(), 0, "");
}

struct tagPhoneHeld
{
    double megabytes;
    double usedKiB;
};

// At its home screen, with four lines.
tagPhoneHeld phoneAtRest(bool isReal)
{
    SipExchange exchange(3600, kit::freePort());
    const HeapFolder heaps;
    RunningPhone phone;
    askNoWeather(phone.root());
    for (int line = 0; line < PHONE_ACCOUNT_COUNT && isReal; ++line)
        putSipAccount(phone.root(), line, {"100" + QByteArray::number(line + 1), exchange.port()});
    if (!phone.start(isReal ? QStringList{"--sip"} : QStringList()))
        qFatal("the phone did not start");
    for (int line = 0; line < PHONE_ACCOUNT_COUNT && !isReal; ++line)
        phone.ctl({"set", "line", QString::number(line), "state=2", QString("user=100%1").arg(line + 1),
                   "server=127.0.0.1"});
    if (isReal && !exchange.waitForPhones(PHONE_ACCOUNT_COUNT, 20000))
        qFatal("the phone does not register");
    QThread::sleep(kPhoneRestSeconds);
    return {residentMegabytes(phone.pid()), heaps.usedKiB(phone.pid())};
}

void benchRest(RatioTable& table)
{
    qputenv("MALLOC_ARENA_MAX", "1");
    const tagPhoneHeld simulated = phoneAtRest(false), real = phoneAtRest(true);
    printf("phone with simulated lines: %.2f MB, %.0f KiB in use; with real ones: %.2f MB, %.0f KiB in use\n",
           simulated.megabytes, simulated.usedKiB, real.megabytes, real.usedKiB);
    table.add("phone with four real lines, against four simulated ones: memory",
              grownBy(real.megabytes, simulated.megabytes), kUnchanged, "%");
    table.add("the same, memory in use", grownBy(real.usedKiB, simulated.usedKiB), kUnchanged, "%");
}

} // namespace

int main(int argc, char** argv)
{
    const QStringList parts = benchParts(argc, argv, {"screen", "times", "rest", "many"});
    const unsigned seed = benchSeed();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    RatioTable table;
    if (parts.contains("screen"))
        benchSipScreen(table, argc, argv);
    if (parts.contains("times")) {
        benchRegistration(table);
        benchFailover(table);
    }
    if (parts.contains("rest"))
        benchRest(table);
    if (parts.contains("many"))
        benchMany(table, seed);
    return table.print() ? 0 : 1;
}
