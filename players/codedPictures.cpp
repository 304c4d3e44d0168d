#include "players/codedPictures.h"
#include "players/rtpPacket.h"

bool codedPictures::put(const QByteArray& packet)
{
    tagRtpHead head;
    int start = 0;
    int length = 0;
    if (!rtpPacket::read(reinterpret_cast<const unsigned char*>(packet.constData()), int(packet.size()), head,
                         start, length) ||
        length <= 0)
        return true;
    m_bWhole = !m_bAny || head.nSequence == m_nNext;
    if (!m_bWhole)
        dropParts();
    m_bAny = true;
    m_nNext = quint16(head.nSequence + 1);
    putContent(head, packet.mid(start, length));
    return m_bWhole;
}
