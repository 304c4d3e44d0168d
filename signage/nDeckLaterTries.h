#pragma once
// Files that were given up are asked for again: after a minute, then after two, four and so on, up to an
// hour. User-interface thread.
#include "signage/displayFrame.h"
#include "support/host/message.h"
#include <functional>
#include <string>
#include <unordered_map>

class nDeckLaterTries : public chMsgProcesser
{
public:
    enum : int {
        TICK_MS = 5000,
        FIRST_PAUSE = 60000 / TICK_MS, // in ticks
        LONGEST_PAUSE = 64 * FIRST_PAUSE
    };
    using AskCall = std::function<void(const _nDeckFileNode& wanted)>;

    explicit nDeckLaterTries(AskCall ask);
    // It was given up; the same content once more: after twice the time.
    void Add(const _nDeckFileNode& wanted);
    void Forget(const chString& name);
    // Forgets what is not among the contents of a frame.
    void KeepOnly(const nDeckNameSet& contents);
    bool IsEmpty() const { return m_files.empty(); }

private:
    struct tagFile
    {
        _nDeckFileNode wanted;
        int nPause = 0; // ticks
        int nLeft = 0;  // of them; 0: it was asked for
    };
    int OnTick(msgObject& msg);

    AskCall m_ask;
    std::unordered_map<std::string, tagFile> m_files; // by bare name
    chThreadTimer m_timer;
    bool m_bTicking = false;
};
