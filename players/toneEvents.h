#pragma once
// Tones within the sound (RFC 4733): what goes out instead of sound while one lasts. One after the other, a
// pause between. One thread.
#include <QByteArray>
#include <QList>

class toneEvents
{
public:
    enum : int { MAX_WAITING = 64, LEAST_MS = 40, MOST_MS = 5000, PAUSE_MS = 60, CONTENT_BYTES = 4 };
    // The number of one of "0123456789*#ABCD"; -1: it is none.
    static int codeOf(char tone);
    // False when it is none, or too many wait.
    bool add(char tone, int ms);
    void clear();
    // A tone sounds, or the pause after one lasts.
    bool isBusy() const { return !m_waiting.isEmpty() || m_nPauseMs > 0; }

    struct tagEvent
    {
        unsigned char content[CONTENT_BYTES];
        bool bFirst; // of its tone: the packet is marked, and its time is that of all of the tone
    };
    // What to send now, which is some ms after the call before; clock: of the tones, Hz. Empty in a pause.
    QList<tagEvent> next(int ms, int clock);

private:
    struct tagTone
    {
        int nCode;
        int nMs;
    };
    QList<tagTone> m_waiting; // the first one sounds
    int m_nDoneMs = 0;
    int m_nPauseMs = 0;
};
