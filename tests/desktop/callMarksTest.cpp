// What goes over the wire, on the call screen: codecs, quality, lock, and the places of the pictures.
#include "host/desktop/callMarks.h"
#include "host/desktop/callAction.h"
#include "host/desktop/callPicture.h"
#include "host/desktop/deviceCalls.h"
#include "host/desktop/frmCall.h"
#include "host/screen/screenState.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "host/services/players/videoFrameWriter.h"
#include "host/services/players/videoFrames.h"
#include "support/host/bars.h"
#include "support/host/managers.h"
#include "support/host/message.h"
#include "support/host/player.h"
#include "support/host/registry.h"
#include "tests/desktop/callScreenStand.h"
#include "tests/kit/contrast.h"
#include <QImage>
#include <QLabel>
#include <algorithm>
#include <unistd.h>

namespace {

constexpr QRgb kGreen = 0xff7fe08f;
constexpr QRgb kYellow = 0xffffd479;
constexpr QRgb kRed = 0xffff8a73;

class CallMarks : public CallScreenStand
{
protected:
    CallMarks() { deviceCallsInstall(); }
    static callMarks* marks() { return screen()->findChild<callMarks*>("wgtMarks"); }
    static callPicture* picture() { return screen()->findChild<callPicture*>("wgtPicture"); }
    static void stream(int id, const char* sound, const char* picture = "", int quality = -1,
                       bool encrypted = false, int comes = -1)
    {
        tagCallStreams streams;
        streams.strSound = sound;
        streams.strPicture = picture;
        streams.nQuality = quality;
        streams.bEncrypted = encrypted;
        streams.nOtherPicture = comes;
        ASSERT_TRUE(phoneSimulation::instance()->setStreams(id, streams));
        kit::settle();
    }
    // How many pixels of the widget have that colour, about.
    static int pixels(QWidget* widget, QRgb colour)
    {
        const QImage all = kit::screen().copy(QRect(widget->mapToGlobal(QPoint()), widget->size()));
        int count = 0;
        for (int y = 0; y < all.height(); ++y) {
            for (int x = 0; x < all.width(); ++x) {
                const QRgb pixel = all.pixel(x, y);
                count += qAbs(qRed(pixel) - qRed(colour)) < 12 && qAbs(qGreen(pixel) - qGreen(colour)) < 12 &&
                         qAbs(qBlue(pixel) - qBlue(colour)) < 12;
            }
        }
        return count;
    }
    static QImage scene()
    {
        QImage image(640, 480, QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, qRgb(230, 180 + x / 16, 150 + y / 8));
        }
        return image;
    }
    // Of white text in the place, upon the brightest picture that there is.
    static double contrastAt(const QRect& place)
    {
        const QImage ground = picture()->grab().toImage();
        double lowest = 21;
        for (int y = place.top(); y <= place.bottom(); ++y)
            lowest = qMin(lowest, kit::contrastOfWhite(ground.pixelColor(place.center().x(), y)));
        return lowest;
    }
    static void showWhite()
    {
        QImage white(800, 440, QImage::Format_RGB32);
        white.fill(Qt::white);
        picture()->SetFrame(white);
        kit::settle();
    }
    static void expectReadable(const QStringList& labels)
    {
        for (const QString& name : labels) {
            const auto* label = screen()->findChild<QLabel*>(name);
            ASSERT_FALSE(label->text().isEmpty()) << name.toStdString();
            const int height = (int(label->text().count('\n')) + 1) * label->fontMetrics().lineSpacing();
            const int middle = label->geometry().center().y();
            const int top = label->alignment() & Qt::AlignTop ? label->y() : middle - height / 2;
            EXPECT_GE(contrastAt(QRect(400, top, 10, height)), 4.5) << name.toStdString();
        }
    }
    // Nothing that is shown lies upon something else that is.
    static void expectApart()
    {
        QList<QWidget*> shown;
        const QStringList names{"labName",    "labNumber", "labState",  "labDuration", "labOthers",
                                "labMute",    "wgtMarks",  "labLine",   "labClock",    "wgtCorner",
                                "wgtPad",     "barVolume", "labVolume", "labPicture",  "btnAnswer",
                                "btnDecline", "btnForward"};
        for (const QString& name : names) {
            QWidget* each = screen()->findChild<QWidget*>(name);
            const auto* label = qobject_cast<QLabel*>(each);
            if (!each->isVisible() || (label && label->text().isEmpty()))
                continue;
            EXPECT_TRUE(screen()->rect().contains(each->geometry())) << name.toStdString();
            for (const QWidget* other : std::as_const(shown))
                EXPECT_FALSE(other->geometry().intersects(each->geometry()))
                    << name.toStdString() << " and " << other->objectName().toStdString();
            shown.append(each);
        }
    }
};

} // namespace

