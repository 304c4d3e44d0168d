#include "bench/threadWatch.h"
#include <QBackingStore>
#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <QThread>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <ctime>

namespace {

constexpr int kLookMs = 4;
constexpr double kSameFrameMs = 1;
constexpr double kNothingMs = 0.05; // of a turn that had nothing to do
constexpr ulong kRestUs = 200;

double msOf(const QElapsedTimer& timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

double processorMs()
{
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

} // namespace

CostClock::CostClock() : m_before(processorMs())
{
    m_clock.start();
}

tagCost CostClock::cost() const
{
    return {msOf(m_clock), processorMs() - m_before};
}

double percentile99(const std::vector<tagCost>& costs, double tagCost::*figure)
{
    std::vector<double> sorted;
    for (const tagCost& cost : costs)
        sorted.push_back(cost.*figure);
    std::sort(sorted.begin(), sorted.end());
    return sorted[size_t(std::floor(double(sorted.size()) * 0.99)) - 1];
}

void TurnWatch::turn()
{
    const CostClock clock;
    QCoreApplication::processEvents();
    // What a phone's own event loop does, and turns of it from outside do not.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const tagCost cost = clock.cost();
    m_longest.waited = std::max(m_longest.waited, cost.waited);
    m_longest.worked = std::max(m_longest.worked, cost.worked);
    // A thread that never rests is one that the system takes turns off.
    if (cost.waited < kNothingMs)
        QThread::usleep(kRestUs);
}

bool TurnWatch::turnUntil(const std::function<bool()>& holds, int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (!holds()) {
        if (timer.elapsed() > ms)
            return false;
        turn();
    }
    return true;
}

void TurnWatch::turnFor(int ms)
{
    turnUntil([] { return false; }, ms);
}

ThreadWatch::ThreadWatch()
{
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] { look(); });
    m_since.start();
    m_timer.start(kLookMs);
}

void ThreadWatch::look()
{
    m_longest = std::max(m_longest, msOf(m_since) - kLookMs);
    m_since.start();
}

PaintWatch::PaintWatch(std::function<bool(const QWidget*)> fits) : m_fits(std::move(fits))
{
    QCoreApplication::instance()->installEventFilter(this);
}

void PaintWatch::begin()
{
    m_since.invalidate();
    m_intervals.clear();
}

double PaintWatch::percentile(double share) const
{
    if (m_intervals.empty())
        return HUGE_VAL;
    std::vector<double> sorted = m_intervals;
    std::sort(sorted.begin(), sorted.end());
    return sorted[size_t(std::ceil(share * double(sorted.size()))) - 1];
}

bool PaintWatch::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Paint || !watched->isWidgetType() || !m_fits(static_cast<QWidget*>(watched)))
        return false;
    const bool isSameFrame = m_since.isValid() && msOf(m_since) < kSameFrameMs;
    if (m_since.isValid() && !isSameFrame)
        m_intervals.push_back(msOf(m_since));
    if (!isSameFrame)
        m_since.start();
    return false;
}

bool FrameWatch::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::UpdateRequest || m_bInside)
        return false;
    auto* window = static_cast<QWidget*>(watched);
    m_bInside = true;
    QCoreApplication::sendEvent(window, event);
    m_bInside = false;
    if (const auto* image = dynamic_cast<QImage*>(window->backingStore()->paintDevice()))
        m_look(*image);
    return true;
}
