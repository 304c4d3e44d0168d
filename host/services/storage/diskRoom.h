#pragma once
// Room on the disk for what transfers store beside each other, past the reserve of its folder. One thread.
#include <QByteArray>
#include <QHash>

class diskRoom
{
public:
    enum : qint64 { STEP = 256 << 10 }; // bytes after which the disk is asked again

    // Asks the disk whether so many bytes have room now.
    bool ask(const QByteArray& folder, qint64 bytes);
    // Room for bytes that are written next; asks the disk when what it granted is used up.
    bool take(const QByteArray& folder, qint64 bytes);

private:
    QHash<QByteArray, qint64> m_granted; // bytes that are left, by folder
};
