// Every text that the phone shows is in every language, and fits where it is shown.
#include "tests/house/sourceTree.h"
#include <QFontDatabase>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTranslator>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

namespace {

struct Language
{
    const char* code;
    const char* name;
};

const Language Languages[] = {{"zh", "Chinese"}, {"de", "German"}, {"fr", "French"}, {"es", "Spanish"}};

struct Entry
{
    QString key;
    QString text;
    bool finished;
    QString context;
};

QVector<Entry> entriesOf(const Language& language)
{
    QVector<Entry> entries;
    QString context;
    QXmlStreamReader xml(readText(sourcePath(QString("rootfs/language/hx_%1.ts").arg(language.code))));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            entries.append({xml.readElementText(), QString(), false, context});
        } else if (xml.name() == QLatin1String("translation")) {
            entries.last().finished = !xml.attributes().hasAttribute("type");
            entries.last().text = xml.readElementText();
        }
    }
    EXPECT_FALSE(xml.hasError()) << language.code << ": " << qPrintable(xml.errorString());
    return entries;
}

QMap<QString, QString> finishedTexts(const Language& language)
{
    QMap<QString, QString> texts;
    for (const Entry& entry : entriesOf(language)) {
        if (entry.finished && !entry.text.isEmpty())
            texts[entry.key] = entry.text;
    }
    return texts;
}

bool isWords(const QString& text)
{
    static const QRegularExpression letter("[A-Za-z]");
    return text.contains(letter);
}

using Keys = QMap<QString, QString>; // key -> a file that shows it

void addCodeKeys(Keys& keys)
{
    for (const SourceFile& file : sourceFiles(phoneRooms(), {".cpp", ".h"})) {
        for (const QString& key : literalArguments(file.text, {"Translate", "qTranslate", "HX_TR"})) {
            if (isWords(key))
                keys.insert(key, file.path);
        }
    }
}

void addFormKeys(Keys& keys)
{
    for (const SourceFile& file : sourceFiles(phoneRooms(), {".ui"})) {
        QXmlStreamReader xml(file.text);
        QString property;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            if (xml.name() == QLatin1String("property"))
                property = xml.attributes().value("name").toString();
            else if (xml.name() == QLatin1String("string") && property != "styleSheet") {
                const QString key = xml.readElementText();
                if (isWords(key))
                    keys.insert(key, file.path);
            }
        }
    }
}

void addMenuKeys(Keys& keys)
{
    for (const SourceFile& file : sourceFiles({"rootfs/menus", "rootfs/factory/data"}, {".xml"})) {
        if (file.path.endsWith("picture-dial.xml"))
            continue; // names that the user gave
        QXmlStreamReader xml(file.text);
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement && xml.attributes().hasAttribute("title"))
                keys.insert(xml.attributes().value("title").toString(), file.path);
        }
    }
}

Keys shownKeys()
{
    Keys keys;
    addCodeKeys(keys);
    addFormKeys(keys);
    addMenuKeys(keys);
    return keys;
}

// Numbered places may change their order, the others not.
QStringList formatsIn(const QString& text)
{
    static const QRegularExpression format("%[-0-9.]*[a-zA-Z]|%[0-9]");
    QStringList formats;
    QStringList numbered;
    for (auto it = format.globalMatch(text); it.hasNext();) {
        const QString found = it.next().captured();
        (found.back().isDigit() ? numbered : formats).append(found);
    }
    numbered.sort();
    return formats + numbered;
}

// Texts whose place is narrow: what it measures, in pixels.
struct Place
{
    const char* name;
    int pixels; // font size
    int weight;
    int width;
    QStringList keys;
};

QVector<Place> narrowPlaces()
{
    QStringList captions;
    for (const SourceFile& file : sourceFiles({"rootfs/menus"}, {".xml"})) {
        static const QRegularExpression item("<item title=\"([^\"]*)\"");
        for (auto it = item.globalMatch(file.text); it.hasNext();)
            captions.append(it.next().captured(1).replace("&amp;", "&"));
    }
    return {{"menu caption", 17, QFont::Normal, 158, captions},
            {"soft key",
             18,
             QFont::DemiBold,
             190,
             {"Save", "IME", "Delete", "Back", "More", "Next", "Version Detail", "Edit", "Call", "New",
              "Clear", "Search", "Reload", "Previous", "Mute", "Unmute", "Volume -", "Volume +", "End"}},
            {"network label",
             18,
             QFont::Normal,
             165,
             {"User Name", "Password", "IP Address", "MASK", "Gateway", "DNS1", "DNS2"}},
            {"account label",
             16,
             QFont::Normal,
             132,
             {"Display Name", "Register Name", "User Name", "Password", "Server", "Port"}},
            {"account server label", 16, QFont::Normal, 86, {"Server", "Port"}},
            {"account check box", 16, QFont::Normal, 145, {"Enable Line", "Enable STUN", "Enable OutBound"}},
            {"box button", 18, QFont::DemiBold, 100, {"Yes", "No", "OK", "Cancel"}}};
}

} // namespace

