#include "players/soundSource.h"
#include "host/services/players/soundPlaces.h"
#include "players/callDesk.h"
#include "players/soundLooks.h"
#include "players/soundSink.h"
#include "support/host/trace.h"
#include <cstdlib>

namespace {

constexpr int kUsInMs = 1000;

GstElement* makeSource()
{
    const char* described = getenv("HX_SOUND_SOURCE");
    if (!described || !*described)
        return gst_element_factory_make("autoaudiosrc", nullptr);
    GError* error = nullptr;
    GstElement* source = gst_parse_bin_from_description(described, TRUE, &error);
    if (error)
        nuxTrace(TRACE_NOTE, "HX_SOUND_SOURCE: %s", error->message);
    g_clear_error(&error);
    return source;
}

bool isDescribed()
{
    const char* described = getenv("HX_SOUND_SOURCE");
    return described && *described;
}

soundLooks g_looks;

qint64 nowMs()
{
    return callDesk::nowUs() / kUsInMs;
}

} // namespace

void soundSourceFailed()
{
    if (!g_looks.hasLooked())
        nuxTrace(TRACE_NOTE, "no microphone is found, calls are silent");
    g_looks.inVain(nowMs(), soundPlaces());
}

GstElement* newSoundSource()
{
    if (!g_looks.isDue(nowMs(), soundPlaces(), isDescribed()))
        return nullptr;
    soundDriversBeStill();
    GstElement* source = makeSource();
    // Where nothing works, the toolkit's own choice is one that makes sound itself.
    const bool works = source && gst_element_set_state(source, GST_STATE_READY) != GST_STATE_CHANGE_FAILURE &&
                       (isDescribed() || !soundBinHas(source, {"fakesrc", "audiotestsrc"}));
    if (works)
        return source;
    soundSourceFailed();
    if (source) {
        gst_element_set_state(source, GST_STATE_NULL);
        gst_object_unref(gst_object_ref_sink(source));
    }
    return nullptr;
}
