#pragma once
// The programmable keys as their file has them. User-interface thread.
#include <QList>
#include <QString>
#include <functional>

class xmlElement;

enum { DSS_KEYS_MAX = 20 };

struct tagDssKey
{
    enum TYPE { FREE, LINE, SPEED_DIAL, BLF, BLF_LIST };
    TYPE eType = FREE;
    int nLine = -1; // 0 to 3, -1 the default one
    QString strLabel;
    QString strNumber;  // what a press calls; may be empty
    QString strWatched; // the extension whose lamp it shows; may be empty
    bool operator==(const tagDssKey& other) const
    {
        return eType == other.eType && nLine == other.nLine && strLabel == other.strLabel &&
               strNumber == other.strNumber && strWatched == other.strWatched;
    }
};

// item: an Item of the file. What is none of the known types is free.
tagDssKey dssKeyOf(xmlElement* item);

// Those of the last file that could be read, in its order.
const QList<tagDssKey>& dssKeys();
// Tells the listener when they differ.
void dssKeysTake(const QList<tagDssKey>& keys);
// There is one; null for none.
void dssKeysListen(std::function<void()> changed);
