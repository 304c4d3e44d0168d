#pragma once
// The zone that the page of date and time has stored, with its rules for summer time. A zone that the table
// knows has the rules of the system's time-zone data; another one that begins with its hours has these all
// year; where none is stored, the machine's zone holds. Any thread.

// Local time of a moment of UTC, and the other way. Both in seconds, local ones as for chTime(long). A local
// time that summer time leaves out, or has twice, becomes a moment near to it.
long zoneLocalOf(long utc);
long zoneUtcOf(long local);
// Seconds that summer time adds to the hours that are stored with the zone.
long zoneSummerSeconds(long utc);
