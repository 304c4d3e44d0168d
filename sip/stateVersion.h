#pragma once
// Documents of a subscription are numbered. Those that tell a part of the state are of use only upon the one
// before; what is older than what is known is left.
#include <cstdint>
#include <string>

class StateVersion
{
public:
    enum class VERDICT { TAKE, TAKE_AND_ASK, LEAVE_AND_ASK }; // ask: for the whole state

    VERDICT judge(uint32_t version, bool isWhole);
    // The next one is to be a whole one, of any number.
    void reset();
    // False for what is no number of a document.
    static bool read(const std::string& text, uint32_t& version);

private:
    uint32_t m_nVersion = 0;
    bool m_bHasAny = false;
    bool m_bWasOld = false; // the last one
};