TEST_F(CallMarks, ShowWhatIsKnownAndNothingElse)
{
    const int id = talk("4711", "Anna");
    EXPECT_EQ(marks()->text(), "");
    const QImage bare = marks()->grab().toImage();
    stream(id, "Opus");
    EXPECT_EQ(marks()->text(), "Opus");
    EXPECT_NE(marks()->grab().toImage(), bare);
    stream(id, "Opus", "", 3);
    EXPECT_EQ(marks()->text(), "Opus, 3 of 4");
    stream(id, "PCMA", "", 4, true);
    EXPECT_EQ(marks()->text(), "PCMA, encrypted, 4 of 4");
    kit::shot("call-marks");
    stream(id, "");
    EXPECT_EQ(marks()->grab().toImage(), bare);
}

TEST_F(CallMarks, TheQualityIsSeenByItsBarsAndTheirColour)
{
    const int id = talk("4711", "Anna");
    stream(id, "", "", 0);
    EXPECT_EQ(pixels(marks(), kGreen) + pixels(marks(), kYellow) + pixels(marks(), kRed), 0);
    stream(id, "", "", 1);
    const int one = pixels(marks(), kRed);
    EXPECT_GT(one, 0);
    stream(id, "", "", 2);
    EXPECT_GT(pixels(marks(), kYellow), one);
    EXPECT_EQ(pixels(marks(), kRed), 0);
    stream(id, "", "", 3);
    const int three = pixels(marks(), kGreen);
    stream(id, "", "", 4);
    EXPECT_GT(pixels(marks(), kGreen), three);
    stream(id, "", "", -1, true);
    EXPECT_GT(pixels(marks(), kGreen), 0) << "the lock";
    EXPECT_LT(pixels(marks(), kGreen), three);
}

TEST_F(CallMarks, OfThreeWhoTalkTheWorseQualityAndALockWhereBothAreEncrypted)
{
    const int anna = talk("4711", "Anna");
    const int bob = talk("4712", "Bob");
    stream(anna, "Opus", "", 4, true);
    stream(bob, "PCMA", "", 1, false);
    ASSERT_TRUE(phoneService::instance().rules().join(bob, anna));
    kit::settle();
    EXPECT_EQ(marks()->text(), "Opus, PCMA, 1 of 4");
    stream(bob, "Opus", "", -1, true);
    EXPECT_EQ(marks()->text(), "Opus, encrypted, 4 of 4");
}

TEST_F(CallMarks, GoWithTheCallAndAreThoseOfTheOneThatIsShown)
{
    const int anna = talk("4711", "Anna");
    stream(anna, "Opus", "", 4, true);
    comesIn("4712", "Bob");
    EXPECT_EQ(marks()->text(), "");
    phoneService::instance().hangUp(phoneService::instance().calls().last().nId);
    kit::settle();
    EXPECT_EQ(marks()->text(), "Opus, encrypted, 4 of 4");
    phoneService::instance().hangUp(anna);
    kit::settle();
    EXPECT_EQ(marks()->text(), "");
}

