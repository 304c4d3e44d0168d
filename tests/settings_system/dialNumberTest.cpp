// The box that sets the number of a dial item.
#include "frame/modSetting.h"
#include "settings/system/dlgSetDialNumber.h"
#include "support/host/button.h"
#include "support/host/dialitem.h"
#include "support/host/ime.h"
#include "tests/file/failingCalls.h"
#include "tests/settings_system/systemPageTest.h"
#include <QLabel>
#include <QPointer>
#include <QTimer>

namespace {

const char* const kUserFile = "/rundata/config/user/user.ini";

class DialNumber : public SystemPageTest
{
protected:
    DialNumber() : item(new qDialNumberItem("reception", nullptr))
    {
        writeFile(kUserFile, "[DialNumber]\ndoor=77\n");
    }
    void openBox(qDialNumberItem* number)
    {
        settingDialNum(number, nullptr);
        kit::settle();
        box = page = kit::windows().value(0);
        ASSERT_STREQ(page->metaObject()->className(), "dlgSetDialNumber");
    }
    void tap(const char* button) { kit::tap(child<QPushButton>(button)); }
    QString number() const { return child<QLineEdit>("linDialNumber")->text(); }
    static QString storedNumber() { return stored(kUserFile, "DialNumber", "reception"); }
    bool isGone()
    {
        kit::settle();
        return !box;
    }

    std::unique_ptr<qDialNumberItem> item;
    QPointer<QWidget> box;
};

} // namespace

TEST_F(DialNumber, LooksAsItShould)
{
    openBox(item.get());
    EXPECT_EQ(child<QLabel>("labTitle")->text(), "Please input the phone number:");
    EXPECT_EQ(child<QPushButton>("btnIME")->text(), "123");
    EXPECT_EQ(focusName(), "linDialNumber");
    EXPECT_TRUE(page->testAttribute(Qt::WA_DeleteOnClose));
    EXPECT_TRUE(page->isModal());
    kit::shot("dial-number");
}

TEST_F(DialNumber, ANumberIsStoredAndTheBoxEnds)
{
    openBox(item.get());
    for (const char digit : {'1', '0', '2'})
        kit::padKey(digit);
    tap("btnOK");
    EXPECT_TRUE(isGone());
    EXPECT_EQ(storedNumber(), "102");
    EXPECT_EQ(item->PhoneNumber(), "102");
}

TEST_F(DialNumber, ShowsTheNumberThatIsSet)
{
    item = std::make_unique<qDialNumberItem>("door", nullptr);
    openBox(item.get());
    EXPECT_EQ(number(), "77");
}

TEST_F(DialNumber, AnEmptyOneCannotBeConfirmed)
{
    openBox(item.get());
    kit::BoxAnswers boxes({"ok", "ok"});
    tap("btnOK");
    kit::key(Qt::Key_Return);
    EXPECT_EQ(boxes.titles(), (QStringList{"Note", "Note"}));
    EXPECT_EQ(boxes.texts(), (QStringList{"The phone number is empty!", "The phone number is empty!"}));
    ASSERT_FALSE(isGone());
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(storedNumber(), "(absent)");
}

TEST_F(DialNumber, CancelStoresNothing)
{
    openBox(item.get());
    kit::type("5");
    tap("btnCancel");
    EXPECT_TRUE(isGone());
    EXPECT_EQ(storedNumber(), "(absent)");
}

TEST_F(DialNumber, ButtonsStepTheMethodAndDeleteACharacter)
{
    openBox(item.get());
    for (const char* method : {"2aB", "ABC", "abc", "123"}) {
        tap("btnIME");
        EXPECT_EQ(child<QPushButton>("btnIME")->text(), method);
    }
    kit::type("12");
    tap("btnDelete");
    EXPECT_EQ(number(), "1");
}

TEST_F(DialNumber, ItDoesNotStayBehindAnotherWindow)
{
    openBox(item.get());
    kit::type("5");
    QDialog other;
    other.setGeometry(0, 0, 800, 480);
    other.setModal(true); // one that closes no boxes by itself
    other.show();
    other.activateWindow();
    EXPECT_TRUE(isGone());
    EXPECT_TRUE(other.isVisible());
    EXPECT_EQ(storedNumber(), "(absent)");
}

TEST_F(DialNumber, AWindowThatComesUpOverItsNoteEndsBoth)
{
    openBox(item.get());
    QWidget call;
    call.setGeometry(0, 0, 800, 480);
    QTimer::singleShot(0, &call, &QWidget::show);
    tap("btnOK");
    EXPECT_TRUE(isGone());
    EXPECT_EQ(kit::windows().value(0), &call);
}

TEST_F(DialNumber, ANumberThatCannotBeStoredIsToldAndStays)
{
    openBox(item.get());
    kit::type("42");
    FailingCalls disk;
    disk.setSpace(0);
    kit::BoxAnswers boxes({"ok"});
    tap("btnOK");
    EXPECT_EQ(boxes.texts(), QStringList{"The settings cannot be saved!"});
    ASSERT_FALSE(isGone());
    EXPECT_EQ(number(), "42");
}

TEST_F(DialNumber, AnItemThatIsGoneTakesNothing)
{
    openBox(item.get());
    item.reset();
    kit::type("1");
    tap("btnOK");
    EXPECT_TRUE(isGone());
    EXPECT_EQ(storedNumber(), "(absent)");
}

TEST_F(DialNumber, AnIconThatDialsIsSetAndCalls)
{
    replaceFirmwareFile("/phone/resource/ui-config/media.xml",
                        "<RootMenu title='Media'><item title='Desk' dial='reception'/></RootMenu>");
    settingOpenXml("media.xml");
    kit::settle();
    const QPoint icon(233, 130);
    kit::tap(icon);
    box = page = kit::windows().value(0);
    ASSERT_STREQ(page->metaObject()->className(), "dlgSetDialNumber");
    kit::type("102");
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(isGone());
    kit::tap(icon);
    EXPECT_EQ(logged("dial"), QStringList{"102 -1 0"});
}
