#include "sip/serverFinder.h"
#include "sip/knownHosts.h"
#include "sip/sipAddress.h"
#include <algorithm>
#include <arpa/inet.h>
#include <functional>
#include <random>
#include <sofia-resolv/sres_record.h>
#include <utility>

namespace {

constexpr size_t kMaxTargets = 8; // of a name; more are of no use to anybody

const char* serviceOf(SIP_TRANSPORT transport)
{
    switch (transport) {
    case SIP_TCP:
        return "_sip._tcp.";
    case SIP_TLS:
        return "_sips._tcp.";
    default:
        return "_sip._udp.";
    }
}

uint32_t usualPort(SIP_TRANSPORT transport)
{
    return transport == SIP_TLS ? 5061 : 5060;
}

// As it stands in an address; empty when the host is a name.
std::string numericHost(const std::string& host)
{
    const std::string bare = sipAddress::bareHost(host);
    unsigned char address[sizeof(in6_addr)];
    if (inet_pton(AF_INET, bare.c_str(), address) == 1)
        return bare;
    return inet_pton(AF_INET6, bare.c_str(), address) == 1 ? "[" + bare + "]" : "";
}

// Of one priority, each is first as often as its weight says (RFC 2782).
void sortByChance(std::vector<sres_srv_record_t*>& services)
{
    static std::mt19937 random{std::random_device{}()};
    for (size_t i = 0; i < services.size(); ++i) {
        size_t best = i;
        for (size_t k = i; k < services.size(); ++k) {
            if (services[k]->srv_priority < services[best]->srv_priority)
                best = k;
        }
        const uint16_t priority = services[best]->srv_priority;
        unsigned sum = 0;
        for (size_t k = i; k < services.size(); ++k) {
            if (services[k]->srv_priority == priority)
                sum += services[k]->srv_weight;
        }
        unsigned chance = std::uniform_int_distribution<unsigned>(0, sum)(random);
        for (size_t k = i; k < services.size(); ++k) {
            if (services[k]->srv_priority != priority)
                continue;
            best = k;
            if (chance <= services[k]->srv_weight)
                break;
            chance -= services[k]->srv_weight;
        }
        std::swap(services[i], services[best]);
    }
}

} // namespace

void ServerFinder::find(const std::string& host, uint32_t port, SIP_TRANSPORT transport, Found found)
{
    stop();
    m_found = std::move(found);
    const uint32_t target = port ? port : usualPort(transport);
    const std::string numeric = numericHost(host);
    if (!numeric.empty()) {
        m_addresses.push_back({numeric, target});
        nextTarget();
        return;
    }
    m_targets.push_back({host, target});
    if (port)
        nextTarget();
    else
        ask(STEP_SERVICE, serviceOf(transport) + host);
}

bool ServerFinder::skipServices()
{
    if (!m_pQuery || m_eStep != STEP_SERVICE || knownHosts::addressesOf(m_targets.front().host).empty())
        return false;
    sres_query_bind(m_pQuery, nullptr, nullptr);
    m_pQuery = nullptr;
    nextTarget();
    return true;
}

void ServerFinder::stop()
{
    if (m_pQuery)
        sres_query_bind(m_pQuery, nullptr, nullptr);
    m_pQuery = nullptr;
    m_found = nullptr;
    m_targets.clear();
    m_addresses.clear();
}

void ServerFinder::ask(STEP step, const std::string& name)
{
    m_eStep = step;
    const uint16_t type = step == STEP_SERVICE ? sres_type_srv
                          : step == STEP_IPV4  ? sres_type_a
                                               : sres_type_aaaa;
    auto* self = reinterpret_cast<sres_context_t*>(this);
    m_pQuery = m_pDns ? sres_query(m_pDns, onAnswer, self, type, name.c_str()) : nullptr;
    if (!m_pQuery)
        onAnswer(self, nullptr, nullptr);
}

void ServerFinder::onAnswer(sres_context_t* self, sres_query_t*, sres_record_t** answers)
{
    auto* finder = reinterpret_cast<ServerFinder*>(self);
    finder->m_pQuery = nullptr;
    const STEP step = finder->m_eStep;
    bool hasAddress = true;
    if (step == STEP_SERVICE)
        finder->takeServices(answers);
    else
        hasAddress = finder->takeAddresses(answers);
    if (answers)
        sres_free_answers(finder->m_pDns, answers);
    if (step == STEP_IPV4 && !hasAddress) {
        finder->ask(STEP_IPV6, finder->m_targets.front().host);
        return;
    }
    if (step != STEP_SERVICE)
        finder->m_targets.erase(finder->m_targets.begin());
    finder->nextTarget();
}

void ServerFinder::takeServices(sres_record_t** answers)
{
    std::vector<sres_srv_record_t*> services;
    for (size_t i = 0; answers && answers[i]; ++i) {
        const sres_common_t* record = answers[i]->sr_record;
        if (record->r_status == 0 && record->r_type == sres_type_srv)
            services.push_back(answers[i]->sr_srv);
    }
    if (services.empty())
        return; // the name itself stays
    sortByChance(services);
    services.resize(std::min(services.size(), kMaxTargets));
    m_targets.clear();
    for (const sres_srv_record_t* service : services)
        m_targets.push_back({service->srv_target, service->srv_port});
}

bool ServerFinder::takeAddresses(sres_record_t** answers)
{
    const uint16_t type = m_eStep == STEP_IPV4 ? sres_type_a : sres_type_aaaa;
    bool has = false;
    for (size_t i = 0; answers && answers[i] && m_addresses.size() < kMaxTargets; ++i) {
        const sres_common_t* record = answers[i]->sr_record;
        if (record->r_status != 0 || record->r_type != type)
            continue;
        char text[INET6_ADDRSTRLEN] = "";
        if (type == sres_type_a)
            inet_ntop(AF_INET, &answers[i]->sr_a->a_addr, text, sizeof text);
        else
            inet_ntop(AF_INET6, &answers[i]->sr_aaaa->aaaa_addr, text, sizeof text);
        m_addresses.push_back({numericHost(text), m_targets.front().nPort});
        has = true;
    }
    return has;
}

// IPv6 where there is no other.
bool ServerFinder::takeKnown()
{
    std::vector<std::string> known = knownHosts::addressesOf(m_targets.front().host);
    const auto isIPv4 = [](const std::string& address) { return address.find(':') == std::string::npos; };
    if (std::any_of(known.begin(), known.end(), isIPv4))
        known.erase(std::remove_if(known.begin(), known.end(), std::not_fn(isIPv4)), known.end());
    for (const std::string& address : known)
        m_addresses.push_back({numericHost(address), m_targets.front().nPort});
    return !known.empty();
}

void ServerFinder::nextTarget()
{
    if (!m_targets.empty()) {
        const std::string numeric = numericHost(m_targets.front().host);
        if (!numeric.empty()) {
            m_addresses.push_back({numeric, m_targets.front().nPort});
        } else if (!takeKnown()) {
            ask(STEP_IPV4, m_targets.front().host);
            return;
        }
        m_targets.erase(m_targets.begin());
        nextTarget();
        return;
    }
    const std::vector<tagServerAddress> addresses = std::exchange(m_addresses, {});
    const Found found = std::exchange(m_found, nullptr);
    if (found)
        found(addresses);
}
