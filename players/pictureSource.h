#pragma once
// Where the user's own pictures come from: a camera of the system, or what HX_PICTURE_SOURCE describes. Any
// thread.
#include <gst/gst.h>

// There is one; whether it works shows when it is opened.
bool pictureSourceIsThere();
// Null when there is none, or it cannot be made. Its pictures may be of any kind.
GstElement* newPictureSource();
