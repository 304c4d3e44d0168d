// The simulated touch panel: its raw device, the stored calibration, and the finger on the screen.
#include "host/touch/touchPanel.h"
#include "host/screen/windowStack.h"
#include "host/touch/finger.h"
#include "host/touch/mousePanel.h"
#include "host/touch/touchMapping.h"
#include "support/file/deviceRoot.h"
#include "support/host/screen.h"
#include "tests/kit/phoneTest.h"
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QWidget>
#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <linux/input-event-codes.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char* const kStored = "/rundata/data/pointercal";
const char* const kDevice = "/dev/input/TouchScreen";
// A panel that lies turned by a quarter: screen x is (raw y - 300) / 4, screen y is (3900 - raw x) / 7.
const char* const kTurned = "0 16384 -4915200 -9362 0 36512914 65536\n";

class TouchedWindow : public QWidget
{
public:
    TouchedWindow()
    {
        setWindowFlags(Qt::FramelessWindowHint);
        setGeometry(0, 0, 800, 480);
        setMouseTracking(true);
        show();
        kit::settle();
    }
    QStringList touches;

protected:
    void mousePressEvent(QMouseEvent* event) override { add("down", event); }
    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (event->buttons())
            add("move", event);
    }
    void mouseReleaseEvent(QMouseEvent* event) override { add("up", event); }

private:
    void add(const char* what, const QMouseEvent* event)
    {
        touches.append(QString("%1 %2,%3").arg(what).arg(event->position().x()).arg(event->position().y()));
    }
};

class TouchPanelTest : public PhoneTest
{
protected:
    ~TouchPanelTest() override
    {
        if (m_nReader >= 0)
            close(m_nReader);
    }
    void startReading()
    {
        ASSERT_TRUE(TouchPanel::instance().start());
        m_nReader = open(qPrintable(hostPath(kDevice)), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        ASSERT_GE(m_nReader, 0);
    }
    // "type code value" of each record that has come.
    QStringList records()
    {
        QStringList found;
        char record[16];
        while (read(m_nReader, record, sizeof record) == ssize_t(sizeof record)) {
            uint16_t type = 0;
            uint16_t code = 0;
            int32_t value = 0;
            int32_t seconds = 0;
            memcpy(&seconds, record, sizeof seconds);
            memcpy(&type, record + 8, sizeof type);
            memcpy(&code, record + 10, sizeof code);
            memcpy(&value, record + 12, sizeof value);
            EXPECT_GT(seconds, 0);
            found.append(QString("%1 %2 %3").arg(type).arg(code).arg(value));
        }
        return found;
    }
    static void report(int x, int y, int pressure)
    {
        TouchPanel::instance().report(x, y, pressure);
        kit::settle();
    }
    static void lift()
    {
        TouchPanel::instance().lift();
        kit::settle();
    }
    int m_nReader = -1;
};

} // namespace

TEST_F(TouchPanelTest, WithoutACalibrationTheWholePanelIsTheWholeScreen)
{
    TouchMapping mapping;
    mapping.look();
    EXPECT_EQ(mapping.toScreen(0, 0), QPoint(0, 0));
    EXPECT_EQ(mapping.toScreen(2048, 2048), QPoint(400, 240));
    EXPECT_EQ(mapping.toScreen(4095, 4095), QPoint(799, 479));
}

TEST_F(TouchPanelTest, AStoredCalibrationIsAppliedAndFollowed)
{
    writeFile(kStored, QByteArray(kTurned) + '\0');
    TouchMapping mapping;
    mapping.look();
    EXPECT_EQ(mapping.toScreen(3900 - 7 * 100, 300 + 4 * 200), QPoint(200, 100));
    writeFile(kStored, "65536 0 0 0 65536 0 65536\n");
    EXPECT_EQ(mapping.toScreen(3200, 1100), QPoint(200, 100)) << "until it is looked at";
    mapping.look();
    EXPECT_EQ(mapping.toScreen(300, 200), QPoint(300, 200));
    QFile::remove(hostPath(kStored));
    mapping.look();
    EXPECT_EQ(mapping.toScreen(2048, 2048), QPoint(400, 240));
}

