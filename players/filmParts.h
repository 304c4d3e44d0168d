#pragma once
// What the media toolkit may use to take a film apart. Any thread.
#include <gst/gst.h>

namespace filmParts {

// What the toolkit asks of whoever chooses the parts of a film ("autoplug-select").
enum CHOICE : int { TAKE = 0, LEAVE = 2 };

// Parts that take one file apart and open nothing else: what reads lists of files or descriptions of streams
// is none of them.
CHOICE choose(GstElementFactory* factory);
// Decoders of sound.
CHOICE chooseForSound(GstElementFactory* factory);
// The part is of a container that tells when each picture is shown; others tell at most when it is decoded.
bool tellsTimesToShow(GstElementFactory* factory);
// How often the pictures that leave the pad are to be turned by 90 degrees, clockwise: 0 to 3.
int quarterTurns(GstPad* pad);

} // namespace filmParts
