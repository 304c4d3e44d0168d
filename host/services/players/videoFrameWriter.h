#pragma once
// The media server's side of the pictures' memory. The memory has no name: the phone opens it through this
// process, and the system frees it with the last of both. Any thread.
#include "host/services/players/videoFrameStore.h"
#include <functional>
#include <mutex>

class HX_HOST_API videoFrameWriter
{
public:
    videoFrameWriter() = default;
    ~videoFrameWriter();
    videoFrameWriter(const videoFrameWriter&) = delete;
    videoFrameWriter& operator=(const videoFrameWriter&) = delete;

    // False when the system has no memory for it.
    bool open();
    int descriptor() const { return m_nFd; }
    // Has a picture painted into a slot, where its lines follow each other without a gap, and makes it the
    // newest. False when it is larger than a slot may hold.
    bool write(const QSize& size, const QRect& place, const std::function<void(unsigned char*)>& paint);
    // The same, for what is a part of the picture before: newest is that one, null where none of that size
    // is.
    bool writeUpon(const QSize& size,
                   const std::function<void(unsigned char* pixels, const unsigned char* newest)>& paint);
    // The newest picture goes to another place, as it is. False when there is none.
    bool move(const QRect& place);
    // No picture.
    void clear();
    // The same, and the memory goes back to the system until the next picture.
    void release();

private:
    tagVideoHead* head() const { return static_cast<tagVideoHead*>(m_pStore); }
    unsigned char* pixelsOf(uint32_t slot) const;
    static bool hasRoomFor(const QSize& size);
    const unsigned char* newest(const QSize& size) const;
    uint32_t begin();
    void finish(uint32_t slot, const QSize& size, const QRect& place);

    std::mutex m_mutex;
    void* m_pStore = nullptr;
    int m_nFd = -1;
    uint32_t m_nNext = 0;
};
