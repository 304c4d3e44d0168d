#pragma once
// The clocks of the test program: the machine's, moved by the test.
#include <functional>

namespace kit {

void moveClocks(long long ms);
bool areClocksHeld();
// Held clocks stand still but for moveClocks(): whatever the machine is busy with, a test between two steps
// takes no time that the phone sees. Main thread.
void holdClocks(bool isHeld);
// As waitUntil(), by the machine's own time: where the clocks are held they stay so, and no time goes by that
// the phone sees.
bool waitUntilHeld(const std::function<bool()>& condition, int ms = 20000);

// As they were, when it goes.
class KeptClocks
{
public:
    explicit KeptClocks(bool isHeld) : m_bWereHeld(areClocksHeld()) { holdClocks(isHeld); }
    ~KeptClocks() { holdClocks(m_bWereHeld); }
    KeptClocks(const KeptClocks&) = delete;
    KeptClocks& operator=(const KeptClocks&) = delete;

private:
    const bool m_bWereHeld;
};

// The clocks run while one of these is there.
class RunningClocks : public KeptClocks
{
public:
    RunningClocks() : KeptClocks(false) {}
};

// They are held while one of these is there.
class HeldClocks : public KeptClocks
{
public:
    HeldClocks() : KeptClocks(true) {}
};

} // namespace kit
