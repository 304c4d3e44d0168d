// The dial screen: what is typed, who is offered, which line, and what becomes of it.
#include "host/desktop/dialLines.h"
#include "host/desktop/dialList.h"
#include "host/desktop/frmCall.h"
#include "host/desktop/frmDial.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "support/host/message.h"
#include "support/host/registry.h"
#include "tests/desktop/desktopTest.h"
#include "tests/kit/kitTime.h"
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>

namespace {

const char* const kUserIni = "/rundata/config/user/user.ini";
const char* const kBook = "<contactData><group name=\"A\">"
                          "<contact name=\"Anna Berg\" number=\"1002\" line=\"2\"/>"
                          "<contact name=\"Front desk\" number=\"80-01\" line=\"-1\"/>"
                          "<contact name=\"Öttl\" number=\"555\" line=\"-1\"/></group></contactData>";
const char* const kCalls = "<CallHistory>"
                           "<Call number=\"804412\" name=\"\" line=\"1\" direction=\"out\" "
                           "start=\"2026-11-21 14:02:00\" seconds=\"9\"/>"
                           "<Call number=\"1002\" name=\"\" line=\"1\" direction=\"in\" start=\"2026-11-21 "
                           "13:40:00\" seconds=\"9\"/>"
                           "<Call number=\"804412\" name=\"\" line=\"1\" direction=\"out\" "
                           "start=\"2026-11-21 12:00:00\" seconds=\"0\"/>"
                           "</CallHistory>";

class DialScreen : public DesktopTest
{
protected:
    DialScreen()
    {
        writeFile("/rundata/data/contactData.xml", kBook);
        writeFile("/rundata/data/callHistory.xml", kCalls);
        callScreenInstall();
        setSendKey("0");
        below.setGeometry(0, 0, 800, 480);
        below.show();
        kit::settle();
    }
    void open(const QString& typed = QString(), int line = -1)
    {
        dialScreenOpen(typed, line);
        screen = kit::windows().first();
        ASSERT_NE(qobject_cast<frmDial*>(screen), nullptr);
        // The lists come from another thread.
        ASSERT_TRUE(kit::waitUntil(
            [this] { return !list()->rows().isEmpty() || !number()->text().isEmpty(); }, 20000));
        kit::settle();
    }
    QLineEdit* number() const { return screen->findChild<QLineEdit*>("editNumber"); }
    dialList* list() const { return screen->findChild<dialList*>("lstEntries"); }
    dialLines* lines() const { return screen->findChild<dialLines*>("wgtLines"); }
    QWidget* key(const char* name) const { return screen->findChild<QWidget*>(name); }
    void tapRow(int row) const
    {
        kit::tap(list()->mapToGlobal(QPoint(100, 6 + row * dialList::ROW_HEIGHT + 20)));
    }
    bool isOpen() const { return screen->isVisible(); }
    static QString called()
    {
        const QList<tagCall> calls = phoneService::instance().calls();
        return calls.isEmpty() ? ""
                               : calls.last().strNumber + " on " + QString::number(calls.last().nAccount);
    }
    bool offers(const QString& rows) const
    {
        return kit::waitUntil([&] { return list()->text() == rows; }, 20000);
    }
    static void setSendKey(const char* type)
    {
        nuxSetRegistryString(kUserIni, "KeyAsSend", "eType", type);
        msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_KEY_AS_SEND, 0);
        kit::settle();
    }
    static void setHotline(const char* target, const char* delay)
    {
        nuxSetRegistryString(kUserIni, "Hotline", "strNumber", target);
        nuxSetRegistryString(kUserIni, "Hotline", "nTimeDelay", delay);
    }

    QWidget below;
    QWidget* screen = nullptr;
};

} // namespace

