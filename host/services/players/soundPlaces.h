#pragma once
#include "support/host/api.h"
#include <QByteArray>

// What there is to be found on this machine by whoever looks for a loudspeaker or a microphone: device files
// and the sockets of sound servers. Of the machine itself, whatever the device root is. Any thread.
HX_HOST_API QByteArray soundPlaces();
