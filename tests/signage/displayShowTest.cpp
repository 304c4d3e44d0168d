// Whose turn it is, and what the screen shows then.
#include "tests/signage/displayFixture.h"

class DisplayShow : public DisplayTest
{
protected:
    void addColours()
    {
        addFile("red.png", picture(Qt::red));
        addFile("green.png", picture(Qt::green));
        addFile("blue.png", picture(Qt::blue));
    }
    QByteArray coloured(const char* file, const char* seconds)
    {
        return layout(region(image(file, seconds)));
    }
    int rounds() const { return int(logged("trace").filter("nDeckDisplay::OnTimerLoadNextLayout").size()); }
};

TEST_F(DisplayShow, TwoReadyLayoutsAlternateEachForItsLongestRegion)
{
    addColours();
    addLayout("a.xml", layout(region(QRect(0, 0, 400, 480), image("red.png", "5")) +
                              region(QRect(400, 0, 400, 480), image("red.png", "2"))));
    addLayout("b.xml", coloured("green.png", "3"));
    takeUp();
    show();
    EXPECT_EQ(current(), "a.xml");
    EXPECT_EQ(pixel(300, 240), qRgb(255, 0, 0));
    kit::stepTime(4900);
    EXPECT_EQ(current(), "a.xml");
    kit::stepTime(200);
    EXPECT_EQ(current(), "b.xml");
    EXPECT_EQ(pixel(300, 240), qRgb(0, 255, 0));
    kit::stepTime(2800);
    EXPECT_EQ(current(), "b.xml");
    kit::stepTime(200);
    EXPECT_EQ(current(), "a.xml");
    EXPECT_EQ(pixel(300, 240), qRgb(255, 0, 0));
}

TEST_F(DisplayShow, LayoutPastItsEndGoesWhereverItIsMet)
{
    addColours();
    addLayout("a.xml", coloured("red.png", "20"));
    addLayout("b.xml", coloured("green.png", "20"), -3600, 3600);
    addLayout("over.xml", coloured("blue.png", "20"), -3600, 15);
    addLayout("later.xml", coloured("blue.png", "20"), 3000, 3600);
    takeUp();
    EXPECT_EQ(display().GetLayoutsCount(), 4);
    kit::stepTime(20100);
    EXPECT_EQ(current(), "b.xml"); // found before it came to the one that is over
    EXPECT_EQ(display().GetLayoutsCount(), 4);
    kit::stepTime(20000);
    EXPECT_EQ(current(), "a.xml");
    EXPECT_EQ(display().GetLayoutsCount(), 3);
}

TEST_F(DisplayShow, LayoutWhoseTimeHasNotBegunIsSkippedAndStays)
{
    addColours();
    addLayout("later.xml", coloured("green.png", "5"), 8, 3600);
    addLayout("a.xml", coloured("red.png", "5"));
    takeUp();
    EXPECT_EQ(current(), "a.xml");
    kit::stepTime(5100);
    EXPECT_EQ(current(), "a.xml");
    EXPECT_EQ(display().GetLayoutsCount(), 2);
    kit::stepTime(5000);
    EXPECT_EQ(current(), "later.xml");
}

TEST_F(DisplayShow, BothEndsOfTheTimeWindowBelongToIt)
{
    nDeckLayout one;
    one.SetSchedule(chTime(100), chTime(200));
    EXPECT_FALSE(one.IsScheduleOnReady(chTime(99)));
    EXPECT_TRUE(one.IsScheduleOnReady(chTime(100)));
    EXPECT_TRUE(one.IsScheduleOnReady(chTime(200)));
    EXPECT_FALSE(one.IsScheduleOnReady(chTime(201)));
    EXPECT_FALSE(one.IsSchedulePassed(chTime(199)));
    EXPECT_TRUE(one.IsSchedulePassed(chTime(200)));
}

TEST_F(DisplayShow, SingleLayoutStaysAfterItsEnd)
{
    addColours();
    addLayout("a.xml", coloured("red.png", "5"), -3600, 7);
    takeUp();
    show();
    kit::stepTime(30000);
    EXPECT_EQ(current(), "a.xml");
    EXPECT_EQ(pixel(300, 240), qRgb(255, 0, 0));
}

