#pragma once
// A page that waits for a disk, and neither freezes nor takes touches meanwhile. User-interface thread.
#include "support/file/chDiskWork.h"
#include <functional>

class QWidget;

// Returns when the work is over, 1, or when a person cancels the box with its bar that comes up when it takes
// longer than a moment, 0, as when page has gone; the work goes on then. Events are taken meanwhile, so page
// may be gone afterwards. text: English key; percent: asked while the box is seen, 0 to 100.
int diskWait(chDiskWork& work, QWidget* page, const char* text, const std::function<int()>& percent);
