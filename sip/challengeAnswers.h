#pragma once
// Answers what asks for an account's password, at one handle of the stack. A challenge that comes again says
// that the answer was wrong, unless it says that it came too late.
#include "sip/sipStack.h"
#include <set>
#include <string>

class ChallengeAnswers
{
public:
    // key: of digest::remember(). realm: the only one that is answered; empty for any.
    ChallengeAnswers(std::string key, std::string realm) : m_key(std::move(key)), m_realm(std::move(realm)) {}
    // Whether there was one to answer; the stack sends the request again then.
    bool answer(nua_handle_t* handle, const sip_t* message);
    // The answer was taken.
    void reset();
    // Another server is asked, at another handle.
    void forget();
    // The same is asked once more, and answered elsewhere.
    void countFurther() { ++m_nAnswers; }
    bool hasAnswered() const { return m_nAnswers > 0; }

private:
    const std::string m_key;
    const std::string m_realm;
    std::set<std::string> m_answered;
    std::set<std::string> m_strong; // by the stronger sum: the stack gives no weaker one afterwards
    unsigned m_nAnswers = 0;
};
