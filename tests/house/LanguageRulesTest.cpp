// What a person who reads one of the languages expects of it: its punctuation, and one word for one thing.
#include "tests/house/languages.h"
#include "tests/house/sourceTree.h"
#include <QMap>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

struct Rule
{
    const char* language; // code, or null for all
    const char* wrong;    // a pattern that no text has
    const char* says;
};

const Rule Rules[] = {
    {nullptr, R"(^\s|\s$|  )", "no space at an end, none twice"},
    {nullptr, R"(\.\.)", "an ellipsis is one character"},
    {nullptr, R"(['`´"])", "one kind of apostrophe, ’"},
    {"de", R"((?<!\x{00a0})…)", "a no-break space before an ellipsis"},
    {"de", R"(\ben Sie\b|\bBitte \w+en Sie\b|^\w+en Sie\b)", "infinitives instead of orders"},
    {"de", R"(^(?!Der |Die |Das |Diese|Es |DNS\d).*\b(ist|sind|kann|können|fehlt|beginnt)\b)",
     "a sentence begins with an article"},
    {"fr", R"((?<!\x{202f})[!?;:](?=\s|$))", "a narrow no-break space before ! ? : ;"},
    {"fr", R"(\x{202f}(?![!?;:]))", "a narrow no-break space only before a mark"},
    {"es", R"(^[^¡]*!|^[^¿]*\?)", "opening marks"},
    {"es", R"(^[^!]*¡[^!]*$|^[^?]*¿[^?]*$)", "an opening mark is closed"},
    {"zh", R"([!?;:,])", "full-width marks"},
    {"zh", R"((?<!…)…(?!…)|\.$)", "an ellipsis has six points, a full stop is 。"},
    {"zh", R"(\p{Han}[A-Za-z]|[A-Za-z]\p{Han})", "a space between Latin words and Chinese"},
};

QRegularExpression pattern(const QString& text)
{
    QRegularExpression expression(text, QRegularExpression::UseUnicodePropertiesOption |
                                            QRegularExpression::CaseInsensitiveOption);
    EXPECT_TRUE(expression.isValid()) << qPrintable(text);
    return expression;
}

// The rules that a text breaks.
std::string broken(const QString& language, const QString& text)
{
    std::string all;
    for (const Rule& rule : Rules) {
        if ((!rule.language || language == rule.language) &&
            QRegularExpression(rule.wrong, QRegularExpression::UseUnicodePropertiesOption)
                .match(text)
                .hasMatch())
            all += std::string(all.empty() ? "" : "; ") + rule.says;
    }
    return all;
}

// A text that a name follows ends with the blank before it, as its key does.
QString withoutGap(const LanguageEntry& entry)
{
    return entry.key.endsWith(' ') && entry.text.endsWith(' ') ? entry.text.chopped(1) : entry.text;
}

struct Term
{
    QRegularExpression key;
    QMap<QString, QRegularExpression> words; // by the code of the language
};

QVector<Term> glossary()
{
    QVector<Term> terms;
    const QStringList rows =
        readText(sourcePath("rootfs/language/glossary.tsv")).split('\n', Qt::SkipEmptyParts);
    for (const QString& row : rows.mid(1)) {
        const QStringList cells = row.split('\t');
        EXPECT_EQ(cells.size(), 1 + qsizetype(std::size(Languages))) << qPrintable(row);
        Term term{pattern(cells[0]), {}};
        for (qsizetype i = 1; i < cells.size(); ++i)
            term.words[Languages[i - 1].code] = pattern(cells[i]);
        terms.append(term);
    }
    return terms;
}

// The terms that a text should have by its key, and has not.
std::string otherWords(const QVector<Term>& terms, const QString& language, const LanguageEntry& entry)
{
    QStringList patterns;
    for (const Term& term : terms) {
        if (term.key.match(entry.key).hasMatch() && !term.words[language].match(entry.text).hasMatch())
            patterns.append(term.words[language].pattern());
    }
    return patterns.join("; ").toStdString();
}

