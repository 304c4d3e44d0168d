#pragma once
// Memory that the stack's own functions make their results in; it goes at the end of a block.
#include <sofia-sip/su_alloc.h>

class StackMemory
{
public:
    StackMemory() { su_home_init(m_home); }
    ~StackMemory() { su_home_deinit(m_home); }
    StackMemory(const StackMemory&) = delete;
    StackMemory& operator=(const StackMemory&) = delete;

    su_home_t* home() { return m_home; }

private:
    su_home_t m_home[1] = {SU_HOME_INIT(m_home)};
};
