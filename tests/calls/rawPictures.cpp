#include "tests/calls/rawPictures.h"
#include <arpa/inet.h>
#include <cstring>
#include <gtest/gtest.h>
#include <thread>

namespace {

// Of the numbers of a set.
class BitText
{
public:
    void bits(quint32 value, int count)
    {
        for (int i = count - 1; i >= 0; --i)
            m_bits.push_back((value >> i & 1) != 0);
    }
    void number(quint32 value)
    {
        const quint64 more = quint64(value) + 1;
        int length = 0;
        while (more >> (length + 1))
            ++length;
        bits(0, length);
        for (int i = length; i >= 0; --i)
            m_bits.push_back((more >> i & 1) != 0);
    }
    // With the bytes that keep start codes out.
    QByteArray bytes(char kind)
    {
        bits(1, 1);
        while (m_bits.size() % 8)
            bits(0, 1);
        QByteArray text(1, kind);
        int zeros = 0;
        for (size_t at = 0; at < m_bits.size(); at += 8) {
            int byte = 0;
            for (size_t i = 0; i < 8; ++i)
                byte = byte << 1 | int(m_bits[at + i]);
            if (zeros >= 2 && byte <= 3) {
                text += '\3';
                zeros = 0;
            }
            zeros = byte == 0 ? zeros + 1 : 0;
            text += char(byte);
        }
        return text;
    }

private:
    std::vector<bool> m_bits;
};

void addSize(BitText& text, quint32 wide, quint32 high)
{
    text.number(0);  // pictures until they are counted anew: 16
    text.number(2);  // shown as they come
    text.number(1);  // one is kept
    text.bits(0, 1); // none is left out
    text.number(wide - 1);
    text.number(high - 1);
    text.bits(1, 1); // whole pictures
    text.bits(1, 1);
    text.bits(0, 2); // nothing is cut off, and nothing more is told
}

} // namespace

RawPictures::RawPictures() : m_sockets(callSockets::open())
{
    tagOwnMedia own;
    own.address = "127.0.0.1";
    own.nPort = 40010;
    own.nPicturePort = m_sockets->port();
    own.bLoopback = true;
    negotiation = std::make_unique<callNegotiation>(own);
}

void RawPictures::send(const QByteArray& content, quint32 time, bool marker, int payload)
{
    const tagAgreedPicture agreed = negotiation->agreedPicture();
    sockaddr_in to = {};
    to.sin_family = AF_INET;
    to.sin_port = htons(uint16_t(agreed.nPort));
    to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    unsigned char packet[rtpPacket::MAX_BYTES] = {};
    ASSERT_LE(content.size(), rtpPacket::MAX_BYTES - rtpPacket::HEAD_BYTES);
    const std::lock_guard<std::mutex> lock(m_mutex);
    rtpPacket::write({payload < 0 ? agreed.send.nPayload : payload, marker, m_nSequence++, time, m_nSource},
                     packet);
    memcpy(packet + rtpPacket::HEAD_BYTES, content.constData(), size_t(content.size()));
    m_sockets->send(false, packet, rtpPacket::HEAD_BYTES + int(content.size()), to);
}

void RawPictures::sendPaced(const QByteArray& content, quint32 time, bool marker)
{
    send(content, time, marker);
    if (++m_nSent % 25 == 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

void RawPictures::sendCamera(KEYS keys)
{
    m_bBegan = false;
    QByteArray fault;
    m_encoder = pictureEncoder::make(
        m_camera, negotiation->agreedPicture(), 600,
        [this, keys](const unsigned char* packet, int size) { take(packet, size, keys); },
        [](const GstVideoFrame&) {}, fault);
    ASSERT_TRUE(m_encoder) << fault.constData();
}

// Its first picture is its only key.
void RawPictures::take(const unsigned char* packet, int size, KEYS keys)
{
    tagRtpHead head;
    int start = 0;
    int length = 0;
    ASSERT_TRUE(rtpPacket::read(packet, size, head, start, length));
    if (!m_bBegan)
        m_nFirst = head.nTime;
    m_bBegan = true;
    m_nTime = head.nTime;
    if (keys == ALL || head.nTime != m_nFirst)
        send(QByteArray(reinterpret_cast<const char*>(packet) + start, length), head.nTime, head.bMarker);
}

void RawPictures::sendAside(const QByteArray& content)
{
    send(content, m_nTime, false);
}

QByteArray RawPictures::sequenceSet(quint32 wide, quint32 high, quint32 id)
{
    BitText text;
    text.bits(0x42e01f, 24);
    text.number(id);
    addSize(text, wide, high);
    return text.bytes('\x67');
}

QByteArray RawPictures::highSet(quint32 wide, quint32 high, quint32 colours, quint32 moreBits, bool lists)
{
    BitText text;
    text.bits(0x64001f, 24);
    text.number(0);
    text.number(colours);
    if (colours == 3)
        text.bits(0, 1);
    text.number(moreBits);
    text.number(moreBits);
    text.bits(0, 1);
    text.bits(lists, 1);
    for (int list = 0; lists && list < 8; ++list) {
        text.bits(list % 2, 1);
        for (int i = 0; list % 2 && i < (list < 6 ? 16 : 64); ++i)
            text.number(i == 3 ? 2 : 1); // steps of 1 and -1
    }
    addSize(text, wide, high);
    return text.bytes('\x67');
}
