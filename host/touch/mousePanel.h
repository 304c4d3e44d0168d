#pragma once
// The mouse of a desk as the finger on the simulated touch panel, so that a person can try what reads the raw
// device. The panel lies a little crooked on the screen. User-interface thread.
#include "support/host/api.h"
#include <QObject>
#include <QPoint>
#include <QTimer>

class HX_HOST_API MousePanel : public QObject
{
    Q_OBJECT
public:
    // From now on; ends with parent. False where there can be no panel.
    static bool start(QObject* parent);
    // Where the panel is touched for a place of the screen.
    static QPoint toPanel(const QPoint& screen);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit MousePanel(QObject* parent);
    void report();

    QTimer m_timer; // a finger that rests is reported again and again
    QPoint m_finger;
    int m_nReports = 0;
};