TEST_F(TouchPanelTest, ADamagedCalibrationIsToldOnceAndNotApplied)
{
    for (const QByteArray& damaged : {QByteArray("1 2 3 4 5 6\n"), QByteArray("1 2 3 4 5 6 0\n"),
                                      QByteArray("a"), QByteArray(8192, '7'), QByteArray()}) {
        writeFile(kStored, damaged);
        mark();
        TouchMapping mapping;
        mapping.look();
        mapping.look();
        EXPECT_EQ(mapping.toScreen(2048, 2048), QPoint(400, 240)) << damaged.left(20).constData();
        EXPECT_EQ(traces().filter("is damaged").size(), 1);
    }
}

TEST_F(TouchPanelTest, WhateverThePanelSaysIsOnTheScreen)
{
    writeFile(kStored, "2147483647 2147483647 2147483647 -2147483648 -2147483648 -2147483648 1\n");
    TouchMapping mapping;
    mapping.look();
    EXPECT_EQ(mapping.toScreen(2147483647, 2147483647), QPoint(799, 0));
    EXPECT_EQ(mapping.toScreen(-2147483647 - 1, -2147483647 - 1), QPoint(0, 479));
}

TEST_F(TouchPanelTest, NoMappingAndNoPositionIsTooLarge)
{
    const long long extremes[] = {INT_MIN, -1, 0, 1, INT_MAX};
    for (const long long ofX : extremes) {
        for (const long long ofY : extremes) {
            for (const long long scale : {INT_MIN, -1, 1, INT_MAX}) {
                writeFile(kStored,
                          QByteArray::fromStdString(std::to_string(ofX) + ' ' + std::to_string(ofY) + " 0 " +
                                                    std::to_string(ofX) + ' ' + std::to_string(ofY) +
                                                    " -2147483648 " + std::to_string(scale)));
                TouchMapping mapping;
                mapping.look();
                for (const long long x : extremes) {
                    for (const long long y : extremes) {
                        const long double sum =
                            static_cast<long double>(x * ofX) + static_cast<long double>(y * ofY);
                        const QPoint at = mapping.toScreen(int(x), int(y));
                        EXPECT_NEAR(at.x(), double(std::clamp(sum / scale, 0.0L, 799.0L)), 1);
                        EXPECT_NEAR(at.y(), double(std::clamp((sum + INT_MIN) / scale, 0.0L, 479.0L)), 1);
                    }
                }
            }
        }
    }
}

TEST_F(TouchPanelTest, AFingerIsReportedToWhoeverReadsTheDevice)
{
    startReading();
    struct stat info;
    ASSERT_EQ(stat(qPrintable(hostPath(kDevice)), &info), 0);
    EXPECT_TRUE(S_ISFIFO(info.st_mode));
    EXPECT_EQ(info.st_mode & 07777, 0600u);
    report(1200, 3400, 60);
    EXPECT_EQ(records(), (QStringList{"3 0 1200", "3 1 3400", "3 2 60", "0 0 0"}));
    lift();
    EXPECT_EQ(records(), (QStringList{"3 2 0", "0 0 0"}));
}

