// New texts find their way into the language files, and nothing else of these changes.
#include "places.h"
#include "tests/house/sourceTree.h"
#include "tools/textKeys/languageFile.h"
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

const char* const Head = R"(<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>hx</name>
)";
const char* const Old = R"(    <message>
        <source>Save</source><!-- as the other phones of the house -->
        <translation>Speichern &amp; weg</translation>
    </message>
    <message>
        <source>Not shown any more</source>
        <translation>War einmal</translation>
    </message>
)";
const char* const Tail = "</context>\n</TS>\n";

class TextKeys : public ::testing::Test
{
protected:
    void write(const QString& path, const QString& text) const
    {
        QDir(m_dir.path()).mkpath(QFileInfo(path).path());
        QFile file(m_dir.filePath(path));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
    }
    QString language(const char* code = "de") const
    {
        return readText(m_dir.filePath(QString("rootfs/language/hx_%1.ts").arg(code)));
    }
    int run() const { return QProcess::execute(HX_BUILD_DIR "/bin/hxTextKeys", {m_dir.path()}); }
    static QString unfinished(const QString& key, const QString& note = QString())
    {
        return "    <message>\n        <source>" + key + "</source>\n" +
               (note.isEmpty() ? QString() : "        <comment>" + note + "</comment>\n") +
               "        <translation type=\"unfinished\"></translation>\n    </message>\n";
    }

    QTemporaryDir m_dir;
};

} // namespace

TEST_F(TextKeys, NewTextsOfCodeFormsAndMenusAreAddedAndTheOthersStay)
{
    write("frame/page.cpp", R"(f(HX_TR("From a table"), Translate("Save"), qTranslate("From " "code & more"));
                               // Translate("A comment")
                               Translate(variable); Translate(""); HX_TR("42");)");
    write("host/page.h", R"(auto key = HX_TR_NOTE("Exit", "state of a line");)");
    write("settings/system/page.ui",
          R"(<ui><widget><property name="text"><string>From a form</string></property>
        <property name="styleSheet"><string>colour: red</string></property></widget></ui>)");
    write("rootfs/menus/menu.xml",
          R"(<RootMenu title="From a menu"><item title="Date &amp; Time"/></RootMenu>)");
    write("tests/frame/page.cpp", R"(Translate("Of a test"))");
    write("rootfs/language/hx_de.ts", QString(Head) + Old + Tail);
    write("rootfs/language/hx_fr.ts", QString(Head) + Tail);
    ASSERT_EQ(run(), 0);
    const QString added = unfinished("Date &amp; Time") + unfinished("Exit", "state of a line") +
                          unfinished("From a form") + unfinished("From a menu") + unfinished("From a table") +
                          unfinished("From code &amp; more");
    EXPECT_EQ(language().toStdString(), (Head + QString(Old) + added + Tail).toStdString());
    EXPECT_TRUE(language("fr").contains("<source>Save</source>"));

    const QString before = language();
    ASSERT_EQ(run(), 0);
    EXPECT_EQ(language().toStdString(), before.toStdString());
}

TEST_F(TextKeys, ALanguageFileThatIsBrokenIsLeftAlone)
{
    write("frame/page.cpp", R"(HX_TR("New"))");
    write("rootfs/language/hx_de.ts", QString(Head) + "<message>");
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(language().toStdString(), (QString(Head) + "<message>").toStdString());
}

TEST_F(TextKeys, AFileWithAPlaceForEntriesAndAFaultElsewhereIsLeftAlone)
{
    write("frame/page.cpp", R"(HX_TR("New"))");
    const QString torn = QString(Head) + "    <message><source>Save</wrong></message>\n" + Tail;
    write("rootfs/language/hx_de.ts", torn);
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(language().toStdString(), torn.toStdString());
}

TEST_F(TextKeys, TheFilesAfterABrokenOneGetTheirTexts)
{
    write("frame/page.cpp", R"(HX_TR("New"))");
    write("rootfs/language/hx_de.ts", QString(Head) + "<message>");
    write("rootfs/language/hx_fr.ts", QString(Head) + Tail);
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(language("fr").toStdString(), (Head + unfinished("New") + Tail).toStdString());
}

TEST_F(TextKeys, ANoteMayHaveAnyCharacter)
{
    write("frame/page.cpp", R"re(HX_TR_NOTE("Exit", "leave & <close>"))re");
    write("rootfs/language/hx_de.ts", QString(Head) + Tail);
    ASSERT_EQ(run(), 0);
    EXPECT_EQ(language().toStdString(),
              (Head + unfinished("Exit", "leave &amp; &lt;close&gt;") + Tail).toStdString());
    ASSERT_EQ(run(), 0);
    EXPECT_EQ(language().count("<message>"), 1) << "it is known again";
}

TEST_F(TextKeys, TheDataOfTheFactoryHasTextsButForTheNamesOfPictures)
{
    write("rootfs/factory/data/keys.xml", R"(<Keys><item title="Of the factory"/></Keys>)");
    write("rootfs/factory/data/picture-dial.xml", R"(<Dial><item title="Grandma"/></Dial>)");
    write("rootfs/language/hx_de.ts", QString(Head) + Tail);
    ASSERT_EQ(run(), 0);
    EXPECT_EQ(language().toStdString(), (Head + unfinished("Of the factory") + Tail).toStdString());
}

TEST_F(TextKeys, ATreeWithoutTextsIsAnError)
{
    EXPECT_EQ(run(), 1);
}
