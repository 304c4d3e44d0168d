// Combo boxes and radio buttons as tables of texts and values.
#include "frame/configFiles.h"
#include "frame/configPage.h"
#include "support/host/combo.h"
#include "support/host/language.h"
#include "tests/kit/pageTest.h"
#include <QButtonGroup>
#include <QFrame>
#include <QRadioButton>

namespace {

const tagChoice kTypes[] = {{HX_TR("Disabled"), "0"}, {HX_TR("Auto"), "1"}, {HX_TR("None"), "2"}};
const tagChoice kFront = {HX_TR("Password"), "-1"};

class dlgChoices : public ConfigPage
{
public:
    dlgChoices() : ConfigPage(nullptr, nullptr)
    {
        QFrame* background = new QFrame(this);
        background->setGeometry(0, 0, 800, 480);
        background->lower();
        m_pType->setObjectName("cmbType");
        m_pType->setGeometry(200, 60, 300, 36);
        m_pShort->setGeometry(200, 110, 300, 36);
        m_pFree->setGeometry(200, 160, 300, 36);
        m_pFirst->setGeometry(200, 210, 120, 36);
        m_pSecond->setGeometry(340, 210, 120, 36);
        BuildFrame(background, HX_TR("WAN"), KEYS_CHOICE);
        const HREGISTRY section = registryOpen(USER_INI, "Choices");
        Bind({
            {m_pType, section, "eType", "", kTypes},
            {m_pShort, section, "eShort", "0", Choices(kTypes, 2)},
            {m_pFree, nullptr, nullptr, nullptr, kTypes},
            {{{m_pFirst, "a"}, {m_pSecond, "b"}}, section, "eRadio", "b"},
        });
    }
    QComboBox* m_pType = new QComboBox(this);
    QComboBox* m_pShort = new QComboBox(this);
    QComboBox* m_pFree = new QComboBox(this); // not tied to a key
    QRadioButton* m_pFirst = new QRadioButton("First of two", this);
    QRadioButton* m_pSecond = new QRadioButton("Second of two", this);
    int m_nBroadcasts = 0;

protected:
    void BroadcastChange() override { ++m_nBroadcasts; }
};

class PageChoices : public PageTest
{
protected:
    static void store(const char* key, const char* value)
    {
        ASSERT_EQ(nuxSetRegistryString(USER_INI, "Choices", key, value), 1);
    }
    static void speak(const char* language) { ASSERT_EQ(GetLanguageHelper()->SetLanguage(language), 1); }
    static QStringList texts(const QComboBox* box)
    {
        QStringList all;
        for (int i = 0; i < box->count(); ++i)
            all.append(box->itemText(i));
        return all;
    }
};

} // namespace

TEST_F(PageChoices, ABoxHasTheItemsOfItsTable)
{
    dlgChoices dialog;
    EXPECT_EQ(texts(dialog.m_pType), (QStringList{"Disabled", "Auto", "None"}));
    EXPECT_STREQ(qGetExternValue(dialog.m_pType, 2), "2");
    EXPECT_EQ(texts(dialog.m_pShort), (QStringList{"Disabled", "Auto"}));
    EXPECT_EQ(texts(dialog.m_pFree), texts(dialog.m_pType));
}

TEST_F(PageChoices, TheStoredValueIsSelectedAndTheChosenOneIsStored)
{
    store("eType", "1");
    dlgChoices dialog;
    show(dialog);
    EXPECT_EQ(dialog.m_pType->currentIndex(), 1);
    choose("cmbType", "2");
    expectSaved();
    expectStored(USER_INI, "Choices", "eType", "2");
    EXPECT_EQ(dialog.m_nBroadcasts, 1);
}

TEST_F(PageChoices, EachShowSpeaksThePresentLanguageAndKeepsTheSelection)
{
    store("eType", "2");
    dlgChoices dialog;
    show(dialog);
    dialog.m_pFree->setCurrentIndex(1);
    back();
    int moved = 0;
    QObject::connect(dialog.m_pFree, &QComboBox::currentIndexChanged, &dialog, [&] { ++moved; });
    speak("German");
    show(dialog);
    const QStringList german{qTranslate("Disabled"), qTranslate("Auto"), qTranslate("None")};
    ASSERT_NE(german.first(), "Disabled");
    EXPECT_EQ(texts(dialog.m_pType), german);
    EXPECT_EQ(dialog.m_pType->currentIndex(), 2);
    EXPECT_EQ(texts(dialog.m_pFree), german);
    EXPECT_EQ(dialog.m_pFree->currentIndex(), 1);
    EXPECT_EQ(moved, 0);
    back();
    speak("English");
    show(dialog);
    EXPECT_EQ(texts(dialog.m_pType), (QStringList{"Disabled", "Auto", "None"}));
}

