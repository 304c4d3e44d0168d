#pragma once
// Starts the rich-text engine while nobody uses a phone that shows signage, so that the first text holds
// nothing up: step by step, and not while a person touches it or speaks. User-interface thread.
#include <QObject>
#include <QTimer>

class textWarmUp : public QObject
{
    Q_OBJECT
public:
    // Milliseconds without a touch before the first step, and between two.
    enum : int { IDLE_MS = 5000, STEP_MS = 200 };

    explicit textWarmUp(QObject* parent);

private:
    void plan();
    void step();
    QTimer m_timer;
    bool m_bDone = false;
};
