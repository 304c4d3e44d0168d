#include "host/services/players/videoFrameStore.h"
#include <algorithm>

namespace {

bool isSound(uint32_t width, uint32_t height)
{
    return width > 0 && width <= VIDEO_STORE_MAX_WIDTH && height > 0 && height <= VIDEO_STORE_MAX_HEIGHT;
}

bool isNear(int32_t x, int32_t y)
{
    const int32_t right = VIDEO_STORE_MAX_WIDTH;
    const int32_t bottom = VIDEO_STORE_MAX_HEIGHT;
    return x >= -right && x <= right && y >= -bottom && y <= bottom;
}

bool placeOf(const tagVideoSlot& slot, QRect& place)
{
    const uint32_t cx = slot.cx;
    const uint32_t cy = slot.cy;
    const int32_t x = slot.x;
    const int32_t y = slot.y;
    if (cx == 0 && cy == 0) {
        place = QRect();
        return true;
    }
    if (!isSound(cx, cy) || !isNear(x, y))
        return false;
    place = QRect(x, y, int(cx), int(cy));
    return true;
}

// The picture in one slot, if there is a whole one.
bool readSlot(const void* store, uint32_t number, tagVideoPicture& picture)
{
    const tagVideoSlot& slot = static_cast<const tagVideoHead*>(store)->slot[number];
    tagVideoPicture read;
    read.nSlot = number;
    read.nSequence = slot.nSequence.load(std::memory_order_acquire);
    read.nFrame = slot.nFrame;
    const uint32_t width = slot.nWidth;
    const uint32_t height = slot.nHeight;
    if (read.nSequence % 2 || !isSound(width, height) || !placeOf(slot, read.place))
        return false;
    read.nWidth = int(width);
    read.nHeight = int(height);
    read.pPixels = static_cast<const unsigned char*>(store) + VIDEO_STORE_HEAD_BYTES +
                   size_t(number) * VIDEO_STORE_SLOT_BYTES;
    if (!videoStoreIsSame(store, read))
        return false;
    picture = read;
    return true;
}

} // namespace

bool videoStoreNewest(const void* store, size_t size, tagVideoPicture& picture)
{
    const auto* head = static_cast<const tagVideoHead*>(store);
    if (!head || size != VIDEO_STORE_BYTES || head->nMark != VIDEO_STORE_MARK ||
        head->nSlots != VIDEO_STORE_SLOTS || head->nSlotBytes != VIDEO_STORE_SLOT_BYTES)
        return false;
    const uint32_t newest = head->nNewest.load(std::memory_order_acquire);
    return newest > 0 && newest <= VIDEO_STORE_SLOTS && readSlot(store, newest - 1, picture);
}

bool videoStoreAfter(const void* store, size_t size, uint32_t frame, tagVideoPicture& picture)
{
    tagVideoPicture newest;
    if (!videoStoreNewest(store, size, newest))
        return false;
    picture = newest;
    // Numbers run over. One slot is the writer's.
    const auto* head = static_cast<const tagVideoHead*>(store);
    const uint32_t late = newest.nFrame - frame;
    const uint32_t shown = newest.nFrame - head->nGone.load(std::memory_order_relaxed);
    if (late >= VIDEO_STORE_SLOTS)
        return true;
    for (uint32_t back = std::min(late, shown); back-- > 1;) {
        tagVideoPicture older;
        const uint32_t slot = (newest.nSlot + VIDEO_STORE_SLOTS - back) % VIDEO_STORE_SLOTS;
        if (readSlot(store, slot, older) && older.nFrame == newest.nFrame - back) {
            picture = older;
            return true;
        }
    }
    return true;
}

bool videoStoreIsSame(const void* store, const tagVideoPicture& picture)
{
    const auto* head = static_cast<const tagVideoHead*>(store);
    std::atomic_thread_fence(std::memory_order_acquire);
    return head->slot[picture.nSlot].nSequence.load(std::memory_order_relaxed) == picture.nSequence;
}
