// The box that asks for the administrator's password.
#include "frame/modSetting.h"
#include "settings/system/dlgPassWord.h"
#include "support/host/button.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "support/host/password.h"
#include "tests/settings_system/systemPageTest.h"
#include <QCoreApplication>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QTimer>

namespace {

const char* const kFile = "/rundata/data/htpasswd";
const char* const kUserFile = "/rundata/config/user/user.ini";

#define PICTURES "/phone/resource/theme/default/bmp/"

class PasswordBox : public SystemPageTest
{
protected:
    PasswordBox()
    {
        QFile::remove(hostPath(kFile));
        filePassword file(kFile);
        file.SetUserPassword("admin", "Secret");
        file.SaveToFile(kFile);
    }
    // Asks, and has hand do something while the box is up.
    int asks(const std::function<void()>& hand)
    {
        bool isDone = false;
        QTimer::singleShot(0, [&] {
            kit::settle();
            page = kit::windows().value(0);
            edit = child<QLineEdit>("linPassWordEdit");
            hand();
            isDone = true;
        });
        const int answer = settingPromptUserLevel("admin", nullptr);
        EXPECT_TRUE(isDone);
        return answer;
    }
    void tap(const char* button) { kit::tap(child<QPushButton>(button)); }
    // The check is done: a box has come, or this one has gone.
    static bool isChecked(const QWidget* box)
    {
        return kit::waitUntil([box] { return kit::windows().value(0) != box; }, 20000);
    }
    QString picture(const char* button, int state)
    {
        return GetButtonImage(child<QPushButton>(button), state);
    }

    QLineEdit* edit = nullptr;
};

} // namespace

TEST_F(PasswordBox, LooksAsItShould)
{
    EXPECT_EQ(asks([this] {
                  EXPECT_STREQ(page->metaObject()->className(), "dlgPassWord");
                  EXPECT_TRUE(page->isModal());
                  EXPECT_EQ(child<QLabel>("labTitle")->text(), "Please input the password:");
                  EXPECT_EQ(edit->echoMode(), QLineEdit::Password);
                  EXPECT_EQ(child<QPushButton>("btnEdit")->text(), "2aB");
                  EXPECT_EQ(focusName(), "linPassWordEdit");
                  EXPECT_EQ(picture("btnEdit", 0), PICTURES "button/btn_ime_bg01.png");
                  EXPECT_EQ(picture("btnDelet", 0), PICTURES "button/btn_delete_bg01.png");
                  EXPECT_EQ(picture("btnOK", 1), PICTURES "button/btn_yes_bg02.png");
                  EXPECT_EQ(picture("btnCancel", 2), PICTURES "button/btn_cancel_bg03.png");
                  kit::shot("password-box");
                  tap("btnCancel");
              }),
              0);
}

TEST_F(PasswordBox, ARightPasswordLetsIn)
{
    EXPECT_EQ(asks([this] {
                  kit::type("Secret");
                  tap("btnOK");
                  EXPECT_TRUE(isChecked(page));
              }),
              1);
    EXPECT_TRUE(traces().contains("Verify that password is right!"));
    EXPECT_TRUE(traces().contains("Complete input the password."));
    EXPECT_EQ(traces().filter("Secret").size(), 0);
}

TEST_F(PasswordBox, ReturnIsOk)
{
    EXPECT_EQ(asks([this] {
                  kit::type("Secret");
                  kit::key(Qt::Key_Return);
                  EXPECT_TRUE(isChecked(page));
              }),
              1);
}

