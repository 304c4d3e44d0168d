#include "tools/signServer/NameCheck.h"
#include "tools/signServer/RequestText.h"
#include <QDir>
#include <QXmlStreamReader>

namespace {

struct Place
{
    const char *file, *element, *attribute;
    bool isList; // of names, separated by commas
};

constexpr Place kPlaces[] = {
    {"schedule.xml", "layout", "file", false}, {"schedule.xml", "layout", "displays", true},
    {"weather.xml", "city", "name", false},    {"weather.xml", "city", "also", true},
    {"stock.xml", "stock", "code", false},
};

void CheckName(const QString& place, const QString& name, QStringList& complaints)
{
    const QString line = QString("%1: \"%2\" %3").arg(place, name, CannotBeSent);
    if (!ArrivesAsSent(name.toUtf8()) && !complaints.contains(line))
        complaints.append(line);
}

void CheckPlace(const SignFolder& folder, const Place& place, QStringList& complaints)
{
    QXmlStreamReader xml(folder.Content(place.file));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != QLatin1String(place.element))
            continue;
        const QString value = xml.attributes().value(QLatin1String(place.attribute)).toString();
        const QString where = QString("%1, line %2").arg(place.file).arg(xml.lineNumber());
        for (const QString& name : place.isList ? value.split(',') : QStringList(value))
            CheckName(where, name.trimmed(), complaints);
    }
}

void CheckFiles(const SignFolder& folder, const char* kind, QStringList& complaints)
{
    for (const QString& name : QDir(QString::fromUtf8(folder.PathOf(kind))).entryList(QDir::Files))
        CheckName(kind, name, complaints);
}

} // namespace

QStringList NameComplaints(const SignFolder& folder)
{
    QStringList complaints;
    for (const Place& place : kPlaces)
        CheckPlace(folder, place, complaints);
    CheckFiles(folder, "layouts", complaints);
    CheckFiles(folder, "media", complaints);
    return complaints;
}