TEST_F(CallMarks, APictureFillsTheScreenAboveTheSoftKeysBelowWhatIsSaid)
{
    const int id = talk("4711", "Anna Berg");
    EXPECT_FALSE(picture()->isVisible());
    EXPECT_FALSE(child("wgtCorner")->isVisible());
    stream(id, "Opus", "H.264", 3, true);
    ASSERT_TRUE(picture()->isVisible());
    EXPECT_EQ(picture()->geometry(), QRect(0, 0, 800, 440));
    EXPECT_EQ(child("wgtCorner")->geometry(), QRect(604, 84, 176, 118));
    EXPECT_FALSE(child("labPicture")->isVisible());
    EXPECT_EQ(labelText(screen(), "labNumber"), "4711 \u00b7 Line 1 \u00b7 H.264, Opus");
    EXPECT_EQ(labelText(screen(), "labState"), "");
    EXPECT_EQ(softKeys(screen()), "Mute|Hold|Transfer|End");
    const QImage black = kit::screen();
    EXPECT_EQ(black.pixel(300, 220), 0xff000000) << "until the first one comes";
    picture()->SetFrame(scene());
    const QImage shown = kit::screen();
    EXPECT_GT(qRed(shown.pixel(300, 220)), 220);
    EXPECT_LT(qRed(shown.pixel(300, 2)), 120) << "shaded below the texts";
    kit::shot("call-picture");
    stream(id, "Opus");
    EXPECT_FALSE(picture()->isVisible());
    EXPECT_FALSE(child("wgtCorner")->isVisible());
    EXPECT_TRUE(child("labPicture")->isVisible());
    EXPECT_EQ(labelText(screen(), "labState"), "In call");
}

TEST_F(CallMarks, WithoutThePictureThatWasAgreedOnItIsSeenWhoItIs)
{
    const int id = talk("4711", "Anna Berg");
    stream(id, "Opus", "H.264", 3, true, 0);
    EXPECT_FALSE(picture()->isVisible());
    EXPECT_FALSE(child("wgtCorner")->isVisible());
    EXPECT_TRUE(child("labPicture")->isVisible());
    EXPECT_EQ(labelText(screen(), "labName"), "Anna Berg");
    EXPECT_EQ(labelText(screen(), "labState"), "In call");
    expectApart();
    kit::shot("call-picture-missing");
    stream(id, "Opus", "H.264", 3, true, 1);
    ASSERT_TRUE(picture()->isVisible());
    EXPECT_FALSE(child("labPicture")->isVisible());
    kit::tap(QPoint(300, 220));
    ASSERT_EQ(picture()->height(), 480);
    stream(id, "Opus", "H.264", 3, true, 0);
    EXPECT_FALSE(picture()->isVisible());
    EXPECT_TRUE(child("actMute")->isVisible()) << "and what can be done";
    EXPECT_TRUE(screen()->findChild<qSoftKeyBar*>()->isVisible());
}

TEST_F(CallMarks, OfThreeWhoTalkThePictureOfTheOneThatSendsItIsSeen)
{
    const int anna = talk("4711", "Anna");
    const int bob = talk("4712", "Bob");
    ASSERT_TRUE(phoneService::instance().rules().join(bob, anna));
    stream(anna, "Opus", "H.264", 4, false, 0);
    stream(bob, "Opus", "H.264", 4, false, 0);
    EXPECT_FALSE(picture()->isVisible());
    stream(anna, "Opus", "H.264", 4, false, 1);
    EXPECT_TRUE(picture()->isVisible());
}

TEST_F(CallMarks, OfThreeWhoTalkTheOwnPictureIsSeenWhileOneOfThemGetsIt)
{
    const int anna = talk("4711", "Anna");
    const int bob = talk("4712", "Bob");
    ASSERT_TRUE(phoneService::instance().rules().join(bob, anna));
    const auto send = [](int id, int own) {
        tagCallStreams streams;
        streams.strPicture = "H.264";
        streams.nOwnPicture = own;
        streams.nOtherPicture = 1;
        ASSERT_TRUE(phoneSimulation::instance()->setStreams(id, streams));
        kit::settle();
    };
    for (const int receiver : {anna, bob}) {
        send(anna, receiver == anna);
        send(bob, receiver == bob);
        showWhite();
        EXPECT_TRUE(child("wgtCorner")->isVisible());
        const QPoint inside = child("wgtCorner")->geometry().bottomLeft() + QPoint(20, -8);
        EXPECT_GT(qRed(kit::screen().pixel(inside)), 240) << "what lies below is seen, and no portrait";
    }
    send(bob, 0);
    EXPECT_FALSE(child("wgtCorner")->isVisible());
}

