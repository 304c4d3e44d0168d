// The edit that shows masks: typing, deleting, selections, pasting, input methods and characters of any size.
#include "settings/system/passwordLineEdit.h"
#include "support/host/ime.h"
#include "tests/settings_system/systemPageTest.h"
#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>

namespace {

class PasswordEdit : public SystemPageTest
{
protected:
    PasswordEdit() : edit(&window)
    {
        edit.makeConnect();
        edit.setGeometry(100, 100, 300, 36);
        window.resize(800, 480);
        window.show();
        edit.setFocus();
        kit::settle();
    }
    void paste(const QString& text)
    {
        QGuiApplication::clipboard()->setText(text);
        edit.paste();
    }
    void compose(const QString& preedit, const QString& commit, int from = 0, int length = 0)
    {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit, from, length);
        QCoreApplication::sendEvent(&edit, &event);
    }
    void expect(const QString& real, int cursor)
    {
        EXPECT_EQ(edit.realText(), real);
        EXPECT_EQ(edit.text(), QString(real.toUcs4().size(), '*'));
        EXPECT_EQ(edit.cursorPosition(), cursor);
    }

    QWidget window;
    passwordLineEdit edit;
};

} // namespace

TEST_F(PasswordEdit, TypingShowsMasks)
{
    kit::type("abc");
    expect("abc", 3);
    EXPECT_EQ(edit.displayText(), "***");
    EXPECT_EQ(edit.focusPolicy(), Qt::FocusPolicy(11));
}

TEST_F(PasswordEdit, InputMethodsAreToldThatItIsSecret)
{
    EXPECT_EQ(edit.inputMethodHints(), Qt::ImhSensitiveData | Qt::ImhNoPredictiveText);
    EXPECT_EQ(passwordLineEdit().inputMethodHints(), edit.inputMethodHints());
}

TEST_F(PasswordEdit, DeletingTheSecondCharacterKeepsTheCursorBehindTheFirst)
{
    kit::type("abc");
    edit.setCursorPosition(2);
    kit::key(Qt::Key_Backspace);
    expect("ac", 1);
    kit::key(Qt::Key_Delete);
    expect("a", 1);
    kit::key(Qt::Key_Backspace);
    expect("", 0);
    kit::key(Qt::Key_Backspace);
    expect("", 0);
}

TEST_F(PasswordEdit, TypingInTheMiddleGoesThere)
{
    kit::type("ac");
    edit.setCursorPosition(1);
    kit::type("b");
    expect("abc", 2);
    edit.home(false);
    kit::type("xy");
    expect("xyabc", 2);
}

TEST_F(PasswordEdit, ASelectionIsDeletedFromBoth)
{
    kit::type("abcd");
    edit.setSelection(1, 2);
    kit::key(Qt::Key_Backspace);
    expect("ad", 1);
    kit::key(Qt::Key_Backspace);
    expect("d", 0);
}

TEST_F(PasswordEdit, ASelectionIsReplacedByTyping)
{
    kit::type("abcd");
    edit.setSelection(1, 2);
    kit::type("x");
    expect("axd", 2);
    edit.selectAll();
    kit::type("y");
    expect("y", 1);
    kit::type("z");
    expect("yz", 2);
}

TEST_F(PasswordEdit, OneCharacterIsReplacedByOne)
{
    kit::type("abc");
    for (const char* typed : {"x", "*"}) {
        edit.setSelection(1, 1);
        kit::type(typed);
        expect(QString("a%1c").arg(typed), 2);
    }
}

TEST_F(PasswordEdit, StarsAreCharactersLikeOthers)
{
    kit::type("*a*");
    expect("*a*", 3);
    edit.setSelection(0, 2);
    kit::type("*");
    expect("**", 1);
}

TEST_F(PasswordEdit, APasteIsTakenWhole)
{
    paste("hello");
    expect("hello", 5);
    edit.setCursorPosition(1);
    paste("XY");
    expect("hXYello", 3);
    edit.setSelection(0, 3);
    paste("*****");
    expect("*****ello", 5);
    edit.setSelection(5, 4);
    paste("q");
    expect("*****q", 6);
}

TEST_F(PasswordEdit, WhatHasNoRoomIsCutInBoth)
{
    edit.setMaxLength(4);
    kit::type("ab");
    paste("cdef");
    expect("abcd", 4);
    kit::type("x");
    expect("abcd", 4);
}

