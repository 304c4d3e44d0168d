#include "sip/registration.h"
#include "sip/digest.h"
#include "sip/floodGuard.h"
#include "sip/openingHop.h"
#include "sip/ownSockets.h"
#include "sip/phoneLink.h"
#include "sip/sipAddress.h"
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <random>
#include <sofia-sip/nta_tag.h>
#include <sofia-sip/sip_header.h>
#include <sofia-sip/sip_tag.h>
#include <sofia-sip/url.h>
#include <strings.h>
#include <utility>

namespace {

constexpr const char* kUsualPort = "5060";
constexpr uint32_t kUsualTlsPort = 5061;
constexpr uint32_t kMaxAfterMs = 3600000;   // a server may ask for patience of an hour
constexpr uint32_t kRefusedTimes = 5;       // the longest delay of a line, before one that was refused
constexpr uint32_t kMostRefusedTimes = 30;  // likewise, when that comes again and again
constexpr sip_time_t kLongestGrant = 86400; // of seconds, until a line registers anew
constexpr sip_time_t kBriefGrant = 10;      // likewise: what is less is not kept up with
constexpr const char* kSilence = "The server does not answer";
constexpr const char* kWrongPassword = "The server does not accept name or password";

std::mt19937& chance()
{
    static std::mt19937 random{std::random_device{}()};
    return random;
}

std::string newKey()
{
    static unsigned count = 0;
    return "account" + std::to_string(++count);
}

// Nobody but the server guesses it: what strangers send to this port rings nowhere.
std::string newContact(uint32_t line)
{
    char text[32];
    snprintf(text, sizeof text, "hx%u%08x", unsigned(line), unsigned(chance()()));
    return text;
}

// Phones that a server has lost at the same moment do not come back at the same moment.
uint32_t withJitter(uint32_t delayMs)
{
    return delayMs - std::uniform_int_distribution<uint32_t>(0, delayMs / 2)(chance());
}

uint32_t afterMs(const sip_t* reply)
{
    const sip_retry_after_t* after = reply ? reply->sip_retry_after : nullptr;
    return after ? uint32_t(std::min<unsigned long>(after->af_delta, kMaxAfterMs / 1000)) * 1000 : 0;
}

// As the stack reads it.
sip_time_t secondsOf(sip_contact_t const* contact, sip_expires_t const* expires, sip_date_t const* date,
                     sip_time_t usual, sip_time_t now)
{
    using Reader =
        sip_time_t (*)(sip_contact_t const*, sip_expires_t const*, sip_date_t const*, sip_time_t, sip_time_t);
    static const auto read = reinterpret_cast<Reader>(dlsym(RTLD_NEXT, "sip_contact_expires"));
    return std::min(read(contact, expires, date, usual, now), kLongestGrant);
}

} // namespace

Registration::Registration(const tagSipStack& stack, const tagSipAccount& account)
    : m_stack(stack), m_account(account), m_key(newKey()), m_contact(newContact(account.head.nId)),
      m_answers(m_key, account.szRealm), m_finder(stack.pDns), m_silent(stack.pRoot), m_again(stack.pRoot),
      m_keep(stack.pRoot), m_renew(stack.pRoot), m_doubt(stack.pRoot), m_heard(stack.pRoot),
      m_nExpires(account.nExpires), m_nDelayMs(stack.setup.nRetryMs), m_nBriefMs(stack.setup.nRetryMs),
      m_nRefusedMs(stack.setup.nRetryLastMs * kRefusedTimes)
{
    const char* user = account.szAuthName[0] ? account.szAuthName : account.szUser;
    digest::remember(m_key, user, account.szPassword);
    std::fill(std::begin(m_account.szPassword), std::end(m_account.szPassword), '\0');
}

Registration::~Registration()
{
    dropHandle();
    digest::forget(m_key);
}

