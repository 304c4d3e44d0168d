#include "tests/kit/windowTracker.h"
#include <QApplication>
#include <QEvent>

namespace kit {

WindowTracker& WindowTracker::instance()
{
    static WindowTracker tracker;
    return tracker;
}

QList<QWidget*> WindowTracker::windows() const
{
    QList<QWidget*> visible;
    for (const QPointer<QWidget>& window : m_stack) {
        if (window && window->isVisible())
            visible.append(window);
    }
    return visible;
}

bool WindowTracker::eventFilter(QObject* watched, QEvent* event)
{
    const bool comesToTop = event->type() == QEvent::Show || event->type() == QEvent::WindowActivate;
    if (comesToTop && watched->isWidgetType()) {
        QWidget* widget = static_cast<QWidget*>(watched);
        if (widget->isWindow()) {
            m_stack.removeAll(widget);
            m_stack.removeAll(QPointer<QWidget>());
            m_stack.prepend(widget);
        }
    }
    return false;
}

} // namespace kit
