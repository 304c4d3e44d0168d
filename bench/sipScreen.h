#pragma once
// What a person waits for at a phone with a real line, whose screen is painted in this process: from the
// touch that dials to the INVITE on the wire, and from the INVITE of a caller to the call screen that shows
// it.
#include "bench/phoneBench.h"

// argc, argv: of main(). Once in a process.
void benchSipScreen(RatioTable& table, int& argc, char** argv);
