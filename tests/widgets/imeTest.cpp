#include "support/host/ime.h"
#include "support/host/bars.h"
#include "tests/kit/phoneTest.h"
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTextEdit>
#include <QWindow>
#include <qpa/qwindowsysteminterface.h>

namespace {

// Notes what an edit let through to its page.
class KeyPage : public QDialog
{
public:
    QList<int> keys;

protected:
    void keyPressEvent(QKeyEvent* event) override { keys.append(event->key()); }
    void keyReleaseEvent(QKeyEvent* event) override { keys.append(event->key()); }
};

class Ime : public PhoneTest
{
protected:
    Ime()
    {
        page.setWindowFlags(Qt::FramelessWindowHint);
        page.setGeometry(0, 0, 800, 480);
        edit.setGeometry(200, 60, 300, 36);
        other.setGeometry(200, 120, 300, 36);
        bar.setGeometry(0, 440, 800, 40);
        bar.SetButton(1, "IME", "abc", nullptr, nullptr);
        page.show();
        page.activateWindow();
        kit::settle();
        edit.setFocus();
    }

    void press(const char* keys)
    {
        for (; *keys; ++keys)
            kit::padKey(*keys);
    }
    // The text that the keys give in a method, in an edit that was empty.
    QString written(const char* method, const char* keys)
    {
        edit.clear();
        qInstallIME(&edit, method);
        press(keys);
        return qReturnLineEdit(&edit);
    }
    void holdKey(Qt::Key key, int repeats)
    {
        for (int i = 0; i <= repeats; ++i)
            QWindowSystemInterface::handleKeyEvent<QWindowSystemInterface::SynchronousDelivery>(
                page.windowHandle(), QEvent::KeyPress, key, Qt::KeypadModifier, QString(QChar(key)), i > 0);
        kit::keyRelease(key, Qt::KeypadModifier, QString(QChar(key)));
    }

