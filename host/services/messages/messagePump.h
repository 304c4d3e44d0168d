#pragma once
// The thread that moves messages between this process and the others. It starts with the first need of
// it and sleeps while nothing comes or goes. Any thread, unless stated.
#include "host/services/messages/messageStream.h"
#include "host/services/messages/threadQueue.h"
#include <QHash>
#include <QMutex>
#include <memory>
#include <thread>

class messagePump
{
public:
    static messagePump& instance();

    // Takes the name and listens; what comes for it goes to queue. False when the name is taken.
    bool listen(const QByteArray& name, const threadQueueRef& queue);
    // Ends all connections and whatever waits for them; what can be written at once still is.
    void stop();
    bool isListeningAs(const QByteArray& name) const;
    // The queue of this process's named thread; null when it has none.
    threadQueueRef ownQueue() const;

    // True when a process with that name listens.
    bool isReachable(const QByteArray& name);
    // Puts the frame on its way, and for a ticket expects the answer. False when nobody is there, or the
    // peer has not read for too long.
    bool send(const QByteArray& name, const messageWire::tagFrame& frame);
    // To all other processes.
    void broadcast(const messageWire::tagFrame& frame);

private:
    // A connection that this process made: messages go out, replies come in.
    struct tagLink
    {
        quint64 nId;
        QByteArray name;
        messageStream stream;
        bool bDropping; // told already that there is no room
        tagLink(quint64 id, const QByteArray& peer, int socket)
            : nId(id), name(peer), stream(socket), bDropping(false)
        {
        }
    };
    // A connection that another process made: messages come in, replies go out.
    struct tagGuest
    {
        quint64 nId;
        quint64 nHeard; // when it sent something last, as a count of such events
        messageStream stream;
        tagGuest(quint64 id, quint64 heard, int socket) : nId(id), nHeard(heard), stream(socket) {}
    };
    using LinkRef = std::shared_ptr<tagLink>;
    using GuestRef = std::shared_ptr<tagGuest>;

    messagePump() = default;
    ~messagePump();
    void start();
    void wake();
    void run();
    bool turn();
    void clearWake() const;
    void serveLink(const LinkRef& link, short events);
    void serveGuest(const GuestRef& guest, short events);
    void acceptGuest();
    void makeRoomForGuest();
    void closeLink(const LinkRef& link);
    void closeGuest(const GuestRef& guest);
    void deliver(quint64 guest, const messageWire::tagFrame& frame);
    void reply(quint64 guest, quint32 ticket, const tagReply& result);
    LinkRef linkTo(const QByteArray& name);
    bool sendLocked(const QByteArray& name, const messageWire::tagFrame& frame);

    mutable QMutex m_mutex; // of all below
    std::thread m_thread;
    bool m_bStop = false;          // stop() is at work
    bool m_bNoDescriptors = false; // a guest could not be let in
    int m_nWakeFd = -1;
    int m_nListener = -1;
    int m_nLock = -1;
    QByteArray m_name;
    threadQueueRef m_queue;
    quint64 m_nLastId = 0;
    quint64 m_nHeard = 0;
    bool m_bCrowded = false; // told already that there are too many guests
    QHash<QByteArray, LinkRef> m_links;
    QHash<quint64, GuestRef> m_guests;
};
