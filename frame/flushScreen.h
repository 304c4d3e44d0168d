#pragma once
// Paints what was just shown before slow work begins. Input that arrives meanwhile waits for its turn.
// User-interface thread.
void flushScreen();
