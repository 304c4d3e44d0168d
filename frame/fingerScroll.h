#pragma once
// A list without a scroll bar under a finger: dragging moves its rows, and a row is touched only by a finger
// that stays on it. User-interface thread.
#include <QObject>

class QAbstractItemView;

class FingerScroll : public QObject
{
    Q_OBJECT
public:
    enum : int { SLACK = 10 }; // pixels that a finger may tremble

    // The view owns it.
    explicit FingerScroll(QAbstractItemView* view);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool drag(int y);

    QAbstractItemView* m_pView;
    int m_nPressed = -1; // where the finger came down; -1: it is not there
    int m_nOffset = 0;   // of the rows, then
    bool m_bDragging = false;
};
