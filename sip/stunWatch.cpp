#include "sip/stunWatch.h"
#include "sip/ownSockets.h"
#include "sip/phoneLink.h"
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <dlfcn.h>
#include <set>
#include <sofia-sip/su.h>

namespace {

constexpr unsigned kSentUnheard = 4; // a question that has gone so often is more than a lost packet
constexpr size_t kMaxParts = 8;      // of one datagram in the stack's memory

std::set<StunWatch*>& watches()
{
    static std::set<StunWatch*> all;
    return all;
}

int64_t nowMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

StunWatch::StunWatch(const tagSipStack& stack, const tagSipAccount& account)
    : m_stack(stack), m_nLine(account.head.nId), m_host(account.szStun), m_nPort(account.nStunPort),
      m_finder(stack.pDns), m_step(stack.pRoot)
{
    watches().insert(this);
}

StunWatch::~StunWatch()
{
    watches().erase(this);
    tell(false);
}

void StunWatch::start(std::function<void()> seen, std::function<void()> lost)
{
    m_seen = std::move(seen);
    m_lost = std::move(lost);
    find();
}

void StunWatch::find()
{
    m_finder.find(m_host, m_nPort, SIP_UDP, [this](const std::vector<tagServerAddress>& addresses) {
        const auto found = std::find_if(addresses.begin(), addresses.end(), [](const auto& address) {
            return address.host.find(':') == std::string::npos; // what it tells are IPv4 addresses
        });
        if (found == addresses.end()) {
            silent();
            return;
        }
        m_server = *found;
        ask();
    });
}

void StunWatch::ask()
{
    m_query = std::make_unique<StunQuery>(StunQuery::STANDARD, nowMs());
    m_nSent = 0;
    step();
}

void StunWatch::step()
{
    const int64_t now = nowMs();
    if (m_query->isOver(now)) {
        silent();
        return;
    }
    const bool isDue = m_query->isDue(now);
    if (isDue)
        ownSockets::send(ownSockets::ownPort(), m_server.host, m_server.nPort, m_query->request().data(),
                         m_query->request().size());
    m_step.start(uint32_t(std::max<int64_t>(m_query->nextMs() - now, 1)), [this] { step(); });
    if (isDue && ++m_nSent == kSentUnheard && !m_told.empty())
        m_lost();
}

void StunWatch::take(const unsigned char* bytes, size_t size, const std::string& host, uint32_t port)
{
    for (StunWatch* watch : watches()) {
        const bool isAsked = watch->m_query && watch->m_server.host == host && watch->m_server.nPort == port;
        if (isAsked && watch->m_query->take(bytes, size)) {
            // Not within what the stack is about to do with its socket.
            watch->m_step.start(0, [watch] { watch->answered(); });
            return;
        }
    }
}

void StunWatch::answered()
{
    const tagStunPlace place = m_query->place();
    m_query.reset();
    if (place.nPort == 0) {
        silent();
        return;
    }
    tell(true);
    const bool isOther = place.host != m_place.host || place.nPort != m_place.nPort;
    m_place = place;
    m_step.start(m_stack.setup.nKeepMs, [this] { ask(); });
    if (isOther)
        m_seen();
}

void StunWatch::silent()
{
    m_query.reset();
    tell(false, true);
    m_step.start(m_stack.setup.nRetryLastMs, [this] { find(); });
}

void StunWatch::tell(bool isThere, bool isSilent)
{
    const std::string server = isThere ? m_server.host + ':' + std::to_string(m_server.nPort) : "";
    if (server == m_told && isSilent == m_bSilentTold)
        return;
    m_told = server;
    m_bSilentTold = isSilent;
    auto record = sipWire::make<tagSipStun>(SIP_STUN, m_nLine);
    record.bSilent = isSilent;
    if (isThere) {
        record.nPort = m_server.nPort;
        sipWire::setText(record.szAddress, m_server.host);
    }
    m_stack.pPhone->tell(record);
}

// The stack knows no way to hear of such messages, and would answer those of strangers: its function is
// replaced here, and sees none of them.
extern "C" __attribute__((visibility("default"))) issize_t su_vrecv(su_socket_t socket, su_iovec_t parts[],
                                                                    isize_t count, int flags,
                                                                    su_sockaddr_t* from, socklen_t* fromSize)
{
    using Receiver = issize_t (*)(su_socket_t, su_iovec_t[], isize_t, int, su_sockaddr_t*, socklen_t*);
    static const auto receive = reinterpret_cast<Receiver>(dlsym(RTLD_NEXT, "su_vrecv"));
    const issize_t size = receive(socket, parts, count, flags, from, fromSize);
    if (size <= 0 || !from || !parts || count == 0)
        return size;
    unsigned char bytes[stunMessage::MAX_BYTES];
    size_t copied = 0;
    for (isize_t i = 0; i < std::min<isize_t>(count, kMaxParts) && copied < sizeof bytes; ++i) {
        const auto* part = static_cast<const unsigned char*>(static_cast<void*>(parts[i].siv_base));
        const size_t more =
            std::min({size_t(parts[i].siv_len), sizeof bytes - copied, size_t(size) - copied});
        std::copy_n(part, more, bytes + copied);
        copied += more;
    }
    if (!stunMessage::isMessage(bytes, copied))
        return size;
    char host[SU_ADDRSIZE] = "";
    if (copied == size_t(size) && su_inet_ntop(from->su_family, SU_ADDR(from), host, sizeof host))
        StunWatch::take(bytes, copied, host, ntohs(from->su_port));
    errno = EAGAIN; // as if nothing had come
    return -1;
}
