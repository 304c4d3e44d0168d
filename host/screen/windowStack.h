#pragma once
// The phone's windows, in the order in which they lie on the screen. The window system of a phone has no
// window manager: when a window goes, the one below it becomes the active one. User-interface thread.
#include <QImage>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QWidget>

class windowStack : public QObject
{
    Q_OBJECT
public:
    // The one list; watches the application from the first call on.
    static windowStack& instance();

    QList<QWidget*> windows() const; // visible ones, topmost first
    // Touches of the window system are dropped while it is off.
    void setTouch(bool on) { m_bTouch = on; }
    bool isTouchOn() const { return m_bTouch; }
    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    void changed();

private:
    windowStack();
    void putOnTop(QWidget* window);
    void takeAway(QWidget* window);
    void activateTop();
    bool m_bTouch = true;
    QList<QPointer<QWidget>> m_stack; // topmost first
};

// The screen as a person sees it: 800 by 480, all windows composed.
QImage screenGrab();
