#pragma once
// The history of calls as the page of it shows them. User-interface thread.
#include "host/desktop/contactBook.h"
#include <QList>
#include <QString>

struct tagCallRecord
{
    QString strNumber;
    QString strName; // empty when it is not known
    int nLine = -1;  // 0 to 3, -1 the default one
    bool bIncoming = false;
    long nStart = 0;      // local time as for chTime(long); 0 when it is not known
    int nSeconds = 0;     // 0: nobody talked
    bool bMissed = false; // nobody here heard of it
};

// Newest first.
QList<tagCallRecord> callRecordsRead();
// The name that the call came with, else that of the contact with its number; the number for a stranger.
QString callRecordName(const tagCallRecord& call, const QList<tagContact>& contacts);
// Device path of the icon that tells how the call went.
QString callRecordPicture(const tagCallRecord& call);
// "12:05" or "1:02:03".
QString durationText(int seconds);
// The time of a call of today, else the day and the time.
QString callRecordTime(const tagCallRecord& call);
