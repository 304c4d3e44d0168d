#pragma once
// A number in a file that several processes map. A file that somebody cuts short while it is mapped would
// end the process with a bus error at the next look; here memory of our own takes the place of the page that
// is gone, and IsLost() tells. Its owner guards it.
#include <atomic>
#include <cstdint>

class mappedNumber
{
public:
    mappedNumber() = default;
    ~mappedNumber() { Unmap(); }
    mappedNumber(const mappedNumber&) = delete;
    mappedNumber& operator=(const mappedNumber&) = delete;

    // fd: of a plain file, which is made large enough; it may be closed afterwards. False when it cannot be
    // mapped.
    bool Map(int fd);
    void Unmap();
    bool IsMapped() const { return m_pNumber != nullptr; }
    bool IsLost() const;
    uint64_t Value() const { return m_pNumber->load(std::memory_order_acquire); }
    void CountUp() { m_pNumber->fetch_add(1, std::memory_order_acq_rel); }

private:
    std::atomic<uint64_t>* m_pNumber = nullptr;
    int m_nPlace = -1; // in the table of mapped pages
};
