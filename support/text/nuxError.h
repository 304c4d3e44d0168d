#pragma once

#include "support/text/nuxExport.h"

// Receives one line without a line end. It may be called on any thread.
using nuxErrorSink = void (*)(const char* line);

// Reports a broken contract when `condition` is false, and returns either way: the program goes on.
NUX_API void nuxErrorMessage(bool condition, const char* sourceFile, int line, const char* text);

// Where the reports go; null stands for the standard error output, which is the default.
NUX_API void nuxSetErrorSink(nuxErrorSink sink);

// The value of `condition`, reported when it is false.
inline bool nuxAssertThat(bool condition, const char* sourceFile, int line, const char* text)
{
    if (__builtin_expect(!condition, 0))
        nuxErrorMessage(condition, sourceFile, line, text);
    return condition;
}

#define NUX_ASSERT(condition, text) nuxAssertThat((condition), __FILE__, __LINE__, (text))
