// The precompiled headers hide what a file forgot to include, until a build without them stops there. So for
// each class that is precompiled: who needs more of it than its name includes its header, or something of
// ours that does.
#include "tests/house/sourceTree.h"
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

namespace {

// Every header of the toolkit's brings these.
const QStringList Everywhere = {"QByteArray", "QList", "QString"};
// What the header that is made of a form brings.
const QStringList OfForms = {"QApplication", "QComboBox",    "QLabel",      "QLineEdit",
                             "QPushButton",  "QTableWidget", "QVBoxLayout", "QDialog"};

QStringList precompiledClasses()
{
    static const QRegularExpression header("<(Q[A-Z]\\w+)>");
    QStringList classes = {"QCoreApplication"};
    for (const char* file : {"CMakeLists.txt", "tests/CMakeLists.txt"}) {
        for (auto it = header.globalMatch(readText(sourcePath(file))); it.hasNext();)
            classes.append(it.next().captured(1));
    }
    classes.removeDuplicates();
    for (const QString& name : Everywhere)
        classes.removeAll(name);
    return classes;
}

QStringList quotedIncludes(const QString& text)
{
    static const QRegularExpression include("^\\s*#\\s*include\\s*\"([^\"]+)\"",
                                            QRegularExpression::MultilineOption);
    QStringList paths;
    for (auto it = include.globalMatch(text); it.hasNext();)
        paths.append(it.next().captured(1));
    return paths;
}

class Reach
{
public:
    explicit Reach(const QVector<SourceFile>& files)
    {
        for (const SourceFile& file : files)
            m_texts[file.path] = file.text;
    }
    // Headers of the toolkit that the file includes, or a file of ours that it includes.
    QSet<QString> toolkitHeaders(const QString& path) const
    {
        static const QRegularExpression header("^\\s*#\\s*include\\s*<(Q\\w+)>",
                                               QRegularExpression::MultilineOption);
        QSet<QString> headers, seen;
        QStringList open = {path};
        while (!open.isEmpty()) {
            const QString next = open.takeLast();
            if (next.startsWith("ui_"))
                headers.unite(QSet<QString>(OfForms.begin(), OfForms.end()));
            if (seen.contains(next) || !m_texts.contains(next))
                continue;
            seen.insert(next);
            open += quotedIncludes(m_texts[next]);
            for (auto it = header.globalMatch(m_texts[next]); it.hasNext();)
                headers.insert(it.next().captured(1));
        }
        if (headers.contains("QApplication") || headers.contains("QGuiApplication"))
            headers.insert("QCoreApplication");
        return headers;
    }

private:
    QHash<QString, QString> m_texts;
};

// Makes one, or asks the class itself.
bool needs(const QString& code, const QString& name)
{
    if (!code.contains(name))
        return false;
    const QRegularExpression use(QString("\\bnew %1\\b|\\b%1::|^\\s*(?:const )?%1 \\w+[;({]").arg(name),
                                 QRegularExpression::MultilineOption);
    return use.match(code).hasMatch();
}

} // namespace

TEST(ToolkitIncludes, WhatIsPrecompiledIsIncludedByWhoNeedsIt)
{
    const QVector<SourceFile> files =
        sourceFiles(phoneRooms() + QStringList{"tests", "bench", "fuzz"}, {".cpp", ".h"});
    const Reach reach(files);
    const QStringList classes = precompiledClasses();
    EXPECT_GT(classes.size(), 15);
    for (const SourceFile& file : files) {
        const QString code = bareCode(file.text);
        const QSet<QString> headers = reach.toolkitHeaders(file.path);
        for (const QString& name : classes)
            EXPECT_TRUE(headers.contains(name) || !needs(code, name))
                << qPrintable(file.path) << " does not include <" << qPrintable(name) << ">";
    }
}
