// The documents name what there is.
#include "tests/house/sourceTree.h"
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

namespace {

// Every `word` in backquotes of the document that the pattern matches whole.
QStringList quoted(const QString& document, const QString& pattern)
{
    const QRegularExpression word("`(" + pattern + ")`");
    QStringList words;
    for (auto it = word.globalMatch(readText(sourcePath(document))); it.hasNext();)
        words.append(it.next().captured(1));
    return words;
}

QStringList documents()
{
    QStringList paths = {"README.md"};
    for (const QString& name : QDir(sourcePath("docs")).entryList({"*.md"}))
        paths.append("docs/" + name);
    return paths;
}

} // namespace

TEST(Docs, PortingListsEveryHeaderOfTheContractOnce)
{
    QStringList listed;
    const QString text = readText(sourcePath("docs/porting.md"));
    for (const QString& line : text.section("## What to provide", 1).section("\n## ", 0, 0).split('\n')) {
        static const QRegularExpression header("`(\\w+\\.h)`");
        for (auto it = header.globalMatch(line.section('|', 2, 2)); it.hasNext();)
            listed.append(it.next().captured(1));
    }
    listed.sort();
    EXPECT_EQ(
        listed.join(" ").toStdString(),
        QDir(sourcePath("support/host")).entryList({"*.h"}, QDir::Files, QDir::Name).join(" ").toStdString());
}

TEST(Docs, ArchitectureHasARowForEveryRoomOfTheHost)
{
    const QString text = readText(sourcePath("docs/architecture.md"));
    const QString table = text.section("The rooms of the reference host:", 1).section("\n## ", 0, 0);
    QSet<QString> rooms;
    for (const SourceFile& file : sourceFiles({"host"}, {".h", ".cpp"}))
        rooms.insert(file.folder().section('/', -1));
    rooms.remove("host");
    EXPECT_GT(rooms.size(), 10);
    for (const QString& room : rooms)
        EXPECT_TRUE(QRegularExpression("`[^`]*\\b" + room + "`").match(table).hasMatch()) << qPrintable(room);
}

// A class is named without the suffix of its files.
TEST(Docs, EveryPathThatADocumentNamesIsThere)
{
    for (const QString& document : documents()) {
        const QString folders = "(?:docs|support|frame|settings|media|signage|players|sip|registrar|host|"
                                "tools|rootfs|tests|bench|fuzz)";
        for (const QString& path : quoted(document, folders + "/[\\w/.-]*"))
            EXPECT_TRUE(QFileInfo::exists(sourcePath(path)) || QFileInfo::exists(sourcePath(path + ".h")))
                << qPrintable(document) << " names " << qPrintable(path);
    }
}

TEST(Docs, EveryDocumentIsReachedFromTheReadme)
{
    const QString readme = readText(sourcePath("README.md"));
    for (const QString& document : documents().mid(1))
        EXPECT_TRUE(readme.contains("](" + document + ")")) << qPrintable(document);
}
