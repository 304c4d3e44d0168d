#pragma once
// The memory in which the media server leaves its pictures for the phone: a head and a few slots that are
// written in turn. A slot's sequence is odd while it is written, and another number afterwards, so that a
// reader knows whether what it used stayed whole. The reader trusts nothing in it.
#include "support/host/api.h"
#include <QRect>
#include <atomic>
#include <cstddef>
#include <cstdint>

enum : uint32_t {
    VIDEO_STORE_MARK = 0x31767868, // "hxv1"
    VIDEO_STORE_SLOTS = 4,         // one being written, one being painted, and two that wait for it
    VIDEO_STORE_MAX_WIDTH = 1280,
    VIDEO_STORE_MAX_HEIGHT = 800,
    VIDEO_STORE_PIXEL = 4, // bytes: blue, green, red, unused
    VIDEO_STORE_HEAD_BYTES = 4096,
    VIDEO_STORE_SLOT_BYTES = VIDEO_STORE_MAX_WIDTH * VIDEO_STORE_MAX_HEIGHT * VIDEO_STORE_PIXEL,
    VIDEO_STORE_BYTES = VIDEO_STORE_HEAD_BYTES + VIDEO_STORE_SLOTS * VIDEO_STORE_SLOT_BYTES
};

struct tagVideoSlot
{
    std::atomic<uint32_t> nSequence;
    uint32_t nFrame; // number of the picture, from 1
    uint32_t nWidth; // of the picture, whose lines follow each other without a gap
    uint32_t nHeight;
    int32_t x; // where it goes on the screen
    int32_t y;
    uint32_t cx; // 0: wherever the surface is, as large as it is
    uint32_t cy;
};

struct tagVideoHead
{
    uint32_t nMark;
    uint32_t nSlots;
    uint32_t nSlotBytes;
    std::atomic<uint32_t> nNewest; // 1 + number of the slot with the newest picture; 0: no picture
    std::atomic<uint32_t> nFrames; // how many were written
    std::atomic<uint32_t> nGone;   // up to this number they are not to be shown any more
    tagVideoSlot slot[VIDEO_STORE_SLOTS];
};
static_assert(sizeof(tagVideoHead) <= VIDEO_STORE_HEAD_BYTES);
static_assert(std::atomic<uint32_t>::is_always_lock_free);

// A picture where it lies; good as long as videoStoreIsSame says so.
struct tagVideoPicture
{
    const unsigned char* pPixels = nullptr;
    int nWidth = 0;
    int nHeight = 0;
    QRect place; // on the screen; empty: the whole surface
    uint32_t nSlot = 0;
    uint32_t nSequence = 0;
    uint32_t nFrame = 0;
};

// The newest picture in a store of size bytes. False when there is none, it is being written, or what is
// there is no picture.
HX_HOST_API bool videoStoreNewest(const void* store, size_t size, tagVideoPicture& picture);
// The picture that follows number frame, as long as it is there; else as above.
HX_HOST_API bool videoStoreAfter(const void* store, size_t size, uint32_t frame, tagVideoPicture& picture);
// True when the picture has not been written over.
HX_HOST_API bool videoStoreIsSame(const void* store, const tagVideoPicture& picture);