    KeyPage page;
    QLineEdit edit{&page};
    QLineEdit other{&page};
    qSoftKeyBar bar{&page};
};

TEST_F(Ime, SmallLettersGoRoundTheKeyWithItsDigitAtTheEnd)
{
    EXPECT_EQ(written("abc", "2"), "a");
    EXPECT_EQ(written("abc", "22"), "b");
    EXPECT_EQ(written("abc", "222"), "c");
    EXPECT_EQ(written("abc", "2222"), "2");
    EXPECT_EQ(written("abc", "22222"), "a");
    EXPECT_EQ(written("abc", "77777"), "7");
    EXPECT_EQ(written("abc", "9999"), "z");
}

TEST_F(Ime, CapitalLettersComeFromTheSameKeys)
{
    EXPECT_EQ(written("ABC", "2"), "A");
    EXPECT_EQ(written("ABC", "777"), "R");
    EXPECT_EQ(written("ABC", "2222"), "2");
}

TEST_F(Ime, EveryLetterOfTheAlphabetIsOnAKey)
{
    QString all;
    for (char key = '2'; key <= '9'; ++key) {
        const int letters = key == '7' || key == '9' ? 4 : 3;
        for (int i = 1; i <= letters; ++i)
            all += written("abc", QByteArray(i, key).constData());
    }
    EXPECT_EQ(all, "abcdefghijklmnopqrstuvwxyz");
}

TEST_F(Ime, MixedMethodWritesTheFirstLetterOfTheTextAsACapital)
{
    EXPECT_EQ(written("2aB", "266"), "An");
    EXPECT_EQ(written("2aB", "2222"), "2");
}

TEST_F(Ime, MixedMethodWritesACapitalAfterABlank)
{
    EXPECT_EQ(written("2aB", "2305"), "Ad J");
}

TEST_F(Ime, MixedMethodLooksAtTheTextBeforeTheCursor)
{
    qInstallIME(&edit, "2aB");
    edit.setText("nna");
    edit.setCursorPosition(0);
    press("2");
    EXPECT_EQ(qReturnLineEdit(&edit), "Anna");
    press("2");
    EXPECT_EQ(qReturnLineEdit(&edit), "Aanna");
}

TEST_F(Ime, OneAndStarGiveSignsZeroABlankAndHashItself)
{
    EXPECT_EQ(written("abc", "1"), ".");
    EXPECT_EQ(written("abc", "11"), "@");
    EXPECT_EQ(written("abc", "0"), " ");
    EXPECT_EQ(written("abc", "00"), "0");
    EXPECT_EQ(written("abc", "*"), "*");
    EXPECT_EQ(written("abc", "**"), "+");
    EXPECT_EQ(written("abc", "##"), "##");
}

TEST_F(Ime, DigitMethodWritesWhatIsOnTheKey)
{
    qInstallIME(&edit, "123");
    press("0123456789*#");
    EXPECT_EQ(edit.text(), "0123456789*#");
}

TEST_F(Ime, AddressMethodWritesAPointForStarAndNothingForHash)
{
    qInstallIME(&edit, "123_IP");
    press("10*0#*0*1");
    EXPECT_EQ(edit.text(), "10.0.0.1");
}

TEST_F(Ime, LetterIsShownWhileItIsChosenButNotYetInTheText)
{
    qInstallIME(&edit, "abc");
    const QImage before = edit.grab().toImage();
    press("2");
    EXPECT_EQ(edit.text(), "");
    EXPECT_NE(edit.grab().toImage(), before);
    qReturnLineEdit(&edit);
    EXPECT_EQ(edit.text(), "a");
}

TEST_F(Ime, LetterIsTakenAfterASecond)
{
    qInstallIME(&edit, "abc");
    press("2");
    kit::stepTime(900);
    EXPECT_EQ(edit.text(), "");
    kit::stepTime(150);
    EXPECT_EQ(edit.text(), "a");
    press("2");
    EXPECT_EQ(qReturnLineEdit(&edit), "aa");
}

TEST_F(Ime, EveryPressGivesAnotherSecond)
{
    qInstallIME(&edit, "abc");
    press("2");
    kit::stepTime(900);
    press("2");
    kit::stepTime(900);
    EXPECT_EQ(edit.text(), "");
    kit::stepTime(150);
    EXPECT_EQ(edit.text(), "b");
}

TEST_F(Ime, AnotherDigitKeyTakesTheLetter)
{
    qInstallIME(&edit, "abc");
    press("23");
    EXPECT_EQ(edit.text(), "a");
    EXPECT_EQ(qReturnLineEdit(&edit), "ad");
}

TEST_F(Ime, AnyOtherKeyTakesTheLetterBeforeItActs)
{
    qInstallIME(&edit, "abc");
    press("2");
    kit::key(Qt::Key_Backspace);
    EXPECT_EQ(edit.text(), "");
    press("22");
    kit::key(Qt::Key_Left);
    EXPECT_EQ(edit.text(), "b");
    EXPECT_EQ(edit.cursorPosition(), 0);
}

TEST_F(Ime, PageThatFiltersTheApplicationFindsTheLetterInTheText)
{
    struct Filter : QObject
    {
        bool eventFilter(QObject*, QEvent* event) override
        {
            if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F9)
                seen = edit->text();
            return false;
        }
        QLineEdit* edit = nullptr;
        QString seen;
    } filter;
    filter.edit = &edit;
    qApp->installEventFilter(&filter);
    qInstallIME(&edit, "abc");
    press("222");
    kit::key(Qt::Key_F9);
    EXPECT_EQ(filter.seen, "c");
}

TEST_F(Ime, TouchAnywhereTakesTheLetterBeforeItActs)
{
    QPushButton save("Save", &page);
    save.setGeometry(10, 300, 100, 36);
    save.setFocusPolicy(Qt::NoFocus);
    save.show();
    QString saved;
    QObject::connect(&save, &QPushButton::clicked, [&] { saved = edit.text(); });
    qInstallIME(&edit, "abc");
    press("33");
    kit::tap(&save);
    EXPECT_EQ(saved, "e");
}