TEST_F(DialScreen, TheTouchPadTypesErasesAndCalls)
{
    open();
    EXPECT_EQ(pageTitle(screen), "Dial");
    EXPECT_EQ(softKeys(screen), "Call|123|Delete|Back");
    for (const char* name : {"key1", "key2", "key3", "key4", "key5", "key6", "key7", "key8", "key9",
                             "keyStar", "key0", "keyHash"}) {
        EXPECT_GE(key(name)->width(), 48) << name;
        EXPECT_GE(key(name)->height(), 48) << name;
        kit::tap(key(name));
    }
    EXPECT_EQ(number()->text(), "123456789*0#");
    kit::shot("dial-typed");
    tapSoftKey(screen, 2);
    EXPECT_EQ(number()->text(), "123456789*0");
    kit::tap(key("btnCall"));
    EXPECT_EQ(called(), "123456789*0 on 0");
    EXPECT_FALSE(isOpen());
}

TEST_F(DialScreen, AZeroThatIsHeldIsAPlus)
{
    open();
    const QPoint zero = key("key0")->mapToGlobal(key("key0")->rect().center());
    kit::press(zero);
    kit::stepTime(800);
    kit::release(zero);
    kit::tap(key("key4"));
    EXPECT_EQ(number()->text(), "+4");
}

TEST_F(DialScreen, TheDigitThatOpensItIsNotReplacedByTheNext)
{
    for (int time = 0; time < 3; ++time) {
        dialScreenOpen("5");
        kit::settle();
        QLineEdit* edit = kit::windows().value(0)->findChild<QLineEdit*>("editNumber");
        ASSERT_NE(edit, nullptr);
        EXPECT_FALSE(edit->hasSelectedText());
        kit::type("6");
        EXPECT_EQ(edit->text(), "56") << time;
        kit::windows().value(0)->close();
        kit::settle();
    }
}

TEST_F(DialScreen, KeysTypeAndOkCalls)
{
    open("8");
    for (const char sign : {'0', '#', '7'})
        kit::padKey(sign);
    EXPECT_EQ(number()->text(), "80#7");
    kit::key(Qt::Key_Backspace);
    kit::key(Qt::Key_Return);
    EXPECT_EQ(called(), "80# on 0");
}

TEST_F(DialScreen, AnAddressIsTypedOrPastedWithoutWhatBreaksLines)
{
    open();
    kit::type("sip:anna@pbx.example.org");
    kit::key(Qt::Key_Return);
    EXPECT_EQ(called(), "sip:anna@pbx.example.org on 0");
    hangUpAll();
    open();
    QApplication::clipboard()->setText(QString("sip:bob@pbx\r\nVia: x") + QChar(0x2028) + QChar(0));
    kit::key(Qt::Key_V, Qt::ControlModifier);
    for (const QChar letter : number()->text())
        EXPECT_NE(letter.category(), QChar::Other_Control);
    EXPECT_TRUE(number()->text().startsWith("sip:bob@pbx")) << number()->text().toStdString();
    kit::key(Qt::Key_Return);
    for (const tagCall& call : phoneService::instance().calls())
        EXPECT_FALSE(call.strNumber.contains('\n') || call.strNumber.contains(' '));
}

TEST_F(DialScreen, ANumberIsNoLongerThanTheBackendTakes)
{
    open();
    number()->insert(QString(300, '1'));
    EXPECT_EQ(number()->text().size(), 128);
}

TEST_F(DialScreen, OffersTheLastNumbersOnceEachNewestFirst)
{
    open();
    EXPECT_EQ(list()->rows().size(), 2);
    EXPECT_TRUE(list()->text().startsWith("804412 ")) << list()->text().toStdString();
    EXPECT_TRUE(list()->text().contains("|Anna Berg ")) << list()->text().toStdString();
    kit::shot("dial-empty");
}

TEST_F(DialScreen, OffersWhoMatchesByNumberByKeysAndByName)
{
    open();
    kit::padKey('8');
    kit::padKey('0');
    EXPECT_EQ(list()->rows().size(), 2);
    EXPECT_TRUE(list()->text().startsWith("Front desk 8001|804412 ")) << list()->text().toStdString();
    kit::shot("dial-offers");
    kit::key(Qt::Key_Backspace);
    kit::key(Qt::Key_Backspace);
    for (const char sign : {'2', '3', '7'}) // "ber", of the second word
        kit::padKey(sign);
    EXPECT_TRUE(offers("Anna Berg 1002"));
    number()->clear();
    kit::padKey('6');
    kit::padKey('8'); // "ot", with its dots
    EXPECT_TRUE(offers("Öttl 555"));
    number()->clear();
    kit::type("fRonT");
    EXPECT_TRUE(offers("Front desk 8001"));
    number()->setText("nobody");
    EXPECT_TRUE(offers(""));
}

