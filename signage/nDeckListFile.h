#pragma once
// The records of the signage folder as they outlive a restart ("display.xml"). User-interface thread.
#include "signage/displayFrame.h"
#include <string>

enum : int { NDECK_LIST_LIMIT = 8 << 20 }; // bytes

std::string nDeckListText(const nDeckNodeList& list);
// Appends what the file holds, good or not, up to any damage. False when there is no such file; one that is
// damaged is kept aside.
bool nDeckListRead(nDeckNodeList& list);
