#include "sip/eventBody.h"

std::string eventBody::typeOf(const sip_t& message)
{
    const sip_content_type_t* type = message.sip_content_type;
    const bool hasBody =
        message.sip_payload && message.sip_payload->pl_data && message.sip_payload->pl_len > 0;
    if (!hasBody || !type || !type->c_type || message.sip_content_encoding)
        return "";
    std::string text = type->c_type;
    for (size_t i = 0; type->c_params && type->c_params[i]; ++i)
        text += std::string(";") + type->c_params[i];
    return text;
}
