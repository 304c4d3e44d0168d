#include "support/host/language.h"
#include "support/host/registry.h"
#include "tests/kit/phoneTest.h"

namespace {

const char* const kUserFile = "/rundata/config/user/user.ini";

class Language : public PhoneTest
{
protected:
    Language() { GetLanguageHelper()->SetLanguage("English"); }
    ~Language() override { GetLanguageHelper()->SetLanguage("English"); }
};

} // namespace

TEST_F(Language, TheTextsOfEnglishAreTheKeys)
{
    const char* const key = "Network";
    EXPECT_EQ(GetLanguageHelper()->GetLanguage(), "English");
    EXPECT_EQ(Translate(key), key);
    EXPECT_EQ(Translate(nullptr), nullptr);
    EXPECT_STREQ(Translate(""), "");
}

TEST_F(Language, AnotherLanguageGivesItsTexts)
{
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    EXPECT_EQ(GetLanguageHelper()->GetLanguage(), "German");
    EXPECT_STREQ(Translate("Save"), "Speichern");
    EXPECT_EQ(qTranslate("Save"), "Speichern");
}

TEST_F(Language, AKeyWithoutATextIsItself)
{
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    const char* const key = "no such key anywhere";
    EXPECT_EQ(Translate(key), key);
}

TEST_F(Language, ATextStaysValidWhenTheLanguageChanges)
{
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    const char* const german = Translate("Save");
    EXPECT_EQ(Translate("Save"), german);
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("French"), 1);
    EXPECT_STRNE(Translate("Save"), "Speichern");
    EXPECT_STREQ(german, "Speichern");
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    EXPECT_EQ(Translate("Save"), german);
}

TEST_F(Language, AKeyWithSeveralMeaningsHasATextForEach)
{
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    EXPECT_STREQ(Translate("Exit"), "Beenden");
    EXPECT_STREQ(Translate("Exit", "state of a line"), "Beendet");
    EXPECT_STREQ(Translate("Exit"), "Beenden");
    EXPECT_EQ(qTranslate("Exit", "state of a line"), "Beendet");
    EXPECT_STREQ(Translate("Save", "state of a line"), "Speichern");
    const char* const key = "no such key anywhere";
    EXPECT_EQ(Translate(key, "state of a line"), key);
    EXPECT_EQ(Translate(nullptr, "state of a line"), nullptr);
}

TEST_F(Language, AnUnknownLanguageIsRefusedAndTheOldOneStays)
{
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    for (const char* name : {"Klingon", "../language/German", "", static_cast<const char*>(nullptr)})
        EXPECT_EQ(GetLanguageHelper()->SetLanguage(name), 0);
    EXPECT_EQ(GetLanguageHelper()->GetLanguage(), "German");
}

TEST_F(Language, ALanguageWhoseFileCannotBeReadIsRefusedAndTheOldOneStays)
{
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    writeFile("/phone/resource/language/French.qm", "torn");
    EXPECT_EQ(GetLanguageHelper()->SetLanguage("French"), 0);
    EXPECT_EQ(GetLanguageHelper()->GetLanguage(), "German");
    EXPECT_STREQ(Translate("Save"), "Speichern");
    EXPECT_EQ(traces().filter("French.qm cannot be read").size(), 1);
}

TEST_F(Language, AllLanguagesHaveTheirNativeNames)
{
    chObjArray<tagLanguageName, true, 4> names;
    GetLanguageHelper()->lang_GetAllName(names);
    const std::pair<const char*, const char*> expected[] = {{"English", "English"},
                                                            {"Chinese", "中文"},
                                                            {"German", "Deutsch"},
                                                            {"French", "Français"},
                                                            {"Spanish", "Español"}};
    ASSERT_EQ(names.GetSize(), 5);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(names[i].strName, expected[i].first);
        EXPECT_EQ(names[i].strNativeName, expected[i].second);
    }
}

TEST_F(Language, AnotherStoredLanguageIsThatOfTheNextStart)
{
    nuxSetRegistryString(kUserFile, "Language", "strGUILanguage", "Spanish");
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_PHONE, 0);
    kit::stepTime(1000);
    EXPECT_EQ(GetLanguageHelper()->GetLanguage(), "English");
    EXPECT_STREQ(Translate("Save"), "Save");
}
