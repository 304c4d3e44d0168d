#pragma once
// The head of an RTP packet (RFC 3550). Any thread.
#include <QByteArray>

struct tagRtpHead
{
    int nPayload = 0;
    bool bMarker = false;
    quint16 nSequence = 0;
    quint32 nTime = 0;
    quint32 nSource = 0;
};

namespace rtpPacket {

enum : int { HEAD_BYTES = 12, MAX_BYTES = 1500 };

// False when the bytes are no RTP packet, or its lengths lie. start, length: of what it carries.
bool read(const unsigned char* packet, int size, tagRtpHead& head, int& start, int& length);
// Into HEAD_BYTES bytes.
void write(const tagRtpHead& head, unsigned char* packet);
// A packet of RTCP, which may come on the same port (RFC 5761).
bool isRtcp(const unsigned char* packet, int size);

} // namespace rtpPacket
