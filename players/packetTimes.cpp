#include "players/packetTimes.h"
#include <algorithm>
#include <gst/rtp/rtp.h>

namespace {

// What is due within one such time goes out at its beginning: few wake-ups cost little, and the receiver
// keeps everything until it is due anyway.
constexpr qint64 kTurn = 120 * GST_MSECOND;
constexpr GstClockTime kPicture = 40 * GST_MSECOND; // of a file that tells no rate
constexpr qsizetype kTimesKept = 64;                // more than any stream puts out of order

// Negative before the beginning of the segment; false outside of all time.
bool runningTime(const GstSegment& segment, GstClockTime position, gint64& running)
{
    guint64 value = 0;
    const int sign = gst_segment_to_running_time_full(&segment, GST_FORMAT_TIME, position, &value);
    running = sign < 0 ? -gint64(value) : gint64(value);
    return sign != 0;
}

struct tagPacketForm
{
    int nRate = 0; // of the stamps, in Hz
    guint nSource = 0;
};

tagPacketForm formOf(GstPad* pad)
{
    tagPacketForm form;
    GstCaps* caps = gst_pad_get_current_caps(pad);
    if (caps) {
        const GstStructure* structure = gst_caps_get_structure(caps, 0);
        gst_structure_get_int(structure, "clock-rate", &form.nRate);
        gst_structure_get_uint(structure, "ssrc", &form.nSource);
    }
    gst_clear_caps(&caps);
    return form;
}

// At once: all packets have gone, and what the decoder kept back is due soon.
void sendEnd(GstPad* pad)
{
    GstBuffer* packet = gst_rtp_buffer_new_allocate(0, 0, 0);
    GstRTPBuffer rtp = GST_RTP_BUFFER_INIT;
    if (gst_rtp_buffer_map(packet, GST_MAP_READWRITE, &rtp)) {
        gst_rtp_buffer_set_payload_type(&rtp, packetTimes::END_PAYLOAD);
        gst_rtp_buffer_set_ssrc(&rtp, formOf(pad).nSource);
        gst_rtp_buffer_unmap(&rtp);
    }
    gst_pad_chain(pad, packet);
}

void writeStamp(GstBuffer* packet, gint64 running, int rate, bool isUnseen)
{
    GstRTPBuffer rtp = GST_RTP_BUFFER_INIT;
    if (!gst_rtp_buffer_map(packet, GST_MAP_READWRITE, &rtp))
        return;
    const gint64 second = GST_SECOND;
    gst_rtp_buffer_set_timestamp(&rtp, guint32(running / second * rate + running % second * rate / second));
    if (isUnseen)
        gst_rtp_buffer_set_payload_type(&rtp, packetTimes::UNSEEN_PAYLOAD);
    gst_rtp_buffer_unmap(&rtp);
}

} // namespace

void packetTimes::watch(GstElement* payloader, GstElement* sink)
{
    GstPad* in = gst_element_get_static_pad(payloader, "sink");
    GstPad* out = gst_element_get_static_pad(sink, "sink");
    if (m_bPicture)
        gst_pad_add_probe(in, GST_PAD_PROBE_TYPE_BUFFER, onContent, this, nullptr);
    gst_pad_add_probe(out, GstPadProbeType(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_BUFFER_LIST),
                      onPacket, this, nullptr);
    if (m_bPicture)
        gst_pad_add_probe(out, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, onEvent, this, nullptr);
    gst_object_unref(in);
    gst_object_unref(out);
}

GstPadProbeReturn packetTimes::onContent(GstPad*, GstPadProbeInfo* info, gpointer self)
{
    GstBuffer* content = gst_buffer_make_writable(GST_PAD_PROBE_INFO_BUFFER(info));
    static_cast<packetTimes*>(self)->noteContent(content);
    info->data = content;
    return GST_PAD_PROBE_OK;
}

