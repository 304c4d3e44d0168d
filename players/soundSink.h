#pragma once
#include <gst/gst.h>

// The system's way for sound, in a state that says that it works; null when there is none. Looked for anew
// after a while, since a device may be plugged. The caller's to use or release. One thread.
GstElement* newSoundSink();
