#include "sip/callBody.h"
#include <sofia-sip/sip_header.h>
#include <strings.h>

namespace {

template <typename Params>
std::string withParams(const char* value, Params params)
{
    std::string text = value ? value : "";
    for (size_t i = 0; params && params[i]; ++i)
        text += std::string(";") + params[i];
    return text;
}

bool isCoded(const sip_t& message)
{
    const sip_content_encoding_t* encoding = message.sip_content_encoding;
    for (size_t i = 0; encoding && encoding->k_items && encoding->k_items[i]; ++i) {
        if (strcasecmp(encoding->k_items[i], "identity") != 0)
            return true;
    }
    return false;
}

} // namespace

// A body without a type is what most are.
tagSdpBody callBody::read(const sip_t* message)
{
    const sip_payload_t* payload = message ? message->sip_payload : nullptr;
    if (!payload || !payload->pl_data || payload->pl_len == 0)
        return {};
    tagBodyPart whole;
    const sip_content_type_t* type = message->sip_content_type;
    const sip_content_disposition_t* disposition = message->sip_content_disposition;
    bodyParts::setType(type ? withParams(type->c_type, type->c_params) : "application/sdp", whole);
    if (disposition)
        bodyParts::setDisposition(withParams(disposition->cd_type, disposition->cd_params), whole);
    whole.bCoded = isCoded(*message);
    whole.bytes = payload->pl_data;
    whole.nSize = payload->pl_len;
    return sdpBody::read(whole);
}
