#pragma once
// One call, as the phone service reports it.
#include <QString>

enum : int { PHONE_LINE_PSTN = 4 }; // the analogue line, behind those of the accounts

enum CALL_STATE { CALL_RINGING = 0, CALL_TALKING = 1, CALL_ENDED = 2 };

struct tagCall
{
    int nId = 0; // from 1, never given again
    QString strNumber;
    QString strName;   // empty when it is not known
    int nAccount = -1; // 0 to 3, or PHONE_LINE_PSTN
    bool bIncoming = false;
    CALL_STATE eState = CALL_RINGING;
    long nStartTime = 0; // of dialling, as netGetLocalTime()
    int nSeconds = 0;    // of talking
    QString strReason;   // why it failed, for a person, in English; empty for a call that was hung up
};
