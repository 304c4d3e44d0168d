#pragma once
// The network thread: it starts with the first transfer, and all transfers run on it. At most a few at
// a time go to one server; the others wait their turn, and files that give way keep nothing else waiting.
#include "host/services/storage/diskRoom.h"
#include "host/services/transfers/taskBook.h"
#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <deque>
#include <memory>

class checkSums;
class HttpAction;
class httpLoop;
class httpTransfer;

// What an action asked for when it was posted. Its own texts may be written again meanwhile.
struct tagHttpJob
{
    QByteArray url;
    QByteArray file;   // device path
    QByteArray server; // scheme, host and port; those that give way stand in a line of their own
    qint64 nSizeLimit = 0;
    int nTimeLimit = 0;
    bool bFlush = true;
    bool bCheckSum = false;
    bool bUnfinished = false;
    bool bGivesWay = false;
    quint64 nTurn = 0; // counts the postings of one action
    taskHoldRef hold;
};

class httpService : public QObject
{
public:
    enum : int {
        CONNECTIONS = 6 // to one server, and as many again for what gives way
    };

    ~httpService() override;
    // Any thread.
    static httpService& instance();
    // Takes down what the action asks for, on the thread that posts it. An action that is posted again
    // asks for something else: its transfer under way is given up, and its callback is told once.
    static void prepare(HttpAction& action, const taskHoldRef& hold);
    // The oldest job of the action that was taken down; one of its present texts when there is none.
    static tagHttpJob takeJob(HttpAction& action);
    void start(const tagHttpJob& job);
    // What the action has asked for so far is wanted no more. On the thread that posts it.
    static void abandon(quint64 action);
    // The action is being destroyed.
    static void forget(quint64 action);

    // Gives up what there is, on the network thread, which ends.
    void close();

private:
    // From here on: the network thread.
    httpService();
    // What goes to one server.
    struct tagServer
    {
        std::deque<tagHttpJob> waiting;
        int nActive = 0;
    };
    void enqueue(const tagHttpJob& job);
    void startNext(const QByteArray& server);
    void begin(const tagHttpJob& job);
    static void giveUpSoon(quint64 action);
    void giveUp(quint64 action);
    void giveUpWaiting(quint64 action);
    void ended(httpTransfer* transfer);
    void done(httpTransfer* transfer, bool good);
    // What was given up is told only where it has left a file.
    static void tell(const tagHttpJob& job, bool good, const QByteArray& checkSum);

    httpLoop& loopFor(const tagHttpJob& job);
    checkSums& sums();

    std::unique_ptr<httpLoop> m_loop;
    std::unique_ptr<httpLoop> m_wayGivers; // each has connections of its own
    diskRoom m_room;
    std::unique_ptr<checkSums> m_sums;
    QHash<QByteArray, tagServer> m_servers;
    QHash<quint64, int> m_jobs; // that wait or are active, of each action
    QList<httpTransfer*> m_active;
};
