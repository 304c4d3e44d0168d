#pragma once
// The movie player and the media server as the phone sees them: two named threads that write down what they
// are told. They live in the test's own process, behind sockets of their own.
#include "host/services/messages/messageWire.h"
#include "support/file/deviceRoot.h"
#include "tests/kit/phoneTest.h"
#include <QList>
#include <QMutex>
#include <QSemaphore>
#include <functional>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <vector>

struct tagTold
{
    bool bSent = false; // the sender waits
    unsigned message = 0;
    unsigned wParam = 0;
    QByteArray extra;
};

class FakePlayer
{
public:
    // What comes back for a message that was sent; called on the player's thread while the sender waits.
    using Answer = std::function<QByteArray(const tagTold& told)>;

    explicit FakePlayer(const char* name, Answer answer = nullptr)
        : m_path(QByteArray(devicePath("/rundata/run/").GetText()) + name + ".sock"), m_answer(answer)
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, m_path.constData(), sizeof address.sun_path);
        m_nListener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        EXPECT_EQ(bind(m_nListener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(listen(m_nListener, 16), 0);
        m_nEnd = eventfd(0, EFD_CLOEXEC);
        m_thread = std::thread([this] { run(); });
        m_runs.acquire(); // the phone waits for an answer, not for a thread that begins
    }
    ~FakePlayer() { end(); }
    FakePlayer(const FakePlayer&) = delete;
    FakePlayer& operator=(const FakePlayer&) = delete;

    // Dies as a process does: its connections break.
    void end()
    {
        if (m_thread.joinable()) {
            eventfd_write(m_nEnd, 1);
            m_thread.join();
        }
    }
    QList<tagTold> told() const
    {
        QMutexLocker lock(&m_mutex);
        return m_told;
    }
    void forget()
    {
        QMutexLocker lock(&m_mutex);
        m_told.clear();
    }
    bool hears(int count)
    {
        return kit::waitUntil([&] { return told().size() >= count; });
    }
    QList<unsigned> messages() const
    {
        QList<unsigned> all;
        for (const tagTold& one : told())
            all.append(one.message);
        return all;
    }

private:
    struct tagGuest
    {
        int nSocket;
        QByteArray bytes;
    };

    void run()
    {
        m_runs.release();
        bool running = true;
        while (running)
            running = turn();
        for (const tagGuest& guest : m_guests)
            close(guest.nSocket);
        close(m_nListener);
        close(m_nEnd);
        unlink(m_path.constData());
    }

    bool turn()
    {
        std::vector<pollfd> waits = {{m_nEnd, POLLIN, 0}, {m_nListener, POLLIN, 0}};
        for (const tagGuest& guest : m_guests)
            waits.push_back({guest.nSocket, POLLIN, 0});
        poll(waits.data(), waits.size(), -1);
        if (waits[0].revents)
            return false;
        for (size_t i = 2; i < waits.size(); ++i) {
            if (waits[i].revents && !serve(m_guests[qsizetype(i) - 2]))
                return false;
        }
        const int guest = waits[1].revents ? accept4(m_nListener, nullptr, nullptr, SOCK_CLOEXEC) : -1;
        if (guest >= 0)
            m_guests.append({guest, QByteArray()});
        return true;
    }

    // False when the player dies of what it is told.
    bool serve(tagGuest& guest)
    {
        char block[4096];
        const ssize_t count = recv(guest.nSocket, block, sizeof block, 0);
        if (count <= 0) {
            close(guest.nSocket);
            guest.nSocket = -1;
            return true;
        }
        guest.bytes.append(block, count);
        messageWire::tagFrame frame;
        qsizetype used = 0;
        while (messageWire::decode(guest.bytes.constData(), guest.bytes.size(), frame, used) ==
               messageWire::DECODED::FRAME) {
            guest.bytes.remove(0, used);
            if (frame.eKind != messageWire::KIND_BROADCAST && !take(guest, frame))
                return false;
        }
        return true;
    }

    bool take(const tagGuest& guest, const messageWire::tagFrame& frame)
    {
        const tagTold told = {frame.eKind == messageWire::KIND_SEND, frame.message, frame.wParam,
                              frame.extra};
        QMutexLocker lock(&m_mutex);
        m_told.append(told);
        lock.unlock();
        if (!told.bSent)
            return true;
        messageWire::tagFrame reply;
        reply.eKind = messageWire::KIND_REPLY;
        reply.nTicket = frame.nTicket;
        reply.extra = m_answer ? m_answer(told) : QByteArray();
        if (reply.extra == kDeath)
            return false;
        const QByteArray bytes = messageWire::encode(reply);
        return send(guest.nSocket, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL) == bytes.size();
    }

public:
    static inline const QByteArray kDeath = "dies"; // an answer that never comes

private:
    const QByteArray m_path;
    const Answer m_answer;
    int m_nListener = -1;
    int m_nEnd = -1;
    mutable QMutex m_mutex;
    QList<tagTold> m_told;
    QList<tagGuest> m_guests;
    QSemaphore m_runs;
    std::thread m_thread;
};
