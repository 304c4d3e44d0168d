#include "sip/floodGuard.h"
#include "sip/connectionGuard.h"
#include "sip/sipRecords.h"
#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <map>
#include <sofia-sip/msg_addr.h>
#include <sofia-sip/msg_mclass.h>
#include <sofia-sip/sip.h>
#include <sofia-sip/sip_parser.h>
#include <sofia-sip/su.h>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;

struct tagAllowance
{
    double atOnce;
    double perSecond;
};

// What a request costs, and what its source may spend.
constexpr double kFirstRequest = 10, kRequestInCall = 1;
constexpr tagAllowance kStranger = {200, 20};
constexpr tagAllowance kAllStrangers = {1000, 50};
constexpr tagAllowance kServer = {3000, 250};
constexpr tagAllowance kServerInCalls = {500, 15};
constexpr size_t kMaxStrangers = 256; // those beyond share what is left for all
constexpr size_t kMaxInvited = 2048;  // those beyond are acknowledged in vain
constexpr std::chrono::seconds kInvitedFor{40};

class Purse
{
public:
    explicit Purse(const tagAllowance& allowance) : m_allowance(allowance), m_left(allowance.atOnce) {}

    bool has(double cost)
    {
        const auto now = Clock::now();
        const std::chrono::duration<double> passed = now - m_time;
        m_time = now;
        m_left = std::min(m_allowance.atOnce, m_left + passed.count() * m_allowance.perSecond);
        return m_left >= cost;
    }
    void spend(double cost) { m_left = std::min(m_allowance.atOnce, m_left - cost); }
    bool isFull() { return has(m_allowance.atOnce); }

private:
    tagAllowance m_allowance;
    double m_left;
    Clock::time_point m_time = Clock::now();
};

struct tagServerPurses
{
    Purse others{kServer};
    Purse inCalls{kServerInCalls};
};

struct tagRequest
{
    std::string source;
    std::string callId;
    sip_method_t eMethod;
    bool bFirst;

    bool isToInvite() const { return eMethod == sip_method_ack || eMethod == sip_method_cancel; }
};

class Guard
{
public:
    bool lets(const tagRequest& request);
    bool trustsChallenge(const std::string& source, sip_method_t method, const std::string& callId) const;
    void add(const floodGuard::Dialog& dialog) { m_dialogs.emplace(dialog.callId(), &dialog); }
    void remove(const floodGuard::Dialog& dialog);
    void setServers(uint32_t line, const std::vector<std::string>& hosts);
    bool isServer(uint32_t line, const std::string& host) const;
    bool isAnyServer(const std::string& host) const;

private:
    bool letsServer(const tagRequest& request, bool isInCall, bool isInvited);
    bool letsStranger(const tagRequest& request, bool isKnown);
    void noteInvite(size_t callId);
    Purse* strangersPurse(const std::string& source);

    std::array<std::vector<std::string>, SIP_LINE_COUNT> m_servers;
    std::multimap<std::string, const floodGuard::Dialog*> m_dialogs; // by their Call-ID
    std::map<size_t, Clock::time_point> m_invited; // by the hash of it, until it is acknowledged
    std::map<std::string, tagServerPurses> m_serverPurses;
    std::map<std::string, Purse> m_strangers;
    Purse m_all{kAllStrangers};
    Purse m_allInCalls{kAllStrangers};
};

Guard& guard()
{
    static Guard only;
    return only;
}

bool Guard::lets(const tagRequest& request)
{
    const size_t callId = std::hash<std::string>()(request.callId);
    const bool isInCall = m_dialogs.count(request.callId) > 0;
    const bool isInvited = m_invited.count(callId) > 0;
    const bool isLet = isAnyServer(request.source) ? letsServer(request, isInCall, isInvited)
                                                   : letsStranger(request, isInCall || isInvited);
    if (isLet && request.eMethod == sip_method_invite && request.bFirst)
        noteInvite(callId);
    else if (isLet && request.eMethod == sip_method_ack)
        m_invited.erase(callId);
    return isLet;
}

bool Guard::letsServer(const tagRequest& request, bool isInCall, bool isInvited)
{
    tagServerPurses& purses = m_serverPurses[request.source];
    if (isInvited && request.isToInvite()) {
        if (request.eMethod == sip_method_ack)
            purses.others.spend(-kFirstRequest);
        return true;
    }
    const bool isOwn = isInCall && (request.isToInvite() || !request.bFirst);
    Purse& purse = isOwn ? purses.inCalls : purses.others;
    const double cost = isOwn ? kRequestInCall : kFirstRequest;
    if (!purse.has(cost))
        return false;
    purse.spend(cost);
    return true;
}

bool Guard::letsStranger(const tagRequest& request, bool isKnown)
{
    if (request.isToInvite() && !isKnown)
        return false;
    const bool isCheap = isKnown && (request.isToInvite() || !request.bFirst);
    const double cost = isCheap ? kRequestInCall : kFirstRequest;
    Purse* own = strangersPurse(request.source);
    Purse& all = isCheap ? m_allInCalls : m_all;
    if (!all.has(cost) || (own && !own->has(cost)))
        return false;
    all.spend(cost);
    if (own)
        own->spend(cost);
    return true;
}

void Guard::noteInvite(size_t callId)
{
    const auto now = Clock::now();
    if (m_invited.size() >= kMaxInvited) {
        for (auto each = m_invited.begin(); each != m_invited.end();)
            each = now - each->second > kInvitedFor ? m_invited.erase(each) : std::next(each);
    }
    if (m_invited.size() < kMaxInvited)
        m_invited[callId] = now;
}

