#pragma once
#include "support/host/api.h"

// The phone's lines are real from here on, and those of the simulation are not: accounts register at their
// servers until the application object quits. User-interface thread.
HX_HOST_API void realLinesStart();
