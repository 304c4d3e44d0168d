#include "sip/sipDialog.h"
#include "sip/stackMemory.h"
#include <cstdio>
#include <cstring>
#include <random>
#include <sofia-sip/sip_header.h>
#include <sofia-sip/sip_tag.h>

namespace {

std::string textOf(const char* text)
{
    return text ? text : "";
}

} // namespace

std::string sipDialog::newToken()
{
    std::random_device random;
    char text[33];
    snprintf(text, sizeof text, "%08x%08x%08x%08x", random(), random(), random(), random());
    return text;
}

tagDialogName sipDialog::nameOf(nua_handle_t* handle)
{
    StackMemory memory;
    // As the other side would be told: what is from there is ours.
    const sip_replaces_t* replaces = nua_handle_make_replaces(handle, memory.home(), 0);
    if (!replaces)
        return {};
    return {textOf(replaces->rp_call_id), textOf(replaces->rp_from_tag), textOf(replaces->rp_to_tag)};
}

tagDialogName sipDialog::nameOf(const sip_t& reply)
{
    return {textOf(reply.sip_call_id->i_id), textOf(reply.sip_from->a_tag), textOf(reply.sip_to->a_tag)};
}

bool sipDialog::isNamedBy(const tagDialogName& name, const sip_replaces_t& replaces)
{
    return !name.callId.empty() && name.callId == textOf(replaces.rp_call_id) &&
           name.localTag == textOf(replaces.rp_to_tag) && name.remoteTag == textOf(replaces.rp_from_tag);
}

std::string sipDialog::addressReplacing(const std::string& address, nua_handle_t* handle)
{
    StackMemory memory;
    const sip_replaces_t* replaces = nua_handle_make_replaces(handle, memory.home(), 0);
    const char* query =
        replaces ? sip_headers_as_url_query(memory.home(), SIPTAG_REPLACES(replaces), TAG_END()) : nullptr;
    const char* value = query ? strchr(query, '=') : nullptr;
    if (!value)
        return "";
    return address + (address.find('?') == std::string::npos ? "?" : "&") + "Replaces" + value;
}
