#include "tools/signServer/FileSums.h"
#include "tools/signServer/OpenFile.h"
#include <QCryptographicHash>
#include <algorithm>

namespace {

constexpr qint64 kBlock = 256 << 10;
constexpr qsizetype kMostEntries = 20000; // files of other days are forgotten

QByteArray Read(const OpenFile& file)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    for (qint64 at = 0; at < file.Size(); at += kBlock)
        hash.addData(file.Read(at, std::min(kBlock, file.Size() - at)));
    return hash.result().toHex();
}

} // namespace

FileSums::EntryPtr FileSums::EntryOf(const FileMark& mark)
{
    QMutexLocker locker(&m_lock);
    if (m_entries.size() >= kMostEntries && !m_entries.contains(mark.inode))
        m_entries.clear();
    EntryPtr& entry = m_entries[mark.inode];
    if (!entry || entry->mark != mark) {
        entry = std::make_shared<Entry>();
        entry->mark = mark;
    }
    return entry;
}

QByteArray FileSums::Known(const OpenFile& file) const
{
    const FileMark mark(file.Status());
    EntryPtr entry;
    {
        QMutexLocker locker(&m_lock);
        entry = m_entries.value(mark.inode);
    }
    if (!entry || entry->mark != mark || !entry->lock.tryLock())
        return QByteArray();
    const QByteArray sum = entry->settled ? entry->sum : QByteArray();
    entry->lock.unlock();
    return sum;
}

QByteArray FileSums::Of(const OpenFile& file, Clock::time_point asked)
{
    const EntryPtr entry = EntryOf(FileMark(file.Status()));
    QMutexLocker locker(&entry->lock);
    if (entry->sum.isEmpty() || (!entry->settled && entry->begun < asked)) {
        entry->begun = Clock::now();
        entry->settled = entry->mark.IsSettled();
        entry->sum = Read(file);
    }
    return entry->sum;
}
