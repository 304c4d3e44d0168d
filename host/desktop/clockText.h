#pragma once
// The time of day as a person has chosen to read it. User-interface thread.
#include <QString>

// Or one of twenty-four.
bool clockHasTwelveHours();
// "14:05", or "2:05 PM" in the present language.
QString clockText(long localSeconds);
