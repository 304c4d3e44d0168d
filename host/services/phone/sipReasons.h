#pragma once
// Why calls on the wire fail, for a person: English keys of the phone's texts.
#include <cstdint>

// status: 400 to 699, of whoever was called.
const char* sipReasonOf(uint32_t status);
