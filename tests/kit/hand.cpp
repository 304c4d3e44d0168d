// Touches and keys, put in where the window system would put them.
#include "places.h"
#include "tests/kit/phoneTest.h"
#include "tests/kit/windowTracker.h"
#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QWidget>
#include <QWindow>
#include <qpa/qwindowsysteminterface.h>

namespace {

QPointer<QWidget> g_pressed; // the window under the finger keeps it until the finger is lifted

QWidget* windowAt(QPoint screen)
{
    for (QWidget* window : kit::windows()) {
        if (window->geometry().contains(screen))
            return window;
    }
    return nullptr;
}

void mouse(QWidget* window, QPoint screen, QEvent::Type type)
{
    if (!window || !window->windowHandle())
        return;
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QWindow* handle = window->windowHandle();
    QWindowSystemInterface::handleMouseEvent<QWindowSystemInterface::SynchronousDelivery>(
        handle, QPointF(screen - window->geometry().topLeft()), QPointF(screen), held, button, type);
    kit::settle();
}

void sendKey(QEvent::Type type, Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    QWindow* window = QGuiApplication::focusWindow();
    ASSERT_NE(window, nullptr) << "no window has the focus";
    QWindowSystemInterface::handleKeyEvent<QWindowSystemInterface::SynchronousDelivery>(window, type, key,
                                                                                        modifiers, text);
    kit::settle();
}

} // namespace

void kit::press(QPoint screen)
{
    g_pressed = windowAt(screen);
    mouse(g_pressed, screen, QEvent::MouseButtonPress);
}

void kit::moveTo(QPoint screen)
{
    mouse(g_pressed ? g_pressed.data() : windowAt(screen), screen, QEvent::MouseMove);
}

void kit::release(QPoint screen)
{
    QWidget* window = g_pressed && g_pressed->isVisible() ? g_pressed.data() : windowAt(screen);
    g_pressed = nullptr;
    mouse(window, screen, QEvent::MouseButtonRelease);
}

void kit::tap(QPoint screen)
{
    press(screen);
    release(screen);
}

void kit::tap(QWidget* widget)
{
    ASSERT_NE(widget, nullptr);
    tap(widget->mapToGlobal(widget->rect().center()));
}

void kit::keyPress(Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    sendKey(QEvent::KeyPress, key, modifiers, text);
}

void kit::keyRelease(Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    sendKey(QEvent::KeyRelease, key, modifiers, text);
}

void kit::key(Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    keyPress(key, modifiers, text);
    if (QGuiApplication::focusWindow())
        keyRelease(key, modifiers, text);
}

void kit::padKey(char digit)
{
    key(Qt::Key(static_cast<unsigned char>(digit)), Qt::KeypadModifier, QString(QLatin1Char(digit)));
}

void kit::type(const QString& text)
{
    for (const QChar letter : text)
        key(Qt::Key(letter.toUpper().unicode()), letter.isUpper() ? Qt::ShiftModifier : Qt::NoModifier,
            QString(letter));
}

QImage kit::screen()
{
    QImage image(800, 480, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    const QList<QWidget*> stack = windows();
    for (auto window = stack.rbegin(); window != stack.rend(); ++window)
        painter.drawPixmap((*window)->geometry().topLeft(), (*window)->grab());
    return image;
}

void kit::shot(const QString& name)
{
    QDir().mkpath(HX_BUILD_DIR "/shots");
    screen().save(QString(HX_BUILD_DIR "/shots/%1.png").arg(name));
}

QList<QWidget*> kit::windows()
{
    return WindowTracker::instance().windows();
}
