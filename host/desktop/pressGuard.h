#pragma once
// Keeps a press that was meant for what stood on the screen a moment ago from doing what stands there now:
// who presses Decline as the caller gives up does not end another call. How long that takes says
// "nPressGuard" in section "CALL" of the system's settings: milliseconds, 0 to MOST_MS; SETTLE_MS where it
// says nothing. User-interface thread.
#include <QTimer>

class pressGuard
{
public:
    enum { SETTLE_MS = 700, MOST_MS = 2000 };
    enum KIND {
        ANSWERED,     // the same call: its end can be meant
        DIALLED,      // another one, by the user: the same
        AFTER_A_CALL, // the one that had ended: what left it was not meant for the next
        OTHER_CALL    // nothing that is pressed was meant for it
    };

    pressGuard();
    // What presses do has changed.
    void changed(KIND kind);
    // Whether a press that comes now counts. One that does not begins the moment anew, as who is impatient
    // goes on pressing; after MOST_MS it counts all the same.
    bool takes(bool isEnd = false);

private:
    KIND m_eKind = ANSWERED;
    QTimer m_settle; // runs while presses are in vain
    QTimer m_most;
};
