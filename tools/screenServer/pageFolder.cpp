#include "tools/screenServer/pageFolder.h"
#include <QFile>
#include <QFileInfo>
#include <QHash>

namespace {

constexpr qint64 kFileLimit = 4 << 20;

} // namespace

PageFolder::PageFolder(const QString& folder) : m_strFolder(QFileInfo(folder).canonicalFilePath()) {}

bool PageFolder::isThere() const
{
    return !m_strFolder.isEmpty() && QFileInfo(m_strFolder + "/vnc.html").isFile();
}

std::optional<QByteArray> PageFolder::read(const QByteArray& path) const
{
    const QString name = QString::fromUtf8(QByteArray::fromPercentEncoding(path));
    const QFileInfo found(QFileInfo(m_strFolder + '/' + name).canonicalFilePath());
    if (name.contains(QChar(0)) || !found.filePath().startsWith(m_strFolder + '/') || !found.isFile())
        return std::nullopt;
    QFile file(found.filePath());
    if (!file.open(QIODevice::ReadOnly) || file.size() > kFileLimit)
        return std::nullopt;
    return file.readAll();
}

QByteArray PageFolder::contentType(const QByteArray& path)
{
    static const QHash<QByteArray, QByteArray> types = {
        {"html", "text/html; charset=utf-8"},
        {"js", "text/javascript; charset=utf-8"},
        {"css", "text/css; charset=utf-8"},
        {"json", "application/json"},
        {"svg", "image/svg+xml"},
        {"png", "image/png"},
        {"ico", "image/x-icon"},
        {"ttf", "font/ttf"},
        {"woff", "font/woff"},
        {"woff2", "font/woff2"},
        {"oga", "audio/ogg"},
        {"mp3", "audio/mpeg"},
    };
    return types.value(path.mid(path.lastIndexOf('.') + 1).toLower(), "application/octet-stream");
}
