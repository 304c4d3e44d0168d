#include "host/desktop/frmCall.h"
#include "host/desktop/roundPicture.h"
#include "host/services/phone/doNotDisturb.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "host/services/system/netWorld.h"
#include "support/host/box.h"
#include "support/host/clock.h"
#include "support/host/phone.h"
#include "support/host/picture.h"
#include "support/host/registry.h"
#include "tests/desktop/callScreenStand.h"
#include "tests/kit/heldPictures.h"
#include "tests/kit/plain/pictureFiles.h"
#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLineF>
#include <QPainter>
#include <QTimer>
#include <memory>

namespace {

class CallScreen : public CallScreenStand
{
protected:
    static void dial(const char* number)
    {
        ASSERT_EQ(phone_CallNumber(number, 0, 0), 1);
        kit::settle();
    }
    // The text of the label, when it has no room even at that size; else nothing.
    static std::string tooLong(const char* name, int pixels)
    {
        const auto* label = screen()->findChild<QLabel*>(name);
        QFont font = label->font();
        font.setPixelSize(pixels);
        const bool fits = QFontMetrics(font).horizontalAdvance(label->text()) <= label->width();
        return fits ? std::string() : label->text().toStdString();
    }
    static constexpr int kAnswered = 2000; // ms after which the other side has answered
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
    auto pictures = std::make_unique<kit::HeldPictures>();
    dial("4711");
    const auto* place = screen()->findChild<roundPicture*>("labPicture");
    const QImage nobody = place->picture().toImage();
    EXPECT_FALSE(nobody.isNull());
    pictures.reset();
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 60000));
    EXPECT_NE(place->picture().toImage(), nobody);
    EXPECT_EQ(place->picture().size(), QSize(126, 126));
    EXPECT_EQ(place->picture().toImage().pixelColor(60, 40), QColor(Qt::black));
}

// Red, green and blue side by side: of what is three times as wide as high, the circle shows the green.
TEST_F(CallScreen, APictureOfAnyShapeFillsTheCircle)
{
    for (const int height : {10, 42, 126, 1000}) {
        QImage image(3 * height, height, QImage::Format_RGB32);
        image.fill(Qt::green);
        QPainter(&image).fillRect(0, 0, height, height, Qt::red);
        QPainter(&image).fillRect(2 * height, 0, height, height, Qt::blue);
        const QString path = QString("/rundata/data/wide%1.png").arg(height);
        writeFile(path.toUtf8(), "");
        ASSERT_TRUE(image.save(hostPath(path.toUtf8())));
        writeFile("/rundata/data/contactData.xml",
                  QString("<contactData><group name=\"A\"><contact name=\"Ann\" number=\"4711\" "
                          "sImagePath=\"%1\"/></group></contactData>")
                      .arg(path)
                      .toUtf8());
        dial("4711");
        ASSERT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 60000));
        kit::settle();
        const QRect place = screen()->findChild<roundPicture*>("labPicture")->geometry();
        const QImage shown = kit::screen().copy(place);
        for (int angle = 0; angle < 360; angle += 15) {
            const QLineF radius = QLineF::fromPolar(place.width() / 2 - 8, angle);
            const QColor colour =
                shown.pixelColor((QPointF(place.width(), place.height()) / 2 + radius.p2()).toPoint());
            EXPECT_TRUE(colour.green() > 200 && colour.red() < 60 && colour.blue() < 60)
                << height << " at " << angle << ": " << colour.name().toStdString();
        }
        hangUpAll();
    }
}

TEST_F(CallScreen, ThePictureOfTheCallerBeforeDoesNotComeLate)
{
    writeFile("/rundata/data/ann.png", kit::pngOfOneColour({3000, 2000}));
    writeFile("/rundata/data/contactData.xml",
              "<contactData><group name=\"A\"><contact name=\"Ann\" number=\"4711\" "
              "sImagePath=\"/rundata/data/ann.png\"/></group></contactData>");
    QImage nobody;
    {
        const kit::HeldPictures pictures;
        dial("4711");
        ring("4712");
        nobody = screen()->findChild<roundPicture*>("labPicture")->picture().toImage();
    }
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 60000));
    EXPECT_EQ(screen()->findChild<roundPicture*>("labPicture")->picture().toImage(), nobody);
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

TEST_F(CallScreen, SoftKeysChangeTheVolumeWhileItIsCalled)
{
    dial("4711");
    EXPECT_EQ(softKeys(screen()), "|Volume -|Volume +|End");
    const int before = dev_get_output_volume();
    tapSoftKey(screen(), 2);
    EXPECT_GT(dev_get_output_volume(), before);
    tapSoftKey(screen(), 1);
    EXPECT_EQ(dev_get_output_volume(), before);
    kit::stepTime(kAnswered);
    kit::key(Qt::Key_Up);
    EXPECT_GT(dev_get_output_volume(), before);
}

