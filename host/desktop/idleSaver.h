#pragma once
// What becomes of a phone that nobody uses: the screen saver after its time, a dark screen after another. Any
// touch, key or call ends both. Where signage is enabled it is the saver (idleShow), and dark it gets all the
// same. User-interface thread.
#include "support/host/message.h"
#include <QObject>
#include <QPointer>
#include <QTimer>

class QWidget;

class idleSaver : public QObject, public chMsgProcesser
{
    Q_OBJECT
public:
    enum STATE { AWAKE, SAVER, ASLEEP };
    enum : int {
        RETRY_MS = 5000,  // while something on the screen keeps it off
        AGAIN_MS = 60000, // after a saver that had nothing to show, or gave way
    };

    explicit idleSaver(QObject* parent);
    ~idleSaver() override;
    STATE state() const { return m_eState; }
    // Changed settings, and storages while a saver plays.
    int TryThreadMessage(msgObject& msg) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

    // Milliseconds without a touch until the saver, by its setting; 0: never.
    static qint64 saverMs();

private:
    void onAwake();
    void onTime();
    void onWindows();
    void onSettings();
    void onCall();
    void onStorageGone();
    void plan();
    bool trySleep();
    bool trySaver();
    void startSaver();
    void end();
    void endSaver();
    void endSleep();
    void swallowHeldKey(bool on);
    // The window that the entry brings up; null when it brings up none.
    template <class Entry>
    static QWidget* broughtUpBy(Entry entry);

    QTimer m_timer;
    STATE m_eState = AWAKE;
    bool m_bFilms = false;       // the saver that plays, or played last
    QPointer<QWidget> m_pWindow; // of the saver, or the dark one
    qint64 m_nNotBefore = 0;     // milliseconds of idle time until which no saver is tried
    int m_nCallListener;
    bool m_bSwallowsKey = false;
};
