#pragma once
// The clock text. Any thread.
#include "support/host/api.h"
#include "support/text/chString.h"
#include <ctime>

enum { PARSE_STR_MAX = 128 }; // bytes of a format, with its terminator

// Date and time now, as the user wants to see them.
HX_MODULE_API chString GetDateTime();

// In all of these tm_year holds the full year.
// The format's words WWW, DD, MM, MMM, YY and YYYY replaced; what stands between them stays.
chString ParseDateFormat(const char* format, const tm* t);
chString ParseWordFormat(const char* word, const tm* t);
// mode: 0 24 hours, 1 12 hours; empty for any other.
chString ParseTimeFormat(int mode, const tm* t);
// Bytes of the separator that text begins with, 0 for none.
int CalculateSeparator(const char* text);
