#include "players/h264Pictures.h"
#include "players/rtpPacket.h"
#include "players/sequenceParameters.h"
#include <utility>

namespace {

// Kinds of units.
enum KIND { SLICE = 1, KEY_SLICE = 5, SEQUENCE = 7, PICTURE_SET = 8, TOGETHER = 24, PART = 28 };
constexpr int kKind = 0x1f; // bits of a unit's first byte
constexpr char kBegins = char(0x80);
constexpr char kEnds = char(0x40);
const QByteArray kStartCode("\0\0\0\1", 4);
constexpr int kKeptBlocks = 32768; // that a decoder of level 4 keeps for other pictures

bool isNeeded(int kind)
{
    return kind == SLICE || kind == KEY_SLICE || kind == SEQUENCE || kind == PICTURE_SET;
}

// Another unit would begin there that nobody has looked at.
bool hasStartCode(const QByteArray& unit)
{
    int zeros = 0;
    for (const char byte : unit) {
        if (zeros >= 2 && uchar(byte) < 3)
            return true;
        zeros = byte == 0 ? zeros + 1 : 0;
    }
    return false;
}

// A unit's first number, of at most that many bits before and behind its one; -1 when it is larger.
qint64 firstNumber(const QByteArray& unit)
{
    constexpr int kMaxZeros = 14;
    quint64 bits = 0;
    int count = 0;
    int zeros = 0; // bytes
    for (qsizetype i = 1; i < unit.size() && count < 40; ++i) {
        const uchar byte = uchar(unit[i]);
        const bool isPadding = zeros >= 2 && byte == 3;
        zeros = byte == 0 ? zeros + 1 : 0;
        if (isPadding)
            continue;
        bits = bits << 8 | byte;
        count += 8;
    }
    for (int length = 0; length <= kMaxZeros && 2 * length < count; ++length) {
        if (bits >> (count - length - 1) & 1)
            return qint64(bits >> (count - 2 * length - 1) & ((quint64(2) << length) - 1)) - 1;
    }
    return -1;
}

} // namespace

void h264Pictures::putContent(const tagRtpHead& head, const QByteArray& content)
{
    if (head.nTime != m_nTime)
        endPicture();
    m_nTime = head.nTime;
    const int kind = content[0] & kKind;
    if (kind != PART)
        m_part.clear();
    if (kind == PART)
        putPart(content);
    else if (kind == TOGETHER)
        putTogether(content);
    else
        putUnit(content);
    if (head.bMarker)
        endPicture();
}

void h264Pictures::dropParts()
{
    m_part.clear();
}

void h264Pictures::putTogether(const QByteArray& content)
{
    for (qsizetype at = 1; at + 2 < content.size();) {
        const qsizetype length = uchar(content[at]) << 8 | uchar(content[at + 1]);
        if (length == 0 || length > content.size() - at - 2)
            return;
        putUnit(content.mid(at + 2, length));
        at += 2 + length;
    }
}

void h264Pictures::putPart(const QByteArray& content)
{
    if (content.size() < 3)
        return;
    const char head = content[1];
    if (head & kBegins)
        m_part = QByteArray(1, char((content[0] & ~kKind) | (head & kKind)));
    const int kind = head & kKind;
    const bool isOfIt = !m_part.isEmpty() && (m_part[0] & kKind) == kind && isNeeded(kind);
    if (!isOfIt || m_part.size() + content.size() > MAX_PICTURE) {
        m_part = QByteArray();
        if (isNeeded(kind))
            leaveOut();
        return;
    }
    m_part += content.mid(2);
    if (head & kEnds)
        putUnit(std::exchange(m_part, QByteArray()));
}

void h264Pictures::putUnit(const QByteArray& whole)
{
    qsizetype size = whole.size();
    while (size > 0 && whole[size - 1] == 0)
        --size;
    const QByteArray unit = whole.left(size);
    const int kind = unit.isEmpty() ? 0 : unit[0] & kKind;
    if (!isNeeded(kind) || unit.size() < 2)
        return;
    if (hasStartCode(unit))
        leaveOut();
    else if (kind == SEQUENCE)
        putSequence(unit);
    else if (kind != PICTURE_SET)
        putSlice(unit);
    else if (const qint64 name = firstNumber(unit); unit.size() <= MAX_SET && name >= 0 && name < MAX_SETS)
        append(unit);
    else
        leaveOut();
}

// Whoever announces what is not shown is seen again when he announces something else.
void h264Pictures::putSequence(const QByteArray& unit)
{
    const auto pictures = sequenceParameters::read(
        reinterpret_cast<const unsigned char*>(unit.constData()) + 1, size_t(unit.size()) - 1);
    constexpr int kBlockPixels = 256;
    m_bSequence = unit.size() <= MAX_SET && pictures && pictures->nWidth <= MAX_WIDTH &&
                  pictures->nHeight <= MAX_HEIGHT &&
                  pictures->nKept * (pictures->nWidth * pictures->nHeight / kBlockPixels) <= kKeptBlocks;
    setRefused(!m_bSequence);
    if (m_nSlices > 0)
        endPicture();
    if (m_bSequence)
        append(unit);
    else
        leaveOut();
}

// Slices of a picture are put one behind the other: a decoder would work at what lies upon another time and
// again.
void h264Pictures::putSlice(const QByteArray& unit)
{
    const qint64 block = firstNumber(unit);
    if (block == 0 && m_nSlices > 0)
        endPicture();
    if (!m_bSequence || block < 0 || m_nSlices >= MAX_SLICES ||
        (m_nSlices > 0 && block <= qint64(m_nFirstBlock)) || !append(unit)) {
        leaveOut();
        return;
    }
    m_bKey = (unit[0] & kKind) == KEY_SLICE && (m_bKey || m_nSlices == 0);
    m_nFirstBlock = quint32(block);
    ++m_nSlices;
}

bool h264Pictures::append(const QByteArray& unit)
{
    m_bTooLarge = m_bTooLarge || m_coded.size() + unit.size() + kStartCode.size() > MAX_PICTURE;
    if (m_bTooLarge) {
        leaveOut();
        return false;
    }
    m_coded += kStartCode;
    m_coded += unit;
    return true;
}

// Sets wait for the picture that they belong to.
void h264Pictures::endPicture()
{
    if (m_nSlices > 0 && !m_bTooLarge)
        give(m_coded, m_bKey);
    if (m_nSlices > 0 || m_bTooLarge)
        m_coded = QByteArray();
    m_bTooLarge = m_bKey = false;
    m_nSlices = 0;
}
