#include "tools/signServer/ContentNotes.h"
#include "tools/signServer/RequestLog.h"
#include <QSet>

namespace {

// It may hold a file's name, which may hold anything.
QByteArray Line(const QString& text)
{
    QString line = text;
    for (QChar& letter : line) {
        if (letter.category() == QChar::Other_Control)
            letter = QChar::ReplacementCharacter;
    }
    return "content: " + line.toUtf8();
}

} // namespace

void ContentNotes::Add(const QStringList& complaints)
{
    QMutexLocker locker(&m_lock);
    for (const QString& complaint : complaints)
        Enter(complaint);
}

void ContentNotes::Enter(const QString& complaint)
{
    if (!m_entries.contains(complaint)) {
        if (m_entries.size() >= LIMIT)
            return;
        m_log.Line(Line(complaint));
    }
    m_entries[complaint] = m_nLook;
}

quint64 ContentNotes::BeginLook()
{
    QMutexLocker locker(&m_lock);
    return ++m_nLook;
}

void ContentNotes::EndLook(quint64 begin, const QStringList& complaints, bool isWhole)
{
    QMutexLocker locker(&m_lock);
    m_bWhole = isWhole;
    for (const QString& complaint : complaints)
        Enter(complaint);
    const QSet<QString> held(complaints.begin(), complaints.end());
    m_entries.removeIf(
        [&](const auto& entry) { return entry.value() < begin && !held.contains(entry.key()); });
}

bool ContentNotes::IsWhole() const
{
    QMutexLocker locker(&m_lock);
    return m_bWhole;
}

QStringList ContentNotes::List() const
{
    QMutexLocker locker(&m_lock);
    QStringList list = m_entries.keys();
    list.sort();
    return list;
}
