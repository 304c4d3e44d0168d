#pragma once
// What those have said of media who may still answer a call from here: one number may ring at several phones,
// and each speaks for itself alone.
#include <deque>
#include <string>
#include <utility>

class EarlyAnswers
{
public:
    enum : size_t { MAX = 8 }; // of whom it is kept; the newest

    void take(const std::string& branch, const std::string& sdp);
    // What the branch has said; empty for nothing. Who had no name may be anybody.
    std::string of(const std::string& branch) const;
    bool isEmpty() const { return m_said.empty(); }
    void forget() { m_said.clear(); }

private:
    std::deque<std::pair<std::string, std::string>> m_said;
};
