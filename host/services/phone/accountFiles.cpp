#include "host/services/phone/accountFiles.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include <algorithm>
#include <cstring>
#include <tuple>
#include <utility>

namespace {

constexpr int kDefaultPort = 5060;
constexpr int kStunPort = 3478;
constexpr int kMaxPort = 65535;
constexpr int kLeastExpires = 60, kExpires = 3600, kMostExpires = 86400;

QString textOf(const QByteArray& file, const char* section, const char* key)
{
    return toQString(NUX_SubClass::nuxGetRegistryString(file.constData(), section, key, "")).trimmed();
}

int numberOf(const QByteArray& file, const char* section, const char* key, int absent)
{
    return nuxGetRegistryInt(file.constData(), section, key, absent);
}

// A group of the page that is off is stored unseen, and is not looked at again when it is put on: what is no
// port counts as none.
int portOf(const QByteArray& file, const char* section, const char* key, int absent)
{
    const int port = numberOf(file, section, key, absent);
    return port < 1 || port > kMaxPort ? absent : port;
}

// The page wants a port; the one it begins with leaves the choice to the domain's records.
int serverPortOf(const QByteArray& file, const char* key)
{
    const int port = portOf(file, "account", key, kDefaultPort);
    return port == kDefaultPort ? 0 : port;
}

ACCOUNT_TRANSPORT transportNamed(const QString& name)
{
    if (name.compare(QLatin1String("TLS"), Qt::CaseInsensitive) == 0)
        return ACCOUNT_TLS;
    return name.compare(QLatin1String("TCP"), Qt::CaseInsensitive) == 0 ? ACCOUNT_TCP : ACCOUNT_UDP;
}

void readServers(const QByteArray& file, tagAccountFile& account)
{
    account.strServer = textOf(file, "account", "SIPServerHost");
    account.nPort = serverPortOf(file, "SIPServerPort");
    if (numberOf(file, "account", "UseOutboundProxy", 0) != 0) {
        account.strProxy = textOf(file, "account", "OutboundHost");
        account.nProxyPort = serverPortOf(file, "OutboundPort");
    }
    if (numberOf(file, "NAT", "NATTraversal", 0) != 0) {
        account.strStunServer = textOf(file, "NAT", "STUNServer");
        account.nStunPort = portOf(file, "NAT", "STUNPort", kStunPort);
    }
}

bool isSame(const tagAccountInfo& a, const tagAccountInfo& b)
{
    return a.eState == b.eState && strcmp(a.szServer, b.szServer) == 0 && strcmp(a.szUser, b.szUser) == 0 &&
           strcmp(a.szDisplayName, b.szDisplayName) == 0 && a.nNewMessages == b.nNewMessages &&
           a.nOldMessages == b.nOldMessages && strcmp(a.szWhyNot, b.szWhyNot) == 0;
}

} // namespace

bool tagAccountFile::operator==(const tagAccountFile& other) const
{
    const auto all = [](const tagAccountFile& one) {
        return std::tie(one.bEnable, one.strName, one.strAuthName, one.strUser, one.strPassword, one.strRealm,
                        one.strServer, one.nPort, one.strProxy, one.nProxyPort, one.eTransport, one.nExpires,
                        one.strStunServer, one.nStunPort, one.strPickUp, one.strList, one.bEncrypt,
                        one.bTransferByOther);
    };
    return all(*this) == all(other);
}

tagAccountFile accountFileRead(int index)
{
    const QByteArray file = "/rundata/config/user/voip/sipAccount" + QByteArray::number(index) + ".cfg";
    const char* const section = "account";
    tagAccountFile account;
    account.bEnable = numberOf(file, section, "Enable", 0) != 0;
    account.strName = textOf(file, section, "DisplayName");
    account.strAuthName = textOf(file, section, "AuthName");
    account.strUser = textOf(file, section, "UserName");
    account.strPassword =
        toQString(NUX_SubClass::nuxGetRegistryString(file.constData(), section, "password", ""));
    account.strRealm = textOf(file, section, "Realm");
    readServers(file, account);
    account.eTransport = transportNamed(textOf(file, section, "Transport"));
    account.nExpires = std::clamp(numberOf(file, section, "Expires", kExpires), kLeastExpires, kMostExpires);
    account.strPickUp = textOf(file, section, "PickUpCode");
    account.strList = textOf(file, section, "ListAddress");
    account.bEncrypt = numberOf(file, section, "Encrypt", 0) != 0;
    account.bTransferByOther = numberOf(file, "Transfer", "bByOther", 0) != 0;
    return account;
}

void accountSetText(char (&target)[PHONE_TEXT_SIZE], const QString& text)
{
    QString clipped = text;
    while (clipped.toUtf8().size() >= PHONE_TEXT_SIZE)
        clipped.chop(clipped.size() > 1 && clipped.back().isLowSurrogate() ? 2 : 1);
    qstrncpy(target, clipped.toUtf8().constData(), sizeof target);
}

int accountDefaultOf(const std::function<LINE_STATE(int)>& stateOf)
{
    int registered = -1;
    for (int index = PHONE_ACCOUNT_COUNT - 1; index >= 0; --index) {
        const LINE_STATE state = stateOf(index);
        if (state == LINE_DEFAULT_ACCOUNT)
            return index;
        if (state == LINE_REGISTERED)
            registered = index;
    }
    return registered;
}

accountTeller::accountTeller(std::function<tagAccountInfo(int)> info, std::function<void(int)> changed)
    : m_info(std::move(info)), m_changed(std::move(changed))
{
}

void accountTeller::tell()
{
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index) {
        const tagAccountInfo now = m_info(index);
        if (isSame(now, m_told[index]))
            continue;
        m_told[index] = now;
        m_changed(index);
    }
}
