#pragma once
// What other processes send to the players, checked before anything uses it: sizes, texts that end, ports,
// rectangles. No file is opened and nothing is decoded here. Any thread.
#include "support/host/player.h"
#include <QByteArray>

namespace playerRecords {

enum : int {
    MAX_PATH = 4095,  // bytes of a device path
    MIN_PORT = 1024,  // those below are the system's
    MAX_WIDTH = 1280, // of a picture, in pixels
    MAX_HEIGHT = 800
};

// Each answers null when the block is sound and was copied out, else what is wrong with it.

// An absolute device path with the zero that ends it.
const char* readPath(const void* block, int size, QByteArray& path);
const char* readStreams(const void* block, int size, PLAYER_STREAMS& streams);
const char* readPlay(const void* block, int size, ADDR_PARAM& play);
const char* readSession(const void* block, int size, VOICE_PARAM& session);
// Two ports in one word, as PLAYER_PORTS makes it.
const char* readPorts(unsigned int word, uint16_t& audio, uint16_t& video);

// A wish, and the description behind it where there is one; it is not looked into.
const char* readWish(const void* block, int size, CALL_WISH& wish, QByteArray& description);
const char* readCallDescription(const void* block, int size, QByteArray& description);

} // namespace playerRecords
