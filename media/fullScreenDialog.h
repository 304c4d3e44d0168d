#pragma once
// What the players and savers over the whole screen share: they are black, and deleted when they close.
// User-interface thread.
#include <QDialog>
#include <QSet>

class FullScreenDialog : public QDialog
{
    Q_OBJECT
public:
    FullScreenDialog();
    // Gives up what it plays with, and closes.
    virtual void Destruct() { close(); }

protected:
    // key: Qt::Key; OK is Qt::Key_Return, whichever key it was. Held keys repeat the first.
    virtual void OnKeyDown(int) {}
    // Of a key that went down here: one that opened the window belongs to what was there before.
    virtual void OnKeyUp(int) {}
    // The keys that mean nothing else to a show: F12 does nothing, F4 ends it when it comes up, any other at
    // once.
    void EndShowByKeyDown(int key);
    void EndShowByKeyUp(int key);

    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    // A finger is told when it lifts, as a press of the type QEvent::MouseButtonRelease.
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QSet<int> m_down;
};
