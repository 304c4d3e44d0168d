#pragma once
// Devices that are read record by record, and the small files by which a driver is set. Paths are device
// paths. Any thread; nothing waits longer than it was asked to.
#include "support/text/nuxExport.h"
#include <stdint.h>
#include <sys/time.h>

// One record of an input device.
struct tagRawEvent
{
    struct timeval time = {};
    uint16_t nType = 0; // EV_... of the kernel
    uint16_t nCode = 0;
    int32_t nValue = 0;
};

// How a descriptor's records look. A device of the kernel's input system has the kernel's own, whose time is
// as long as this machine's; whatever else stands for one (a pipe, a socket, a file) has 16 bytes with 8 of
// time.
enum RAW_RECORD { RAW_RECORD_SHORT, RAW_RECORD_KERNEL };

// A descriptor to read with, -1 when there is none. nonblock: neither this call nor a read ever waits;
// without it, a pipe without a writer does.
NUX_API int rawDeviceOpen(const char* path, int nonblock);
NUX_API void rawDeviceClose(int fd);
NUX_API RAW_RECORD rawDeviceRecord(int fd);
// 1 when there is something to read (or its end), 0 when the microseconds are over, -1 on an error.
NUX_API int rawDeviceWait(int fd, int us);
// 1; 0 when what is there is less than a record, which is taken away; -1 when the device is gone.
NUX_API int rawDeviceRead(int fd, RAW_RECORD record, tagRawEvent& event);
// Gives the file of a driver this text, as "echo" does; the file is made where it can be. 1 or 0.
NUX_API int rawDeviceSet(const char* path, const char* text);
