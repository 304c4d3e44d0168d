#include "host/control/inputInjector.h"
#include "support/host/screen.h"
#include <QApplication>
#include <QMetaEnum>
#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <qpa/qwindowsysteminterface.h>

using Reply = ControlReply;

namespace {

QPointer<QWidget> g_touched; // a window keeps the finger that went down in it

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
        window->windowHandle(), QPointF(screen - window->geometry().topLeft()), QPointF(screen),
        isHeld ? Qt::LeftButton : Qt::NoButton, isMove ? Qt::NoButton : Qt::LeftButton, type);
}

void touch(const QPoint& screen, QEvent::Type type)
{
    if (type == QEvent::MouseButtonPress)
        g_touched = windowAt(screen);
    sendMouse(g_touched ? g_touched.data() : windowAt(screen), screen, type);
    if (type == QEvent::MouseButtonRelease)
        g_touched = nullptr;
}

struct KeyStroke
{
    int key = 0;
    QString text;
    Qt::KeyboardModifiers modifiers;
};

// The digits, "*" and "#" are the phone's own key pad; other names are those of the toolkit.
KeyStroke strokeNamed(const QString& name)
{
    static const QString pad("0123456789*#");
    if (name.size() == 1 && pad.contains(name))
        return {name[0].unicode(), name, Qt::KeypadModifier};
    const QMetaEnum keys = QMetaEnum::fromType<Qt::Key>();
    const int key = keys.keyToValue(("Key_" + name).toLatin1().constData());
    return {key < 0 ? 0 : key, QString(), {}};
}

KeyStroke strokeFor(QChar letter)
{
    return {letter.toUpper().unicode(), QString(letter),
            letter.isUpper() ? Qt::ShiftModifier : Qt::NoModifier};
}

void sendKey(QEvent::Type type, const KeyStroke& stroke)
{
    QWindow* window = QGuiApplication::focusWindow();
    if (window)
        QWindowSystemInterface::handleKeyEvent(window, type, stroke.key, stroke.modifiers, stroke.text);
}

} // namespace

void controlTouch(const QStringList& arguments, const Reply& reply)
{
    bool hasX = false;
    bool hasY = false;
    const QPoint screen(arguments[0].toInt(&hasX), arguments[1].toInt(&hasY));
    const QString how = arguments.value(2);
    if (!hasX || !hasY || !QStringList{"", "down", "move", "up"}.contains(how)) {
        reply(controlUsage("touch X Y [down|move|up]"));
        return;
    }
    controlRunLater(
        [screen, how] {
            if (how.isEmpty() || how == "down")
                touch(screen, QEvent::MouseButtonPress);
            if (how == "move")
                touch(screen, QEvent::MouseMove);
            if (how.isEmpty() || how == "up")
                touch(screen, QEvent::MouseButtonRelease);
        },
        reply);
}

void controlKey(const QStringList& arguments, const Reply& reply)
{
    const KeyStroke stroke = strokeNamed(arguments[0]);
    const QString how = arguments.value(1);
    if (!stroke.key || !QStringList{"", "press", "release"}.contains(how)) {
        reply(controlError("no such key: " + arguments.join(' ')));
        return;
    }
    if (!QGuiApplication::focusWindow()) {
        reply(controlError("no window has the focus"));
        return;
    }
    controlRunLater(
        [stroke, how] {
            if (how != "release")
                sendKey(QEvent::KeyPress, stroke);
            if (how != "press")
                sendKey(QEvent::KeyRelease, stroke);
        },
        reply);
}

void controlType(const QStringList& arguments, const Reply& reply)
{
    if (!QApplication::focusWidget()) {
        reply(controlError("no widget has the focus"));
        return;
    }
    const QString text = arguments[0];
    controlRunLater(
        [text] {
            for (const QChar letter : text) {
                sendKey(QEvent::KeyPress, strokeFor(letter));
                sendKey(QEvent::KeyRelease, strokeFor(letter));
            }
        },
        reply);
}
