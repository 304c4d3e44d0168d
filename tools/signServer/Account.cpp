#include "tools/signServer/Account.h"
#include "tools/signServer/RequestText.h"
#include <QCryptographicHash>
#include <QSet>
#include <algorithm>

namespace {

constexpr qsizetype kLongestName = 255; // bytes; what registers is kept for good
constexpr qsizetype kLongestKey = 64;

bool IsDisplayName(const QByteArray& name)
{
    return !name.isEmpty() && name.size() <= kLongestName && name == name.trimmed() &&
           std::none_of(name.begin(), name.end(), [](char c) { return c == '\n' || c == '\r' || c == '\0'; });
}

// It stands left of a '=' in registered.ini.
bool IsHardwareKey(const QByteArray& key)
{
    const QByteArray marks = ":-._";
    return !key.isEmpty() && key.size() <= kLongestKey && std::all_of(key.begin(), key.end(), [&](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               marks.contains(c);
    });
}

} // namespace

bool IsSameSecret(const QByteArray& given, const QByteArray& right)
{
    const QByteArray a = QCryptographicHash::hash(given, QCryptographicHash::Sha256);
    const QByteArray b = QCryptographicHash::hash(right, QCryptographicHash::Sha256);
    unsigned difference = 0;
    for (qsizetype i = 0; i < a.size(); ++i)
        difference |= static_cast<unsigned char>(a[i] ^ b[i]);
    return difference == 0;
}

QByteArray Account::Refuses(const QByteArray& key, const QByteArray& password, const QByteArray& name,
                            const QByteArray& hardwareKey)
{
    const auto settings = m_settings.Now();
    const bool keyGood = IsSameSecret(key, settings->Value("server", "key"));
    const bool passwordGood = IsSameSecret(password, settings->Value("server", "password"));
    if (key.isEmpty() || !keyGood)
        return "unknown server key";
    if (password.isEmpty() || !passwordGood)
        return "wrong password";
    if (!IsDisplayName(name) || !IsHardwareKey(hardwareKey))
        return "a display needs a name and a hardware key";
    if (!settings->Admits(name, hardwareKey))
        return "unknown display";
    return m_registrations.HasRoomFor(hardwareKey) ? "" : "too many displays are registered";
}

void Account::Register(const QByteArray& key, const QByteArray& password, const QByteArray& name,
                       const QByteArray& hardwareKey, const Answered& answered)
{
    const QByteArray refused = Refuses(key, password, name, hardwareKey);
    if (!refused.isEmpty()) {
        answered(refused);
        return;
    }
    m_registrations.Remember(hardwareKey, name, [answered](bool saved) {
        answered(saved ? "" : "the registration could not be saved");
    });
}

QByteArray Account::Check(const QByteArray& key, const QByteArray& hardwareKey, QByteArray& name)
{
    const auto settings = m_settings.Now();
    if (key.isEmpty() || !IsSameSecret(key, settings->Value("server", "key")))
        return "unknown server key";
    name = m_registrations.NameOf(hardwareKey);
    if (name.isEmpty() || !settings->Admits(name, hardwareKey))
        return "this display is not registered";
    return QByteArray();
}

QStringList Account::Complaints() const
{
    const auto settings = m_settings.Now();
    QStringList complaints;
    // The password itself is told nobody.
    for (const char* name : {"key", "password"}) {
        if (!ArrivesAsSent(settings->Value("server", name)))
            complaints.append(QString("server.ini: the value of \"%1\" %2").arg(name, CannotBeSent));
    }
    for (const auto& row : settings->Displays()) {
        if (!ArrivesAsSent(row.first))
            complaints.append(QString("server.ini: the display \"%1\" %2").arg(row.first, CannotBeSent));
    }
    return complaints;
}

QByteArray Account::Setting(const char* section, const char* name) const
{
    return m_settings.Now()->Value(section, name);
}

QList<AdmittedDisplay> Account::Displays()
{
    const auto settings = m_settings.Now();
    QList<AdmittedDisplay> displays;
    QSet<QByteArray> registered;
    const QHash<QByteArray, QByteArray> names = m_registrations.All();
    for (auto it = names.begin(); it != names.end(); ++it) {
        if (!settings->Admits(it.value(), it.key()))
            continue;
        displays.append({it.key(), it.value()});
        registered.insert(it.key().toLower());
    }
    for (const auto& [name, key] : settings->Displays()) {
        if (key != "*" && name != "*" && !registered.contains(key.toLower()))
            displays.append({key, name});
    }
    return displays;
}
