#include "host/desktop/clockText.h"
#include "host/desktop/homeButton.h"
#include "host/desktop/homeClock.h"
#include "host/desktop/homeStatus.h"
#include "host/desktop/messageKey.h"
#include "host/desktop/missedCalls.h"
#include "host/look/look.h"
#include "host/screen/screenState.h"
#include "host/services/keyfiles/keyFileLock.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "host/services/system/netWorld.h"
#include "host/services/transfers/taskBook.h"
#include "support/file/fileSystemCalls.h"
#include "support/host/clock.h"
#include "support/host/desktop.h"
#include "support/host/dialogs.h"
#include "support/host/module.h"
#include "support/host/picture.h"
#include "support/host/registry.h"
#include "support/host/screen.h"
#include "tests/desktop/desktopTest.h"
#include "tests/kit/plain/pictureFiles.h"
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QThread>
#include <atomic>

namespace {

QStringList g_opened;

class HomeScreen : public DesktopTest
{
protected:
    HomeScreen()
    {
        g_opened.clear();
        tagModuleEntries entries;
        entries.openPage = [](const chString& name, QWidget*) { g_opened.append(name.GetText()); };
        entries.openMenu = [](const chString& file) { g_opened.append(file.GetText()); };
        entries.editPictureDial = [](PicDialIconViewItem* item) {
            g_opened.append(QString("slot %1 %2 %3")
                                .arg(item->GetRow())
                                .arg(item->GetFile().GetText())
                                .arg(!item->GetDecoration().isNull()));
        };
        entries.cacheWindows = [](int index) {
            g_opened.append(QString("step%1").arg(index));
            return index < 8 ? 1 : 0;
        };
        hostSetModule(entries);
        netWorldSetClock(chTime(2026, 11, 21, 14, 5, 0).GetTime());
        home = frmDesktop::GetInstance();
        home->ReloadQuickKeys();
        home->FinishLoading();
        kit::settle();
    }
    QAbstractButton* button(const char* name) { return home->findChild<QAbstractButton*>(name); }
    homeStatus* status() { return home->findChild<homeStatus*>(); }
    homeClock* clock() { return home->findChild<homeClock*>(); }
    // A call whose caller gives up.
    static void miss(const char* number)
    {
        ASSERT_TRUE(phoneSimulation::instance()->ring(number, 0, ""));
        ASSERT_TRUE(
            phoneSimulation::instance()->hangUpFromOutside(phoneService::instance().calls().first().nId));
    }
    static QString focusName() { return QApplication::focusWidget()->objectName(); }

    frmDesktop* home;
};

} // namespace

TEST_F(HomeScreen, EachTileOpensItsPageOrMenuByFinger)
{
    for (const char* tile : {"tileDirectory", "tileCallHistroy", "tileSetting", "tileCallFeature",
                             "tileApplication", "tileMedia"})
        kit::tap(button(tile));
    EXPECT_EQ(g_opened, (QStringList{"Directory", "Call Histroy", "setting.xml", "callfeature.xml",
                                     "application.xml", "media.xml"}));
    kit::shot("home");
}

TEST_F(HomeScreen, EnterOfTheNumericBlockOpensATileToo)
{
    button("tileSetting")->setFocus();
    kit::key(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(g_opened, QStringList("setting.xml"));
}

TEST_F(HomeScreen, AFingerThatSlidesOffATileOpensNothing)
{
    kit::press(button("tileSetting")->mapToGlobal(QPoint(20, 20)));
    kit::moveTo(QPoint(400, 100));
    kit::release(QPoint(400, 100));
    EXPECT_TRUE(g_opened.isEmpty());
}

TEST_F(HomeScreen, ArrowsGoRoundTheRowsAndOkOpens)
{
    EXPECT_EQ(focusName(), "tileSetting");
    kit::key(Qt::Key_Left);
    kit::key(Qt::Key_Left);
    EXPECT_EQ(focusName(), "tileDirectory");
    kit::key(Qt::Key_Left);
    EXPECT_EQ(focusName(), "tileMedia");
    kit::key(Qt::Key_Right);
    EXPECT_EQ(focusName(), "tileDirectory");
    kit::key(Qt::Key_Return);
    EXPECT_EQ(g_opened, QStringList{"Directory"});
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName(), "dssKey1");
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName(), "quickKey1");
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName(), "tileDirectory");
}

