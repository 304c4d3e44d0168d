#include "host/services/phone/phoneSimulation.h"
#include "host/services/phone/doNotDisturb.h"
#include "host/services/phone/phoneService.h"
#include <algorithm>

phoneSimulation::phoneSimulation()
    : m_accounts([this](int index) { m_pEvents->accountChanged(index); }),
      m_calls([this](const tagCall& call) { m_pEvents->callChanged(call); })
{
}

phoneSimulation* phoneSimulation::instance()
{
    return dynamic_cast<phoneSimulation*>(&phoneService::instance().backend());
}

void phoneSimulation::start(phoneEvents* events)
{
    m_pEvents = events;
    m_accounts.readFiles();
}

bool phoneSimulation::setLine(int index, const tagLineSetting& setting)
{
    const int state = setting.state.value_or(LINE_DISABLED);
    if (index < 0 || index >= PHONE_ACCOUNT_COUNT || state < int(LINE_DISABLED))
        return false;
    m_accounts.set(index, setting);
    return true;
}

void phoneSimulation::setCalls(int total, int talk)
{
    m_nOtherCalls = std::max(total, 0);
    m_bOtherTalk = talk != 0;
}

int phoneSimulation::dial(const QString& number, int account, int)
{
    const int line = account == -1 ? defaultAccount() : account;
    const bool isLine = line < PHONE_ACCOUNT_COUNT || (line == PHONE_LINE_PSTN && hasPstn());
    if (number.isEmpty() || !isLine || line < -1)
        return 0;
    if (!isReady(line)) {
        m_calls.refuse(number, line, "The line is not registered");
        return 0;
    }
    return m_calls.begin(number, line);
}

bool phoneSimulation::isReady(int line) const
{
    return line == PHONE_LINE_PSTN ? hasPstn() : line >= 0 && m_accounts.isRegistered(line);
}

bool phoneSimulation::ring(const QString& number, int line, const QString& name)
{
    const bool isLine = line >= 0 && (line < PHONE_ACCOUNT_COUNT || (line == PHONE_LINE_PSTN && hasPstn()));
    if (number.isEmpty() || !isLine)
        return false;
    if (doNotDisturb::refuses(line))
        m_calls.turnAway(number, line, name);
    else
        m_calls.ring(number, line, name);
    return true;
}

int phoneSimulation::TryThreadMessage(msgObject& msg)
{
    if (msg.message == CONFIG_MSG_BCAST_CHANGED && msg.wParam == CONFIG_CHANGED_ACCOUNT)
        m_accounts.readFiles();
    return 0;
}
