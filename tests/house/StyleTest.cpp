// The tree looks as the formatter makes it, so that no change carries another's white space.
#include "tests/house/sourceTree.h"
#include <QDir>
#include <QProcess>
#include <QThread>
#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace {

QStringList formattedFiles()
{
    QStringList paths;
    const QStringList folders = phoneRooms() + QStringList{"registrar", "tools", "tests", "bench", "fuzz"};
    for (const SourceFile& file : sourceFiles(folders, {".cpp", ".h"}))
        paths.append(file.path);
    return paths;
}

// Every n-th of the files, from the first one on: alike work for each process.
QStringList shareOf(const QStringList& all, int first, int n)
{
    QStringList share;
    for (int i = first; i < all.size(); i += n)
        share.append(all[i]);
    return share;
}

// What the formatter would change, a line for each place; it reads the tree's own rules.
QByteArray complaints(const QStringList& files)
{
    const int count = std::max(1, QThread::idealThreadCount());
    std::vector<std::unique_ptr<QProcess>> formatters;
    for (int i = 0; i < count; ++i) {
        auto formatter = std::make_unique<QProcess>();
        formatter->setWorkingDirectory(sourcePath(""));
        formatter->setProcessChannelMode(QProcess::MergedChannels);
        formatter->start("clang-format",
                         QStringList{"--dry-run", "--Werror", "--style=file"} + shareOf(files, i, count));
        formatters.push_back(std::move(formatter));
    }
    QByteArray said;
    for (const auto& formatter : formatters) {
        EXPECT_TRUE(formatter->waitForFinished(120000)) << qPrintable(formatter->errorString());
        said += formatter->readAll();
        if (formatter->exitCode() != 0)
            said += "clang-format -i FILE puts it right\n";
    }
    return said;
}

} // namespace

TEST(Style, EveryFileIsAsTheFormatterMakesIt)
{
    const QStringList files = formattedFiles();
    EXPECT_GT(files.size(), 500);
    const QByteArray said = complaints(files);
    EXPECT_TRUE(said.isEmpty()) << said.constData();
}
