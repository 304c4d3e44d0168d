#pragma once
// A file that cannot be understood is not thrown away: it is kept beside its place as "<name>.bad",
// "<name>.bad.1", ... Never more than FILE_KEPT_LIMIT of one file, the oldest goes first; no kept file
// is ever overwritten. Paths are device paths. Any thread.
#include "support/text/chString.h"
#include "support/text/nuxExport.h"

enum { FILE_KEPT_LIMIT = 8 };

// Moves the file away and reports it. 0 when there is no such file or it cannot be moved.
NUX_API int fileKeepAside(const char* path);
// Keeps it under the new name too, and leaves it in its place for a save to replace. kept is the
// device path of the new name. 0 as above.
NUX_API int fileCopyAside(const char* path, chString& kept);

// Takes the line that tells of a kept file; null brings back the default, which logs it.
using fileReportSink = void (*)(const char* text);
NUX_API void fileSetReportSink(fileReportSink sink);
// Hands a line to the sink.
NUX_API void fileReport(const char* text);
