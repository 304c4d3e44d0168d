#pragma once
// MD5s of files, each made once for all who ask while the file stays what it is. Any thread; whoever asks for
// one file does not wait for another.
#include "tools/signServer/FileMark.h"
#include <QByteArray>
#include <QHash>
#include <QMutex>
#include <chrono>
#include <memory>

class OpenFile;

class FileSums
{
public:
    using Clock = std::chrono::steady_clock;

    // Without reading the file; null when it has to be read.
    QByteArray Known(const OpenFile& file) const;
    // Lower-case hexadecimal text, as the phones compare it; of the content that it had at `asked` or later.
    QByteArray Of(const OpenFile& file, Clock::time_point asked = Clock::now());

private:
    struct Entry
    {
        QMutex lock; // held while the file is read
        FileMark mark;
        QByteArray sum;
        bool settled = false;
        Clock::time_point begun;
    };
    using EntryPtr = std::shared_ptr<Entry>;

    EntryPtr EntryOf(const FileMark& mark);

    mutable QMutex m_lock;
    QHash<quint64, EntryPtr> m_entries; // by inode
};
