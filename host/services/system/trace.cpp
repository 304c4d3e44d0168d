#include "support/host/trace.h"
#include "host/services/system/hostLog.h"
#include "support/file/keepAside.h"
#include <QString>
#include <cstdarg>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace {

// Details go to the standard error stream only where somebody asked for them.
bool isPrinted(int level)
{
    static const bool everything = getenv("HX_TRACE") != nullptr;
    return everything || level >= TRACE_NOTE;
}

// One call of the system, so that the lines of threads and processes do not mix.
void printLine(const char* text, size_t length)
{
    const std::string line = std::string(text, length) + '\n';
    size_t done = 0;
    while (done < line.size()) {
        const ssize_t count = write(STDERR_FILENO, line.data() + done, line.size() - done);
        if (count <= 0)
            return;
        done += static_cast<size_t>(count);
    }
}

void traceLine(int level, const chString& text)
{
    int length = text.GetLength();
    while (length > 0 && (text.GetText()[length - 1] == '\n' || text.GetText()[length - 1] == '\r'))
        --length;
    hostLog("trace", QString::fromUtf8(text.GetText(), length));
    if (isPrinted(level))
        printLine(text.GetText(), static_cast<size_t>(length));
}

chString formatted(const char* format, va_list arguments)
{
    chString text;
    va_list copy;
    va_copy(copy, arguments);
    text.FormatV(format ? format : "", &copy);
    va_end(copy);
    return text;
}

void traceNote(const char* line)
{
    traceLine(TRACE_NOTE, line);
}

// Broken contracts and kept files are told in the phone's log as well.
const bool g_isSink = [] {
    nuxSetErrorSink(traceNote);
    fileSetReportSink(traceNote);
    return true;
}();

} // namespace

void nuxTrace(int level, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    traceLine(level, formatted(format, arguments));
    va_end(arguments);
}

chTraceStack::chTraceStack(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    m_strScope = formatted(format, arguments);
    va_end(arguments);
    traceLine(TRACE_DETAIL, "enter " + m_strScope);
}

chTraceStack::~chTraceStack()
{
    traceLine(TRACE_DETAIL, "leave " + m_strScope);
}
