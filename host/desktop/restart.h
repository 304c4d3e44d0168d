#pragma once
// A reset to the factory's settings takes away what the running phone has read and shown: it starts anew,
// through the boot screen. User-interface thread, from the main program only.
#include "support/host/api.h"
#include <QStringList>

// What the event loop ends with when the phone is to start anew.
enum { HOST_START_ANEW = 64 };

// From now on: when the settings have been put back, the user is told, and a phone on its own device restarts
// the device; any other one ends its event loop with HOST_START_ANEW.
HX_HOST_API void hostFollowFactoryReset();
// Becomes a new process of the same number, with these arguments. Everything of the old one is closed.
// Returns when the program cannot be run.
HX_HOST_API void hostStartAnew(const QStringList& arguments);
