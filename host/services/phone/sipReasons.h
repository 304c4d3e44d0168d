#pragma once
// Why calls on the wire fail, for a person: English keys of the phone's texts; and what the wire is told.
#include "host/services/phone/tagCall.h"
#include "sip/sipRecords.h"
#include "support/host/player.h"
#include <cstdint>

// status: 400 to 699, of whoever was called.
const char* sipReasonOf(uint32_t status);
// The same of a call that somebody was to be put through to; isTaken: it was made.
const char* sipReasonOfTransfer(uint32_t status, bool isTaken);
// Why a line is not registered.
const char* sipReasonOfLine(const tagSipLine& line);
// Of a call that came in.
uint32_t sipStatusOf(CALL_END why);
// What it is told of media that do not fit, by RFC 3261, 20.43; 0: nothing.
uint32_t sipWarningOf(CALL_FIT fit);
