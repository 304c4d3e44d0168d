#pragma once
// What the house rules are read from: the files of the source tree and of the built device image.
#include "tools/textKeys/sourceCode.h"

// Of this source tree.
QVector<SourceFile> sourceFiles(const QStringList& folders, const QStringList& suffixes);

struct Include
{
    QString path; // from the root of the source tree
    int line;
    bool isPlain = true; // written as that path, in quotes
};

// What the file includes of this tree, however that is spelled; what the build makes ("ui_dlgWan.h") is left
// out.
QVector<Include> includesOf(const SourceFile& file);

QString sourcePath(const QString& path);
// Where a device path lies in the built image.
QString imagePath(const QString& devicePath);
