#include "bench/threadWatch.h"
#include <QBackingStore>
#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace {

constexpr int kLookMs = 4;
constexpr double kSameFrameMs = 1;

double msOf(const QElapsedTimer& timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

} // namespace

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