TEST_F(Ime, LeavingTheEditTakesTheLetter)
{
    qInstallIME(&edit, "abc");
    press("44");
    other.setFocus();
    EXPECT_EQ(edit.text(), "h");
}

TEST_F(Ime, PageThatHidesTakesTheLetter)
{
    qInstallIME(&edit, "abc");
    press("44");
    page.hide();
    kit::settle();
    EXPECT_EQ(edit.text(), "h");
}

TEST_F(Ime, PageThatSetsAnotherTextDropsTheLetter)
{
    qInstallIME(&edit, "abc");
    press("2");
    edit.setText("stored");
    kit::stepTime(1100);
    EXPECT_EQ(edit.text(), "stored");
    press("2");
    EXPECT_EQ(qReturnLineEdit(&edit), "storeda");
}

TEST_F(Ime, LettersOfAPcKeyboardGoStraightIntoTheTextInEveryMethod)
{
    for (const char* method : {"2aB", "ABC", "abc", "123", "123_IP"}) {
        edit.clear();
        qInstallIME(&edit, method);
        kit::type("aB2*#");
        EXPECT_EQ(edit.text(), "aB2*#") << method;
    }
}

TEST_F(Ime, LetterReplacesTheSelection)
{
    qInstallIME(&edit, "abc");
    edit.setText("xyz");
    edit.setSelection(1, 1);
    press("2");
    EXPECT_EQ(qReturnLineEdit(&edit), "xaz");
}

TEST_F(Ime, TextNeverGrowsPastItsMaximumLength)
{
    qInstallIME(&edit, "abc");
    edit.setMaxLength(2);
    press("233445");
    EXPECT_EQ(qReturnLineEdit(&edit), "ae");
    edit.setSelection(0, 1);
    press("5");
    EXPECT_EQ(qReturnLineEdit(&edit), "je");
}

TEST_F(Ime, FullEditShowsNoLetterToChoose)
{
    qInstallIME(&edit, "abc");
    edit.setMaxLength(2);
    edit.setText("xy");
    const QImage before = edit.grab().toImage();
    press("2");
    EXPECT_EQ(edit.grab().toImage(), before);
    kit::stepTime(1100);
    EXPECT_EQ(edit.text(), "xy");
}

TEST_F(Ime, LastLetterThatFitsCanStillBeChosen)
{
    qInstallIME(&edit, "abc");
    edit.setMaxLength(1);
    press("222");
    EXPECT_EQ(qReturnLineEdit(&edit), "c");
}

TEST_F(Ime, ReadOnlyEditTakesNothing)
{
    qInstallIME(&edit, "abc");
    edit.setText("fixed");
    edit.setReadOnly(true);
    press("2");
    EXPECT_EQ(qReturnLineEdit(&edit), "fixed");
}

TEST_F(Ime, PasswordIsWrittenLikeAnyTextAndNeverShown)
{
    edit.setEchoMode(QLineEdit::Password);
    qInstallIME(&edit, "abc");
    press("2");
    const QImage choosing = edit.grab().toImage();
    EXPECT_EQ(qReturnLineEdit(&edit), "a");
    const QImage taken = edit.grab().toImage();
    edit.clear();
    press("22");
    EXPECT_EQ(edit.grab().toImage(), choosing);
    EXPECT_EQ(qReturnLineEdit(&edit), "b");
    EXPECT_EQ(edit.grab().toImage(), taken);
}

TEST_F(Ime, SoftKeyPressedByItsKeyFindsTheLetterInTheText)
{
    QString saved;
    QPushButton save;
    QObject::connect(&save, &QPushButton::clicked, [&] { saved = edit.text(); });
    bar.SetButton(0, "Save", "Save", &save, SLOT(click()));
    qInstallIME(&edit, "abc");
    press("333");
    kit::key(Qt::Key_F1);
    EXPECT_EQ(saved, "f");
}

