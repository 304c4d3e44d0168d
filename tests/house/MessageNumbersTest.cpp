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
