#include "applets/mvcBusinessLogic.h"

MVCBusinessLogic::~MVCBusinessLogic() = default;