TEST(Translations, EveryShownTextIsFinishedInEveryLanguage)
{
    const Keys keys = shownKeys();
    EXPECT_GT(keys.size(), 40);
    QMap<QString, QString> missing; // key -> the languages that lack it
    for (const Language& language : Languages) {
        const QMap<QString, QString> texts = finishedTexts(language);
        for (auto key = keys.begin(); key != keys.end(); ++key) {
            if (!texts.contains(key.key()))
                missing[key.key()] += QString(" ") + language.code;
        }
    }
    QString list;
    for (auto key = missing.begin(); key != missing.end(); ++key)
        list += "  " + key.key() + "  [" + keys[key.key()] + ", lacking:" + key.value() + "]\n";
    EXPECT_TRUE(missing.isEmpty()) << "texts without a translation:\n" << qPrintable(list);
}

TEST(Translations, AllTextsAreInTheOneContextAndThereOnce)
{
    for (const Language& language : Languages) {
        QSet<QString> seen;
        for (const Entry& entry : entriesOf(language)) {
            EXPECT_EQ(entry.context.toStdString(), "hx") << qPrintable(entry.key);
            EXPECT_TRUE(entry.finished) << language.code << ": " << qPrintable(entry.key);
            EXPECT_FALSE(seen.contains(entry.key)) << language.code << ": " << qPrintable(entry.key);
            seen.insert(entry.key);
        }
    }
}

TEST(Translations, ATextKeepsTheFormatsOfItsKey)
{
    for (const Language& language : Languages) {
        const QMap<QString, QString> texts = finishedTexts(language);
        for (auto text = texts.begin(); text != texts.end(); ++text)
            EXPECT_EQ(formatsIn(text.value()), formatsIn(text.key()))
                << language.code << ": " << qPrintable(text.key());
    }
}

TEST(Translations, TheCompiledLanguagesAnswerWithTheirTexts)
{
    for (const Language& language : Languages) {
        QTranslator translator;
        const QString file = QString("/phone/resource/language/%1.qm").arg(language.name);
        ASSERT_TRUE(translator.load(imagePath(file))) << qPrintable(file);
        const QMap<QString, QString> texts = finishedTexts(language);
        EXPECT_GT(texts.size(), 100);
        for (auto text = texts.begin(); text != texts.end(); ++text) {
            EXPECT_EQ(translator.translate("hx", text.key().toUtf8()).toStdString(),
                      text.value().toStdString())
                << language.code;
        }
    }
}

TEST(Translations, EveryLanguageOfThePhoneHasACode)
{
    const QString codes = readText(imagePath("/phone/resource/LanguageCode.ini"));
    EXPECT_TRUE(codes.contains("English=en\n"));
    for (const Language& language : Languages)
        EXPECT_TRUE(codes.contains(QString("%1=%2\n").arg(language.name, language.code))) << language.name;
}

TEST(Translations, TextsOfNarrowPlacesFitInEveryLanguage)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("FONTCONFIG_FILE", imagePath("/phone/resource/fonts/fonts.conf").toUtf8());
    int count = 1;
    char name[] = "test_house";
    char* arguments[] = {name, nullptr};
    QGuiApplication application(count, arguments);
    ASSERT_TRUE(QFontDatabase::families().contains("Noto Sans"));

    for (const Place& place : narrowPlaces()) {
        QFont font("Noto Sans", -1, place.weight);
        font.setPixelSize(place.pixels);
        const QFontMetrics metrics(font);
        for (const Language& language : Languages) {
            const QMap<QString, QString> texts = finishedTexts(language);
            for (const QString& key : place.keys) {
                EXPECT_LE(metrics.horizontalAdvance(texts.value(key, key)), place.width)
                    << place.name << " in " << language.name << ": " << qPrintable(texts.value(key, key));
            }
        }
    }
}
