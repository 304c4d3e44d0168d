#pragma once
// What the phone orders: all words in one argument, each behind a mark, since paths may hold blanks.
#include <string>

struct ScaleOrder
{
    std::string strSource; // device paths
    int nWidth = 0;        // pixels
    int nHeight = 0;
    std::string strTarget;
    std::string strVerdict;

    enum : int { SIDE_LIMIT = 4096 };
    // False for what is no order: a word is missing or empty, or a side is no number from 1 to SIDE_LIMIT.
    bool parse(const std::string& argument);
};
