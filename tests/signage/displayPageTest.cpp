// The way from the page's name to the show.
#include "frame/modSetting.h"
#include "signage/signageHooks.h"
#include "tests/signage/displayFixture.h"

class DisplayPage : public DisplayTest
{
protected:
    void SetUp() override
    {
        DisplayTest::SetUp();
        signageHooks();
    }
};

TEST_F(DisplayPage, OpensTheShow)
{
    settingOpenPage("Ndeck", nullptr);
    EXPECT_TRUE(GetNDeckFileManager().DownloadDisplayFrame());
    kit::settle();
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(window().getNDeckWindowType(), NDECK_WINDOW_PAGE);
    EXPECT_EQ(frame().geometry(), QRect(0, 0, 800, 480));
    EXPECT_EQ(kit::windows().value(0), &window());
}

TEST_F(DisplayPage, WithAnIconAsksForAScheduleAtOnce)
{
    tagLeftBarInfo info;
    settingOpenPage("Ndeck", info, nullptr);
    // The cycle that was begun is still running.
    EXPECT_FALSE(GetNDeckFileManager().DownloadDisplayFrame());
    kit::settle();
    EXPECT_TRUE(window().isVisible());
}

TEST_F(DisplayPage, OpensNothingWhileTheClientIsDisabled)
{
    set("bEnable", 0);
    settingOpenPage("Ndeck", nullptr);
    kit::settle();
    EXPECT_FALSE(window().isVisible());
}