void Registration::start()
{
    m_eTlsFault = SIP_TLS_NO_FAULT;
    if (transport() == SIP_TLS && !m_stack.tlsProblem.empty()) {
        m_eTlsFault = SIP_TLS_OWN_FILES;
        pause(SIP_LINE_REFUSED, 0, m_stack.tlsProblem, withJitter(m_stack.setup.nRetryLastMs));
        m_stack.onTlsRefused();
        return;
    }
    report(SIP_LINE_REGISTERING, 0, "");
    if (m_account.szStun[0] && !m_stun) {
        m_stun = std::make_unique<StunWatch>(m_stack, m_account);
        m_stun->start([this] { useStun(); }, [this] { askOnce(); });
    }
    m_elsewhere = {};
    m_nExpires = m_account.nExpires;
    m_bAskedLonger = false;
    findServers();
}

void Registration::findServers()
{
    m_silent.start(m_stack.setup.nSilentMs, [this] {
        if (!m_finder.skipServices())
            failOver(0, "The name service does not answer");
    });
    tagServerAddress place = {m_account.szServer, m_account.nPort};
    if (m_account.szProxy[0])
        place = {m_account.szProxy, m_account.nProxyPort};
    else if (!m_elsewhere.host.empty())
        place = m_elsewhere;
    m_addresses.clear();
    m_nAddress = 0;
    // A certificate names the server, not an address of it: the stack looks it up by itself.
    if (transport() == SIP_TLS)
        onAddresses({{sipAddress::host(place.host), place.nPort}});
    else
        m_finder.find(place.host, place.nPort, transport(),
                      [this](const auto& addresses) { onAddresses(addresses); });
}

void Registration::onAddresses(const std::vector<tagServerAddress>& addresses)
{
    m_addresses = addresses;
    if (addresses.empty())
        failOver(0, "The server's name is not known");
    else
        tryAddress();
}

void Registration::tryAddress()
{
    dropHandle();
    m_answers.forget();
    m_bRegistered = false;
    const std::string own = ownAddress();
    m_pHandle =
        nua_handle(m_stack.pNua, this, SIPTAG_TO_STR(own.c_str()), SIPTAG_FROM_STR(own.c_str()), TAG_END());
    if (!m_pHandle) {
        wait(0, "The account makes no address", 0);
        return;
    }
    sendRegister();
}

void Registration::sendRegister()
{
    const std::string server = registrar(), hop = hopOf(m_addresses[m_nAddress]);
    const std::string way = std::string("transport=") + transportName();
    const std::string expires = std::to_string(m_nExpires);
    const std::string seen = "<sip:" + m_contact + "@" + m_contactPlace + ">";
    m_silent.start(m_stack.setup.nSilentMs, [this] { silent(); });
    m_nTlsProblems = tlsCheck::count();
    m_eTlsFault = SIP_TLS_NO_FAULT;
    nua_register(
        m_pHandle, NUTAG_REGISTRAR(server.c_str()), NUTAG_PROXY(hop.c_str()), NUTAG_AUTO302(0),
        TAG_IF(!m_contactPlace.empty(), SIPTAG_CONTACT_STR(seen.c_str())),
        NUTAG_M_USERNAME(m_contact.c_str()), TAG_IF(transport() != SIP_UDP, NUTAG_M_PARAMS(way.c_str())),
        SIPTAG_EXPIRES_STR(expires.c_str()), NUTAG_OUTBOUND("no-validate no-options-keepalive"), TAG_END());
}

void Registration::leave()
{
    m_bLeaving = true;
    m_stun.reset();
    floodGuard::setServers(line(), {});
    m_finder.stop();
    m_again.stop();
    m_keep.stop();
    m_renew.stop();
    m_silent.stop();
    if (!m_pHandle)
        return;
    if (!m_bRegistered) {
        dropHandle();
        return;
    }
    m_answers.reset();
    m_silent.start(m_stack.setup.nSilentMs, [this] { dropHandle(); });
    nua_unregister(m_pHandle, TAG_END());
}

void Registration::onStack(const tagStackEvent& event)
{
    if (event.pHandle != m_pHandle)
        return;
    if (event.eEvent == nua_r_register || event.eEvent == nua_r_unregister)
        onReply(event);
}

