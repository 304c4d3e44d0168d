#include "support/text/dynamicAlloc.h"

#include <cstdlib>

void* dynamicAlloc::realloc(void* block, int size)
{
    if (size < 1 || size > MAX_BLOCK)
        return nullptr;
    const size_t bytes = static_cast<size_t>(size);
    return block ? std::realloc(block, bytes) : std::malloc(bytes);
}

void dynamicAlloc::free(void* block)
{
    std::free(block);
}
