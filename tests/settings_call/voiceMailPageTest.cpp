// The page "Voice Mail" and what the message key does.
#include "settings/call/dlgVoice_Mail_Setting.h"
#include "settings/call/voiceMessage.h"
#include "support/host/button.h"
#include "support/host/image.h"
#include "tests/file/failingCalls.h"
#include "tests/settings_call/callPageTest.h"
#include <QApplication>
#include <QLabel>
#include <QTimer>

namespace {

#define SYSTEM_FILE "/rundata/config/system.ini"
#define ICONS "/phone/resource/theme/default/bmp/icon/"

bool g_isAccountKnown = true;

} // namespace

// An account that the phone service does not know, as another host may have.
extern "C" int __real__Z24phone_GetAccountInfoByIdiP14tagAccountInfo(int index, tagAccountInfo* info);
extern "C" int __wrap__Z24phone_GetAccountInfoByIdiP14tagAccountInfo(int index, tagAccountInfo* info)
{
    return g_isAccountKnown ? __real__Z24phone_GetAccountInfoByIdiP14tagAccountInfo(index, info) : 0;
}

namespace {

class VoiceMailPage : public CallPageTest
{
protected:
    VoiceMailPage()
    {
        for (int index = 0; index < 4; ++index)
            writeFile(accountFile(index), "[account]\nEnable=0\n");
    }
    ~VoiceMailPage() override
    {
        g_isAccountKnown = true;
        hangUpAll();
    }
    void storeNumber(int index, const char* number, const char* section = "account")
    {
        nuxSetRegistryString(accountFile(index), section, "VoiceMail", number);
    }
    void openVoiceMail() { open("Voice Mail"); }
    QString text(const char* label) { return child<QLabel>(label)->text(); }
    bool shows(const char* label, const char* icon)
    {
        return child<QLabel>(label)->pixmap().toImage() == GetImageManager()->GetImage(icon).toImage();
    }
    QStringList numbers()
    {
        QStringList all;
        for (const char* edit : {"editText1", "editText2", "editText3", "editText4"})
            all.append(child<QLineEdit>(edit)->text());
        return all;
    }
    QString topClass() const
    {
        const QWidget* top = kit::windows().value(0);
        return top ? top->metaObject()->className() : "";
    }
};

} // namespace

TEST_F(VoiceMailPage, FourRowsStandInTheirPlaces)
{
    openVoiceMail();
    EXPECT_EQ(pageClass(), "dlgVoice_Mail_Setting");
    EXPECT_EQ(title(), "Voice Mail Setting");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "123", "Delete", "Back"}));
    const int tops[] = {100, 185, 270, 355};
    for (int row = 0; row < 4; ++row) {
        const QByteArray name = "btnDial" + QByteArray::number(row + 1);
        EXPECT_EQ(placeOf(name), QRect(512, tops[row], 54, 54));
        const auto* button = child<qUIPushButton>(name);
        const QString folder("/phone/resource/theme/default/bmp/button/btn_msg_bg0");
        for (int state = 0; state < 3; ++state)
            EXPECT_EQ(GetButtonImage(button, state), folder + QString::number(state + 1) + ".png");
    }
    kit::shot("voice-mail");
}

TEST_F(VoiceMailPage, ARowTellsTheAccountItsStateAndItsMessages)
{
    setLine(0, LINE_REGISTERED, "1001", 3, 2);
    setLine(1, LINE_DEFAULT_ACCOUNT, "1002", 0, 7);
    setLine(2, LINE_REGISTER_FAILED, "", 1, 0);
    openVoiceMail();
    EXPECT_EQ(text("labAccount1"), "1001@pbx.test");
    EXPECT_EQ(text("labVoiceMail1"), "Voice Mail(3 new 2 old)");
    EXPECT_EQ(text("labVoiceMail2"), "Voice Mail(0 new 7 old)");
    EXPECT_EQ(text("labAccount3"), "Account3") << "without a user";
    EXPECT_TRUE(shows("labPic1", ICONS "icon_registered.png"));
    EXPECT_TRUE(shows("labPic2", ICONS "icon_registered.png"));
    EXPECT_TRUE(shows("labPic3", ICONS "icon_unregedited.png"));
    GetLanguageHelper()->SetLanguage("German");
    kit::settle();
    EXPECT_EQ(text("labVoiceMail1"), "Mailbox(3 neu 2 alt)");
    EXPECT_EQ(text("labAccount3"), "Konto3");
    EXPECT_EQ(text("labAccount1"), "1001@pbx.test");
}

