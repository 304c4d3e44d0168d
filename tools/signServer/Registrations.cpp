#include "tools/signServer/Registrations.h"
#include "tools/signServer/KeyRows.h"
#include <QSaveFile>
#include <QThread>
#include <algorithm>

namespace {

constexpr qsizetype kMostDisplays = 10000;
constexpr unsigned long kGatherMs = 20;
constexpr qint64 kLargestFile = 8 << 20; // more than so many displays with the longest names need

} // namespace

Registrations::Registrations(const SignFolder& folder) : m_path(folder.PathOf("registered.ini"))
{
    m_saver.setMaxThreadCount(1);
}

// An administrator may take a phone out while the server runs.
void Registrations::FollowFile()
{
    const FileMark now = FileMark::OfPath(m_path.constData());
    if (m_bSaving || now == m_mark)
        return;
    const OpenFile file(m_path);
    // What cannot be read for a moment, since no descriptor is left, counts on.
    if (!file.IsGood() && now.size >= 0)
        return;
    m_mark = now;
    m_names.clear();
    const QByteArray text = file.IsGood() ? file.Read(0, std::min(file.Size(), kLargestFile)) : QByteArray();
    for (const auto& [key, name] : KeyRows(text, "registered")) {
        if (m_names.size() < kMostDisplays && !m_names.contains(key))
            m_names[key] = name;
    }
}

QByteArray Registrations::NameOf(const QByteArray& hardwareKey)
{
    QMutexLocker locker(&m_lock);
    FollowFile();
    return m_names.value(hardwareKey);
}

QHash<QByteArray, QByteArray> Registrations::All()
{
    QMutexLocker locker(&m_lock);
    FollowFile();
    return m_names;
}

bool Registrations::HasRoomFor(const QByteArray& hardwareKey)
{
    QMutexLocker locker(&m_lock);
    FollowFile();
    return m_names.contains(hardwareKey) || m_names.size() + m_wishes.size() < kMostDisplays;
}

void Registrations::Remember(const QByteArray& hardwareKey, const QByteArray& name, const Done& done)
{
    {
        QMutexLocker locker(&m_lock);
        FollowFile();
        if (m_names.value(hardwareKey) != name || m_bSaving) {
            m_wishes.append({hardwareKey, name, done});
            if (!m_bSaving)
                m_saver.start([this] { SaveAll(); });
            m_bSaving = true;
            return;
        }
    }
    done(true);
}

void Registrations::SaveAll()
{
    QMutexLocker locker(&m_lock);
    while (!m_wishes.isEmpty()) {
        // Those who come at the same moment share a writing.
        locker.unlock();
        QThread::msleep(kGatherMs);
        locker.relock();
        const QList<Wish> wishes = std::exchange(m_wishes, {});
        QHash<QByteArray, QByteArray> names = m_names;
        for (const Wish& wish : wishes)
            names[wish.hardwareKey] = wish.name;
        locker.unlock();
        const bool saved = names == m_names || Save(names);
        locker.relock();
        if (saved) {
            m_names = names;
            m_mark = FileMark::OfPath(m_path.constData());
        }
        m_bSaving = !m_wishes.isEmpty(); // whoever is told may change the file at once
        locker.unlock();
        for (const Wish& wish : wishes)
            wish.done(saved);
        locker.relock();
    }
    m_bSaving = false;
}

bool Registrations::Save(const QHash<QByteArray, QByteArray>& names)
{
    QList<QByteArray> keys = names.keys();
    std::sort(keys.begin(), keys.end());
    QSaveFile file(QString::fromUtf8(m_path));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write("; written by the server: hardware key = name of the display\n[registered]\n");
    for (const QByteArray& key : keys)
        file.write(key + "=" + names[key] + "\n");
    return file.commit();
}
