#pragma once
#include "support/host/api.h"

// Ends the program's event loop cleanly on SIGTERM, SIGINT, SIGHUP and SIGQUIT. User-interface thread, once
// there is an application object.
HX_HOST_API void endOnSignals();
