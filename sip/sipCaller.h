#pragma once
// Who calls, by the headers of an INVITE.
#include "sip/sipStack.h"
#include <string>

namespace sipCaller {

// Number, name, who has sent it on, and how it wants to be answered. What vouches for a caller, and his
// picture, count only when they come from the server of the line.
void read(const sip_t& message, bool isFromServer, tagSipArrived& arrived);
// Where the caller can be called.
std::string address(const sip_t& message);
// A CANCEL that comes since another phone has answered.
bool isAnsweredElsewhere(const sip_t* message);
// The status in the body of a NOTIFY that tells of a transfer; 0 where there is none.
uint32_t statusOfTransfer(const sip_t* message);

} // namespace sipCaller
