#pragma once
// The body of a note.
#include "sip/sipStack.h"
#include <string>

namespace eventBody {

// With its parameters; empty where there is no body, or one that is coded.
std::string typeOf(const sip_t& message);
inline const char* bytes(const sip_t& message)
{
    return message.sip_payload->pl_data;
}
inline size_t size(const sip_t& message)
{
    return message.sip_payload->pl_len;
}

} // namespace eventBody