void Registration::onReply(const tagStackEvent& event)
{
    if (event.nStatus < 200) {
        // The stack has answered by itself what is asked once more.
        const sip_status_t* told = event.pMessage ? event.pMessage->sip_status : nullptr;
        if (told && (told->st_status == 401 || told->st_status == 407))
            m_answers.countFurther();
        return;
    }
    if (event.nStatus == 401 || event.nStatus == 407) {
        onChallenge(event);
        return;
    }
    if (m_bLeaving) {
        m_silent.stop();
        dropHandle();
        return;
    }
    if (event.nStatus >= 300)
        onRefusal(event);
    else
        onRegistered(event);
}

void Registration::onRefusal(const tagStackEvent& event)
{
    const sip_t* message = event.pMessage;
    const uint32_t status = uint32_t(event.nStatus);
    if (!floodGuard::isFromNetwork(m_stack, event)) {
        failOver(0, reasonOfSilence());
    } else if (status == 403) {
        refuse(status, event.szPhrase, afterMs(message));
    } else if ((status == 301 || status == 302 || status == 305) && follow(*message)) {
        findServers();
    } else if (status == 423 && askLonger(*message)) {
        sendRegister();
    } else if (message->sip_retry_after && m_nAddress + 1 >= m_addresses.size()) {
        wait(status, event.szPhrase, afterMs(message));
    } else {
        failOver(status, event.szPhrase);
    }
}

// Once: who sends the line on from there would send it around. Never to a way that can be listened to where
// the account wants none.
bool Registration::follow(const sip_t& reply)
{
    const int status = reply.sip_status->st_status;
    const bool isThrough = status == 305;
    if (!m_elsewhere.host.empty() || (isThrough && m_account.szProxy[0]))
        return false;
    for (const sip_contact_t* each = reply.sip_contact; each; each = each->m_next) {
        const url_t& url = *each->m_url;
        char way[8] = "";
        const bool hasWay = url_param(url.url_params, "transport", way, sizeof way) > 0;
        const bool isSecure = url.url_type == url_sips;
        const bool isWay = hasWay && !isSecure ? strcasecmp(way, transportName()) == 0
                                               : isSecure == (transport() == SIP_TLS);
        if (!isWay || !url.url_host || (url.url_type != url_sip && !isSecure))
            continue;
        const int port = url.url_port ? atoi(url.url_port) : 0;
        m_elsewhere = {sipAddress::bareHost(url.url_host), port > 0 && port <= 65535 ? uint32_t(port) : 0};
        m_bThroughIt = isThrough;
        report(SIP_LINE_REGISTERING, uint32_t(status), "The server sends the line elsewhere");
        return true;
    }
    return false;
}

// Once: who wants more each time is asked again when the others are.
bool Registration::askLonger(const sip_t& reply)
{
    const sip_min_expires_t* least = reply.sip_min_expires;
    const unsigned long longer = least ? std::min<unsigned long>(least->me_delta, kLongestGrant) : 0;
    if (longer <= m_nExpires || std::exchange(m_bAskedLonger, true))
        return false;
    m_nExpires = longer;
    m_answers.reset();
    return true;
}

void Registration::onRegistered(const tagStackEvent& event)
{
    m_silent.stop();
    m_answers.reset();
    const sip_time_t granted = grantOf(*event.pMessage);
    if (granted == 0) {
        failOver(uint32_t(event.nStatus), "The server does not keep the registration");
        return;
    }
    m_nDelayMs = m_stack.setup.nRetryMs;
    m_nRefusedMs = m_stack.setup.nRetryLastMs; // it was right a moment ago, and may soon be so again
    m_bAskedLonger = false;
    keepUpWith(granted);
    trustServers();
    readMapping(*event.pMessage);
    m_last = m_addresses[m_nAddress];
    const bool isNew = !std::exchange(m_bRegistered, true);
    useStun();
    useIPv6();
    if (!isNew)
        return;
    const std::string seconds = std::to_string(granted);
    report(SIP_LINE_REGISTERED, uint32_t(event.nStatus),
           granted < kBriefGrant ? "The server keeps it for " + seconds + " s only" : "");
    if (transport() == SIP_UDP)
        m_keep.start(m_stack.setup.nKeepMs, [this] { keepOpen(); });
}

