#pragma once
#include <QByteArray>

// The address on which the two players of this device root meet: every root has one of its own, so that
// phones side by side on a machine do not hear each other. Without a root it is 127.0.0.1. Streams never
// leave the machine, whatever addresses a message names: they stand for the phone itself. Any thread.
QByteArray loopbackAddress();
