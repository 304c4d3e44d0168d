#include "sip/callSetup.h"
#include "sip/registration.h"
#include "sip/sipAddress.h"
#include "sip/sipDialog.h"
#include "sip/stackMemory.h"
#include <algorithm>
#include <cstring>
#include <iterator>
#include <sofia-sip/sip_header.h>
#include <sofia-sip/sip_tag.h>
#include <sofia-sip/sip_util.h>
#include <sofia-sip/url.h>
#include <utility>

namespace {

constexpr const char* kSecureScheme = "sips:";
constexpr const char* kOverTls = "transport=tls";
constexpr const char* kKeys = "+*#0123456789";
// The stack ties a call to the first branch whose provisional answer it acknowledges: whoever answers on
// another one would be hung up on.
constexpr const char* kSupported = "timer, replaces";
constexpr const char* kReliable = "timer, 100rel, replaces";
constexpr int kExtensionRequired = 421;
constexpr const char* kRedirected = "?Reason=SIP%3Bcause%3D302";

// Without what an address may bring along; empty for none.
std::string bareAddress(const std::string& address)
{
    StackMemory memory;
    url_t* url = url_make(memory.home(), address.c_str());
    if (!url || !url->url_host)
        return "";
    url->url_password = url->url_params = url->url_headers = nullptr;
    const char* text = url_as_string(memory.home(), url);
    return text ? text : "";
}

// Whoever has given the address: what its call is made with is said here alone.
std::string calledAddress(const tagSipDial& dial, const std::string& server)
{
    const std::string address = sipAddress::target(dial.szTarget, server);
    StackMemory memory;
    const url_t* url = url_make(memory.home(), address.c_str());
    return url ? sipAddress::withoutHeaders(*url) : address;
}

// As it is dialled: without what is there for the eye.
std::string numberOf(const char* written)
{
    std::string number = written ? written : "";
    number.resize(strlen(url_unescape(number.data(), number.c_str())));
    number.erase(std::remove_if(number.begin(), number.end(), [](char c) { return !strchr(kKeys, c); }),
                 number.end());
    return number;
}

// Who has sent the call on, in both ways that are in use: the newest one first (RFC 5806), and by number,
// with where it goes as the last one (RFC 7044).
std::string forwardLines(const tagSipDial& dial, const std::string& server, const std::string& target)
{
    std::string diversion, history, index = "1";
    for (uint32_t i = 0; i < std::min<uint32_t>(dial.nForwards, std::size(dial.szForwardedBy)); ++i) {
        const std::string by = bareAddress(sipAddress::target(dial.szForwardedBy[i], server));
        if (by.empty())
            continue;
        diversion = sipAddress::inBrackets(by) + (diversion.empty() ? "" : ", ") + diversion;
        history += sipAddress::inBrackets(by + kRedirected) + ";index=" + index + ", ";
        index += ".1";
    }
    if (diversion.empty())
        return "";
    return "Diversion: " + diversion + "\r\nHistory-Info: " + history +
           sipAddress::inBrackets(bareAddress(target)) + ";index=" + index + "\r\n";
}

} // namespace

CallSetup::CallSetup(const tagSipStack& stack, const Registration& line, const tagSipDial& dial,
                     const tagCallOrigin& origin)
    : m_stack(stack), m_server(line.server()), m_hops(line.hops()),
      m_target(calledAddress(dial, line.server())), m_callId(sipDialog::newToken()),
      m_contact(line.contact()), m_transport(std::string("transport=") + line.transportName()),
      m_origin(origin), m_sdp(dial.szSdp)
{
    m_bHidden = dial.bAnonymous != 0;
    m_from = m_bHidden ? "\"Anonymous\" <sip:anonymous@anonymous.invalid>" : line.ownAddress();
    m_from += ";tag=" + sipDialog::newToken().substr(0, 16);
    if (m_bHidden)
        m_lines = "P-Preferred-Identity: " + line.ownAddress() + "\r\n";
    m_lines += forwardLines(dial, line.server(), m_target);
}

