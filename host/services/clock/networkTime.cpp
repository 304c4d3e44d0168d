#include "host/services/clock/networkTime.h"
#include "host/services/system/phoneClock.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include <algorithm>

namespace {

const char* const kFile = "/rundata/config/system.ini";
const char* const kSection = "LocalTime";
const char* const kPortKey = "nNTPPort";
constexpr double kMsPerSecond = 1000.0;

// Codes with which a server forbids to be asked, other than for a while.
bool isForbidden(const QByteArray& code)
{
    return code == "DENY" || code == "RSTR";
}

} // namespace

networkTime& networkTime::instance()
{
    static networkTime* service = new networkTime;
    return *service;
}

networkTime::networkTime()
{
    m_next.setSingleShot(true);
    connect(&m_next, &QTimer::timeout, this, &networkTime::look);
    connect(&m_client, &sntpClient::answered, this, &networkTime::onAnswer);
    connect(&m_client, &sntpClient::failed, this, &networkTime::onFailure);
}

void networkTime::start()
{
    m_bStarted = true;
    m_leftAlone.clear();
    m_next.start(START_MS);
}

int networkTime::TryThreadMessage(msgObject& msg)
{
    if (m_bStarted && msg.message == CONFIG_MSG_BCAST_CHANGED && msg.wParam == CONFIG_CHANGED_DATE_TIME) {
        m_nRetryMs = RETRY_MS;
        m_client.stop();
        m_next.start(SETTLE_MS);
    }
    return 0;
}

// False when nobody is to be asked.
bool networkTime::readServer()
{
    if (nuxGetRegistryInt(kFile, kSection, "bNTPEnable", 0) != 1)
        return false;
    const chString server = NUX_SubClass::nuxGetRegistryString(kFile, kSection, "strPrimaryNTPServer", "");
    m_strServer = toQString(server);
    if (!IsValidServerName(server)) {
        if (!server.IsEmpty())
            nuxTrace(TRACE_NOTE, "\"%s\" is no time server", server.GetText());
        return false;
    }
    const chString port = NUX_SubClass::nuxGetRegistryString(kFile, kSection, kPortKey, "");
    if (!port.IsEmpty() && !IsValidPort(port)) {
        nuxTrace(TRACE_NOTE, "Time server %s: \"%s\" is no port", server.GetText(), port.GetText());
        return false;
    }
    m_nPort = quint16(nuxGetRegistryInt(kFile, kSection, kPortKey, PORT));
    return true;
}

QString networkTime::serverAndPort() const
{
    return m_strServer + QLatin1Char(':') + QString::number(m_nPort);
}

void networkTime::look()
{
    m_next.stop();
    m_client.stop();
    if (!readServer())
        return;
    const QDeadlineTimer leftAlone = m_leftAlone.value(serverAndPort());
    if (!leftAlone.hasExpired())
        m_next.start(int(leftAlone.remainingTime()));
    else if (netGetNetworkSta() != NET_UP)
        m_next.start(NETWORK_MS);
    else
        m_client.ask(m_strServer, m_nPort);
}

void networkTime::onAnswer(qint64 utcMs)
{
    // Somebody may have set the clock by hand meanwhile.
    const QString asked = m_strServer;
    if (!readServer() || m_strServer != asked)
        return;
    const long long moved = utcMs - phoneClockUtcMs();
    phoneClockFollowUtcMs(utcMs);
    nuxTrace(TRACE_DETAIL, "Time server %s: the clock moves by %.3f s", qPrintable(m_strServer),
             double(moved) / kMsPerSecond);
    m_nRetryMs = RETRY_MS;
    m_next.start(HOUR_MS);
}

void networkTime::onFailure(const QByteArray& why, bool isKiss)
{
    nuxTrace(TRACE_NOTE, "Time server %s: %s%s", qPrintable(m_strServer),
             isKiss ? "it asks to be left alone, " : "", why.constData());
    // Until the settings change, or the next start.
    if (isKiss && isForbidden(why))
        return;
    if (isKiss) {
        m_leftAlone.removeIf([](const auto& server) { return server.value().hasExpired(); });
        m_leftAlone[serverAndPort()].setRemainingTime(HOUR_MS);
    }
    m_next.start(isKiss ? HOUR_MS : m_nRetryMs);
    m_nRetryMs = std::min(m_nRetryMs * 2, int(HOUR_MS));
}