TEST_F(HomeScreen, AQuickKeyDialsItsNumberOnItsLine)
{
    writeFile(
        "/rundata/data/picture-dial.xml",
        "<picture-dial><icon title=\"Anna\" number=\"1002\" file=\"Home.png\" line=\"2\"/></picture-dial>");
    desktop_ReLoadPicXmlFile();
    EXPECT_EQ(button("quickKey1")->text(), "Anna");
    kit::tap(button("quickKey1"));
    EXPECT_NE(logged("dial").find("1002 2"), std::string::npos) << logged("dial");
}

TEST_F(HomeScreen, APictureOfACameraOnAQuickKeyIsReadElsewhere)
{
    QImage photo(3000, 2000, QImage::Format_RGB32);
    photo.fill(Qt::red);
    QDir().mkpath(hostPath("/rundata/picture-dial"));
    ASSERT_TRUE(photo.save(hostPath("/rundata/picture-dial/a.png")));
    writeFile("/rundata/data/picture-dial.xml",
              "<picture-dial><icon title=\"Anna\" number=\"1002\" file=\"a.png\"/></picture-dial>");
    const auto middle = [this] {
        const QImage shown = button("quickKey1")->grab().toImage();
        return shown.pixelColor(shown.width() / 2, 34);
    };
    desktop_ReLoadPicXmlFile();
    EXPECT_NE(middle(), QColor(Qt::red));
    EXPECT_GT(picturePending(), 0);
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }));
    EXPECT_EQ(middle(), QColor(Qt::red));
    // A small one is there at once, and as large.
    ASSERT_TRUE(photo.scaled(12, 8).save(hostPath("/rundata/picture-dial/b.png")));
    writeFile("/rundata/data/picture-dial.xml",
              "<picture-dial><icon title=\"Anna\" number=\"1002\" file=\"b.png\"/></picture-dial>");
    desktop_ReLoadPicXmlFile();
    const QImage shown = button("quickKey1")->grab().toImage();
    EXPECT_EQ(shown.pixelColor(shown.width() / 2 - 17, 27), QColor(Qt::red));
}

TEST_F(HomeScreen, APictureOfAnyShapeFillsItsSquareOnAQuickKey)
{
    for (const QSize& size : {QSize(600, 300), QSize(300, 600), QSize(16, 8)}) {
        QImage photo(size, QImage::Format_RGB32);
        photo.fill(Qt::red);
        QDir().mkpath(hostPath("/rundata/picture-dial"));
        const QString file = QString("shape%1.png").arg(size.width());
        ASSERT_TRUE(photo.save(hostPath("/rundata/picture-dial/") + file));
        writeFile("/rundata/data/picture-dial.xml",
                  QString("<picture-dial><icon title=\"Anna\" number=\"1002\" file=\"%1\"/></picture-dial>")
                      .arg(file)
                      .toUtf8());
        desktop_ReLoadPicXmlFile();
        EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }));
        const QImage shown = button("quickKey1")->grab().toImage();
        for (const QPoint& at : {QPoint(-19, 20), QPoint(19, 20), QPoint(0, 1), QPoint(0, 38)})
            EXPECT_EQ(shown.pixelColor(shown.width() / 2 + at.x(), 14 + at.y()), QColor(Qt::red))
                << size.width() << " at " << at.x() << ',' << at.y();
    }
}

TEST_F(HomeScreen, AFreeQuickKeyOpensThePageThatFillsIt)
{
    writeFile("/rundata/data/picture-dial.xml", "<picture-dial/>");
    desktop_ReLoadPicXmlFile();
    EXPECT_EQ(button("quickKey6")->text(), "");
    kit::tap(button("quickKey6"));
    EXPECT_EQ(g_opened, QStringList{"slot 5  1"});
}

TEST_F(HomeScreen, AQuickKeyThatIsHeldIsEditedAndNotDialled)
{
    writeFile(
        "/rundata/data/picture-dial.xml",
        "<picture-dial><icon/><icon title='Anna' number='1002' file='Home.png' line='0'/></picture-dial>");
    desktop_ReLoadPicXmlFile();
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }));
    const QPoint at = button("quickKey2")->mapToGlobal(QPoint(20, 20));
    kit::press(at);
    kit::stepTime(700);
    EXPECT_TRUE(g_opened.isEmpty());
    kit::stepTime(200);
    EXPECT_EQ(g_opened, QStringList{"slot 1 Home.png 1"});
    kit::release(at);
    kit::settle();
    EXPECT_EQ(logged("dial"), "");
    EXPECT_EQ(g_opened.size(), 1);
    kit::tap(button("quickKey2"));
    EXPECT_NE(logged("dial").find("1002 0"), std::string::npos);
}