TEST_F(PageChoices, APageFirstShownInAnotherLanguageSpeaksIt)
{
    dlgChoices dialog;
    speak("German");
    show(dialog);
    EXPECT_EQ(dialog.m_pType->itemText(0), qTranslate("Disabled"));
    EXPECT_NE(dialog.m_pType->itemText(0), "Disabled");
}

TEST_F(PageChoices, AnItemInFrontLeavesTheSelectionAndFollowsTheLanguageToo)
{
    dlgChoices dialog;
    dialog.m_pFree->setCurrentIndex(1);
    insertChoice(dialog.m_pFree, 0, kFront);
    EXPECT_EQ(dialog.m_pFree->currentText(), "Auto");
    qAddComboBoxItem(dialog.m_pFree, "a file", "/a");
    speak("German");
    show(dialog);
    EXPECT_EQ(dialog.m_pFree->itemText(0), qTranslate("Password"));
    EXPECT_STREQ(qGetExternValue(dialog.m_pFree, 0), "-1");
    EXPECT_EQ(dialog.m_pFree->currentText(), qTranslate("Auto"));
    EXPECT_EQ(dialog.m_pFree->itemText(4), "a file");
}

TEST_F(PageChoices, AValueThatNoItemHasShowsNoneAndAnUnchangedSaveKeepsIt)
{
    store("eShort", "2");
    store("eType", "9");
    store("eRadio", "z");
    dlgChoices dialog;
    show(dialog);
    EXPECT_EQ(dialog.m_pShort->currentIndex(), -1);
    EXPECT_EQ(dialog.m_pType->currentIndex(), -1);
    EXPECT_EQ(dialog.m_pFirst->group()->checkedButton(), nullptr);
    const QByteArray before = readFile(USER_INI);
    expectSaved();
    EXPECT_EQ(readFile(USER_INI), before);
    EXPECT_EQ(dialog.m_nBroadcasts, 0);
}

TEST_F(PageChoices, NothingStoredShowsTheFirstAndAnUnchangedSaveStoresNothing)
{
    dlgChoices dialog;
    show(dialog);
    EXPECT_EQ(dialog.m_pType->currentIndex(), 0);
    const QByteArray before = readFile(USER_INI);
    expectSaved();
    EXPECT_EQ(readFile(USER_INI), before);
    EXPECT_EQ(dialog.m_nBroadcasts, 0);
}

TEST_F(PageChoices, AnAbandonedChoiceIsDroppedWhereNothingIsStoredToo)
{
    dlgChoices dialog;
    show(dialog);
    choose("cmbType", "2");
    back();
    show(dialog);
    EXPECT_EQ(dialog.m_pType->currentIndex(), 0);
}

TEST_F(PageChoices, ArrowsLeadOutOfAValueThatNoItemHas)
{
    store("eType", "9");
    dlgChoices dialog;
    show(dialog);
    dialog.m_pType->setFocus();
    kit::key(Qt::Key_Right);
    EXPECT_EQ(dialog.m_pType->currentIndex(), 0);
    expectSaved();
    expectStored(USER_INI, "Choices", "eType", "0");
    EXPECT_EQ(dialog.m_nBroadcasts, 1);
}

TEST_F(PageChoices, RadioButtonsOfATableAreOneGroup)
{
    dlgChoices dialog;
    show(dialog);
    ASSERT_NE(dialog.m_pFirst->group(), nullptr);
    EXPECT_EQ(dialog.m_pFirst->group()->id(dialog.m_pSecond), 1);
    EXPECT_TRUE(dialog.m_pSecond->isChecked());
    kit::tap(dialog.m_pFirst);
    expectSaved();
    expectStored(USER_INI, "Choices", "eRadio", "a");
}
