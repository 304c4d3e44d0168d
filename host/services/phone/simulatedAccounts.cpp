#include "host/services/phone/simulatedAccounts.h"
#include <QTimer>
#include <utility>

namespace {

template <class T>
void takeOver(std::optional<T>& old, const std::optional<T>& fresh)
{
    if (fresh)
        old = fresh;
}

} // namespace

simulatedAccounts::simulatedAccounts(std::function<void(int)> changed)
    : m_teller([this](int index) { return info(index); }, std::move(changed))
{
}

void simulatedAccounts::readFiles()
{
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index)
        apply(index, accountFileRead(index));
    m_teller.tell();
}

void simulatedAccounts::apply(int index, const tagAccountFile& file)
{
    tagLine& line = m_lines[index];
    if (line.file == file)
        return;
    line.file = file;
    ++line.nRegistration;
    if (!file.bEnable)
        line.eState = LINE_DISABLED;
    else if (!file.isComplete())
        line.eState = LINE_UNREGISTERED;
    else
        beginRegistration(index);
}

void simulatedAccounts::beginRegistration(int index)
{
    m_lines[index].eState = LINE_REGISTERING;
    const int registration = m_lines[index].nRegistration;
    QTimer::singleShot(REGISTER_MS, Qt::PreciseTimer, this, [this, index, registration] {
        if (m_lines[index].nRegistration != registration)
            return;
        m_lines[index].eState = LINE_REGISTERED;
        m_teller.tell();
    });
}

void simulatedAccounts::set(int index, const tagLineSetting& setting)
{
    tagLineSetting& byHand = m_lines[index].byHand;
    takeOver(byHand.state, setting.state);
    takeOver(byHand.user, setting.user);
    takeOver(byHand.server, setting.server);
    takeOver(byHand.name, setting.name);
    takeOver(byHand.newMessages, setting.newMessages);
    takeOver(byHand.oldMessages, setting.oldMessages);
    takeOver(byHand.whyNot, setting.whyNot);
    m_teller.tell();
}

// The line that stands for the default account unless another was made it by hand.
int simulatedAccounts::firstRegistered() const
{
    int first = -1;
    for (int index = PHONE_ACCOUNT_COUNT - 1; index >= 0; --index) {
        const tagLine& line = m_lines[index];
        if (line.byHand.state == int(LINE_DEFAULT_ACCOUNT))
            return -1;
        if (!line.byHand.state && line.eState == LINE_REGISTERED)
            first = index;
    }
    return first;
}

LINE_STATE simulatedAccounts::stateOf(int index) const
{
    const tagLine& line = m_lines[index];
    if (line.byHand.state)
        return LINE_STATE(*line.byHand.state);
    return index == firstRegistered() ? LINE_DEFAULT_ACCOUNT : line.eState;
}

tagAccountInfo simulatedAccounts::info(int index) const
{
    const tagLine& line = m_lines[index];
    tagAccountInfo info;
    info.eState = stateOf(index);
    accountSetText(info.szServer, line.byHand.server.value_or(line.file.strServer));
    accountSetText(info.szUser, line.byHand.user.value_or(line.file.strUser));
    accountSetText(info.szDisplayName, line.byHand.name.value_or(line.file.strName));
    info.nNewMessages = line.byHand.newMessages.value_or(0);
    info.nOldMessages = line.byHand.oldMessages.value_or(0);
    accountSetText(info.szWhyNot, line.byHand.whyNot.value_or(QString()));
    return info;
}

bool simulatedAccounts::isRegistered(int index) const
{
    const LINE_STATE state = stateOf(index);
    return state == LINE_REGISTERED || state == LINE_DEFAULT_ACCOUNT;
}

int simulatedAccounts::defaultAccount() const
{
    return accountDefaultOf([this](int index) { return stateOf(index); });
}