TEST_F(HomeScreen, AFingerThatLeavesAQuickKeyEditsNothing)
{
    writeFile("/rundata/data/picture-dial.xml",
              "<picture-dial><icon title='Anna' number='1002' file='Home.png' line='0'/></picture-dial>");
    desktop_ReLoadPicXmlFile();
    kit::press(button("quickKey1")->mapToGlobal(QPoint(20, 20)));
    kit::moveTo(QPoint(400, 100));
    kit::stepTime(1000);
    kit::release(QPoint(400, 100));
    EXPECT_TRUE(g_opened.isEmpty());
    EXPECT_EQ(logged("dial"), "");
}

TEST_F(HomeScreen, OkDialsAndEditsWhenItIsHeld)
{
    writeFile("/rundata/data/picture-dial.xml",
              "<picture-dial><icon title='Anna' number='1002' file='Home.png' line='7'/></picture-dial>");
    desktop_ReLoadPicXmlFile();
    button("quickKey1")->setFocus();
    kit::key(Qt::Key_Return);
    EXPECT_NE(logged("dial").find("1002 -1"), std::string::npos) << "a line that is none is the default one";
    hangUpAll();
    kit::stepTime(3000);
    home->raise();
    home->activateWindow();
    button("quickKey1")->setFocus();
    mark();
    kit::keyPress(Qt::Key_Return);
    kit::stepTime(900);
    EXPECT_EQ(g_opened, QStringList{"slot 0 Home.png 1"});
    kit::keyRelease(Qt::Key_Return);
    EXPECT_EQ(logged("dial"), "");
}

TEST_F(HomeScreen, WaitingMessagesLightTheLampAndATouchDoesWhatTheKeyDoes)
{
    tagLineSetting line;
    line.newMessages = 0;
    phoneSimulation::instance()->setLine(0, line);
    kit::settle();
    EXPECT_FALSE(screenState::instance().isLampLit());
    kit::tap(QPoint(724, 20));
    EXPECT_TRUE(g_opened.isEmpty()) << "nothing is there";
    line.newMessages = 2;
    phoneSimulation::instance()->setLine(0, line);
    kit::settle();
    EXPECT_TRUE(screenState::instance().isLampLit());
    kit::tap(QPoint(724, 20));
    EXPECT_EQ(g_opened, QStringList{"Message"});
}

