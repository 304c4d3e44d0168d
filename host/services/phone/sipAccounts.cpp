#include "host/services/phone/sipAccounts.h"
#include "host/services/phone/sipReasons.h"
#include "sip/sipWire.h"
#include "support/host/api.h"
#include "support/host/trace.h"
#include <algorithm>
#include <iterator>
#include <utility>

namespace {

const char* const kStates[] = {"is not registered", "registers", "is registered", "cannot register",
                               "was refused"};

tagSipAccount recordOf(int index, const tagAccountFile& file)
{
    auto account = sipWire::make<tagSipAccount>(SIP_ACCOUNT, uint32_t(index));
    if (!file.isComplete())
        return account;
    sipWire::setText(account.szUser, file.strUser.toStdString());
    sipWire::setText(account.szDisplayName, file.strName.toStdString());
    sipWire::setText(account.szAuthName, file.strAuthName.toStdString());
    sipWire::setText(account.szPassword, file.strPassword.toStdString());
    sipWire::setText(account.szRealm, file.strRealm.toStdString());
    sipWire::setText(account.szServer, file.strServer.toStdString());
    sipWire::setText(account.szProxy, file.strProxy.toStdString());
    sipWire::setText(account.szPickUp, file.strPickUp.toStdString());
    account.nPort = uint32_t(file.nPort);
    account.nProxyPort = uint32_t(file.nProxyPort);
    account.eTransport = file.eTransport == ACCOUNT_TLS   ? SIP_TLS
                         : file.eTransport == ACCOUNT_TCP ? SIP_TCP
                                                          : SIP_UDP;
    account.nExpires = uint32_t(file.nExpires);
    if (!file.strStunServer.isEmpty()) {
        sipWire::setText(account.szStun, file.strStunServer.toStdString());
        account.nStunPort = uint32_t(file.nStunPort);
    }
    return account;
}

} // namespace

sipAccounts::sipAccounts(std::function<void(const tagSipAccount&)> tell, std::function<void(int)> changed)
    : m_tell(std::move(tell)), m_teller([this](int index) { return info(index); }, std::move(changed))
{
}

void sipAccounts::readFiles()
{
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index) {
        tagAccountFile file = accountFileRead(index);
        if (file == m_lines[index].file)
            continue;
        m_lines[index] = tagLine();
        m_lines[index].file = std::move(file);
        m_lines[index].eState = restingState(index);
        tellAgent(index);
    }
    m_teller.tell();
}

bool sipAccounts::hasAny() const
{
    return std::any_of(std::begin(m_lines), std::end(m_lines),
                       [](const tagLine& line) { return line.file.isComplete(); });
}

void sipAccounts::tellAgent(int index)
{
    m_tell(recordOf(index, m_lines[index].file));
}

// Until the agent says more of it.
LINE_STATE sipAccounts::restingState(int index) const
{
    const tagAccountFile& file = m_lines[index].file;
    if (!file.bEnable)
        return LINE_DISABLED;
    if (!file.isComplete())
        return LINE_UNREGISTERED;
    return m_bAgentFailed ? LINE_REGISTER_FAILED : LINE_REGISTERING;
}

void sipAccounts::agentIsThere()
{
    m_bAgentFailed = false;
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index) {
        m_lines[index].eState = restingState(index);
        if (m_lines[index].file.isComplete())
            tellAgent(index);
    }
    m_teller.tell();
}

void sipAccounts::agentIsGone()
{
    m_bAgentFailed = true;
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index) {
        m_lines[index].eState = restingState(index);
        m_lines[index].nNewMessages = m_lines[index].nOldMessages = 0;
        m_lines[index].szWhyNot = nullptr;
        m_lines[index].bStunSilent = false;
    }
    m_teller.tell();
}

void sipAccounts::take(const tagSipLine& line)
{
    const int index = int(line.head.nId);
    tagLine& own = m_lines[index];
    nuxTrace(TRACE_NOTE, "line %d %s: %u %s", index + 1, kStates[line.eState], line.nStatus, line.szReason);
    // What it says of an account that was there before is of no interest any more.
    if (!own.file.isComplete())
        return;
    switch (line.eState) {
    case SIP_LINE_REGISTERED:
        own.szWhyNot = nullptr;
        own.eState = LINE_REGISTERED;
        break;
    case SIP_LINE_REGISTERING:
        own.eState = LINE_REGISTERING;
        break;
    case SIP_LINE_NONE:
        own.eState = LINE_UNREGISTERED;
        break;
    default:
        own.szWhyNot = sipReasonOfLine(line);
        own.eState = LINE_REGISTER_FAILED;
        break;
    }
    m_teller.tell();
}

void sipAccounts::takeStun(const tagSipStun& stun)
{
    tagLine& line = m_lines[stun.head.nId];
    if (line.file.strStunServer.isEmpty())
        return;
    line.bStunSilent = stun.bSilent != 0;
    if (line.bStunSilent)
        nuxTrace(TRACE_NOTE, "the STUN server of line %u does not answer", stun.head.nId + 1);
    m_teller.tell();
}

// Those that are not known are none.
void sipAccounts::takeMessages(const tagSipMessages& messages)
{
    tagLine& line = m_lines[messages.head.nId];
    line.nNewMessages = messages.bKnown && line.file.isComplete() ? int(messages.nNew) : 0;
    line.nOldMessages = messages.bKnown && line.file.isComplete() ? int(messages.nOld) : 0;
    m_teller.tell();
}

// The first one that is registered is the default account.
LINE_STATE sipAccounts::stateOf(int index) const
{
    const LINE_STATE state = m_lines[index].eState;
    if (state != LINE_REGISTERED)
        return state;
    const auto isRegisteredToo = [](const tagLine& line) { return line.eState == LINE_REGISTERED; };
    return std::any_of(m_lines, m_lines + index, isRegisteredToo) ? LINE_REGISTERED : LINE_DEFAULT_ACCOUNT;
}

tagAccountInfo sipAccounts::info(int index) const
{
    const tagLine& line = m_lines[index];
    tagAccountInfo info;
    info.eState = stateOf(index);
    accountSetText(info.szServer, line.file.strServer);
    accountSetText(info.szUser, line.file.strUser);
    accountSetText(info.szDisplayName, line.file.strName);
    info.nNewMessages = line.nNewMessages;
    info.nOldMessages = line.nOldMessages;
    if (line.szWhyNot && (info.eState == LINE_REGISTER_FAILED || info.eState == LINE_REGISTERING))
        accountSetText(info.szWhyNot, line.szWhyNot);
    else if (line.bStunSilent && line.eState == LINE_REGISTERED)
        accountSetText(info.szWhyNot, HX_TR("The STUN server does not answer"));
    return info;
}

int sipAccounts::defaultAccount() const
{
    return accountDefaultOf([this](int index) { return stateOf(index); });
}

const char* sipAccounts::whyNot(int index) const
{
    const auto* line = std::find_if(std::begin(m_lines), std::end(m_lines),
                                    [](const tagLine& each) { return each.file.isComplete(); });
    if (index >= 0)
        line = m_lines + index;
    const bool isKnown = line != std::end(m_lines) && line->szWhyNot;
    return isKnown ? line->szWhyNot : HX_TR("The line is not registered");
}

bool sipAccounts::isRegistered(int index) const
{
    return index >= 0 && index < PHONE_ACCOUNT_COUNT && m_lines[index].eState == LINE_REGISTERED;
}
