#include "sip/openingHop.h"
#include "sip/sipAddress.h"
#include "sip/stackMemory.h"
#include <arpa/inet.h>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <sofia-sip/msg.h>
#include <sofia-sip/nta.h>
#include <sofia-sip/nta_tag.h>
#include <sofia-sip/sip.h>
#include <sofia-sip/sip_header.h>
#include <sofia-sip/su_tagarg.h>
#include <sofia-sip/url.h>
#include <string>
#include <strings.h>

namespace {

constexpr const char* kMark = "hx-opening"; // the stack sends no such address, it only goes there
constexpr const char* kNobody = ".invalid";

std::string wayOf(const url_t& url)
{
    char way[8] = "";
    url_param(url.url_params, "transport", way, sizeof way);
    return way;
}

bool isSecure(const url_t& url)
{
    return url.url_type == url_sips || strcasecmp(wayOf(url).c_str(), "tls") == 0;
}

bool isNumeric(const std::string& host)
{
    in6_addr address = {};
    return inet_pton(AF_INET, host.c_str(), &address) == 1 ||
           inet_pton(AF_INET6, host.c_str(), &address) == 1;
}

// Of all or of nobody; a name may say so itself (RFC 6761, 6.4).
bool isNoPlace(const std::string& host)
{
    const size_t end = strlen(kNobody);
    if (host.size() > end && strcasecmp(host.c_str() + host.size() - end, kNobody) == 0)
        return true;
    in_addr four = {};
    in6_addr six = {};
    if (inet_pton(AF_INET, host.c_str(), &four) == 1) {
        const in_addr_t address = ntohl(four.s_addr);
        return IN_MULTICAST(address) || address == INADDR_BROADCAST || address == INADDR_ANY;
    }
    return inet_pton(AF_INET6, host.c_str(), &six) == 1 &&
           (IN6_IS_ADDR_MULTICAST(&six) || IN6_IS_ADDR_UNSPECIFIED(&six));
}

std::string hostOf(const url_t& url)
{
    return sipAddress::bareHost(url.url_host ? url.url_host : "");
}

// The stack has the first route that does not know of routes in the place of the address already.
const url_t* nextOf(const sip_t& request)
{
    const sip_route_t* route = request.sip_route;
    return route && url_has_param(route->r_url, "lr") ? route->r_url : request.sip_request->rq_url;
}

std::string nameIn(const url_t& hop)
{
    char name[256] = "";
    url_param(hop.url_params, kMark, name, sizeof name);
    return sipAddress::bareHost(name);
}

bool isSame(const std::string& one, const std::string& other)
{
    return strcasecmp(one.c_str(), other.c_str()) == 0;
}

// The server itself, which is reached as the account reaches it where no other way is named.
bool isServer(const url_t& hop, const url_t& next)
{
    const std::string host = hostOf(next);
    return wayOf(next).empty() && std::string(url_port(&hop)) == url_port(&next) &&
           (isSame(host, hostOf(hop)) || isSame(host, nameIn(hop)));
}

// By a line that is not over TLS.
bool canBeReached(const url_t& next)
{
    const std::string way = wayOf(next);
    const bool isWay = way.empty() || isSame(way, "udp") || isSame(way, "tcp");
    return next.url_type == url_sip && isWay && !isNoPlace(hostOf(next)) && atoi(url_port(&next)) > 0;
}

// Who is to be reached by TLS is not left for what can be listened to, nor for an address that no certificate
// names; and nobody for a place that there is not.
bool isLeft(const url_t& hop, const url_t& next)
{
    if (isSecure(hop))
        return isSecure(next) && !isNumeric(hostOf(next));
    return canBeReached(next) && !isServer(hop, next);
}

// In words of its own: what else the address says might lead the stack elsewhere.
std::string secureWay(const url_t& next)
{
    const std::string port = next.url_port ? std::string(":") + next.url_port : "";
    return "sip:" + std::string(next.url_host) + port + ";transport=tls";
}

// Of a request within a call.
const sip_t* withinOf(msg_t* message)
{
    const sip_t* request = sip_object(message);
    return request && request->sip_request && request->sip_to && request->sip_to->a_tag ? request : nullptr;
}

} // namespace

std::string openingHop::of(const std::string& hop, const std::string& name)
{
    return hop + ';' + kMark + '=' + name;
}

extern "C" __attribute__((visibility("default"))) nta_outgoing_t*
nta_outgoing_mcreate(nta_agent_t* agent, nta_response_f* hear, nta_outgoing_magic_t* owner,
                     url_string_t const* route, msg_t* message, tag_type_t tag, tag_value_t value, ...)
{
    static const auto create =
        reinterpret_cast<decltype(&nta_outgoing_mcreate)>(dlsym(RTLD_NEXT, "nta_outgoing_mcreate"));
    StackMemory memory;
    ta_list list;
    ta_start(list, tag, value);
    tagi_t* tags = tl_adup(memory.home(), ta_args(list));
    ta_end(list);
    const sip_t* within = withinOf(message);
    tagi_t* proxy = within ? tl_find(tags, ntatag_default_proxy) : nullptr;
    const url_t* hop =
        proxy ? url_hdup(memory.home(), reinterpret_cast<const url_t*>(proxy->t_value)) : nullptr;
    std::string secure;
    if (hop && url_has_param(hop, kMark) && isLeft(*hop, *nextOf(*within))) {
        secure = isSecure(*hop) ? secureWay(*nextOf(*within)) : "";
        *proxy = secure.empty() ? tagi_t{tag_skip, 0} : tagi_t{NTATAG_DEFAULT_PROXY(secure.c_str())};
    }
    return create(agent, hear, owner, route, message, TAG_NEXT(tags));
}
