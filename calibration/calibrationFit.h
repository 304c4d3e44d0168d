#pragma once
// The mapping from the positions of a touch panel to those of the screen. Any thread.
#include "support/host/api.h"

enum : int { CALIBRATION_POINTS = 5, CALIBRATION_PARTS = 7, CALIBRATION_TOLERANCE = 10 };

struct calibration
{
    int x[CALIBRATION_POINTS] = {};   // where the panel was touched
    int xfb[CALIBRATION_POINTS] = {}; // where the screen is there, in pixels
    int y[CALIBRATION_POINTS] = {};
    int yfb[CALIBRATION_POINTS] = {};
    // screen x = (a[1] x + a[2] y + a[0]) / a[6], screen y = (a[4] x + a[5] y + a[3]) / a[6]
    int a[CALIBRATION_PARTS] = {};
};

// Fits a to the five points; false, and a as it was, when they do not lie in a plane's three corners.
HX_MODULE_API bool perform_calibration(calibration* cal);
// True when a takes each point to its place, CALIBRATION_TOLERANCE pixels off at most in x and in y.
bool calibrationHolds(const calibration& cal);
