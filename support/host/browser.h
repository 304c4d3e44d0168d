#pragma once
#include "support/host/api.h"

// Makes the browser ready, hidden. User-interface thread.
HX_HOST_API void browserLoad();
// Shows the page at url, full screen.
HX_HOST_API void browserShow(const char* url);
