#include "players/vp8Pictures.h"
#include "players/rtpPacket.h"
#include <utility>

namespace {

constexpr qsizetype kHead = 3;     // bytes of a picture's
constexpr qsizetype kKeyHead = 10; // the same, of a key picture
constexpr int kSide = 0x3fff;

// How long the description before a packet's part is; -1 when it lies. begins: with this packet a picture
// does.
qsizetype descriptionOf(const QByteArray& content, bool& begins)
{
    const int first = uchar(content[0]);
    begins = (first & 0x10) != 0 && (first & 0x07) == 0;
    qsizetype size = 1;
    if (first & 0x80) {
        const int more = content.size() > 1 ? uchar(content[1]) : 0;
        ++size;
        if (more & 0x80)
            size += content.size() > 2 && (content[2] & 0x80) ? 2 : 1;
        size += (more & 0x40 ? 1 : 0) + (more & 0x30 ? 1 : 0);
    }
    return size < content.size() ? size : -1;
}

bool isKey(const QByteArray& coded)
{
    return (coded[0] & 1) == 0;
}

bool fits(const QByteArray& key)
{
    const auto sideAt = [&key](qsizetype at) { return (uchar(key[at]) | uchar(key[at + 1]) << 8) & kSide; };
    if (key.size() < kKeyHead || key.mid(3, 3) != QByteArray("\x9d\x01\x2a", 3))
        return false;
    const int width = sideAt(6);
    const int height = sideAt(8);
    return width > 0 && height > 0 && width <= codedPictures::MAX_WIDTH &&
           height <= codedPictures::MAX_HEIGHT;
}

} // namespace

void vp8Pictures::putContent(const tagRtpHead& head, const QByteArray& content)
{
    bool begins = false;
    const qsizetype start = descriptionOf(content, begins);
    const bool isNew = begins || head.nTime != m_nTime;
    m_nTime = head.nTime;
    if (isNew && !m_coded.isEmpty())
        leaveOut();
    if (isNew)
        m_coded = QByteArray();
    if (start < 0 || (m_coded.isEmpty() && !begins) ||
        m_coded.size() + content.size() - start > MAX_PICTURE) {
        m_coded = QByteArray();
        leaveOut();
        return;
    }
    m_coded += content.mid(start);
    if (head.bMarker)
        endPicture();
}

void vp8Pictures::dropParts()
{
    m_coded = QByteArray();
}

// Whoever sends what is not shown is seen again with his next key picture that fits.
void vp8Pictures::endPicture()
{
    const QByteArray coded = std::exchange(m_coded, QByteArray());
    if (coded.size() >= kHead && isKey(coded))
        setRefused(!fits(coded));
    if (coded.size() < kHead || isRefused())
        leaveOut();
    else
        give(coded, isKey(coded));
}
