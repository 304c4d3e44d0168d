#include "sip/floodGuard.h"
#include "sip/sipRecords.h"
#include <algorithm>
#include <array>
#include <chrono>
#include <map>
#include <sofia-sip/msg_addr.h>
#include <sofia-sip/msg_mclass.h>
#include <sofia-sip/sip.h>
#include <sofia-sip/sip_parser.h>
#include <sofia-sip/su.h>

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
constexpr size_t kMaxStrangers = 256; // those beyond share what is left for all

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

class Guard
{
public:
    bool lets(const std::string& source, sip_method_t method, bool isFirst);
    void setServers(uint32_t line, const std::vector<std::string>& hosts);
    bool isServer(uint32_t line, const std::string& host) const;

private:
    bool isAnyServer(const std::string& host) const;
    Purse* strangersPurse(const std::string& source);

    std::array<std::vector<std::string>, SIP_LINE_COUNT> m_servers;
    std::map<std::string, Purse> m_serverPurses;
    std::map<std::string, Purse> m_strangers;
    Purse m_all{kAllStrangers};
};

Guard& guard()
{
    static Guard only;
    return only;
}

bool Guard::lets(const std::string& source, sip_method_t method, bool isFirst)
{
    const bool isAck = method == sip_method_ack;
    if (isAnyServer(source)) {
        Purse& purse = m_serverPurses.emplace(source, kServer).first->second;
        if (isAck)
            purse.spend(-kFirstRequest);
        if (isAck || method == sip_method_cancel || !isFirst)
            return true;
        if (!purse.has(kFirstRequest))
            return false;
        purse.spend(kFirstRequest);
        return true;
    }
    if (isAck || method == sip_method_cancel)
        return true;
    const double cost = isFirst ? kFirstRequest : kRequestInCall;
    Purse* own = strangersPurse(source);
    if (!m_all.has(cost) || (own && !own->has(cost)))
        return false;
    m_all.spend(cost);
    if (own)
        own->spend(cost);
    return true;
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
    if (!(sip->sip_flags & MSG_FLG_BODY) && sip->sip_request) {
        const bool isFirst = !sip->sip_to || !sip->sip_to->a_tag;
        if (!guard().lets(floodGuard::sourceOf(message), sip->sip_request->rq_method, isFirst)) {
            sip->sip_via = nullptr; // else the stack would answer what it cannot read
            return -1;
        }
    }
    return sip_extract_body(message, sip, bytes, size, isLast);
}

} // namespace

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
