// The page "LCD Adjusting": crosses, samples, the fit and its proof, the stored mapping, and every way out.
#include "tests/calibration/calibrationPageTest.h"
#include "calibration/cross.h"
#include "calibration/dlgCalibration.h"
#include "host/screen/windowStack.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "support/host/language.h"
#include "support/host/screen.h"
#include "tests/file/failingCalls.h"
#include "tests/kit/kitTime.h"
#include <QApplication>
#include <QDialog>
#include <QFileInfo>
#include <QLabel>
#include <QTimer>
#include <cmath>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

using namespace rawRecords;

namespace {

const char* const kInstruction =
    "Please keep pressing each black cross until it moves to the next position on the "
    "screen or confirmation page appears!";
const char* const kFailed = "LCD Adjusting fail, please try again!";
const char* const kFinish = "Touch screen calibration finish. Use the new profile?";
const char* const kStored = "/rundata/data/pointercal";
const QRect kPlaces[] = {QRect(25, 25, 50, 50), QRect(725, 25, 50, 50), QRect(725, 405, 50, 50),
                         QRect(25, 405, 50, 50), QRect(375, 215, 50, 50)};

// Time that no test moves.
double realMs()
{
    timespec now = {};
    syscall(SYS_clock_gettime, CLOCK_MONOTONIC, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

double busyMs()
{
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

} // namespace

TEST_F(CalibrationPage, CoversTheScreenWithACrossAndAnInstruction)
{
    openPage();
    EXPECT_EQ(kit::screen().pixelColor(600, 100), QColor(Qt::white));
    EXPECT_EQ(page->metaObject()->className(), QString("dlgCalibration"));
    EXPECT_EQ(page->geometry(), QRect(0, 0, 800, 480));
    EXPECT_EQ(page->focusPolicy(), Qt::StrongFocus);
    QLabel* text = child<QLabel>("labText");
    EXPECT_EQ(text->geometry(), QRect(QPoint(176, 290), QPoint(623, 389)));
    EXPECT_EQ(text->alignment(), Qt::AlignCenter);
    EXPECT_TRUE(text->wordWrap());
    EXPECT_EQ(text->text(), kInstruction);
    EXPECT_EQ(cross(), kPlaces[0]);
    EXPECT_TRUE(page->testAttribute(Qt::WA_DeleteOnClose));
}

TEST_F(CalibrationPage, TheCrossIsBlackOnWhiteWithItsMiddleAtThePoint)
{
    openPage();
    const QImage screen = kit::screen();
    for (int i = 0; i < Cross::SIDE; ++i) {
        for (int across = 0; across < Cross::SIDE; ++across) {
            const bool isBar = std::abs(across - 25) <= 1 || std::abs(i - 25) <= 1;
            EXPECT_EQ(screen.pixelColor(25 + i, 25 + across), isBar ? QColor(Qt::black) : QColor(Qt::white));
        }
    }
}

TEST_F(CalibrationPage, TheDriversFilterIsOffWhileThePageIsThere)
{
    writeFile("/proc/tsc/x_jitter", "6\n");
    writeFile("/proc/tsc/y_jitter", "8\n");
    openPage();
    expectJitter("0\n", "0\n");
    page->close();
    kit::settle();
    expectJitter("6\n", "8\n");
}

TEST_F(CalibrationPage, ADriverWithoutAFilterIsNoHarm)
{
    mark();
    openPage();
    EXPECT_TRUE(traces().contains("/proc/tsc/x_jitter cannot be set to 0"));
    page->close();
    kit::settle();
    EXPECT_FALSE(QFileInfo::exists(hostPath("/proc/tsc")));
}

TEST_F(CalibrationPage, ThirtySecondsWithoutAPressEndIt)
{
    openPage();
    kit::holdClocks(true);
    kit::tap({400, 100});
    kit::stepTime(29000);
    EXPECT_TRUE(isOpen());
    kit::tap({400, 100});
    kit::stepTime(29900);
    EXPECT_TRUE(isOpen());
    kit::stepTime(200);
    EXPECT_FALSE(isOpen());
    kit::holdClocks(false);
    EXPECT_FALSE(QFileInfo::exists(hostPath(kStored)));
}

TEST_F(CalibrationPage, ADeviceThatCannotBeOpenedIsToldAtThePress)
{
    unlink(qPrintable(hostPath("/dev/input/TouchScreen")));
    mark();
    openPage();
    EXPECT_TRUE(traces().contains("ts_open: No such file or directory"));
    {
        kit::BoxAnswers boxes({"ok"});
        kit::tap({400, 100});
        EXPECT_EQ(boxes.titles(), QStringList{"Note"});
        EXPECT_EQ(boxes.texts(), QStringList{"Can not open Device"});
    }
    EXPECT_TRUE(isOpen());
    // It may come later.
    makePipe("/dev/input/TouchScreen");
    holdAt(100, 100);
    EXPECT_EQ(cross(), kPlaces[1]);
}

TEST_F(CalibrationPage, TheEnvironmentNamesAnotherDevice)
{
    unlink(qPrintable(hostPath("/dev/input/TouchScreen")));
    makePipe("/dev/input/event7");
    qputenv("TSLIB_TSDEVICE", "/dev/input/event7");
    openPage();
    holdAt(100, 100);
    EXPECT_EQ(cross(), kPlaces[1]);
}

TEST_F(CalibrationPage, NothingIsReadBeforeAPressAndTheFirstTick)
{
    openPage();
    send(report(100, 100, 9));
    kit::stepTime(1000);
    EXPECT_EQ(unread(), 64);
    kit::press({400, 100});
    kit::stepTime(90);
    EXPECT_EQ(unread(), 64);
    kit::stepTime(20);
    EXPECT_LT(unread(), 64);
}

TEST_F(CalibrationPage, TwentyFourSamplesMakeAPointAndTheirMeanIsItsPosition)
{
    openPage();
    kit::press({400, 100});
    mark();
    QByteArray reports;
    long sumX = 0;
    long sumY = 0;
    for (int i = 0; i < 13; ++i) {
        // The first has one sample with a finger, and so has the last that counts.
        const int samples = i == 0 || i == 12 ? 1 : 2;
        sumX += samples * (1000 + 7 * i * i);
        sumY += samples * (2000 + 5 * i * i);
        reports += report(1000 + 7 * i * i, 2000 + 5 * i * i, 40);
    }
    ASSERT_NE(sumX % CALIBRATION_SAMPLES, 0);
    send(reports);
    kit::stepTime(400);
    EXPECT_TRUE(traces().contains("Took 24 samples..."));
    EXPECT_EQ(cross(), kPlaces[1]);
    long x = 0;
    long y = 0;
    for (const ts_sample& sample : samp) {
        EXPECT_EQ(sample.pressure, 40u);
        x += sample.x;
        y += sample.y;
    }
    EXPECT_EQ(x, sumX);
    EXPECT_EQ(y, sumY);
}

TEST_F(CalibrationPage, ALiftedFingerKeepsTheSamplesSoFar)
{
    openPage();
    kit::press({400, 100});
    send(report(100, 100, 9) + report(100, 100, 9) + lifted());
    kit::stepTime(1000);
    EXPECT_EQ(cross(), kPlaces[0]);
    mark();
    QByteArray reports;
    for (int i = 0; i < 11; ++i) // two samples each but for the first
        reports += report(100, 100, 9);
    send(reports);
    kit::stepTime(1000);
    EXPECT_EQ(cross(), kPlaces[1]) << "3 before and 21 now";
    EXPECT_TRUE(traces().contains("Took 24 samples..."));
}

TEST_F(CalibrationPage, AFingerThatComesDownAgainGoesOnWithTheSamplesSoFar)
{
    openPage();
    kit::press({400, 100});
    send(report(100, 100, 9) + report(100, 100, 9) + lifted());
    kit::stepTime(1000);
    kit::release({400, 100});
    kit::stepTime(1000);
    EXPECT_EQ(cross(), kPlaces[0]);
    mark();
    kit::press({400, 100});
    kit::stepTime(1000);
    QByteArray reports;
    for (int i = 0; i < 11; ++i) // two samples each but for the first
        reports += report(100, 100, 9);
    send(reports);
    kit::stepTime(1000);
    EXPECT_EQ(cross(), kPlaces[1]) << "3 before and 21 now";
    EXPECT_TRUE(traces().contains("Took 24 samples..."));
}

TEST_F(CalibrationPage, ANewPointBeginsOnlyAfterTheFingerHasLeft)
{
    openPage();
    holdAt(100, 100);
    ASSERT_EQ(cross(), kPlaces[1]);
    kit::release({400, 100});
    kit::stepTime(10);
    kit::press({400, 100});
    const QByteArray touch = shortRecords({x(100), y(100), pressure(9)}); // nothing keeps a read waiting
    for (int i = 0; i < 170; ++i) {
        send(touch);
        kit::stepTime(i < 150 ? 4 : 60);
    }
    EXPECT_EQ(cross(), kPlaces[1]);
    send(lifted());
    kit::stepTime(1500);
    holdAt(700, 100);
    EXPECT_EQ(cross(), kPlaces[2]);
}

TEST_F(CalibrationPage, AFingerThatLiesStillHasNotLeft)
{
    openPage();
    holdAt(100, 100);
    ASSERT_EQ(cross(), kPlaces[1]);
    QByteArray reports;
    for (int i = 0; i < 13; ++i)
        reports += report(100, 100, 9);
    for (int i = 0; i < 3; ++i) {
        kit::stepTime(2000);
        send(reports);
    }
    kit::stepTime(2000);
    EXPECT_EQ(cross(), kPlaces[1]);
    send(lifted());
    kit::stepTime(1500);
    holdAt(700, 100);
    EXPECT_EQ(cross(), kPlaces[2]);
}

TEST_F(CalibrationPage, AFingerThatHasLeftIsSeenBehindAllThatItReportedBefore)
{
    openPage();
    holdAt(100, 100);
    ASSERT_EQ(cross(), kPlaces[1]);
    for (int i = 0; i < 300; ++i)
        send(report(100, 100, 9));
    send(lifted());
    kit::release({400, 100});
    kit::stepTime(30);
    const int before = unread();
    kit::settle();
    EXPECT_LE(unread(), before - 10 * 32) << "as fast as it can be read, not one a tick";
    EXPECT_TRUE(kit::waitUntil([this] { return unread() == 0; }));
    holdAt(700, 100);
    EXPECT_EQ(cross(), kPlaces[2]);
}

TEST_F(CalibrationPage, TheCrossGoesRoundItsFivePlaces)
{
    openPage();
    for (int i = 0; i < CALIBRATION_POINTS; ++i) {
        EXPECT_EQ(cross(), kPlaces[i]);
        EXPECT_EQ(cross().center() + QPoint(1, 1), QPoint(xess[i], yess[i]));
        kit::BoxAnswers boxes({"no"});
        touchPoint(100, 100);
    }
    EXPECT_EQ(cross(), kPlaces[0]);
}

TEST_F(CalibrationPage, TheNewMappingIsStoredAsDriversKnowItAndUsed)
{
    openPage();
    mark();
    kit::BoxAnswers boxes({"yes"});
    touchFivePoints();
    EXPECT_EQ(boxes.titles(), QStringList{"Note"});
    EXPECT_EQ(boxes.texts(), QStringList{kFinish});
    EXPECT_FALSE(isOpen());
    const QStringList log = traces();
    EXPECT_TRUE(log.contains("m_nPressCount = 5"));
    EXPECT_TRUE(log.contains("---nRet[1]---"));
    const QByteArray stored = readFile(kStored);
    ASSERT_TRUE(stored.endsWith(QByteArray("\n\0", 2)));
    const QList<QByteArray> parts = stored.chopped(2).split(' ');
    ASSERT_EQ(parts.size(), 7);
    const auto at = [&parts](int i) { return parts[i].toInt(); };
    EXPECT_EQ(at(6), 65536);
    // As the panel lies: x of the screen is (raw y - 300) / 4, y is (3900 - raw x) / 7.
    EXPECT_NEAR(at(0), 0, 60);
    EXPECT_NEAR(at(1), 16384, 60);
    EXPECT_NEAR(at(2) / 65536.0, -75, 1);
    EXPECT_NEAR(at(3), -9362, 60);
    EXPECT_NEAR(at(4), 0, 60);
    EXPECT_NEAR(at(5) / 65536.0, 3900 / 7.0, 1);
    EXPECT_TRUE(
        log.contains(QString("m_ObjCalibration.a[0] = %1,m_ObjCalibration.a[1] = %2, m_ObjCalibration.a[2] = "
                             "%3, m_ObjCalibration.a[3] =%4, m_ObjCalibration.a[4] = %5, "
                             "m_ObjCalibration.a[5] = %6")
                         .arg(at(2))
                         .arg(at(0))
                         .arg(at(1))
                         .arg(at(5))
                         .arg(at(3))
                         .arg(at(4))));
    char link[64] = {};
    EXPECT_GT(readlink(qPrintable(hostPath("/etc/pointercal")), link, sizeof link - 1), 0);
    EXPECT_STREQ(link, kStored);
    EXPECT_TRUE(QWSServer::isMouseOpen());
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::BlankCursor);
}

TEST_F(CalibrationPage, AProfileThatIsNotWantedIsNotStored)
{
    writeFile("/proc/tsc/x_jitter", "");
    writeFile("/proc/tsc/y_jitter", "");
    writeFile(kStored, "1 2 3 4 5 6 7\n");
    openPage();
    mark();
    kit::BoxAnswers boxes({"no"});
    touchFivePoints();
    EXPECT_TRUE(traces().contains("---nRet[0]---"));
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(readFile(kStored), "1 2 3 4 5 6 7\n");
    expectJitter("6\n", "8\n");
}

TEST_F(CalibrationPage, AFullDiskIsToldAndKeepsTheOldMappingAndThePage)
{
    writeFile(kStored, "1 2 3 4 5 6 7\n");
    openPage();
    {
        FailingCalls disk;
        disk.setSpace(0);
        kit::BoxAnswers boxes({"yes", "ok"});
        touchFivePoints();
        EXPECT_EQ(boxes.texts(), (QStringList{kFinish, "The settings cannot be saved!"}));
    }
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(readFile(kStored), "1 2 3 4 5 6 7\n");
    EXPECT_FALSE(QFileInfo::exists(hostPath("/etc/pointercal")));
    // For another round; but not for ever.
    EXPECT_EQ(cross(), kPlaces[0]);
    kit::stepTime(31000);
    EXPECT_FALSE(isOpen());
}

TEST_F(CalibrationPage, TheLinkTakesThePlaceOfAFileAndIsNotFollowed)
{
    writeFile("/etc/pointercal", "old");
    openPage();
    kit::BoxAnswers boxes({"yes"});
    touchFivePoints();
    EXPECT_TRUE(QFileInfo(hostPath("/etc/pointercal")).isSymLink());
    EXPECT_EQ(readFile(kStored).count(' '), 6);
}

TEST_F(CalibrationPage, AFitThatDoesNotHoldIsToldInRedForThreeSeconds)
{
    openPage();
    mark();
    failRound();
    QLabel* text = child<QLabel>("labText");
    EXPECT_EQ(text->text(), kFailed);
    EXPECT_EQ(text->palette().color(QPalette::WindowText), QColor(Qt::red));
    EXPECT_EQ(cross(), kPlaces[0]);
    EXPECT_TRUE(traces().filter("check error((").size() == 1);
    kit::stepTime(2500 - m_nRoundMs);
    EXPECT_EQ(text->text(), kFailed);
    kit::stepTime(600);
    EXPECT_EQ(text->text(), kInstruction);
    EXPECT_EQ(text->palette().color(QPalette::WindowText), QColor(Qt::black));
    EXPECT_FALSE(QFileInfo::exists(hostPath(kStored)));
}

TEST_F(CalibrationPage, ThePressAfterThreeFailedRoundsEndsIt)
{
    openPage();
    for (int round = 0; round < 3; ++round) {
        failRound();
        EXPECT_TRUE(isOpen()) << round;
    }
    kit::stepTime(4000);
    EXPECT_TRUE(isOpen());
    kit::press({400, 100});
    EXPECT_FALSE(isOpen());
}

TEST_F(CalibrationPage, ARoundThatHoldsForgetsTheFailedOnes)
{
    openPage();
    failRound();
    failRound();
    FailingCalls disk;
    disk.setSpace(0);
    {
        kit::BoxAnswers boxes({"yes", "ok"});
        touchFivePoints();
    }
    failRound();
    kit::press({400, 100});
    EXPECT_TRUE(isOpen());
}

TEST_F(CalibrationPage, FiveTouchesAtOneSpotStartAnewAndShowNothing)
{
    openPage();
    mark();
    kit::BoxAnswers boxes;
    for (int i = 0; i < CALIBRATION_POINTS; ++i)
        touchPoint(500, 500);
    EXPECT_TRUE(boxes.texts().isEmpty());
    EXPECT_EQ(traces().filter("ts_calibrate: determinant is too small -- 0.000000").size(), 1);
    EXPECT_EQ(child<QLabel>("labText")->text(), kInstruction);
    EXPECT_EQ(cross(), kPlaces[0]);
    touchPoint(500, 500);
    EXPECT_EQ(cross(), kPlaces[1]);
}

TEST_F(CalibrationPage, ACallThatComesInEndsItAndRestoresTheFilter)
{
    writeFile("/proc/tsc/x_jitter", "");
    writeFile("/proc/tsc/y_jitter", "");
    openPage();
    QWidget other;
    other.setGeometry(0, 0, 800, 480);
    other.show();
    kit::settle();
    EXPECT_TRUE(isOpen()) << "covered by something that is no call";
    other.hide();
    kit::settle();
    phoneService::instance().backend();
    phoneSimulation::instance()->setCalls(1, 0);
    other.show();
    kit::settle();
    EXPECT_FALSE(isOpen());
    expectJitter("6\n", "8\n");
}

// A call comes up as soon as the box with that text is there; others are answered with yes.
class CallOverBox
{
public:
    explicit CallOverBox(const char* text)
    {
        m_look.callOnTimeout([this, text] {
            QDialog* box = qobject_cast<QDialog*>(kit::windows().value(0));
            if (!box || qstrcmp(box->metaObject()->className(), "dlgMessageBox") != 0)
                return;
            if (box->findChild<QLabel*>("labText")->text() != text) {
                box->accept();
                return;
            }
            m_look.stop();
            phoneService::instance().backend();
            phoneSimulation::instance()->setCalls(1, 0);
            m_call.setGeometry(0, 0, 800, 480);
            m_call.show();
        });
        m_look.start(1);
    }

private:
    QTimer m_look;
    QWidget m_call;
};

TEST_F(CalibrationPage, ACallEndsItAlsoWhenItsOwnNoteIsUp)
{
    writeFile("/proc/tsc/x_jitter", "");
    writeFile("/proc/tsc/y_jitter", "");
    unlink(qPrintable(hostPath("/dev/input/TouchScreen")));
    openPage();
    const CallOverBox call("Can not open Device");
    kit::tap({400, 100});
    kit::settle();
    EXPECT_FALSE(isOpen());
    expectJitter("6\n", "8\n");
}

TEST_F(CalibrationPage, ACallEndsItAlsoWhenAFailedSaveIsTold)
{
    writeFile("/proc/tsc/x_jitter", "");
    writeFile("/proc/tsc/y_jitter", "");
    openPage();
    QDir().mkpath(hostPath(kStored)); // no file takes the place of a folder
    const CallOverBox call("The settings cannot be saved!");
    touchFivePoints();
    kit::settle();
    EXPECT_FALSE(isOpen());
    expectJitter("6\n", "8\n");
}

TEST_F(CalibrationPage, TheFunctionKeysEndItWhenTheyAreReleased)
{
    for (const Qt::Key key : {Qt::Key_F1, Qt::Key_F2, Qt::Key_F3, Qt::Key_F4}) {
        openPage();
        kit::keyPress(key);
        EXPECT_TRUE(isOpen());
        kit::keyRelease(key);
        EXPECT_FALSE(isOpen()) << key;
    }
    openPage();
    for (const Qt::Key key : {Qt::Key_F5, Qt::Key_Right, Qt::Key_Return, Qt::Key_5}) {
        kit::key(key);
        EXPECT_TRUE(isOpen()) << key;
    }
}

TEST_F(CalibrationPage, ANewLanguageShowsInPlaceWhateverIsSaid)
{
    openPage();
    QLabel* text = child<QLabel>("labText");
    GetLanguageHelper()->SetLanguage("German");
    kit::settle();
    EXPECT_EQ(text->text(), qTranslate(kInstruction));
    EXPECT_NE(text->text(), kInstruction);
    failRound();
    EXPECT_EQ(text->text(), qTranslate(kFailed));
    GetLanguageHelper()->SetLanguage("English");
    kit::settle();
    EXPECT_EQ(text->text(), kFailed);
}

// A read waits a tenth of a second for a silent device, and the page asks ten times a second.
TEST_F(CalibrationPage, ADeviceThatSaysNothingNeverStopsThePhone)
{
    openPage();
    kit::tap({400, 100});
    const double before = realMs();
    kit::stepTime(5000);
    EXPECT_LT(realMs() - before, 2500) << "the reads would have waited nearly five seconds";
    EXPECT_EQ(cross(), kPlaces[0]);
    holdAt(100, 100);
    EXPECT_EQ(cross(), kPlaces[1]);
}

TEST_F(CalibrationPage, WaitingForSamplesTakesLessThanAHundredthOfAProcessor)
{
    constexpr int kMs = 10000;
    const auto stepping = [] {
        const double before = busyMs();
        kit::stepTime(kMs);
        return busyMs() - before;
    };
    double without = stepping();
    double with = 1e9;
    for (int i = 0; i < 3; ++i)
        without = std::min(without, stepping());
    openPage();
    for (int i = 0; i < 3; ++i) {
        kit::tap({400, 100});
        with = std::min(with, stepping());
    }
    EXPECT_TRUE(isOpen());
    RecordProperty("percent", std::to_string((with - without) * 100 / kMs));
    EXPECT_LT(with - without, kMs / 100);
}

TEST_F(CalibrationPage, ADeviceThatClosesCostsNothingAndMayComeBack)
{
    openPage();
    kit::press({400, 100});
    send(report(100, 100, 9));
    kit::stepTime(300);
    closeWriter();
    const double before = busyMs();
    kit::stepTime(5000);
    EXPECT_LT(busyMs() - before, 1000) << "a closed pipe is always ready";
    EXPECT_TRUE(isOpen());
    openWriter("/dev/input/TouchScreen");
    holdAt(100, 100);
    EXPECT_EQ(cross(), kPlaces[1]);
}

TEST_F(CalibrationPage, AFloodWithoutAPositionNeverStopsThePhone)
{
    openPage();
    kit::press({400, 100});
    const QByteArray flood = shortRecords(std::vector<tagRecord>(4096, end()));
    for (int i = 0; i < 20; ++i) {
        sendSome(flood);
        const double before = busyMs();
        kit::stepTime(100);
        EXPECT_LT(busyMs() - before, 500) << "a tick takes a bounded part";
    }
    EXPECT_EQ(cross(), kPlaces[0]);
    EXPECT_GT(unread(), 0) << "what it does not need it does not read";
}

TEST_F(CalibrationPage, GarbageCostsNothingButItself)
{
    openPage();
    kit::press({400, 100});
    send(QByteArray(5, '\x03'));
    kit::stepTime(500);
    send(QByteArray("some text that is no record at all, and ends odd"));
    kit::stepTime(500);
    EXPECT_EQ(cross(), kPlaces[0]);
    kit::release({400, 100});
    holdAt(100, 100);
    EXPECT_EQ(cross(), kPlaces[1]);
}

TEST_F(CalibrationPage, AnotherKindOfEventInTheEnvironmentTakesNoSamples)
{
    qputenv("TSLIB_TSEVENTTYPE", "INPUT");
    openPage();
    kit::press({400, 100});
    send(report(100, 100, 9));
    kit::stepTime(2000);
    EXPECT_EQ(unread(), 64);
    EXPECT_EQ(cross(), kPlaces[0]);
}

TEST_F(CalibrationPage, ADeviceThatCannotBeReadIsToldAndGivenUpUntilTheNextPress)
{
    unlink(qPrintable(hostPath("/dev/input/TouchScreen")));
    QDir().mkpath(hostPath("/dev/input/TouchScreen"));
    openPage();
    kit::press({400, 100});
    kit::stepTime(150);
    rmdir(qPrintable(hostPath("/dev/input/TouchScreen")));
    mark();
    kit::stepTime(2000);
    EXPECT_EQ(traces().filter("ts_read: No such file or directory").size(), 1);
    kit::release({400, 100});
    makePipe("/dev/input/TouchScreen");
    holdAt(100, 100);
    EXPECT_EQ(cross(), kPlaces[1]);
}
