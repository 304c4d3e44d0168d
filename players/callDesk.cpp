#include "players/callDesk.h"
#include "players/soundThread.h"
#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <vector>

namespace {

using Frame = std::array<short, callSession::FRAME_SAMPLES>;

constexpr qint64 kFrameUs = callSession::FRAME_MS * 1000;
constexpr qint64 kBehindUs = 200000; // the machine slept: nobody makes up for it

void addTo(Frame& sum, const Frame& more)
{
    for (size_t i = 0; i < sum.size(); ++i)
        sum[i] = short(std::clamp(sum[i] + more[i], -32768, 32767));
}

void sleepUntil(qint64 us)
{
    const timespec when = {time_t(us / 1000000), long(us % 1000000 * 1000)};
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &when, nullptr) == EINTR) {
    }
}

} // namespace

callDesk::~callDesk()
{
    m_bRuns = false;
    if (m_thread.joinable())
        m_thread.join();
}

qint64 callDesk::nowUs()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return qint64(now.tv_sec) * 1000000 + now.tv_nsec / 1000;
}

void callDesk::add(int call, std::unique_ptr<callSession> session)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_sessions[call] = std::move(session);
    }
    if (m_bRuns)
        return;
    m_bRuns = true;
    m_thread = std::thread([this] { run(); });
}

void callDesk::remove(int call)
{
    split(call);
    std::unique_ptr<callSession> gone; // ends without the lock
    bool isLast = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_sessions.find(call);
        if (found == m_sessions.end())
            return;
        gone = std::move(found->second);
        m_sessions.erase(found);
        isLast = m_sessions.empty();
    }
    if (!isLast)
        return;
    m_bRuns = false;
    m_thread.join();
}

bool callDesk::has(int call) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_sessions.count(call) != 0;
}

bool callDesk::isEmpty() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_sessions.empty();
}

bool callDesk::with(int call, const std::function<void(callSession&)>& work)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_sessions.find(call);
    if (found == m_sessions.end())
        return false;
    work(*found->second);
    return true;
}

bool callDesk::join(int call, int other)
{
    split(call);
    split(other);
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const int id : {call, other}) {
        const auto found = m_sessions.find(id);
        if (found == m_sessions.end() || !found->second->agreed().bSound)
            return false;
    }
    if (call == other)
        return false;
    m_joined[call] = other;
    m_joined[other] = call;
    return true;
}

void callDesk::split(int call)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_joined.find(call);
    if (found == m_joined.end())
        return;
    m_joined.erase(found->second);
    m_joined.erase(call);
}

void callDesk::run()
{
    soundThreadComesFirst();
    qint64 next = nowUs();
    while (m_bRuns) {
        step();
        next += kFrameUs;
        if (nowUs() - next > kBehindUs)
            next = nowUs();
        sleepUntil(next);
    }
}

void callDesk::step()
{
    Frame microphone;
    m_port.read(microphone.data());
    Frame loudspeaker = {};
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const qint64 now = nowUs();
        std::map<int, Frame> heard;
        for (const auto& [call, session] : m_sessions) {
            session->receive(now);
            session->play(heard[call].data(), now);
            if (session->isStill())
                heard[call].fill(0);
            addTo(loudspeaker, heard[call]);
        }
        for (const auto& [call, session] : m_sessions) {
            Frame sent = session->isMuted() || session->isStill() ? Frame{} : microphone;
            const auto joined = m_joined.find(call);
            if (joined != m_joined.end() && !session->isStill())
                addTo(sent, heard[joined->second]);
            session->send(sent.data());
        }
    }
    m_port.write(loudspeaker.data());
}
