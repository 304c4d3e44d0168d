#pragma once
// The light behind the screen. User-interface thread.

// By the kernel's switches in "/sys/class/backlight"; a device root without them has no light.
void backlightSwitch(bool on);
