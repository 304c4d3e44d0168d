#pragma once
// What phones are told of extensions and messages, whole each time.
#include "registrar/accountBook.h"
#include "registrar/callBook.h"
#include <functional>
#include <string>

// Without a type: nothing is known yet.
struct tagEventBody
{
    std::string type;
    std::string text;
};

namespace eventBody {

// The calls of an extension (RFC 4235).
tagEventBody dialogs(const CallBook& calls, const std::string& user, const std::string& place,
                     unsigned version);
// The same of all extensions, as one list (RFC 4662); of one without a phone, its name alone.
tagEventBody list(const CallBook& calls, const AccountBook& accounts,
                  const std::function<bool(const std::string& user)>& isThere, const std::string& name,
                  const std::string& place, unsigned version);
// Waiting messages (RFC 3842).
tagEventBody messages(const std::string& user, const std::string& place, unsigned count);

} // namespace eventBody
