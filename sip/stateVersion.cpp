#include "sip/stateVersion.h"

void StateVersion::reset()
{
    m_bHasAny = false;
    m_bWasOld = false;
}

StateVersion::VERDICT StateVersion::judge(uint32_t version, bool isWhole)
{
    if (!m_bHasAny && !isWhole)
        return VERDICT::LEAVE_AND_ASK;
    // Who begins to count anew means it when he says so twice.
    if (m_bHasAny && version < m_nVersion && !(isWhole && m_bWasOld)) {
        m_bWasOld = isWhole;
        return VERDICT::LEAVE_AND_ASK;
    }
    const bool isGap = !isWhole && version > m_nVersion && version - m_nVersion > 1;
    m_nVersion = version;
    m_bHasAny = true;
    m_bWasOld = false;
    return isGap ? VERDICT::TAKE_AND_ASK : VERDICT::TAKE;
}

bool StateVersion::read(const std::string& text, uint32_t& version)
{
    uint64_t number = 0;
    for (char c : text) {
        if (c < '0' || c > '9' || number > UINT32_MAX)
            return false;
        number = number * 10 + uint64_t(c - '0');
    }
    version = uint32_t(number);
    return !text.empty() && number <= UINT32_MAX;
}
