#include "host/touch/mousePanel.h"
#include "host/screen/windowStack.h"
#include "host/touch/finger.h"
#include "host/touch/touchPanel.h"
#include <QCoreApplication>
#include <QMouseEvent>
#include <iterator>

namespace {

constexpr int kReportMs = 10;
constexpr int kPressure = 100;
constexpr int kNoise[] = {0, 2, -1, 1, -2}; // counts

} // namespace

bool MousePanel::start(QObject* parent)
{
    if (!TouchPanel::instance().start())
        return false;
    new MousePanel(parent);
    return true;
}

MousePanel::MousePanel(QObject* parent) : QObject(parent)
{
    m_timer.setInterval(kReportMs);
    connect(&m_timer, &QTimer::timeout, this, &MousePanel::report);
    windowStack::instance().keepPointer();
    // Before the phone's own filters: for them the mouse is not there.
    qApp->installEventFilter(this);
}

QPoint MousePanel::toPanel(const QPoint& screen)
{
    const double x = screen.x();
    const double y = screen.y();
    return {qRound(150 + 4.6 * x + 0.15 * y), qRound(260 - 0.08 * x + 7.7 * y)};
}

bool MousePanel::eventFilter(QObject* watched, QEvent* event)
{
    if (!watched->isWindowType())
        return false;
    const QEvent::Type type = event->type();
    if (type != QEvent::MouseButtonPress && type != QEvent::MouseMove && type != QEvent::MouseButtonRelease &&
        type != QEvent::MouseButtonDblClick)
        return false;
    const QMouseEvent* mouse = static_cast<QMouseEvent*>(event);
    if (fingerIs(mouse))
        return false;
    m_finger = mouse->globalPosition().toPoint();
    if (type == QEvent::MouseButtonPress && mouse->button() == Qt::LeftButton) {
        m_timer.start();
        report();
    } else if (type == QEvent::MouseButtonRelease && m_timer.isActive()) {
        m_timer.stop();
        TouchPanel::instance().lift();
    }
    return true;
}

void MousePanel::report()
{
    const QPoint panel = toPanel(m_finger);
    const int noise = kNoise[m_nReports++ % int(std::size(kNoise))];
    TouchPanel::instance().report(panel.x() + noise, panel.y() - noise, kPressure);
}
