// "Alert-Info: Auto Answer": words in place of an address, which many servers write, are no damage. The stack
// would keep the first of them at most, so its function is replaced here.
#include <cstring>
#include <dlfcn.h>
#include <sofia-sip/msg_header.h>
#include <sofia-sip/sip_extra.h>
#include <sofia-sip/sip_header.h>
#include <sofia-sip/su_alloc.h>
#include <string>

namespace {

using Parser = issize_t (*)(su_home_t*, msg_header_t*, char*, isize_t);

Parser ownParser()
{
    static const Parser parser = reinterpret_cast<Parser>(dlsym(RTLD_NEXT, "sip_alert_info_d"));
    return parser;
}

} // namespace

extern "C" __attribute__((visibility("default"))) issize_t
sip_alert_info_d(su_home_t* home, msg_header_t* header, char* text, isize_t size)
{
    const std::string words(text, strnlen(text, size));
    if (words.find('<') != std::string::npos)
        return ownParser()(home, header, text, size);
    auto* info = reinterpret_cast<sip_alert_info_t*>(header);
    return msg_header_add_param(home, info->ai_common, su_strdup(home, words.c_str()));
}
