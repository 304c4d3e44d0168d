#include "host/desktop/frmCall.h"
#include "host/desktop/roundPicture.h"
#include "host/services/phone/doNotDisturb.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "support/host/box.h"
#include "support/host/phone.h"
#include "support/host/picture.h"
#include "tests/desktop/desktopTest.h"
#include "tests/kit/plain/pictureFiles.h"
#include <QApplication>
#include <QTimer>

namespace {

class CallScreen : public DesktopTest
{
protected:
    CallScreen()
    {
        callScreenInstall();
        below.setGeometry(0, 0, 800, 480);
        below.show();
        kit::settle();
    }
    // The call screen, if it is what a person sees.
    static QWidget* screen()
    {
        QWidget* top = kit::windows().value(0);
        return qobject_cast<frmCall*>(top);
    }
    static void dial(const char* number)
    {
        ASSERT_EQ(phone_CallNumber(number, 0, 0), 1);
        kit::settle();
    }
    static void ring(const char* number, int line = 0)
    {
        ASSERT_TRUE(phoneSimulation::instance()->ring(number, line, ""));
        kit::settle();
        ASSERT_NE(screen(), nullptr);
    }
    static constexpr int kAnswered = 2000; // ms after which the other side has answered

    QWidget below;
};

} // namespace

TEST_F(CallScreen, ComesWithACallAndShowsWhoAndWhat)
{
    dial("4711");
    ASSERT_NE(screen(), nullptr);
    EXPECT_NE((labelText(screen(), "labName") + labelText(screen(), "labNumber")).find("4711"),
              std::string::npos);
    EXPECT_EQ(labelText(screen(), "labState"), "Calling...");
    kit::shot("call-calling");
    kit::stepTime(kAnswered);
    EXPECT_EQ(labelText(screen(), "labState"), "In call");
    kit::stepTime(3000);
    EXPECT_NE(labelText(screen(), "labDuration"), "");
    kit::shot("call-talking");
}

TEST_F(CallScreen, ThePictureOfAContactComesAMomentLater)
{
    writeFile("/rundata/data/ann.png", kit::pngOfOneColour({3000, 2000}));
    writeFile("/rundata/data/contactData.xml",
              "<contactData><group name=\"A\"><contact name=\"Ann\" number=\"4711\" "
              "sImagePath=\"/rundata/data/ann.png\"/></group></contactData>");
    dial("4711");
    const auto* place = screen()->findChild<roundPicture*>("labPicture");
    const QImage nobody = place->picture().toImage();
    EXPECT_FALSE(nobody.isNull());
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 60000));
    EXPECT_NE(place->picture().toImage(), nobody);
    EXPECT_EQ(place->picture().size(), QSize(126, 84));
    EXPECT_EQ(place->picture().toImage().pixelColor(60, 40), QColor(Qt::black));
}

TEST_F(CallScreen, EndHangsUpAndTheScreenGoesAMomentLater)
{
    dial("4711");
    tapSoftKey(screen(), 3);
    EXPECT_TRUE(phoneService::instance().calls().isEmpty());
    ASSERT_NE(screen(), nullptr);
    kit::stepTime(1600);
    EXPECT_EQ(screen(), nullptr);
    EXPECT_TRUE(below.isActiveWindow());
}

TEST_F(CallScreen, SoftKeysChangeTheVolumeAndMute)
{
    dial("4711");
    const int before = dev_get_output_volume();
    tapSoftKey(screen(), 2);
    EXPECT_GT(dev_get_output_volume(), before);
    tapSoftKey(screen(), 1);
    EXPECT_EQ(dev_get_output_volume(), before);
    tapSoftKey(screen(), 0);
    EXPECT_EQ(dev_get_output_mute(), 1);
    tapSoftKey(screen(), 0);
    EXPECT_EQ(dev_get_output_mute(), 0);
}

TEST_F(CallScreen, AMuteEndsWithTheCall)
{
    dial("4711");
    tapSoftKey(screen(), 0);
    tapSoftKey(screen(), 3);
    kit::stepTime(1600);
    EXPECT_EQ(dev_get_output_mute(), 0);
}

TEST_F(CallScreen, DigitsAreTonesWhileTalking)
{
    dial("4711");
    kit::stepTime(kAnswered);
    kit::padKey('5');
    EXPECT_NE(logged("tone"), "");
}

TEST_F(CallScreen, ABusyNumberSaysWhyAndGoes)
{
    dial("busy");
    kit::stepTime(kAnswered);
    kit::stepTime(3000);
    EXPECT_EQ(screen(), nullptr);
}

