#include "host/services/phone/sipLink.h"
#include "host/services/messages/messageSocket.h"
#include "host/services/system/runAddress.h"
#include "host/services/system/runFolder.h"
#include "support/host/trace.h"
#include <cerrno>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr const char* kSocket = "hxSip.link";

bool isOnlyBusy()
{
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

int closeFailed(int fd)
{
    if (fd >= 0)
        close(fd);
    return -1;
}

int listener()
{
    if (!runFolder::make())
        return -1;
    unlink((runFolder::path() + '/' + kSocket).c_str());
    const runAddress address(kSocket);
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd >= 0 && bind(fd, address.get(), runAddress::size()) == 0 &&
        chmod(address.path(), S_IRUSR | S_IWUSR) == 0 && listen(fd, 1) == 0)
        return fd;
    return closeFailed(fd);
}

// It may be what calls at this moment.
void retire(std::unique_ptr<QSocketNotifier>& notifier)
{
    if (!notifier)
        return;
    notifier->setEnabled(false);
    notifier.release()->deleteLater();
}

} // namespace

sipLink::sipLink(tagSipLinkNews news) : m_news(std::move(news))
{
    m_rest.setSingleShot(true);
    m_hello.setSingleShot(true);
    connect(&m_rest, &QTimer::timeout, this, [this] { takeRecords(); });
    connect(&m_hello, &QTimer::timeout, this, [this] { discard("says nothing"); });
    connect(&m_ping, &QTimer::timeout, this, [this] { ping(); });
}

sipLink::~sipLink()
{
    stop();
}

bool sipLink::listen(const tagSipSetup& setup)
{
    m_setup = setup;
    m_nListener = listener();
    if (m_nListener < 0)
        return false;
    m_pAccept = std::make_unique<QSocketNotifier>(m_nListener, QSocketNotifier::Read);
    connect(m_pAccept.get(), &QSocketNotifier::activated, this, [this] { acceptOne(); });
    return true;
}

void sipLink::startAgent()
{
    if (m_pProcess)
        return;
    tagKeptProgram program;
    program.strName = "hxSip";
    // By its bare name the socket has an address, however long the path of its folder is.
    program.arguments = QStringList{kSocket};
    program.strFolder = QString::fromStdString(runFolder::path());
    // It notices by the socket, hangs up and unregisters.
    program.nDeathSignal = 0;
    program.nLastDelayMs = AGAIN_MS;
    program.died = [this] { drop(); };
    m_pProcess = std::make_unique<keptProcess>(program, nullptr);
    m_pProcess->start();
}

void sipLink::stop()
{
    m_news = {};
    if (m_bOpen)
        tell(sipWire::make<tagSipHead>(SIP_END, 0));
    if (m_pProcess)
        m_pProcess->stop(m_bOpen ? int(END_MS) : 0);
    drop();
    m_pAccept.reset();
    if (m_nListener < 0)
        return;
    m_nListener = closeFailed(m_nListener);
    unlink((runFolder::path() + '/' + kSocket).c_str());
}

bool sipLink::isAgent(int socket) const
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    return messageSocket::isSameUser(socket) &&
           (!m_pProcess || (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
                            peer.pid == m_pProcess->pid()));
}

void sipLink::acceptOne()
{
    const int fd = accept4(m_nListener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (fd < 0)
        return;
    if (m_nLink >= 0 || !isAgent(fd)) {
        close(fd);
        return;
    }
    m_nLink = fd;
    m_pRead = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
    m_pWrite = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Write);
    m_pWrite->setEnabled(false);
    connect(m_pRead.get(), &QSocketNotifier::activated, this, [this] { receive(); });
    connect(m_pWrite.get(), &QSocketNotifier::activated, this, [this] { flush(); });
    m_hello.start(HELLO_MS);
    tell(m_setup);
}

void sipLink::receive()
{
    char bytes[BYTES_A_TURN];
    const ssize_t count = recv(m_nLink, bytes, sizeof bytes, 0);
    if (count == 0 || (count < 0 && !isOnlyBusy())) {
        discard("has closed its link");
    } else if (count > 0) {
        m_reader.add(bytes, size_t(count));
        takeRecords();
    }
}

// Nothing is read while records wait, so that no more of them can.
void sipLink::takeRecords()
{
    for (int i = 0; i < RECORDS_A_TURN && m_nLink >= 0; ++i) {
        switch (m_reader.take()) {
        case sipWire::TAKEN::RECORD:
            take();
            break;
        case sipWire::TAKEN::BAD:
            discard("wrote a damaged record");
            return;
        case sipWire::TAKEN::NEED_MORE:
            m_pRead->setEnabled(true);
            return;
        }
    }
    if (m_nLink < 0)
        return;
    m_pRead->setEnabled(false);
    m_rest.start(0);
}

void sipLink::take()
{
    const uint32_t kind = m_reader.head().eKind;
    const bool isHello = kind == SIP_HELLO;
    m_nPings = 0;
    if (kind < SIP_HELLO || isHello == m_bOpen) {
        discard("wrote a record that has no place there");
    } else if (isHello) {
        m_bOpen = true;
        m_hello.stop();
        m_ping.start(PING_MS);
        if (m_news.opened)
            m_news.opened();
    } else if (kind != SIP_PONG && m_news.took) {
        m_news.took(m_reader);
    }
}

void sipLink::send(const void* record, size_t size)
{
    if (m_nLink < 0)
        return;
    m_waiting.append(static_cast<const char*>(record), qsizetype(size));
    if (m_waiting.size() > WAITING_MAX)
        discard("does not read what it is told");
    else
        flush();
}

void sipLink::flush()
{
    while (!m_waiting.isEmpty()) {
        const ssize_t count = ::send(m_nLink, m_waiting.constData(), size_t(m_waiting.size()), MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 && !isOnlyBusy()) {
            discard("cannot be told anything");
            return;
        }
        if (count <= 0)
            break;
        m_waiting.remove(0, count);
    }
    m_pWrite->setEnabled(!m_waiting.isEmpty());
}

// Questions are counted, not seconds: a phone that slept, or was busy itself, has asked nothing meanwhile.
void sipLink::ping()
{
    if (m_nPings >= PINGS_LOST_MAX) {
        discard("is not alive any more");
        return;
    }
    ++m_nPings;
    tell(sipWire::make<tagSipHead>(SIP_PING, 0));
}

void sipLink::discard(const char* why)
{
    nuxTrace(TRACE_NOTE, "the SIP user agent %s", why);
    if (m_pProcess)
        m_pProcess->discard();
    drop();
}

void sipLink::drop()
{
    m_hello.stop();
    m_ping.stop();
    m_rest.stop();
    m_bOpen = false;
    m_waiting.clear();
    m_reader = {};
    retire(m_pRead);
    retire(m_pWrite);
    m_nLink = closeFailed(m_nLink);
    if (m_news.closed)
        m_news.closed();
}
