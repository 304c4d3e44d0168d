#pragma once
// Who may see and change what is the administrator's alone: a program or a browser's user on the server's own
// machine, and neither what a proxy passes on nor a page of another site in that browser. Any thread.
#include "tools/signServer/WebExchange.h"

// A field that no form and no plain request of a page can carry; a request that changes something needs it.
inline constexpr const char* kChangeField = "X-Signage-Change";

// Empty, or why the request is refused.
QByteArray LocalRefusal(const WebRequest& request);
// The same of a request that changes something.
QByteArray LocalChangeRefusal(const WebRequest& request);
