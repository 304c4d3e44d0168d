#pragma once
// The engine of the process: started with the first panel, never ended. User-interface thread.
#include "host/widgets/webPanel.h"

class QWebEngineProfile;

// What all pages share; nothing of it is stored. Null when the engine must not be started here, which is said
// once.
QWebEngineProfile* engineProfile(const tagWebPanelEvents& events);
