#include "host/widgets/lampMark.h"
#include "support/host/bars.h"
#include "support/host/screen.h"
#include "tests/kit/phoneTest.h"
#include <QLabel>

namespace {

class LampMark : public PhoneTest
{
protected:
    LampMark()
    {
        page.setGeometry(0, 0, 800, 480);
        bar = new qTopBar(&page);
        bar->setTitle(QString(60, 'W'));
        page.show();
        kit::settle();
    }
    ~LampMark() override { UnRegisterSignalLamp(SIGNAL_LAMP_OFF); }
    static QColor mark() { return kit::screen().pixelColor(780, 20); }

    QWidget page{nullptr, Qt::FramelessWindowHint};
    qTopBar* bar;
};

} // namespace

TEST_F(LampMark, IsSeenOnEveryPageWhileTheLampIsLit)
{
    const QImage dark = kit::screen();
    RegisterSignalLamp(SIGNAL_LAMP_MEETING);
    kit::settle();
    EXPECT_GT(mark().red(), 200);
    EXPECT_LT(mark().blue(), 200);
    UnRegisterSignalLamp(SIGNAL_LAMP_MEETING);
    kit::settle();
    EXPECT_EQ(kit::screen(), dark);
}

TEST_F(LampMark, ALongTitleLeavesItItsPlace)
{
    bar->setTitle(QString());
    RegisterSignalLamp(SIGNAL_LAMP_MEETING);
    kit::settle();
    const QRect around(QPoint(780, 20) - QPoint(kLampMarkSize, kLampMarkSize) / 2,
                       QSize(kLampMarkSize, kLampMarkSize));
    const QImage alone = kit::screen().copy(around);
    bar->setTitle(QString(60, 'W'));
    kit::settle();
    EXPECT_EQ(kit::screen().copy(around), alone);
}

TEST_F(LampMark, AClockAtTheEndOfTheBarIsNotCovered)
{
    bar->setTitle(QString());
    QLabel clock("23/11/2026 14:05", &page);
    clock.setGeometry(600, 0, 200, 40);
    clock.setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    clock.show();
    kit::settle();
    const QImage before = kit::screen().copy(clock.geometry());
    RegisterSignalLamp(SIGNAL_LAMP_MEETING);
    kit::settle();
    EXPECT_EQ(kit::screen().copy(clock.geometry()), before);
    EXPECT_GT(kit::screen().pixelColor(600 - kLampMarkSize / 2, 20).red(), 200) << "but it is there";
}

TEST_F(LampMark, APageAsWideAsTheScreenMovesNeitherItNorTheTitle)
{
    bar->setTitle("WAN");
    RegisterSignalLamp(SIGNAL_LAMP_MEETING);
    kit::settle();
    const QImage alone = kit::screen().copy(bar->geometry());
    QWidget body(&page);
    body.setGeometry(page.rect());
    body.lower();
    body.show();
    kit::settle();
    EXPECT_EQ(kit::screen().copy(bar->geometry()), alone);
}
