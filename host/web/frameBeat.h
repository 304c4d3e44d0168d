#pragma once
// The beat on which the engine's frames are painted, one for all texts, so that one turn of the thread paints
// them all. The engine makes a frame as soon as the last one was taken; how many it makes is decided here.
// No timer runs while no frame waits. User-interface thread.
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QQuickWidget>
#include <QTimer>
#include <vector>

class frameBeat : public QObject
{
    Q_OBJECT
public:
    // Milliseconds from frame to frame. A frame that is late by a little is still less than 17 ms after the
    // one before.
    static constexpr int PERIOD = 12;

    static frameBeat& instance();
    // Of a widget that the engine draws into: it takes the engine's frame at a timer event, which comes
    // through here from now on. The widget stays its owner's.
    void pace(QQuickWidget* drawing);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Waiting
    {
        QPointer<QQuickWidget> drawing;
        int timer;
    };
    frameBeat();
    void wait(QQuickWidget* drawing, int timer);
    static void take(const Waiting& frame);
    void beat();
    std::vector<Waiting> m_waiting;
    QElapsedTimer m_clock;
    qint64 m_nDue = 0; // of the last beat, by the clock, in nanoseconds
    QTimer m_timer;
    bool m_bBeats = false;
};
