#include "tests/sip/agentProcess.h"
#include "tests/kit/plain/deviceFolder.h"
#include "tests/kit/plain/ports.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/udpPeer.h"
#include <QElapsedTimer>
#include <cstdio>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

bool isReadable(int socket, int ms)
{
    pollfd entry = {socket, POLLIN, 0};
    return poll(&entry, 1, ms) > 0;
}

} // namespace

AgentProcess::AgentProcess()
{
    m_process.setProcessChannelMode(QProcess::MergedChannels);
}

AgentProcess::~AgentProcess()
{
    closeLink();
    if (m_nListener >= 0)
        close(m_nListener);
    if (isRunning() && !m_process.waitForFinished(5000)) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

tagSipSetup AgentProcess::quickSetup()
{
    auto setup = sipWire::make<tagSipSetup>(SIP_SETUP, 0);
    sipWire::setText(setup.szAddress, "127.0.0.1");
    sipWire::setText(setup.szAgent, "Test");
    setup.nPort = kit::freePort();
    setup.nSilentMs = 400;
    setup.nRetryMs = 200;
    setup.nRetryLastMs = 800;
    setup.nRingSeconds = 60;
    setup.nOfferMs = 2000;
    return setup;
}

tagSipSetup AgentProcess::calmSetup()
{
    tagSipSetup setup = quickSetup();
    setup.nSilentMs = 5000;
    return setup;
}

bool AgentProcess::start(const tagSipSetup& setup, const QStringList& environment)
{
    const QByteArray path = m_folder.filePath("phone").toUtf8();
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    strncpy(address.sun_path, path.constData(), sizeof address.sun_path - 1);
    m_nListener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (bind(m_nListener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        listen(m_nListener, 1) != 0)
        return false;
    kit::endWithUs(m_process);
    m_process.setEnvironment(QProcess::systemEnvironment() + environment);
    m_process.start(kit::program("hxSip"), {path});
    if (!m_process.waitForStarted() || !isReadable(m_nListener, WAIT_MS))
        return false;
    m_nLink = accept4(m_nListener, nullptr, nullptr, SOCK_CLOEXEC);
    m_nPort = setup.nPort;
    tell(setup);
    if (next(SIP_HELLO, 0))
        return true;
    m_process.waitForReadyRead(1000);
    fprintf(stderr, "hxSip: %s\n", output().constData());
    return false;
}

void AgentProcess::tellBytes(const void* bytes, size_t size)
{
    const char* at = static_cast<const char*>(bytes);
    while (size > 0) {
        const ssize_t count = send(m_nLink, at, size, MSG_NOSIGNAL);
        if (count <= 0)
            return;
        at += count;
        size -= size_t(count);
    }
}

const tagSipHead* AgentProcess::next(const std::function<bool(const tagSipHead&)>& fits, int ms)
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        const sipWire::TAKEN taken = m_reader.take();
        if (taken == sipWire::TAKEN::BAD)
            return nullptr;
        if (taken == sipWire::TAKEN::RECORD) {
            if (fits(m_reader.head()))
                return &m_reader.head();
            continue;
        }
        const int left = ms - int(timer.elapsed());
        char bytes[65536];
        if (m_nLink < 0 || left <= 0 || !isReadable(m_nLink, left))
            return nullptr;
        const ssize_t count = recv(m_nLink, bytes, sizeof bytes, 0);
        if (count <= 0)
            return nullptr;
        m_reader.add(bytes, size_t(count));
    }
}

const tagSipHead* AgentProcess::next(uint32_t kind, uint32_t id, int ms)
{
    return next([&](const tagSipHead& head) { return head.eKind == kind && head.nId == id; }, ms);
}

const tagSipLine* AgentProcess::nextLine(uint32_t line, SIP_LINE_STATE state, int ms)
{
    return reinterpret_cast<const tagSipLine*>(next(
        [&](const tagSipHead& head) {
            return head.eKind == SIP_LINE && head.nId == line &&
                   reinterpret_cast<const tagSipLine&>(head).eState == state;
        },
        ms));
}

void AgentProcess::closeLink()
{
    if (m_nLink >= 0)
        close(m_nLink);
    m_nLink = -1;
}

bool AgentProcess::ends(int ms)
{
    return !isRunning() || m_process.waitForFinished(ms);
}

QByteArray AgentProcess::output()
{
    m_output += m_process.readAllStandardOutput();
    return m_output;
}

tagSipAccount accountAt(uint32_t line, uint32_t port, SIP_TRANSPORT transport)
{
    auto account = sipWire::make<tagSipAccount>(SIP_ACCOUNT, line);
    sipWire::setText(account.szUser, "user" + std::to_string(line));
    sipWire::setText(account.szDisplayName, "User " + std::to_string(line));
    sipWire::setText(account.szAuthName, "auth" + std::to_string(line));
    sipWire::setText(account.szPassword, "s3cret:" + std::to_string(line));
    sipWire::setText(account.szServer, "127.0.0.1");
    account.nPort = port;
    account.eTransport = transport;
    account.nExpires = 3600;
    return account;
}

tagSipAccount accountBehind(uint32_t proxyPort, const char* server)
{
    tagSipAccount account = accountAt(0, 0);
    sipWire::setText(account.szServer, server);
    sipWire::setText(account.szProxy, "127.0.0.1");
    account.nProxyPort = proxyPort;
    return account;
}
