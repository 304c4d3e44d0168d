// The page "Security".
#include "support/host/ime.h"
#include "support/host/password.h"
#include "tests/file/failingCalls.h"
#include "tests/settings_system/systemPageTest.h"
#include <QFile>
#include <QLabel>
#include <QTimer>

namespace {

const char* const kFile = "/rundata/data/htpasswd";
const char* const kUserFile = "/rundata/config/user/user.ini";

class SecurityPage : public SystemPageTest
{
protected:
    SecurityPage()
    {
        QFile::remove(hostPath(kFile));
        filePassword file(kFile);
        file.SetUserPassword("admin", "old");
        file.SaveToFile(kFile);
    }
    void openPage() { open("Security"); }
    static int isRight(const char* password)
    {
        return filePassword(kFile).IsRightUserPassword("admin", password);
    }
    void enterAll(const QString& old, const QString& wanted, const QString& again)
    {
        enter("editOld", old);
        enter("editNew", wanted);
        enter("editAgain", again);
    }
    QLineEdit* edit(const char* name) const { return child<QLineEdit>(name); }
    static constexpr const char* kEdits[] = {"editOld", "editNew", "editAgain"};
};

} // namespace

TEST_F(SecurityPage, ShowsItsTextsAndThreeHiddenEdits)
{
    openPage();
    EXPECT_STREQ(page->metaObject()->className(), "dlgSecurity");
    EXPECT_EQ(page->findChild<qTopBar*>()->title(), "Admin Password");
    EXPECT_EQ(child<QLabel>("labOld")->text(), "Old Password");
    EXPECT_EQ(child<QLabel>("labNew")->text(), "New Password");
    EXPECT_EQ(child<QLabel>("labAgain")->text(), "Re-enter");
    const char* const keys[] = {"Save", "2aB", "Delete", "Back"};
    for (int key = 0; key < 4; ++key)
        EXPECT_EQ(softKeyTitle(key), keys[key]);
    for (const char* name : kEdits)
        EXPECT_EQ(edit(name)->echoMode(), QLineEdit::Password) << name;
    EXPECT_EQ(edit("editNew")->maxLength(), 99);
    EXPECT_EQ(edit("editOld")->maxLength(), QLineEdit().maxLength());
    EXPECT_EQ(focusName(), "editOld");
    kit::shot("security");
}

TEST_F(SecurityPage, ANewPasswordIsStoredAndTold)
{
    openPage();
    enterAll("old", "new", "new");
    expectSaved();
    EXPECT_EQ(isRight("new"), 1);
    EXPECT_EQ(isRight("old"), 0);
    expectChangesTold({"21 0"});
}

TEST_F(SecurityPage, BackDuringTheCheckChangesNothingAndTellsNothing)
{
    for (const char* old : {"old", "wrong"}) {
        openPage();
        enterAll(old, "new", "new");
        kit::BoxAnswers boxes;
        QTimer::singleShot(0, page, [this] { back(); });
        QMetaObject::invokeMethod(page, "on_click_Save");
        EXPECT_FALSE(page->isVisible());
        EXPECT_TRUE(boxes.texts().isEmpty());
        EXPECT_EQ(isRight("old"), 1);
    }
    expectChangesTold({});
}

TEST_F(SecurityPage, ASecondSaveDuringTheCheckAddsNothing)
{
    openPage();
    enterAll("wrong", "new", "new");
    kit::BoxAnswers boxes({"ok", "ok"});
    QTimer::singleShot(0, page, [this] { QMetaObject::invokeMethod(page, "on_click_Save"); });
    QMetaObject::invokeMethod(page, "on_click_Save");
    EXPECT_EQ(boxes.texts(), QStringList{"Old password is wrong!"});
    EXPECT_TRUE(page->isVisible());
}

TEST_F(SecurityPage, AWrongOldPasswordIsRefusedFirst)
{
    openPage();
    enterAll("wrong", "a", "b");
    expectRefused(kFile, "Old password is wrong!", "editOld");
    EXPECT_EQ(isRight("old"), 1);
    expectChangesTold({});
}

TEST_F(SecurityPage, NewPasswordsThatDifferAreRefused)
{
    openPage();
    enterAll("old", "a", "b");
    expectRefused(kFile, "New passwords do not match.", "editNew");
    enterAll("old", "", "b");
    expectRefused(kFile, "New passwords do not match.", "editNew");
}

TEST_F(SecurityPage, AnEmptyNewPasswordIsTaken)
{
    openPage();
    enterAll("old", "", "");
    expectSaved();
    EXPECT_EQ(isRight(""), 1);
}

TEST_F(SecurityPage, OutOfTheBoxTheOldPasswordIsEmpty)
{
    QFile::remove(hostPath(kFile));
    openPage();
    enterAll("", "first", "first");
    expectSaved();
    EXPECT_EQ(isRight("first"), 1);
}

