#pragma once
// The calls of the past, in "/rundata/data/callHistory.xml": <CallHistory> with a <Call number name line
// direction start utc missed seconds silent> for each, the newest first. line: 1 to 4, 5 for the analogue
// one, 0 for none; direction: "out" or "in"; start: "YYYY-MM-DD hh:mm:ss", local time of the zone of that
// day; utc: the same moment in seconds since 1970, by which a page tells it in another zone; missed: "1" when
// nobody here heard of it; silent: "1" when it came in and did not even ring. Of such calls, which anybody
// can make as often as he likes, few have a place, so that the others stay. The files are written on a task
// thread.
#include "host/services/phone/tagCall.h"
#include "support/host/api.h"
#include <functional>

enum {
    CALL_HISTORY_MAX = 100,
    CALL_HISTORY_SILENT_MAX = 25,
    CALL_HISTORY_SILENT_OF_ONE_MAX = 5, // of one caller on one line
    CALL_HISTORY_AGAIN_MS = 10000
};

// User-interface thread. Returns at once. What cannot be written is tried again, also with the next call.
HX_HOST_API void callHistoryAdd(const tagCall& call);
// tell: calls cannot be written; false when the user could not be told of it now, and is to be later. Not
// called again before calls could be written. againMs: until they are tried again. User-interface thread.
HX_HOST_API void callHistoryOnFault(std::function<bool()> tell, int againMs = CALL_HISTORY_AGAIN_MS);
// At the end of the phone: waits for whoever writes, and tries once more what could not be written. 0 when
// calls are lost, which the log tells.
HX_HOST_API int callHistoryFinish();
// Forgets all calls, those too that are on their way into the file. 0 when the file cannot be written.
HX_HOST_API int callHistoryClear();
