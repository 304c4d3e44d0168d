#pragma once
// Room on the disk for what transfers store beside each other, past the reserve of its folder. One thread.
#include <QByteArray>
#include <QHash>

class diskRoom
{
public:
    enum : qint64 { STEP = 256 << 10 }; // bytes after which the disk is asked again

    // Whether so many bytes have room; asks the disk when what it granted is used up.
    bool has(const QByteArray& folder, qint64 bytes);
    // Room for bytes that are written next.
    bool take(const QByteArray& folder, qint64 bytes);

private:
    bool ask(const QByteArray& folder, qint64 bytes);
    QHash<QByteArray, qint64> m_granted; // bytes that are left, by folder
};
