#include "tools/textKeys/languageFile.h"
#include <QXmlStreamReader>

namespace {

const char* const kEnd = "</context>";

QString entryOf(const ShownKey& key)
{
    QString entry = "    <message>\n        <source>" + key.key.toHtmlEscaped() + "</source>\n";
    if (!key.note.isEmpty())
        entry += "        <comment>" + key.note.toHtmlEscaped() + "</comment>\n";
    return entry + "        <translation type=\"unfinished\"></translation>\n    </message>\n";
}

} // namespace

QVector<LanguageEntry> languageEntries(const QString& file, QString& error)
{
    QVector<LanguageEntry> entries;
    QString context;
    QXmlStreamReader xml(file);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("message")) {
            entries.append(LanguageEntry());
            entries.last().context = context;
        } else if (!entries.isEmpty() && xml.name() == QLatin1String("source")) {
            entries.last().key = xml.readElementText();
        } else if (!entries.isEmpty() && xml.name() == QLatin1String("comment")) {
            entries.last().note = xml.readElementText();
        } else if (!entries.isEmpty() && xml.name() == QLatin1String("translation")) {
            entries.last().isFinished = !xml.attributes().hasAttribute("type");
            entries.last().text = xml.readElementText();
        }
    }
    error = xml.hasError() ? xml.errorString() : QString();
    return entries;
}

QString withMissingKeys(const QString& file, const ShownKeys& keys)
{
    QString error;
    ShownKeys missing = keys;
    for (const LanguageEntry& entry : languageEntries(file, error))
        missing.remove({entry.key, entry.note});
    const qsizetype end = file.lastIndexOf(kEnd);
    if (!error.isEmpty() || end < 0)
        return QString();
    QString entries;
    for (auto key = missing.begin(); key != missing.end(); ++key)
        entries += entryOf(key.key());
    return QString(file).insert(end, entries);
}
