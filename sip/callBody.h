#pragma once
// What a message of a call says of media.
#include "sip/sdpBody.h"
#include "sip/sipStack.h"

namespace callBody {

// Nothing of a message that is none, or has no body.
tagSdpBody read(const sip_t* message);
// No record has room for it.
inline bool isTooLarge(const std::string& sdp)
{
    return sdp.size() >= SIP_SDP_SIZE;
}

} // namespace callBody
