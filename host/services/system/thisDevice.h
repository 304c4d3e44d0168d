#pragma once

// True on a phone: there is no device root, and the machine's own file system is a phone's. Only then does
// the host change the machine it runs on (its clock, its network, a restart). Any thread.
bool isThisDevice();
