#include "host/screen/windowStack.h"
#include "host/look/look.h"
#include "host/screen/screenState.h"
#include "support/host/screen.h"
#include <QApplication>
#include <QEvent>
#include <QPainter>

namespace {

bool isTouch(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        return true;
    default:
        return false;
    }
}

QWidget* asWindow(QObject* object)
{
    QWidget* widget = object->isWidgetType() ? static_cast<QWidget*>(object) : nullptr;
    return widget && widget->isWindow() && widget->windowType() != Qt::Desktop ? widget : nullptr;
}

bool coversScreen(const QWidget* window)
{
    return window->geometry().contains(QRect(0, 0, look::kScreenWidth, look::kScreenHeight)) &&
           !window->testAttribute(Qt::WA_TranslucentBackground) && window->mask().isEmpty();
}

} // namespace

windowStack& windowStack::instance()
{
    static windowStack stack;
    return stack;
}

windowStack::windowStack()
{
    qApp->installEventFilter(this);
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible())
            putOnTop(window);
    }
}

QList<QWidget*> windowStack::windows() const
{
    QList<QWidget*> visible;
    for (const QPointer<QWidget>& window : m_stack) {
        if (window && window->isVisible())
            visible.append(window);
    }
    return visible;
}

bool windowStack::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (watched->isWindowType()) {
        if (isTouch(type) && !m_bTouch)
            return true;
        if (isTouch(type) || type == QEvent::KeyPress)
            screenState::instance().touch();
        return false;
    }
    switch (type) {
    case QEvent::Show:
        if (QWidget* window = asWindow(watched)) {
            putOnTop(window);
            // Without a window manager nobody else gives a new window the keys.
            QMetaObject::invokeMethod(this, &windowStack::activateTop, Qt::QueuedConnection);
        }
        break;
    case QEvent::ZOrderChange:
    case QEvent::WindowActivate:
        if (QWidget* window = asWindow(watched))
            putOnTop(window);
        break;
    case QEvent::Hide:
        if (QWidget* window = asWindow(watched))
            takeAway(window);
        break;
    default:
        break;
    }
    return false;
}

void windowStack::putOnTop(QWidget* window)
{
    if (!window->isVisible() || (!m_stack.isEmpty() && m_stack.first() == window))
        return;
    m_stack.removeAll(window);
    m_stack.removeAll(QPointer<QWidget>());
    m_stack.prepend(window);
    emit changed();
}

// The next window is made active from the event loop: a page that closes itself and opens another in one go
// must not wake the one below for a moment.
void windowStack::takeAway(QWidget* window)
{
    m_stack.removeAll(window);
    emit changed();
    QMetaObject::invokeMethod(this, &windowStack::activateTop, Qt::QueuedConnection);
}

void windowStack::activateTop()
{
    for (QWidget* window : windows()) {
        if (window->windowFlags() & (Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput))
            continue;
        if (!window->isActiveWindow() && window->windowType() != Qt::Popup)
            window->activateWindow();
        return;
    }
}

QImage screenGrab()
{
    const QList<QWidget*> windows = windowStack::instance().windows();
    qsizetype lowest = 0;
    while (lowest < windows.size() - 1 && !coversScreen(windows[lowest]))
        ++lowest;
    QImage image(look::kScreenWidth, look::kScreenHeight, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    for (qsizetype i = qMin(lowest, windows.size() - 1); i >= 0; --i) {
        QWidget* window = windows[i];
        const QPoint position = window->geometry().topLeft();
        painter.save();
        if (!window->mask().isEmpty())
            painter.setClipRegion(window->mask().translated(position));
        painter.drawPixmap(position, window->grab());
        painter.restore();
    }
    return image;
}

QList<QWidget*> QWSServer::clientWindows()
{
    return windowStack::instance().windows();
}

void QWSServer::closeMouse()
{
    windowStack::instance().setTouch(false);
}

void QWSServer::openMouse()
{
    windowStack::instance().setTouch(true);
}

bool QWSServer::isMouseOpen()
{
    return windowStack::instance().isTouchOn();
}

void QWSServer::setCursorVisible(bool visible)
{
    static bool hidden = false;
    if (hidden == !visible)
        return;
    hidden = !visible;
    if (hidden)
        QApplication::setOverrideCursor(Qt::BlankCursor);
    else
        QApplication::restoreOverrideCursor();
}
