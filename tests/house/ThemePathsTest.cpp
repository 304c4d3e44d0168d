// Every picture and file of the device image that something names is there.
#include "tests/house/sourceTree.h"
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

namespace {

const QString ThemeFolder = "/phone/resource/theme/default/bmp/";

QJsonObject theme()
{
    return QJsonDocument::fromJson(readText(sourcePath("rootfs/theme/theme.json")).toUtf8()).object();
}

// "a{1,2}.png" stands for "a1.png" and "a2.png".
QStringList expanded(const QString& path)
{
    static const QRegularExpression braces("^(.*)\\{([^}]*)\\}(.*)$");
    const QRegularExpressionMatch match = braces.match(path);
    if (!match.hasMatch())
        return {path};
    QStringList paths;
    for (const QString& choice : match.captured(2).split(','))
        paths.append(match.captured(1) + choice + match.captured(3));
    return paths;
}

// The pictures of the list with the size it gives them, "96x96".
QVector<QPair<QString, QString>> listedPictures()
{
    QVector<QPair<QString, QString>> pictures;
    const QJsonObject folders = theme()["pictures"].toObject();
    for (auto folder = folders.begin(); folder != folders.end(); ++folder) {
        for (const QJsonValue& row : folder.value().toArray()) {
            for (const QString& path : expanded(row["path"].toString()))
                pictures.append({folder.key() + "/" + path, row["size"].toString()});
        }
    }
    return pictures;
}

QSet<QString> valuesOf(const char* field)
{
    QSet<QString> values;
    for (const QJsonValue& rows : theme()["pictures"].toObject()) {
        for (const QJsonValue& row : rows.toArray())
            values.insert(row[QLatin1String(field)].toString());
    }
    return values;
}

void expectInImage(const QString& devicePath, const QString& namedBy)
{
    const QFileInfo info(imagePath(devicePath));
    EXPECT_TRUE(devicePath.endsWith('/') ? info.isDir() : info.exists())
        << qPrintable(namedBy) << " names " << qPrintable(devicePath);
}

} // namespace

TEST(ThemePaths, EveryResourceThatTheCodeNamesIsInTheImage)
{
    static const QRegularExpression whole("^/phone/(?:resource|scripts|factory)/[A-Za-z0-9_./-]+$");
    int named = 0;
    for (const SourceFile& file : sourceFiles(phoneRooms(), {".cpp", ".h"})) {
        for (const QString& literal : stringLiterals(file.text)) {
            if (!whole.match(literal).hasMatch() || literal == ThemeFolder)
                continue;
            expectInImage(literal, file.path);
            ++named;
        }
        for (const QStringList& call : literalCalls(file.text, {"HX_THEME"})) {
            const QString& picture = call.first();
            expectInImage(ThemeFolder + picture, file.path);
            ++named;
        }
    }
    EXPECT_GT(named, 0);
}

TEST(ThemePaths, EveryPathInTheMenusAndTheFactoryDataIsInTheImage)
{
    static const QRegularExpression path("(?:/phone|/rundata)/[A-Za-z0-9_./-]+");
    const QStringList folders = {"rootfs/menus", "rootfs/resource", "rootfs/factory"};
    int named = 0;
    for (const SourceFile& file : sourceFiles(folders, {".xml", ".ini", ".cfg"})) {
        for (auto it = path.globalMatch(file.text); it.hasNext(); ++named)
            expectInImage(it.next().captured(), file.path);
    }
    EXPECT_GT(named, 30);
}

TEST(ThemePaths, EveryListedPictureIsAPictureOfItsSize)
{
    const auto pictures = listedPictures();
    EXPECT_GT(pictures.size(), 100);
    for (const auto& [path, size] : pictures) {
        const QImage image(imagePath(path));
        const QString found = QString("%1x%2").arg(image.width()).arg(image.height());
        EXPECT_EQ(found.toStdString(), size.toStdString()) << qPrintable(path);
    }
}

TEST(ThemePaths, NoPictureIsListedTwice)
{
    QSet<QString> seen;
    for (const auto& [path, size] : listedPictures()) {
        EXPECT_FALSE(seen.contains(path)) << qPrintable(path);
        seen.insert(path);
    }
}

TEST(ThemePaths, AButtonsThreeStatesLookDifferent)
{
    const QJsonArray rows = theme()["pictures"].toObject()[ThemeFolder.chopped(1)].toArray();
    int buttons = 0;
    for (const QJsonValue& row : rows) {
        const QStringList states = expanded(row["path"].toString());
        for (int i = 1; i < states.size(); ++i, ++buttons) {
            EXPECT_NE(QImage(imagePath(ThemeFolder + states[i])),
                      QImage(imagePath(ThemeFolder + states[i - 1])))
                << qPrintable(states[i]);
        }
    }
    EXPECT_GT(buttons, 10);
}

TEST(ThemePaths, NoGlyphAndNoTemplateLiesUnused)
{
    const QString folder = sourcePath("rootfs/theme/");
    const QSet<QString> glyphs = valuesOf("glyph"), templates = valuesOf("template");
    for (const QFileInfo& file : QDir(folder + "glyphs").entryInfoList({"*.svg"}))
        EXPECT_TRUE(glyphs.contains(file.completeBaseName())) << qPrintable(file.fileName());
    for (const QFileInfo& file : QDir(folder + "templates").entryInfoList({"*.svg"}))
        EXPECT_TRUE(templates.contains(file.completeBaseName())) << qPrintable(file.fileName());
}

TEST(ThemePaths, TheFontsAndTheirListAreInTheImage)
{
    for (const char* file :
         {"NotoSans-Regular.ttf", "NotoSans-SemiBold.ttf", "NotoSansCJK-Regular.ttc", "fonts.conf"})
        expectInImage(QString("/phone/resource/fonts/") + file, "the look");
}

TEST(ThemePaths, AFactoryResetFindsTheSameDataThatANewPhoneHas)
{
    const QString pristine = imagePath("/phone/factory/rundata");
    int files = 0;
    for (const SourceFile& file : sourceFiles({"rootfs/factory"}, {""})) {
        const QString path = file.path.mid(int(qstrlen("rootfs/factory")));
        EXPECT_EQ(readText(pristine + path).toStdString(), file.text.toStdString()) << qPrintable(path);
        EXPECT_TRUE(QFileInfo(imagePath("/rundata" + path)).isFile()) << qPrintable(path);
        ++files;
    }
    EXPECT_GT(files, 10);
}