TEST_F(DisplayShow, SingleLayoutIsLoadedAnewAtTheEndOfEachRound)
{
    addColours();
    addLayout("a.xml", layout(region(image("red.png", "3") + image("green.png", "2"))));
    takeUp();
    show();
    EXPECT_EQ(pixel(300, 240), qRgb(255, 0, 0));
    kit::stepTime(3100);
    EXPECT_EQ(pixel(300, 240), qRgb(0, 255, 0));
    mark();
    kit::stepTime(2000);
    EXPECT_EQ(pixel(300, 240), qRgb(255, 0, 0));
    EXPECT_EQ(rounds(), 1);
    EXPECT_TRUE(traced("nDeckFrame::CreatePanel(L:0,R:800,T:0,B:480)"));
}

TEST_F(DisplayShow, NothingIsReadyAndTheScreenWaits)
{
    addColours();
    addLayout("later.xml", coloured("green.png", "5"), 5, 3600);
    takeUp();
    mark();
    kit::stepTime(20000);
    EXPECT_EQ(current(), "");
    EXPECT_EQ(rounds(), 0);
    EXPECT_EQ(display().GetLayoutsCount(), 1);
}

TEST_F(DisplayShow, TimesOfTheSameTimeEverywhereAreShiftedByThePhonesZone)
{
    addColours();
    nuxSetRegistryString(SYSTEM_FILE, "LocalTime", "strTimeName", "2 Somewhere");
    addLayout("a.xml", coloured("red.png", "5"), -3 * 3600, -1 * 3600);
    addLayout("b.xml", coloured("green.png", "5"), -3 * 3600, -1 * 3600);
    m_frame.layouts.begin()->eventType = "sametime";
    takeUp();
    EXPECT_EQ(current(), "a.xml");
    EXPECT_EQ(display().GetLayoutsCount(), 2);
    kit::stepTime(5100);
    EXPECT_EQ(current(), "a.xml");
    EXPECT_EQ(display().GetLayoutsCount(), 1);
}

TEST_F(DisplayShow, EmptyFrameShowsTheDefaultPicture)
{
    mark();
    takeUp();
    EXPECT_EQ(background(), NDECK_DEFAULT_PICTURE);
    EXPECT_TRUE(traced("nDeckDisplay::UpdateDisplay(layout count:0)"));
    EXPECT_TRUE(traced("nDeckDisplay::UpdateDisplay layouts count=0 then show default layout"));
    show();
    EXPECT_TRUE(traced("nDeckWindowDisplay layouts =0  then show default layout"));
    kit::shot("signage_default");
}

TEST_F(DisplayShow, UnknownDisplayShowsTheDefaultPictureWithItsTimerRunning)
{
    addColours();
    addLayout("a.xml", coloured("red.png", "5"));
    addLayout("b.xml", coloured("green.png", "5"));
    GetNDeckRegister().SetRegisterStatus(0);
    mark();
    takeUp();
    show();
    EXPECT_EQ(background(), NDECK_DEFAULT_PICTURE);
    EXPECT_TRUE(panels().isEmpty());
    EXPECT_TRUE(traced("nDeckDisplay::SetCurrentLayout load layout register failed then show default "
                       "layout"));
    EXPECT_TRUE(traced("nDeckWindowDisplay show  but register failed then show default layout"));
    kit::stepTime(5100);
    EXPECT_EQ(current(), "b.xml");
    EXPECT_EQ(background(), NDECK_DEFAULT_PICTURE);
    GetNDeckRegister().SetRegisterStatus(1);
    kit::stepTime(5000);
    EXPECT_EQ(pixel(300, 240), qRgb(255, 0, 0));
}

