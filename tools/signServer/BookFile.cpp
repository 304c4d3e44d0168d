#include "tools/signServer/BookFile.h"
#include "tools/signServer/SignFolder.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace {

constexpr qint64 kLargestFile = 64 << 20;

using Schedules = QHash<QByteArray, ScheduledFilesPtr>;

// Keys and names are bytes of the network, and JSON is text.
QString TextOf(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes);
}

QByteArray BytesOf(const QJsonValue& value)
{
    return value.toString().toLatin1().left(DisplayBook::TEXT_LIMIT * 2);
}

QJsonArray TimesOf(const ScheduledFile& file)
{
    QJsonArray times;
    for (const auto& [from, to] : file.times)
        times.append(QJsonArray{from, to});
    return times;
}

QJsonArray FilesOf(const ScheduledFiles& schedule)
{
    QJsonArray files;
    for (const ScheduledFile& file : schedule.files)
        files.append(QJsonArray{TextOf(file.type), TextOf(file.name), TextOf(file.sum), TimesOf(file)});
    return files;
}

ScheduledFilesPtr ScheduleOf(const QByteArray& id, const QJsonArray& rows)
{
    auto schedule = std::make_shared<ScheduledFiles>();
    schedule->id = id;
    for (const QJsonValue& value : rows) {
        const QJsonArray row = value.toArray();
        ScheduledFile file = {BytesOf(row.at(0)), row.at(1).toString().toLatin1(), BytesOf(row.at(2)), {}};
        for (const QJsonValue& time : row.at(3).toArray())
            file.times.append({time.toArray().at(0).toInteger(), time.toArray().at(1).toInteger()});
        schedule->files.append(file);
    }
    return schedule;
}

QJsonObject ObjectOf(const DisplayRecord& record)
{
    QJsonArray refusals;
    for (const Refusal& one : record.refusals)
        refusals.append(QJsonArray{one.at, TextOf(one.what), TextOf(one.why), one.times});
    QJsonObject object = {{"key", TextOf(record.key)},
                          {"name", TextOf(record.name)},
                          {"address", TextOf(record.address)},
                          {"look", record.lastLook},
                          {"registration", record.lastRegistration},
                          {"heard", record.heard},
                          {"refused", record.refused},
                          {"refusals", refusals}};
    if (record.files) {
        object["schedule"] = TextOf(record.files->id);
        object["states"] = TextOf(record.states);
    }
    return object;
}

DisplayRecord RecordOf(const QJsonObject& object, const Schedules& schedules)
{
    DisplayRecord record;
    record.key = BytesOf(object["key"]);
    record.name = BytesOf(object["name"]);
    record.address = BytesOf(object["address"]);
    record.lastLook = object["look"].toInteger();
    record.lastRegistration = object["registration"].toInteger();
    record.heard = object["heard"].toInteger();
    record.refused = object["refused"].toBool();
    for (const QJsonValue& value : object["refusals"].toArray()) {
        const QJsonArray row = value.toArray();
        if (record.refusals.size() < DisplayBook::REFUSAL_LIMIT)
            record.refusals.append(
                {row.at(0).toInteger(), BytesOf(row.at(1)), BytesOf(row.at(2)), row.at(3).toInt(1)});
    }
    const ScheduledFilesPtr files = schedules.value(BytesOf(object["schedule"]));
    const QByteArray states = object["states"].toString().toLatin1();
    if (files && files->files.size() == states.size()) {
        record.files = files;
        record.states = states;
    }
    return record;
}

DisplayBook::Records RecordsOf(const QJsonValue& rows, const Schedules& schedules)
{
    DisplayBook::Records records;
    for (const QJsonValue& value : rows.toArray()) {
        const DisplayRecord record = RecordOf(value.toObject(), schedules);
        records[record.key] = record;
    }
    return records;
}

// Adds the schedules that they have.
QJsonArray RowsOf(const DisplayBook::Records& records, QJsonObject& schedules)
{
    QJsonArray rows;
    for (const DisplayRecord& record : records) {
        rows.append(ObjectOf(record));
        if (record.files && !schedules.contains(TextOf(record.files->id)))
            schedules[TextOf(record.files->id)] = FilesOf(*record.files);
    }
    return rows;
}

} // namespace

StoredBook ReadBookFile(const QByteArray& name)
{
    const OpenFile file(name);
    if (!file.IsGood() || file.Size() > kLargestFile)
        return {};
    const QJsonObject book = QJsonDocument::fromJson(file.Read(0, file.Size())).object();
    Schedules schedules;
    const QJsonObject known = book["schedules"].toObject();
    for (auto it = known.begin(); it != known.end(); ++it)
        schedules[it.key().toLatin1()] = ScheduleOf(it.key().toLatin1(), it.value().toArray());
    return {RecordsOf(book["displays"], schedules), RecordsOf(book["strangers"], schedules)};
}

int WriteBookFile(const QByteArray& name, const StoredBook& book)
{
    QJsonObject schedules;
    QJsonObject all = {{"displays", RowsOf(book.known, schedules)},
                       {"strangers", RowsOf(book.strangers, schedules)}};
    all["schedules"] = schedules;
    QSaveFile file(QString::fromLocal8Bit(name));
    if (!file.open(QIODevice::WriteOnly))
        return 0;
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    file.write(QJsonDocument(all).toJson(QJsonDocument::Compact));
    return file.commit() ? 1 : 0;
}
