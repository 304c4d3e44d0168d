#pragma once
// What the house rules are read from: the files of the source tree and of the built device image.
#include <QString>
#include <QStringList>
#include <QVector>

struct SourceFile
{
    QString path; // from the root of the source tree
    QString text;

    QString folder() const;   // "settings/system"
    QString baseName() const; // "dlgWan"
};

// The files below the folders that end in one of the suffixes (".cpp"), in the order of their paths.
QVector<SourceFile> sourceFiles(const QStringList& folders, const QStringList& suffixes);
// All rooms that run on the phone: the library, the module, the host and the players.
QStringList phoneRooms();
QStringList moduleRooms();

struct Include
{
    QString path; // from the root of the source tree
    int line;
};

// What the file includes of this tree; what the build makes ("ui_dlgWan.h") is left out.
QVector<Include> includesOf(const SourceFile& file);

// The code with its comments blanked out; line numbers stay.
QString withoutComments(const QString& code);
// The code with comments and the insides of literals blanked out.
QString bareCode(const QString& code);
// Every string literal of the code, escapes resolved, literals that stand side by side joined.
QStringList stringLiterals(const QString& code);
// The literal arguments of calls such as Translate("Save"); arguments that are no literals are left out.
QStringList literalArguments(const QString& code, const QStringList& callees);

QString sourcePath(const QString& path);
// Where a device path lies in the built image.
QString imagePath(const QString& devicePath);
QString readText(const QString& file);
