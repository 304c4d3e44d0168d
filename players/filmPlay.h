#pragma once
// One play of one film: prepared, sent in real time, paused, shown again from where it is. It starts when the
// receiver says that it is ready, or after a moment without one. Paused before that it shows how it begins,
// without a sound, and plays from its beginning when it is resumed. One thread.
#include "players/busWatch.h"
#include "players/filmStreams.h"
#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <memory>

class filmPlay
{
public:
    enum class END { FINISHED, FAILED };
    struct tagHandlers
    {
        // The streams are known, and the play waits for its receiver. False: nobody to wait for.
        std::function<bool(const PLAYER_STREAMS&)> onReady;
        std::function<void(END)> onEnd; // may end this object
    };

    // isQuiet: its failure is known, and costs no trace line.
    filmPlay(const QByteArray& file, const tagTarget& target, bool isQuiet, const tagHandlers& handlers);
    // Begins to prepare it; all handlers come later.
    void start();
    // The receiver is there: sends, or sends again from the last whole picture when it has sent before.
    void receiverReady();
    // It is being loaded: worth waiting for longer.
    void receiverComes();
    void pause();
    void resume();
    const tagTarget& target() const { return m_target; }
    const PLAYER_STREAMS& description() const { return m_description; }
    bool isPrepared() const { return m_bPrepared; }
    qint64 msSinceStart() const { return m_sinceStart.isValid() ? m_sinceStart.elapsed() : 0; }

private:
    void onEvent(busWatch::EVENT event);
    void prepared();
    void go();
    void end(END how);
    void sendAgain();
    void sendFrom(gint64 position);
    void showBeginning();

    tagTarget m_target;
    tagHandlers m_handlers;
    filmStreams m_streams;
    std::unique_ptr<busWatch> m_watch; // ends before the streams
    PLAYER_STREAMS m_description = {};
    QTimer m_patience;
    QTimer m_beginning;
    QElapsedTimer m_sinceStart;
    QElapsedTimer m_sending;
    bool m_bPrepared = false;
    bool m_bGoing = false;
    bool m_bPaused = false;
    bool m_bBeginning = false; // no more than that has been sent
};
