#pragma once
// What the players and savers over the whole screen share. Deleted when it closes. User-interface thread.
#include <QDialog>
#include <QSet>

class FullScreenDialog : public QDialog
{
    Q_OBJECT
public:
    FullScreenDialog();

protected:
    // key: Qt::Key; OK is Qt::Key_Return, whichever key it was. Held keys repeat the first.
    virtual void OnKeyDown(int) {}
    // Of a key that went down here: one that opened the window belongs to what was there before.
    virtual void OnKeyUp(int) {}

    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    // A finger is told when it lifts, as a press of the type QEvent::MouseButtonRelease.
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QSet<int> m_down;
};
