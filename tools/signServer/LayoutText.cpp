#include "tools/signServer/LayoutText.h"
#include <QXmlStreamReader>

namespace {

// What a phone takes of a layout.
constexpr int kMostRegions = 64;
constexpr int kMostMedia = 256;               // of a region
constexpr qsizetype kLargestText = 256 << 10; // bytes
// The largest picture of a film, in pixels, and the grid that its place is cut to.
constexpr int kFilmWidth = 1280;
constexpr int kFilmHeight = 800;
constexpr int kFilmGrid = 16;

MediaKind KindOf(const QString& type)
{
    return type == "image" ? MediaKind::Picture : type == "video" ? MediaKind::Film : MediaKind::Unknown;
}

int NumberOf(const QXmlStreamReader& xml, const char* name)
{
    const QByteArray text = xml.attributes().value(QLatin1String(name)).toUtf8();
    return int(qBound(-100000L, std::strtol(text.constData(), nullptr, 10), 100000L));
}

int AlignedUp(int value)
{
    return value + ((-value % kFilmGrid) + kFilmGrid) % kFilmGrid;
}

} // namespace

LayoutText::LayoutText(const QByteArray& bytes)
{
    QXmlStreamReader xml(bytes);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement)
            Begin(xml);
    }
    if (xml.hasError())
        m_error = QString("line %1: %2").arg(xml.lineNumber()).arg(xml.errorString());
    if (m_regions > kMostRegions)
        m_faults.append(QString("of %1 regions a phone shows the first %2").arg(m_regions).arg(kMostRegions));
}

void LayoutText::Begin(QXmlStreamReader& xml)
{
    if (xml.name() == QLatin1String("media")) {
        TakeMedia(xml);
        return;
    }
    const QString background = xml.attributes().value("background").toString();
    if (!background.isEmpty())
        m_uses.append({background, MediaKind::Picture});
    if (xml.name() == QLatin1String("region"))
        BeginRegion(xml);
    else if (xml.name() == QLatin1String("text"))
        CheckText(xml);
}

void LayoutText::BeginRegion(const QXmlStreamReader& xml)
{
    m_region = {++m_regions,
                0,
                NumberOf(xml, "left"),
                NumberOf(xml, "top"),
                NumberOf(xml, "width"),
                NumberOf(xml, "height")};
    if (m_region.width <= 0 || m_region.height <= 0)
        Fault("it has no width or no height, so nothing shows");
}

void LayoutText::TakeMedia(QXmlStreamReader& xml)
{
    const QString type = xml.attributes().value("type").toString();
    const QString path = xml.attributes().value("path").toString();
    const MediaKind kind = KindOf(type);
    if (!path.isEmpty())
        m_uses.append({path, kind});
    if (++m_region.media == kMostMedia + 1)
        Fault(QString("a phone shows the first %1 media").arg(kMostMedia));
    if (kind == MediaKind::Unknown && type != "text")
        Fault(QString("no phone shows media of the type \"%1\"").arg(type));
    else if (kind == MediaKind::Film)
        CheckFilm();
}

// The phone takes what is the first inside "text", and only if it is a CDATA section.
void LayoutText::CheckText(QXmlStreamReader& xml)
{
    const bool isData = xml.readNext() == QXmlStreamReader::Characters && xml.isCDATA();
    if (!isData)
        Fault("a text has no CDATA section right behind <text>, so nothing shows");
    else if (xml.text().toUtf8().size() > kLargestText)
        Fault(QString("no phone shows a text of more than %1 bytes").arg(kLargestText));
}

// As the phone places it: cut to the grid, which moves the left edge to the right.
void LayoutText::CheckFilm()
{
    const int left = AlignedUp(m_region.left);
    const int width = (m_region.left + m_region.width - left) / kFilmGrid * kFilmGrid;
    if (m_region.width <= 0 || m_region.height <= 0)
        return;
    if (width <= 0)
        Fault(QString("it is too narrow for a film: %1 pixels, cut to a grid of %2")
                  .arg(m_region.width)
                  .arg(kFilmGrid));
    else if (width > kFilmWidth || m_region.height > kFilmHeight)
        Fault(QString("no phone plays a film of %1 by %2; %3 by %4 is the largest")
                  .arg(width)
                  .arg(m_region.height)
                  .arg(kFilmWidth)
                  .arg(kFilmHeight));
    else if (qAbs(left) > kFilmWidth || qAbs(m_region.top) > kFilmHeight)
        Fault(QString("no phone plays a film at %1, %2").arg(left).arg(m_region.top));
}

void LayoutText::Fault(const QString& text)
{
    const QString line = m_region.number ? QString("region %1: %2").arg(m_region.number).arg(text) : text;
    if (!m_faults.contains(line) && m_faults.size() < kMostRegions)
        m_faults.append(line);
}
