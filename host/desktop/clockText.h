#pragma once
// The time of day as a person has chosen to read it. User-interface thread.
#include <QString>

class chTime;

// Or one of twenty-four.
bool clockHasTwelveHours();
// "2:05" of five past two in the afternoon, and what stands around it in the present language, "%1 PM".
QString clockTwelveHours(const chTime& now);
QString clockHalfOfDay(const chTime& now);
// "14:05", or "2:05 PM" in the present language.
QString clockText(long localSeconds);
