#pragma once

// From now on a note says when calls cannot be written into the history: once, and not during a call.
// User-interface thread.
void historyNoteInstall();
