#pragma once
// A number in "/rundata/run/registry.gen" that every process of the phone maps: each write of a key file
// counts it up, so that a reader in any of them learns of the write at its next read, for the price of
// looking at memory. Its owner guards it.
#include <atomic>
#include <cstdint>

class sharedGeneration
{
public:
    sharedGeneration() = default;
    ~sharedGeneration();
    sharedGeneration(const sharedGeneration&) = delete;
    sharedGeneration& operator=(const sharedGeneration&) = delete;

    // Maps the number of the device root in force. nowMs: the monotonic clock; a number that could not be
    // mapped is tried again after a while.
    void Follow(unsigned rootNumber, uint64_t nowMs);
    // False while writes of other processes cannot be seen through it.
    bool IsShared() const { return m_pShared != nullptr; }
    uint64_t Value() const { return m_pShared ? m_pShared->load(std::memory_order_acquire) : m_own.load(); }
    void CountUp();

private:
    void Map();
    void Unmap();

    std::atomic<uint64_t>* m_pShared = nullptr;
    std::atomic<uint64_t> m_own{0}; // stands in while there is no shared one
    unsigned m_nRoot = 0;
    uint64_t m_nTriedAt = 0;
};