TEST_F(DialScreen, ASecondTouchOfARowCallsItOnItsLine)
{
    open("1");
    ASSERT_TRUE(offers("Anna Berg 1002"));
    tapRow(0);
    EXPECT_EQ(list()->currentRow(), 0);
    EXPECT_EQ(called(), "");
    tapRow(0);
    EXPECT_EQ(called(), "1002 on 2");
}

TEST_F(DialScreen, ArrowsGoThroughTheRowsToTheLinesAndRound)
{
    open();
    EXPECT_EQ(list()->currentRow(), -1);
    for (const int row : {0, 1, -1}) {
        kit::key(Qt::Key_Down);
        EXPECT_EQ(list()->currentRow(), row);
    }
    EXPECT_TRUE(lines()->hasFocus());
    kit::key(Qt::Key_Right);
    kit::key(Qt::Key_Right);
    EXPECT_EQ(lines()->line(), 1);
    kit::key(Qt::Key_Left);
    EXPECT_EQ(lines()->line(), 0);
    kit::key(Qt::Key_Left);
    kit::key(Qt::Key_Left);
    EXPECT_EQ(lines()->line(), 3) << "round";
    kit::key(Qt::Key_Down);
    EXPECT_TRUE(number()->hasFocus());
    kit::key(Qt::Key_Up);
    EXPECT_TRUE(lines()->hasFocus());
    kit::key(Qt::Key_Up);
    EXPECT_EQ(list()->currentRow(), 1);
    kit::key(Qt::Key_Return);
    EXPECT_EQ(called(), "1002 on 3");
}

TEST_F(DialScreen, UpGoesBackThroughTheRows)
{
    open();
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Down);
    for (const int row : {0, -1}) {
        kit::key(Qt::Key_Up);
        EXPECT_EQ(list()->currentRow(), row);
        EXPECT_TRUE(number()->hasFocus());
    }
    kit::key(Qt::Key_Up);
    EXPECT_TRUE(lines()->hasFocus());
}

// Who is put through has no line to choose.
TEST_F(DialScreen, WithoutLinesUpComesFromTheNumberToTheLastRow)
{
    ASSERT_TRUE(phoneSimulation::instance()->ring("4711", 0, ""));
    kit::settle();
    const int call = phoneService::instance().calls()[0].nId;
    ASSERT_TRUE(phoneService::instance().answer(call));
    dialScreenOpenFor(DIAL_TRANSFER, call);
    screen = kit::windows().first();
    ASSERT_NE(qobject_cast<frmDial*>(screen), nullptr);
    ASSERT_TRUE(kit::waitUntil([this] { return list()->rows().size() == 2; }, 20000));
    for (const int row : {1, 0, -1, 1}) {
        kit::key(Qt::Key_Up);
        EXPECT_EQ(list()->currentRow(), row);
    }
    kit::key(Qt::Key_Down);
    EXPECT_EQ(list()->currentRow(), -1);
    EXPECT_TRUE(number()->hasFocus());
}

TEST_F(DialScreen, HangUpAndBackLeaveItFromTheNumber)
{
    for (const Qt::Key leaves : {Qt::Key_Hangup, Qt::Key_Back}) {
        open("4711");
        ASSERT_TRUE(number()->hasFocus());
        kit::key(leaves);
        EXPECT_FALSE(isOpen()) << leaves;
        EXPECT_EQ(called(), "");
    }
}

