#include "players/soundEnd.h"
#include "support/host/trace.h"
#include <gst/audio/audio.h>

namespace {

GstElement* add(GstElement* pipeline, const char* name)
{
    GstElement* element = gst_element_factory_make(name, nullptr);
    if (!element || !gst_bin_add(GST_BIN(pipeline), element)) {
        nuxTrace(TRACE_NOTE, "the element %s is missing", name);
        return nullptr;
    }
    return element;
}

// The volume counts in floats.
void setFloats(GstElement* form)
{
    GstCaps* caps = gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, GST_AUDIO_NE(F32), "layout",
                                        G_TYPE_STRING, "interleaved", nullptr);
    g_object_set(form, "caps", caps, nullptr);
    gst_caps_unref(caps);
}

} // namespace

GstElement* addSoundEnd(GstElement* pipeline, GstElement* sink, soundVolume& volume)
{
    gst_bin_add(GST_BIN(pipeline), sink);
    GstElement* floats = add(pipeline, "audioconvert");
    GstElement* form = add(pipeline, "capsfilter");
    GstElement* convert = add(pipeline, "audioconvert");
    GstElement* resample = add(pipeline, "audioresample");
    if (!floats || !form || !convert || !resample)
        return nullptr;
    setFloats(form);
    GstPad* pad = gst_element_get_static_pad(form, "src");
    volume.watch(pad);
    gst_object_unref(pad);
    return gst_element_link_many(floats, form, convert, resample, sink, nullptr) ? floats : nullptr;
}
