#pragma once
// Why calls on the wire fail, for a person: English keys of the phone's texts; and what the wire is told.
#include "host/services/phone/tagCall.h"
#include <cstdint>

// status: 400 to 699, of whoever was called.
const char* sipReasonOf(uint32_t status);
// Of a call that came in.
uint32_t sipStatusOf(CALL_END why);
