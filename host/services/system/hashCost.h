#pragma once
// What it costs to check a password against a hash. Any thread.
#include "support/host/api.h"
#include <string_view>

// True for a hash whose method and cost are known to be bounded as support/host/password.h says. hash: as the
// password file has it, or its beginning.
HX_HOST_API bool hashCostIsBounded(std::string_view hash);