TEST_F(PasswordEdit, CharactersOfAnySizeHaveOneMask)
{
    kit::type("é中");
    expect("é中", 2);
    paste("😀");
    expect("é中😀", 3);
    kit::type("z");
    expect("é中😀z", 4);
    kit::key(Qt::Key_Backspace);
    kit::key(Qt::Key_Backspace);
    expect("é中", 2);
    edit.setCursorPosition(0);
    paste("😀😀");
    expect("😀😀é中", 2);
    kit::key(Qt::Key_Delete);
    expect("😀😀中", 2);
}

TEST_F(PasswordEdit, AnInputMethodComposesMasked)
{
    kit::type("a");
    compose("*****", "");
    const QImage masked = edit.grab().toImage();
    compose("zhong", "");
    EXPECT_EQ(edit.realText(), "a");
    EXPECT_EQ(edit.grab().toImage(), masked);
    EXPECT_EQ(edit.inputMethodQuery(Qt::ImSurroundingText).toString(), "*");
    compose("", "中文");
    expect("a中文", 3);
    compose("", "x", -2, 2);
    expect("ax", 2);
    compose("", "y", -1, 1);
    expect("ay", 2);
}

TEST_F(PasswordEdit, TheDigitPadWritesIt)
{
    qInstallIME(&edit, "2aB,123");
    kit::padKey('2');
    kit::padKey('2');
    kit::stepTime(1500);
    expect("B", 1);
}

TEST_F(PasswordEdit, TheMaskIsTheOwnersChoice)
{
    kit::type("ab");
    edit.setReplacedChar("#");
    EXPECT_EQ(edit.text(), "##");
    kit::type("c");
    EXPECT_EQ(edit.text(), "###");
    EXPECT_EQ(edit.realText(), "abc");
}

TEST_F(PasswordEdit, WithoutAMaskNothingShowsAndNothingIsLost)
{
    passwordLineEdit bare;
    bare.setParent(&window);
    bare.makeConnect();
    bare.show();
    bare.setFocus();
    kit::type("abc");
    EXPECT_EQ(bare.text(), "");
    EXPECT_EQ(bare.realText(), "abc");
    bare.setReplacedChar("*");
    EXPECT_EQ(bare.text(), "***");
}

TEST_F(PasswordEdit, StartsWithTheStoredText)
{
    writeFile("/rundata/config/user/user.ini", "[A]\nstrPin=ünü\n");
    edit.initDisplayfromFile("/rundata/config/user/user.ini", "A", "strPin");
    expect("ünü", 3);
    kit::key(Qt::Key_Backspace);
    expect("ün", 2);
    edit.initDisplayfromFile("/rundata/config/user/user.ini", "A", "strNone");
    expect("", 0);
}

TEST_F(PasswordEdit, ATextThatTheOwnerSetsIsMaskedToo)
{
    kit::type("abc");
    edit.clear();
    expect("", 0);
    kit::type("x");
    expect("x", 1);
    edit.setText("hello");
    expect("hello", 5);
}

TEST_F(PasswordEdit, BeingConnectedTwiceIsOnce)
{
    edit.makeConnect();
    edit.replace();
    kit::type("ab");
    expect("ab", 2);
}

TEST_F(PasswordEdit, NothingTypedComesBackByUndoOrCopy)
{
    kit::type("abc");
    kit::key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(edit.text().remove('*'), "");
    edit.selectAll();
    edit.copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "***");
}

TEST_F(PasswordEdit, AnInputMethodMayReplaceCharactersByTextThatLooksLikeMasks)
{
    kit::type("ab");
    compose("", "*x", -2, 2);
    expect("*x", 2);
    edit.setText("abc");
    compose("", "*", -1, 1);
    expect("ab*", 3);
    edit.setText("abc");
    compose("", "**", -3, 3);
    expect("**", 2);
    edit.setText("abcd");
    compose("", "*", -3, 1);
    EXPECT_EQ(edit.realText(), "a*cd") << "before the last characters";
    edit.setText("abcd");
    edit.setCursorPosition(1);
    compose("", "*x", 1, 2);
    EXPECT_EQ(edit.realText(), "ab*x") << "behind the cursor";
    edit.setText("abcd");
    edit.setSelection(1, 2);
    compose("", "*", -1, 1);
    expect("*d", 1);
    edit.setText("abcd");
    edit.setSelection(0, 3);
    compose("", "**", 0, 0);
    expect("**d", 2);
}

TEST_F(PasswordEdit, WhatAnInputMethodBringsIsCutToTheRoomThereIs)
{
    edit.setMaxLength(4);
    kit::type("abcd");
    compose("", "*xyz", -2, 2);
    expect("ab*x", 4);
    edit.setMaxLength(10);
    compose("", QString::fromUtf8("\U0001F600*"), -1, 1);
    expect(QString::fromUtf8("ab*\U0001F600*"), 5);
}
