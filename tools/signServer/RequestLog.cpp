#include "tools/signServer/RequestLog.h"
#include <QDateTime>

int RequestLog::Open(const QByteArray& file)
{
    if (file.isEmpty())
        return 1;
    FILE* opened = std::fopen(file.constData(), "ae");
    if (!opened)
        return 0;
    m_file = opened;
    return 1;
}

RequestLog::~RequestLog()
{
    if (m_file != stdout)
        std::fclose(m_file);
}

void RequestLog::Line(const QByteArray& text)
{
    const QByteArray now = QDateTime::currentDateTime().toString("yyyy-MM-dd hh:mm:ss.zzz").toLatin1();
    QMutexLocker locker(&m_lock);
    std::fprintf(m_file, "%s %s\n", now.constData(), text.constData());
    std::fflush(m_file);
}
