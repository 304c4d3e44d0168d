#include "host/services/phone/phoneSimulation.h"
#include "host/services/phone/callNumber.h"
#include "host/services/phone/phoneService.h"
#include "support/host/api.h"
#include <QTimer>
#include <algorithm>

phoneSimulation::phoneSimulation()
    : m_accounts([this](int index) {
          m_pEvents->accountChanged(index);
          m_lamps.refresh();
      }),
      m_calls({[this](const tagCall& call) { m_pEvents->callChanged(call); },
               [this](const tagCall& call) { m_pEvents->callArrived(call); }}),
      m_lamps({[this](int line) { return isReady(line < 0 ? defaultAccount() : line); },
               [this](int line) { return line < 0 ? defaultAccount() : line; },
               [this](const QString& number, int line) { return m_calls.pickUp(number, line); }})
{
    passTo(m_calls);
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

int phoneSimulation::dial(const QString& number, int account, const tagCallOptions& options)
{
    const bool isLine =
        account >= -1 && (account < PHONE_ACCOUNT_COUNT || (account == PHONE_LINE_PSTN && hasPstn()));
    if (number.isEmpty() || !isLine)
        return 0;
    if (isReady(account))
        return m_calls.begin(number, account, options);
    m_calls.fail(number, account, HX_TR("The line is not registered"));
    return 0;
}

bool phoneSimulation::isReady(int line) const
{
    return line == PHONE_LINE_PSTN ? hasPstn() : line >= 0 && m_accounts.isRegistered(line);
}

bool phoneSimulation::ring(const QString& number, int line, const QString& name)
{
    tagCaller caller;
    caller.strNumber = number;
    caller.nLine = line;
    caller.strName = name;
    return ringFrom(caller);
}

bool phoneSimulation::ringFrom(const tagCaller& caller)
{
    const int line = caller.nLine;
    const bool isLine = line >= 0 && (line < PHONE_ACCOUNT_COUNT || (line == PHONE_LINE_PSTN && hasPstn()));
    if (!isLine || (caller.strNumber.isEmpty() && !caller.bAnonymous))
        return false;
    m_calls.arrive(caller);
    return true;
}

int phoneSimulation::lineOf(const QString& number) const
{
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index) {
        const tagAccountInfo info = m_accounts.info(index);
        const QString own = QString::fromUtf8(info.szUser) + '@' + QString::fromUtf8(info.szServer);
        if (m_accounts.isRegistered(index) && callIsSameNumber(own, number))
            return index;
    }
    return -1;
}

// What is sent to a number of this phone comes back to it.
bool phoneSimulation::deflect(int id, const QString& number)
{
    tagCaller caller = m_calls.callerOf(id);
    caller.forwardedBy.append(
        QString::fromUtf8(account(std::clamp(caller.nLine, 0, PHONE_ACCOUNT_COUNT - 1)).szUser));
    caller.nLine = lineOf(number);
    const bool deflected = m_calls.deflect(id, number);
    if (deflected && caller.nLine >= 0)
        QTimer::singleShot(0, &m_calls, [this, caller] { ringFrom(caller); });
    return deflected;
}

int phoneSimulation::TryThreadMessage(msgObject& msg)
{
    if (msg.message == CONFIG_MSG_BCAST_CHANGED && msg.wParam == CONFIG_CHANGED_ACCOUNT)
        m_accounts.readFiles();
    return 0;
}
