#include "tools/signServer/FileCheck.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <csignal>
#include <ctime>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace {

constexpr int kStartMs = 10000;
constexpr int kCheckMs = 15000;
constexpr int kTickMs = 50; // how soon a wait notices that the server stops
#if defined(__SANITIZE_ADDRESS__)
constexpr rlim_t kMemory = RLIM_INFINITY; // the sanitizer takes terabytes of addresses
#else
constexpr rlim_t kMemory = rlim_t(2) << 30; // bytes of addresses
#endif
constexpr rlim_t kProcessorS = 13;       // seconds; phones give a picture up after ten
constexpr qint64 kMostSaid = 4096;       // bytes that are read of what it says
constexpr time_t kSettledS = 2;          // a file that changed no later is whole
constexpr int kGiveWay = 19;             // niceness: phones do not wait for a check
constexpr int kChecked = 0, kFaulty = 1; // what the program ends with

void Limit(__rlimit_resource what, rlim_t most)
{
    const rlimit limit = {most, most};
    setrlimit(what, &limit);
}

// In the new process.
void Confine()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setpriority(PRIO_PROCESS, 0, kGiveWay);
    Limit(RLIMIT_AS, kMemory);
    Limit(RLIMIT_CPU, kProcessorS);
    Limit(RLIMIT_CORE, 0);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

QStringList LinesOf(const QByteArray& said)
{
    QStringList lines;
    for (const QByteArray& line : said.left(kMostSaid).split('\n')) {
        if (!line.trimmed().isEmpty())
            lines.append(QString::fromUtf8(line.trimmed()));
    }
    return lines;
}

} // namespace

QStringList FileCheck::FaultsOf(const QByteArray& path, const OpenFile& file, MediaKind kind)
{
    const struct stat& status = file.Status();
    Known& known = m_known[QByteArray(kind == MediaKind::Film ? "film " : "picture ") + path];
    known.asked = true;
    const bool isSame = known.size == status.st_size && known.seconds == status.st_mtim.tv_sec &&
                        known.nanoseconds == status.st_mtim.tv_nsec;
    const bool isSettled = time(nullptr) - status.st_mtim.tv_sec > kSettledS;
    if (isSame)
        return known.faults;
    QStringList faults;
    m_owing = m_owing || !isSettled;
    if (!isSettled || !Run(path, kind, faults))
        return known.faults;
    known = {status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec, faults, true};
    return faults;
}

void FileCheck::ForgetOthers()
{
    m_owing = false;
    m_known.removeIf([](const auto& entry) { return !entry.value().asked; });
    for (Known& known : m_known)
        known.asked = false;
}

// 0 when nothing can be said about the file.
int FileCheck::Run(const QByteArray& path, MediaKind kind, QStringList& faults)
{
    QProcess check;
    check.setChildProcessModifier(Confine);
    check.setStandardErrorFile(QProcess::nullDevice());
    check.start(QCoreApplication::applicationDirPath() + "/hxSignCheck",
                {kind == MediaKind::Film ? "film" : "picture", QString::fromLocal8Bit(path)});
    if (!check.waitForStarted(kStartMs)) {
        m_hindrance = "pictures and films are not checked: hxSignCheck cannot be started";
        return 0;
    }
    m_hindrance.clear();
    QElapsedTimer time;
    time.start();
    while (!check.waitForFinished(kTickMs) && check.state() != QProcess::NotRunning) {
        const bool tooMuch = time.elapsed() > kCheckMs || check.bytesAvailable() > kMostSaid;
        if (!tooMuch && !m_stopping)
            continue;
        check.kill();
        check.waitForFinished(kStartMs);
        faults = {"looking into it takes too long"};
        return m_stopping ? 0 : 1;
    }
    const bool ended = check.exitStatus() == QProcess::NormalExit;
    if (ended && check.exitCode() == kChecked)
        return 1;
    faults = ended && check.exitCode() == kFaulty ? LinesOf(check.readAllStandardOutput()) : QStringList();
    if (faults.isEmpty())
        faults = {"looking into it fails"};
    return 1;
}
