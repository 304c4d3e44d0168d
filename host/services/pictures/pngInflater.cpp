#include "host/services/pictures/pngInflater.h"
#include "host/services/pictures/pictureSource.h"
#include <QtEndian>
#include <algorithm>
#include <cstring>

#include <isa-l/crc.h>
#include <isa-l/igzip_lib.h>

namespace {

constexpr qint64 kSignature = 8;
constexpr size_t kHead = 8;           // length and name of a chunk
constexpr size_t kSum = 4;            // behind its data
constexpr size_t kBlock = 256 * 1024; // bytes that are read at a time
constexpr int kMostChunks = 1000;     // in front of the data
constexpr char kName[] = "IDAT";
constexpr size_t kNameBytes = sizeof kName - 1;
// Of a window of 32 KB: the decoder keeps that much, and says nothing of a way back that is too long for
// less.
constexpr uchar kWholeWindow = 0x78;

} // namespace

PngInflater::PngInflater(PictureSource& source)
    : m_source(source), m_pState(std::make_unique<inflate_state>()), m_input(kBlock + kSum + kHead)
{
    isal_inflate_init(m_pState.get());
    m_pState->crc_flag = ISAL_ZLIB;
}

PngInflater::~PngInflater() = default;

bool PngInflater::find()
{
    m_nAt = kSignature;
    for (int i = 0; i < kMostChunks; ++i) {
        uchar head[kHead];
        if (!m_source.readAt(m_nAt, head, sizeof head))
            return false;
        m_nBegin = m_nAt;
        m_nAt += kHead;
        if (readNextChunk(head))
            return true;
        m_nAt += qint64(qFromBigEndian<quint32>(head)) + qint64(kSum);
    }
    return false;
}

// False when it is one of another kind.
bool PngInflater::readNextChunk(const uchar* head)
{
    m_bInChunk = memcmp(head + kHead - kNameBytes, kName, kNameBytes) == 0;
    m_nLeft = m_bInChunk ? qFromBigEndian<quint32>(head) : 0;
    m_nSum = crc32_gzip_refl(0, head + kHead - kNameBytes, kNameBytes);
    return m_bInChunk;
}

// With the last piece of a chunk come its checksum and the head of the next one: there is always another.
bool PngInflater::readInput()
{
    if (!m_bInChunk)
        return false;
    const size_t count = std::min<size_t>(m_nLeft, kBlock);
    const bool isLast = count == m_nLeft;
    const size_t read = count + (isLast ? kSum + kHead : 0);
    uchar* const input = m_input.data();
    if (!m_source.readAt(m_nAt, input, qint64(read)))
        return false;
    m_nAt += qint64(read);
    m_nLeft -= quint32(count);
    m_nSum = crc32_gzip_refl(m_nSum, input, count);
    if (isLast && m_nSum != qFromBigEndian<quint32>(input + count))
        return false;
    if (isLast)
        readNextChunk(input + count + kSum);
    m_pState->next_in = input;
    m_pState->avail_in = uint32_t(count);
    const bool isWindowWhole = !m_bAtStart || count == 0 || input[0] == kWholeWindow;
    m_bAtStart = m_bAtStart && count == 0;
    return isWindowWhole;
}

PngInflater::STEP PngInflater::unpack(uchar* out, size_t room, size_t& count)
{
    count = 0;
    if (m_pState->avail_in == 0 && !m_bFull && !readInput())
        return UNUSUAL;
    m_pState->next_out = out;
    m_pState->avail_out = uint32_t(room);
    if (isal_inflate(m_pState.get()) != ISAL_DECOMP_OK)
        return UNUSUAL;
    count = room - m_pState->avail_out;
    m_bFull = m_pState->avail_out == 0;
    if (m_pState->block_state != ISAL_BLOCK_FINISH)
        return MORE;
    if (m_pState->avail_in > 0 || m_bInChunk)
        return UNUSUAL;
    m_nAt -= kHead; // of the chunk behind
    return WHOLE;
}
