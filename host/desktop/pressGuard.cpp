#include "host/desktop/pressGuard.h"
#include "support/host/registry.h"

namespace {

const char* const kSettings = "/rundata/config/system.ini";

int settleMs()
{
    return qBound<int>(0, nuxGetRegistryInt(kSettings, "CALL", "nPressGuard", pressGuard::SETTLE_MS),
                       pressGuard::MOST_MS);
}

} // namespace

pressGuard::pressGuard()
{
    m_settle.setSingleShot(true);
    m_most.setSingleShot(true);
    m_most.setInterval(MOST_MS);
}

void pressGuard::changed(KIND kind)
{
    m_eKind = kind;
    m_settle.setInterval(settleMs());
    m_most.start();
    if (m_settle.interval() > 0)
        m_settle.start();
    else
        m_settle.stop();
}

bool pressGuard::takes(bool isEnd)
{
    const bool isMeant = isEnd ? m_eKind == ANSWERED || m_eKind == DIALLED : m_eKind == AFTER_A_CALL;
    if (!m_settle.isActive() || !m_most.isActive() || isMeant)
        return true;
    m_settle.start();
    return false;
}