TEST_F(CallMarks, ATouchMakesThePictureAsLargeAsTheScreenAndBack)
{
    const int id = talk("4711", "Anna Berg");
    stream(id, "Opus", "H.264");
    picture()->SetFrame(scene());
    kit::tap(QPoint(300, 220));
    EXPECT_EQ(picture()->geometry(), QRect(0, 0, 800, 480));
    for (const char* hidden :
         {"labName", "labNumber", "labDuration", "wgtMarks", "actMute", "actAdd", "labVolume"})
        EXPECT_FALSE(child(hidden)->isVisible()) << hidden;
    EXPECT_FALSE(screen()->findChild<qSoftKeyBar*>()->isVisible());
    EXPECT_EQ(child("wgtCorner")->geometry(), QRect(604, 20, 176, 118));
    EXPECT_GT(qRed(kit::screen().pixel(300, 470)), 220);
    kit::shot("call-picture-full");
    kit::tap(QPoint(700, 60)); // upon the own one
    EXPECT_EQ(picture()->geometry(), QRect(0, 0, 800, 440));
    EXPECT_TRUE(child("actMute")->isVisible());
    EXPECT_TRUE(screen()->findChild<qSoftKeyBar*>()->isVisible());
    kit::tap(action("actMute"));
    EXPECT_TRUE(phoneService::instance().calls()[0].bMuted) << "a button is still a button";
    EXPECT_EQ(picture()->geometry(), QRect(0, 0, 800, 440));
}

TEST_F(CallMarks, OkMakesThePictureLargeAndMostKeysBringTheRestBack)
{
    const int id = talk("4711", "Anna");
    stream(id, "Opus", "H.264");
    for (const Qt::Key back : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Back, Qt::Key_Left, Qt::Key_F4}) {
        kit::key(Qt::Key_Return);
        ASSERT_EQ(picture()->height(), 480) << back;
        kit::padKey('5');
        kit::key(Qt::Key_VolumeUp);
        EXPECT_EQ(picture()->height(), 480) << "these work as always";
        kit::key(back);
        EXPECT_EQ(picture()->height(), 440) << back;
        ASSERT_EQ(phoneService::instance().calls().size(), 1) << back;
    }
    EXPECT_EQ(phoneService::instance().calls()[0].strTones, "55555");
    kit::key(Qt::Key_Right);
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(phoneService::instance().calls()[0].bMuted) << "what is chosen comes first";
    EXPECT_EQ(picture()->height(), 440);
}

TEST_F(CallMarks, ThePictureStandsBackForAHoldThePadAndACallThatRings)
{
    const int id = talk("4711", "Anna");
    stream(id, "Opus", "H.264", 4, true);
    kit::tap(action("actKeys"));
    EXPECT_FALSE(picture()->isVisible());
    kit::tap(action("actKeys"));
    EXPECT_TRUE(picture()->isVisible());
    kit::tap(QPoint(300, 220));
    ASSERT_EQ(picture()->height(), 480);
    const int other = comesIn("4712", "Bob");
    EXPECT_FALSE(picture()->isVisible());
    EXPECT_TRUE(child("btnAnswer")->isVisible());
    EXPECT_TRUE(screen()->findChild<qSoftKeyBar*>()->isVisible());
    phoneService::instance().hangUp(other);
    kit::settle();
    EXPECT_EQ(picture()->height(), 440) << "with all that can be done";
    letPressesCount();
    tapSoftKey(screen(), 1);
    EXPECT_FALSE(picture()->isVisible());
    EXPECT_EQ(labelText(screen(), "labState"), "On hold");
    EXPECT_EQ(labelText(screen(), "labNumber"), "4711");
}

