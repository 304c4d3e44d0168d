#pragma once
// The clocks of the test program: the machine's, moved by the test.
namespace kit {

void moveClocks(long long ms);
bool areClocksHeld();
// Held clocks stand still but for moveClocks(): whatever the machine is busy with, a test between two steps
// takes no time that the phone sees. Main thread.
void holdClocks(bool isHeld);

// The clocks run while one of these is there.
class RunningClocks
{
public:
    RunningClocks() : m_bWereHeld(areClocksHeld()) { holdClocks(false); }
    ~RunningClocks() { holdClocks(m_bWereHeld); }
    RunningClocks(const RunningClocks&) = delete;
    RunningClocks& operator=(const RunningClocks&) = delete;

private:
    const bool m_bWereHeld;
};

} // namespace kit
