#pragma once

#include "support/text/nuxExport.h"

// `args` of these functions points to a va_list, which is left as it was. A va_list that came in as a
// parameter has to be copied with va_copy before its address is taken.

// The widest field, and the most digits, that a conversion may ask for; more is cut to this.
constexpr int chFormatFieldLimit = 65536;

// What the measuring pass found out about a format and its arguments.
struct chFormatSurvey
{
    int nEstimate;    // bytes the text is given, without the terminator
    bool bDecimals;   // it has floating-point numbers
    bool bReadsRange; // a text argument, or the format, lies in the range that was asked about
};

// Measures without printing. Two pointers give the range of memory for bReadsRange, null for none.
NUX_API chFormatSurvey chSurveyFormat(const char* fmt, void* args, const char* rangeBegin,
                                      const char* rangeEnd);

// Prints what was surveyed into at most `size` bytes with the terminator. Returns the bytes that the
// whole text needs, which is `size` or more when it was cut; it is cut between letters.
NUX_API int chPrintSurveyed(char* buffer, int size, const char* fmt, void* args,
                            const chFormatSurvey& survey);

// The bounded formatter: prints like printf, with "I64" for 64-bit integers and the decimal point
// always ".". Never writes more than `size` bytes, nor anything through "%n". Returns the bytes in
// the buffer, without the terminator.
NUX_API int chVsprintf(char* buffer, int size, const char* fmt, void* args);