bool CallSetup::canCall(const std::string& target) const
{
    return target.rfind(kSecureScheme, 0) != 0 || m_transport == kOverTls;
}

std::string CallSetup::targetOf(const url_t& place) const
{
    const bool isAddress = (place.url_type == url_sip || place.url_type == url_sips) && place.url_host;
    std::string target;
    if (isAddress)
        target = sipAddress::withoutHeaders(place);
    else if (place.url_type == url_tel)
        target = numberOf(place.url_user);
    if (target.empty() || !canCall(target))
        return "";
    return sipAddress::target(target, m_server);
}

std::vector<std::string> CallSetup::movedTo(const sip_t& reply) const
{
    std::vector<std::pair<unsigned, std::string>> places;
    for (const sip_contact_t* each = reply.sip_contact; each; each = each->m_next) {
        const std::string target = targetOf(*each->m_url);
        const auto isSame = [&](const auto& place) { return place.second == target; };
        if (!target.empty() && std::none_of(places.begin(), places.end(), isSame))
            places.emplace_back(sip_q_value(each->m_q), target);
    }
    std::stable_sort(places.begin(), places.end(),
                     [](const auto& one, const auto& two) { return one.first > two.first; });
    std::vector<std::string> targets;
    for (size_t i = 0; i < std::min<size_t>(places.size(), SIP_PLACES_MAX); ++i)
        targets.push_back(places[i].second);
    return targets;
}

nua_handle_t* CallSetup::invite(StackOwner* owner)
{
    if (!canCall(m_target))
        return nullptr;
    const std::string to = sipAddress::inBrackets(m_target);
    nua_handle_t* handle = nua_handle(m_stack.pNua, owner, NUTAG_URL(m_target.c_str()),
                                      SIPTAG_TO_STR(to.c_str()), SIPTAG_FROM_STR(m_from.c_str()), TAG_END());
    if (!handle)
        return nullptr;
    const std::string hop = hasNext() ? m_hops[m_nNext] : "";
    ++m_nNext;
    const std::string number = std::to_string(m_nNumber) + " INVITE";
    nua_invite(handle, TAG_IF(!hop.empty(), NUTAG_PROXY(hop.c_str())), NUTAG_AUTO302(0),
               NUTAG_M_USERNAME(m_contact.c_str()), NUTAG_M_PARAMS(m_transport.c_str()),
               SIPTAG_CALL_ID_STR(m_callId.c_str()), SIPTAG_CSEQ_STR(number.c_str()),
               SIPTAG_SUPPORTED_STR(m_bReliable ? kReliable : kSupported),
               SIPTAG_CONTENT_TYPE_STR("application/sdp"), SIPTAG_PAYLOAD_STR(m_sdp.c_str()),
               TAG_IF(m_bHidden, SIPTAG_PRIVACY_STR("id")),
               TAG_IF(!m_lines.empty(), SIPTAG_HEADER_STR(m_lines.c_str())),
               TAG_IF(!m_origin.replaces.empty(), SIPTAG_REPLACES_STR(m_origin.replaces.c_str())),
               TAG_IF(m_origin.bReplacesOnly, SIPTAG_REQUIRE_STR("replaces")),
               TAG_IF(!m_origin.referredBy.empty(), SIPTAG_REFERRED_BY_STR(m_origin.referredBy.c_str())),
               TAG_END());
    return handle;
}

bool CallSetup::demandReliable(const sip_t& refusal)
{
    if (m_bReliable || m_nNext == 0 || refusal.sip_status->st_status != kExtensionRequired ||
        !sip_has_feature(refusal.sip_require, "100rel"))
        return false;
    m_bReliable = true;
    m_nNumber = refusal.sip_cseq->cs_seq + 1;
    --m_nNext;
    return true;
}
