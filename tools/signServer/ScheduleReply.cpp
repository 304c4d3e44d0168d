#include "tools/signServer/ScheduleReply.h"
#include "tools/signServer/ReplyText.h"
#include "tools/signServer/RequestText.h"
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace {

constexpr qint64 kLargestMedia = 8 << 20; // a phone fetches no larger file
const char* const kFirstTime = "2000-01-01 00:00:00";
const char* const kLastTime = "2037-12-31 23:59:59";

QString ValueOr(const QXmlStreamAttributes& attributes, const char* name, const char* otherwise)
{
    const auto value = attributes.value(QLatin1String(name));
    return value.isEmpty() ? QString::fromLatin1(otherwise) : value.toString();
}

bool IsForDisplay(const QXmlStreamAttributes& attributes, const QString& display)
{
    const QString list = attributes.value("displays").toString();
    if (list.trimmed().isEmpty())
        return true;
    for (const QString& name : list.split(',')) {
        if (name.trimmed() == display)
            return true;
    }
    return false;
}

} // namespace

QByteArray ScheduleReply::For(const QByteArray& display)
{
    m_layouts.clear();
    m_files.clear();
    m_complaints.clear();
    // A schedule that is half written says nothing about what the displays should drop.
    if (!ReadSchedule(QString::fromUtf8(display)))
        return QByteArray();
    return NdeckReply([this](QXmlStreamWriter& xml) { Write(xml); });
}

int ScheduleReply::ReadSchedule(const QString& display)
{
    QXmlStreamReader xml(m_folder.Content("schedule.xml"));
    QVector<Layout> wanted;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != QLatin1String("layout"))
            continue;
        const QXmlStreamAttributes at = xml.attributes();
        if (IsForDisplay(at, display))
            wanted.append({at.value("file").toString(), ValueOr(at, "fromdt", kFirstTime),
                           ValueOr(at, "todt", kLastTime), at.value("eventType").toString(),
                           at.value("applet").toString()});
    }
    if (xml.hasError()) {
        Complain(QString("schedule.xml, line %1: %2").arg(xml.lineNumber()).arg(xml.errorString()));
        return 0;
    }
    for (const Layout& layout : wanted)
        TakeLayout(layout);
    return 1;
}

void ScheduleReply::TakeLayout(const Layout& layout)
{
    const OpenFilePtr file = m_folder.Open("layout", layout.file.toUtf8());
    if (!file) {
        Complain(QString("layouts/%1 is not there").arg(layout.file));
        return;
    }
    if (!ArrivesAsSent(layout.file.toUtf8())) {
        Complain(QString("layouts/%1 %2").arg(layout.file, CannotBeSent));
        return;
    }
    QStringList media;
    if (!MediaOf(layout, *file, media))
        return;
    m_layouts.append(layout);
    if (!HasFile("layout", layout.file))
        m_files.append({"layout", layout.file, m_folder.Sum(*file), file->Size()});
    for (const QString& name : media)
        TakeMedia(name);
}

int ScheduleReply::MediaOf(const Layout& layout, const OpenFile& file, QStringList& names)
{
    QXmlStreamReader xml(file.Read(0, file.Size()));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const bool isMedia = xml.name() == QLatin1String("media");
        const QString name = xml.attributes().value(isMedia ? "path" : "background").toString();
        if (!name.isEmpty())
            names.append(name);
    }
    if (!xml.hasError())
        return 1;
    Complain(
        QString("layouts/%1, line %2: %3").arg(layout.file).arg(xml.lineNumber()).arg(xml.errorString()));
    return 0;
}

void ScheduleReply::TakeMedia(const QString& name)
{
    if (HasFile("media", name))
        return;
    const OpenFilePtr file = m_folder.Open("media", name.toUtf8());
    if (!file)
        Complain(QString("media/%1 is not there").arg(name));
    else if (!ArrivesAsSent(name.toUtf8()))
        Complain(QString("media/%1 %2").arg(name, CannotBeSent));
    else if (file->Size() > kLargestMedia)
        Complain(QString("media/%1 is larger than a phone fetches (8 MiB)").arg(name));
    else
        m_files.append({"media", name, m_folder.Sum(*file), file->Size()});
}

bool ScheduleReply::HasFile(const QString& type, const QString& path) const
{
    return std::any_of(m_files.begin(), m_files.end(),
                       [&](const File& file) { return file.type == type && file.path == path; });
}

void ScheduleReply::Write(QXmlStreamWriter& xml) const
{
    xml.writeStartElement("result");
    xml.writeTextElement("success", "registered");
    xml.writeEndElement();
    xml.writeStartElement("schedule");
    for (const Layout& layout : m_layouts) {
        xml.writeEmptyElement("layout");
        xml.writeAttribute("file", layout.file);
        xml.writeAttribute("fromdt", layout.fromdt);
        xml.writeAttribute("todt", layout.todt);
        xml.writeAttribute("eventType", layout.eventType);
        xml.writeAttribute("applet", layout.applet);
    }
    xml.writeEndElement();
    xml.writeStartElement("files");
    for (const File& file : m_files) {
        xml.writeEmptyElement("file");
        xml.writeAttribute("type", file.type);
        xml.writeAttribute("path", file.path);
        xml.writeAttribute("md5", QString::fromLatin1(file.sum));
        xml.writeAttribute("size", QString::number(file.size));
    }
    xml.writeEndElement();
}
