#include "support/host/volumebar.h"
#include "tests/widgets/screenPage.h"

namespace {

class VolumeBar : public PhoneTest
{
protected:
    VolumeBar()
    {
        bar = page.add<QVolumeBar>(QRect(200, 100, 300, 36));
        page.open();
        bar->setFocus();
    }
    ScreenPage page;
    QVolumeBar* bar;
};

TEST_F(VolumeBar, LevelsGoFromNoughtToHundred)
{
    bar->setValue(150);
    EXPECT_EQ(bar->value(), 100);
    bar->setValue(-3);
    EXPECT_EQ(bar->value(), 0);
}

TEST_F(VolumeBar, FingerSetsTheLevelWhereItTouches)
{
    kit::tap(QPoint(200 + 13 + 115, 118));
    EXPECT_EQ(bar->value(), 50);
    kit::tap(QPoint(201, 118));
    EXPECT_EQ(bar->value(), 0);
}

TEST_F(VolumeBar, FingerDragsTheLevelBeyondTheEnds)
{
    kit::press(QPoint(300, 118));
    kit::moveTo(QPoint(499, 118));
    EXPECT_EQ(bar->value(), 100);
    kit::moveTo(QPoint(100, 300));
    EXPECT_EQ(bar->value(), 0);
    kit::release(QPoint(100, 300));
    EXPECT_FALSE(bar->isSliderDown());
}

TEST_F(VolumeBar, LeftAndRightStepTheLevel)
{
    bar->setValue(50);
    kit::key(Qt::Key_Right);
    EXPECT_EQ(bar->value(), 55);
    kit::key(Qt::Key_Left);
    kit::key(Qt::Key_Left);
    EXPECT_EQ(bar->value(), 45);
}

TEST_F(VolumeBar, TellsEachChangeOnce)
{
    QList<int> told;
    QObject::connect(bar, &QVolumeBar::valueChanged, [&](int value) { told.append(value); });
    bar->setValue(20);
    bar->setValue(20);
    kit::key(Qt::Key_Right);
    EXPECT_EQ(told, QList<int>({20, 25}));
}

TEST_F(VolumeBar, AddAndMinusMoveTheLevelOneStepWithinTheRange)
{
    bar->setValue(93);
    bar->AddValue();
    EXPECT_EQ(bar->value(), 98);
    bar->AddValue();
    EXPECT_EQ(bar->value(), 100);
    bar->setValue(7);
    bar->MinusValue();
    EXPECT_EQ(bar->value(), 2);
    bar->MinusValue();
    EXPECT_EQ(bar->value(), 0);
}

// Pages connect by the signal's name.
class SignalCatcher : public QObject
{
    Q_OBJECT
public:
    QList<int> told;
public slots:
    void on_value_changed(int value) { told.append(value); }
};

TEST_F(VolumeBar, PagesHearOfEachChangeByFingerKeyAndCall)
{
    SignalCatcher catcher;
    ASSERT_TRUE(QObject::connect(bar, SIGNAL(value_changed(int)), &catcher, SLOT(on_value_changed(int))));
    kit::tap(QPoint(328, 118));
    kit::key(Qt::Key_Right);
    bar->MinusValue();
    bar->AddValue();
    bar->setValue(55);
    EXPECT_EQ(catcher.told, QList<int>({50, 55, 50, 55}));
}

TEST_F(VolumeBar, IsFilledUpToItsLevel)
{
    bar->setValue(50);
    const QImage screen = kit::screen();
    EXPECT_TRUE(isColour(screen, 250, 118, look::kBlue));
    EXPECT_TRUE(isColour(screen, 400, 118, look::kFieldLine));
    EXPECT_TRUE(isColour(screen, 328, 118, look::kField)) << "the handle";
}

TEST_F(VolumeBar, DisabledBarTakesNoTouch)
{
    bar->setEnabled(false);
    kit::tap(QPoint(328, 118));
    EXPECT_EQ(bar->value(), 0);
}

} // namespace

#include "volumeBarTest.moc"
