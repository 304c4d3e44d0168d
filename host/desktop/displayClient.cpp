#include "host/desktop/displayClient.h"
#include "support/file/fileTools.h"
#include "support/file/path.h"
#include "support/host/module.h"
#include "support/host/net.h"
#include "support/xml/xmlFile.h"

namespace {

const char* const kConfig = "/rundata/config/system.ini";
const char* const kSection = "nDeck";
// The server's raw answer, put there by the client.
const char* const kAnswerFolder = "/tmp";
const char* const kAnswer = "/tmp/ndeck_reg_result.txt";

} // namespace

displayClient& displayClient::instance()
{
    static displayClient* client = new displayClient;
    return *client;
}

displayClient::displayClient()
{
    m_look.setInterval(LOOK_MS);
    connect(&m_look, &QTimer::timeout, this, &displayClient::look);
}

void displayClient::start()
{
    if (m_bStarted)
        return;
    m_bStarted = true;
    pathMakeDirectories(kAnswerFolder);
    MonitorSection(kConfig, kSection);
    const auto enabled = hostModule().isDisplayEnabled;
    setEnabled(enabled && enabled());
}

void displayClient::setEnabled(bool enabled)
{
    const bool changed = m_bEnabled != enabled;
    m_bEnabled = enabled;
    if (enabled) {
        m_asked.invalidate();
        m_look.start();
        look();
    } else {
        m_look.stop();
        if (changed && hostModule().unLaunchDisplay)
            hostModule().unLaunchDisplay();
    }
    if (changed)
        emit enabledChanged(enabled);
}

// Another server, another name: whatever changed, the display registers anew.
void displayClient::OnRegistryChanged(HREGISTRY)
{
    const auto enabled = hostModule().isDisplayEnabled;
    setEnabled(enabled && enabled());
}

void displayClient::look()
{
    if (netGetNetworkSta() != NET_UP) {
        m_asked.invalidate();
        return;
    }
    if (!m_asked.isValid() || m_asked.elapsed() >= RENEW_MS ||
        (m_asked.elapsed() >= RETRY_MS && !isAnswerGood()))
        request();
}

void displayClient::request()
{
    m_asked.start();
    fileRemove(kAnswer);
    if (hostModule().registerDisplay)
        hostModule().registerDisplay();
}

bool displayClient::isAnswerGood()
{
    xmlFile answer;
    return answer.LoadFromFile(kAnswer) &&
           xmlFindElementFromRoot(&answer, "norvane", "ndeck", "result", "success") != nullptr;
}
