#pragma once
// The engine of the process: started with the first panel, or before it, and never ended. User-interface
// thread.
#include "host/web/engine.h"
#include "host/widgets/webPanel.h"

// Null when the engine must not be started here, which is said once.
const tagEngine* engineOf(const tagWebPanelEvents& events);