TEST_F(HomeScreen, AMessageKeyThatIsHeldOpensOnceAndOneForAHiddenWindowNothing)
{
    const messageKey key(nullptr);
    kit::keyPress(Qt::Key_F9);
    for (int time = 0; time < 5; ++time) {
        QKeyEvent repeated(QEvent::KeyPress, Qt::Key_F9, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(QApplication::focusWidget(), &repeated);
    }
    kit::keyRelease(Qt::Key_F9);
    EXPECT_EQ(g_opened, QStringList{"Message"});
    QWidget hidden;
    QKeyEvent pressed(QEvent::KeyPress, Qt::Key_F9, Qt::NoModifier);
    QApplication::sendEvent(&hidden, &pressed);
    EXPECT_EQ(g_opened.size(), 1);
}

TEST_F(HomeScreen, TheMessageKeyWorksOnPagesAndNotOverABox)
{
    const messageKey key(nullptr);
    kit::key(Qt::Key_F9);
    EXPECT_EQ(g_opened, QStringList{"Message"});
    QDialog page;
    page.setGeometry(0, 0, 800, 480);
    page.show();
    kit::settle();
    kit::key(Qt::Key_F9);
    EXPECT_EQ(g_opened, (QStringList{"Message", "Message"}));
    QDialog box(&page);
    box.setModal(true);
    box.show();
    kit::settle();
    kit::key(Qt::Key_F9);
    EXPECT_EQ(g_opened.size(), 2);
    box.hide();
    kit::settle();
    RegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    kit::key(Qt::Key_F9);
    UnRegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    EXPECT_EQ(g_opened.size(), 2) << "a player has the screen";
    QWSServer::closeMouse();
    kit::key(Qt::Key_F9);
    QWSServer::openMouse();
    EXPECT_EQ(g_opened.size(), 2) << "a calibration";
    phoneSimulation::instance()->ring("4711", 0, "");
    kit::settle();
    kit::key(Qt::Key_F9);
    EXPECT_EQ(g_opened.size(), 2) << "a call";
    hangUpAll();
}

TEST_F(HomeScreen, ABrokenQuickKeyFileLeavesAllKeysFree)
{
    writeFile("/rundata/data/picture-dial.xml", "<picture-dial><icon title=");
    desktop_ReLoadPicXmlFile();
    for (int key = 1; key <= 6; ++key)
        EXPECT_EQ(button(qPrintable(QString("quickKey%1").arg(key)))->text(), "");
}

TEST_F(HomeScreen, ADigitOpensTheDialScreenWithIt)
{
    for (const char digit : {'4', '7', '1', '*', '9'})
        kit::padKey(digit);
    const QLineEdit* number = kit::windows().first()->findChild<QLineEdit*>("editNumber");
    ASSERT_NE(number, nullptr);
    EXPECT_EQ(number->text(), "471*9");
    kit::key(Qt::Key_Return);
    EXPECT_NE(logged("dial").find("471*9 -1"), std::string::npos) << logged("dial");
    EXPECT_TRUE(g_opened.isEmpty());
}

TEST_F(HomeScreen, TheGreenKeyAndTheReceiverOpenTheDialScreenEmpty)
{
    const auto opensEmpty = [](const std::function<void()>& hand) {
        hand();
        kit::settle();
        const QLineEdit* number = kit::windows().first()->findChild<QLineEdit*>("editNumber");
        const bool isEmpty = number && number->text().isEmpty();
        kit::key(Qt::Key_Escape);
        return isEmpty && kit::windows().first() == frmDesktop::GetInstance();
    };
    EXPECT_TRUE(opensEmpty([this] { kit::tap(button("btnDial")); }));
    EXPECT_TRUE(opensEmpty([] { kit::key(Qt::Key_Call); }));
    EXPECT_EQ(logged("dial"), "");
}

TEST_F(HomeScreen, MissedCallsAreCountedOnTheTileOfTheCalls)
{
    const auto* tile = frmDesktop::GetInstance()->findChild<homeButton*>("tileCallHistroy");
    ASSERT_NE(tile, nullptr);
    EXPECT_EQ(tile->badge(), 0);
    const QImage before = kit::screen().copy(tile->geometry());
    for (int call = 0; call < 2; ++call)
        miss("4711");
    EXPECT_EQ(tile->badge(), 2);
    kit::settle();
    EXPECT_TRUE(kit::waitUntil(
        [] { return nuxGetRegistryInt("/rundata/config/user/user.ini", "CallHistory", "nMissed", 0) == 2; }));
    // A call that the user declines, or talks, is not missed.
    ASSERT_TRUE(phoneSimulation::instance()->ring("4711", 0, ""));
    phoneService::instance().hangUp(phoneService::instance().calls().first().nId);
    EXPECT_EQ(tile->badge(), 2);
    kit::stepTime(2000);
    EXPECT_NE(kit::screen().copy(tile->geometry()), before);
    kit::shot("home-missed");
    dlgCallHistroy page(nullptr, nullptr);
    page.show();
    EXPECT_EQ(tile->badge(), 0);
    EXPECT_TRUE(kit::waitUntil([] {
        return nuxGetRegistryInt("/rundata/config/user/user.ini", "CallHistory", "nMissed", -1) == 0;
    }));
}

// The disk may be slow: the one that is stored first must not keep the last one from it.
TEST_F(HomeScreen, MissedCallsThatComeWhileTheirCountIsStoredAreStoredToo)
{
    static std::atomic<bool> isStoring, isDone;
    isStoring = isDone = false;
    fileGetSystemCalls().rename = [](const char* from, const char* to) {
        if (QByteArray(to).endsWith("/user.ini")) {
            isStoring = true;
            while (!isDone)
                QThread::msleep(1);
        }
        return fileDefaultSystemCalls().rename(from, to);
    };
    const int before = missedCalls::instance().count();
    miss("4711");
    EXPECT_TRUE(kit::waitUntil([] { return isStoring.load(); }));
    miss("4712");
    QThread::msleep(4 * keyFileLock::WAIT_MS); // more than a writer waits for another
    isDone = true;
    EXPECT_TRUE(kit::waitUntil([] { return taskPendingCount() == 0; }));
    EXPECT_EQ(nuxGetRegistryInt("/rundata/config/user/user.ini", "CallHistory", "nMissed", 0), before + 2);
}

TEST_F(HomeScreen, LinesAreShownLive)
{
    EXPECT_EQ(status()->lineText(1), "1002");
    EXPECT_TRUE(status()->isLineOn(1));
    tagLineSetting line;
    line.state = LINE_REGISTER_FAILED;
    line.user = "2222";
    phoneSimulation::instance()->setLine(1, line);
    kit::settle();
    EXPECT_EQ(status()->lineText(1), "2222");
    EXPECT_FALSE(status()->isLineOn(1));
    line.user = "";
    phoneSimulation::instance()->setLine(1, line);
    kit::settle();
    EXPECT_EQ(status()->lineText(1), "Line 2");
}

TEST_F(HomeScreen, ALineHasTheRoomThatTheOthersLeave)
{
    const auto name = [](int index, const char* user) {
        tagLineSetting line;
        line.state = LINE_REGISTERED;
        line.user = user;
        phoneSimulation::instance()->setLine(index, line);
        kit::settle();
    };
    const auto width = [this](int index) {
        return QFontMetrics(look::font(look::kSmallSize)).horizontalAdvance(status()->shownLine(index));
    };
    name(0, "reception.ground.floor@pbx.example.org");
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index)
        EXPECT_EQ(status()->shownLine(index), status()->lineText(index));
    name(1, "a name that is longer than all that a strip of a phone has room for and then some");
    name(2, "another name that is longer than all that a strip of a phone has room for");
    EXPECT_EQ(status()->shownLine(3), "1004") << "a short one gives nothing away";
    EXPECT_NE(status()->shownLine(1), status()->lineText(1));
    EXPECT_NEAR(width(1), width(2), 15) << "a letter or two";
    EXPECT_NEAR(width(0) + width(1) + width(2) + width(3), 626 - 4 * 24 - 3 * 18, 40);
    kit::shot("homeLongLines");
}