TEST_F(VoiceMailPage, AStateThatSaysNothingLeavesThePicture)
{
    openVoiceMail();
    for (const LINE_STATE off : {LINE_DISABLED, LINE_REGISTER_FAILED, LINE_UNREGISTERED}) {
        setLine(0, LINE_REGISTERED);
        EXPECT_TRUE(shows("labPic1", ICONS "icon_registered.png"));
        setLine(0, LINE_REGISTERING);
        EXPECT_TRUE(shows("labPic1", ICONS "icon_registered.png"));
        setLine(0, off);
        EXPECT_TRUE(shows("labPic1", ICONS "icon_unregedited.png")) << off;
        setLine(0, LINE_UNREGISTERING);
        EXPECT_TRUE(shows("labPic1", ICONS "icon_unregedited.png")) << off;
    }
}

TEST_F(VoiceMailPage, AnAccountThatDropsOutIsSeenAtOnceAndOnlyWhileThePageIsShown)
{
    setLine(1, LINE_REGISTERED, "1002", 1, 0);
    openVoiceMail();
    setLine(1, LINE_UNREGISTERED, "1002", 4, 5);
    EXPECT_TRUE(shows("labPic2", ICONS "icon_unregedited.png"));
    EXPECT_EQ(text("labVoiceMail2"), "Voice Mail(4 new 5 old)");
    back();
    setLine(1, LINE_REGISTERED, "1003", 9, 9);
    EXPECT_EQ(text("labAccount2"), "1002@pbx.test") << "hidden";
    openVoiceMail();
    EXPECT_EQ(text("labAccount2"), "1003@pbx.test");
    EXPECT_EQ(text("labVoiceMail2"), "Voice Mail(9 new 9 old)");
}

TEST_F(VoiceMailPage, TakesRefreshesAndNothingElse)
{
    openVoiceMail();
    auto* voiceMail = dynamic_cast<dlgVoice_Mail_Setting*>(page);
    msgObject change(CONFIG_MSG_BCAST_CHANGED, 3, 0);
    EXPECT_EQ(voiceMail->TryThreadMessage(change), 0);
    msgObject beyond(PHONE_PUBLIC_MSG_ACCOUNT_REFRESH, 4, LINE_REGISTERED);
    EXPECT_EQ(voiceMail->TryThreadMessage(beyond), 1);
    msgObject refresh(PHONE_PUBLIC_MSG_ACCOUNT_REFRESH, 3, LINE_REGISTERED);
    EXPECT_EQ(voiceMail->TryThreadMessage(refresh), 1);
}

TEST_F(VoiceMailPage, EachShowHasTheStoredNumbersAndBeginsInTheFirst)
{
    storeNumber(0, "*97");
    storeNumber(3, "8500");
    openVoiceMail();
    EXPECT_EQ(numbers(), (QStringList{"*97", "", "", "8500"}));
    EXPECT_EQ(focusName(), "editText1");
    enter("editText2", "1");
    softKey(1);
    EXPECT_EQ(softKeyTitle(1), "2aB");
    back();
    EXPECT_FALSE(page->isVisible());
    openVoiceMail();
    EXPECT_EQ(numbers(), (QStringList{"*97", "", "", "8500"}));
    EXPECT_EQ(focusName(), "editText1");
    kit::tap(child<QLineEdit>("editText2"));
    EXPECT_EQ(softKeyTitle(1), "123") << "the input method as well";
    EXPECT_EQ(child<QLineEdit>("editText4")->maxLength(), 99);
}

TEST_F(VoiceMailPage, SaveStoresAllFourAndTellsWhetherAnythingDiffersOrNot)
{
    openVoiceMail();
    enter("editText1", "*97");
    enter("editText2", "+49 30 1");
    enter("editText3", "any thing!");
    enter("editText4", "1");
    expectSaved();
    expectChangesTold({"16 0"});
    expectStored(accountFile(0), "account", "VoiceMail", "*97");
    expectStored(accountFile(1), "account", "VoiceMail", "+49 30 1");
    expectStored(accountFile(2), "account", "VoiceMail", "any thing!");
    expectStored(accountFile(3), "account", "VoiceMail", "1");
    openVoiceMail();
    expectSaved();
    expectChangesTold({"16 0"});
}

