#pragma once
// The description of media in the body of a message, alone or beside other parts (RFC 5621).
#include "sip/bodyParts.h"
#include <string>

struct tagSdpBody
{
    std::string sdp;       // empty: none
    bool bUnknown = false; // something is there that has to be understood, and is not
};

namespace sdpBody {

enum : int { DEPTH_MAX = 4 }; // of parts within parts

// whole: what the message's own headers say of its body.
tagSdpBody read(const tagBodyPart& whole);

} // namespace sdpBody
