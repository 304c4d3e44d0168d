#pragma once
// The phone's clock. On a phone it is the machine's. With a device root the machine's clock stays as it is,
// and the phone's own carries the difference, also over its next start. Any thread.
#include "support/host/api.h"

// UTC as the phone has it, in milliseconds since 1970.
long long phoneClockUtcMs();
// The clock is that from now on, as a time server says. What cannot be set or stored is traced; a difference
// that cannot be stored lasts until the phone ends.
HX_HOST_API void phoneClockFollowUtcMs(long long utcMs);
