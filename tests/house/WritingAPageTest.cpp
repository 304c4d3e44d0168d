// docs/writing-a-page.md prints code that is built and tested, and as little of it as it promises.
#include "tests/house/sourceTree.h"
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

QStringList printedCode()
{
    static const QRegularExpression block("```cpp\\n(.*?)```",
                                          QRegularExpression::DotMatchesEverythingOption);
    QStringList blocks;
    QRegularExpressionMatchIterator found = block.globalMatch(readText(sourcePath("docs/writing-a-page.md")));
    while (found.hasNext())
        blocks.append(found.next().captured(1));
    return blocks;
}

// Lines that say something: neither blank nor a comment.
int linesOf(const QString& path)
{
    int lines = 0;
    for (const QString& line : withoutComments(readText(sourcePath(path))).split('\n'))
        lines += !line.trimmed().isEmpty();
    EXPECT_GT(lines, 0) << qPrintable(path);
    return lines;
}

} // namespace

TEST(WritingAPage, WhatIsPrintedIsCodeThatIsBuilt)
{
    const QVector<SourceFile> built = sourceFiles({"tests/frame"}, {".cpp", ".h"});
    const QStringList blocks = printedCode();
    EXPECT_GE(blocks.size(), 8);
    for (const QString& block : blocks) {
        bool isBuilt = false;
        for (const SourceFile& file : built)
            isBuilt = isBuilt || file.text.contains(block);
        EXPECT_TRUE(isBuilt) << "in no file of tests/frame:\n" << qPrintable(block);
    }
}

TEST(WritingAPage, APageIsSixtyLinesAndTheFirstOfARoomAHundred)
{
    const int page = linesOf("tests/frame/example/dlgProxy.h") + linesOf("tests/frame/example/dlgProxy.cpp");
    EXPECT_LE(page, 60);
    const int room =
        linesOf("tests/frame/example/examplePages.h") + linesOf("tests/frame/example/examplePages.cpp");
    EXPECT_LE(page + room, 100);
}
