#include "host/screen/windowStack.h"
#include "host/look/look.h"
#include "host/screen/screenState.h"
#include "support/host/screen.h"
#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QPainter>

namespace {

const char kBoxMark[] = "hxBox";

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

// Takes touches and keys of its own, and so cannot live under a box that keeps them.
bool takesInput(const QWidget* window)
{
    switch (window->windowType()) {
    case Qt::Popup:
    case Qt::ToolTip:
    case Qt::SplashScreen:
        return false;
    default:
        return !window->isModal() &&
               !(window->windowFlags() & (Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput));
    }
}

bool belongsTo(const QWidget* window, const QWidget* owner)
{
    for (; window; window = window->parentWidget()) {
        if (window == owner)
            return true;
    }
    return false;
}

// The off-screen window system keeps none, and says so each time.
bool hasOrder()
{
    return QGuiApplication::platformName() != QLatin1String("offscreen");
}

// windows: topmost first.
QImage compose(const QList<QWidget*>& windows)
{
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

QList<QWidget*> withoutBoxes()
{
    QList<QWidget*> windows = windowStack::instance().windows();
    windows.removeIf([](const QWidget* window) { return window->property(kBoxMark).toBool(); });
    return windows;
}

void cancel(QWidget* box)
{
    if (QDialog* dialog = qobject_cast<QDialog*>(box))
        dialog->reject();
    // One that does not let itself be cancelled must not keep the phone.
    if (box->isVisible())
        box->hide();
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
        if (isTouch(type) || type == QEvent::KeyPress) {
            m_pWanted = nullptr; // whatever goes now, a person has closed
            screenState::instance().touch();
        }
        return false;
    }
    switch (type) {
    case QEvent::Show:
        if (QWidget* window = asWindow(watched))
            onShow(window);
        break;
    case QEvent::ZOrderChange:
        if (QWidget* window = asWindow(watched); window && window != m_pUnder)
            putOnTop(window);
        break;
    case QEvent::WindowActivate:
        // The keys belong to the window that is seen.
        if (QWidget* window = asWindow(watched); window && windows().value(0) != window)
            activateTopLater();
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

void windowStack::onShow(QWidget* window)
{
    if (window == m_pUnder) {
        m_stack.removeAll(window);
        m_stack.append(window);
        emit changed();
    } else {
        cancelBoxesFor(window);
        raise(window);
    }
    // Without a window manager nobody else gives a new window the keys.
    activateTopLater();
}

void windowStack::bringUp(QWidget* window)
{
    if (!window->isVisible()) {
        window->setVisible(true);
        return;
    }
    cancelBoxesFor(window);
    raise(window);
    activateTopLater();
}

void windowStack::showUnder(QWidget* window)
{
    m_pUnder = window;
    window->show();
    if (hasOrder())
        window->lower();
    m_pUnder = nullptr;
}

// The window system would show a window again where it was before.
void windowStack::raise(QWidget* window)
{
    putOnTop(window);
    if (hasOrder())
        window->raise();
}

// Open lists go as well: they hold all touches until they are closed.
void windowStack::cancelBoxesFor(QWidget* window)
{
    if (!takesInput(window) && !window->isModal())
        return;
    while (QWidget* list = QApplication::activePopupWidget()) {
        if (belongsTo(window, list) || !list->close())
            break;
    }
    if (window->isModal())
        return; // a box lies upon a box
    bool cancelled = m_pWanted;
    for (QWidget* box = QApplication::activeModalWidget(); box && !belongsTo(window, box);
         box = QApplication::activeModalWidget()) {
        cancelled = true;
        cancel(box);
    }
    if (cancelled)
        m_pWanted = window;
}

// Their callers are done by the time the event loop gets here.
void windowStack::boxesEnded()
{
    if (m_pWanted)
        QMetaObject::invokeMethod(this, &windowStack::showWantedAgain, Qt::QueuedConnection);
}

// A page that closes when its box has been answered, and was opened while the box was up.
void windowStack::showWantedAgain()
{
    QWidget* window = m_pWanted;
    m_pWanted = nullptr;
    if (window && !window->isVisible())
        window->setVisible(true);
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
    activateTopLater();
}

void windowStack::activateTopLater()
{
    QMetaObject::invokeMethod(this, &windowStack::activateTop, Qt::QueuedConnection);
}

void windowStack::activateTop()
{
    for (QWidget* window : windows()) {
        if (window->windowFlags() & (Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput))
            continue;
        if (!window->isActiveWindow()) // as an open list always is
            window->activateWindow();
        return;
    }
}

QImage screenGrab()
{
    return compose(windowStack::instance().windows());
}

QImage screenGrabWithoutBoxes()
{
    return compose(withoutBoxes());
}

QWidget* screenTopWithoutBoxes()
{
    return withoutBoxes().value(0);
}

void screenMarkBox(QWidget* window)
{
    window->setProperty(kBoxMark, true);
}

QList<QWidget*> QWSServer::clientWindows()
{
    return windowStack::instance().windows();
}

void screenBringUp(QWidget* window)
{
    windowStack::instance().bringUp(window);
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
    if (hidden == !visible || (!visible && windowStack::instance().keepsPointer()))
        return;
    hidden = !visible;
    if (hidden)
        QApplication::setOverrideCursor(Qt::BlankCursor);
    else
        QApplication::restoreOverrideCursor();
}
