#include "players/soundSink.h"
#include "host/services/players/soundPlaces.h"
#include "players/callDesk.h"
#include "players/soundLooks.h"
#include "support/host/trace.h"
#include <cstdlib>
#include <dlfcn.h>

namespace {

constexpr int kUsInMs = 1000;

void sayNothing(const char*, int, const char*, int, const char*, ...) {}

// The drivers write a page of lines at each look that finds no device.
void silenceDrivers()
{
    setenv("ALSOFT_LOGLEVEL", "0", 0);
    using Handler = void (*)(const char*, int, const char*, int, const char*, ...);
    using SetHandler = int (*)(Handler);
    void* alsa = dlopen("libasound.so.2", RTLD_LAZY);
    void* set = alsa ? dlsym(alsa, "snd_lib_error_set_handler") : nullptr;
    if (set)
        reinterpret_cast<SetHandler>(set)(sayNothing);
}

GstElement* makeSink()
{
    const char* described = getenv("HX_SOUND_SINK");
    if (!described || !*described)
        return gst_element_factory_make("autoaudiosink", nullptr);
    GError* error = nullptr;
    GstElement* sink = gst_parse_bin_from_description(described, TRUE, &error);
    if (error)
        nuxTrace(TRACE_NOTE, "HX_SOUND_SINK: %s", error->message);
    g_clear_error(&error);
    return sink;
}

} // namespace

bool soundBinHas(GstElement* bin, std::initializer_list<const char*> names)
{
    bool has = false;
    GstIterator* children = gst_bin_iterate_recurse(GST_BIN(bin));
    GValue item = G_VALUE_INIT;
    while (gst_iterator_next(children, &item) == GST_ITERATOR_OK) {
        GstElementFactory* factory = gst_element_get_factory(GST_ELEMENT(g_value_get_object(&item)));
        for (const char* name : names)
            has = has || (factory && g_strcmp0(GST_OBJECT_NAME(factory), name) == 0);
        g_value_reset(&item);
    }
    g_value_unset(&item);
    gst_iterator_free(children);
    return has;
}

void soundDriversBeStill()
{
    static const bool isSilent = (silenceDrivers(), true);
    (void)isSilent;
}

GstElement* newSoundSink()
{
    static soundLooks looks;
    const qint64 now = callDesk::nowUs() / kUsInMs;
    const char* described = getenv("HX_SOUND_SINK");
    if (!looks.isDue(now, soundPlaces(), described && *described))
        return nullptr;
    soundDriversBeStill();
    GstElement* sink = makeSink();
    if (sink && gst_element_set_state(sink, GST_STATE_READY) != GST_STATE_CHANGE_FAILURE &&
        !soundBinHas(sink, {"fakesink"})) // the toolkit's own choice where nothing works
        return sink;
    if (!looks.hasLooked())
        nuxTrace(TRACE_NOTE, "no sound device is found, films play without sound");
    looks.inVain(now, soundPlaces());
    if (sink) {
        gst_element_set_state(sink, GST_STATE_NULL);
        gst_object_unref(gst_object_ref_sink(sink));
    }
    return nullptr;
}
