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
    // See screenBringUp().
    void bringUp(QWidget* window);
    // Shows a window under all others, which stay as they are.
    void showUnder(QWidget* window);
    // A box has ended together with all it lay upon: its callers are done once the event loop is reached.
    void boxesEnded();
    // Touches of the window system are dropped while it is off.
    void setTouch(bool on) { m_bTouch = on; }
    // The pointer stays in sight: a person works with a mouse.
    void keepPointer() { m_bKeepsPointer = true; }
    bool keepsPointer() const { return m_bKeepsPointer; }
    bool isTouchOn() const { return m_bTouch; }
    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    void changed();

private:
    windowStack();
    void onShow(QWidget* window);
    void cancelBoxesFor(QWidget* window);
    void raise(QWidget* window);
    void putOnTop(QWidget* window);
    void takeAway(QWidget* window);
    void activateTopLater();
    void activateTop();
    void showWantedAgain();
    bool m_bTouch = true;
    bool m_bKeepsPointer = false;
    QList<QPointer<QWidget>> m_stack; // topmost first
    QWidget* m_pUnder = nullptr;      // being shown under the others
    QPointer<QWidget> m_pWanted;      // brought up over boxes whose callers are not done yet
};

// The screen as a person sees it: 800 by 480, all windows composed.
QImage screenGrab();
// The same without boxes, the topmost window then (null: none), and the mark of one.
QImage screenGrabWithoutBoxes();
QWidget* screenTopWithoutBoxes();
void screenMarkBox(QWidget* window);
