#include "host/web/processUse.h"
#include <QByteArray>
#include <QFile>
#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr int kMsInSecond = 1000;
constexpr qint64 kKiB = 1024;
// Fields of "stat" behind the name, which may hold anything.
enum { USER_TIME = 11, SYSTEM_TIME = 12 };

QByteArray textOf(pid_t process, const char* name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(process).arg(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

qint64 kibibytes(const QByteArray& status, const char* name)
{
    const qsizetype at = status.indexOf(name);
    return at < 0 ? 0
                  : status.mid(at + qsizetype(qstrlen(name)), 24).trimmed().split(' ').first().toLongLong();
}

} // namespace

tagProcessUse processUse(pid_t process)
{
    tagProcessUse use;
    const QByteArray stat = textOf(process, "stat");
    const QByteArrayList fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    use.bThere = fields.size() > SYSTEM_TIME;
    if (!use.bThere)
        return use;
    use.nProcessorMs = (fields[USER_TIME].toLongLong() + fields[SYSTEM_TIME].toLongLong()) * kMsInSecond /
                       sysconf(_SC_CLK_TCK);
    const QByteArray status = textOf(process, "status");
    use.nMemory = (kibibytes(status, "RssAnon:") + kibibytes(status, "RssShmem:")) * kKiB;
    return use;
}

void processLimitMemory(pid_t process, qint64 bytes)
{
    const rlimit limit = {rlim_t(bytes), rlim_t(bytes)};
    prlimit(process, RLIMIT_DATA, &limit, nullptr);
}
