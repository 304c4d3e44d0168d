#pragma once
// A language file of the phone: the texts of one language, by their English keys.
#include "tools/textKeys/shownKeys.h"
#include <QVector>

struct LanguageEntry
{
    QString key;
    QString note;
    QString text;
    bool isFinished = false;
    QString context;
};

// The entries in their order. error: what is wrong with the file; empty when it is good.
QVector<LanguageEntry> languageEntries(const QString& file, QString& error);
// The file with an unfinished entry for each key that it lacks, after all others; every other character
// stays. Empty when the file has no place for entries.
QString withMissingKeys(const QString& file, const ShownKeys& keys);
