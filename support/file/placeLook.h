#pragma once
// What is at a place of the machine, for who would wait for ever if it were opened. hxSip is built with it
// too, so it needs no toolkit.
#include <cstddef>
#include <cstdint>
#include <string>

struct tagPlaceLook
{
    bool bIsThere;
    bool bIsFile; // no link, pipe or folder
    int64_t nSize;
};

tagPlaceLook placeLook(const char* machinePath);
// The first bytes of a file, as many as that at most; empty where no file is there.
std::string placeText(const char* machinePath, size_t most);
