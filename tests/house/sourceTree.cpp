#include "tests/house/sourceTree.h"
#include "places.h"
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

QString sourcePath(const QString& path)
{
    return QString(HX_SOURCE_DIR) + "/" + path;
}

QString imagePath(const QString& devicePath)
{
    return QString(HX_BUILD_DIR) + "/rootfs" + devicePath;
}

QVector<SourceFile> sourceFiles(const QStringList& folders, const QStringList& suffixes)
{
    return sourceFiles(HX_SOURCE_DIR, folders, suffixes);
}

// The compiler finds a file by every way that leads to it.
static QString fromRoot(const QString& written)
{
    return QDir(HX_SOURCE_DIR).relativeFilePath(QDir::cleanPath(sourcePath(written)));
}

QVector<Include> includesOf(const SourceFile& file)
{
    static const QRegularExpression include("^#\\s*include(?:_next)?\\s*([\"<])([^\">]+)[\">]");
    static const QRegularExpression generated("^(places\\.h|ui_\\w+\\.h|moc_\\w+\\.cpp|\\w+\\.moc)$");
    QVector<Include> includes;
    const QStringList lines = file.text.split('\n');
    const QStringList bare = withoutComments(file.text).split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        if (!bare[i].trimmed().startsWith('#'))
            continue;
        // Two slashes in a path look like a comment.
        const QRegularExpressionMatch match = include.match(lines[i].mid(bare[i].indexOf('#')));
        const QString written = match.captured(2);
        if (!match.hasMatch() || generated.match(written).hasMatch())
            continue;
        const QString path = fromRoot(written);
        const bool isQuoted = match.captured(1) == "\"";
        if (isQuoted || QFileInfo(sourcePath(path)).isFile())
            includes.append({path, i + 1, isQuoted && path == written && !path.startsWith("..")});
    }
    return includes;
}
