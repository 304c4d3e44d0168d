// Every text that the phone shows is in every language.
#include "tests/house/languages.h"
#include "tests/house/sourceTree.h"
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTranslator>
#include <gtest/gtest.h>

namespace {

QMap<ShownKey, QString> finishedTexts(const Language& language)
{
    QMap<ShownKey, QString> texts;
    for (const LanguageEntry& entry : entriesOf(language)) {
        if (entry.isFinished && !entry.text.isEmpty())
            texts[{entry.key, entry.note}] = entry.text;
    }
    return texts;
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

} // namespace

TEST(Translations, EveryShownTextIsFinishedInEveryLanguage)
{
    const ShownKeys keys = shownKeys(sourcePath("."));
    EXPECT_GT(keys.size(), 150);
    QMap<ShownKey, QString> missing; // key -> the languages that lack it
    for (const Language& language : Languages) {
        const QMap<ShownKey, QString> texts = finishedTexts(language);
        for (auto key = keys.begin(); key != keys.end(); ++key) {
            if (!texts.contains(key.key()))
                missing[key.key()] += QString(" ") + language.code;
        }
    }
    QString list;
    for (auto key = missing.begin(); key != missing.end(); ++key)
        list += "  " + key.key().key + "  [" + keys[key.key()] + ", lacking:" + key.value() + "]\n";
    EXPECT_TRUE(missing.isEmpty()) << "texts without a translation (\"ninja texts\" makes room for them):\n"
                                   << qPrintable(list);
}

TEST(Translations, AllTextsAreInTheOneContextAndThereOnce)
{
    for (const Language& language : Languages) {
        QMap<ShownKey, int> times;
        for (const LanguageEntry& entry : entriesOf(language)) {
            EXPECT_EQ(entry.context.toStdString(), "hx") << qPrintable(entry.key);
            EXPECT_TRUE(entry.isFinished) << language.code << ": " << qPrintable(entry.key);
            const ShownKey key{entry.key, entry.note};
            EXPECT_EQ(++times[key], 1) << language.code << ": " << qPrintable(entry.key);
        }
    }
}

TEST(Translations, ATextKeepsTheFormatsOfItsKey)
{
    for (const Language& language : Languages) {
        const QMap<ShownKey, QString> texts = finishedTexts(language);
        for (auto text = texts.begin(); text != texts.end(); ++text)
            EXPECT_EQ(formatsIn(text.value()), formatsIn(text.key().key))
                << language.code << ": " << qPrintable(text.key().key);
    }
}

TEST(Translations, TheCompiledLanguagesAnswerWithTheirTexts)
{
    for (const Language& language : Languages) {
        QTranslator translator;
        const QString file = QString("/phone/resource/language/%1.qm").arg(language.name);
        ASSERT_TRUE(translator.load(imagePath(file))) << qPrintable(file);
        const QMap<ShownKey, QString> texts = finishedTexts(language);
        EXPECT_GT(texts.size(), 100);
        for (auto text = texts.begin(); text != texts.end(); ++text) {
            EXPECT_EQ(
                translator.translate("hx", text.key().key.toUtf8(), text.key().note.toUtf8()).toStdString(),
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
