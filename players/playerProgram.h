#pragma once
#include "support/host/player.h"

class QCoreApplication;

// What both player programs begin with: options, the device root, the media toolkit, the name among the
// phone's threads. Main thread.
namespace playerProgram {

// Reads "--sysroot DIR" and takes the name. False, with a line on the standard error stream, when it cannot.
bool begin(QCoreApplication& application, const char* threadName);
// Tells the others that this player is there, and runs until the process is told to end. Answers the exit
// code.
int run(QCoreApplication& application, PLAYER_PROGRAM program);

} // namespace playerProgram
