#pragma once
#include "players/soundVolume.h"

// The way of decoded sound to the loudspeaker: adds it to the pipeline and answers its first element, or
// null, with a trace line, when a part is missing. sink: of newSoundSink(), taken over. volume: is as loud as
// this from here on; it outlives the pipeline.
GstElement* addSoundEnd(GstElement* pipeline, GstElement* sink, soundVolume& volume);