TEST_F(Ime, HeldKeyCountsOnce)
{
    qInstallIME(&edit, "abc,123");
    holdKey(Qt::Key_2, 5);
    EXPECT_EQ(qReturnLineEdit(&edit), "a");
    qSetCurrentIME(&edit, "123");
    holdKey(Qt::Key_2, 5);
    EXPECT_EQ(edit.text(), "a2");
}

TEST_F(Ime, DigitKeysDoNotReachThePage)
{
    qInstallIME(&edit, "abc");
    press("2#0");
    qSetCurrentIME(&edit, "123_IP");
    qInstallIME(&edit, "123_IP");
    press("1#");
    edit.setMaxLength(1);
    press("1");
    EXPECT_TRUE(page.keys.isEmpty());
}

TEST_F(Ime, DigitKeysReachThePageWithoutAnInputMethod)
{
    page.setFocus();
    QPushButton button(&page);
    button.show();
    button.setFocus();
    press("2");
    EXPECT_EQ(page.keys, (QList<int>{Qt::Key_2, Qt::Key_2}));
}

TEST_F(Ime, FirstMethodOfTheListIsTheCurrentOne)
{
    qInstallIME(&edit, "123,2aB,ABC,abc");
    EXPECT_EQ(qGetCurrentIME(&edit), "123");
    qInstallIME(&edit, "2aB,123");
    EXPECT_EQ(qGetCurrentIME(&edit), "2aB");
}

TEST_F(Ime, MethodIsSetOnlyWhenTheEditHasIt)
{
    qInstallIME(&edit, "2aB,ABC,abc,123");
    EXPECT_EQ(qSetCurrentIME(&edit, "abc"), 1);
    EXPECT_EQ(qGetCurrentIME(&edit), "abc");
    EXPECT_EQ(qSetCurrentIME(&edit, "123_IP"), 0);
    EXPECT_EQ(qGetCurrentIME(&edit), "abc");
    EXPECT_EQ(qSetCurrentIME(&other, "abc"), 0);
    EXPECT_EQ(qSetCurrentIME(nullptr, "abc"), 0);
    EXPECT_EQ(qSetCurrentIME(&edit, nullptr), 0);
}

TEST_F(Ime, NoMethodWithoutAnEditOrWithoutInputMethods)
{
    EXPECT_EQ(qGetCurrentIME(nullptr), "");
    EXPECT_EQ(qGetCurrentIME(&edit), "");
    qInstallIME(&edit, "");
    EXPECT_EQ(qGetCurrentIME(&edit), "");
    qInstallIME(nullptr, "abc");
    qUninstallIME(nullptr);
    qShift2NextIME(nullptr);
    EXPECT_EQ(qReturnLineEdit(nullptr), "");
}

TEST_F(Ime, UnknownMethodsOfAListAreLeftOut)
{
    qInstallIME(&edit, " pinyin, abc ,,123");
    EXPECT_EQ(qGetCurrentIME(&edit), "abc");
    qShift2NextIME(&edit);
    EXPECT_EQ(qGetCurrentIME(&edit), "123");
    qInstallIME(&edit, "pinyin");
    EXPECT_EQ(qGetCurrentIME(&edit), "");
}

TEST_F(Ime, NextMethodGoesRoundTheList)
{
    qInstallIME(&edit, "2aB,ABC,abc,123");
    QStringList seen;
    for (int i = 0; i < 5; ++i) {
        seen.append(qGetCurrentIME(&edit));
        qShift2NextIME(&edit);
    }
    EXPECT_EQ(seen.join(' '), "2aB ABC abc 123 2aB");
}

TEST_F(Ime, EveryEditKeepsItsOwnMethod)
{
    qInstallIME(&edit, "2aB,ABC,abc,123");
    qInstallIME(&other, "2aB,ABC,abc,123");
    qSetCurrentIME(&edit, "123");
    EXPECT_EQ(qGetCurrentIME(&other), "2aB");
    qShift2NextIME(&other);
    EXPECT_EQ(qGetCurrentIME(&edit), "123");
}

