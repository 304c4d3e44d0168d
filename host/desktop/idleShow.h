#pragma once
// Signage on a phone that nobody uses: first in a corner of the home screen, then, where it is the screen
// saver, over the whole screen. Any touch or key ends it. Never during a call, over a page, or while a page
// holds the screen saver off. User-interface thread.
#include "host/desktop/displayPlace.h"
#include <QObject>
#include <QTimer>

class idleShow : public QObject
{
    Q_OBJECT
public:
    enum STATE { AWAY, CORNER, FULL };
    // Milliseconds without a touch. The second is for a phone without a screen saver time of its own.
    enum : int { CORNER_MS = 20000, FULL_MS = 60000, RETRY_MS = 5000 };

    explicit idleShow(QWidget* home);
    STATE state() const { return m_eState; }
    const displayPlace& corner() const { return m_corner; }
    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    void changed();

private:
    void plan();
    void onTime();
    void onTouch();
    void onHomeLeft();
    void onHomeActive();
    bool showNext();
    bool showCorner();
    bool showFull();
    void endCorner();
    bool mayShow() const;
    // When the next state is due, in milliseconds of idle time; -1: never.
    static int fullMs();
    int dueMs() const;

    QWidget* m_pHome;
    displayPlace m_corner;
    displayPlace m_full;
    QTimer m_timer;
    STATE m_eState = AWAY;
};