// The files are read while the screen is up already, with what was read before.
TEST_F(DialScreen, WhoWasChosenStaysChosenWhenTheFilesHaveBeenRead)
{
    open();
    kit::key(Qt::Key_Escape);
    QByteArray calls = kCalls;
    calls.replace("<CallHistory>", "<CallHistory><Call number=\"77\" name=\"\" line=\"1\" direction=\"out\" "
                                   "start=\"2026-11-21 15:00:00\" seconds=\"9\"/>");
    writeFile("/rundata/data/callHistory.xml", calls);
    dialScreenOpen();
    ASSERT_EQ(list()->rows().size(), 2);
    list()->setCurrentRow(1);
    ASSERT_TRUE(kit::waitUntil([this] { return list()->rows().size() == 3; }, 20000));
    ASSERT_EQ(list()->currentRow(), 2);
    EXPECT_EQ(list()->rows()[2].strNumber, "1002");
    kit::key(Qt::Key_Escape);
    // One that is not there any more is nobody.
    writeFile("/rundata/data/callHistory.xml", "<CallHistory/>");
    dialScreenOpen();
    list()->setCurrentRow(2);
    ASSERT_TRUE(kit::waitUntil([this] { return list()->rows().isEmpty(); }, 20000));
    EXPECT_EQ(list()->currentRow(), -1);
}

TEST_F(DialScreen, ADigitOnTheLinesGoesToTheNumber)
{
    open();
    kit::key(Qt::Key_Up);
    ASSERT_TRUE(lines()->hasFocus());
    kit::padKey('4');
    EXPECT_EQ(number()->text(), "4");
    EXPECT_TRUE(number()->hasFocus());
}

TEST_F(DialScreen, ALineIsChosenByFingerUnlessItIsOff)
{
    tagLineSetting off;
    off.state = LINE_REGISTER_FAILED;
    phoneSimulation::instance()->setLine(2, off);
    open("4711");
    EXPECT_EQ(lines()->text(), "*Auto|Line 1 1001|Line 2 1002|Line 3 Failed|Line 4 1004");
    const auto touch = [this](int index) {
        kit::tap(lines()->mapToGlobal(QPoint((2 * index + 1) * lines()->width() / 10, 40)));
    };
    touch(3);
    EXPECT_EQ(lines()->line(), -1);
    touch(2);
    EXPECT_EQ(lines()->line(), 1);
    kit::shot("dial-lines");
    // It goes off while it is chosen.
    phoneSimulation::instance()->setLine(1, off);
    kit::settle();
    EXPECT_EQ(lines()->line(), -1);
    touch(4);
    kit::key(Qt::Key_Return);
    EXPECT_EQ(called(), "4711 on 3");
}

TEST_F(DialScreen, ALineThatCannotRegisterIsToldApartFromOneThatIsOff)
{
    tagLineSetting line;
    line.state = LINE_DISABLED;
    phoneSimulation::instance()->setLine(1, line);
    line.state = LINE_REGISTER_FAILED;
    phoneSimulation::instance()->setLine(2, line);
    line.user = "";
    phoneSimulation::instance()->setLine(3, line);
    open("4711");
    EXPECT_EQ(lines()->text(), "*Auto|Line 1 1001|Line 2 Off|Line 3 Failed|Line 4 Off");
    kit::shot("dial-line-failed");
}

TEST_F(DialScreen, TheAnalogueLineIsOfferedWhereThereIsOne)
{
    phoneSimulation::instance()->setPstn(1);
    open("4711", PHONE_LINE_PSTN);
    EXPECT_TRUE(lines()->text().endsWith("|*PSTN")) << lines()->text().toStdString();
    kit::key(Qt::Key_Return);
    EXPECT_EQ(called(), "4711 on 4");
    phoneSimulation::instance()->setPstn(0);
}

TEST_F(DialScreen, TheKeyThatSendsEndsTheNumberAsItIsSet)
{
    open("12");
    kit::padKey('#');
    EXPECT_EQ(number()->text(), "12#");
    setSendKey("1");
    number()->setText("12");
    kit::padKey('*');
    EXPECT_EQ(number()->text(), "12*");
    kit::padKey('#');
    EXPECT_EQ(called(), "12* on 0");
    hangUpAll();
    setSendKey("2");
    open();
    kit::tap(key("keyStar")); // a code begins with it
    kit::tap(key("key9"));
    EXPECT_EQ(number()->text(), "*9");
    kit::tap(key("keyStar"));
    EXPECT_EQ(called(), "*9 on 0");
    setSendKey("0");
}

