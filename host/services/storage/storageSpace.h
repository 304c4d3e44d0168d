#pragma once
#include "support/host/storage.h"

// The reserve that whoever only knows a path has to keep.
COUNT_ENOUTH_SPACE_INDEX storageSpaceOf(const char* path);
