#include "host/services/phone/sipBackend.h"
#include "host/services/phone/sipAccounts.h"
#include "host/services/phone/sipCalls.h"
#include "host/services/phone/sipLamps.h"
#include "host/services/phone/sipLink.h"
#include "support/file/deviceRoot.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include <string>
#include <utility>

namespace {

const char* const kSettings = "/rundata/config/system.ini";
const char* const kVersions = "/phone/resource/version.ini";
const char* const kCertificates = "/rundata/config/certificates"; // agent.pem and cafile.pem

int portOf(const char* key)
{
    const int port = nuxGetRegistryInt(kSettings, "SIP", key, 0);
    return port < 0 || port > 65535 ? 0 : port;
}

// Where they would be: the agent sees for itself whether they are there, also later.
std::string certificates()
{
    return std::string(devicePathFollow(kCertificates).GetText());
}

tagSipSetup setupOf()
{
    auto setup = sipWire::make<tagSipSetup>(SIP_SETUP, 0);
    const QString version =
        toQString(NUX_SubClass::nuxGetRegistryString(kVersions, "Version", "strRomVersion", ""));
    sipWire::setText(setup.szAgent, ("hxPhone/" + version).toStdString());
    const std::string folder = certificates();
    if (folder.size() < sizeof setup.szCertificates)
        sipWire::setText(setup.szCertificates, folder);
    setup.nPort = uint32_t(portOf("nPort"));
    setup.nTlsPort = uint32_t(portOf("nTlsPort"));
    setup.nSilentMs = sipBackend::SILENT_MS;
    setup.nRetryMs = sipBackend::RETRY_MS;
    setup.nRetryLastMs = sipBackend::RETRY_LAST_MS;
    setup.nRingSeconds = sipCalls::RING_SECONDS;
    setup.nOfferMs = sipBackend::OFFER_MS;
    return setup;
}

} // namespace

sipBackend::sipBackend(std::unique_ptr<sipMedia> media, AGENT agent)
    : m_eAgent(agent), m_pMedia(std::move(media))
{
    m_pLink = std::make_unique<sipLink>(
        tagSipLinkNews{[this] { agentIsThere(); }, [this](const sipWire::Reader& record) { take(record); },
                       [this] { agentIsGone(); }});
    m_pAccounts = std::make_unique<sipAccounts>(
        [this](const tagSipAccount& account) {
            if (m_pLink->isOpen())
                m_pLink->tell(account);
        },
        [this](int index) {
            m_pEvents->accountChanged(index);
            if (m_pAccounts->isRegistered(index))
                m_pMedia->prepare();
            m_pLamps->refresh();
        });
    m_pCalls = std::make_unique<sipCalls>(
        *m_pLink, *m_pMedia, [this](int line) -> const tagAccountFile& { return m_pAccounts->file(line); },
        tagCallNews{[this](const tagCall& call) { m_pEvents->callChanged(call); },
                    [this](const tagCall& call) { m_pEvents->callArrived(call); }});
    passTo(*m_pCalls);
    QObject::connect(&m_look, &QTimer::timeout, &m_look, [this] { lookAtNetwork(); });
    m_pLamps = std::make_unique<sipLamps>(sipLamps::tagPhone{
        [this](const void* record, size_t size) { m_pLink->tellBytes(record, size); },
        [this](int line) { return line < 0 ? m_pAccounts->defaultAccount() : line; },
        [this](int line) { return m_pAccounts->file(line).strList; },
        [this](const QString& number, int line) {
            if (!m_pAccounts->isRegistered(line))
                return 0;
            return m_pCalls->begin(number, line, m_pEvents->optionsFor(number, line), true);
        }});
}

sipBackend::~sipBackend()
{
    stop();
}

void sipBackend::agentIsThere()
{
    m_pAccounts->agentIsThere();
    m_pLamps->agentIsThere();
}

void sipBackend::agentIsGone()
{
    m_pLamps->agentIsGone();
    m_pCalls->agentIsGone();
    m_pAccounts->agentIsGone();
}

void sipBackend::take(const sipWire::Reader& record)
{
    if (record.head().eKind == SIP_LINE)
        m_pAccounts->take(record.as<tagSipLine>());
    else if (record.head().eKind == SIP_STUN)
        takeStun(record);
    else if (record.head().eKind == SIP_MESSAGES)
        m_pAccounts->takeMessages(record.as<tagSipMessages>());
    else if (!m_pLamps->take(record))
        m_pCalls->take(record);
}

void sipBackend::takeStun(const sipWire::Reader& record)
{
    m_pAccounts->takeStun(record.as<tagSipStun>());
    m_pCalls->take(record);
}

// Whoever moves to another network has to say where he is now; one that is only away for a while has not
// moved.
void sipBackend::lookAtNetwork()
{
    const uint32_t address = netGetLocalIPv4().s_addr;
    if (address == 0 || address == m_nAddress)
        return;
    const bool hasMoved = std::exchange(m_nAddress, address) != 0;
    if (hasMoved && m_pLink->isOpen())
        m_pLink->tell(sipWire::make<tagSipHead>(SIP_NETWORK, 0));
}

void sipBackend::stop()
{
    m_look.stop();
    m_pLink->stop();
}

void sipBackend::start(phoneEvents* events)
{
    m_pEvents = events;
    m_pAccounts->readFiles();
    lookAtNetwork();
    m_look.start(LOOK_MS);
    if (!m_pLink->listen(setupOf())) {
        nuxTrace(TRACE_NOTE, "the SIP user agent cannot be served: there are no lines");
        m_pAccounts->agentIsGone();
    }
    startAgentIfWanted();
}

// Without an account there is nothing to register, and nobody who should reach the phone.
void sipBackend::startAgentIfWanted()
{
    if (m_eAgent == AGENT_OWN && m_pLink->isServed() && m_pAccounts->hasAny())
        m_pLink->startAgent();
}

tagAccountInfo sipBackend::account(int index) const
{
    return m_pAccounts->info(index);
}

int sipBackend::defaultAccount() const
{
    return m_pAccounts->defaultAccount();
}

int sipBackend::dial(const QString& number, int account, const tagCallOptions& options)
{
    if (number.isEmpty() || account < -1 || account >= PHONE_ACCOUNT_COUNT)
        return 0;
    if (m_pAccounts->isRegistered(account))
        return m_pCalls->begin(number, account, options);
    m_pCalls->fail(number, account, m_pAccounts->whyNot(account));
    return 0;
}

phoneLamps* sipBackend::lamps()
{
    return m_pLamps.get();
}

int sipBackend::TryThreadMessage(msgObject& msg)
{
    if (msg.message == CONFIG_MSG_BCAST_CHANGED && msg.wParam == CONFIG_CHANGED_ACCOUNT) {
        m_pAccounts->readFiles();
        startAgentIfWanted();
    }
    return 0;
}
