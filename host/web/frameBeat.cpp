#include "host/web/frameBeat.h"
#include <QCoreApplication>
#include <QQuickWidget>
#include <QResizeEvent>
#include <QTimerEvent>
#include <algorithm>

namespace {
constexpr qint64 kMs = 1000000;
constexpr qint64 kPeriod = frameBeat::PERIOD * kMs;

// A widget that was never shown has no picture to draw into before it hears its size.
void giveSize(QWidget* widget)
{
    if (!widget->testAttribute(Qt::WA_PendingResizeEvent))
        return;
    QResizeEvent event(widget->size(), QSize());
    QCoreApplication::sendEvent(widget, &event);
    widget->setAttribute(Qt::WA_PendingResizeEvent, false);
}

} // namespace

frameBeat::frameBeat()
{
    m_clock.start();
    m_nDue = -kPeriod;
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &frameBeat::beat);
}

frameBeat& frameBeat::instance()
{
    static frameBeat* beat = new frameBeat;
    return *beat;
}

void frameBeat::pace(QQuickWidget* drawing)
{
    drawing->installEventFilter(this);
}

bool frameBeat::eventFilter(QObject* watched, QEvent* event)
{
    if (m_bBeats || event->type() != QEvent::Timer)
        return false;
    wait(static_cast<QQuickWidget*>(watched), static_cast<QTimerEvent*>(event)->timerId());
    return true;
}

// The engine's timer repeats until its widget hears it.
void frameBeat::wait(QQuickWidget* drawing, int timer)
{
    const auto isSame = [&](const Waiting& other) {
        return other.drawing == drawing && other.timer == timer;
    };
    if (std::none_of(m_waiting.begin(), m_waiting.end(), isSame))
        m_waiting.push_back({drawing, timer});
    const qint64 left = m_nDue + kPeriod - m_clock.nsecsElapsed();
    if (left <= 0)
        beat();
    else if (!m_timer.isActive())
        m_timer.start(int((left + kMs / 2) / kMs));
}

// Of a widget that is not on the screen too: the engine draws on until its last frame is taken.
void frameBeat::take(const Waiting& frame)
{
    QTimerEvent event(frame.timer);
    if (frame.drawing)
        QCoreApplication::sendEvent(frame.drawing, &event);
    if (!frame.drawing || frame.drawing->isVisible() || frame.drawing->size().isEmpty())
        return;
    giveSize(frame.drawing);
    frame.drawing->grabFramebuffer();
}

// A beat that is late does not move those after it, unless one was missed: then the count begins anew.
void frameBeat::beat()
{
    const qint64 now = m_clock.nsecsElapsed();
    const qint64 due = m_nDue + kPeriod;
    m_nDue = now - due < kPeriod ? due : now;
    m_timer.stop();
    std::vector<Waiting> waiting;
    waiting.swap(m_waiting);
    m_bBeats = true;
    for (const Waiting& frame : waiting)
        take(frame);
    m_bBeats = false;
}
