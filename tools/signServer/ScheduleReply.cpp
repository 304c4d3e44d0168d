#include "tools/signServer/ScheduleReply.h"
#include "tools/signServer/ReplyText.h"
#include "tools/signServer/SentName.h"
#include <QCryptographicHash>
#include <QDateTime>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace {

// A phone fetches no larger file.
constexpr qint64 kLargestMedia = 8 << 20;
constexpr qint64 kLargestLayout = 1 << 20;
const char* const kFirstTime = "2000-01-01 00:00:00";
const char* const kLastTime = "2037-12-31 23:59:59";

QString ValueOr(const QXmlStreamAttributes& attributes, const char* name, const char* otherwise)
{
    const auto value = attributes.value(QLatin1String(name));
    return value.isEmpty() ? QString::fromLatin1(otherwise) : value.toString();
}

// As a phone reads it; the zone of the server stands for the phone's.
qint64 SecondsOf(const QString& text, const QString& eventType)
{
    int n[6] = {};
    std::sscanf(text.toUtf8().constData(), "%d-%d-%d %d:%d:%d", n, n + 1, n + 2, n + 3, n + 4, n + 5);
    const Qt::TimeSpec zone = eventType == "sametime" ? Qt::UTC : Qt::LocalTime;
    const QDateTime time(QDate(n[0], n[1], n[2]), QTime(n[3], n[4], n[5]), zone);
    return time.isValid() ? time.toSecsSinceEpoch() : 0;
}

QString Size(qint64 bytes)
{
    return QString("%1 MiB").arg(bytes >> 20);
}

bool IsForDisplay(const QXmlStreamAttributes& attributes, const QString& display)
{
    if (display.isEmpty())
        return true;
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

void ScheduleReply::Clear()
{
    m_layouts.clear();
    m_files.clear();
    m_uses.clear();
    m_complaints.clear();
    m_layoutFiles.clear();
    m_mediaFiles.clear();
    m_complained.clear();
    m_used.clear();
}

QByteArray ScheduleReply::For(const QByteArray& display)
{
    Clear();
    // A schedule that is half written says nothing about what the displays should drop.
    if (!ReadSchedule(QString::fromUtf8(display)))
        return QByteArray();
    return NdeckReply([this](QXmlStreamWriter& xml) { Write(xml); });
}

void ScheduleReply::ForAll()
{
    Clear();
    ReadSchedule(QString());
}

ScheduledFilesPtr ScheduleReply::Files() const
{
    QHash<QString, QVector<QPair<qint64, qint64>>> times; // of layouts
    for (const Layout& layout : m_layouts)
        times[layout.file].append(
            {SecondsOf(layout.fromdt, layout.eventType), SecondsOf(layout.todt, layout.eventType)});
    auto list = std::make_shared<ScheduledFiles>();
    QCryptographicHash id(QCryptographicHash::Md5);
    for (const File& file : m_files) {
        ScheduledFile one = {file.type.toUtf8(), file.path.toUtf8(), file.sum, {}};
        if (file.type == "layout")
            one.times = times.value(file.path);
        id.addData(one.type + '/' + one.name + '/' + one.sum + '\n');
        for (const auto& [from, to] : one.times)
            id.addData(QByteArray::number(from) + '-' + QByteArray::number(to) + '\n');
        list->files.append(one);
    }
    list->id = id.result().toHex();
    return list;
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
    const OpenFilePtr file = OpenSent("layout", layout.file, kLargestLayout);
    if (!file)
        return;
    const LayoutText text(file->Read(0, file->Size()));
    if (!text.Error().isEmpty()) {
        Complain(QString("layouts/%1, %2").arg(layout.file, text.Error()));
        return;
    }
    m_layouts.append(layout);
    if (m_layoutFiles.contains(layout.file))
        return;
    m_layoutFiles.insert(layout.file);
    m_files.append({"layout", layout.file, m_folder.Sums().Of(*file), file->Size()});
    for (const QString& fault : text.Faults())
        Complain(QString("layouts/%1, %2").arg(layout.file, fault));
    for (const LayoutText::Use& use : text.Uses())
        TakeMedia(use);
}

// A file that phones fetch; null, with a complaint, for every other one.
OpenFilePtr ScheduleReply::OpenSent(const char* type, const QString& name, qint64 most)
{
    const QByteArray folder = type == QByteArray("layout") ? "layouts/" : "media/";
    const QString shown = folder + name;
    const OpenFilePtr file = m_folder.Open(type, name.toUtf8());
    const QByteArray fault = NameFault(name.toUtf8());
    if (!fault.isEmpty())
        Complain(shown + " " + fault);
    else if (!file)
        Complain(shown + " is not there");
    else if (file->Size() > most)
        Complain(QString("%1 is larger than a phone fetches (%2)").arg(shown, Size(most)));
    else
        return file;
    return nullptr;
}

void ScheduleReply::TakeMedia(const LayoutText::Use& use)
{
    const bool isKnown = m_mediaFiles.contains(use.name);
    const OpenFilePtr file = isKnown ? nullptr : OpenSent("media", use.name, kLargestMedia);
    if (file) {
        m_mediaFiles.insert(use.name);
        m_files.append({"media", use.name, m_folder.Sums().Of(*file), file->Size()});
    }
    const QPair<QString, int> used(use.name, int(use.kind));
    if ((!file && !isKnown) || m_used.contains(used))
        return;
    m_used.insert(used);
    m_uses.append(use);
}

void ScheduleReply::Complain(const QString& text)
{
    if (m_complained.contains(text))
        return;
    m_complained.insert(text);
    m_complaints.append(text);
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
