#include "players/pictureOrder.h"

namespace {

constexpr size_t kKeptBack = 17; // no decoder holds more; what is older belongs to a picture that was lost

} // namespace

void pictureOrder::watch(GstElement* decoder)
{
    GstPad* in = gst_element_get_static_pad(decoder, "sink");
    GstPad* out = gst_element_get_static_pad(decoder, "src");
    gst_pad_add_probe(in, GST_PAD_PROBE_TYPE_BUFFER, onCoded, this, nullptr);
    gst_pad_add_probe(out, GST_PAD_PROBE_TYPE_BUFFER, onPicture, this, nullptr);
    gst_pad_add_probe(out, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, onEvent, this, nullptr);
    gst_object_unref(in);
    gst_object_unref(out);
}

GstPadProbeReturn pictureOrder::onCoded(GstPad*, GstPadProbeInfo* info, gpointer self)
{
    auto* order = static_cast<pictureOrder*>(self);
    order->m_times.insert(GST_BUFFER_PTS(GST_PAD_PROBE_INFO_BUFFER(info)));
    if (order->m_times.size() > kKeptBack)
        order->m_times.erase(order->m_times.begin());
    return GST_PAD_PROBE_OK;
}

GstPadProbeReturn pictureOrder::onPicture(GstPad*, GstPadProbeInfo* info, gpointer self)
{
    auto* order = static_cast<pictureOrder*>(self);
    if (order->m_times.empty())
        return GST_PAD_PROBE_OK;
    GstBuffer* picture = gst_buffer_make_writable(GST_PAD_PROBE_INFO_BUFFER(info));
    GST_BUFFER_PTS(picture) = *order->m_times.begin();
    order->m_times.erase(order->m_times.begin());
    info->data = picture;
    return GST_PAD_PROBE_OK;
}

// The film is over, and so is what was lost of it.
GstPadProbeReturn pictureOrder::onEvent(GstPad*, GstPadProbeInfo* info, gpointer self)
{
    if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_SEGMENT_DONE)
        static_cast<pictureOrder*>(self)->m_times.clear();
    return GST_PAD_PROBE_OK;
}
