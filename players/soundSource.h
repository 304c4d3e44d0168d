#pragma once
#include <gst/gst.h>

// What HX_SOUND_SOURCE describes in the words of gst-launch-1.0 (a board whose microphone is not found by
// itself, or a file), else the system's way for sound that comes in, in a state that says that it works; null
// when there is none. The caller's to use or release. One thread.
GstElement* newSoundSource();
// It worked at first, and does no more: none is answered for a while.
void soundSourceFailed();
