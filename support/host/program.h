#pragma once
// Programs of the phone that are started without a shell: no name that came from outside is ever taken for a
// command.
#include "support/host/api.h"
#include <atomic>
#include <string>
#include <vector>

enum : int { PROGRAM_NOT_STARTED = -1, PROGRAM_KILLED = -2 };

struct tagProgram
{
    std::string strPath;                        // device path
    std::vector<std::string> lstArguments;      // as they are
    std::vector<std::string> lstVariables;      // "NAME=value", beside the phone's own; HX_SYSROOT is set
    int nTimeoutMs = 0;                         // after which it is killed; at least 1
    const std::atomic<bool>* pCancel = nullptr; // kills it when another thread sets it; null for never
};

// Runs it and waits; not on the user-interface thread. Its exit status; PROGRAM_NOT_STARTED; PROGRAM_KILLED
// when it did not end by itself.
HX_HOST_API int sysProgram(const tagProgram& program);
