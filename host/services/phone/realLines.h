#pragma once
#include "support/host/api.h"

// The phone's lines are real from here on, and those of the simulation are not: accounts register at their
// servers until the application object quits. hasPlayers: the media server runs; without it calls are made
// without sound. User-interface thread.
HX_HOST_API void realLinesStart(bool hasPlayers);
