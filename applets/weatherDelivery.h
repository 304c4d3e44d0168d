#pragma once
// The ways of a forecast from the logic to the controller, and from there to the page, which both stand on
// them. User-interface thread.
#include "support/host/object.h"
#include "support/host/weather.h"

// By the name of the view; weatherController.cpp has it.
void weatherDeliver(const chReferObject& view, const tagMoreDaysInfo& info);
// To the page: view is one, or null for the one that there is; dlgWeather.cpp has it.
void weatherShowOnPage(chObject* view, const tagMoreDaysInfo& info);
