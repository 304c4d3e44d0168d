// The strip of programmable keys on the home screen: what they show, and what they do.
#include "host/desktop/dssKeyBoard.h"
#include "host/services/phone/doNotDisturb.h"
#include "host/services/phone/lampBook.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "host/services/players/soundOutput.h"
#include "support/host/desktop.h"
#include "support/host/managers.h"
#include "support/host/message.h"
#include "support/host/module.h"
#include "support/host/registry.h"
#include "tests/desktop/desktopTest.h"
#include "tests/kit/kitTime.h"
#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QHash>

namespace {

#define KEY_FILE "/rundata/data/dsskey.xml"

QStringList g_edited;

// Hears the tones.
class Tones : public soundOutput
{
public:
    explicit Tones(int& count) : m_count(count) {}
    void playTone(int) override { ++m_count; }

private:
    int& m_count;
};

class DssKeys : public DesktopTest
{
protected:
    DssKeys()
    {
        g_edited.clear();
        tagModuleEntries entries;
        entries.editDssKey = [](int index) { g_edited.append(QString::number(index)); };
        entries.openPage = [](const chString&, QWidget*) {};
        hostSetModule(entries);
        soundOutput::setInstance(std::make_unique<Tones>(tones));
        registerLines();
        writeKeys("<Item Type=\"Line\"><ItemData Line=\"1\"/></Item>"
                  "<Item Type=\"Speed Dial\"><ItemData Line=\"2\" Label=\"Home\" Value=\"4711\"/></Item>"
                  "<Item Type=\"BLF\"><ItemData Line=\"0\" Label=\"Anna\" Extension=\"8001\" "
                  "Value=\"*98001\"/></Item>"
                  "<Item Type=\"BLF List\"><ItemData Line=\"3\"/></Item>"
                  "<Item Type=\"BLF List\"><ItemData Line=\"3\"/></Item>");
        world().setList(3, "8101=Cleo,8102");
        home = frmDesktop::GetInstance();
        home->FinishLoading();
        kit::settle();
        mark();
    }
    ~DssKeys() override
    {
        hangUpAll();
        soundOutput::setInstance(nullptr);
    }
    void writeKeys(const QByteArray& first) const { writeFile(KEY_FILE, "<DssKey>" + first + "</DssKey>"); }
    static simulatedLamps& world() { return phoneSimulation::instance()->extensions(); }
    static DssKeyBoard& board() { return DssKeyBoard::instance(); }
    QAbstractButton* key(int number) const
    {
        return home->findChild<QAbstractButton*>(QString("dssKey%1").arg(number));
    }
    QAbstractButton* pager() const { return home->findChild<QAbstractButton*>("dssKeyPager"); }
    QStringList labels() const
    {
        QStringList all;
        for (int number = 1; number <= 5; ++number)
            all.append(key(number)->text());
        return all;
    }
    void tell(unsigned int what)
    {
        msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, what, 0);
        kit::settle();
    }
    static void hold(QAbstractButton* button)
    {
        const QPoint at = button->mapToGlobal(button->rect().center());
        kit::press(at);
        kit::stepTime(900);
        kit::release(at);
        kit::settle();
    }
    static std::string dialled(const QStringList& all) { return all.join('|').toStdString(); }
    QStringList dials() const { return PhoneTest::logged("dial"); }

    frmDesktop* home;
    int tones = 0;
};

// Counts what is painted, of whom.
class PaintCounter : public QObject
{
public:
    PaintCounter() { qApp->installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++counts[watched];
        return false;
    }
    QHash<QObject*, int> counts;
};

} // namespace

TEST_F(DssKeys, StandInAStripWithLabelAndLamp)
{
    EXPECT_EQ(labels(), (QStringList{"Line 2", "Home", "Anna", "Cleo", "8102"}));
    EXPECT_EQ(pager()->text(), "1/4");
    EXPECT_EQ(board().look(0).eLamp, LAMP_IDLE);
    EXPECT_FALSE(board().look(1).bLamp);
    world().set("8001", LAMP_RINGING);
    world().set("8102", LAMP_BUSY);
    EXPECT_EQ(board().look(2).eLamp, LAMP_RINGING);
    EXPECT_EQ(board().look(3).eLamp, LAMP_IDLE);
    EXPECT_EQ(board().look(4).eLamp, LAMP_BUSY);
    kit::settle();
    kit::shot("home-keys");
}