TEST_F(CallScreen, DigitsAreTonesWhileTalking)
{
    dial("4711");
    kit::stepTime(kAnswered);
    kit::padKey('5');
    EXPECT_NE(logged("tone"), "");
    EXPECT_EQ(phoneService::instance().calls().first().strTones, "5");
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
    EXPECT_EQ(labelText(screen(), "labState"), "4711 \u00b7 Incoming call");
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
    EXPECT_EQ(softKeys(screen()), "Answer|Forward|Mute|Decline");
    kit::shot("call-incoming");
    kit::stepTime(kAnswered);
    EXPECT_EQ(labelText(screen(), "labState"), "Incoming call");
    tapSoftKey(screen(), 0);
    EXPECT_EQ(labelText(screen(), "labState"), "In call");
    EXPECT_EQ(softKeys(screen()), "Mute|Hold|Transfer|End");
    EXPECT_TRUE(phoneService::instance().calls().value(0).eState == CALL_TALKING);
}

TEST_F(CallScreen, AnIncomingCallIsAnsweredByOk)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Select, Qt::Key_Call}) {
        ring("4711");
        kit::key(key);
        EXPECT_EQ(labelText(screen(), "labState"), "In call") << key;
        letPressesCount();
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

TEST_F(CallScreen, AnIncomingCallSaysWhoAndWhatInOneLineAndOnWhichNumber)
{
    ASSERT_TRUE(phoneSimulation::instance()->ring("1002", 1, "Anna Berg"));
    kit::settle();
    EXPECT_EQ(labelText(screen(), "labName"), "Anna Berg");
    EXPECT_EQ(labelText(screen(), "labState"), "1002 \u00b7 Incoming call");
    EXPECT_EQ(labelText(screen(), "labNumber"), "");
    EXPECT_EQ(labelText(screen(), "labLine"), "Line 2 \u00b7 1002");
    EXPECT_LT(screen()->findChild<QLabel*>("labLine")->y(), 40);
    kit::shot("call-incoming-name");
    kit::key(Qt::Key_Return);
    EXPECT_EQ(labelText(screen(), "labState"), "In call");
    EXPECT_EQ(labelText(screen(), "labNumber"), "1002");
    EXPECT_EQ(labelText(screen(), "labLine"), "Line 2");
}

TEST_F(CallScreen, AnIncomingCallHasRoundButtonsForWhatThePhoneCanDo)
{
    ring("4711");
    QList<QAbstractButton*> shown;
    for (QAbstractButton* button : screen()->findChildren<QAbstractButton*>()) {
        if (button->objectName().startsWith("btn") && button->isVisible())
            shown.append(button);
    }
    ASSERT_EQ(shown.size(), 3);
    EXPECT_EQ(shown[1]->objectName(), "btnForward");
    EXPECT_EQ(shown[1]->text(), "Forward");
    EXPECT_NEAR(shown[1]->geometry().center().x(), 400, 1);
    shown.removeAt(1);
    EXPECT_EQ(shown[0]->objectName(), "btnDecline");
    EXPECT_EQ(shown[1]->objectName(), "btnAnswer");
    EXPECT_EQ(shown[0]->text(), "Decline");
    EXPECT_EQ(shown[1]->text(), "Answer");
    EXPECT_EQ(shown[0]->geometry().center().x() + shown[1]->geometry().center().x(), 799)
        << "about the middle";
    EXPECT_EQ(shown[0]->y(), shown[1]->y());
    EXPECT_TRUE(screen()->hasFocus()) << "the keys stay the screen's";
    const QImage picture = kit::screen();
    const QColor red = picture.pixelColor(shown[0]->geometry().center().x(), shown[0]->y() + 10);
    const QColor green = picture.pixelColor(shown[1]->geometry().center().x(), shown[1]->y() + 10);
    EXPECT_GT(red.red(), red.green() + 60);
    EXPECT_GT(green.green(), green.red() + 60);
    kit::press(shown[1]->geometry().center());
    EXPECT_NE(kit::screen().pixelColor(shown[1]->geometry().center().x(), shown[1]->y() + 10), green)
        << "a finger sees what it presses";
    kit::release(shown[1]->geometry().center());
    EXPECT_EQ(labelText(screen(), "labState"), "In call");
    EXPECT_FALSE(shown[0]->isVisible() || shown[1]->isVisible());
    hangUpAll();
    ring("4712");
    kit::tap(shown[0]);
    EXPECT_TRUE(phoneService::instance().calls().isEmpty());
    EXPECT_FALSE(shown[0]->isVisible()) << "of a call that has ended";
}

// Each ring a little paler than the one outside of it.
TEST_F(CallScreen, TwoRingsGoRoundThePictureOfWhoCalls)
{
    ring("4711");
    const QRect picture = screen()->findChild<roundPicture*>("labPicture")->geometry();
    EXPECT_EQ(picture, QRect(337, 64, 126, 126));
    const QImage shown = kit::screen();
    for (int angle = 0; angle < 360; angle += 30) {
        const auto brightness = [&](double radius) {
            const QPointF at = QPointF(400, 127) + QLineF::fromPolar(radius, angle).p2();
            return qGreen(shown.pixel(at.toPoint()));
        };
        EXPECT_GT(brightness(68), brightness(80) + 5) << angle;
        EXPECT_GT(brightness(80), brightness(92) + 5) << angle;
    }
}

TEST_F(CallScreen, TheTimeOfDayStandsAtTheTopRightAsLongAsTheScreenIsThere)
{
    const auto setClock = [](int minute) {
        netWorldSetClock(chTime(2026, 11, 21, 14, minute, 0).GetTime());
        kit::stepTime(250);
    };
    setClock(5);
    ring("4711");
    const QLabel* clock = screen()->findChild<QLabel*>("labClock");
    ASSERT_NE(clock, nullptr);
    EXPECT_EQ(clock->text(), "14:05");
    EXPECT_EQ(clock->geometry().right(), 787);
    EXPECT_EQ(clock->geometry().bottom(), 39);
    EXPECT_TRUE(clock->alignment() & Qt::AlignRight);
    setClock(6);
    EXPECT_EQ(clock->text(), "14:06") << "while it rings";
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(clock->isVisible());
    setClock(7);
    EXPECT_EQ(clock->text(), "14:07") << "while one talks";
    nuxSetRegistryInt("/rundata/config/user/user.ini", "DateTime", "eTimeFormat", 1);
    kit::stepTime(250);
    EXPECT_EQ(clock->text(), "2:07 PM");
    hangUpAll();
    dial("4711");
    EXPECT_TRUE(clock->isVisible());
}

TEST_F(CallScreen, TheVolumeOfARingIsShownWhenItChanges)
{
    dial("4711");
    const QWidget* bar = screen()->findChild<QWidget*>("barVolume");
    EXPECT_TRUE(bar->isVisible()) << "of a call that goes out, always";
    hangUpAll();
    ring("4712");
    EXPECT_FALSE(bar->isVisible());
    kit::key(Qt::Key_Up);
    EXPECT_TRUE(bar->isVisible());
    EXPECT_LT(bar->geometry().bottom(), 40);
    kit::shot("call-incoming-volume");
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(bar->isVisible());
    EXPECT_LT(bar->geometry().bottom(), 40) << "its place in a call too";
    hangUpAll();
    ring("4713");
    EXPECT_FALSE(bar->isVisible()) << "of another call";
}

TEST_F(CallScreen, NothingLiesOverAnythingElseInAnyLanguage)
{
    nuxSetRegistryInt("/rundata/config/user/user.ini", "DateTime", "eTimeFormat", 1);
    for (const char* language : {"English", "Chinese", "German", "French", "Spanish"}) {
        setLanguage(language);
        ASSERT_TRUE(phoneSimulation::instance()->ring("1002", 0, "Anna Berg"));
        kit::settle();
        letPressesCount();
        kit::key(Qt::Key_VolumeUp);
        kit::key(Qt::Key_VolumeMute);
        kit::settle();
        kit::shot(QString("call-incoming-%1").arg(language));
        QList<QWidget*> shown;
        for (QWidget* child : screen()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            const QLabel* label = qobject_cast<QLabel*>(child);
            if (child->isVisible() && !(label && label->text().isEmpty()))
                shown.append(child);
        }
        EXPECT_GE(shown.size(), 9) << language;
        for (const QWidget* one : shown) {
            EXPECT_TRUE(screen()->rect().contains(one->geometry())) << one->objectName().toStdString();
            for (const QWidget* other : shown) {
                EXPECT_TRUE(one == other || !one->geometry().intersects(other->geometry()))
                    << language << ": " << one->objectName().toStdString() << " and "
                    << other->objectName().toStdString();
            }
        }
        for (const char* name : {"btnAnswer", "btnForward", "btnDecline"}) {
            const QAbstractButton* button = screen()->findChild<QAbstractButton*>(name);
            EXPECT_LE(button->fontMetrics().horizontalAdvance(button->text()), button->width()) << language;
        }
        for (const char* name : {"labState", "labLine", "labClock", "labMute", "labVolume"}) {
            const QLabel* label = screen()->findChild<QLabel*>(name);
            EXPECT_FALSE(label->text().isEmpty()) << name;
            EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width())
                << language << ' ' << name;
        }
        hangUpAll();
    }
}