TEST_F(TouchPanelTest, AReaderThatGoesAndOneThatDoesNotReadAreNoHarm)
{
    startReading();
    report(1, 1, 1);
    close(m_nReader);
    report(2, 2, 2);
    report(3, 3, 3);
    m_nReader = open(qPrintable(hostPath(kDevice)), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    report(4, 4, 4);
    EXPECT_EQ(records().value(0), "3 0 4") << "the next reader gets nothing old";
    for (int i = 0; i < 3000; ++i)
        TouchPanel::instance().report(i, i, 1);
    kit::settle();
    EXPECT_EQ(records().size() % 4, 0);
    lift();
}

TEST_F(TouchPanelTest, TheMachinesOwnDevicesAreLeftAlone)
{
    deviceSetRoot("");
    EXPECT_FALSE(TouchPanel::instance().start());
    deviceSetRoot(qPrintable(root()));
    writeFile(kDevice, "a file of somebody's");
    EXPECT_FALSE(TouchPanel::instance().start());
    EXPECT_EQ(readFile(kDevice), "a file of somebody's");
}

TEST_F(TouchPanelTest, AFingerTouchesWhereTheCalibrationSays)
{
    writeFile(kStored, kTurned);
    TouchedWindow window;
    report(3200, 1100, 60);
    report(3200, 1101, 60); // a quarter of a pixel
    report(3193, 1104, 60);
    lift();
    lift();
    EXPECT_EQ(window.touches, (QStringList{"down 200,100", "move 201,101", "up 201,101"}));
}

TEST_F(TouchPanelTest, AFingerKeepsTheCalibrationThatItCameDownWith)
{
    writeFile(kStored, "65536 0 0 0 65536 0 65536\n");
    TouchedWindow window;
    report(200, 100, 60);
    writeFile(kStored, kTurned);
    report(201, 101, 60);
    lift();
    EXPECT_EQ(window.touches, (QStringList{"down 200,100", "move 201,101", "up 201,101"}));
    report(3200, 1100, 60);
    lift();
    EXPECT_EQ(window.touches.mid(3), (QStringList{"down 200,100", "up 200,100"}));
}

TEST_F(TouchPanelTest, APressureBelowZeroIsNoFinger)
{
    writeFile(kStored, "65536 0 0 0 65536 0 65536\n");
    TouchedWindow window;
    report(200, 100, -1);
    EXPECT_TRUE(window.touches.isEmpty());
    report(200, 100, 1);
    report(300, 100, -2147483647 - 1);
    EXPECT_EQ(window.touches, (QStringList{"down 200,100", "up 200,100"}));
}

TEST_F(TouchPanelTest, NothingIsTouchedWhileTheTouchInputIsClosed)
{
    TouchedWindow window;
    QWSServer::closeMouse();
    report(2048, 2048, 60);
    lift();
    QWSServer::openMouse();
    EXPECT_TRUE(window.touches.isEmpty());
    report(2048, 2048, 60);
    lift();
    EXPECT_EQ(window.touches.size(), 2);
}

TEST_F(TouchPanelTest, AMouseIsAFingerOnAPanelThatLiesCrooked)
{
    TouchedWindow window;
    QObject life;
    ASSERT_TRUE(MousePanel::start(&life));
    startReading();
    const QPoint panel = MousePanel::toPanel({400, 240});
    TouchMapping whole;
    whole.look();
    EXPECT_GT((whole.toScreen(panel.x(), panel.y()) - QPoint(400, 240)).manhattanLength(), 5);
    kit::press({400, 240});
    EXPECT_EQ(records().mid(0, 4), (QStringList{QString("3 0 %1").arg(panel.x()),
                                                QString("3 1 %1").arg(panel.y()), "3 2 100", "0 0 0"}));
    kit::stepTime(200);
    const QStringList resting = records();
    EXPECT_GE(resting.size(), 4 * 15) << "a finger that rests is reported again and again";
    EXPECT_NEAR(resting.filter(QRegularExpression("^3 0 ")).last().mid(4).toInt(), panel.x(), 2)
        << "and rests";
    kit::release({400, 240});
    EXPECT_EQ(records(), (QStringList{"3 2 0", "0 0 0"}));
    kit::stepTime(200);
    EXPECT_TRUE(records().isEmpty());
    ASSERT_GE(window.touches.size(), 2);
    const QPoint seen = whole.toScreen(panel.x(), panel.y());
    EXPECT_EQ(window.touches.first(), QString("down %1,%2").arg(seen.x()).arg(seen.y()));
    EXPECT_TRUE(window.touches.last().startsWith("up "));
    EXPECT_EQ(window.touches.filter("down").size(), 1);
}

TEST_F(TouchPanelTest, AQuickSecondTouchOfTheMouseIsATouch)
{
    TouchedWindow window;
    QObject life;
    ASSERT_TRUE(MousePanel::start(&life));
    for (int i = 0; i < 3; ++i)
        kit::tap(QPoint(400, 240));
    EXPECT_EQ(window.touches.filter("down").size(), 3);
    EXPECT_EQ(window.touches.filter("up").size(), 3);
}

TEST_F(TouchPanelTest, AHandWithAMouseKeepsItsPointer)
{
    QObject life;
    ASSERT_TRUE(MousePanel::start(&life));
    QWSServer::setCursorVisible(false);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(TouchPanelTest, AWindowKeepsTheFingerThatWentDownInIt)
{
    TouchedWindow window;
    window.setGeometry(0, 0, 400, 480);
    kit::settle();
    fingerTouch({100, 100}, FINGER_DOWN);
    fingerTouch({600, 100}, FINGER_MOVE);
    fingerTouch({600, 100}, FINGER_UP);
    kit::settle();
    EXPECT_EQ(window.touches, (QStringList{"down 100,100", "move 600,100", "up 600,100"}));
}
