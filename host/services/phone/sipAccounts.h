#pragma once
// The lines that the SIP user agent registers: it is told the accounts, and tells what becomes of them.
// User-interface thread.
#include "host/services/phone/accountFiles.h"
#include "sip/sipRecords.h"
#include <functional>

static_assert(int(SIP_LINE_COUNT) == int(PHONE_ACCOUNT_COUNT), "the agent has the phone's lines");

class sipAccounts
{
public:
    // tell: to the agent, which may be absent; changed: told the index of each account that changed.
    sipAccounts(std::function<void(const tagSipAccount&)> tell, std::function<void(int)> changed);

    // Reads the files. An account whose settings are as before keeps its registration.
    void readFiles();
    void agentIsThere();
    void agentIsGone();
    void take(const tagSipLine& line);
    void takeMessages(const tagSipMessages& messages);
    void takeStun(const tagSipStun& stun);

    // Some line is to be registered.
    bool hasAny() const;
    const tagAccountFile& file(int index) const { return m_lines[index].file; }
    tagAccountInfo info(int index) const;
    // -1 when none is registered.
    int defaultAccount() const;
    bool isRegistered(int index) const;
    // Why no call goes out there, for a person, in English; -1: where none is registered.
    const char* whyNot(int index) const;

private:
    struct tagLine
    {
        tagAccountFile file;
        LINE_STATE eState = LINE_DISABLED;
        const char* szWhyNot = nullptr; // what the last try came to; null: nobody knows
        bool bStunSilent = false;       // its STUN server does not answer
        int nNewMessages = 0;
        int nOldMessages = 0;
    };

    void tellAgent(int index);
    LINE_STATE restingState(int index) const;
    LINE_STATE stateOf(int index) const;

    std::function<void(const tagSipAccount&)> m_tell;
    accountTeller m_teller;
    tagLine m_lines[PHONE_ACCOUNT_COUNT];
    bool m_bAgentFailed = false; // the last one is gone, and there is no other
};
