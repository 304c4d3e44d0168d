#include "players/soundChain.h"
#include "support/host/trace.h"

namespace {

// To the part itself: each pad of a bin is one more step for each packet.
bool linkToPart(GstElement* bin, GstPad* pad)
{
    const bool isSource = gst_pad_get_direction(pad) == GST_PAD_SRC;
    GstPad* other = gst_bin_find_unlinked_pad(GST_BIN(bin), isSource ? GST_PAD_SINK : GST_PAD_SRC);
    if (!other)
        return false;
    const GstPadLinkReturn linked = isSource ? gst_pad_link(pad, other) : gst_pad_link(other, pad);
    gst_object_unref(other);
    return linked == GST_PAD_LINK_OK;
}

} // namespace

GstPad* soundChain::newPad(const char* caps, GstPadDirection direction)
{
    GstCaps* kind = gst_caps_from_string(caps);
    GstPadTemplate* form =
        gst_pad_template_new(direction == GST_PAD_SRC ? "src" : "sink", direction, GST_PAD_ALWAYS, kind);
    gst_caps_unref(kind);
    GstPad* pad = gst_pad_new_from_template(form, nullptr);
    gst_object_unref(gst_object_ref_sink(form));
    gst_object_ref_sink(pad);
    return pad;
}

std::unique_ptr<soundChain> soundChain::make(const char* description, const char* in, const char* out)
{
    std::unique_ptr<soundChain> chain(new soundChain);
    if (chain->open(description, in, out))
        return chain;
    nuxTrace(TRACE_NOTE, "sound cannot go through \"%s\"", description);
    return nullptr;
}

bool soundChain::open(const char* description, const char* in, const char* out)
{
    GError* error = nullptr;
    m_pBin = gst_parse_bin_from_description(description, FALSE, &error);
    const bool isWhole = m_pBin && !error;
    g_clear_error(&error);
    if (m_pBin)
        gst_object_ref_sink(m_pBin);
    m_pIn = newPad(in, GST_PAD_SRC);
    m_pOut = newPad(out, GST_PAD_SINK);
    gst_pad_set_element_private(m_pOut, this);
    gst_pad_set_chain_function(m_pOut, onOutput);
    if (!isWhole || !linkToPart(m_pBin, m_pIn) || !linkToPart(m_pBin, m_pOut))
        return false;
    gst_pad_set_active(m_pOut, TRUE);
    gst_pad_set_active(m_pIn, TRUE);
    if (gst_element_set_state(m_pBin, GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE)
        return false;
    GstSegment segment;
    gst_segment_init(&segment, GST_FORMAT_TIME);
    GstCaps* caps = gst_caps_from_string(in);
    gst_pad_push_event(m_pIn, gst_event_new_stream_start("call"));
    const bool isTaken = gst_pad_push_event(m_pIn, gst_event_new_caps(caps));
    gst_caps_unref(caps);
    gst_pad_push_event(m_pIn, gst_event_new_segment(&segment));
    return isTaken;
}

soundChain::~soundChain()
{
    if (m_pIn)
        gst_pad_set_active(m_pIn, FALSE);
    if (m_pBin) {
        gst_element_set_state(m_pBin, GST_STATE_NULL);
        gst_object_unref(m_pBin);
    }
    if (m_pOut)
        gst_pad_set_active(m_pOut, FALSE);
    gst_clear_object(&m_pIn);
    gst_clear_object(&m_pOut);
}

GstElement* soundChain::part(const char* name) const
{
    GstElement* found = gst_bin_get_by_name(GST_BIN(m_pBin), name);
    if (found)
        gst_object_unref(found); // the bin keeps it
    return found;
}

GstFlowReturn soundChain::onOutput(GstPad* pad, GstObject*, GstBuffer* buffer)
{
    auto* chain = static_cast<soundChain*>(gst_pad_get_element_private(pad));
    GstMapInfo map;
    if (gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        chain->output().append(QByteArray(reinterpret_cast<const char*>(map.data), qsizetype(map.size)));
        gst_buffer_unmap(buffer, &map);
    }
    gst_buffer_unref(buffer);
    return GST_FLOW_OK;
}

bool soundChain::push(const void* data, int bytes, qint64 ns)
{
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, gsize(bytes), nullptr);
    gst_buffer_fill(buffer, 0, data, gsize(bytes));
    GST_BUFFER_PTS(buffer) = GstClockTime(m_nTime);
    GST_BUFFER_DURATION(buffer) = GstClockTime(ns);
    m_nTime += ns;
    return gst_pad_push(m_pIn, buffer) == GST_FLOW_OK;
}

bool soundChain::pushGap(qint64 ns)
{
    GstEvent* gap = gst_event_new_gap(GstClockTime(m_nTime), GstClockTime(ns));
    m_nTime += ns;
    return gst_pad_push_event(m_pIn, gap);
}