// Payloaders keep the time to show only.
void packetTimes::noteContent(GstBuffer* content)
{
    if (!GST_BUFFER_DTS_IS_VALID(content))
        GST_BUFFER_DTS(content) = GST_BUFFER_PTS_IS_VALID(content) ? GST_BUFFER_PTS(content) : m_next;
    if (!GST_BUFFER_PTS_IS_VALID(content))
        m_bDecodeOrder = true;
    if (m_bDecodeOrder)
        GST_BUFFER_PTS(content) = GST_BUFFER_DTS(content);
    if (!GST_BUFFER_DURATION_IS_VALID(content) || GST_BUFFER_DURATION(content) == 0)
        GST_BUFFER_DURATION(content) = kPicture;
    m_next = GST_BUFFER_DTS(content) + GST_BUFFER_DURATION(content);
    m_times.append({GST_BUFFER_PTS(content), GST_BUFFER_DTS(content)});
    if (m_times.size() > kTimesKept)
        m_times.removeFirst();
}

GstClockTime packetTimes::decodeTime(GstClockTime shown) const
{
    for (auto time = m_times.crbegin(); time != m_times.crend(); ++time) {
        if (time->shown == shown)
            return std::min(time->decoded, shown);
    }
    return shown;
}

GstPadProbeReturn packetTimes::onPacket(GstPad* pad, GstPadProbeInfo* info, gpointer self)
{
    auto* times = static_cast<packetTimes*>(self);
    GstEvent* event = gst_pad_get_sticky_event(pad, GST_EVENT_SEGMENT, 0);
    if (!event)
        return GST_PAD_PROBE_OK;
    times->forgetOnJump(event);
    const GstSegment* segment = nullptr;
    gst_event_parse_segment(event, &segment);
    const int rate = formOf(pad).nRate;
    if (info->type & GST_PAD_PROBE_TYPE_BUFFER_LIST) {
        GstBufferList* list = gst_buffer_list_make_writable(GST_PAD_PROBE_INFO_BUFFER_LIST(info));
        for (guint i = 0; i < gst_buffer_list_length(list); ++i)
            times->setTimes(gst_buffer_list_get_writable(list, i), *segment, rate);
        info->data = list;
    } else {
        GstBuffer* packet = gst_buffer_make_writable(GST_PAD_PROBE_INFO_BUFFER(info));
        times->setTimes(packet, *segment, rate);
        info->data = packet;
    }
    gst_event_unref(event);
    return GST_PAD_PROBE_OK;
}

GstPadProbeReturn packetTimes::onEvent(GstPad* pad, GstPadProbeInfo* info, gpointer)
{
    if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_EOS)
        sendEnd(pad);
    return GST_PAD_PROBE_OK;
}

void packetTimes::forgetOnJump(GstEvent* event)
{
    const guint32 jump = gst_event_get_seqnum(event);
    if (jump != m_nJump)
        m_end = 0;
    m_nJump = jump;
}

// The packet still lasts until what it holds has been shown, so that the film ends in its time.
void packetTimes::setTimes(GstBuffer* packet, const GstSegment& segment, int rate)
{
    const GstClockTime shown = GST_BUFFER_PTS(packet);
    gint64 running = 0;
    gint64 due = 0;
    if (!GST_CLOCK_TIME_IS_VALID(shown) || rate <= 0 || !runningTime(segment, shown, running) ||
        !runningTime(segment, decodeTime(shown), due))
        return;
    writeStamp(packet, running, rate, m_bUnseen || (m_bPicture && shown < segment.start));
    due = std::max(due, gint64(segment.base));
    GstClockTime turn =
        gst_segment_position_from_running_time(&segment, GST_FORMAT_TIME, guint64(due - due % kTurn));
    if (!GST_CLOCK_TIME_IS_VALID(turn))
        turn = segment.start;
    m_end = std::max(m_end, shown);
    GST_BUFFER_DURATION(packet) = m_end > turn ? m_end - turn : 0;
    GST_BUFFER_PTS(packet) = GST_BUFFER_DTS(packet) = turn;
}