TEST_F(PasswordBox, AWrongPasswordIsToldForThreeSecondsAndTheBoxStays)
{
    EXPECT_EQ(asks([this] {
                  kit::type("secret");
                  QTimer look;
                  QObject::connect(&look, &QTimer::timeout, &look, [&look] {
                      QWidget* note = kit::windows().value(0);
                      if (qstrcmp(note->metaObject()->className(), "dlgMessageBox") != 0)
                          return;
                      look.stop();
                      EXPECT_EQ(note->findChild<QLabel*>("labTitle")->text(), "Warning");
                      EXPECT_EQ(note->findChild<QLabel*>("labText")->text(), "Password is wrong!");
                      kit::stepTime(2900);
                      EXPECT_EQ(kit::windows().value(0), note);
                      kit::stepTime(200);
                      EXPECT_NE(kit::windows().value(0), note);
                  });
                  look.start(1);
                  tap("btnOK");
                  EXPECT_EQ(kit::windows().value(0), page);
                  EXPECT_EQ(edit->text(), "secret");
                  tap("btnCancel");
              }),
              0);
    EXPECT_FALSE(traces().contains("Verify that password is right!"));
    EXPECT_TRUE(traces().contains("Cancel input password!"));
}

TEST_F(PasswordBox, AfterAWrongPasswordTheRightOneLetsIn)
{
    EXPECT_EQ(asks([this] {
                  kit::BoxAnswers boxes({"ok"});
                  kit::type("Secre");
                  tap("btnOK");
                  EXPECT_EQ(boxes.texts(), QStringList{"Password is wrong!"});
                  EXPECT_EQ(focusName(), "linPassWordEdit");
                  kit::type("t");
                  kit::key(Qt::Key_Return);
                  EXPECT_TRUE(isChecked(page));
              }),
              1);
}

TEST_F(PasswordBox, CancelAndTheKeyOfBackAreNo)
{
    for (const Qt::Key key : {Qt::Key_F4, Qt::Key_Escape})
        EXPECT_EQ(asks([key] { kit::key(key); }), 0);
    EXPECT_EQ(asks([this] {
                  kit::key(Qt::Key_Up);
                  EXPECT_EQ(focusName(), "btnCancel");
                  kit::key(Qt::Key_Return);
              }),
              0);
}

TEST_F(PasswordBox, TheArrowsLeadToTheButtonsAndBack)
{
    asks([this] {
        const std::pair<Qt::Key, const char*> steps[] = {{Qt::Key_Down, "btnOK"},
                                                         {Qt::Key_Right, "btnCancel"},
                                                         {Qt::Key_Down, "linPassWordEdit"},
                                                         {Qt::Key_Up, "btnCancel"},
                                                         {Qt::Key_Left, "btnOK"}};
        for (const auto& [key, name] : steps) {
            kit::key(key);
            EXPECT_EQ(focusName(), name);
        }
        tap("btnCancel");
    });
}

TEST_F(PasswordBox, ButtonsStepTheMethodAndDeleteACharacter)
{
    asks([this] {
        const char* const methods[] = {"ABC", "abc", "123", "2aB"};
        for (const char* method : methods) {
            tap("btnEdit");
            EXPECT_EQ(child<QPushButton>("btnEdit")->text(), method);
            EXPECT_EQ(qGetCurrentIME(edit), method);
        }
        kit::key(Qt::Key_F2);
        EXPECT_EQ(child<QPushButton>("btnEdit")->text(), "ABC");
        kit::type("abc");
        tap("btnDelet");
        EXPECT_EQ(edit->text(), "ab");
        kit::key(Qt::Key_F3);
        EXPECT_EQ(edit->text(), "a");
        tap("btnCancel");
    });
}

TEST_F(PasswordBox, ALetterThatIsBeingChosenCounts)
{
    filePassword file(kFile);
    file.SetUserPassword("admin", "A");
    file.SaveToFile(kFile);
    EXPECT_EQ(asks([this] {
                  kit::padKey('2');
                  tap("btnOK");
                  EXPECT_TRUE(isChecked(page));
              }),
              1);
}

TEST_F(PasswordBox, BeginsWithTheStoredInputMethod)
{
    for (const char* method : {"123", "abc", "ABC", "2aB"}) {
        writeFile(kUserFile, QByteArray("[DefaultIme]\nstrSecurity=") + method + "\n");
        asks([this, method] {
            EXPECT_EQ(child<QPushButton>("btnEdit")->text(), method);
            tap("btnCancel");
        });
    }
    writeFile(kUserFile, "[DefaultIme]\nstrSecurity=123_IP\n");
    asks([this] {
        EXPECT_EQ(child<QPushButton>("btnEdit")->text(), "2aB");
        tap("btnCancel");
    });
}