TEST_F(DisplayShow, SingleLayoutFallsBackToTheDefaultPictureWhenTheDisplayIsUnknown)
{
    addColours();
    addLayout("a.xml", coloured("red.png", "5"));
    takeUp();
    show();
    GetNDeckRegister().SetRegisterStatus(0);
    mark();
    kit::stepTime(5100);
    EXPECT_EQ(background(), NDECK_DEFAULT_PICTURE);
    EXPECT_TRUE(panels().isEmpty());
    EXPECT_TRUE(traced("nDeckDisplay::SetCurrentLayout only layout register failed then show default "
                       "layout"));
    GetNDeckRegister().SetRegisterStatus(1);
    kit::stepTime(5100);
    EXPECT_EQ(pixel(300, 240), qRgb(255, 0, 0));
}

TEST_F(DisplayShow, LayoutThatWaitsForAPictureShowsLoadingUntilALaterTurn)
{
    addColours();
    awaitMedia("late.png");
    addLayout("a.xml", layout(region(image("late.png", "5"))));
    mark();
    takeUp();
    show();
    EXPECT_EQ(background(), NDECK_LOADING_PICTURE);
    EXPECT_TRUE(panels().isEmpty());
    EXPECT_TRUE(traced("nDeckLayout:media file (image:late.png) is not down finished"));
    kit::shot("signage_loading");
    addFile("late.png", picture(Qt::blue));
    kit::stepTime(4000);
    EXPECT_EQ(background(), NDECK_LOADING_PICTURE);
    kit::stepTime(1200);
    EXPECT_EQ(background(), "");
    EXPECT_EQ(pixel(300, 240), qRgb(0, 0, 255));
}

TEST_F(DisplayShow, LayoutWaitsForItsVideoAndItsBackground)
{
    awaitMedia("late.mp4");
    addLayout("a.xml", layout(region(video("late.mp4", "5")), "background=\"sky.png\""));
    mark();
    takeUp();
    show();
    EXPECT_TRUE(traced("nDeckLayout:media file (video:late.mp4) is not down finished"));
    EXPECT_EQ(background(), NDECK_LOADING_PICTURE);
    addFile("late.mp4", "film");
    kit::stepTime(5100);
    EXPECT_TRUE(traced("nDeckLayout:background image(sky.png) is not down finished"));
    EXPECT_EQ(background(), NDECK_LOADING_PICTURE);
    addFile("sky.png", picture(Qt::cyan, "PNG", QSize(800, 480)));
    kit::stepTime(5100);
    EXPECT_EQ(background(), "sky.png");
}

TEST_F(DisplayShow, FileThatTheFrameDoesNotListBlocksNothing)
{
    addColours();
    addLayout("a.xml", layout(region(QRect(0, 0, 400, 480), image("unlisted.png", "5")) +
                              region(QRect(400, 0, 400, 480), image("red.png", "5"))));
    takeUp();
    show();
    EXPECT_EQ(background(), "");
    EXPECT_EQ(panels().size(), 2);
    EXPECT_EQ(pixel(600, 240), qRgb(255, 0, 0));
}

TEST_F(DisplayShow, BackgroundIsThePictureElseTheColourElseTheGeneralOne)
{
    addFile("sky.png", picture(Qt::cyan, "PNG", QSize(800, 480)));
    addFile("red.png", picture(Qt::red));
    const QByteArray small = region(QRect(0, 0, 10, 10), image("red.png", "5"));
    addLayout("a.xml", layout(small, "background=\"sky.png\" bgcolor=\"#102030\""));
    addLayout("b.xml", layout(small, "bgcolor=\"#102030\""));
    addLayout("c.xml", layout(small));
    takeUp();
    show();
    EXPECT_EQ(pixel(300, 240), qRgb(0, 255, 255));
    kit::stepTime(5100);
    EXPECT_EQ(pixel(300, 240), qRgb(0x10, 0x20, 0x30));
    kit::stepTime(5000);
    EXPECT_EQ(background(), "");
    const QImage general(hostPath("/phone/resource/theme/default/bmp/general/gen_bg.jpg"));
    EXPECT_EQ(pixel(300, 240), general.pixel(300, 240));
}

TEST_F(DisplayShow, LayoutsAreOnlyTimedWhileTheyAreNotToBeDrawn)
{
    addColours();
    addLayout("a.xml", coloured("red.png", "5"));
    addLayout("b.xml", coloured("green.png", "5"));
    takeUp();
    EXPECT_TRUE(panels().isEmpty());
    kit::stepTime(5100);
    EXPECT_EQ(current(), "b.xml");
    EXPECT_TRUE(panels().isEmpty());
    show();
    EXPECT_EQ(pixel(300, 240), qRgb(0, 255, 0));
}

