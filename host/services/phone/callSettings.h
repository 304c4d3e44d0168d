#pragma once
// What is set for calls, as the pages store it in the user's key file and in those of the lines.
// User-interface thread.
#include "host/services/phone/dialPlan.h"
#include "host/services/phone/tagCall.h"
#include "support/host/phone.h"
#include <optional>

enum FORWARD_WHEN { FORWARD_ALWAYS, FORWARD_BUSY, FORWARD_NO_ANSWER };

struct tagForward
{
    QString strTarget; // as stored; empty: calls are not forwarded
    int nSeconds = 0;  // of ringing, for FORWARD_NO_ANSWER: 1 to 100
};

struct tagHotline
{
    QString strNumber; // empty: there is none
    int nDelay = 0;    // seconds without a key, 0 to 10
};

enum CALL_MODE { CALL_MODE_VOICE = 0, CALL_MODE_VIDEO = 1, CALL_MODE_PSTN = 2 };

struct tagLineCalls
{
    bool bAnonymous = false;
    bool bRejectAnonymous = false;
    QString strAnonymousOn, strAnonymousOff; // codes to dial; empty: none
    QString strRejectOn, strRejectOff;
    int eMode = CALL_MODE_VIDEO;
    tagCallOptions options;
};

class HX_HOST_API callSettings
{
public:
    enum { NO_ANSWER_SECONDS = 20, HOTLINE_SECONDS = 2 }; // where none are stored

    // Reads what is kept.
    callSettings();

    // Read when they are needed: nobody is told when they change.
    static tagForward forward(FORWARD_WHEN when);
    static tagHotline hotline();
    // The seconds of ringing after which the phone answers by itself; the analogue line never does.
    static std::optional<int> autoAnswer(int line);
    // Whether callers of the line who ask to be answered at once are.
    static bool answersWhoAsks(int line);

    // Kept, and read again when their broadcast says so: true for one that does.
    bool readAgain(unsigned int changed);
    // line: 0 to 3; for any other one what holds where nothing is set.
    const tagLineCalls& line(int line) const;
    // What was kept of the line before.
    tagLineCalls readLineAgain(int line);
    // Whether a second call waits on the line, 0 to 3 or PHONE_LINE_PSTN.
    bool isWaiting(int line) const;
    // '#' or '*'; null: no key sends.
    QChar sendKey() const { return m_sendKey; }
    dialPlan& plan() { return m_plan; }

private:
    void readWaiting();
    void readSendKey();

    tagLineCalls m_lines[PHONE_ACCOUNT_COUNT];
    tagLineCalls m_noLine;
    bool m_bWaiting = false;
    bool m_bWaitingPstn = false;
    QChar m_sendKey;
    dialPlan m_plan;
};