// A server that says nothing at all of who is there has taken the line.
sip_time_t Registration::grantOf(const sip_t& reply) const
{
    const bool isOver = reply.sip_expires && reply.sip_expires->ex_delta == 0 && !reply.sip_expires->ex_date;
    if (!reply.sip_contact)
        return isOver ? 0 : kLongestGrant;
    sip_time_t most = 0;
    for (const sip_contact_t* each = reply.sip_contact; each; each = each->m_next) {
        if (each->m_url->url_user && m_contact == each->m_url->url_user)
            most =
                std::max(most, secondsOf(each, reply.sip_expires, reply.sip_date, kLongestGrant, sip_now()));
    }
    return most;
}

// The stack would ask each second for what is granted for one.
void Registration::keepUpWith(sip_time_t granted)
{
    m_renew.stop();
    if (granted >= kBriefGrant) {
        m_nBriefMs = m_stack.setup.nRetryMs;
        return;
    }
    m_renew.start(withJitter(m_nBriefMs), [this] { sendRegister(); });
    m_nBriefMs = std::min(m_nBriefMs * 2, m_stack.setup.nRetryLastMs);
}

// Over TLS the name says nothing of the address that answers.
void Registration::trustServers()
{
    std::vector<std::string> hosts = {floodGuard::sourceOf(nua_current_request(m_stack.pNua))};
    for (const tagServerAddress& address : m_addresses)
        hosts.push_back(sipAddress::bareHost(address.host));
    floodGuard::setServers(line(), hosts);
}

void Registration::readMapping(const sip_t& reply)
{
    const sip_via_t* via = reply.sip_via;
    if (!via || !via->v_host)
        return;
    const char* own = via->v_port ? via->v_port : kUsualPort;
    m_nOwnPort = uint32_t(atoi(own));
    m_own = std::string(via->v_host) + sipAddress::port(m_nOwnPort);
    m_bSeen = via->v_received || (via->v_rport && *via->v_rport);
    const std::string host = via->v_received ? via->v_received : via->v_host;
    const std::string port = via->v_rport && *via->v_rport ? via->v_rport : own;
    const int number = atoi(port.c_str());
    // What it says of itself, nobody has seen.
    if (number < 1 || number > 65535 || !(m_bSeen || m_contactPlace.empty()))
        return;
    tellMapped(host, uint32_t(number));
}

void Registration::tellMapped(const std::string& host, uint32_t number)
{
    const std::string place = host + sipAddress::port(number);
    if (place == m_mapped)
        return;
    m_mapped = place;
    auto mapped = sipWire::make<tagSipMapped>(SIP_MAPPED, line());
    mapped.nPort = number;
    sipWire::setText(mapped.szAddress, sipAddress::bareHost(host));
    m_stack.pPhone->tell(mapped);
}

// Who registers the line knows best how he sees it; one that says nothing is told what the STUN server says.
void Registration::useStun()
{
    if (!m_stun || m_bLeaving || !m_bRegistered || m_bSeen || transport() != SIP_UDP)
        return;
    const tagStunPlace& place = m_stun->place();
    const std::string seen = place.nPort ? place.host + sipAddress::port(place.nPort) : m_contactPlace;
    if (seen == m_contactPlace || seen == m_own)
        return;
    m_contactPlace = seen;
    tellMapped(place.host, place.nPort);
    sendRegister();
}

// The stack names the first address of the machine, whatever the server is reached over.
void Registration::useIPv6()
{
    if (m_addresses[m_nAddress].host.find(':') == std::string::npos || m_contactPlace == m_own)
        return;
    m_contactPlace = m_own;
    sendRegister();
}

void Registration::keepOpen()
{
    if (!m_bRegistered)
        return;
    const tagServerAddress& address = m_addresses[m_nAddress];
    const std::string sign = "\r\n\r\n";
    ownSockets::send(m_nOwnPort, sipAddress::bareHost(address.host), address.nPort, sign.data(), sign.size());
    m_keep.start(m_stack.setup.nKeepMs, [this] { keepOpen(); });
}