TEST_F(HomeScreen, NamesOfLinesAreWholeInEveryLanguage)
{
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index)
        phoneSimulation::instance()->setLine(index, tagLineSetting());
    for (const char* language : {"English", "Chinese", "German", "French", "Spanish"}) {
        setLanguage(language);
        kit::settle();
        for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index)
            EXPECT_EQ(status()->shownLine(index), status()->lineText(index)) << language;
    }
}

TEST_F(HomeScreen, TheClockMovesWithTheMinute)
{
    const QImage before = home->grab().toImage();
    kit::stepTime(61000);
    const QImage after = home->grab().toImage();
    const QRect clockArea(40, 68, 400, 100);
    EXPECT_NE(before.copy(clockArea), after.copy(clockArea));
    const QRect tiles(0, 210, 800, 140);
    EXPECT_EQ(before.copy(tiles), after.copy(tiles));
}

TEST_F(HomeScreen, TheTwelveHourClockTellsMorningFromAfternoon)
{
    const QRect clockArea(40, 68, 400, 100);
    const auto shot = [&](int hour) {
        netWorldSetClock(chTime(2026, 11, 21, hour, 5, 0).GetTime());
        kit::stepTime(1000);
        return home->grab(clockArea).toImage();
    };
    const QImage two = shot(2);
    const QImage fourteen = shot(14);
    nuxSetRegistryInt("/rundata/config/user/user.ini", "DateTime", "eTimeFormat", 1);
    const QImage afternoon = shot(14);
    const QImage morning = shot(2);
    EXPECT_NE(two, fourteen);
    EXPECT_NE(afternoon, fourteen) << "at once, within the same minute";
    EXPECT_NE(afternoon, morning);
    kit::shot("home_twelve_hours");
    EXPECT_NE(shot(0), shot(12));
}

