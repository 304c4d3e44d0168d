#pragma once
// Which call a header names that says that one call takes the place of another (RFC 3891).
#include "sip/sipStack.h"
#include <string>

struct tagDialogName
{
    std::string callId;
    std::string localTag;
    std::string remoteTag;
};

namespace sipDialog {

// For a Call-ID, or a tag: nobody guesses it.
std::string newToken();
// Empty when the handle has no dialogue.
tagDialogName nameOf(nua_handle_t* handle);
// Of a call from here that is not answered yet, of which the stack knows but half.
tagDialogName nameOf(const sip_t& reply);
// Whether the other side means that call.
bool isNamedBy(const tagDialogName& name, const sip_replaces_t& replaces);
// An address that asks whoever calls it to replace the call of the handle at its other side; empty when the
// handle has no dialogue.
std::string addressReplacing(const std::string& address, nua_handle_t* handle);

} // namespace sipDialog
