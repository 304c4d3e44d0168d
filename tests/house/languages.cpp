#include "tests/house/languages.h"
#include "tests/house/sourceTree.h"
#include <gtest/gtest.h>

QVector<LanguageEntry> entriesOf(const Language& language)
{
    QString error;
    const QString file = readText(sourcePath(QString("rootfs/language/hx_%1.ts").arg(language.code)));
    const QVector<LanguageEntry> entries = languageEntries(file, error);
    EXPECT_FALSE(entries.isEmpty()) << language.code;
    EXPECT_TRUE(error.isEmpty()) << language.code << ": " << qPrintable(error);
    return entries;
}