TEST_F(CallScreen, NamesTheAnalogueLine)
{
    phoneSimulation::instance()->setPstn(1);
    ring("4711", "", PHONE_LINE_PSTN);
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

// Whatever a caller calls himself: what nobody could read costs nobody anything.
TEST_F(CallScreen, ACallersNameAndNumberAreCutToWhatANumberMayHave)
{
    tagCaller caller;
    caller.strNumber = QString(100000, '7');
    caller.strName = QString(100000, 'W');
    caller.nLine = 0;
    caller.forwardedBy = QStringList(1000, QString(10000, '8'));
    ASSERT_TRUE(phoneSimulation::instance()->ringFrom(caller));
    kit::settle();
    const tagCall call = phoneService::instance().calls().value(0);
    EXPECT_EQ(call.strName, QString(128, 'W'));
    EXPECT_EQ(call.strNumber, QString(128, '7'));
    EXPECT_EQ(call.forwardedBy, QStringList(32, QString(128, '8')));
    ASSERT_NE(screen(), nullptr);
    // What is shown of them can be read, and whether it rings stays on its line.
    EXPECT_EQ(tooLong("labName", 20), "");
    EXPECT_EQ(tooLong("labState", 15), "");
    EXPECT_EQ(tooLong("labNumber", 13), "");
    EXPECT_TRUE(QString::fromStdString(labelText(screen(), "labState"))
                    .endsWith(QString::fromUtf8("\u2026 \u00b7 Incoming call")))
        << labelText(screen(), "labState");
    kit::shot("call-long-name");
    phoneService::instance().answer(call.nId);
    kit::settle();
    EXPECT_EQ(tooLong("labName", 20), "");
    EXPECT_EQ(tooLong("labNumber", 13), "");
    EXPECT_EQ(labelText(screen(), "labState"), "In call");
    kit::shot("call-long-name-talks");
}

TEST_F(CallScreen, TellsWhoHasForwardedACall)
{
    tagCaller caller;
    caller.strNumber = "4711";
    caller.strName = "Anna";
    caller.nLine = 0;
    caller.forwardedBy = QStringList{"8001", "8002"};
    ASSERT_TRUE(phoneSimulation::instance()->ringFrom(caller));
    kit::settle();
    EXPECT_EQ(labelText(screen(), "labNumber"), "Forwarded by 8002") << "the last one";
    EXPECT_EQ(labelText(screen(), "labState"), "4711 \u00b7 Incoming call");
    EXPECT_EQ(cutTexts(screen()), "");
    kit::shot("call-forwarded");
    phoneService::instance().answer(phoneService::instance().calls()[0].nId);
    kit::settle();
    EXPECT_EQ(labelText(screen(), "labNumber"), "4711");
}

TEST_F(CallScreen, TellsOnceItRingsThere)
{
    dial("4711");
    EXPECT_EQ(labelText(screen(), "labState"), "Calling...");
    kit::stepTime(kAnswered / 2);
    EXPECT_EQ(labelText(screen(), "labState"), "Ringing...");
    kit::shot("call-rings-there");
    kit::stepTime(kAnswered);
    EXPECT_EQ(labelText(screen(), "labState"), "In call");
}

TEST_F(CallScreen, SaysWhenBothSidesHold)
{
    dial("4711");
    kit::stepTime(kAnswered);
    const int id = phoneService::instance().calls().value(0).nId;
    ASSERT_TRUE(phoneSimulation::instance()->holdFromOutside(id, true));
    EXPECT_EQ(labelText(screen(), "labState"), "Held by the other side");
    phoneService::instance().rules().setHeld(id, true);
    EXPECT_EQ(labelText(screen(), "labState"), "On hold \u00b7 Held by the other side");
    kit::shot("call-both-hold");
    for (const char* language : {"Chinese", "German", "French", "Spanish", "English"}) {
        setLanguage(language);
        EXPECT_EQ(cutTexts(screen()), "") << language;
    }
}

TEST_F(CallScreen, TheKeyThatEndedACallLeadsBackFromIt)
{
    dial("4711");
    EXPECT_NE(softKeys(screen()).find("End"), std::string::npos);
    tapSoftKey(screen(), 3);
    EXPECT_EQ(softKeys(screen()).find("End"), std::string::npos) << softKeys(screen());
    EXPECT_NE(softKeys(screen()).find("Back"), std::string::npos);
    tapSoftKey(screen(), 3);
    EXPECT_EQ(screen(), nullptr);
}
