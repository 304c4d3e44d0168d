#pragma once
// The time window of a layout. User-interface thread.
#include "support/host/clock.h"
#include "support/text/chString.h"

// "%d-%d-%d %d:%d:%d"; fields that are not there are 0.
chTime str2Time(const char* text);
// Both ends belong to the window.
bool IsScheduleValid(const chTime& from, const chTime& to);
bool IsSchedulePassed(const chTime& to);
// The times of a layout as local times: those of "sametime" are UTC.
void scheduleWindow(const chString& fromdt, const chString& todt, const chString& eventType, chTime& from,
                    chTime& to);
