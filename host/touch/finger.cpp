#include "host/touch/finger.h"
#include "support/host/screen.h"
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <qpa/qwindowsysteminterface.h>

namespace {

constexpr ulong kClockAhead = ulong(1) << 31; // milliseconds
constexpr Qt::MouseEventSource kSource = Qt::MouseEventSynthesizedByApplication;

QPointer<QWidget> g_touched; // a window keeps the finger that went down in it

// On a clock of its own, far from the window system's: a touch that a mouse has made would else be the second
// of a quick pair for the toolkit, which tells a widget of the pair alone.
ulong touchTime()
{
    static QElapsedTimer clock;
    if (!clock.isValid())
        clock.start();
    return kClockAhead + ulong(clock.elapsed());
}

QWidget* windowAt(const QPoint& screen)
{
    for (QWidget* window : QWSServer::clientWindows()) {
        if (window->geometry().contains(screen))
            return window;
    }
    return nullptr;
}

void sendMouse(QWidget* window, const QPoint& screen, QEvent::Type type)
{
    if (!window || !window->windowHandle())
        return;
    const bool isMove = type == QEvent::MouseMove;
    const bool isHeld = type == QEvent::MouseButtonPress || (isMove && g_touched);
    QWindowSystemInterface::handleMouseEvent(
        window->windowHandle(), touchTime(), QPointF(screen - window->geometry().topLeft()), QPointF(screen),
        isHeld ? Qt::LeftButton : Qt::NoButton, isMove ? Qt::NoButton : Qt::LeftButton, type, Qt::NoModifier,
        kSource);
}

} // namespace

bool fingerIs(const QMouseEvent* event)
{
    return event->source() == kSource;
}

void fingerTouch(const QPoint& screen, FINGER what)
{
    if (what == FINGER_DOWN)
        g_touched = windowAt(screen);
    static const QEvent::Type kTypes[] = {QEvent::MouseButtonPress, QEvent::MouseMove,
                                          QEvent::MouseButtonRelease};
    sendMouse(g_touched ? g_touched.data() : windowAt(screen), screen, kTypes[what]);
    if (what == FINGER_UP)
        g_touched = nullptr;
}
