#pragma once
// The phone's message service: gives the calling thread its name among the phone's processes, and lets
// it receive what is sent to that name.
#include "support/host/api.h"

// Names the calling (user-interface) thread, such as "app_hxPhone", and listens. 0 when another process
// that is alive has the name, when this one has a name already, or when the name is none: letters,
// digits, "_", "-" and ".", at most 64.
HX_HOST_API int messageServiceStart(const char* name);
// True when another process that is alive has the name.
HX_HOST_API bool messageServiceIsTaken(const char* name);
// Removes the socket that a process of that name left behind when it was killed.
HX_HOST_API void messageServiceRemoveDead(const char* name);
// Ends the name and all connections; waits for answers end at once. A name can be taken again.
HX_HOST_API void messageServiceStop();
