#include "tools/signServer/StatusReport.h"
#include <QSet>
#include <algorithm>
#include <tuple>

namespace {

constexpr qint64 kStrangerS = 24 * 3600; // that one is shown for

bool IsLate(const DisplayRecord& record, const StatusInput& input)
{
    // Who has just registered has not had the time for a look.
    const qint64 last = record.lastLook ? record.lastLook : record.lastRegistration;
    return input.now - last > StatusReport::LateAfterS(input.intervalS);
}

Standing StandingOf(const StatusRow& row, const StatusInput& input)
{
    const DisplayRecord& record = row.record;
    const bool isHeard = input.now - record.heard <= StatusReport::LateAfterS(input.intervalS);
    if (!row.admitted || (record.refused && isHeard))
        return Standing::Refused;
    if (IsLate(record, input))
        return Standing::Late;
    return record.files && row.whole == row.wanted ? Standing::InStep : Standing::Incomplete;
}

void CountFiles(StatusRow& row, qint64 now)
{
    for (qsizetype i = 0; i < row.record.states.size(); ++i) {
        const bool isDue = row.record.files->files[i].IsDue(now);
        row.wanted += isDue;
        row.whole += isDue && row.record.states[i] == FILE_WHOLE;
    }
}

// Who is silent for longest first, then by name.
auto PlaceOf(const StatusRow& row)
{
    const DisplayRecord& record = row.record;
    return std::make_tuple(int(row.standing), row.standing == Standing::Late ? record.lastLook : 0,
                           record.name.toLower(), record.key);
}

// Who never came further than a refusal is in step with nothing, but it is known why.
DisplayRecord RecordOf(const StatusInput& input, const QByteArray& key)
{
    if (input.known.contains(key))
        return input.known[key];
    // server.ini may have the key in other letters than the phone.
    const auto found =
        std::find_if(input.strangers.begin(), input.strangers.end(), [&](const DisplayRecord& one) {
            return one.key.compare(key, Qt::CaseInsensitive) == 0;
        });
    return found == input.strangers.end() ? DisplayRecord() : *found;
}

// Those that the account speaks of, and whoever else asked lately.
QVector<StatusRow> RowsOf(const StatusInput& input)
{
    QVector<StatusRow> rows;
    QSet<QByteArray> taken;
    for (const AdmittedDisplay& expected : input.expected) {
        if (taken.contains(expected.key))
            continue;
        StatusRow row;
        row.record = RecordOf(input, expected.key);
        taken.insert(expected.key);
        if (!row.record.key.isEmpty())
            taken.insert(row.record.key);
        row.record.key = expected.key;
        row.record.name = expected.name;
        rows.append(row);
    }
    for (const DisplayBook::Records& records : {input.known, input.strangers}) {
        for (const DisplayRecord& record : records) {
            if (taken.contains(record.key) || input.now - record.heard > kStrangerS)
                continue;
            StatusRow row;
            row.record = record;
            row.admitted = false;
            rows.append(row);
        }
    }
    return rows;
}

} // namespace

StatusReport::StatusReport(const StatusInput& input)
    : rows(RowsOf(input)), warnings(input.warnings), contentKnown(input.contentKnown),
      intervalS(input.intervalS), now(input.now)
{
    for (StatusRow& row : rows) {
        CountFiles(row, now);
        row.standing = StandingOf(row, input);
    }
    std::sort(rows.begin(), rows.end(),
              [](const StatusRow& a, const StatusRow& b) { return PlaceOf(a) < PlaceOf(b); });
}

int StatusReport::Count(Standing standing) const
{
    return int(std::count_if(rows.begin(), rows.end(),
                             [standing](const StatusRow& row) { return row.standing == standing; }));
}

FileStanding StandingOf(const DisplayRecord& record, qsizetype file, qint64 now)
{
    if (record.states[file] == FILE_WHOLE)
        return FileStanding::Whole;
    if (!record.files->files[file].IsDue(now))
        return FileStanding::NotDue;
    return record.states[file] == FILE_CUT       ? FileStanding::Cut
           : record.states[file] == FILE_REFUSED ? FileStanding::Refused
                                                 : FileStanding::Missing;
}
