#include "host/desktop/pressGuard.h"

pressGuard::pressGuard()
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(SETTLE_MS);
    m_most.setSingleShot(true);
    m_most.setInterval(MOST_MS);
}

void pressGuard::changed(KIND kind)
{
    m_eKind = kind;
    m_settle.start();
    m_most.start();
}

bool pressGuard::takes(bool isEnd)
{
    const bool isMeant = isEnd ? m_eKind == ANSWERED : m_eKind == AFTER_A_CALL;
    if (!m_settle.isActive() || !m_most.isActive() || isMeant)
        return true;
    m_settle.start();
    return false;
}