TEST_F(CallMarks, ThePictureBeforeIsNotSeenAsAnotherCalls)
{
    videoFrameWriter server;
    ASSERT_TRUE(server.open());
    const auto paint = [&](QRgb colour) {
        ASSERT_TRUE(server.write(QSize(800, 440), QRect(), [=](unsigned char* pixels) {
            std::fill_n(reinterpret_cast<QRgb*>(pixels), 800 * 440, colour);
        }));
        msgObject message(MEDIA_MSG_FRAME, unsigned(getpid()), unsigned(server.descriptor()));
        EXPECT_EQ(videoFrames::instance().TryThreadMessage(message), 1);
        kit::settle();
    };
    const auto isShown = [](QRgb colour) { return kit::screen().pixel(300, 220) == colour; };
    paint(0xffff0000); // a film's
    stream(talk("4711", "Anna"), "Opus", "H.264");
    picture()->SetFrame(QImage());
    ASSERT_TRUE(picture()->isVisible());
    EXPECT_TRUE(isShown(0xff000000)) << "until its first one comes";
    paint(0xff00ff00);
    EXPECT_TRUE(isShown(0xff00ff00));
    stream(talk("4712", "Bob"), "Opus", "H.264");
    ASSERT_TRUE(picture()->isVisible());
    EXPECT_TRUE(isShown(0xff000000)) << "that is not Bob";
    paint(0xff0000ff);
    EXPECT_TRUE(isShown(0xff0000ff));
}

TEST_F(CallMarks, TheCornerIsThereOnlyWhereAnOwnPictureGoesOut)
{
    const int id = talk("4711");
    tagCallStreams streams;
    streams.strPicture = "H.264";
    for (const int own : {1, 0, 1}) {
        streams.nOwnPicture = own;
        ASSERT_TRUE(phoneSimulation::instance()->setStreams(id, streams));
        kit::settle();
        ASSERT_TRUE(picture()->isVisible());
        EXPECT_EQ(child("wgtCorner")->isVisible(), own == 1);
    }
}

TEST_F(CallMarks, WhatWasChosenInOneCallIsNotChosenInTheNext)
{
    talk("4711");
    kit::key(Qt::Key_Right);
    hangUpAll();
    const int id = talk("4712");
    kit::key(Qt::Key_Return);
    ASSERT_EQ(phoneService::instance().calls().size(), 1);
    EXPECT_EQ(phoneService::instance().calls()[0].nId, id);
    EXPECT_FALSE(phoneService::instance().calls()[0].bMuted);
    kit::key(Qt::Key_Right);
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(phoneService::instance().calls()[0].bMuted);
}

TEST_F(CallMarks, AFingerThatHasSlidOffHasTouchedNothing)
{
    stream(talk("4711"), "Opus", "H.264");
    kit::press(QPoint(300, 220));
    kit::moveTo(QPoint(300, 500));
    kit::release(QPoint(300, 500));
    EXPECT_EQ(picture()->height(), 440);
    kit::tap(QPoint(300, 220));
    EXPECT_EQ(picture()->height(), 480);
}

TEST_F(CallMarks, AfterALongCallTheScreenStaysForAWhile)
{
    talk("4711");
    constexpr qint64 kHour = 3600000;
    screenState::instance().setIdle(kHour);
    hangUpAll();
    kit::stepTime(2000);
    ASSERT_EQ(screen(), nullptr);
    EXPECT_LT(screenState::instance().idleMs(), kHour / 2);
}

TEST_F(CallMarks, ADoorIsSeenBeforeTheAnswer)
{
    const int id = comesIn("8100", "Gate");
    stream(id, "", "H.264");
    ASSERT_TRUE(picture()->isVisible());
    EXPECT_FALSE(child("labPicture")->isVisible());
    EXPECT_FALSE(child("wgtCorner")->isVisible()) << "nobody sees the user";
    picture()->SetFrame(scene());
    kit::tap(QPoint(300, 120));
    EXPECT_EQ(picture()->height(), 440) << "it asks";
    kit::shot("call-picture-asked");
    kit::tap(child("btnAnswer"));
    EXPECT_EQ(phoneService::instance().calls()[0].eState, CALL_TALKING);
}

TEST_F(CallMarks, ADeviceWhosePageSaysSoBeginsAsLargeAsTheScreen)
{
    writeFile("/rundata/data/doorphonedata.xml",
              "<DoorPhone><item title='Door Phone 1'><PhoneNumber>8100</PhoneNumber><FullScreen>1"
              "</FullScreen></item></DoorPhone>");
    GetDoorPhoneIconViewManager()->RefreshIconView();
    const int id = talk("8100", "Gate");
    ASSERT_FALSE(picture()->isVisible());
    stream(id, "Opus", "H.264");
    EXPECT_EQ(picture()->geometry(), QRect(0, 0, 800, 480));
    kit::key(Qt::Key_Back);
    stream(id, "Opus", "H.264", 2);
    EXPECT_EQ(picture()->geometry(), QRect(0, 0, 800, 440)) << "once";
}

