// Adds the texts that the phone shows and its language files lack. usage: hxTextKeys SOURCE_TREE
#include "tools/textKeys/languageFile.h"
#include "tools/textKeys/sourceCode.h"
#include <QDir>
#include <QSaveFile>
#include <cstdio>

namespace {

bool save(const QString& path, const QString& text)
{
    QSaveFile file(path);
    const QByteArray bytes = text.toUtf8();
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

bool update(const QString& path, const ShownKeys& keys)
{
    const QString before = readText(path);
    const QString after = withMissingKeys(before, keys);
    if (after.isEmpty() || (after != before && !save(path, after))) {
        fprintf(stderr, "hxTextKeys: %s cannot be updated\n", qPrintable(path));
        return false;
    }
    printf("%s: %d new\n", qPrintable(QFileInfo(path).fileName()),
           int(after.count("<message>") - before.count("<message>")));
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        fprintf(stderr, "usage: hxTextKeys SOURCE_TREE\n");
        return 2;
    }
    const QString root = QDir::cleanPath(QString::fromLocal8Bit(argv[1]));
    const ShownKeys keys = shownKeys(root);
    const QFileInfoList files =
        QDir(root + "/rootfs/language").entryInfoList({"*.ts"}, QDir::Files, QDir::Name);
    bool isGood = !files.isEmpty() && !keys.isEmpty();
    for (const QFileInfo& file : files)
        isGood = update(file.filePath(), keys) && isGood;
    return isGood ? 0 : 1;
}
