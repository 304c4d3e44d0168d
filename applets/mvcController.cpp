#include "applets/mvcController.h"

MVCController::~MVCController() = default;
