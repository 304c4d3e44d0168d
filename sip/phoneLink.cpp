#include "sip/phoneLink.h"
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>

namespace {

constexpr size_t kReadBytes = 65536;

bool isOnlyBusy()
{
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

} // namespace

PhoneLink::PhoneLink(su_root_t* root, Taker taker, Ender end)
    : m_pRoot(root), m_taker(std::move(taker)), m_end(std::move(end))
{
}

PhoneLink::~PhoneLink()
{
    if (m_nWait >= 0)
        su_root_deregister(m_pRoot, m_nWait);
    if (m_nSocket != INVALID_SOCKET)
        su_close(m_nSocket);
}

bool PhoneLink::open(const std::string& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        return false;
    memcpy(address.sun_path, path.data(), path.size());
    m_nSocket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (m_nSocket == INVALID_SOCKET)
        return false;
    if (connect(m_nSocket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return false;
    su_setblocking(m_nSocket, 0);
    su_wait_t wait = SU_WAIT_INIT;
    if (su_wait_create(&wait, m_nSocket, SU_WAIT_IN) != 0)
        return false;
    m_nWait = su_root_register(m_pRoot, &wait, onReady, reinterpret_cast<su_wakeup_arg_t*>(this), 0);
    return m_nWait >= 0;
}

int PhoneLink::onReady(su_root_magic_t*, su_wait_t* wait, su_wakeup_arg_t* self)
{
    auto* link = reinterpret_cast<PhoneLink*>(self);
    const int events = su_wait_events(wait, link->m_nSocket);
    if (events & SU_WAIT_OUT)
        link->flush();
    if (events & ~SU_WAIT_OUT)
        link->receive();
    return 0;
}

void PhoneLink::receive()
{
    char bytes[kReadBytes];
    const ssize_t count = recv(m_nSocket, bytes, sizeof bytes, 0);
    if (count <= 0) {
        if (count == 0 || !isOnlyBusy())
            fail(false);
        return;
    }
    m_reader.add(bytes, size_t(count));
    for (;;) {
        switch (m_reader.take()) {
        case sipWire::TAKEN::RECORD:
            m_taker(m_reader);
            break;
        case sipWire::TAKEN::BAD:
            fail(true);
            return;
        case sipWire::TAKEN::NEED_MORE:
            return;
        }
    }
}

void PhoneLink::send(const void* record, size_t size)
{
    if (m_nWait < 0)
        return;
    m_waiting.append(static_cast<const char*>(record), size);
    if (m_waiting.size() > MAX_WAITING)
        fail(false);
    else
        flush();
}

void PhoneLink::flush()
{
    while (!m_waiting.empty()) {
        const ssize_t count = ::send(m_nSocket, m_waiting.data(), m_waiting.size(), MSG_NOSIGNAL);
        if (count < 0 && !isOnlyBusy()) {
            fail(false);
            return;
        }
        if (count <= 0)
            break;
        m_waiting.erase(0, size_t(count));
    }
    watch();
}

void PhoneLink::watch()
{
    if (m_nWait >= 0)
        su_root_eventmask(m_pRoot, m_nWait, m_nSocket,
                          m_waiting.empty() ? SU_WAIT_IN : SU_WAIT_IN | SU_WAIT_OUT);
}

void PhoneLink::fail(bool isDamaged)
{
    if (m_nWait < 0)
        return;
    su_root_deregister(m_pRoot, m_nWait);
    m_nWait = -1;
    m_waiting.clear();
    m_end(isDamaged);
}
