#include "host/touch/finger.h"
#include "support/host/screen.h"
#include <QPointer>
#include <QPointingDevice>
#include <QWidget>
#include <QWindow>
#include <qpa/qwindowsysteminterface.h>

namespace {

constexpr qint64 kSystemId = 0x746f7563;

QPointer<QWidget> g_touched; // a window keeps the finger that went down in it

const QPointingDevice& device()
{
    static const QPointingDevice finger("finger", kSystemId, QInputDevice::DeviceType::Mouse,
                                        QPointingDevice::PointerType::Generic,
                                        QInputDevice::Capability::Position, 1, 1);
    return finger;
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
        window->windowHandle(), &device(), QPointF(screen - window->geometry().topLeft()), QPointF(screen),
        isHeld ? Qt::LeftButton : Qt::NoButton, isMove ? Qt::NoButton : Qt::LeftButton, type);
}

} // namespace

const QInputDevice* fingerDevice()
{
    return &device();
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
