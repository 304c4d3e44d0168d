#pragma once
// What a handle of the registry stands for.
#include "host/services/keyfiles/keyFileCache.h"
#include "support/host/registry.h"

struct _HREGISTRY_
{
    keyFileCache::Slot* pSlot;
    std::string strSection;
    uint32_t nHash; // keyFile::HashSection of it
};