TEST_F(Ime, UninstallTakesTheLetterAndEndsTheMethods)
{
    qInstallIME(&edit, "abc");
    press("2");
    qUninstallIME(&edit);
    EXPECT_EQ(edit.text(), "a");
    EXPECT_EQ(qGetCurrentIME(&edit), "");
    press("2");
    EXPECT_EQ(edit.text(), "a2");
}

TEST_F(Ime, ImeKeyStepsTheMethodOfTheFocusAndShowsItsName)
{
    qInstallIME(&edit, "2aB,ABC");
    qInstallIME(&other, "123,abc");
    qOnIMEButtonClicked(&page, &bar);
    EXPECT_EQ(qGetCurrentIME(&edit), "ABC");
    EXPECT_EQ(qGetCurrentIME(&other), "123");
    EXPECT_EQ(bar.GetButtonTitle(1), "ABC");
    other.setFocus();
    qOnIMEButtonClicked(&page, &bar);
    EXPECT_EQ(bar.GetButtonTitle(1), "abc");
}

TEST_F(Ime, ImeKeyTakesTheLetterThatIsBeingChosen)
{
    qInstallIME(&edit, "abc,123");
    press("2");
    qOnIMEButtonClicked(&page, &bar);
    EXPECT_EQ(edit.text(), "a");
    press("2");
    EXPECT_EQ(edit.text(), "a2");
}

TEST_F(Ime, ImeKeyLeavesItsTitleWhenTheFocusHasNoMethods)
{
    bar.SetButtonTitle(1, "2aB");
    qOnIMEButtonClicked(&page, &bar);
    EXPECT_EQ(bar.GetButtonTitle(1), "2aB");
    qOnIMEButtonClicked(nullptr, &bar);
    qInstallIME(&edit, "2aB,ABC");
    qOnIMEButtonClicked(&page, nullptr);
    EXPECT_EQ(qGetCurrentIME(&edit), "ABC");
}

TEST_F(Ime, DeleteKeyRemovesTheLetterBeforeTheCursor)
{
    edit.setText("abc");
    edit.setCursorPosition(2);
    qOnBackspaceClicked(&page);
    EXPECT_EQ(edit.text(), "ac");
    EXPECT_EQ(edit.cursorPosition(), 1);
}

TEST_F(Ime, DeleteKeyRemovesTheLetterThatIsBeingChosen)
{
    qInstallIME(&edit, "abc");
    edit.setText("x");
    press("2");
    qOnBackspaceClicked(&page);
    EXPECT_EQ(qReturnLineEdit(&edit), "x");
    kit::stepTime(1100);
    EXPECT_EQ(edit.text(), "x");
}

TEST_F(Ime, DeleteKeyLeavesReadOnlyEditsAndOtherWidgetsAlone)
{
    edit.setText("fixed");
    edit.setReadOnly(true);
    qOnBackspaceClicked(&page);
    EXPECT_EQ(edit.text(), "fixed");
    QPushButton button(&page);
    button.show();
    button.setFocus();
    qOnBackspaceClicked(&page);
    qOnBackspaceClicked(nullptr);
    EXPECT_EQ(edit.text(), "fixed");
    EXPECT_TRUE(page.keys.isEmpty());
}

TEST_F(Ime, LargeEditTakesLettersAndTheDeleteKeyToo)
{
    QTextEdit note(&page);
    note.setGeometry(200, 200, 300, 100);
    note.show();
    note.setFocus();
    qInstallIME(&note, "2aB");
    press("266");
    kit::stepTime(1100);
    EXPECT_EQ(note.toPlainText(), "An");
    EXPECT_TRUE(page.keys.isEmpty());
    qOnBackspaceClicked(&page);
    EXPECT_EQ(note.toPlainText(), "A");
}

TEST_F(Ime, WritingIsTellingThePageThatTheTextWasEdited)
{
    QStringList edited;
    QObject::connect(&edit, &QLineEdit::textEdited, [&](const QString& text) { edited.append(text); });
    qInstallIME(&edit, "123");
    press("12");
    EXPECT_EQ(edited, (QStringList{"1", "12"}));
}

} // namespace