TEST_F(VoiceMailPage, AFullDiskIsToldAndWhatWasTypedStays)
{
    openVoiceMail();
    enter("editText3", "4711");
    expectFailedSave(accountFile(2));
    EXPECT_EQ(child<QLineEdit>("editText3")->text(), "4711");
}

TEST_F(VoiceMailPage, DeleteTakesOneCharacterAndTheInputMethodCanBeStepped)
{
    storeNumber(0, "123");
    openVoiceMail();
    kit::tap(child<QLineEdit>("editText1"));
    kit::key(Qt::Key_End);
    softKey(2);
    EXPECT_EQ(child<QLineEdit>("editText1")->text(), "12");
    softKey(1);
    EXPECT_EQ(softKeyTitle(1), "2aB");
    kit::key(Qt::Key_Down);
    EXPECT_EQ(softKeyTitle(1), "") << "a button has none";
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName(), "editText2");
    EXPECT_EQ(softKeyTitle(1), "123");
    EXPECT_TRUE(traces().contains("-----dlgVoice_Mail_Setting installEventFilter----------"));
    back();
    EXPECT_TRUE(traces().contains("-----dlgVoice_Mail_Setting removeEventFilter----------"));
}

TEST_F(VoiceMailPage, AButtonDialsWhatItsRowShowsOnItsLine)
{
    for (int index = 0; index < 4; ++index)
        setLine(index, index == 2 ? LINE_DEFAULT_ACCOUNT : LINE_REGISTERED);
    storeNumber(1, "8500");
    openVoiceMail();
    enter("editText1", "*97");
    const kit::BoxAnswers boxes;
    QStringList dialled;
    for (int row = 1; row <= 4; ++row) {
        if (row > 2)
            enter(QByteArray("editText" + QByteArray::number(row)), QString::number(row));
        kit::tap(child<QWidget>(QByteArray("btnDial" + QByteArray::number(row))));
        hangUpAll();
    }
    EXPECT_EQ(logged("dial"), (QStringList{"*97 0 -1", "8500 1 -1", "3 2 -1", "4 3 -1"}));
    EXPECT_EQ(stored(accountFile(0), "account", "VoiceMail"), "(absent)") << "dialled, not stored";
}

TEST_F(VoiceMailPage, AButtonOfALineThatIsNotRegisteredSaysSo)
{
    openVoiceMail();
    for (int row = 1; row <= 4; ++row) {
        setLine(row - 1, LINE_REGISTERING);
        kit::BoxAnswers boxes({"ok"});
        kit::tap(child<QWidget>(QByteArray("btnDial" + QByteArray::number(row))));
        EXPECT_EQ(boxes.titles(), QStringList{"Note"});
        EXPECT_EQ(boxes.texts(), QStringList{"Account is invalid!"}) << row;
    }
    EXPECT_EQ(logged("dial"), QStringList());
}

TEST_F(VoiceMailPage, AnEmptyNumberIsAskedForAndThenToldWithTwoMarksByTheThird)
{
    openVoiceMail();
    for (int row = 1; row <= 4; ++row) {
        setLine(row - 1, LINE_REGISTERED);
        mark();
        kit::BoxAnswers boxes({"ok"});
        kit::tap(child<QWidget>(QByteArray("btnDial" + QByteArray::number(row))));
        EXPECT_EQ(logged("dial"), QStringList{QString(" %1 -1").arg(row - 1)});
        EXPECT_EQ(boxes.texts(),
                  QStringList{row == 3 ? "Voice mail number is invalid!!" : "Voice mail number is invalid!"});
    }
}

TEST_F(VoiceMailPage, TheCallHasGoneOutWhenItsEmptyNumberIsTold)
{
    openVoiceMail();
    for (int row = 1; row <= 4; ++row) {
        setLine(row - 1, LINE_REGISTERED);
        mark();
        const kit::BoxAnswers boxes({"keep"});
        QStringList dialled;
        QTimer look;
        look.callOnTimeout([&] {
            QWidget* box = QApplication::activeModalWidget();
            if (boxes.texts().isEmpty() || !box || box == page)
                return;
            dialled = logged("dial");
            kit::tap(box->findChild<QWidget*>("btnOK"));
        });
        look.start(1);
        kit::tap(child<QWidget>(QByteArray("btnDial" + QByteArray::number(row))));
        EXPECT_EQ(boxes.texts().size(), 1);
        EXPECT_EQ(dialled, QStringList{QString(" %1 -1").arg(row - 1)});
    }
}