TEST_F(CallMarks, NothingIsCutOrCoveredInAnyStateAndLanguage)
{
    for (const char* language : {"English", "Chinese", "German", "French", "Spanish"}) {
        setLanguage(language);
        kit::settle();
        const auto look = [&](const char* what) {
            SCOPED_TRACE(QString("%1 %2").arg(language, what).toStdString());
            kit::settle();
            expectApart();
            EXPECT_EQ(cutTexts(screen()), "");
            kit::shot(QString("call-%1-%2").arg(what, language));
        };
        int id = comesIn("004930123456", "Anna Berg");
        stream(id, "Opus", "", 3, true);
        look("marks-asked");
        stream(id, "", "H.264", 3, true);
        picture()->SetFrame(scene());
        look("picture-asked");
        phoneService::instance().answer(id);
        stream(id, "Opus", "", 1, true);
        look("marks");
        kit::key(Qt::Key_Up);
        phoneSimulation::instance()->holdFromOutside(id, true);
        stream(id, "Opus", "H.264", 4, true);
        kit::key(Qt::Key_VolumeMute);
        look("picture");
        kit::tap(action("actKeys"));
        look("marks-pad");
        kit::tap(action("actKeys"));
        const int other = talk("4712", "Bob Long");
        stream(other, "G.722", "H.264", 2, true);
        EXPECT_EQ(child("labOthers")->y(), child("labState")->y()) << "there is no state to say";
        look("picture-two");
        phoneService::instance().rules().join(other, id);
        look("picture-conference");
        stream(id, "Opus", "", 4, true);
        stream(other, "G.722", "", 2, true);
        look("marks-conference");
        hangUpAll();
        kit::stepTime(2000);
    }
}

TEST_F(CallMarks, TextsUponTheBrightestPictureAreRead)
{
    const int anna = talk("4711", "Anna");
    stream(anna, "Opus", "H.264", 3);
    showWhite();
    EXPECT_EQ(contrastAt(QRect(400, 210, 1, 1)), 1) << "the middle of the picture is as it came";
    expectReadable({"labName", "labNumber", "labDuration"});
    const int bob = talk("4712", "Bob");
    talk("4713", "Cleo");
    ASSERT_TRUE(phoneService::instance().rules().setHeld(bob, false));
    ASSERT_TRUE(phoneService::instance().rules().join(bob, anna));
    stream(bob, "Opus", "H.264", 3);
    showWhite();
    kit::shot("call-picture-white");
    expectReadable({"labName", "labNumber", "labState", "labDuration", "labOthers"});
}

TEST_F(CallMarks, WhatAsksUponTheBrightestPictureIsRead)
{
    const int id = ring("4711", "Anna");
    stream(id, "Opus", "H.264", 3);
    showWhite();
    ASSERT_TRUE(picture()->isVisible());
    kit::shot("call-asks-white");
    expectReadable({"labName", "labState"});
}

TEST_F(CallMarks, AChangedVolumeIsShownUponThePictureForAMoment)
{
    const int id = talk("4711", "Anna");
    stream(id, "Opus", "H.264");
    const QWidget* bar = screen()->findChild<QWidget*>("barVolume");
    const QWidget* word = screen()->findChild<QWidget*>("labVolume");
    ASSERT_FALSE(bar->isVisible());
    for (int press = 0; press < 3; ++press) {
        kit::key(Qt::Key_VolumeDown);
        EXPECT_TRUE(bar->isVisible() && word->isVisible());
        kit::stepTime(2000);
        EXPECT_TRUE(bar->isVisible()) << "from the last change on";
    }
    kit::stepTime(2000);
    EXPECT_FALSE(bar->isVisible() || word->isVisible());
    phoneService::instance().rules().setHeld(id, true);
    kit::settle();
    EXPECT_TRUE(bar->isVisible()) << "without a picture, always";
}
