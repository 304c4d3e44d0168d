#pragma once
// What a host calls. User-interface thread.
#include "support/host/api.h"

// Somebody else has changed the list of stocks: the page shows it, and asks for no quote. 0 while there is no
// page.
HX_MODULE_API int UpdataStockData();
