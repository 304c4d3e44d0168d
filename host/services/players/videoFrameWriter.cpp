#include "host/services/players/videoFrameWriter.h"
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

videoFrameWriter::~videoFrameWriter()
{
    if (m_pStore)
        munmap(m_pStore, VIDEO_STORE_BYTES);
    if (m_nFd >= 0)
        close(m_nFd);
}

bool videoFrameWriter::open()
{
    m_nFd = memfd_create("hxVideo", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    // Sealed, so that no reader can meet a memory that has become shorter.
    if (m_nFd < 0 || fchmod(m_nFd, 0600) != 0 || ftruncate(m_nFd, VIDEO_STORE_BYTES) != 0 ||
        fcntl(m_nFd, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW) != 0)
        return false;
    void* memory = mmap(nullptr, VIDEO_STORE_BYTES, PROT_READ | PROT_WRITE, MAP_SHARED, m_nFd, 0);
    if (memory == MAP_FAILED)
        return false;
    m_pStore = memory;
    head()->nMark = VIDEO_STORE_MARK;
    head()->nSlots = VIDEO_STORE_SLOTS;
    head()->nSlotBytes = VIDEO_STORE_SLOT_BYTES;
    return true;
}

unsigned char* videoFrameWriter::pixelsOf(uint32_t slot) const
{
    return static_cast<unsigned char*>(m_pStore) + VIDEO_STORE_HEAD_BYTES +
           size_t(slot) * VIDEO_STORE_SLOT_BYTES;
}

uint32_t videoFrameWriter::begin()
{
    const uint32_t slot = m_nNext;
    m_nNext = (m_nNext + 1) % VIDEO_STORE_SLOTS;
    head()->slot[slot].nSequence.fetch_add(1, std::memory_order_relaxed);
    std::atomic_thread_fence(std::memory_order_release);
    return slot;
}

void videoFrameWriter::finish(uint32_t slot, const QSize& size, const QRect& place)
{
    tagVideoSlot& record = head()->slot[slot];
    record.nWidth = uint32_t(size.width());
    record.nHeight = uint32_t(size.height());
    record.x = place.isEmpty() ? 0 : place.x();
    record.y = place.isEmpty() ? 0 : place.y();
    record.cx = place.isEmpty() ? 0 : uint32_t(place.width());
    record.cy = place.isEmpty() ? 0 : uint32_t(place.height());
    record.nFrame = head()->nFrames.fetch_add(1, std::memory_order_relaxed) + 1;
    record.nSequence.fetch_add(1, std::memory_order_release);
    head()->nNewest.store(slot + 1, std::memory_order_release);
}

bool videoFrameWriter::hasRoomFor(const QSize& size)
{
    return !size.isEmpty() && size.width() <= int(VIDEO_STORE_MAX_WIDTH) &&
           size.height() <= int(VIDEO_STORE_MAX_HEIGHT);
}

const unsigned char* videoFrameWriter::newest(const QSize& size) const
{
    if (head()->nNewest == 0)
        return nullptr;
    const uint32_t slot = head()->nNewest - 1;
    const QSize there(int(head()->slot[slot].nWidth), int(head()->slot[slot].nHeight));
    return there == size ? pixelsOf(slot) : nullptr;
}

bool videoFrameWriter::write(const QSize& size, const QRect& place,
                             const std::function<void(unsigned char*)>& paint)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_pStore || !hasRoomFor(size))
        return false;
    const uint32_t slot = begin();
    paint(pixelsOf(slot));
    finish(slot, size, place);
    return true;
}

bool videoFrameWriter::writeUpon(
    const QSize& size, const std::function<void(unsigned char* pixels, const unsigned char* newest)>& paint)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_pStore || !hasRoomFor(size))
        return false;
    const unsigned char* before = newest(size);
    const uint32_t slot = begin();
    paint(pixelsOf(slot), before);
    finish(slot, size, QRect());
    return true;
}

bool videoFrameWriter::move(const QRect& place)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_pStore || head()->nNewest == 0)
        return false;
    const uint32_t old = head()->nNewest - 1;
    const QSize size(int(head()->slot[old].nWidth), int(head()->slot[old].nHeight));
    const uint32_t slot = begin();
    memcpy(pixelsOf(slot), pixelsOf(old), size_t(size.width()) * size_t(size.height()) * VIDEO_STORE_PIXEL);
    finish(slot, size, place);
    return true;
}

void videoFrameWriter::clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_pStore)
        return;
    head()->nGone = head()->nFrames.load();
    head()->nNewest.store(0, std::memory_order_release);
}

void videoFrameWriter::release()
{
    clear();
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_pStore)
        return;
    // Whoever is painting one of them sees that it did not stay whole.
    for (tagVideoSlot& slot : head()->slot)
        slot.nSequence.fetch_add(2, std::memory_order_release);
    fallocate(m_nFd, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, VIDEO_STORE_HEAD_BYTES,
              VIDEO_STORE_BYTES - VIDEO_STORE_HEAD_BYTES);
}
