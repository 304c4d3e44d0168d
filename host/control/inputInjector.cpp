#include "host/control/inputInjector.h"
#include "host/touch/finger.h"
#include "host/touch/touchPanel.h"
#include <QApplication>
#include <QMetaEnum>
#include <QWindow>
#include <qpa/qwindowsysteminterface.h>

using Reply = ControlReply;

namespace {

constexpr int kPressure = 100; // of a finger on the panel

struct KeyStroke
{
    int key = 0;
    QString text;
    Qt::KeyboardModifiers modifiers;
};

// The digits, "*" and "#" are the phone's own key pad, and "message" is a key of it; other names are those of
// the toolkit.
KeyStroke strokeNamed(const QString& name)
{
    static const QString pad("0123456789*#");
    if (name.size() == 1 && pad.contains(name))
        return {name[0].unicode(), name, Qt::KeypadModifier};
    if (name == QLatin1String("message"))
        return {Qt::Key_F9, QString(), {}};
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
                fingerTouch(screen, FINGER_DOWN);
            if (how == "move")
                fingerTouch(screen, FINGER_MOVE);
            if (how.isEmpty() || how == "up")
                fingerTouch(screen, FINGER_UP);
        },
        reply);
}

void controlTouchRaw(const QStringList& arguments, const Reply& reply)
{
    const bool lifts = arguments == QStringList{"up"};
    bool areNumbers = lifts || arguments.size() > 1;
    int numbers[3] = {0, 0, kPressure};
    for (int i = 0; areNumbers && !lifts && i < arguments.size(); ++i)
        numbers[i] = arguments[i].toInt(&areNumbers);
    if (!areNumbers) {
        reply(controlUsage("touch-raw X Y [PRESSURE] | touch-raw up"));
        return;
    }
    if (!TouchPanel::instance().start()) {
        reply(controlError("the phone has no simulated touch panel"));
        return;
    }
    controlRunLater(
        [numbers, lifts] {
            if (lifts)
                TouchPanel::instance().lift();
            else
                TouchPanel::instance().report(numbers[0], numbers[1], numbers[2]);
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