// What the last request has come to.
tagTlsProblem Registration::ownTlsProblem() const
{
    const tagServerAddress& address = m_addresses[m_nAddress];
    if (transport() != SIP_TLS)
        return {};
    return tlsCheck::problemWith(sipAddress::bareHost(address.host), address.nPort, m_nTlsProblems);
}

// The stack waits on. What it is about to do with its connection it does first.
void Registration::tlsProblem()
{
    m_heard.start(0, [this] {
        const bool isWaiting = m_pHandle && m_silent.isRunning() && !m_bLeaving;
        if (isWaiting && ownTlsProblem().eFault != SIP_TLS_NO_FAULT)
            silent();
    });
}

std::string Registration::reasonOfSilence()
{
    const tagTlsProblem problem = ownTlsProblem();
    m_eTlsFault = problem.eFault;
    return problem.eFault == SIP_TLS_NO_FAULT ? kSilence : "TLS: " + problem.text;
}

// A connection may be there for this side alone.
void Registration::silent()
{
    if (transport() != SIP_UDP && m_nAddress < m_addresses.size()) {
        const tagServerAddress& address = m_addresses[m_nAddress];
        const bool isName = transport() == SIP_TLS;
        ownSockets::closeConnections(isName ? "" : sipAddress::bareHost(address.host),
                                     address.nPort ? address.nPort : kUsualTlsPort);
    }
    failOver(0, reasonOfSilence());
}

void Registration::onChallenge(const tagStackEvent& event)
{
    const uint32_t status = uint32_t(event.nStatus);
    if (m_answers.answer(m_pHandle, event.pMessage)) {
        m_silent.start(m_stack.setup.nSilentMs, [this] {
            if (m_bLeaving)
                dropHandle();
            else
                silent();
        });
        return;
    }
    if (m_bLeaving)
        dropHandle();
    else if (m_answers.hasAnswered())
        refuse(status, kWrongPassword);
    else
        refuse(status, "The server asks for a password in a way that is not known, or not wanted, here");
}

void Registration::failOver(uint32_t status, const std::string& reason)
{
    if (m_nAddress + 1 < m_addresses.size()) {
        ++m_nAddress;
        if (m_bRegistered)
            report(SIP_LINE_REGISTERING, status, reason);
        tryAddress();
        return;
    }
    wait(status, reason, 0);
}

void Registration::wait(uint32_t status, const std::string& reason, uint32_t leastMs)
{
    const uint32_t delayMs = std::max(withJitter(m_nDelayMs), leastMs);
    m_nDelayMs = std::min(m_nDelayMs * 2, m_stack.setup.nRetryLastMs);
    pause(SIP_LINE_FAILED, status, reason, delayMs);
}

void Registration::refuse(uint32_t status, const std::string& reason, uint32_t leastMs)
{
    const uint32_t delayMs = std::min(std::max(withJitter(m_nRefusedMs), leastMs), kMaxAfterMs);
    m_nRefusedMs = std::min(m_nRefusedMs * 2, m_stack.setup.nRetryLastMs * kMostRefusedTimes);
    pause(SIP_LINE_REFUSED, status, reason, delayMs);
}

void Registration::pause(SIP_LINE_STATE state, uint32_t status, const std::string& reason, uint32_t delayMs)
{
    m_silent.stop();
    m_finder.stop();
    dropHandle();
    report(state, status, reason, delayMs);
    m_again.start(delayMs, [this] { start(); });
}

void Registration::dropHandle()
{
    if (m_pHandle)
        nua_handle_destroy(m_pHandle);
    m_pHandle = nullptr;
    m_renew.stop();
    m_bRegistered = false;
}

void Registration::report(SIP_LINE_STATE state, uint32_t status, const std::string& reason, uint32_t retryMs)
{
    if (m_bLeaving)
        return;
    auto record = sipWire::make<tagSipLine>(SIP_LINE, line());
    record.eState = state;
    record.nStatus = status >= 100 && status <= 699 ? status : 0;
    record.nRetryMs = retryMs;
    if (state == SIP_LINE_FAILED || state == SIP_LINE_REFUSED)
        record.eTls = m_eTlsFault;
    sipWire::setText(record.szReason, reason);
    m_stack.pPhone->tell(record);
    m_stack.onLine(line(), state);
}

