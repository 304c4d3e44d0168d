#pragma once
// What somebody waits for the user agent alone, with the times that the phone sets it: until its four lines
// are registered, and until another server has taken the place of one that is dead, silent or out of service.
#include "bench/phoneBench.h"

void benchRegistration(RatioTable& table);
void benchFailover(RatioTable& table);
