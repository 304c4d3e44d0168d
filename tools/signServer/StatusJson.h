#pragma once
// The report for a program that watches the displays.
#include "tools/signServer/StatusReport.h"

QByteArray StatusJson(const StatusReport& report);
// "late", "refused", "incomplete" or "in step".
const char* StandingName(Standing standing);
