#pragma once
#include <gst/gst.h>
#include <initializer_list>

// What HX_SOUND_SINK describes in the words of gst-launch-1.0 (a board whose device is not found by itself),
// else the system's way for sound, in a state that says that it works; null when there is none. Looked for
// anew after a while, since a device may be plugged. The caller's to use or release. One thread.
GstElement* newSoundSink();
// One of the parts of a bin is made by the factory of one of these names.
bool soundBinHas(GstElement* bin, std::initializer_list<const char*> names);
// The drivers write a page of lines at each look that finds no device: no more.
void soundDriversBeStill();
