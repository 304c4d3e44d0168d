#pragma once
#include "support/host/api.h"
class QWidget;

enum { BOX_NOTE = 0, BOX_QUESTION = 1 };

// A modal box; returns when it is closed. title and text are UTF-8, already translated. type: BOX_NOTE
// has one button, BOX_QUESTION two; returns non-zero on yes. timeoutMs: closes by itself after so many
// milliseconds (as "no"); -1 never. User-interface thread.
HX_HOST_API int xMessageBox(const char* title, const char* text, int type, QWidget* parent, int timeoutMs);