TEST_F(VoiceMailPage, OnlyTheSecondDoesNotMindAnAccountThatNobodyKnows)
{
    openVoiceMail();
    g_isAccountKnown = false;
    {
        kit::BoxAnswers boxes({"ok", "ok", "ok", "ok"});
        for (int row = 1; row <= 4; ++row)
            kit::tap(child<QWidget>(QByteArray("btnDial" + QByteArray::number(row))));
        EXPECT_EQ(boxes.texts(), (QStringList{"Account is invalid!", "Voice mail number is invalid!",
                                              "Account is invalid!", "Account is invalid!"}));
    }
    enter("editText2", "8500");
    const kit::BoxAnswers none;
    kit::tap(child<QWidget>("btnDial2"));
    EXPECT_TRUE(none.texts().isEmpty());
    EXPECT_EQ(logged("dial"), QStringList());
}

TEST_F(VoiceMailPage, TheMessageKeyDialsTheFirstRegisteredLineWithMessagesAndANumber)
{
    setLine(0, LINE_REGISTERING, "1001", 5, 0);
    setLine(1, LINE_REGISTERED, "1002", 0, 5);
    setLine(2, LINE_DEFAULT_ACCOUNT, "1003", 1, 0);
    setLine(3, LINE_REGISTERED, "1004", 1, 0);
    for (int index = 0; index < 4; ++index)
        storeNumber(index, qPrintable(QString::number(8500 + index)));
    EXPECT_EQ(DoVoiceMessageDialOut(), 0);
    EXPECT_EQ(logged("dial"), QStringList{"8502 2 -2"});
    EXPECT_EQ(kit::windows().size(), 0) << "no page";
}

TEST_F(VoiceMailPage, TheMessageKeyFindsTheNumberInASectionOfEitherSpelling)
{
    setLine(1, LINE_REGISTERED, "1002", 1, 0);
    storeNumber(1, "8501", "Account");
    DoVoiceMessageDialOut();
    EXPECT_EQ(logged("dial"), QStringList{"8501 1 -2"});
}

TEST_F(VoiceMailPage, WithoutARegisteredLineTheMessageKeyOpensThePage)
{
    storeNumber(0, "8500");
    setLine(0, LINE_UNREGISTERED, "1001", 4, 0);
    EXPECT_EQ(DoVoiceMessageDialOut(), 0);
    kit::settle();
    EXPECT_EQ(topClass(), "dlgVoice_Mail_Setting");
    EXPECT_EQ(logged("dial"), QStringList());
    EXPECT_EQ(kit::windows().value(0)->findChild<qLeftBar*>()->title(), "Voice Mail");
}

TEST_F(VoiceMailPage, WithMessagesAndNoNumberOrNeitherTheMessageKeyOpensThePage)
{
    setLine(0, LINE_REGISTERED, "1001", 4, 0);
    setLine(1, LINE_REGISTERED, "1002", 0, 0);
    storeNumber(1, "8501");
    DoVoiceMessageDialOut();
    kit::settle();
    EXPECT_EQ(topClass(), "dlgVoice_Mail_Setting");
    EXPECT_EQ(logged("dial"), QStringList());
}

TEST_F(VoiceMailPage, ThePageMessageDialsOnlyWhereThatIsSwitchedOn)
{
    setLine(0, LINE_REGISTERED, "1001", 4, 0);
    storeNumber(0, "8500");
    open("Message");
    EXPECT_EQ(pageClass(), "dlgVoice_Mail_Setting");
    back();
    EXPECT_EQ(logged("dial"), QStringList());
    nuxSetRegistryInt(SYSTEM_FILE, "Features", "bAutoCallOutMessage", 1);
    open("Message");
    EXPECT_EQ(logged("dial"), QStringList{"8500 0 -2"});
}

TEST_F(VoiceMailPage, ALongAccountIsShortenedInItsMiddle)
{
    setLine(0, LINE_REGISTERED, "anna-maria.hohenstein.sigmaringen.telefonie.beispiel-unternehmen", 0, 0);
    openVoiceMail();
    const QLabel* label = child<QLabel>("labAccount1");
    EXPECT_TRUE(label->text().contains(QChar(0x2026))) << label->text().toStdString();
    EXPECT_TRUE(label->text().startsWith("anna-"));
    EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width());
}
