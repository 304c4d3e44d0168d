#include "applets/mvcData.h"

MVCData::~MVCData() = default;