QString textOf(const Language& language, const QString& key, const QString& note)
{
    for (const LanguageEntry& entry : entriesOf(language)) {
        if (entry.key == key && entry.note == note)
            return entry.text;
    }
    return QString();
}

} // namespace

TEST(LanguageRules, EveryTextKeepsThePunctuationOfItsLanguage)
{
    for (const Language& language : Languages) {
        for (const LanguageEntry& entry : entriesOf(language))
            EXPECT_EQ(broken(language.code, withoutGap(entry)), "")
                << language.code << ": " << qPrintable(entry.text);
    }
}

TEST(LanguageRules, EachRuleFindsWhatBreaksIt)
{
    const struct
    {
        const char* language;
        const char* text;
    } wrong[] = {
        {"de", "Lädt "},         {"de", "Wird geladen..."},  {"de", "So geht's"},
        {"de", "Wird geladen…"}, {"de", "Drücken Sie OK"},   {"de", "Name fehlt!"},
        {"fr", "Redémarrer ?"},  {"fr", "Redémarrer?"},      {"fr", "l'heure"},
        {"fr", "a\u202fb"},      {"es", "Falta el nombre!"}, {"es", "Reiniciar?"},
        {"es", "¡Falta"},        {"zh", "重启设备?"},        {"zh", "图片已损坏!"},
        {"zh", "密码:"},         {"zh", "正在呼叫…"},        {"zh", "按OK键"},
        {"zh", "已停止."},
    };
    for (const auto& each : wrong)
        EXPECT_NE(broken(each.language, each.text), "") << each.text;
    const struct
    {
        const char* language;
        const char* text;
    } right[] = {
        {"de", "Wird geladen\u00a0…"}, {"de", "Der Name fehlt!"},       {"fr", "Redémarrer\u202f?"},
        {"es", "¡Falta el nombre!"},   {"es", "Ha cambiado. ¿Seguir?"}, {"zh", "按 OK 键拨号"},
        {"zh", "正在呼叫……"},
    };
    for (const auto& each : right)
        EXPECT_EQ(broken(each.language, each.text), "") << each.text;
}

TEST(LanguageRules, OneThingHasOneName)
{
    const QVector<Term> terms = glossary();
    EXPECT_GT(terms.size(), 30);
    for (const Language& language : Languages) {
        for (const LanguageEntry& entry : entriesOf(language))
            EXPECT_EQ(otherWords(terms, language.code, entry), "")
                << language.code << ": " << qPrintable(entry.key) << " is " << qPrintable(entry.text);
    }
}

TEST(LanguageRules, EveryTermOfTheGlossaryIsAKeysTerm)
{
    const QVector<LanguageEntry> entries = entriesOf(Languages[0]);
    for (const Term& term : glossary()) {
        const bool isUsed = std::any_of(entries.begin(), entries.end(), [&](const LanguageEntry& entry) {
            return term.key.match(entry.key).hasMatch();
        });
        EXPECT_TRUE(isUsed) << qPrintable(term.key.pattern());
    }
}

TEST(LanguageRules, AnotherWordThanTheGlossarysIsFound)
{
    LanguageEntry entry;
    entry.key = "The phone book is empty.";
    entry.text = "Le répertoire est vide.";
    EXPECT_NE(otherWords(glossary(), "fr", entry), "");
    entry.text = "L’annuaire est vide.";
    EXPECT_EQ(otherWords(glossary(), "fr", entry), "");
}

TEST(LanguageRules, ExitIsAnActionAndAState)
{
    for (const Language& language : Languages) {
        const QString action = textOf(language, "Exit", "");
        const QString state = textOf(language, "Exit", "state of a line");
        EXPECT_FALSE(action.isEmpty() || state.isEmpty()) << language.code;
        EXPECT_NE(action, state) << language.code;
    }
}

TEST(LanguageRules, ChineseSaysTheHalfOfTheDayFirst)
{
    EXPECT_EQ(textOf(Languages[3], "%1 AM", ""), "上午 %1");
    EXPECT_EQ(textOf(Languages[3], "%1 PM", ""), "下午 %1");
}
