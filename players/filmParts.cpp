#include "players/filmParts.h"
#include <algorithm>
#include <iterator>

namespace {

const char* const kTimedContainers[] = {"qtdemux",  "matroskademux", "tsdemux", "mpegpsdemux",
                                        "flvdemux", "oggdemux",      "asfdemux"};
const char* const kOtherParts[] = {"avidemux",  "wavparse",        "id3demux",  "apedemux",       "h264parse",
                                   "h263parse", "mpeg4videoparse", "aacparse",  "mpegaudioparse", "ac3parse",
                                   "amrparse",  "flacparse",       "opusparse", "vorbisparse",    "dcaparse"};

template <int COUNT>
bool isOneOf(GstElementFactory* factory, const char* const (&names)[COUNT])
{
    const char* name = GST_OBJECT_NAME(factory);
    return std::any_of(std::begin(names), std::end(names),
                       [name](const char* known) { return g_strcmp0(name, known) == 0; });
}

gboolean noteOrientation(GstPad*, GstEvent** event, gpointer turns)
{
    static const char* const kTurned[] = {"rotate-0",        "rotate-90",      "rotate-180",
                                          "rotate-270",      "flip-rotate-0",  "flip-rotate-90",
                                          "flip-rotate-180", "flip-rotate-270"};
    if (GST_EVENT_TYPE(*event) != GST_EVENT_TAG)
        return TRUE;
    GstTagList* tags = nullptr;
    const char* orientation = nullptr;
    gst_event_parse_tag(*event, &tags);
    if (!gst_tag_list_peek_string_index(tags, GST_TAG_IMAGE_ORIENTATION, 0, &orientation))
        return TRUE;
    for (int i = 0; i < int(std::size(kTurned)); ++i) {
        if (g_strcmp0(orientation, kTurned[i]) == 0)
            *static_cast<int*>(turns) = i;
    }
    return TRUE;
}

} // namespace

filmParts::CHOICE filmParts::choose(GstElementFactory* factory)
{
    return isOneOf(factory, kTimedContainers) || isOneOf(factory, kOtherParts) ? TAKE : LEAVE;
}

bool filmParts::tellsTimesToShow(GstElementFactory* factory)
{
    return isOneOf(factory, kTimedContainers);
}

filmParts::CHOICE filmParts::chooseForSound(GstElementFactory* factory)
{
    constexpr GstElementFactoryListType kCoded =
        GST_ELEMENT_FACTORY_TYPE_DECODER | GST_ELEMENT_FACTORY_TYPE_PARSER;
    const bool isSound =
        gst_element_factory_list_is_type(factory, kCoded | GST_ELEMENT_FACTORY_TYPE_MEDIA_AUDIO);
    return isSound ? TAKE : LEAVE;
}

int filmParts::quarterTurns(GstPad* pad)
{
    int turns = 0;
    gst_pad_sticky_events_foreach(pad, noteOrientation, &turns);
    return turns;
}
