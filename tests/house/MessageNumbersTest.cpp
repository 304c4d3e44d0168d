// Two messages of one number are taken for each other, and no compiler sees that two have chosen the same.
#include "tests/house/sourceTree.h"
#include <QMap>
#include <QRegularExpression>
#include <gtest/gtest.h>

TEST(MessageNumbers, NoTwoOfTheSystemsProgramsAreAlike)
{
    static const QRegularExpression message("\\b(\\w+_MSG_\\w+)\\s*=\\s*(0x[0-9A-Fa-f]+)");
    int nMessages = 0;
    for (const SourceFile& file : sourceFiles({"support/host"}, {".h"})) {
        QMap<uint, QString> names;
        for (auto it = message.globalMatch(file.text); it.hasNext(); ++nMessages) {
            const QRegularExpressionMatch found = it.next();
            const uint number = found.captured(2).toUInt(nullptr, 16);
            EXPECT_FALSE(names.contains(number))
                << qPrintable(file.path + ": " + found.captured(1) + " and " + names[number]);
            names[number] = found.captured(1);
        }
    }
    EXPECT_GT(nMessages, 40);
}

TEST(MessageNumbers, NoTwoRecordsOfTheUserAgentAreAlike)
{
    static const QRegularExpression kinds("enum SIP_RECORD[^{]*\\{([^}]*)\\}");
    static const QRegularExpression record("\\b(SIP_\\w+) = (\\d+)");
    const QString all = kinds.match(readText(sourcePath("sip/sipRecords.h"))).captured(1);
    QMap<QString, QString> names;
    for (auto it = record.globalMatch(all); it.hasNext();) {
        const QRegularExpressionMatch found = it.next();
        EXPECT_FALSE(names.contains(found.captured(2)))
            << qPrintable(found.captured(1) + " and " + names[found.captured(2)]);
        names[found.captured(2)] = found.captured(1);
    }
    EXPECT_GT(names.size(), 30);
}
