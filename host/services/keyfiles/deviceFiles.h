#pragma once
// What the phone does with its file system before it starts.
#include "support/host/api.h"

// Closes settings, data, media and run folder to other users of the machine; their names stay as they are.
// Folders of media that are missing are made. Where
// "/rundata" cannot be written, settings are kept in memory until the phone ends, its processes meet in a
// temporary folder, and the trace says so. Once, before the message service.
HX_HOST_API void deviceFilesStart();
// False when nothing can be stored, as deviceFilesStart has found.
HX_HOST_API bool deviceFilesAreStored();
// Removes what was made in the place of the run folder. At the end.
HX_HOST_API void deviceFilesStop();
