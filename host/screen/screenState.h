#pragma once
// What the home screen asks: how long nobody has touched the phone, whether a page suspends the screen saver,
// whether backlight and message lamp are lit. User-interface thread.
#include "support/host/screen.h"
#include <QElapsedTimer>
#include <QObject>
#include <QSet>

class screenState : public QObject
{
    Q_OBJECT
public:
    // The one record; lives until the process ends.
    static screenState& instance();

    // Milliseconds since the last touch or key, or since the idle count was restarted. 0 while a page
    // suspends the saver: the time starts anew when it lets go.
    qint64 idleMs() const;
    void restartIdle();
    // A person used the phone.
    void touch();
    // As if nobody had touched the phone for so long, in milliseconds.
    void setIdle(qint64 ms);
    bool isSaverSuspended() const { return !m_suspending.isEmpty(); }
    bool isLampLit() const { return m_bMessagesWait || !m_lampReasons.isEmpty(); }

    bool isBacklightOn() const { return m_bBacklight; }
    void setBacklight(bool on);

    void suspendSaver(SCREEN_SAVERS client);
    void resumeSaver(SCREEN_SAVERS client);
    void setMessagesWait(bool wait); // in a voice mail box
    void lightLamp(SIGNAL_LAMP reason);
    void darkenLamp(SIGNAL_LAMP reason);

signals:
    void saverSuspended(bool suspended);
    void lampChanged(bool lit);
    // A touch or a key, before whatever it does; awake() follows.
    void touched();
    // A touch or a key, or a restart of the idle count.
    void awake();

private:
    screenState();
    QElapsedTimer m_idle;
    qint64 m_nHeadStart = 0; // milliseconds
    bool m_bBacklight = true;
    QSet<int> m_suspending;
    bool m_bMessagesWait = false;
    QSet<int> m_lampReasons;
};
