#pragma once
// Extensions whose state a backend can see. User-interface thread.
#include <QHash>
#include <QList>
#include <QString>

enum LAMP_STATE { LAMP_UNKNOWN, LAMP_IDLE, LAMP_RINGING, LAMP_BUSY };

struct tagLampWatch
{
    int nLine = -1; // 0 to 3 whose server is asked, -1 the default one's
    QString strNumber;
    bool operator==(const tagLampWatch& other) const
    {
        return nLine == other.nLine && strNumber == other.strNumber;
    }
};
inline size_t qHash(const tagLampWatch& watch, size_t seed = 0)
{
    return qHashMulti(seed, watch.nLine, watch.strNumber);
}

// One of the extensions that the server of a line has put on a list.
struct tagLampMember
{
    QString strNumber;
    QString strName; // may be empty
    bool operator==(const tagLampMember& other) const
    {
        return strNumber == other.strNumber && strName == other.strName;
    }
};

// Hears from the backend.
class lampNews
{
public:
    virtual ~lampNews() = default;
    // Of what is watched; of anything else it is not heard.
    virtual void lampChanged(const tagLampWatch& watch, LAMP_STATE state) = 0;
    virtual void listChanged(int line, const QList<tagLampMember>& members) = 0;
};

class phoneLamps
{
public:
    virtual ~phoneLamps() = default;
    // Null: nobody listens any more.
    virtual void setNews(lampNews* news) = 0;
    // The state is told now, as far as it is known, and with each change. What is watched already is asked
    // for anew.
    virtual void watch(const tagLampWatch& watch) = 0;
    virtual void unwatch(const tagLampWatch& watch) = 0;
    // The same for the list of a line.
    virtual void watchList(int line) = 0;
    virtual void unwatchList(int line) = 0;
    // Takes the call that rings there. Its id; 0 when none rings.
    virtual int pickUp(const tagLampWatch& watch) = 0;
};