TEST_F(CallScreen, ComesUpOverABoxWhichIsCancelled)
{
    QTimer::singleShot(0, &below, [] { phoneSimulation::instance()->ring("4711", 0, "Anna"); });
    EXPECT_EQ(xMessageBox("Note", "Reboot device?", BOX_QUESTION, &below, -1), 0);
    kit::settle();
    ASSERT_NE(screen(), nullptr);
    EXPECT_EQ(labelText(screen(), "labState"), "Incoming call");
    EXPECT_EQ(labelText(screen(), "labName"), "Anna");
    EXPECT_TRUE(screen()->isActiveWindow());
    kit::key(Qt::Key_Escape);
    EXPECT_TRUE(phoneService::instance().calls().isEmpty());
    kit::stepTime(2000);
    EXPECT_TRUE(below.isActiveWindow());
}

TEST_F(CallScreen, ABoxOverItDoesNotKeepItFromTheNextCall)
{
    dial("4711");
    QTimer::singleShot(0, &below, [] { phoneSimulation::instance()->ring("4712", 1, ""); });
    EXPECT_EQ(xMessageBox("Note", "Reboot device?", BOX_QUESTION, &below, -1), 0);
    kit::settle();
    ASSERT_NE(screen(), nullptr);
    EXPECT_NE((labelText(screen(), "labName") + labelText(screen(), "labNumber")).find("4712"),
              std::string::npos);
}

TEST_F(CallScreen, UnderAPageItComesUpWithTheNextCallAndNotBefore)
{
    dial("4711");
    QWidget page;
    page.setGeometry(0, 0, 800, 480);
    page.show();
    kit::settle();
    kit::stepTime(kAnswered);
    EXPECT_EQ(screen(), nullptr);
    EXPECT_TRUE(page.isActiveWindow());
    dial("4712");
    EXPECT_NE(screen(), nullptr);
}

TEST_F(CallScreen, AnIncomingCallIsAnsweredByASoftKey)
{
    ring("4711");
    EXPECT_EQ(softKeys(screen()), "Answer||Mute|Decline");
    kit::shot("call-incoming");
    kit::stepTime(kAnswered);
    EXPECT_EQ(labelText(screen(), "labState"), "Incoming call");
    tapSoftKey(screen(), 0);
    EXPECT_EQ(labelText(screen(), "labState"), "In call");
    EXPECT_EQ(softKeys(screen()), "Mute|Volume -|Volume +|End");
    EXPECT_TRUE(phoneService::instance().calls().value(0).eState == CALL_TALKING);
}

TEST_F(CallScreen, AnIncomingCallIsAnsweredByOk)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Select, Qt::Key_Call}) {
        ring("4711");
        kit::key(key);
        EXPECT_EQ(labelText(screen(), "labState"), "In call") << key;
        kit::key(key);
        EXPECT_EQ(phoneService::instance().calls().size(), 1);
        hangUpAll();
    }
}

TEST_F(CallScreen, AnIncomingCallIsDeclined)
{
    ring("4711");
    tapSoftKey(screen(), 3);
    EXPECT_TRUE(phoneService::instance().calls().isEmpty());
    kit::stepTime(1600);
    EXPECT_EQ(screen(), nullptr);
}

TEST_F(CallScreen, ACallThatWasRefusedForTheUserDoesNotComeUp)
{
    ASSERT_TRUE(doNotDisturb::setOn(true));
    phoneSimulation::instance()->ring("4711", 0, "");
    kit::settle();
    EXPECT_EQ(screen(), nullptr);
    dial("4712");
    ASSERT_NE(screen(), nullptr);
    phoneSimulation::instance()->ring("4711", 0, "");
    kit::settle();
    EXPECT_EQ(labelText(screen(), "labName"), "4712") << "nor in the place of one that is there";
}

TEST_F(CallScreen, NamesTheAnalogueLine)
{
    phoneSimulation::instance()->setPstn(1);
    ring("4711", PHONE_LINE_PSTN);
    EXPECT_EQ(labelText(screen(), "labLine"), "PSTN");
    phoneSimulation::instance()->setPstn(0);
}

TEST_F(CallScreen, NothingIsCutInAnyLanguage)
{
    for (const char* language : {"English", "Chinese", "German", "French", "Spanish"}) {
        setLanguage(language);
        dial("4711");
        EXPECT_EQ(cutTexts(screen()), "") << language;
        hangUpAll();
        ring("4711");
        EXPECT_EQ(cutTexts(screen()), "") << language;
        hangUpAll();
        kit::stepTime(2000);
    }
}