TEST_F(DssKeys, ComeWhenTheHomeScreenIsUp)
{
    EXPECT_NE(key(1), nullptr);
    EXPECT_TRUE(key(1)->isVisible());
}

TEST_F(DssKeys, ThePagerTurnsThroughAllTwentyAndRound)
{
    for (const char* page : {"2/4", "3/4", "4/4", "1/4"}) {
        kit::tap(pager());
        EXPECT_EQ(pager()->text(), page);
    }
    EXPECT_EQ(labels()[1], "Home");
    kit::tap(pager());
    EXPECT_EQ(labels(), (QStringList{"", "", "", "", ""}));
    kit::tap(key(2)); // the seventh, which is free
    EXPECT_EQ(g_edited, QStringList{"6"});
}

TEST_F(DssKeys, ArrowsComeToThemAndOkPresses)
{
    home->findChild<QAbstractButton*>("tileCallHistroy")->setFocus();
    kit::key(Qt::Key_Down);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "dssKey2");
    kit::key(Qt::Key_Return);
    EXPECT_EQ(dialled(dials()), "4711 2 0");
    hangUpAll();
    kit::key(Qt::Key_Left);
    kit::key(Qt::Key_Left);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "dssKeyPager");
    kit::key(Qt::Key_Return);
    EXPECT_EQ(pager()->text(), "2/4");
    kit::key(Qt::Key_Down);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "quickKey6");
    kit::key(Qt::Key_Up);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "tileMedia");
}

TEST_F(DssKeys, ASpeedDialCallsItsNumberOnItsLine)
{
    kit::tap(key(2));
    EXPECT_EQ(dialled(dials()), "4711 2 0");
}

TEST_F(DssKeys, TheNumberOfTheSpeedDialListCountsToo)
{
    writeKeys("<Item Type=\"Speed Dial\"><ItemData Line=\"-1\" Extension=\"5511\"/></Item>"
              "<Item Type=\"Speed Dial\"><ItemData Line=\"0\" Label=\"Both\" Extension=\"5512\" "
              "Value=\"5513\"/></Item>"
              "<Item Type=\"Speed Dial\"><ItemData Line=\"0\" Value=\"\"/></Item>");
    tell(CONFIG_CHANGED_DSS_KEY);
    EXPECT_EQ(labels().mid(0, 3), (QStringList{"5511", "Both", "Speed Dial"}));
    kit::tap(key(1));
    hangUpAll();
    kit::tap(key(2));
    hangUpAll();
    EXPECT_EQ(dialled(dials()), "5511 -1 0|5512 0 0");
    kit::tap(key(3)); // it has no number yet
    EXPECT_EQ(g_edited, QStringList{"2"});
}

TEST_F(DssKeys, AKeyThatWatchesCallsItsValueAndTakesACallThatRings)
{
    kit::tap(key(3));
    EXPECT_EQ(dialled(dials()), "*98001 0 0");
    hangUpAll();
    world().set("8001", LAMP_BUSY);
    kit::tap(key(3));
    EXPECT_EQ(dials().size(), 2);
    hangUpAll();
    world().set("8001", LAMP_RINGING);
    kit::tap(key(3));
    EXPECT_EQ(dials().size(), 2);
    ASSERT_EQ(phoneService::instance().calls().size(), 1);
    EXPECT_EQ(phoneService::instance().calls()[0].strNumber, "8001");
    EXPECT_EQ(phoneService::instance().calls()[0].eState, CALL_TALKING);
    EXPECT_EQ(board().look(2).eLamp, LAMP_IDLE);
}

TEST_F(DssKeys, AKeyOfTheListCallsItsMemberAndOneBeyondItNobody)
{
    kit::tap(key(4));
    EXPECT_EQ(dialled(dials()), "8101 3 0");
    hangUpAll();
    world().setList(3, "8102");
    EXPECT_EQ(labels().mid(3), (QStringList{"8102", "BLF List"}));
    kit::tap(key(5));
    EXPECT_EQ(dials().size(), 1);
    EXPECT_TRUE(g_edited.isEmpty());
    EXPECT_FALSE(world().isWatched("8101"));
}

