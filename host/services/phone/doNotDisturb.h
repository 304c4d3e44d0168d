#pragma once
// Whether calls are refused for the user. It is kept in "bEnable" of "DND" in the user's key file, "0" when
// absent; "bEffectPstn" says whether it holds for the analogue line too. User-interface thread.
#include "support/host/api.h"

namespace doNotDisturb {

HX_HOST_API bool isOn();
// Tells the rest of the phone with CONFIG_CHANGED_PHONE. False when it could not be stored.
HX_HOST_API bool setOn(bool on);
// line: 0 to 3, or PHONE_LINE_PSTN.
HX_HOST_API bool refuses(int line);

} // namespace doNotDisturb
