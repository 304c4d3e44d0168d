#pragma once
// A PNG as a file whose data are unpacked already: in one chunk after the other they come as they are. They
// are unpacked on a thread of its own, a few blocks ahead of the one that reads.
#include "host/services/pictures/pngInflater.h"
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>
#include <vector>

class PictureSource;

class PngUnpacked
{
public:
    explicit PngUnpacked(PictureSource& source);
    ~PngUnpacked(); // ends the thread, wherever it is
    PngUnpacked(const PngUnpacked&) = delete;
    PngUnpacked& operator=(const PngUnpacked&) = delete;

    // False when there are no data, or the system has no thread left.
    bool start();
    // The next bytes; false when there are not as many, when the picture is given up, and for anything that
    // is unusual. The checksums of the chunks of data, and of all data, were looked at: here they are zeros.
    bool read(uchar* bytes, size_t count);

private:
    struct tagBlock
    {
        std::vector<uchar> data;
        size_t nCount = 0;
        PngInflater::STEP eStep = PngInflater::MORE;
    };
    struct tagSpan
    {
        const uchar* pBytes = nullptr;
        size_t nCount = 0;
    };

    void unpackAll();
    tagBlock* waitForRoom();
    void hand();
    bool nextBlock();
    bool nextPiece();
    void writeHead(size_t count, bool isFirst, bool isLast);
    bool goBehind();
    size_t readData(uchar* bytes, size_t count);
    size_t readFile(uchar* bytes, size_t count);

    PictureSource& m_source;
    PngInflater m_inflater;
    std::thread m_thread;
    std::vector<tagBlock> m_blocks; // one after the other, and from the start again
    std::mutex m_lock;
    std::condition_variable m_changed;
    size_t m_nHanded = 0; // these three under the lock
    size_t m_nDone = 0;
    bool m_bStop = false;
    // Of who reads.
    enum { IN_FRONT, IN_DATA, BEHIND } m_ePart = IN_FRONT;
    tagBlock* m_pBlock = nullptr;
    size_t m_nTaken = 0;       // bytes of the block
    std::vector<uchar> m_head; // of a chunk
    tagSpan m_spans[3];        // head, data and end of a chunk
};