TEST_F(SecurityPage, AFileThatCannotBeUnderstoodMakesThePasswordWrong)
{
    writeFile(kFile, "no password file");
    openPage();
    enterAll("old", "a", "a");
    expectRefused(kFile, "Old password is wrong!", "editOld");
}

TEST_F(SecurityPage, EveryShowBeginsEmptyAndNothingWaitsInAHiddenPage)
{
    openPage();
    enterAll("a", "b", "c");
    back();
    for (const char* name : kEdits)
        EXPECT_EQ(edit(name)->text(), "") << name;
    edit("editOld")->setText("left behind");
    openPage();
    EXPECT_EQ(edit("editOld")->text(), "");
    EXPECT_EQ(focusName(), "editOld");
    enterAll("old", "new", "new");
    save();
    for (const char* name : kEdits)
        EXPECT_EQ(edit(name)->text(), "") << name;
}

TEST_F(SecurityPage, AFailedSaveIsTracedAndThePageCloses)
{
    openPage();
    enterAll("old", "new", "new");
    kit::BoxAnswers boxes;
    {
        FailingCalls disk;
        disk.setSpace(0);
        save();
    }
    EXPECT_TRUE(boxes.texts().isEmpty());
    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(isRight("old"), 1);
    EXPECT_TRUE(traces().contains("The administrator's password is not stored"));
    expectChangesTold({"21 0"});
}

TEST_F(SecurityPage, TheInputMethodIsTheStoredOneAtEachShow)
{
    for (const char* method : {"123", "abc", "ABC", "2aB"}) {
        writeFile(kUserFile, QByteArray("[DefaultIme]\nstrSecurity=") + method + "\n");
        openPage();
        for (const char* name : kEdits)
            EXPECT_EQ(qGetCurrentIME(edit(name)), method);
        softKey(1);
        EXPECT_NE(qGetCurrentIME(edit("editOld")), method);
        back();
    }
    for (const char* text : {"", "[DefaultIme]\nstrSecurity=123_IP\n"}) {
        writeFile(kUserFile, text);
        openPage();
        EXPECT_EQ(qGetCurrentIME(edit("editOld")), "2aB") << text;
        softKey(1);
        back();
    }
}

TEST_F(SecurityPage, TheSoftKeysStepTheMethodAndDeleteACharacter)
{
    openPage();
    kit::type("abc");
    softKey(2);
    EXPECT_EQ(edit("editOld")->text(), "ab");
    softKey(1);
    EXPECT_EQ(softKeyTitle(1), "ABC");
}

TEST_F(SecurityPage, NothingThatWasTypedIsTracedOrStoredReadably)
{
    openPage();
    enterAll("old", "Geheim123", "Geheim123");
    expectSaved();
    EXPECT_EQ(traces().filter("Geheim").size(), 0);
    for (const char* kind : {"box", "bcast", "key", "command"})
        EXPECT_EQ(logged(kind).filter("Geheim").size(), 0) << kind;
    EXPECT_FALSE(readFile(kFile).contains("Geheim"));
}

TEST_F(SecurityPage, ASaveBelongsToItsShowing)
{
    openPage();
    enterAll("old", "new", "new");
    QWidget* shown = page;
    QTimer::singleShot(0, page, [this] {
        back();
        openPage();
        enter("editOld", "typed");
    });
    QMetaObject::invokeMethod(shown, "on_click_Save");
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(edit("editOld")->text(), "typed");
    EXPECT_EQ(isRight("old"), 1);
    expectChangesTold({});
}

TEST_F(SecurityPage, ASaveOfTheNextShowingDoesNotWaitForTheOneThatWasLeft)
{
    openPage();
    enterAll("old", "left", "left");
    QWidget* shown = page;
    QTimer::singleShot(0, page, [this] {
        back();
        openPage();
        enterAll("old", "next", "next");
        expectSaved();
    });
    QMetaObject::invokeMethod(shown, "on_click_Save");
    EXPECT_EQ(isRight("next"), 1);
    expectChangesTold({"21 0"});
}

// The second hash, that of the new password, takes its time as well.
TEST_F(SecurityPage, BackWhileTheNewPasswordIsHashedChangesNothing)
{
    // MD5-crypt of "old": it is checked within the first turn of the events.
    const QByteArray quick = "admin:$1$salt$dnV8II5nvDz2lzLUsta9B.\n";
    writeFile(kFile, quick);
    for (int turns = 1; turns <= 6; ++turns) {
        openPage();
        enterAll("old", "new", "new");
        int left = turns;
        QTimer leave;
        QObject::connect(&leave, &QTimer::timeout, page, [&] {
            if (--left == 0)
                back();
        });
        leave.start(1);
        QMetaObject::invokeMethod(page, "on_click_Save");
        if (left > 0)
            break; // done before: this machine is quick
        EXPECT_EQ(readFile(kFile), quick) << turns;
    }
}
