#pragma once
// A reset to the factory's settings takes away what the running phone has read and shown, and settings such
// as the language wait for a restart: the phone starts anew, through the boot screen. User-interface thread,
// from the main program only.
#include "support/host/api.h"
#include <QStringList>

// What the event loop ends with when the phone is to start anew: with its factory settings, or as it is.
enum { HOST_START_ANEW = 64, HOST_START_AGAIN = 65 };

// From now on: when the settings have been put back, the user is told, and a phone on its own device restarts
// the device; any other one ends its event loop with HOST_START_ANEW.
HX_HOST_API void hostFollowFactoryReset();
// From now on: a restart of a phone that is not on its own device ends its event loop with HOST_START_AGAIN.
HX_HOST_API void hostFollowRestarts();
// Becomes a new process of the same number, with these arguments. Everything of the old one is closed.
// result: what the event loop ended with; for any but the two above, and when the program cannot be run, it
// returns.
HX_HOST_API void hostStartAnew(const QStringList& arguments, int result);
