#pragma once
// Where the sounds of calls meet: the microphone goes to each, all that is received to the loudspeaker, and
// what one says who is joined with another goes to that one too. All of it happens on one thread, frame by
// frame, which runs while there are calls.
#include "players/callSession.h"
#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

// The sound of this side: frames of callSession::FRAME_SAMPLES. Of the desk's thread.
class soundPort
{
public:
    virtual ~soundPort() = default;
    virtual void read(short* frame) = 0;
    virtual void write(const short* frame) = 0;
};

class callDesk
{
public:
    // port outlives the desk.
    explicit callDesk(soundPort& port) : m_port(port) {}
    ~callDesk();

    void add(int call, std::unique_ptr<callSession> session);
    void remove(int call);
    bool has(int call) const;
    bool isEmpty() const;
    // Under the lock of the desk's thread: nothing that takes long. False when there is no such call.
    bool with(int call, const std::function<void(callSession&)>& work);
    // False when one of them has no sound. A call that is joined already leaves that one.
    bool join(int call, int other);
    void split(int call);
    // The call that this one is joined with; 0: none.
    int joinedWith(int call) const;

    static qint64 nowUs();

private:
    void run();
    void step();

    soundPort& m_port;
    mutable std::mutex m_mutex; // of what follows
    std::map<int, std::unique_ptr<callSession>> m_sessions;
    std::map<int, int> m_joined; // both ways
    std::thread m_thread;
    std::atomic<bool> m_bRuns{false};
};
