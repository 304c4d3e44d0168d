#include "host/services/pictures/pngUnpacked.h"
#include "host/services/pictures/pictureSource.h"
#include <QtEndian>
#include <algorithm>
#include <cstring>
#include <system_error>

namespace {

constexpr size_t kBlocks = 8;
constexpr size_t kBlockBytes = 256 * 1024;
constexpr size_t kMostStored = 65535; // bytes in one block that is stored, as the format of packed data says
constexpr size_t kChunkName = 4;      // bytes in front of it
constexpr size_t kChunkHead = 8;
// As packed data begin: with the smallest window, since nothing is looked up in it.
constexpr uchar kStart[] = {0x08, 0x1d};
constexpr size_t kStoredHead = 5;
constexpr size_t kDataSum = 4; // behind the last data
constexpr size_t kChunkSum = 4;
constexpr uchar kEnd[kDataSum + kChunkSum] = {};

} // namespace

PngUnpacked::PngUnpacked(PictureSource& source) : m_source(source), m_inflater(source), m_blocks(kBlocks)
{
    for (tagBlock& block : m_blocks)
        block.data.resize(kBlockBytes);
    m_head.reserve(kChunkHead + sizeof kStart + kStoredHead);
}

PngUnpacked::~PngUnpacked()
{
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_bStop = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

bool PngUnpacked::start()
{
    if (!m_inflater.find())
        return false;
    try {
        m_thread = std::thread([this] { unpackAll(); });
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

void PngUnpacked::unpackAll()
{
    while (tagBlock* block = waitForRoom()) {
        block->eStep = m_inflater.unpack(block->data.data(), block->data.size(), block->nCount);
        m_source.useElsewhere(PictureSource::threadNs());
        hand();
        if (block->eStep != PngInflater::MORE)
            return;
    }
}

PngUnpacked::tagBlock* PngUnpacked::waitForRoom()
{
    std::unique_lock<std::mutex> lock(m_lock);
    m_changed.wait(lock, [this] { return m_bStop || m_nHanded - m_nDone < m_blocks.size(); });
    return m_bStop ? nullptr : &m_blocks[m_nHanded % m_blocks.size()];
}

void PngUnpacked::hand()
{
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        ++m_nHanded;
    }
    m_changed.notify_one();
}

// Gives the block back that was read. The wait is short: every block is a bounded piece of work.
bool PngUnpacked::nextBlock()
{
    std::unique_lock<std::mutex> lock(m_lock);
    if (m_pBlock) {
        ++m_nDone;
        m_changed.notify_one();
    }
    m_changed.wait(lock, [this] { return m_nHanded > m_nDone; });
    m_pBlock = &m_blocks[m_nDone % m_blocks.size()];
    m_nTaken = 0;
    return m_pBlock->eStep != PngInflater::UNUSUAL;
}

// The next chunk, with as much as can be stored in one block of it.
bool PngUnpacked::nextPiece()
{
    const bool isFirst = !m_pBlock;
    if (!isFirst && m_pBlock->eStep == PngInflater::UNUSUAL)
        return false; // no other will come
    if (isFirst || m_nTaken == m_pBlock->nCount) {
        if (!isFirst && m_pBlock->eStep == PngInflater::WHOLE)
            return goBehind();
        do {
            if (m_source.isGivenUp() || !nextBlock())
                return false;
        } while (m_pBlock->nCount == 0 && m_pBlock->eStep == PngInflater::MORE);
    }
    const size_t count = std::min(m_pBlock->nCount - m_nTaken, kMostStored);
    const bool isLast = m_pBlock->eStep == PngInflater::WHOLE && m_nTaken + count == m_pBlock->nCount;
    writeHead(count, isFirst, isLast);
    m_spans[0] = {m_head.data(), m_head.size()};
    m_spans[1] = {m_pBlock->data.data() + m_nTaken, count};
    m_spans[2] = {kEnd, (isLast ? kDataSum : 0) + kChunkSum};
    m_nTaken += count;
    return true;
}

// What the data are stored in: a chunk, and in it a block.
void PngUnpacked::writeHead(size_t count, bool isFirst, bool isLast)
{
    const size_t start = isFirst ? sizeof kStart : 0;
    m_head.resize(kChunkHead + start + kStoredHead);
    uchar* at = m_head.data();
    qToBigEndian(quint32(start + kStoredHead + count + (isLast ? kDataSum : 0)), at);
    memcpy(at + kChunkName, "IDAT", kChunkHead - kChunkName);
    at += kChunkHead;
    memcpy(at, kStart, start);
    at += start;
    at[0] = isLast;
    qToLittleEndian(quint16(count), at + 1);
    qToLittleEndian(quint16(~count), at + 3);
}

bool PngUnpacked::goBehind()
{
    m_ePart = BEHIND;
    return m_source.seek(m_inflater.end());
}

size_t PngUnpacked::readData(uchar* bytes, size_t count)
{
    size_t read = 0;
    for (tagSpan& span : m_spans) {
        const size_t part = std::min(span.nCount, count - read);
        if (part > 0)
            memcpy(bytes + read, span.pBytes, part);
        span = {span.pBytes + part, span.nCount - part};
        read += part;
    }
    return read;
}

size_t PngUnpacked::readFile(uchar* bytes, size_t count)
{
    return size_t(std::max<qint64>(0, m_source.read(reinterpret_cast<char*>(bytes), qint64(count))));
}

bool PngUnpacked::read(uchar* bytes, size_t count)
{
    while (count > 0) {
        size_t part = 0;
        if (m_ePart == IN_FRONT) {
            part = readFile(bytes, std::min(count, size_t(m_inflater.begin() - m_source.pos())));
            if (m_source.pos() == m_inflater.begin())
                m_ePart = IN_DATA;
        } else if (m_ePart == BEHIND) {
            part = readFile(bytes, count);
        } else {
            part = readData(bytes, count);
            if (part == 0 && nextPiece())
                continue;
        }
        if (part == 0)
            return false;
        bytes += part;
        count -= part;
    }
    return true;
}
