#include "sip/refusalText.h"
#include <sofia-sip/sip_status.h>

namespace {

constexpr uint32_t kAnonymityDisallowed = 433; // RFC 5079, which the stack does not know
constexpr const char* kKnownBodies = "Accept: application/sdp, multipart/mixed, multipart/alternative\r\n"
                                     "Accept-Encoding: identity";

const char* warningText(uint32_t warning)
{
    switch (warning) {
    case 301:
        return "Incompatible network address formats";
    case 302:
        return "Incompatible transport protocol";
    case 304:
        return "Media type not available";
    case 305:
        return "Incompatible media format";
    case 307:
        return "Session description parameter not understood";
    default:
        return "The media do not fit";
    }
}

} // namespace

const char* refusalText::phraseOf(uint32_t status)
{
    if (status == kAnonymityDisallowed)
        return "Anonymity Disallowed";
    const char* phrase = sip_status_phrase(int(status));
    return phrase ? phrase : "Refused";
}

std::string refusalText::reasonOf(uint32_t status)
{
    return "SIP;cause=" + std::to_string(status) + ";text=\"" + phraseOf(status) + '"';
}

std::string refusalText::linesOf(uint32_t status, uint32_t warning)
{
    if (status == kUnknownBody)
        return kKnownBodies;
    if (warning == 0)
        return "";
    return "Warning: " + std::to_string(warning) + " hxSip \"" + warningText(warning) + '"';
}
