#pragma once
#include "support/host/api.h"
#include "support/text/chString.h"

// MD5 of a file (a device path) as 32 lower-case digits; empty when it cannot be read. Any thread.
HX_HOST_API chString md5GetFileCheckSum(const char* path);
// Frees memory that a host helper allocated.
HX_HOST_API void qFree(void* memory);
