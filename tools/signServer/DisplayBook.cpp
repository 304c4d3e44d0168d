#include "tools/signServer/DisplayBook.h"
#include <algorithm>

namespace {

constexpr int kSchedulesBeforeSweep = 64;

void Shorten(QByteArray& text)
{
    text.truncate(DisplayBook::TEXT_LIMIT);
}

QByteArray WhatOf(const DisplayEvent& event)
{
    switch (event.kind) {
    case DisplayEvent::Registration:
        return "registration";
    case DisplayEvent::Look:
        return "schedule";
    case DisplayEvent::File:
        break;
    }
    return event.fileType + " " + event.fileName;
}

FileState StateAfter(const DisplayEvent& event)
{
    return !event.refused.isEmpty() ? FILE_REFUSED : event.whole ? FILE_WHOLE : FILE_CUT;
}

// Who looked at a schedule is worth more than who only registered, and who was heard lately than others.
bool IsWorthLess(const DisplayRecord* a, const DisplayRecord* b)
{
    if ((a->lastLook == 0) != (b->lastLook == 0))
        return a->lastLook == 0;
    return a->heard < b->heard;
}

DisplayEvent Shortened(DisplayEvent event)
{
    for (QByteArray* text : {&event.key, &event.name, &event.address, &event.refused})
        Shorten(*text);
    return event;
}

} // namespace

void DisplayBook::Note(const DisplayEvent& whole, qint64 now)
{
    const DisplayEvent event = Shortened(whole);
    QMutexLocker locker(&m_lock);
    ++m_nChanges;
    DisplayRecord& record = RecordOf(event);
    Apply(record, event, now);
    if (event.kind == DisplayEvent::Look && event.refused.isEmpty())
        NoteFiles(record, event.files);
}

DisplayRecord& DisplayBook::RecordOf(const DisplayEvent& event)
{
    const bool isAdmitted = event.refused.isEmpty() || m_known.contains(event.key);
    Records& records = isAdmitted ? m_known : m_strangers;
    if (!records.contains(event.key)) {
        MakeRoom();
        records[event.key].key = event.key;
        if (isAdmitted)
            m_strangers.remove(event.key);
    }
    return records[event.key];
}

void DisplayBook::MakeRoom()
{
    if (m_strangers.size() >= STRANGER_LIMIT) {
        const auto oldest = std::min_element(
            m_strangers.cbegin(), m_strangers.cend(),
            [](const DisplayRecord& a, const DisplayRecord& b) { return a.heard < b.heard; });
        m_strangers.erase(oldest);
    }
    if (m_known.size() < DISPLAY_LIMIT)
        return;
    // Many at a time: a flood of new ones does not cost a search each.
    std::vector<const DisplayRecord*> all;
    for (const DisplayRecord& record : std::as_const(m_known))
        all.push_back(&record);
    const auto end = all.begin() + DISPLAY_LIMIT / 8;
    std::nth_element(all.begin(), end, all.end(), IsWorthLess);
    std::vector<QByteArray> keys;
    for (auto it = all.begin(); it != end; ++it)
        keys.push_back((*it)->key);
    for (const QByteArray& key : keys)
        m_known.remove(key);
}

void DisplayBook::Apply(DisplayRecord& record, const DisplayEvent& event, qint64 now)
{
    record.heard = now;
    record.address = event.address;
    if (!event.name.isEmpty())
        record.name = event.name;
    if (!event.refused.isEmpty())
        NoteRefusal(record, event, now);
    else if (event.kind == DisplayEvent::Registration)
        record.lastRegistration = now;
    else if (event.kind == DisplayEvent::Look)
        record.lastLook = now;
    if (event.kind == DisplayEvent::File)
        NoteFile(record, event);
    else
        record.refused = !event.refused.isEmpty();
}

void DisplayBook::NoteRefusal(DisplayRecord& record, const DisplayEvent& event, qint64 now)
{
    Refusal refusal = {now, WhatOf(event), event.refused};
    Shorten(refusal.what);
    for (qsizetype i = 0; i < record.refusals.size(); ++i) {
        const Refusal& old = record.refusals[i];
        if (old.what != refusal.what || old.why != refusal.why)
            continue;
        refusal.times = std::min(old.times, 999999) + 1;
        record.refusals.removeAt(i);
        break;
    }
    record.refusals.prepend(refusal);
    record.refusals.resize(std::min<qsizetype>(record.refusals.size(), REFUSAL_LIMIT));
}

// What the display has of its new schedule, it had of the old one.
void DisplayBook::NoteFiles(DisplayRecord& record, const ScheduledFilesPtr& files)
{
    if (!files || (record.files && record.files->id == files->id))
        return;
    if (m_schedules.size() > kSchedulesBeforeSweep)
        m_schedules.removeIf([](const auto& entry) { return entry.value().expired(); });
    ScheduledFilesPtr shared = m_schedules.value(files->id).lock();
    if (!shared)
        m_schedules[files->id] = shared = files;

    QHash<QByteArray, char> had;
    for (qsizetype i = 0; record.files && i < record.states.size(); ++i) {
        const ScheduledFile& file = record.files->files[i];
        had[file.type + '/' + file.name + '/' + file.sum] = record.states[i];
    }
    record.states = QByteArray(shared->files.size(), FILE_MISSING);
    for (qsizetype i = 0; i < record.states.size(); ++i) {
        const ScheduledFile& file = shared->files[i];
        record.states[i] = had.value(file.type + '/' + file.name + '/' + file.sum, FILE_MISSING);
    }
    record.files = shared;
}

// The last request for a file counts: a phone asks again for what did not arrive.
void DisplayBook::NoteFile(DisplayRecord& record, const DisplayEvent& event)
{
    const qsizetype place = record.files ? record.files->PlaceOf(event.fileType, event.fileName) : -1;
    if (place < 0 || place >= record.states.size())
        return;
    if (record.files->files[place].sum == event.sum || !event.refused.isEmpty())
        record.states[place] = StateAfter(event);
}

DisplayBook::Records DisplayBook::Known() const
{
    QMutexLocker locker(&m_lock);
    return m_known;
}

DisplayBook::Records DisplayBook::Strangers() const
{
    QMutexLocker locker(&m_lock);
    return m_strangers;
}

quint64 DisplayBook::Changes() const
{
    QMutexLocker locker(&m_lock);
    return m_nChanges;
}

void DisplayBook::TakeBack(DisplayRecord record, Records& records, qint64 now)
{
    // A clock that was ahead would keep a display from being late for as long.
    for (qint64* time : {&record.lastLook, &record.lastRegistration, &record.heard})
        *time = std::min(*time, now);
    const ScheduledFilesPtr files = record.files;
    const QByteArray states = record.states;
    record.files.reset();
    NoteFiles(record, files);
    if (files && states.size() == record.states.size())
        record.states = states;
    records[record.key] = record;
}

void DisplayBook::Restore(const Records& known, const Records& strangers, qint64 now)
{
    QMutexLocker locker(&m_lock);
    for (const DisplayRecord& record : known) {
        if (m_known.size() < DISPLAY_LIMIT)
            TakeBack(record, m_known, now);
    }
    for (const DisplayRecord& record : strangers) {
        if (m_strangers.size() < STRANGER_LIMIT && !m_known.contains(record.key))
            TakeBack(record, m_strangers, now);
    }
}
