#include "host/services/phone/simulatedAccounts.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include <QTimer>
#include <cstring>

namespace {

const char* const kSection = "account";

QString readText(const QByteArray& file, const char* key)
{
    return toQString(NUX_SubClass::nuxGetRegistryString(file.constData(), kSection, key, ""));
}

// Clipped to the record, never inside a character.
void copyText(char (&target)[PHONE_TEXT_SIZE], const QString& text)
{
    QString clipped = text;
    while (clipped.toUtf8().size() >= PHONE_TEXT_SIZE)
        clipped.chop(clipped.size() > 1 && clipped.back().isLowSurrogate() ? 2 : 1);
    qstrncpy(target, clipped.toUtf8().constData(), sizeof target);
}

template <class T>
void takeOver(std::optional<T>& old, const std::optional<T>& fresh)
{
    if (fresh)
        old = fresh;
}

} // namespace

simulatedAccounts::tagConfig simulatedAccounts::readConfig(int index)
{
    const QByteArray file = "/rundata/config/user/voip/sipAccount" + QByteArray::number(index) + ".cfg";
    tagConfig config;
    config.bEnable = nuxGetRegistryInt(file.constData(), kSection, "Enable", 0) != 0;
    config.strUser = readText(file, "UserName");
    config.strServer = readText(file, "SIPServerHost");
    config.strName = readText(file, "DisplayName");
    return config;
}

void simulatedAccounts::readFiles()
{
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index)
        apply(index, readConfig(index));
    tellChanges();
}

void simulatedAccounts::apply(int index, const tagConfig& config)
{
    tagLine& line = m_lines[index];
    if (line.config == config)
        return;
    line.config = config;
    ++line.nRegistration;
    if (!config.bEnable)
        line.eState = LINE_DISABLED;
    else if (config.strUser.isEmpty() || config.strServer.isEmpty())
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
        tellChanges();
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
    tellChanges();
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
    copyText(info.szServer, line.byHand.server.value_or(line.config.strServer));
    copyText(info.szUser, line.byHand.user.value_or(line.config.strUser));
    copyText(info.szDisplayName, line.byHand.name.value_or(line.config.strName));
    info.nNewMessages = line.byHand.newMessages.value_or(0);
    info.nOldMessages = line.byHand.oldMessages.value_or(0);
    return info;
}

bool simulatedAccounts::isRegistered(int index) const
{
    const LINE_STATE state = stateOf(index);
    return state == LINE_REGISTERED || state == LINE_DEFAULT_ACCOUNT;
}

int simulatedAccounts::defaultAccount() const
{
    int registered = -1;
    for (int index = PHONE_ACCOUNT_COUNT - 1; index >= 0; --index) {
        if (stateOf(index) == LINE_DEFAULT_ACCOUNT)
            return index;
        if (stateOf(index) == LINE_REGISTERED)
            registered = index;
    }
    return registered;
}

bool simulatedAccounts::isSame(const tagAccountInfo& a, const tagAccountInfo& b)
{
    return a.eState == b.eState && strcmp(a.szServer, b.szServer) == 0 && strcmp(a.szUser, b.szUser) == 0 &&
           strcmp(a.szDisplayName, b.szDisplayName) == 0 && a.nNewMessages == b.nNewMessages &&
           a.nOldMessages == b.nOldMessages;
}

void simulatedAccounts::tellChanges()
{
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index) {
        const tagAccountInfo now = info(index);
        if (isSame(now, m_lines[index].told))
            continue;
        m_lines[index].told = now;
        m_changed(index);
    }
}
