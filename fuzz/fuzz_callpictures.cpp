// Packets of a call's pictures as they come from the network: their heads, their order, the parts that become
// pictures, what these announce, and the decoders behind it. The first byte says which codec; then each
// packet comes behind its length, as in RFC 4571. One that is empty lets the time for a missing one go by.
#include "fuzz/fuzzRoot.h"
#include "players/codedSize.h"
#include "players/packetOrder.h"
#include "players/pictureContent.h"
#include "players/pictureDecoder.h"
#include "players/rtpPacket.h"
#include <algorithm>
#include <cstdint>
#include <unistd.h>
#include <vector>

namespace {

constexpr int64_t kStepUs = 2000;

class Pictures
{
public:
    explicit Pictures(PICTURE_CODEC codec)
        : m_eCodec(codec), m_decoder(pictureDecoder::make(codec, [](const GstVideoFrame& frame) {
              expect(frame.info.width > 0 && frame.info.width <= pictureDecoder::MAX_WIDTH);
              expect(frame.info.height > 0 && frame.info.height <= pictureDecoder::MAX_HEIGHT);
          }))
    {
        expect(m_decoder != nullptr);
    }
    // What was put is decoded.
    ~Pictures()
    {
        while (m_decoder->waiting() > 0 && !m_decoder->hasFailed())
            usleep(100);
    }
    void take(const uint8_t* data, size_t size)
    {
        m_nNowUs += size == 0 ? packetOrder::WAIT_MS * 1000 : kStepUs;
        // A copy of its own, so that reading beyond it is seen.
        const std::vector<uint8_t> packet(data, data + size);
        pictureContent::isWhole(m_eCodec, packet.data(), packet.size());
        codedSize::fits(m_eCodec, packet.data(), packet.size(), {640, 480});
        tagRtpHead head;
        int start = 0;
        int length = 0;
        if (rtpPacket::read(packet.data(), int(size), head, start, length) && length > 0) {
            m_order.put(head.nSequence,
                        QByteArray(reinterpret_cast<const char*>(packet.data()), qsizetype(size)), m_nNowUs);
            ++m_nPut;
        }
        QByteArray next;
        bool isLost = false;
        while (m_order.take(m_nNowUs, next, isLost)) {
            expect(++m_nTaken <= m_nPut);
            m_decoder->put(next);
        }
    }

private:
    const PICTURE_CODEC m_eCodec;
    std::unique_ptr<pictureDecoder> m_decoder;
    packetOrder m_order;
    int64_t m_nNowUs = 0;
    int m_nPut = 0;
    int m_nTaken = 0;
};

} // namespace

// What the toolkit's threads keep for themselves is lost with them; what grows is seen by the limit of
// memory.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:g_malloc\n";
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const bool isThere = (gst_init(nullptr, nullptr), true);
    if (!isThere || size == 0)
        return 0;
    Pictures pictures(kPictureCodecs[data[0] % kPictureCodecs.size()].eCodec);
    for (size_t at = 1; at + 2 <= size;) {
        const size_t said = size_t(data[at]) << 8 | data[at + 1];
        const size_t length = std::min<size_t>({said, size - at - 2, size_t(rtpPacket::MAX_BYTES)});
        pictures.take(data + at + 2, length);
        at += 2 + length;
    }
    return 0;
}
