#include "players/streamTimes.h"
#include "players/packetTimes.h"
#include <gst/rtp/rtp.h>

namespace {

// Decoders keep the time of a picture, and nothing else of it: its lowest bit tells what is not shown.
constexpr GstClockTime kUnseen = 1;

qint64 nowOf(GstPad* pad)
{
    GstElement* element = gst_pad_get_parent_element(pad);
    GstClock* clock = element ? gst_element_get_clock(element) : nullptr;
    const qint64 now = clock ? qint64(gst_clock_get_time(clock) - gst_element_get_base_time(element)) : 0;
    gst_clear_object(&clock);
    gst_clear_object(&element);
    return now;
}

} // namespace

void streamTimes::watch(GstPad* from, GstPad* to)
{
    gst_pad_add_probe(from, GST_PAD_PROBE_TYPE_BUFFER, onArrival, this, nullptr);
    gst_pad_add_probe(to, GST_PAD_PROBE_TYPE_BUFFER, onUse, this, nullptr);
}

bool streamTimes::read(GstBuffer* packet, tagCount& count, qint64& streamNs) const
{
    GstRTPBuffer rtp = GST_RTP_BUFFER_INIT;
    if (!gst_rtp_buffer_map(packet, GST_MAP_READ, &rtp))
        return false;
    const quint32 source = gst_rtp_buffer_get_ssrc(&rtp);
    if (source != count.nSource)
        count = {source, 0, 0, 0};
    count.nPayload = gst_rtp_buffer_get_payload_type(&rtp);
    if (count.nPayload == packetTimes::END_PAYLOAD) {
        gst_rtp_buffer_unmap(&rtp);
        return true;
    }
    // A step back is one: a picture may come after those that refer to it, and sound may begin before zero.
    const quint32 stamp = gst_rtp_buffer_get_timestamp(&rtp);
    count.nTime += qint32(stamp - count.nStamp);
    count.nStamp = stamp;
    gst_rtp_buffer_unmap(&rtp);
    const qint64 second = GST_SECOND;
    streamNs = count.nTime / m_nRate * second + count.nTime % m_nRate * second / m_nRate;
    return true;
}

GstPadProbeReturn streamTimes::onArrival(GstPad* pad, GstPadProbeInfo* info, gpointer self)
{
    auto* times = static_cast<streamTimes*>(self);
    qint64 streamNs = 0;
    if (!times->read(GST_PAD_PROBE_INFO_BUFFER(info), times->m_arrived, streamNs))
        return GST_PAD_PROBE_DROP;
    // What is not shown comes together with what is shown after it, whatever its own time.
    const int payload = times->m_arrived.nPayload;
    if (payload != packetTimes::UNSEEN_PAYLOAD && payload != packetTimes::END_PAYLOAD)
        times->m_clock.arrived(times->m_arrived.nSource, streamNs, nowOf(pad));
    return GST_PAD_PROBE_OK;
}

GstPadProbeReturn streamTimes::onUse(GstPad* pad, GstPadProbeInfo* info, gpointer self)
{
    auto* times = static_cast<streamTimes*>(self);
    GstBuffer* packet = GST_PAD_PROBE_INFO_BUFFER(info);
    qint64 streamNs = 0;
    if (!times->read(packet, times->m_used, streamNs))
        return GST_PAD_PROBE_DROP;
    if (times->m_used.nPayload == packetTimes::END_PAYLOAD) {
        gst_pad_send_event(pad, gst_event_new_segment_done(GST_FORMAT_TIME, GST_CLOCK_TIME_NONE));
        return GST_PAD_PROBE_DROP;
    }
    const bool isUnseen = times->m_used.nPayload == packetTimes::UNSEEN_PAYLOAD;
    if (isUnseen && !times->m_bPicture)
        return GST_PAD_PROBE_DROP;
    packet = gst_buffer_make_writable(packet);
    const auto due = GstClockTime(times->m_clock.due(times->m_used.nSource, streamNs));
    GST_BUFFER_PTS(packet) = isUnseen ? due | kUnseen : due & ~kUnseen;
    GST_BUFFER_DTS(packet) = GST_CLOCK_TIME_NONE;
    info->data = packet;
    return GST_PAD_PROBE_OK;
}

bool streamTimes::isUnseen(GstBuffer* picture)
{
    return GST_BUFFER_PTS_IS_VALID(picture) && (GST_BUFFER_PTS(picture) & kUnseen);
}