const char* Registration::transportName() const
{
    static const char* const names[] = {"udp", "tcp", "tls"};
    return names[transport()];
}

std::string Registration::hopOf(const tagServerAddress& address) const
{
    return "sip:" + address.host + sipAddress::port(address.nPort) + ";transport=" + transportName();
}

std::string Registration::callHopOf(const tagServerAddress& address) const
{
    if (m_account.szProxy[0])
        return hopOf(address);
    const bool isElsewhere = !m_elsewhere.host.empty() && !m_bThroughIt;
    return openingHop::of(hopOf(address), isElsewhere ? m_elsewhere.host : m_account.szServer);
}

std::string Registration::hop() const
{
    return m_nAddress < m_addresses.size() ? hopOf(m_addresses[m_nAddress]) : "";
}

std::vector<std::string> Registration::hops() const
{
    std::vector<std::string> all;
    for (size_t i = 0; i < m_addresses.size(); ++i)
        all.push_back(callHopOf(m_addresses[(m_nAddress + i) % m_addresses.size()]));
    return all;
}

std::string Registration::hopTo(const std::string& host, uint32_t port) const
{
    const tagServerAddress* best = m_nAddress < m_addresses.size() ? &m_addresses[m_nAddress] : &m_last;
    if (best->host.empty())
        return "";
    const auto worth = [&](const tagServerAddress& address) {
        const bool isHost = sipAddress::bareHost(address.host) == host;
        return isHost ? 1 + (address.nPort == port) : 0;
    };
    for (const tagServerAddress& address : m_addresses) {
        if (worth(address) > worth(*best))
            best = &address;
    }
    return callHopOf(*best);
}

void Registration::renew()
{
    if (m_bLeaving)
        return;
    m_again.stop();
    dropHandle();
    m_mapped.clear();
    m_contactPlace.clear();
    m_stun.reset();
    m_nDelayMs = m_stack.setup.nRetryMs;
    start();
}

void Registration::doubt()
{
    if (m_bRegistered && !m_bLeaving)
        sendRegister();
}

// The server is asked itself: anybody can say so.
void Registration::unreachable(const std::string& host, uint32_t port)
{
    if (!m_bRegistered)
        return;
    const tagServerAddress& address = m_addresses[m_nAddress];
    if (transport() != SIP_UDP || sipAddress::bareHost(address.host) != host || address.nPort != port)
        return;
    askOnce();
}

void Registration::askOnce()
{
    if (m_doubt.isRunning())
        return;
    m_doubt.start(m_stack.setup.nKeepMs, [] {});
    doubt();
}

std::string Registration::server() const
{
    return sipAddress::host(m_account.szServer) + sipAddress::port(m_account.nPort);
}

std::string Registration::registrar() const
{
    if (m_elsewhere.host.empty() || m_bThroughIt)
        return "sip:" + server();
    return "sip:" + sipAddress::host(m_elsewhere.host) + sipAddress::port(m_elsewhere.nPort);
}

std::string Registration::ownAddress() const
{
    return sipAddress::quotedName(m_account.szDisplayName) + "<" + address() + ">";
}

std::string Registration::address() const
{
    return "sip:" + sipAddress::escaped(m_account.szUser) + "@" + server();
}

// The stack adds to what a server grants, and what is near the largest number becomes none. Its function is
// replaced here by itself, with a bound; what is too brief for it the line itself renews.
extern "C" __attribute__((visibility("default"))) sip_time_t
sip_contact_expires(sip_contact_t const* contact, sip_expires_t const* expires, sip_date_t const* date,
                    sip_time_t usual, sip_time_t now)
{
    const sip_time_t granted = secondsOf(contact, expires, date, usual, now);
    return granted > 0 && granted < kBriefGrant ? kLongestGrant : granted;
}
