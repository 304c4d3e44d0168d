// Packets of a call as they come from the network: their heads, the buffer that puts them in order, the
// decoders behind it, and reports. The first byte says which codec; then each packet comes behind its length
// and the milliseconds that went by before it.
#include "fuzz/fuzzRoot.h"
#include "players/jitterBuffer.h"
#include "players/rtcpReports.h"
#include "players/soundCoder.h"
#include <algorithm>
#include <cstdint>

namespace {

constexpr int kFrame = 320;

// What comes of one packet can be no more than a whole second.
void play(jitterBuffer& buffer, soundDecoder& decoder, int64_t nowUs)
{
    std::vector<short> lane;
    for (int i = 0; i < 6 && lane.size() < kFrame; ++i) {
        tagHeldPacket packet;
        const jitterBuffer::TAKEN taken = buffer.take(nowUs, packet);
        if (taken == jitterBuffer::TAKEN::NOTHING)
            break;
        if (taken == jitterBuffer::TAKEN::PACKET)
            decoder.decode(packet.content, lane);
        else
            decoder.conceal(lane);
        expect(lane.size() <= 6 * soundCoder::SAMPLE_RATE);
    }
    expect(buffer.delayMs() >= jitterBuffer::LEAST_MS && buffer.delayMs() <= jitterBuffer::MOST_MS);
}

void take(const uint8_t* packet, int size, jitterBuffer& buffer, rtcpReports& reports, int64_t nowUs)
{
    if (rtpPacket::isRtcp(packet, size)) {
        reports.read(packet, size, nowUs);
        expect(reports.lossThereInPercent() >= 0 && reports.lossThereInPercent() <= 100);
        return;
    }
    tagRtpHead head;
    int start = 0;
    int length = 0;
    if (!rtpPacket::read(packet, size, head, start, length))
        return;
    expect(start >= rtpPacket::HEAD_BYTES && length >= 0 && start + length <= size);
    reports.took(head, 8000, nowUs, head.bMarker);
    const tagHeldPacket held = {head.nPayload,
                                QByteArray(reinterpret_cast<const char*>(packet) + start, length)};
    if (head.nPayload == 101)
        buffer.putSilent(head.nSequence, held, nowUs);
    else
        buffer.put(head.nSequence, head.nTime, 8000, held, nowUs);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const bool isThere = (gst_init(nullptr, nullptr), true);
    if (!isThere || size == 0)
        return 0;
    const auto decoder = soundDecoder::make(kSoundCodecs[data[0] % kSoundCodecs.size()].eCodec);
    expect(decoder != nullptr);
    jitterBuffer buffer;
    rtcpReports reports(1, "fuzz");
    int64_t nowUs = 0;
    for (size_t at = 1; at + 2 < size;) {
        const size_t length = std::min<size_t>(data[at], size - at - 2);
        nowUs += data[at + 1] * 1000;
        // A copy of its own, so that reading beyond it is seen.
        const std::vector<uint8_t> packet(data + at + 2, data + at + 2 + length);
        take(packet.data(), int(length), buffer, reports, nowUs);
        play(buffer, *decoder, nowUs);
        at += 2 + length;
    }
    expect(reports.report(nowUs).size() <= rtpPacket::MAX_BYTES);
    return 0;
}
