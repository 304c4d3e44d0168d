#include "bench/heapFolder.h"
#include "places.h"
#include "tests/kit/plain/processes.h"
#include <QFile>
#include <csignal>

namespace {

constexpr int kWaitMs = 5000;
const char* const kTeller = HX_BUILD_DIR "/lib/libhxHeapTeller.so";

} // namespace

HeapFolder::HeapFolder()
{
    if (!QFile::exists(kTeller))
        qFatal("no %s", kTeller);
    qputenv("LD_PRELOAD", kTeller);
    // What a thread's cache keeps for its next wish would count as in use.
    qputenv("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0");
    qputenv("HX_HEAP_FOLDER", m_folder.path().toUtf8());
}

HeapFolder::~HeapFolder()
{
    qunsetenv("LD_PRELOAD");
    qunsetenv("GLIBC_TUNABLES");
    qunsetenv("HX_HEAP_FOLDER");
}

double HeapFolder::usedKiB(qint64 pid) const
{
    const QString path = m_folder.filePath(QString::number(pid));
    QFile::remove(path);
    ::kill(pid_t(pid), SIGRTMIN + 5);
    QByteArray told;
    const auto isTold = [&] {
        QFile file(path);
        told = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        return told.endsWith('\n');
    };
    if (!kit::waits(isTold, kWaitMs))
        qFatal("process %lld does not tell what it holds", pid);
    return told.trimmed().toDouble() / 1024;
}
