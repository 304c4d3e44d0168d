#pragma once
#include "support/host/api.h"

// From the loading screen to the home screen. User-interface thread, from the main program only.

// Shows the loading screen and has the module build its windows step by step; then the home screen comes.
// Returns at once: the steps run from the event loop.
HX_HOST_API void hostBoot();
