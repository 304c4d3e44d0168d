#pragma once
// What a refusal within a call does to it.

namespace refusals {

// Whether a peer that goes by RFC 5057 gives up the whole call when its REFER is refused so.
bool endCallOfReferrer(int status);

} // namespace refusals