TEST_F(DssKeys, ALineKeyOpensTheDialScreenOnItsLine)
{
    kit::tap(key(1));
    EXPECT_STREQ(kit::windows().value(0)->metaObject()->className(), "frmDial");
    kit::padKey('4');
    kit::padKey('7');
    kit::key(Qt::Key_Return);
    EXPECT_EQ(dialled(dials()), "47 1 0");
}

TEST_F(DssKeys, TheLampOfALineFollowsItsCalls)
{
    phoneSimulation::instance()->ring("5", 1, "Eve");
    EXPECT_EQ(board().look(0).eLamp, LAMP_RINGING);
    phoneService::instance().answer(phoneService::instance().calls()[0].nId);
    EXPECT_EQ(board().look(0).eLamp, LAMP_BUSY);
    hangUpAll();
    EXPECT_EQ(board().look(0).eLamp, LAMP_IDLE);
    phoneSimulation::instance()->ring("5", 0, "Eve");
    EXPECT_EQ(board().look(0).eLamp, LAMP_IDLE);
    hangUpAll();
    tagLineSetting line;
    line.state = LINE_REGISTER_FAILED;
    phoneSimulation::instance()->setLine(1, line);
    kit::settle();
    EXPECT_EQ(board().look(0).eLamp, LAMP_UNKNOWN);
}

TEST_F(DssKeys, HoldingAKeyOpensItsEditorAndCallsNobody)
{
    hold(key(2));
    EXPECT_EQ(g_edited, QStringList{"1"});
    EXPECT_TRUE(dials().isEmpty());
    kit::tap(key(2));
    EXPECT_EQ(dials().size(), 1);
}

TEST_F(DssKeys, HoldingOkDoesTheSame)
{
    key(2)->setFocus();
    kit::keyPress(Qt::Key_Return);
    kit::stepTime(900);
    kit::keyRelease(Qt::Key_Return);
    EXPECT_EQ(g_edited, QStringList{"1"});
    EXPECT_TRUE(dials().isEmpty());
}

TEST_F(DssKeys, AChangeIsShownWhenItIsToldAndTheSpeedDialListTellsByItself)
{
    writeKeys("<Item Type=\"Speed Dial\"><ItemData Line=\"0\" Label=\"New\" Value=\"1\"/></Item>");
    EXPECT_EQ(labels()[0], "Line 2");
    tell(CONFIG_CHANGED_DIAL_PLAN);
    EXPECT_EQ(labels()[0], "Line 2");
    tell(CONFIG_CHANGED_DSS_KEY);
    EXPECT_EQ(labels(), (QStringList{"New", "", "", "", ""}));
    EXPECT_FALSE(world().isWatched("8001"));
    writeKeys("<Item Type=\"Line\"><ItemData Line=\"3\"/></Item>");
    GetDssKeyManager()->LoadFile(KEY_FILE, 0);
    EXPECT_EQ(labels()[0], "Line 4");
}

TEST_F(DssKeys, AListIsGivenBackWithItsLastKey)
{
    const QByteArray oneKey = "<Item Type=\"BLF List\"><ItemData Line=\"3\"/></Item>";
    EXPECT_EQ(lampBook::instance().list(3).size(), 2);
    for (int time = 0; time < 2; ++time) {
        writeKeys(oneKey + "<Item Type=\"Line\"><ItemData Line=\"" + QByteArray::number(time) +
                  "\"/></Item>");
        tell(CONFIG_CHANGED_DSS_KEY);
        EXPECT_EQ(lampBook::instance().list(3).size(), 2);
    }
    writeKeys("");
    tell(CONFIG_CHANGED_DSS_KEY);
    EXPECT_TRUE(lampBook::instance().list(3).isEmpty()) << "nobody watches it any more";
    writeKeys(oneKey);
    tell(CONFIG_CHANGED_DSS_KEY);
    EXPECT_EQ(labels()[0], "Cleo");
}