TEST_F(PasswordBox, OutOfTheBoxNothingHasToBeTyped)
{
    QFile::remove(hostPath(kFile));
    EXPECT_EQ(asks([this] {
                  tap("btnOK");
                  EXPECT_TRUE(isChecked(page));
              }),
              1);
}

TEST_F(PasswordBox, APasswordFileThatIsDamagedLetsNobodyIn)
{
    writeFile(kFile, "damaged");
    EXPECT_EQ(asks([this] {
                  kit::BoxAnswers boxes({"ok", "ok"});
                  tap("btnOK");
                  kit::type("Secret");
                  tap("btnOK");
                  EXPECT_EQ(boxes.texts().size(), 2);
                  tap("btnCancel");
              }),
              0);
}

TEST_F(PasswordBox, AWindowThatComesUpCancelsIt)
{
    QWidget call;
    EXPECT_EQ(asks([&call] {
                  call.setGeometry(0, 0, 800, 480);
                  call.show();
                  kit::settle();
              }),
              0);
}

// The answer of a check that was under way comes when nobody waits for it any more.
TEST_F(PasswordBox, AWindowThatComesUpDuringTheCheckCancelsItToo)
{
    QWidget call;
    call.setGeometry(0, 0, 800, 480);
    EXPECT_EQ(asks([this, &call] {
                  kit::type("Secret");
                  // After the touch has become a click, which the check is part of.
                  QObject::connect(child<QPushButton>("btnOK"), &QPushButton::released, &call,
                                   [&call] { QTimer::singleShot(0, &call, &QWidget::show); });
                  tap("btnOK");
                  kit::settle();
              }),
              0);
    EXPECT_FALSE(traces().contains("Verify that password is right!"));
}

TEST_F(PasswordBox, ASecondOkDuringTheCheckAddsNothing)
{
    EXPECT_EQ(asks([this] {
                  kit::BoxAnswers boxes({"ok", "ok"});
                  kit::type("secret");
                  QObject::connect(
                      child<QPushButton>("btnOK"), &QPushButton::released, page,
                      [this] { QTimer::singleShot(0, page, [] { kit::key(Qt::Key_Return); }); },
                      Qt::SingleShotConnection);
                  tap("btnOK");
                  EXPECT_EQ(boxes.texts(), QStringList{"Password is wrong!"});
                  tap("btnCancel");
              }),
              0);
}

TEST_F(PasswordBox, AnOkThatIsHeldPressesOnce)
{
    EXPECT_EQ(asks([this] {
                  kit::BoxAnswers boxes({"ok"});
                  kit::type("secret");
                  QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
                  QCoreApplication::sendEvent(page, &repeated);
                  EXPECT_TRUE(boxes.texts().isEmpty());
                  kit::key(Qt::Key_Return);
                  EXPECT_EQ(boxes.texts().size(), 1);
                  tap("btnCancel");
              }),
              0);
}

TEST_F(PasswordBox, ItsTitleIsTranslated)
{
    GetLanguageHelper()->SetLanguage("German");
    asks([this] {
        EXPECT_EQ(child<QLabel>("labTitle")->text(), "Bitte das Passwort eingeben:");
        kit::shot("password-box-de");
        tap("btnCancel");
    });
}

TEST_F(PasswordBox, ANewLanguageShowsInPlace)
{
    asks([this] {
        kit::type("pw");
        GetLanguageHelper()->SetLanguage("French");
        kit::settle();
        EXPECT_EQ(child<QLabel>("labTitle")->text(), QString::fromUtf8("Saisissez le mot de passe\u202f:"));
        EXPECT_EQ(edit->text().size(), 2);
        EXPECT_EQ(child<QPushButton>("btnEdit")->text(), "2aB");
        kit::shot("password-box-fr");
        tap("btnCancel");
    });
}
