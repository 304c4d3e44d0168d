#pragma once
// The files of a source tree, and the texts that stand in their code.
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

// The files below folders of root that end in one of the suffixes (".cpp"), in the order of their paths.
QVector<SourceFile> sourceFiles(const QString& root, const QStringList& folders, const QStringList& suffixes);
// All rooms that run on the phone: the library, the module, the host and the players.
QStringList phoneRooms();
QStringList moduleRooms();
QString readText(const QString& file);

// The code with its comments blanked out; line numbers stay.
QString withoutComments(const QString& code);
// The code with comments and the insides of literals blanked out.
QString bareCode(const QString& code);
// Every string literal of the code, escapes resolved, literals that stand side by side joined.
QStringList stringLiterals(const QString& code);
// The arguments of calls with one or two literals, as Translate("Save"); other calls are left out.
QVector<QStringList> literalCalls(const QString& code, const QStringList& callees);
