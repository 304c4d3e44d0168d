#include "tools/signServer/Account.h"
#include <QCryptographicHash>
#include <QSaveFile>
#include <algorithm>

namespace {

const char* const kSettings = "server.ini";
const char* const kRegistered = "registered.ini";

QByteArray ValueOf(const QList<QPair<QByteArray, QByteArray>>& rows, const QByteArray& key)
{
    for (const auto& row : rows) {
        if (row.first == key)
            return row.second;
    }
    return QByteArray();
}

bool IsDisplayName(const QByteArray& name)
{
    return !name.isEmpty() && name == name.trimmed() &&
           std::none_of(name.begin(), name.end(), [](char c) { return c == '\n' || c == '\r' || c == '\0'; });
}

// It stands left of a '=' in registered.ini.
bool IsHardwareKey(const QByteArray& key)
{
    const QByteArray marks = ":-._";
    return !key.isEmpty() && std::all_of(key.begin(), key.end(), [&](char c) {
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

Account::Rows Account::Section(const QByteArray& text, const QByteArray& section)
{
    Rows rows;
    QByteArray current;
    for (const QByteArray& raw : text.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.isEmpty() || line[0] == ';' || line[0] == '#')
            continue;
        const qsizetype equals = line.indexOf('=');
        if (line.startsWith('[') && line.endsWith(']'))
            current = line.mid(1, line.size() - 2).trimmed();
        else if (current == section && equals > 0)
            rows.append({line.left(equals).trimmed(), line.mid(equals + 1).trimmed()});
    }
    return rows;
}

bool Account::IsAdmitted(const QByteArray& settings, const QByteArray& name, const QByteArray& hardwareKey)
{
    for (const auto& [admitted, key] : Section(settings, "displays")) {
        const bool names = admitted == "*" || admitted == name;
        if (names && (key == "*" || key.compare(hardwareKey, Qt::CaseInsensitive) == 0))
            return true;
    }
    return false;
}

QByteArray Account::Register(const QByteArray& key, const QByteArray& password, const QByteArray& name,
                             const QByteArray& hardwareKey)
{
    const QByteArray settings = m_folder.Content(kSettings);
    const Rows account = Section(settings, "server");
    const bool keyGood = IsSameSecret(key, ValueOf(account, "key"));
    const bool passwordGood = IsSameSecret(password, ValueOf(account, "password"));
    if (key.isEmpty() || !keyGood)
        return "unknown server key";
    if (password.isEmpty() || !passwordGood)
        return "wrong password";
    if (!IsDisplayName(name) || !IsHardwareKey(hardwareKey))
        return "a display needs a name and a hardware key";
    if (!IsAdmitted(settings, name, hardwareKey))
        return "unknown display";
    return Remember(hardwareKey, name) ? QByteArray() : "the registration could not be saved";
}

QByteArray Account::Check(const QByteArray& key, const QByteArray& hardwareKey, QByteArray& name) const
{
    const QByteArray settings = m_folder.Content(kSettings);
    if (key.isEmpty() || !IsSameSecret(key, ValueOf(Section(settings, "server"), "key")))
        return "unknown server key";
    {
        QMutexLocker locker(&m_lock);
        name = ValueOf(Section(m_folder.Content(kRegistered), "registered"), hardwareKey);
    }
    if (name.isEmpty() || !IsAdmitted(settings, name, hardwareKey))
        return "this display is not registered";
    return QByteArray();
}

int Account::Remember(const QByteArray& hardwareKey, const QByteArray& name)
{
    QMutexLocker locker(&m_lock);
    Rows rows = Section(m_folder.Content(kRegistered), "registered");
    if (ValueOf(rows, hardwareKey) == name)
        return 1;
    rows.removeIf([&](const QPair<QByteArray, QByteArray>& row) { return row.first == hardwareKey; });
    rows.append({hardwareKey, name});

    QSaveFile file(QString::fromUtf8(m_folder.PathOf(kRegistered)));
    if (!file.open(QIODevice::WriteOnly))
        return 0;
    file.write("; written by the server: hardware key = name of the display\n[registered]\n");
    for (const auto& row : rows)
        file.write(row.first + "=" + row.second + "\n");
    return file.commit() ? 1 : 0;
}
