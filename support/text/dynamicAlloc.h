#pragma once

#include "support/text/nuxExport.h"

// The only memory source of strings.
class NUX_API dynamicAlloc
{
public:
    // The largest block that is handed out, in bytes. No text of the phone comes near it.
    static constexpr int MAX_BLOCK = 64 * 1024 * 1024;

    // A null block allocates. Null when `size` is not in 1 .. MAX_BLOCK or memory is out; the old
    // block then stays as it was.
    static void* realloc(void* block, int size);
    static void free(void* block);
};