// What a line's own requests ask its server for is answered by nobody else.
bool Guard::trustsChallenge(const std::string& source, sip_method_t method, const std::string& callId) const
{
    if (method == sip_method_register)
        return true;
    const bool isBeginning = method == sip_method_invite || method == sip_method_subscribe;
    const auto range = m_dialogs.equal_range(callId);
    return std::any_of(range.first, range.second, [&](const auto& each) {
        const floodGuard::Dialog& dialog = *each.second;
        return isServer(dialog.line(), source) || (dialog.isAsking() && isBeginning);
    });
}

void Guard::remove(const floodGuard::Dialog& dialog)
{
    const auto range = m_dialogs.equal_range(dialog.callId());
    const auto found =
        std::find_if(range.first, range.second, [&](const auto& each) { return each.second == &dialog; });
    if (found != range.second)
        m_dialogs.erase(found);
}

Purse* Guard::strangersPurse(const std::string& source)
{
    const auto found = m_strangers.find(source);
    if (found != m_strangers.end())
        return &found->second;
    if (m_strangers.size() >= kMaxStrangers) {
        for (auto each = m_strangers.begin(); each != m_strangers.end();)
            each = each->second.isFull() ? m_strangers.erase(each) : std::next(each);
    }
    if (m_strangers.size() >= kMaxStrangers)
        return nullptr;
    return &m_strangers.emplace(source, kStranger).first->second;
}

void Guard::setServers(uint32_t line, const std::vector<std::string>& hosts)
{
    m_servers[line] = hosts;
    for (auto each = m_serverPurses.begin(); each != m_serverPurses.end();)
        each = isAnyServer(each->first) ? std::next(each) : m_serverPurses.erase(each);
}

bool Guard::isServer(uint32_t line, const std::string& host) const
{
    const auto& hosts = m_servers[line];
    return std::find(hosts.begin(), hosts.end(), host) != hosts.end();
}

bool Guard::isAnyServer(const std::string& host) const
{
    for (uint32_t line = 0; line < SIP_LINE_COUNT; ++line) {
        if (isServer(line, host))
            return true;
    }
    return false;
}

// At the end of the headers of each message, and before anything is made of it.
issize_t takeBody(msg_t* message, msg_pub_t* content, char bytes[], isize_t size, int isLast)
{
    auto* sip = reinterpret_cast<sip_t*>(content);
    const std::string source = floodGuard::sourceOf(message);
    const std::string callId = sip->sip_call_id && sip->sip_call_id->i_id ? sip->sip_call_id->i_id : "";
    if (!(sip->sip_flags & MSG_FLG_BODY) && sip->sip_request) {
        const bool isFirst = !sip->sip_to || !sip->sip_to->a_tag;
        if (!guard().lets({source, callId, sip->sip_request->rq_method, isFirst})) {
            sip->sip_via = nullptr; // else the stack would answer what it cannot read
            return -1;
        }
        // By some of the reasons the stack would ask once more for what has ended; they stay among its
        // params.
        if (sip->sip_subscription_state)
            sip->sip_subscription_state->ss_reason = nullptr;
    } else if (sip->sip_status && (sip->sip_www_authenticate || sip->sip_proxy_authenticate)) {
        const sip_method_t method = sip->sip_cseq ? sip->sip_cseq->cs_method : sip_method_unknown;
        if (!guard().trustsChallenge(source, method, callId)) {
            sip->sip_www_authenticate = nullptr; // else the stack would answer with what it has proved before
            sip->sip_proxy_authenticate = nullptr;
        }
    }
    if ((sip->sip_request || sip->sip_status) && !(sip->sip_flags & MSG_FLG_ERROR))
        ConnectionGuard::heard(source, floodGuard::portOf(message));
    return sip_extract_body(message, sip, bytes, size, isLast);
}

} // namespace

floodGuard::Dialog::Dialog(std::string callId, uint32_t line) : m_callId(std::move(callId)), m_nLine(line)
{
    guard().add(*this);
}

floodGuard::Dialog::~Dialog()
{
    guard().remove(*this);
}

bool floodGuard::install()
{
    msg_mclass_t* kind = sip_extend_mclass(nullptr); // with the headers that tell more of a caller
    if (!kind)
        return false;
    kind->mc_extract_body = takeBody;
    return sip_update_default_mclass(kind) == 0;
}

void floodGuard::setServers(uint32_t line, const std::vector<std::string>& hosts)
{
    guard().setServers(line, hosts);
}

bool floodGuard::isServer(uint32_t line, const std::string& host)
{
    return guard().isServer(line, host);
}

bool floodGuard::isServer(const std::string& host)
{
    return guard().isAnyServer(host);
}

bool floodGuard::isFromNetwork(const tagSipStack& stack, const tagStackEvent& event)
{
    return event.pMessage && !sourceOf(nua_current_request(stack.pNua)).empty();
}

std::string floodGuard::sourceOf(msg_t* message)
{
    su_sockaddr_t address = {};
    socklen_t size = sizeof address;
    char text[SU_ADDRSIZE] = "";
    if (!message || msg_get_address(message, &address, &size) != 0)
        return "";
    const char* read = su_inet_ntop(address.su_family, SU_ADDR(&address), text, sizeof text);
    return read ? read : "";
}

uint32_t floodGuard::portOf(msg_t* message)
{
    su_sockaddr_t address = {};
    socklen_t size = sizeof address;
    return message && msg_get_address(message, &address, &size) == 0 ? ntohs(address.su_port) : 0;
}
