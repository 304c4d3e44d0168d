#include "host/screen/screenState.h"
#include "host/services/system/backlight.h"
#include "host/services/system/hostLog.h"

screenState& screenState::instance()
{
    static screenState state;
    return state;
}

screenState::screenState()
{
    m_idle.start();
}

qint64 screenState::idleMs() const
{
    return isSaverSuspended() ? 0 : m_idle.elapsed() + m_nHeadStart;
}

void screenState::restartIdle()
{
    setIdle(0);
}

void screenState::setIdle(qint64 ms)
{
    m_idle.restart();
    m_nHeadStart = ms;
    emit awake();
}

void screenState::touch()
{
    emit touched();
    restartIdle();
}

void screenState::setBacklight(bool on)
{
    if (m_bBacklight == on)
        return;
    m_bBacklight = on;
    hostLog("backlight", on ? QStringLiteral("on") : QStringLiteral("off"));
    backlightSwitch(on);
}

void screenState::suspendSaver(SCREEN_SAVERS client)
{
    const bool first = m_suspending.isEmpty();
    m_suspending.insert(client);
    if (first)
        emit saverSuspended(true);
}

void screenState::resumeSaver(SCREEN_SAVERS client)
{
    if (!m_suspending.remove(client) || !m_suspending.isEmpty())
        return;
    m_idle.restart();
    m_nHeadStart = 0;
    emit saverSuspended(false);
}

// Beside the reasons: nobody who darkens the lamp takes the messages away.
void screenState::setMessagesWait(bool wait)
{
    const bool wasLit = isLampLit();
    m_bMessagesWait = wait;
    if (isLampLit() != wasLit)
        emit lampChanged(!wasLit);
}

void screenState::lightLamp(SIGNAL_LAMP reason)
{
    if (reason == SIGNAL_LAMP_OFF)
        return;
    const bool wasLit = isLampLit();
    m_lampReasons.insert(reason);
    if (!wasLit)
        emit lampChanged(true);
}

// SIGNAL_LAMP_OFF takes every reason away: whoever turns the lamp off does not say why it was lit.
void screenState::darkenLamp(SIGNAL_LAMP reason)
{
    const bool wasLit = isLampLit();
    if (reason == SIGNAL_LAMP_OFF)
        m_lampReasons.clear();
    else
        m_lampReasons.remove(reason);
    if (wasLit && !isLampLit())
        emit lampChanged(false);
}

void RegisterScreenSavers(SCREEN_SAVERS client, int flags)
{
    hostLog("saver", QStringLiteral("register %1 %2").arg(client).arg(flags));
    screenState::instance().suspendSaver(client);
}

void UnRegisterScreenSavers(SCREEN_SAVERS client, int flags)
{
    hostLog("saver", QStringLiteral("unregister %1 %2").arg(client).arg(flags));
    screenState::instance().resumeSaver(client);
}

void ResetScreenSavers(int restart, int flags)
{
    hostLog("saver", QStringLiteral("reset %1 %2").arg(restart).arg(flags));
    if (restart)
        screenState::instance().restartIdle();
}

void RegisterSignalLamp(SIGNAL_LAMP lamp)
{
    hostLog("lamp", QStringLiteral("register %1").arg(lamp));
    screenState::instance().lightLamp(lamp);
}

void UnRegisterSignalLamp(SIGNAL_LAMP lamp)
{
    hostLog("lamp", QStringLiteral("unregister %1").arg(lamp));
    screenState::instance().darkenLamp(lamp);
}
