#pragma once
// The phone's log. Any thread. Lines go to the standard error stream, and to the ring that the
// control interface reads.
#include "support/host/api.h"
#include "support/text/chString.h"
#include "support/text/nuxError.h"

enum { TRACE_DETAIL = 2, TRACE_NOTE = 3 };

// level: TRACE_DETAIL or TRACE_NOTE; a printf-style format in UTF-8. A line end is added.
HX_HOST_API void nuxTrace(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Logs the entry into a scope, and the exit from it, at level TRACE_DETAIL.
class HX_HOST_API chTraceStack
{
public:
    explicit chTraceStack(const char* format, ...) __attribute__((format(printf, 2, 3)));
    ~chTraceStack();
    chTraceStack(const chTraceStack&) = delete;
    chTraceStack& operator=(const chTraceStack&) = delete;

private:
    chString m_strScope;
};
