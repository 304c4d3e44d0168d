// How the show begins and ends, what it tells the rest of the phone, and its switches.
#include "signage/nDeckVideoManager.h"
#include "tests/signage/displayFixture.h"

class DisplayLife : public DisplayTest
{
protected:
    void configure()
    {
        for (const char* key : {"strServerURL", "strServerKey", "strServerPwd", "strDisplayName"})
            nuxSetRegistryString(SYSTEM_FILE, "nDeck", key, "http://127.0.0.1:9");
    }
    // On the disk since before the phone went down.
    void storeLayout()
    {
        const QByteArray from = timeText(-60).GetText();
        const QByteArray to = timeText(600).GetText();
        writeFile(NDECK_FOLDER "a.xml", anything());
        writeFile(NDECK_FOLDER "display.xml",
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?><files><file type=\"layout\" path=\"a.xml\" "
                  "md5=\"1\" fromdt=\"" +
                      from + "\" todt=\"" + to + "\" eventType=\"\"/></files>");
    }
    QByteArray anything() { return layout(region(text("hello", "5"))); }
};

TEST_F(DisplayLife, DisabledClientIsNotStarted)
{
    set("bEnable", 2);
    mark();
    EXPECT_FALSE(display().CreateDisplay());
    EXPECT_TRUE(traced("nDeckDisplay::CreateDisplay"));
    EXPECT_FALSE(nDeckWindowDisplay(1, NDECK_WINDOW_PAGE, nullptr, kFull));
    kit::settle();
    EXPECT_FALSE(window().isVisible());
}

TEST_F(DisplayLife, ClientIsStartedOnceUntilItIsEnded)
{
    EXPECT_TRUE(display().CreateDisplay());
    EXPECT_FALSE(display().CreateDisplay());
    display().DestroyDisplay();
    EXPECT_TRUE(display().CreateDisplay());
}

TEST_F(DisplayLife, FreshStartOfAnUnknownDisplayShowsTheDefaultPicture)
{
    configure();
    GetNDeckRegister().SetRegisterStatus(0);
    display().CreateDisplay();
    EXPECT_EQ(background(), NDECK_DEFAULT_PICTURE);
    EXPECT_EQ(current(), "");
}

TEST_F(DisplayLife, StartOfAKnownDisplayShowsWhatTheDiskHolds)
{
    configure();
    storeLayout();
    display().CreateDisplay();
    EXPECT_EQ(current(), "a.xml");
}

TEST_F(DisplayLife, KnownDisplayWithoutItsAccountShowsTheDefaultPicture)
{
    storeLayout();
    display().CreateDisplay();
    EXPECT_EQ(background(), NDECK_DEFAULT_PICTURE);
    EXPECT_EQ(current(), "");
}

TEST_F(DisplayLife, EndHidesTheWindowAndStopsTheShow)
{
    display().CreateDisplay();
    addLayout("a.xml", anything());
    takeUp();
    show();
    ASSERT_TRUE(window().isVisible());
    mark();
    display().DestroyDisplay();
    kit::settle();
    EXPECT_TRUE(traced("nDeckPanel::DistroyDisplay"));
    EXPECT_FALSE(window().isVisible());
    EXPECT_EQ(current(), "");
    mark();
    kit::stepTime(20000);
    EXPECT_FALSE(traced("nDeckDisplay::OnTimerLoadNextLayout"));
}

TEST_F(DisplayLife, MeetingLayoutLightsTheLampAndHoldsTheSaverOffWhileTheWindowShows)
{
    addLayout("m.xml", anything(), -60, 3600, 1);
    addLayout("b.xml", anything());
    show();
    mark();
    takeUp();
    EXPECT_TRUE(display().IsMettingCurrentLayout());
    EXPECT_EQ(logged("lamp"), QStringList{"register 1"});
    EXPECT_EQ(logged("saver"), QStringList{"register 7 0"});
    mark();
    kit::stepTime(5100);
    EXPECT_EQ(current(), "b.xml");
    EXPECT_FALSE(display().IsMettingCurrentLayout());
    EXPECT_EQ(logged("lamp"), QStringList({"unregister 0", "unregister 0"}));
    EXPECT_EQ(logged("saver"), QStringList({"unregister 7 0", "unregister 7 0"}));
}

TEST_F(DisplayLife, MeetingLayoutRestartsTheIdleCountWhileTheWindowIsHidden)
{
    addLayout("m.xml", anything(), -60, 3600, 1);
    mark();
    takeUp();
    EXPECT_EQ(logged("lamp"), QStringList{"register 1"});
    EXPECT_EQ(logged("saver"), QStringList{"reset 1 0"});
}

TEST_F(DisplayLife, LampGoesOutWhenTheFrameIsReplaced)
{
    addLayout("m.xml", anything(), -60, 3600, 1);
    takeUp();
    mark();
    m_frame.layouts.clear();
    takeUp();
    EXPECT_EQ(logged("lamp"), QStringList{"unregister 0"});
}

TEST_F(DisplayLife, OrdinaryLayoutLeavesLampAndSaverAlone)
{
    mark();
    addLayout("a.xml", anything());
    takeUp();
    kit::stepTime(11000);
    EXPECT_TRUE(logged("lamp").isEmpty());
    EXPECT_TRUE(logged("saver").isEmpty());
}

TEST_F(DisplayLife, WindowOverAMeetingLayoutHoldsTheSaverOff)
{
    addLayout("m.xml", anything(), -60, 3600, 1);
    takeUp();
    mark();
    show(NDECK_WINDOW_PAGE);
    EXPECT_EQ(logged("saver"), QStringList({"register 5 0", "register 7 0"}));
    mark();
    nDeckWindowDisplay(0, NDECK_WINDOW_PAGE, nullptr, kFull);
    kit::settle();
    EXPECT_EQ(logged("saver"), QStringList({"unregister 5 0", "unregister 7 0"}));
}

TEST_F(DisplayLife, SwitchesHaveTheirDefaultsAndHoldOnlyForOne)
{
    nuxSetRegistryString(SYSTEM_FILE, "nDeck", "bEnable", "");
    nDeckDisplay& d = display();
    EXPECT_FALSE(d.IsNdeckEnable());
    EXPECT_TRUE(d.IsVoiceTalkEnable());
    EXPECT_TRUE(d.IsHoldEnable());
    EXPECT_FALSE(d.IsRingBackEnable());
    EXPECT_TRUE(d.IsScreenSaverEnable());
    EXPECT_FALSE(d.IsPlayVideoInTalk());
    for (const char* key : {"bEnable", "bVoiceTalkEnable", "bVoiceTalkHold", "bVoiceRingBack", "bScreenSaver",
                            "bPlayVideoInTalk"})
        set(key, 1);
    EXPECT_TRUE(d.IsNdeckEnable() && d.IsVoiceTalkEnable() && d.IsHoldEnable() && d.IsRingBackEnable() &&
                d.IsScreenSaverEnable() && d.IsPlayVideoInTalk());
    for (const char* key : {"bEnable", "bVoiceTalkEnable", "bVoiceTalkHold", "bVoiceRingBack", "bScreenSaver",
                            "bPlayVideoInTalk"})
        set(key, 2);
    EXPECT_FALSE(d.IsNdeckEnable() || d.IsVoiceTalkEnable() || d.IsHoldEnable() || d.IsRingBackEnable() ||
                 d.IsScreenSaverEnable() || d.IsPlayVideoInTalk());
}
