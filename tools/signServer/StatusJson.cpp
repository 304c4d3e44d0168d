#include "tools/signServer/StatusJson.h"
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QJsonValue TimeOf(qint64 seconds)
{
    return seconds ? QJsonValue(QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(Qt::ISODate))
                   : QJsonValue();
}

QJsonObject FilesOf(const StatusRow& row, qint64 now)
{
    static const std::pair<FileStanding, const char*> groups[] = {{FileStanding::Whole, "whole"},
                                                                  {FileStanding::Cut, "cut"},
                                                                  {FileStanding::Refused, "refused"},
                                                                  {FileStanding::Missing, "missing"},
                                                                  {FileStanding::NotDue, "not_due"}};
    QJsonObject files;
    for (const auto& [standing, name] : groups) {
        QJsonArray names;
        for (qsizetype i = 0; i < row.record.states.size(); ++i) {
            const ScheduledFile& file = row.record.files->files[i];
            if (StandingOf(row.record, i, now) == standing)
                names.append(QString::fromUtf8(file.type + '/' + file.name));
        }
        files[name] = names;
    }
    return files;
}

QJsonObject ObjectOf(const StatusRow& row, qint64 now)
{
    const DisplayRecord& record = row.record;
    QJsonArray refusals;
    for (const Refusal& one : record.refusals)
        refusals.append(QJsonObject{{"at", TimeOf(one.at)},
                                    {"what", QString::fromUtf8(one.what)},
                                    {"why", QString::fromUtf8(one.why)},
                                    {"times", one.times}});
    return {{"name", QString::fromUtf8(record.name)},
            {"key", QString::fromUtf8(record.key)},
            {"address", QString::fromUtf8(record.address)},
            {"standing", StandingName(row.standing)},
            {"admitted", row.admitted},
            {"last_look", TimeOf(record.lastLook)},
            {"seconds_since_look", record.lastLook ? QJsonValue(now - record.lastLook) : QJsonValue()},
            {"last_registration", TimeOf(record.lastRegistration)},
            {"files_wanted", row.wanted},
            {"files_whole", row.whole},
            {"files", FilesOf(row, now)},
            {"refusals", refusals}};
}

} // namespace

const char* StandingName(Standing standing)
{
    switch (standing) {
    case Standing::Late:
        return "late";
    case Standing::Refused:
        return "refused";
    case Standing::Incomplete:
        return "incomplete";
    case Standing::InStep:
        break;
    }
    return "in step";
}

QByteArray StatusJson(const StatusReport& report)
{
    QJsonArray displays;
    for (const StatusRow& row : report.rows)
        displays.append(ObjectOf(row, report.now));
    QJsonObject counts = {{"displays", report.rows.size()}};
    for (Standing standing : {Standing::Late, Standing::Refused, Standing::Incomplete, Standing::InStep})
        counts[QString(StandingName(standing)).replace(' ', '_')] = report.Count(standing);
    return QJsonDocument(QJsonObject{{"time", TimeOf(report.now)},
                                     {"interval", report.intervalS},
                                     {"late_after", StatusReport::LateAfterS(report.intervalS)},
                                     {"counts", counts},
                                     {"content_checked", report.contentKnown},
                                     {"warnings", QJsonArray::fromStringList(report.warnings)},
                                     {"displays", displays}})
        .toJson(QJsonDocument::Indented);
}