TEST_F(DialScreen, TheHotlineCallsAfterItsDelayWhenNothingIsTyped)
{
    setHotline("8001", "3");
    kit::holdClocks(true);
    dialScreenOpen();
    screen = kit::windows().first();
    kit::stepTime(2900);
    EXPECT_EQ(called(), "");
    kit::stepTime(200);
    EXPECT_EQ(called(), "8001 on 0");
    EXPECT_FALSE(isOpen());
    kit::holdClocks(false);
}

TEST_F(DialScreen, TheHotlineWaitsForNobodyWhoTypesChoosesOrLeaves)
{
    setHotline("8001", "1");
    open();
    kit::padKey('4');
    kit::key(Qt::Key_Backspace);
    kit::stepTime(2000);
    EXPECT_EQ(called(), "");
    open();
    kit::key(Qt::Key_Down);
    kit::stepTime(2000);
    EXPECT_EQ(called(), "");
    open();
    kit::key(Qt::Key_Escape);
    kit::stepTime(2000);
    EXPECT_EQ(called(), "");
    open("4");
    kit::stepTime(2000);
    EXPECT_EQ(called(), "");
    setHotline("", "0");
    open();
    kit::stepTime(2000);
    EXPECT_EQ(called(), "");
}

TEST_F(DialScreen, TheHotlineWithoutADelayCallsAtOnceButNotBehindACall)
{
    setHotline("8001", "0");
    dialScreenOpen();
    kit::settle();
    EXPECT_EQ(called(), "8001 on 0");
    kit::stepTime(2000);
    dialScreenOpen();
    kit::settle();
    EXPECT_EQ(phoneService::instance().calls().size(), 1);
    setHotline("8001", "2");
    hangUpAll();
    kit::stepTime(2000);
    open();
    ASSERT_TRUE(phoneSimulation::instance()->ring("4711", 0, ""));
    kit::stepTime(3000);
    EXPECT_EQ(phoneService::instance().calls().size(), 1);
    setHotline("", "2");
}

TEST_F(DialScreen, ANumberThatCannotBeDialledStays)
{
    open("12/34");
    kit::key(Qt::Key_Return);
    EXPECT_EQ(called(), "");
    kit::stepTime(2000);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(number()->text(), "12/34");
}

TEST_F(DialScreen, CallWithNothingTypedChoosesTheLastNumber)
{
    open();
    tapSoftKey(screen, 0);
    EXPECT_EQ(called(), "");
    EXPECT_EQ(list()->currentRow(), 0);
    tapSoftKey(screen, 0);
    EXPECT_EQ(called(), "804412 on 0");
}

TEST_F(DialScreen, ManyRowsAreDragged)
{
    QByteArray book = "<contactData><group name=\"A\">";
    for (int i = 10; i < 40; ++i)
        book += "<contact name=\"C\" number=\"9" + QByteArray::number(i) + "\"/>";
    writeFile("/rundata/data/contactData.xml", book + "</group></contactData>");
    open("9");
    ASSERT_TRUE(kit::waitUntil([this] { return list()->rows().size() == dialDirectory::ROWS_MAX; }, 20000));
    const QPoint middle = list()->mapToGlobal(list()->rect().center());
    kit::press(middle);
    for (int step = 1; step <= 60; ++step)
        kit::moveTo(middle - QPoint(0, 20 * step));
    kit::release(middle - QPoint(0, 1200));
    EXPECT_EQ(list()->currentRow(), -1);
    kit::tap(list()->mapToGlobal(QPoint(100, list()->height() - 20)));
    EXPECT_EQ(list()->currentRow(), dialDirectory::ROWS_MAX - 1);
}

