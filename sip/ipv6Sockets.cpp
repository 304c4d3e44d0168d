// The stack takes an IPv6 address in brackets for a name, and any of its sockets, the IPv4 ones first, for
// the one that reaches it. Its function is replaced here by itself, asked without the brackets.
#include "sip/sipAddress.h"
#include <dlfcn.h>
#include <sofia-sip/tport.h>

extern "C" __attribute__((visibility("default"))) tport_t* tport_primary_by_name(tport_t const* self,
                                                                                 tp_name_t const* name)
{
    using Finder = tport_t* (*)(tport_t const*, tp_name_t const*);
    static const auto find = reinterpret_cast<Finder>(dlsym(RTLD_NEXT, "tport_primary_by_name"));
    if (!name || !name->tpn_host)
        return find(self, name);
    const std::string bare = sipAddress::bareHost(name->tpn_host);
    tp_name_t asked = *name;
    asked.tpn_host = bare.c_str();
    return find(self, &asked);
}
