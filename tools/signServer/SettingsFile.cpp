#include "tools/signServer/SettingsFile.h"
#include "tools/signServer/SignFolder.h"

namespace {

const char* const kFile = "server.ini";
const char* const kAny = "*";

} // namespace

Settings::Settings(const QByteArray& text)
    : m_sections(KeySectionsOf(text)), m_displays(m_sections["displays"])
{
    for (const auto& [name, key] : m_displays)
        m_admitted.insert(QPair<QByteArray, QByteArray>(name, key.toLower()));
}

QByteArray Settings::Value(const char* section, const char* key) const
{
    return KeyRowValue(m_sections[section], key);
}

bool Settings::Admits(const QByteArray& name, const QByteArray& hardwareKey) const
{
    const QByteArray key = hardwareKey.toLower();
    const auto has = [this](const QByteArray& a, const QByteArray& b) {
        return m_admitted.contains(QPair<QByteArray, QByteArray>(a, b));
    };
    return has(name, key) || has(kAny, key) || has(name, kAny) || has(kAny, kAny);
}

std::shared_ptr<const Settings> SettingsFile::Now() const
{
    QMutexLocker locker(&m_lock);
    const FileMark now = FileMark::OfPath(m_folder.PathOf(kFile).constData());
    if (m_settings && m_settled && now == m_mark)
        return m_settings;
    const QByteArray text = m_folder.Content(kFile);
    // What cannot be read for a moment, since no descriptor is left, counts on.
    if (text.isNull() && now.size >= 0 && m_settings)
        return m_settings;
    m_mark = now;
    m_settled = now.IsSettled();
    m_settings = std::make_shared<const Settings>(text);
    return m_settings;
}
