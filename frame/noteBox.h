#pragma once
// Message boxes of the pages. Texts are English keys; the box shows them translated. User-interface thread.
#include "support/host/api.h"

class QWidget;

// Title "Note", one button. timeoutMs: closes by itself after so many milliseconds, -1 never.
void noteBox(const char* text, QWidget* parent, int timeoutMs = -1);
// For what nobody has just asked for, as an answer that comes late: none while another window is before the
// page, such as a call that rings, since the box would take its touches and keys.
void noteUnlessCovered(const char* text, QWidget* page, int timeoutMs);
// Two buttons; non-zero on yes.
int questionBox(const char* text, QWidget* parent, const char* title = HX_TR("Note"));
// Answers saved, the result of a save of keys or of a document; when it is 0, a note tells the user. The page
// then stays open with what was typed.
int noteUnlessSaved(int saved, QWidget* parent);
