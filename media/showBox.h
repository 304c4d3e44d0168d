#pragma once
// User-interface thread.

// Tells the user that there is nothing to play; closes by itself.
void showBoxNoMedia();
