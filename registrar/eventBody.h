#pragma once
// What phones are told of extensions and messages, whole each time.
#include "registrar/accountBook.h"
#include "registrar/callBook.h"
#include <string>

struct tagEventBody
{
    std::string type;
    std::string text;
};

namespace eventBody {

// The calls of an extension (RFC 4235).
tagEventBody dialogs(const CallBook& calls, const std::string& user, const std::string& place,
                     unsigned version);
// The same of all extensions, as one list (RFC 4662).
tagEventBody list(const CallBook& calls, const AccountBook& accounts, const std::string& name,
                  const std::string& place, unsigned version);
// Waiting messages (RFC 3842).
tagEventBody messages(const std::string& user, const std::string& place, unsigned count);

} // namespace eventBody
