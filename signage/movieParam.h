#pragma once
// Small work on the records of the players. Any thread.
#include "support/host/player.h"
#include <cstring>

// False, and an empty text, when the field is too small.
template <int SIZE>
bool copyPlayerText(char (&field)[SIZE], const char* text)
{
    const size_t length = strlen(text);
    memset(field, 0, SIZE);
    if (length >= SIZE)
        return false;
    memcpy(field, text, length);
    return true;
}

template <class RECORD>
bool isAllZero(const RECORD& record)
{
    static const RECORD kZero = {};
    return memcmp(&record, &kZero, sizeof record) == 0;
}

// What stands for a file that nobody could describe.
MOV_SDP defaultMovieSDP();
// Ends every text inside of its field.
void endMovieTexts(MOV_SDP& sdp);
void PrintMovieSDP(const MOV_SDP& sdp);
void PrintMovieParam(const ADDR_PARAM& param);

// The media server's names for the codecs of a stream.
const char* audioCodecName(const char* streamName); // null when it has none
const char* videoCodecName(const char* streamName);
