#include "support/text/nuxError.h"

#include <atomic>
#include <cstdio>

namespace {

std::atomic<nuxErrorSink> g_sink{nullptr};

} // namespace

void nuxErrorMessage(bool condition, const char* sourceFile, int line, const char* text)
{
    if (condition)
        return;
    char message[512];
    snprintf(message, sizeof(message), "%s:%d: %s", sourceFile ? sourceFile : "", line, text ? text : "");
    if (nuxErrorSink sink = g_sink.load())
        sink(message);
    else
        fprintf(stderr, "%s\n", message);
}

void nuxSetErrorSink(nuxErrorSink sink)
{
    g_sink.store(sink);
}