TEST_F(HomeScreen, TheTwelveHourClockHasNoHourZero)
{
    nuxSetRegistryInt("/rundata/config/user/user.ini", "DateTime", "eTimeFormat", 1);
    const struct
    {
        int hour;
        const char* text;
        const char* whole;
    } moments[] = {{0, "12:05", "12:05 AM"},  {1, "1:05", "1:05 AM"},  {11, "11:05", "11:05 AM"},
                   {12, "12:05", "12:05 PM"}, {13, "1:05", "1:05 PM"}, {23, "11:05", "11:05 PM"}};
    for (const auto& moment : moments) {
        const chTime time(2026, 11, 21, moment.hour, 5, 0);
        netWorldSetClock(time.GetTime());
        kit::stepTime(1100);
        EXPECT_EQ(clock()->text(), moment.text) << moment.hour;
        EXPECT_EQ(clockText(time.GetTime()), moment.whole);
    }
}

TEST_F(HomeScreen, AMissingWallpaperFallsBackToTheOneOfThePhone)
{
    desktop_SetWallPaper(nullptr);
    const QImage usual = home->grab().toImage();
    desktop_SetWallPaper("/phone/resource/theme/default/bmp/general/gen_setting_bg.jpg");
    EXPECT_NE(home->grab().toImage(), usual);
    desktop_SetWallPaper("/rundata/media/wallpaper/gone.jpg");
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }));
    EXPECT_EQ(home->grab().toImage(), usual);
}

TEST_F(HomeScreen, AWallpaperOfACameraComesAMomentLaterAndTheLastOneStays)
{
    const QByteArray black = kit::pngOfOneColour({6000, 4000});
    writeFile("/rundata/media/wallpaper/black.png", black);
    desktop_SetWallPaper(nullptr);
    const QImage usual = home->grab().toImage();
    desktop_SetWallPaper("/rundata/media/wallpaper/black.png");
    EXPECT_EQ(home->grab().toImage(), usual) << "nothing is read here";
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 60000));
    EXPECT_EQ(home->grab().toImage().pixelColor(600, 150), QColor(Qt::black));
    writeFile("/rundata/media/wallpaper/other.png", black);
    desktop_SetWallPaper("/rundata/media/wallpaper/other.png");
    desktop_SetWallPaper(nullptr);
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 60000));
    EXPECT_EQ(home->grab().toImage(), usual);
}

TEST_F(HomeScreen, TheLoadingScreenShowsEachStep)
{
    frmLoading loading;
    loading.show();
    kit::settle();
    const QImage first = loading.grab().toImage();
    loading.setText("Loading Setting Module");
    EXPECT_EQ(loading.text(), "Loading Setting Module");
    const QImage second = loading.grab().toImage();
    EXPECT_NE(first, second);
    const QRect textArea(100, 348, 600, 32);
    EXPECT_NE(first.copy(textArea), second.copy(textArea)) << "the step is named";
    loading.setText("Loading Setting Module");
    EXPECT_NE(loading.grab().toImage(), second) << "the bar moves on with each step";
    kit::shot("loading");
}

TEST_F(HomeScreen, LeavesWhatWasOpenedDuringTheBootOnTop)
{
    home->hide();
    home->m_pLoading = new frmLoading;
    home->m_pLoading->show();
    QDialog page(nullptr, Qt::FramelessWindowHint);
    page.setGeometry(0, 0, 800, 480);
    page.show();
    kit::settle();
    home->FinishLoading();
    kit::settle();
    EXPECT_EQ(kit::windows().value(0), &page);
    EXPECT_EQ(QWSServer::clientWindows(), (QList<QWidget*>{&page, home}));
    EXPECT_TRUE(page.isActiveWindow());
    page.hide();
    kit::settle();
    EXPECT_TRUE(home->isActiveWindow());
}

TEST_F(HomeScreen, AHundredMessagesAreToldWithoutACutDigit)
{
    const QRect place(704, 0, 56, 40);
    const auto shownFor = [&](int count) {
        tagLineSetting line;
        line.newMessages = count;
        phoneSimulation::instance()->setLine(0, line);
        kit::settle();
        return kit::screen();
    };
    const QImage two = shownFor(99);
    const QImage three = shownFor(100);
    EXPECT_NE(two.copy(place), three.copy(place));
    EXPECT_EQ(three.copy(place), shownFor(1200).copy(place));
    EXPECT_EQ(two.copy(764, 0, 36, 40), three.copy(764, 0, 36, 40)) << "the network's picture stands alone";
    kit::shot("home-messages");
}