TEST_F(DssKeys, WhatTheyAreToldOthersHearToo)
{
    const QList<QPair<unsigned int, unsigned int>> told = {
        {CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_DSS_KEY},
        {CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_DSS_KEY_FIRST},
        {CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_ACCOUNT},
        {PHONE_PUBLIC_MSG_ACCOUNT_REFRESH, 0}};
    for (const auto& [message, what] : told) {
        msgObject msg;
        msg.message = message;
        msg.wParam = what;
        EXPECT_EQ(board().TryThreadMessage(msg), 0) << message << " " << what;
    }
}

TEST_F(DssKeys, AKeyThatLooksTheSameIsNotPaintedAgain)
{
    const auto anna = [](const char* extension) {
        return QByteArray("<Item Type=\"BLF\"><ItemData Line=\"0\" Label=\"Anna\" Extension=\"") + extension +
               "\" Value=\"1\"/></Item>";
    };
    world().set("8001", LAMP_BUSY);
    world().set("8002", LAMP_BUSY);
    writeKeys(anna("8001"));
    tell(CONFIG_CHANGED_DSS_KEY);
    int changes = 0;
    const QObject listener;
    QObject::connect(&board(), &DssKeyBoard::changed, &listener, [&](int) { ++changes; });
    writeKeys(anna("8002"));
    tell(CONFIG_CHANGED_DSS_KEY);
    EXPECT_TRUE(world().isWatched("8002"));
    EXPECT_EQ(changes, 0);
    world().set("8002", LAMP_IDLE);
    EXPECT_EQ(changes, 1);
}

TEST_F(DssKeys, ALineThatIsNoneIsTheDefaultOne)
{
    for (const char* line : {"7", "4", "-7", "99999999999999999999"}) {
        writeKeys(QByteArray("<Item Type=\"Speed Dial\"><ItemData Line=\"") + line +
                  "\" Value=\"4711\"/></Item>");
        tell(CONFIG_CHANGED_DSS_KEY);
        mark();
        kit::tap(key(1));
        EXPECT_EQ(dialled(dials()), "4711 -1 0") << line;
        hangUpAll();
        kit::settle();
    }
}

TEST_F(DssKeys, ABrokenFileLeavesTheKeysAsTheyWere)
{
    for (const char* broken : {"<DssKey><Item", "<Other/>", ""}) {
        writeFile(KEY_FILE, broken);
        tell(CONFIG_CHANGED_DSS_KEY);
        EXPECT_EQ(labels()[2], "Anna") << broken;
    }
    QFile::remove(hostPath(KEY_FILE));
    tell(CONFIG_CHANGED_DSS_KEY);
    kit::tap(key(2));
    EXPECT_EQ(dialled(dials()), "4711 2 0");
}

TEST_F(DssKeys, AHostileFileShowsOneLineAndDialsNothing)
{
    writeKeys("<Item Type=\"BLF\"><ItemData Line=\"9\" Label=\"A&#10;&#9;B\" Extension=\"80/01\" "
              "Value=\"12&quot;;rm\"/></Item>"
              "<Item Type=\"Speed Dial\"><ItemData Line=\"-7\" Label=\"" +
              QByteArray(5000, 'x') + "\" Value=\"../../1\"/></Item><Item Type=\"Nonsense\"/><Item/>");
    tell(CONFIG_CHANGED_DSS_KEY);
    EXPECT_EQ(labels()[0], "AB");
    EXPECT_LE(labels()[1].size(), 32);
    EXPECT_FALSE(world().isWatched("80/01"));
    kit::tap(key(1));
    kit::tap(key(2));
    EXPECT_TRUE(phoneService::instance().calls().isEmpty());
    EXPECT_EQ(board().look(2).eType, tagDssKey::FREE);
    EXPECT_EQ(board().look(3).eType, tagDssKey::FREE);
}

TEST_F(DssKeys, WatchesAreRenewedWhenThatIsTold)
{
    world().set("8001", LAMP_BUSY);
    lampBook::instance().lampChanged({0, "8001"}, LAMP_IDLE); // what was missed
    EXPECT_EQ(board().look(2).eLamp, LAMP_IDLE);
    tell(CONFIG_CHANGED_DSS_KEY_FIRST);
    EXPECT_EQ(board().look(2).eLamp, LAMP_BUSY);
}

