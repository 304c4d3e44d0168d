#include "tests/reliability/deckFolder.h"
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QXmlStreamReader>

namespace {

const char* const kFetching = ".ing";
const char* const kWaiting = ".new";

bool isOwn(const QString& name)
{
    return name.startsWith("FileList.xml") || name.startsWith("display.xml") || name == "register.tmp" ||
           name.startsWith(".display.xml.") || name.startsWith(".FileList.xml.") ||
           name.startsWith(".register.tmp.");
}

// Still being written: nothing says that it is whole.
bool isOnItsWay(const QString& name)
{
    return name.startsWith('.') || name.endsWith(kFetching);
}

QString withoutWaiting(const QString& name)
{
    return name.endsWith(kWaiting) ? name.chopped(4) : name;
}

} // namespace

QStringList DeckFolder::files() const
{
    QStringList names;
    for (const QString& name : QDir(m_path).entryList(QDir::Files | QDir::Hidden, QDir::Name)) {
        if (!isOwn(name))
            names.append(name);
    }
    return names;
}

qint64 DeckFolder::size() const
{
    qint64 bytes = 0;
    for (const QFileInfo& file : QDir(m_path).entryInfoList(QDir::Files | QDir::Hidden))
        bytes += file.size();
    return bytes;
}

// Empty when the file has gone meanwhile.
QByteArray DeckFolder::md5(const QString& name) const
{
    QFile file(m_path + name);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Md5).toHex();
}

QString DeckFolder::wrongFile(const KnownVersions& known) const
{
    for (const QString& name : files()) {
        if (isOnItsWay(name))
            continue;
        const QByteArray sum = md5(name);
        if (!sum.isEmpty() && !known.value(withoutWaiting(name)).contains(sum))
            return name + " is no content of the server";
    }
    return QString();
}

bool DeckFolder::records(QList<Record>& list) const
{
    QFile file(m_path + "display.xml");
    if (!file.open(QIODevice::ReadOnly))
        return !file.exists();
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != QLatin1String("file"))
            continue;
        list.append({xml.attributes().value("path").toString(), xml.attributes().value("md5").toLatin1()});
    }
    return !xml.hasError();
}

QString DeckFolder::wrongRecord() const
{
    QList<Record> list;
    if (!records(list))
        return "display.xml is torn";
    QMap<QString, QSet<QByteArray>> contents;
    QSet<QString> paths, inUse;
    for (const Record& record : list) {
        if (paths.contains(record.path))
            return "display.xml names " + record.path + " twice";
        paths.insert(record.path);
        if (isOnItsWay(record.path))
            continue;
        contents[withoutWaiting(record.path)].insert(record.md5);
        if (!record.path.endsWith(kWaiting))
            inUse.insert(record.path);
    }
    for (const QString& name : inUse) {
        const QByteArray sum = md5(name);
        if (!sum.isEmpty() && !contents[name].contains(sum))
            return name + " holds a content that display.xml does not tell";
    }
    return QString();
}

QString DeckFolder::outOfStep(const WantedFiles& wanted) const
{
    QList<Record> list;
    if (!records(list))
        return "display.xml is torn";
    WantedFiles listed;
    for (const Record& record : list)
        listed[record.path] = record.md5;
    if (files() != QStringList(wanted.keys()))
        return "files: " + files().join(' ') + "\nwanted: " + QStringList(wanted.keys()).join(' ');
    if (listed != wanted || list.size() != listed.size())
        return "listed: " + QStringList(listed.keys()).join(' ');
    for (auto it = wanted.cbegin(); it != wanted.cend(); ++it) {
        if (md5(it.key()) != it.value())
            return it.key() + " has another content";
    }
    return QString();
}
