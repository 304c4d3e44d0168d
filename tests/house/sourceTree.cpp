#include "tests/house/sourceTree.h"
#include "places.h"
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

QVector<Include> includesOf(const SourceFile& file)
{
    static const QRegularExpression include("^\\s*#\\s*include\\s*\"([^\"]+)\"");
    static const QRegularExpression generated("^(places\\.h|ui_\\w+\\.h|moc_\\w+\\.cpp|\\w+\\.moc)$");
    QVector<Include> includes;
    const QStringList lines = withoutComments(file.text).split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        const QRegularExpressionMatch match = include.match(lines[i]);
        if (match.hasMatch() && !generated.match(match.captured(1)).hasMatch())
            includes.append({match.captured(1), i + 1});
    }
    return includes;
}
