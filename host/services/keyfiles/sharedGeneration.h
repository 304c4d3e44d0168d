#pragma once
// A number in "/rundata/run/registry.gen" that every process of the phone maps: each write of a key file
// counts it up, so that a reader in any of them learns of the write at its next read, for the price of
// looking at memory. Its owner guards it.
#include "host/services/keyfiles/mappedNumber.h"

class sharedGeneration
{
public:
    // Maps the number of the device root in force. nowMs: the monotonic clock; a number that could not be
    // mapped is tried again after a while.
    void Follow(unsigned rootNumber, uint64_t nowMs);
    // False while writes of other processes cannot be seen through it.
    bool IsShared() const { return m_number.IsMapped(); }
    uint64_t Value() const { return IsShared() ? m_number.Value() : m_own.load(); }
    void CountUp();

private:
    void Map();

    mappedNumber m_number;
    std::atomic<uint64_t> m_own{0}; // stands in while there is no shared one
    unsigned m_nRoot = 0;
    uint64_t m_nTriedAt = 0;
};
