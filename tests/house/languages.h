#pragma once
// The languages of the phone and their files.
#include "tools/textKeys/languageFile.h"

struct Language
{
    const char* code;
    const char* name;
};

// All but that of the keys, in the order of the glossary's columns.
inline constexpr Language Languages[] = {
    {"de", "German"}, {"fr", "French"}, {"es", "Spanish"}, {"zh", "Chinese"}};

// A failure of the test when the file is broken.
QVector<LanguageEntry> entriesOf(const Language& language);
