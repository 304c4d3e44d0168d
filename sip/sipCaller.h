#pragma once
// Who calls, by the headers of an INVITE.
#include "sip/sipStack.h"

namespace sipCaller {

// Number, name, who has sent it on, and how it wants to be answered.
void read(const sip_t& message, tagSipArrived& arrived);
// A CANCEL that comes since another phone has answered.
bool isAnsweredElsewhere(const sip_t* message);
// The status in the body of a NOTIFY that tells of a transfer; 0 where there is none.
uint32_t statusOfTransfer(const sip_t* message);

} // namespace sipCaller
