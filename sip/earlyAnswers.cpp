#include "sip/earlyAnswers.h"
#include <algorithm>

void EarlyAnswers::take(const std::string& branch, const std::string& sdp)
{
    const auto isSame = [&](const auto& each) { return each.first == branch; };
    m_said.erase(std::remove_if(m_said.begin(), m_said.end(), isSame), m_said.end());
    m_said.emplace_back(branch, sdp);
    if (m_said.size() > MAX)
        m_said.pop_front();
}

std::string EarlyAnswers::of(const std::string& branch) const
{
    for (auto each = m_said.rbegin(); each != m_said.rend(); ++each) {
        if (each->first == branch || each->first.empty() || branch.empty())
            return each->second;
    }
    return "";
}
