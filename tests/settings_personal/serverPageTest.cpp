// The page "Auto Provision".
#include "support/host/ime.h"
#include "support/host/text.h"
#include "tests/settings_personal/personalPageTest.h"
#include <QLabel>

#define SYSTEM_FILE "/rundata/config/system.ini"

namespace {

class ServerPage : public PersonalPageTest
{
protected:
    ServerPage()
    {
        writeFile(SYSTEM_FILE,
                  "[AutoProvision]\nstrServerURL=http://a/b\nstrUserName=anna\nstrPassword=secret\n");
    }
    void openPage() { open("Auto Provision"); }
    QLineEdit* edit(const char* name) const { return child<QLineEdit>(name); }
    static constexpr const char* kEdits[] = {"editServerURL", "editUserName", "editPassword"};
};

TEST_F(ServerPage, ShowsItsTextsAndWhatIsStored)
{
    openPage();
    EXPECT_EQ(title(), "Update Server Setting");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "2aB", "Delete", "Back"}));
    EXPECT_EQ(child<QLabel>("labServerURL")->text(), "Server URL");
    EXPECT_EQ(child<QLabel>("labUserName")->text(), "User Name");
    EXPECT_EQ(child<QLabel>("labPassword")->text(), "Password");
    EXPECT_EQ(edit("editServerURL")->text(), "http://a/b");
    EXPECT_EQ(edit("editUserName")->text(), "anna");
    EXPECT_EQ(edit("editPassword")->text(), "secret");
    EXPECT_EQ(edit("editPassword")->echoMode(), QLineEdit::Password);
    EXPECT_EQ(edit("editUserName")->echoMode(), QLineEdit::Normal);
    EXPECT_EQ(focusName(), "editServerURL");
    kit::shot("server-page");
}

TEST_F(ServerPage, WithNothingStoredAllIsEmpty)
{
    writeFile(SYSTEM_FILE, "");
    openPage();
    for (const char* name : kEdits)
        EXPECT_EQ(edit(name)->text(), "") << name;
}

TEST_F(ServerPage, AHundredthCharacterCannotBeTyped)
{
    openPage();
    for (const char* name : kEdits) {
        kit::tap(edit(name));
        edit(name)->selectAll();
        kit::type(QString(100, 'x'));
        EXPECT_EQ(edit(name)->text(), QString(99, 'x')) << name;
    }
    expectSaved();
    EXPECT_EQ(stored(SYSTEM_FILE, "AutoProvision", "strServerURL"), QString(99, 'x'));
}

TEST_F(ServerPage, WhatIsTypedIsStoredUncheckedAndNobodyIsTold)
{
    openPage();
    enter("editServerURL", "no address at all <>");
    enter("editUserName", "");
    enter("editPassword", "x y;z#");
    mark();
    expectSaved();
    expectStored(SYSTEM_FILE, "AutoProvision", "strServerURL", "no address at all <>");
    expectStored(SYSTEM_FILE, "AutoProvision", "strUserName", "");
    expectStored(SYSTEM_FILE, "AutoProvision", "strPassword", "x y;z#");
    EXPECT_EQ(logged("broadcast"), QStringList());
}

TEST_F(ServerPage, EachEditHasTheFourInputMethodsAndBeginsWithTheFirst)
{
    openPage();
    for (const char* name : kEdits) {
        kit::tap(edit(name));
        for (const char* method : {"2aB", "ABC", "abc", "123", "2aB"}) {
            EXPECT_EQ(softKeyTitle(1), method) << name;
            softKey(1);
        }
    }
    back();
    openPage();
    for (const char* name : kEdits)
        EXPECT_EQ(qGetCurrentIME(edit(name)), "2aB") << name;
}

TEST_F(ServerPage, TheKeyShowsTheMethodOfWhateverHasTheFocus)
{
    openPage();
    softKey(1);
    EXPECT_EQ(softKeyTitle(1), "ABC");
    kit::tap(edit("editPassword"));
    EXPECT_EQ(softKeyTitle(1), "2aB");
    kit::tap(edit("editServerURL"));
    EXPECT_EQ(softKeyTitle(1), "ABC");
}

TEST_F(ServerPage, ThePasswordIsTypedOnTheDigitPadToo)
{
    openPage();
    kit::tap(edit("editPassword"));
    edit("editPassword")->clear();
    for (int step = 0; step < 3; ++step)
        softKey(1);
    kit::padKey('4');
    kit::padKey('2');
    EXPECT_EQ(edit("editPassword")->text(), "42");
}

TEST_F(ServerPage, DeleteTakesOneCharacter)
{
    openPage();
    kit::tap(edit("editUserName"));
    kit::key(Qt::Key_End);
    softKey(2);
    EXPECT_EQ(edit("editUserName")->text(), "ann");
}

TEST_F(ServerPage, BackDropsWhatWasTyped)
{
    const QByteArray before = readFile(SYSTEM_FILE);
    openPage();
    enter("editServerURL", "http://other");
    back();
    EXPECT_EQ(readFile(SYSTEM_FILE), before);
    openPage();
    EXPECT_EQ(edit("editServerURL")->text(), "http://a/b");
}

TEST_F(ServerPage, AFullDiskIsToldAndKeepsWhatWasTyped)
{
    openPage();
    enter("editServerURL", "http://other");
    expectFailedSave(SYSTEM_FILE);
    EXPECT_EQ(edit("editServerURL")->text(), "http://other");
}

} // namespace