TEST_F(DialScreen, KeysMoveManyRowsSoThatTheChosenOneIsSeen)
{
    QByteArray book = "<contactData><group name=\"A\">";
    for (int i = 10; i < 30; ++i)
        book += "<contact name=\"C\" number=\"9" + QByteArray::number(i) + "\"/>";
    writeFile("/rundata/data/contactData.xml", book + "</group></contactData>");
    open("9");
    ASSERT_TRUE(kit::waitUntil([this] { return list()->rows().size() == dialDirectory::ROWS_MAX; }, 20000));
    const QString last = list()->rows().last().strNumber;
    const auto press = [](Qt::Key arrow) {
        for (int row = 1; row < dialDirectory::ROWS_MAX; ++row)
            kit::key(arrow);
    };
    kit::key(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(list()->currentRow(), dialDirectory::ROWS_MAX - 1);
    kit::tap(list()->mapToGlobal(QPoint(100, list()->height() - 20)));
    EXPECT_EQ(called(), last + " on 0") << "a touch of the chosen row, at the bottom, calls it";
    hangUpAll();
    open("9");
    ASSERT_TRUE(kit::waitUntil([this] { return list()->rows().size() == dialDirectory::ROWS_MAX; }, 20000));
    const QString first = list()->rows().first().strNumber;
    kit::key(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Up);
    EXPECT_EQ(list()->currentRow(), 0);
    tapRow(0);
    EXPECT_EQ(called(), first + " on 0");
}

TEST_F(DialScreen, ManyContactsAreFoundWithinAFrame)
{
    QByteArray book = "<contactData><group name=\"A\">";
    for (int i = 0; i < 5000; ++i)
        book += "<contact name=\"Somebody Of The Office " + QByteArray::number(i) + "\" number=\"9" +
                QByteArray::number(i) + "\"/>";
    writeFile("/rundata/data/contactData.xml", book + "</group></contactData>");
    bool isRead = false;
    dialDirectory directory([&] { isRead = true; });
    directory.load();
    ASSERT_TRUE(kit::waitUntil([&] { return isRead; }, 20000));
    EXPECT_EQ(directory.find("office 4999").size(), 1);
    EXPECT_EQ(directory.find("94999").size(), 1);
    EXPECT_EQ(directory.find("x").size(), 0);
}

TEST_F(DialScreen, NothingIsCutInAnyLanguage)
{
    for (const char* language : {"English", "Chinese", "German", "French", "Spanish"}) {
        setLanguage(language);
        kit::settle();
        open("80");
        EXPECT_EQ(cutTexts(screen), "") << language;
        kit::shot(QString("dial-%1").arg(language));
    }
}

TEST_F(DialScreen, AnotherLanguageReachesWhatIsOpen)
{
    ASSERT_TRUE(phoneSimulation::instance()->ring("4711", 0, ""));
    kit::settle();
    const int first = phoneService::instance().calls()[0].nId;
    ASSERT_TRUE(phoneService::instance().answer(first));
    ASSERT_TRUE(phoneSimulation::instance()->ring("4712", 0, ""));
    kit::settle();
    const int second = phoneService::instance().calls()[1].nId;
    ASSERT_TRUE(phoneService::instance().answer(second));
    for (const DIAL_FOR purpose : {DIAL_CALL, DIAL_TRANSFER}) {
        const auto open = [&] {
            dialScreenOpenFor(purpose, second);
            screen = kit::windows().first();
            kit::settle();
        };
        const auto shown = [&] {
            const QList<tagDialEntry>& rows = list()->rows();
            return softKeys(screen) + " " + (rows.isEmpty() ? "" : rows[0].strDetail.toStdString());
        };
        setLanguage("German");
        open();
        const std::string german = shown();
        setLanguage("English");
        open();
        EXPECT_NE(shown(), german);
        setLanguage("German");
        kit::settle();
        EXPECT_EQ(shown(), german) << "as if it had been opened so";
        EXPECT_EQ(list()->rows().size(), purpose == DIAL_TRANSFER ? 3 : 2);
        EXPECT_EQ(german.find("Übergeben") != std::string::npos, purpose == DIAL_TRANSFER) << german;
        setLanguage("English");
    }
}
