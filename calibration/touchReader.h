#pragma once
// The raw touch device: positions as the panel reports them, before anything maps them to the screen. One
// thread at a time, the same for all devices: what was seen last is kept from call to call, for all of them
// together.
#include "calibration/touchTypes.h"
#include "support/host/api.h"

// The module that reads the device itself.
HX_MODULE_API extern ts_module __ts_raw;
// For those who look at them from outside; nothing here does.
HX_MODULE_API extern int hack_x;
HX_MODULE_API extern int hack_y;
HX_MODULE_API extern int hack_xxx;
HX_MODULE_API extern struct timeval hack_tv;

// name: device path. nonblock 0: reads wait, and so does this call for the writer of a pipe. Null when the
// device cannot be opened (errno tells why). The caller ends it with touchDeviceClose.
HX_MODULE_API tsdev* ts_open(const char* name, int nonblock);
// Puts the module before the others. Always 0.
HX_MODULE_API int __ts_attach(tsdev* ts, ts_module* module);
// Fills count samples and answers count, whatever happens. A sample for which nothing comes within 100 ms has
// the position 0,0 and the time 0, and keeps the pressure it was handed with; an error, or a flood of records
// that make no sample, ends the call and leaves the rest as it was. Nothing is read where the environment's
// "TSLIB_TSEVENTTYPE" is another than "NORVANE", which it is without.
HX_MODULE_API int ts_read_raw(tsdev* ts, ts_sample* samples, int count);
void touchDeviceClose(tsdev* ts);