TEST_F(DisplayShow, MissingLayoutFileIsTriedEveryTenMilliseconds)
{
    addLayout("a.xml", "");
    takeUp();
    show();
    mark();
    kit::stepTime(1000);
    EXPECT_GE(rounds(), 90);
    EXPECT_LE(rounds(), 110);
    EXPECT_EQ(background(), "");
}

TEST_F(DisplayShow, LayoutWhoseMediaTakeNoTimeComesRoundEveryTenMilliseconds)
{
    addColours();
    addLayout("a.xml", coloured("red.png", "0"));
    takeUp();
    show();
    mark();
    for (int ms = 0; ms < 200; ++ms)
        kit::stepTime(1);
    EXPECT_GE(rounds(), 18);
    EXPECT_LE(rounds(), 22);
    EXPECT_EQ(pixel(300, 240), qRgb(255, 0, 0));
}

TEST_F(DisplayShow, MissingLayoutFileIsSkippedAtOnceWhenThereAreOthers)
{
    addColours();
    addLayout("gone.xml", "");
    addLayout("a.xml", coloured("red.png", "5"));
    takeUp();
    kit::stepTime(20);
    EXPECT_EQ(current(), "a.xml");
    kit::stepTime(5000);
    kit::stepTime(20);
    EXPECT_EQ(current(), "a.xml");
}

TEST_F(DisplayShow, NewFrameTakesTheOldOnesPlace)
{
    addColours();
    addLayout("a.xml", coloured("red.png", "5"));
    takeUp();
    show();
    m_frame.layouts.clear();
    addLayout("b.xml", coloured("blue.png", "5"));
    takeUp();
    EXPECT_EQ(current(), "b.xml");
    EXPECT_EQ(panels().size(), 1);
    EXPECT_EQ(pixel(300, 240), qRgb(0, 0, 255));
    EXPECT_TRUE(frame().findChildren<nDeckCover*>().isEmpty()) << "no text is awaited";
}

TEST_F(DisplayShow, RegionWithoutMediaGetsNoPanel)
{
    addColours();
    addLayout("a.xml", layout(region(QRect(0, 0, 100, 100), "") + region(image("red.png", ""))));
    takeUp();
    show();
    EXPECT_EQ(panels().size(), 1);
    EXPECT_EQ(pixel(300, 240), qRgb(255, 0, 0));
    mark();
    kit::stepTime(1000);
    EXPECT_GT(rounds(), 1);
    EXPECT_FALSE(traced("nDeckFrame::CreatePanel(L:0,R:800,T:0,B:480)")) << "what shows is left alone";
}

TEST_F(DisplayShow, FileThatWaitsIsPutIntoUseBetweenLayouts)
{
    addColours();
    addLayout("a.xml", coloured("red.png", "5"));
    takeUp();
    show();
    addFile("red.png.new", picture(Qt::yellow));
    kit::stepTime(4900);
    EXPECT_EQ(pixel(300, 240), qRgb(255, 0, 0));
    kit::stepTime(300);
    EXPECT_EQ(pixel(300, 240), qRgb(255, 255, 0));
}

TEST_F(DisplayShow, RegionBeginsWithItsFirstMediumWheneverItsLayoutComesBack)
{
    addColours();
    addLayout("a.xml",
              layout(region(QRect(0, 0, 400, 480), image("red.png", "10")) +
                     region(QRect(400, 0, 400, 480), image("red.png", "4") + image("green.png", "4"))));
    addLayout("b.xml", coloured("blue.png", "1"));
    takeUp();
    show();
    kit::stepTime(5000);
    EXPECT_EQ(pixel(600, 240), qRgb(0, 255, 0));
    kit::stepTime(5100);
    EXPECT_EQ(current(), "b.xml");
    kit::stepTime(1000);
    EXPECT_EQ(current(), "a.xml");
    EXPECT_EQ(pixel(600, 240), qRgb(255, 0, 0));
}
