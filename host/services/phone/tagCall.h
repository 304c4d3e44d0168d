#pragma once
// One call, as the phone service reports it.
#include "support/host/api.h"
#include <QString>
#include <QStringList>

enum : int { PHONE_LINE_PSTN = 4 }; // the analogue line, behind those of the accounts

enum CALL_STATE { CALL_RINGING = 0, CALL_TALKING = 1, CALL_ENDED = 2 };

enum CALL_END {
    CALL_NOT_ENDED,
    CALL_HUNG_UP,   // by either side, after they talked or while it went out
    CALL_MISSED,    // it came in, and the caller gave up
    CALL_DECLINED,  // by the user
    CALL_BUSY,      // it came in while no other call could
    CALL_DISTURBED, // refused by do-not-disturb
    CALL_REJECTED,  // refused since the caller is anonymous
    CALL_FORWARDED, // to strTarget
    CALL_TRANSFERRED,
    CALL_FAILED, // strReason tells why
    CALL_UNFIT   // refused since what the caller offers cannot be talked here
};

// What goes along with a call from this side.
struct tagCallOptions
{
    bool bAnonymous = false; // the own number is kept back
    bool bVideo = false;
    bool bCamera = false; // shows the own picture
    bool bMicrophone = true;
    int nBandwidth = 0;   // kbit/s of video; 0: what the network bears
    int nFrameRate = 30;  // pictures a second
    bool bByHand = false; // the user has made it: one that follows another has come by itself
};

// What goes over the wire of a call; all as here where nobody knows.
struct tagCallStreams
{
    QString strSound;         // name of the codec for a person, "Opus"; empty: no sound
    QString strPicture;       // "H.264"; empty: no picture
    int nQuality = -1;        // of what is received, 0 (bad) to 4 (as good as it gets); -1: not known
    bool bEncrypted = false;  // all of it
    bool bOtherHolds = false; // by its description the other side wants to hear nothing
    int nOwnPicture = -1;     // 1: the user's own picture goes out, 0: none does; -1: not known
    int nOtherPicture = -1;   // the same of those that are to come from the other side
    bool operator==(const tagCallStreams& other) const
    {
        return strSound == other.strSound && strPicture == other.strPicture && nQuality == other.nQuality &&
               bEncrypted == other.bEncrypted && bOtherHolds == other.bOtherHolds &&
               nOwnPicture == other.nOwnPicture && nOtherPicture == other.nOtherPicture;
    }
};

struct tagCall
{
    int nId = 0; // from 1, never given again
    QString strNumber;
    QString strName;    // empty when it is not known
    QString strPicture; // address of the caller's picture at the line's own server; empty: none is known
    int nAccount = -1;  // 0 to 3, or PHONE_LINE_PSTN
    bool bIncoming = false;
    bool bAnonymous = false;  // the caller, or the user, keeps the number back
    QStringList forwardedBy;  // numbers whose phones have sent it on, the last one last
    QString strReached;       // one that goes out: where they have sent it; empty: it is with strNumber
    bool bRingsThere = false; // one that goes out: the other side's phone says so
    bool bAsksAnswer = false; // the caller asks to be answered without a hand
    bool bUnfit = false;      // what the caller offers cannot be talked here: nobody could answer it
    bool bRang = false;       // one that came in: a person here could hear of it
    bool bVideo = false;      // both sides want it
    tagCallOptions options;   // of this side
    bool bHeld = false;       // by the user
    bool bRemoteHeld = false; // by the other side
    bool bMuted = false;      // the other side does not hear the user
    // What this side wants of it (the call, a hold, its end, pictures) has had no answer for a while.
    bool bUnheard = false;
    QString strTones; // sent in this call
    int nJoined = 0;  // id of the call whose other side talks with this one and the user; 0: none
    tagCallStreams streams;
    CALL_STATE eState = CALL_RINGING;
    CALL_END eEnd = CALL_NOT_ENDED;
    QString strTarget;   // of a call that was forwarded or transferred
    long nStartTime = 0; // of dialling, as netGetLocalTime()
    int nSeconds = 0;    // of talking
    // Why it failed, or who else has answered it; of a call that talks, for a moment, what could not be done.
    // For a person, in English.
    QString strReason;
};

// Nobody here has heard of the caller: he gave up, or was turned away without a ring.
HX_HOST_API bool callIsMissed(const tagCall& call);
// Whose phone it is with.
HX_HOST_API const QString& callReached(const tagCall& call);
// One goes out to where the other comes from.
bool callIsMutual(const tagCall& one, const tagCall& other);
// For whoever tells of a new call. User-interface thread.
HX_HOST_API int callNewId();
// One that begins now.
tagCall callNew(const QString& number, int account);
