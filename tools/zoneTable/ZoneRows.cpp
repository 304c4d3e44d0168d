#include "tools/zoneTable/ZoneRows.h"
#include <QDateTime>
#include <QFile>
#include <QTimeZone>
#include <algorithm>
#include <climits>
#include <cstdlib>
#include <tuple>

namespace {

constexpr int kYearDigits = 4;
constexpr int kSecondsPerMinute = 60;
constexpr int kMinutesPerHour = 60;

// Summer time moves the clock ahead of standard time: that of the other half of the year.
int StandardSeconds(const QTimeZone& zone, int year)
{
    int seconds = INT_MAX;
    for (const int month : {1, 7})
        seconds =
            std::min(seconds, zone.offsetFromUtc(QDateTime(QDate(year, month, 1), QTime(12, 0), Qt::UTC)));
    return seconds;
}

// The trailing blank parts it from the name that is shown behind it.
QString TimeText(int seconds)
{
    const int minutes = std::abs(seconds) / kSecondsPerMinute;
    return QString("%1%2:%3 ")
        .arg(QChar(seconds < 0 ? '-' : '+'))
        .arg(minutes / kMinutesPerHour, 2, 10, QChar('0'))
        .arg(minutes % kMinutesPerHour, 2, 10, QChar('0'));
}

// Accents do not move a name to the end.
QString SortKey(const QString& name)
{
    QString key;
    for (const QChar c : name.normalized(QString::NormalizationForm_D)) {
        if (c.category() != QChar::Mark_NonSpacing)
            key.append(c.toCaseFolded());
    }
    return key;
}

} // namespace

bool ZoneRows::Fail(const QByteArray& error)
{
    m_error = error;
    return false;
}

bool ZoneRows::ReadRows(const QByteArray& path, int columns, QList<QList<QByteArray>>& rows)
{
    QFile file(QString::fromLocal8Bit(path));
    if (!file.open(QIODevice::ReadOnly))
        return Fail("cannot read " + path);
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        rows.append(line.split('\t'));
        if (rows.last().size() < columns)
            return Fail(path + " has a line with too few columns: " + line);
    }
    return true;
}

// "# version 2025b" is the first line of the data.
bool ZoneRows::ReadYear(const QByteArray& path)
{
    QFile file(QString::fromLocal8Bit(path));
    if (file.open(QIODevice::ReadOnly))
        m_version = file.readLine().trimmed().split(' ').last();
    m_year = m_version.left(kYearDigits).toInt();
    return m_year > 0 || Fail(path + " does not say which version it is");
}

bool ZoneRows::Read(const char* folder, const char* names)
{
    const QByteArray data(folder);
    QList<QList<QByteArray>> countries, zones, given;
    if (!ReadYear(data + "/tzdata.zi") || !ReadRows(data + "/iso3166.tab", 2, countries) ||
        !ReadRows(data + "/zone.tab", 3, zones) || !ReadRows(names, 2, given))
        return false;
    for (const QList<QByteArray>& row : countries)
        m_countries[row[0]] = QString::fromUtf8(row[1]);
    for (const QList<QByteArray>& row : given)
        m_names[row[0]] = QString::fromUtf8(row[1]);
    for (const QList<QByteArray>& row : zones) {
        if (!Add(row[0], row[2]))
            return false;
    }
    if (!Add({}, "Etc/UTC"))
        return false;
    std::sort(m_rows.begin(), m_rows.end(), [](const Row& left, const Row& right) {
        return std::tuple(left.seconds, SortKey(left.name), left.rule) <
               std::tuple(right.seconds, SortKey(right.name), right.rule);
    });
    return true;
}

bool ZoneRows::Add(const QByteArray& country, const QByteArray& rule)
{
    const QTimeZone zone(rule);
    if (!zone.isValid())
        return Fail("no rules for the zone " + rule);
    m_rows.append({StandardSeconds(zone, m_year), NameOf(country, rule), rule});
    return true;
}

// "America/Indiana/Tell_City" is "United States, Tell City (Indiana)".
QString ZoneRows::NameOf(const QByteArray& country, const QByteArray& rule) const
{
    if (m_names.contains(rule))
        return m_names[rule];
    QList<QByteArray> parts = QByteArray(rule).replace('_', ' ').split('/');
    QString place = QString::fromUtf8(parts.takeLast());
    const QString land = m_countries.value(country);
    if (land.isEmpty())
        return place;
    // "Norfolk Island, Norfolk" says it twice.
    if (SortKey(land).startsWith(SortKey(place)))
        return land;
    const QString region = parts.size() > 1 ? QString::fromUtf8(parts.last()) : QString();
    if (!region.isEmpty() && region != land)
        place += " (" + region + ")";
    return land + ", " + place;
}

QByteArray ZoneRows::Xml() const
{
    QString text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- Time-zone data " +
                   QString::fromUtf8(m_version) + " -->\n<DSTData>\n";
    for (const Row& row : m_rows)
        text += QString("  <DST szTime=\"%1\" szZone=\"%2\" szRule=\"%3\"/>\n")
                    .arg(TimeText(row.seconds), row.name.toHtmlEscaped(), QString::fromUtf8(row.rule));
    return (text + "</DSTData>\n").toUtf8();
}
