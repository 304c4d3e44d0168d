#pragma once
// What the window system's touch driver is told: how much it filters, and the mapping it applies.
#include "calibration/calibrationFit.h"

// The driver's filter of small movements, in counts of the panel; 0 turns it off. What cannot be set is
// traced.
void touchSetJitter(int x, int y);
// Stores the mapping for the driver, whole: 0 leaves the one before in force.
int touchSaveMapping(const calibration& cal);
