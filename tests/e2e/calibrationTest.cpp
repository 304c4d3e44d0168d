// The touch panel on the running phone: calibrated by raw touches, with the mapping in use from then on.
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <cmath>

namespace {

constexpr int kReports = 15; // two samples each, of which a few do not count
constexpr int kWaitMs = 20000;
const QPoint kCrosses[] = {{50, 50}, {750, 50}, {750, 430}, {50, 430}, {400, 240}};

class Calibration : public LivePhone
{
protected:
    // A panel that lies turned by a quarter, 4 counts a pixel one way and 7 the other.
    static QPoint onPanel(const QPoint& screen) { return {3900 - 7 * screen.y(), 300 + 4 * screen.x()}; }

    void raw(const QPoint& panel)
    {
        ctl({"touch-raw", QString::number(panel.x()), QString::number(panel.y())});
    }
    void tapRaw(const QPoint& panel)
    {
        raw(panel);
        ctl({"touch-raw", "up"});
        waitIdle();
    }
    void openPage()
    {
        ctl({"open", "LCD Adjusting"});
        ctl({"key", "Return"});
        waitPage("dlgCalibration");
    }
    QString top() { return ctl({"screen"}).toObject()["top"].toString(); }
    QPoint cross()
    {
        const QJsonObject at = widget("frmCross");
        return {at["x"].toInt() + 25, at["y"].toInt() + 25};
    }
    // One look for both: the question may come up between two.
    bool isCrossAt(const QPoint& place)
    {
        for (const QJsonValue& entry : topWindow()["widgets"].toArray()) {
            const QJsonObject at = entry.toObject();
            if (at["name"] == "frmCross")
                return QPoint(at["x"].toInt() + 25, at["y"].toInt() + 25) == place;
        }
        return false;
    }
    // The finger rests there until the page has its samples, and leaves.
    void holdRaw(const QPoint& panel)
    {
        const QPoint before = cross();
        for (int i = 0; i < kReports; ++i)
            raw(panel + QPoint(i % 3 - 1, 1 - i % 3));
        EXPECT_TRUE(kit::waits([&] { return !isCrossAt(before); }, kWaitMs));
        ctl({"touch-raw", "up"});
    }
    void calibrate()
    {
        for (const QPoint& place : kCrosses) {
            ASSERT_EQ(top(), "dlgCalibration");
            ASSERT_EQ(cross(), place);
            holdRaw(onPanel(place));
        }
    }
    QByteArray stored() const
    {
        QFile file(root() + "/rundata/data/pointercal");
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    bool waitTop(const QString& page)
    {
        return ctl({"wait", "page", page, "20000"}).toObject()["ok"].toBool();
    }
    // The home screen's way into the settings, by the panel alone.
    void expectTouchesLand()
    {
        const QPoint icon = middleOf("tileSetting");
        tapRaw(onPanel(icon));
        EXPECT_TRUE(waitTop("dlgIconviewForm"));
        ctl({"key", "F4"});
        EXPECT_TRUE(waitTop("frmDesktop"));
    }
};

} // namespace

TEST_F(Calibration, OfATurnedPanelIsStoredAndUsedAlsoAfterARestart)
{
    tapRaw(onPanel(middleOf("tileDirectory")));
    EXPECT_NE(top(), "dlgIconviewForm") << "the panel lies turned, and is not calibrated yet";
    ctl({"key", "F4"});
    EXPECT_TRUE(waitTop("frmDesktop"));
    openPage();
    calibrate();
    EXPECT_TRUE(waitTop("dlgMessageBox"));
    ctl({"key", "Return"});
    EXPECT_TRUE(waitTop("frmDesktop"));
    EXPECT_EQ(stored().count(' '), 6);
    EXPECT_TRUE(stored().endsWith(QByteArray("\n\0", 2)));
    EXPECT_EQ(QFile::symLinkTarget(root() + "/etc/pointercal"), "/rundata/data/pointercal");
    expectTouchesLand();
    quit();
    start();
    expectTouchesLand();
}

TEST_F(Calibration, ThatFailsThreeTimesEndsWithNothingStored)
{
    openPage();
    for (int round = 0; round < 3; ++round) {
        for (const QPoint& place :
             {QPoint(100, 100), QPoint(700, 100), QPoint(700, 400), QPoint(100, 400), QPoint(900, 900)})
            holdRaw(place);
        EXPECT_EQ(top(), "dlgCalibration");
        EXPECT_EQ(widget("labText")["text"].toString(), "LCD Adjusting fail, please try again!");
        EXPECT_EQ(cross(), kCrosses[0]);
    }
    raw({100, 100});
    EXPECT_TRUE(waitTop("frmDesktop"));
    EXPECT_TRUE(stored().isEmpty());
}

TEST_F(Calibration, EndsWithACallThatComesIn)
{
    openPage();
    holdRaw(onPanel(kCrosses[0]));
    EXPECT_EQ(cross(), kCrosses[1]);
    ctl({"set", "line", "0", "state=2", "user=1001", "server=pbx"});
    ctl({"ring", "4711"});
    EXPECT_TRUE(waitTop("frmCall"));
    for (const QJsonValue& window : ctl({"tree"}).toObject()["windows"].toArray())
        EXPECT_NE(window.toObject()["class"].toString(), "dlgCalibration");
    EXPECT_TRUE(stored().isEmpty());
}
