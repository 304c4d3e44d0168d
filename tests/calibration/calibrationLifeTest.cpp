// The page "LCD Adjusting" from show to show: what begins anew, and what goes on behind a question or unseen.
#include "host/screen/windowStack.h"
#include "support/host/screen.h"
#include "tests/calibration/calibrationPageTest.h"
#include "tests/kit/kitTime.h"
#include <QTimer>

using namespace rawRecords;

namespace {

const QRect kFirst(25, 25, 50, 50);
const QRect kSecond(725, 25, 50, 50);

class CalibrationLife : public CalibrationPage
{
protected:
    // A page that outlives its closing, as whoever keeps pages has it.
    void openKept()
    {
        openPage();
        page->setAttribute(Qt::WA_DeleteOnClose, false);
    }
    ~CalibrationLife() override
    {
        if (m_page)
            m_page->setAttribute(Qt::WA_DeleteOnClose);
    }
    void showAgain()
    {
        page->hide();
        kit::settle();
        page->show();
        kit::settle();
    }
    // Has hand do something while the question of a round that holds is up, and answers it then.
    void finishRound(const char* answer, const std::function<void(QWidget*)>& hand)
    {
        bool isDone = false;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &look, [&] {
            const QPointer<QWidget> box = kit::windows().value(0);
            if (!box || box->objectName() != "dlgMessageBox")
                return;
            look.stop();
            hand(box);
            isDone = true;
            ASSERT_TRUE(box);
            kit::tap(box->findChild<QWidget*>(answer));
        });
        look.start(1);
        touchFivePoints();
        EXPECT_TRUE(isDone);
    }
    // A finger's reports that nobody takes.
    void expectNothingRead()
    {
        const int before = unread();
        send(report(100, 100, 9));
        kit::stepTime(1000);
        EXPECT_EQ(unread(), before + 64);
    }
};

} // namespace

TEST_F(CalibrationLife, EachShowBeginsWithNoSamplesAtTheFirstPoint)
{
    openPage();
    touchPoint(100, 100);
    ASSERT_EQ(cross(), kSecond);
    kit::press({400, 100});
    send(report(100, 100, 9) + report(100, 100, 9));
    kit::stepTime(300);
    EXPECT_EQ(unread(), 0);
    kit::release({400, 100});
    showAgain();
    EXPECT_EQ(cross(), kFirst);
    kit::press({400, 100});
    QByteArray reports;
    for (int i = 0; i < 11; ++i) // two samples each but for the first
        reports += report(100, 100, 9);
    send(reports);
    kit::stepTime(400);
    EXPECT_EQ(cross(), kFirst) << "21 samples, and none from before";
    send(report(100, 100, 9) + report(100, 100, 9));
    kit::stepTime(400);
    EXPECT_EQ(cross(), kSecond);
}

TEST_F(CalibrationLife, EachShowHasThreeRounds)
{
    openPage();
    for (int round = 0; round < 3; ++round)
        failRound();
    kit::stepTime(300);
    showAgain();
    kit::tap({400, 100});
    EXPECT_TRUE(isOpen());
}

TEST_F(CalibrationLife, TheQuestionMayBeThoughtAboutForAsLongAsOneLikes)
{
    openPage();
    finishRound("btnYes", [this](QWidget* box) {
        kit::stepTime(60000);
        EXPECT_TRUE(isOpen());
        EXPECT_EQ(kit::windows().value(0), box);
    });
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(QFileInfo::exists(hostPath("/rundata/data/pointercal")));
}

TEST_F(CalibrationLife, APageThatIsHiddenTakesNoSamples)
{
    openKept();
    kit::press({400, 100});
    send(report(100, 100, 9));
    kit::stepTime(300);
    EXPECT_EQ(unread(), 0);
    page->hide();
    expectNothingRead();
}

TEST_F(CalibrationLife, APageThatIsHiddenDoesNotLookForTheFingerToLeave)
{
    openKept();
    holdAt(100, 100);
    ASSERT_EQ(cross(), kSecond);
    page->hide();
    kit::settle();
    expectNothingRead();
}

TEST_F(CalibrationLife, APageThatEndsWithItsQuestionDoesNotLookForTheFingerToLeave)
{
    openKept();
    finishRound("btnNo", [](QWidget*) {});
    EXPECT_FALSE(isOpen());
    expectNothingRead();
}

TEST_F(CalibrationLife, ThirtySecondsAfterItsEndNothingEndsItOnceMore)
{
    writeFile("/proc/tsc/x_jitter", "");
    writeFile("/proc/tsc/y_jitter", "");
    openKept();
    kit::key(Qt::Key_F1);
    EXPECT_FALSE(isOpen());
    expectJitter("6\n", "8\n");
    writeFile("/proc/tsc/x_jitter", "somebody's");
    kit::stepTime(31000);
    EXPECT_EQ(readFile("/proc/tsc/x_jitter"), "somebody's");
}
