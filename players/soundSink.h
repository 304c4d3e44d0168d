#pragma once
#include <gst/gst.h>

// What HX_SOUND_SINK describes in the words of gst-launch-1.0 (a board whose device is not found by itself),
// else the system's way for sound, in a state that says that it works; null when there is none. Looked for
// anew after a while, since a device may be plugged. The caller's to use or release. One thread.
GstElement* newSoundSink();
