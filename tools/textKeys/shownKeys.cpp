#include "tools/textKeys/shownKeys.h"
#include "tools/textKeys/sourceCode.h"
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace {

bool isWords(const QString& text)
{
    static const QRegularExpression letter("[A-Za-z]");
    return text.contains(letter);
}

void addKey(ShownKeys& keys, const ShownKey& key, const QString& file)
{
    if (isWords(key.key))
        keys.insert(key, file);
}

void addCodeKeys(const QString& root, ShownKeys& keys)
{
    const QStringList calls = {"Translate", "qTranslate", "HX_TR", "HX_TR_NOTE"};
    for (const SourceFile& file : sourceFiles(root, phoneRooms(), {".cpp", ".h"})) {
        for (const QStringList& texts : literalCalls(file.text, calls))
            addKey(keys, {texts.first(), texts.value(1)}, file.path);
    }
}

void addFormKeys(const QString& root, ShownKeys& keys)
{
    for (const SourceFile& file : sourceFiles(root, phoneRooms(), {".ui"})) {
        QXmlStreamReader xml(file.text);
        QString property;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            if (xml.name() == QLatin1String("property"))
                property = xml.attributes().value("name").toString();
            else if (xml.name() == QLatin1String("string") && property != "styleSheet")
                addKey(keys, {xml.readElementText(), QString()}, file.path);
        }
    }
}

// Titles of the menus, but for the names that the user gave to pictures.
void addMenuKeys(const QString& root, ShownKeys& keys)
{
    for (const SourceFile& file : sourceFiles(root, {"rootfs/menus", "rootfs/factory/data"}, {".xml"})) {
        if (file.path.endsWith("picture-dial.xml"))
            continue;
        QXmlStreamReader xml(file.text);
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement && xml.attributes().hasAttribute("title"))
                addKey(keys, {xml.attributes().value("title").toString(), QString()}, file.path);
        }
    }
}

} // namespace

ShownKeys shownKeys(const QString& root)
{
    ShownKeys keys;
    addCodeKeys(root, keys);
    addFormKeys(root, keys);
    addMenuKeys(root, keys);
    return keys;
}
