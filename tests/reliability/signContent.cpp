#include "tests/reliability/signContent.h"
#include "tests/kit/plain/signTexts.h"
#include <QCryptographicHash>

namespace {

constexpr int kVersions = 3;
constexpr int kSizes[] = {1, 700, 4096, 9000, 20000, 65537, 120000, 400000};

QByteArray md5(const QByteArray& content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
}

} // namespace

const QString SignContent::kPicture = "picture.png";

QColor SignContent::pictureColour(int version)
{
    const QColor colours[kVersions] = {QColor(220, 30, 30), QColor(30, 180, 60), QColor(30, 60, 200)};
    return colours[version];
}

QString SignContent::mediaName(int index)
{
    return index == 0 ? kPicture : QString("file%1.bin").arg(index, 2, 10, QChar('0'));
}

SignContent::SignContent(SignServer& server, unsigned seed) : m_server(server), m_random(seed)
{
    for (int index = 0; index < MEDIA_COUNT; ++index)
        putMedia(index, 0);
    for (int index = 0; index < LAYOUT_COUNT; ++index)
        putLayout(index, 1);
}

QByteArray SignContent::mediaContent(int index, int version) const
{
    if (index == 0)
        return kit::signPicture(pictureColour(version), QSize(400, 240));
    std::mt19937 bytes(unsigned(index * kVersions + version));
    QByteArray content(kSizes[index % int(std::size(kSizes))] + version, Qt::Uninitialized);
    for (char& byte : content)
        byte = char(bytes());
    return content;
}

void SignContent::putMedia(int index, int version)
{
    const QString name = mediaName(index);
    const QByteArray content = mediaContent(index, version);
    m_server.putMedia(name, content);
    m_versions[name] = version;
    m_now[name] = md5(content);
    m_known[name].insert(md5(content));
}

// The schedule names every file that an element of a layout has as its background. Only the region is shown.
void SignContent::putLayout(int index, int seconds)
{
    QByteArray text = QString("<layout width=\"800\" height=\"480\" round=\"%1\">").arg(m_nRound).toUtf8();
    text += QString("<region left=\"0\" top=\"0\" width=\"800\" height=\"480\">"
                    "<media type=\"image\" path=\"%1\" duration=\"%2\"/></region>")
                .arg(kPicture)
                .arg(seconds)
                .toUtf8();
    for (int media = index; media < MEDIA_COUNT; media += LAYOUT_COUNT)
        text += "<need background=\"" + mediaName(media).toUtf8() + "\"/>";
    text += "</layout>";
    m_server.putLayout(layoutName(index), text);
    m_now[layoutName(index)] = md5(text);
    m_known[layoutName(index)].insert(md5(text));
    m_shown.insert(index);
}

void SignContent::change()
{
    ++m_nRound;
    for (int index = 0; index < MEDIA_COUNT; ++index) {
        if (below(3) == 0)
            putMedia(index, below(kVersions));
    }
    if (m_nRound % 2)
        return; // files change under layouts that do not
    for (int index = 0; index < LAYOUT_COUNT; ++index) {
        if (index > 0 && below(4) == 0) {
            m_server.dropLayout(layoutName(index));
            m_shown.remove(index);
        } else {
            putLayout(index, below(2));
        }
    }
}

void SignContent::settle()
{
    ++m_nRound;
    for (int index = 0; index < LAYOUT_COUNT; ++index)
        putLayout(index, 1);
}

WantedFiles SignContent::wanted() const
{
    WantedFiles wanted;
    for (const int layout : m_shown) {
        wanted[layoutName(layout)] = m_now[layoutName(layout)];
        wanted[kPicture] = m_now[kPicture];
        for (int media = layout; media < MEDIA_COUNT; media += LAYOUT_COUNT)
            wanted[mediaName(media)] = m_now[mediaName(media)];
    }
    return wanted;
}
