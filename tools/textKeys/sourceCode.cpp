#include "tools/textKeys/sourceCode.h"
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>

namespace {

const char* const LiteralRun = R"re("(?:[^"\\\n]|\\.)*"(?:\s*"(?:[^"\\\n]|\\.)*")*)re";

// Walks the code once; keepText tells whether the insides of literals stay.
QString blanked(const QString& code, bool keepText)
{
    QString out = code;
    auto blank = [&out](qsizetype from, qsizetype to) {
        for (qsizetype i = from; i < to && i < out.size(); ++i) {
            if (out[i] != '\n')
                out[i] = ' ';
        }
    };
    for (qsizetype i = 0; i < code.size();) {
        qsizetype end = i + 1;
        if (code.mid(i, 2) == "//") {
            end = code.indexOf('\n', i);
            end = end < 0 ? code.size() : end;
            blank(i, end);
        } else if (code.mid(i, 2) == "/*") {
            end = code.indexOf("*/", i + 2);
            end = end < 0 ? code.size() : end + 2;
            blank(i, end);
        } else if (code.mid(i, 3) == "R\"(") {
            end = code.indexOf(")\"", i + 3);
            end = end < 0 ? code.size() : end + 2;
            if (!keepText)
                blank(i + 3, end - 2);
        } else if (code[i] == '"' || (code[i] == '\'' && !(i > 0 && code[i - 1].isLetterOrNumber()))) {
            while (end < code.size() && code[end] != code[i] && code[end] != '\n')
                end += code[end] == '\\' ? 2 : 1;
            if (!keepText)
                blank(i + 1, end);
            ++end;
        }
        i = end;
    }
    return out;
}

QString resolved(const QString& run)
{
    static const QRegularExpression one(R"re("((?:[^"\\\n]|\\.)*)")re");
    QString text;
    for (auto it = one.globalMatch(run); it.hasNext();)
        text += it.next().captured(1);
    QString out;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const QChar escape = text[++i];
        out += escape == 'n' ? QChar('\n') : escape == 't' ? QChar('\t') : escape;
    }
    return out;
}

} // namespace

QString SourceFile::folder() const
{
    return path.section('/', 0, -2);
}

QString SourceFile::baseName() const
{
    return QFileInfo(path).completeBaseName();
}

QString readText(const QString& file)
{
    QFile input(file);
    return input.open(QIODevice::ReadOnly) ? QString::fromUtf8(input.readAll()) : QString();
}

QVector<SourceFile> sourceFiles(const QString& root, const QStringList& folders, const QStringList& suffixes)
{
    QStringList paths;
    for (const QString& folder : folders) {
        for (QDirIterator it(root + "/" + folder, QDir::Files, QDirIterator::Subdirectories); it.hasNext();) {
            const QString path = it.next().mid(root.size() + 1);
            if (std::any_of(suffixes.begin(), suffixes.end(),
                            [&](const QString& suffix) { return path.endsWith(suffix); }))
                paths.append(path);
        }
    }
    paths.sort();
    QVector<SourceFile> files;
    for (const QString& path : paths)
        files.append({path, readText(root + "/" + path)});
    return files;
}

QStringList moduleRooms()
{
    return {"frame", "settings", "media", "signage", "applets", "calibration"};
}

QStringList phoneRooms()
{
    return moduleRooms() + QStringList{"support", "host", "players", "sip"};
}

QString withoutComments(const QString& code)
{
    return blanked(code, true);
}

QString bareCode(const QString& code)
{
    return blanked(code, false);
}

QStringList stringLiterals(const QString& code)
{
    static const QRegularExpression run(LiteralRun);
    const QString clean = withoutComments(code);
    QStringList literals;
    for (auto it = run.globalMatch(clean); it.hasNext();)
        literals.append(resolved(it.next().captured()));
    return literals;
}

QVector<QStringList> literalCalls(const QString& code, const QStringList& callees)
{
    const QRegularExpression call("\\b(?:" + callees.join('|') + ")\\s*\\(\\s*(" + LiteralRun +
                                  ")\\s*(?:,\\s*(" + LiteralRun + ")\\s*)?\\)");
    const QString clean = withoutComments(code);
    QVector<QStringList> calls;
    for (auto it = call.globalMatch(clean); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        calls.append({resolved(match.captured(1))});
        if (match.hasCaptured(2))
            calls.last().append(resolved(match.captured(2)));
    }
    return calls;
}