TEST_F(DssKeys, AToneTellsOfOneThatRingsWhereItIsSet)
{
    const auto ringAgain = [&] {
        world().set("8001", LAMP_IDLE);
        kit::stepTime(DssKeyBoard::TONE_PAUSE_MS);
        world().set("8001", LAMP_RINGING);
    };
    writeFile("/rundata/config/user/user.ini", "");
    ringAgain();
    EXPECT_EQ(tones, 0) << "without the key there is none";
    nuxSetRegistryInt("/rundata/config/user/user.ini", "DssKey", "bTone", 1);
    ringAgain();
    EXPECT_EQ(tones, 1);
    world().set("8101", LAMP_RINGING);
    EXPECT_EQ(tones, 1) << "many at once are one tone";
    world().set("8101", LAMP_BUSY);
    doNotDisturb::setOn(true);
    ringAgain();
    EXPECT_EQ(tones, 1);
    doNotDisturb::setOn(false);
    ringAgain();
    EXPECT_EQ(tones, 2);
    phoneSimulation::instance()->ring("5", 1, "Eve");
    ringAgain();
    EXPECT_EQ(tones, 2);
}

// A key is painted once for what it shows, and nothing beside it: the tile above stays as it is.
TEST_F(DssKeys, TwentyLampsTenTimesASecondPaintEachKeyOnceATurn)
{
    QByteArray keys;
    for (int i = 0; i < 20; ++i)
        keys += "<Item Type=\"BLF\"><ItemData Line=\"0\" Extension=\"90" + QByteArray::number(10 + i) +
                "\" Value=\"1\"/></Item>";
    writeKeys(keys);
    tell(CONFIG_CHANGED_DSS_KEY);
    PaintCounter paints;
    constexpr int kTurns = 50;
    for (int turn = 0; turn < kTurns; ++turn) {
        // Several changes between two frames are one repaint.
        for (const LAMP_STATE state : {LAMP_IDLE, LAMP_RINGING, turn % 2 ? LAMP_BUSY : LAMP_RINGING}) {
            for (int i = 0; i < 20; ++i)
                world().set(QString::number(9010 + i), state);
        }
        kit::stepTime(100);
    }
    for (int number = 1; number <= 5; ++number) {
        EXPECT_GE(paints.counts[key(number)], kTurns - 1) << number;
        EXPECT_LE(paints.counts[key(number)], kTurns + 1) << number;
    }
    for (const char* other : {"tileDirectory", "tileMedia", "quickKey1", "dssKeyPager"})
        EXPECT_EQ(paints.counts[home->findChild<QObject*>(other)], 0) << other;
    for (int index = 0; index < 20; ++index)
        EXPECT_EQ(board().look(index).eLamp, LAMP_BUSY) << index;
}

TEST_F(DssKeys, UnderAPageNothingIsPaintedAndNothingIsLost)
{
    QWidget page;
    page.setGeometry(0, 0, 800, 480);
    page.show();
    kit::settle();
    ASSERT_FALSE(home->isActiveWindow());
    {
        PaintCounter paints;
        for (int turn = 0; turn < 20; ++turn) {
            world().set("8001", turn % 2 ? LAMP_BUSY : LAMP_RINGING);
            // The keys are edited meanwhile.
            writeKeys("<Item Type=\"Line\"/><Item Type=\"Speed Dial\"><ItemData Label=\"" +
                      QByteArray::number(turn) +
                      "\" Value=\"1\"/></Item>"
                      "<Item Type=\"BLF\"><ItemData Line=\"0\" Extension=\"8001\" Value=\"8001\"/></Item>");
            tell(CONFIG_CHANGED_DSS_KEY);
            tell(CONFIG_CHANGED_DSS_KEY_FIRST);
        }
        EXPECT_EQ(paints.counts[key(2)], 0);
        EXPECT_EQ(paints.counts[home], 0);
    }
    page.close();
    kit::settle();
    EXPECT_EQ(labels().mid(0, 3), (QStringList{"Line 1", "19", "8001"}));
    EXPECT_EQ(board().look(2).eLamp, LAMP_BUSY);
}
