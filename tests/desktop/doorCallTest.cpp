// A call with a door phone: its door is opened from the call screen.
#include "host/desktop/deviceCalls.h"
#include "host/desktop/frmCall.h"
#include "host/services/phone/callDevices.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "support/host/managers.h"
#include "tests/desktop/desktopTest.h"
#include <QLabel>

namespace {

class DoorCall : public DesktopTest
{
protected:
    DoorCall()
    {
        registerLines();
        writeFile("/rundata/data/doorphonedata.xml",
                  "<DoorPhone><item title='Door Phone "
                  "1'><DisplayName>Gate</DisplayName><PhoneNumber>8100</PhoneNumber><UnlockPIN>9137"
                  "</UnlockPIN></item><item title='Door Phone 2'><PhoneNumber>8101</PhoneNumber><UnlockPIN/>"
                  "</item></DoorPhone>");
        GetDoorPhoneIconViewManager()->RefreshIconView();
        deviceCallsInstall();
        callScreenInstall();
    }
    ~DoorCall() override { hangUpAll(); }

    static void talk(const char* number)
    {
        ASSERT_TRUE(phoneSimulation::instance()->ring(number, 0, ""));
        kit::settle();
        const int id = phoneService::instance().calls()[0].nId;
        ASSERT_TRUE(phoneService::instance().answer(id));
        kit::settle();
        letPressesCount();
    }
    static QWidget* screen() { return kit::windows().value(0); }
    static QString tones() { return phoneService::instance().calls()[0].strTones; }
};

} // namespace

TEST_F(DoorCall, TheDoorIsOpenedByAFingerAndByItsKeyAndNobodySeesTheDigits)
{
    talk("8100");
    EXPECT_NE(softKeys(screen()).find("Open door"), std::string::npos) << softKeys(screen());
    kit::shot("call-door");
    tapSoftKey(screen(), 2);
    EXPECT_EQ(tones(), "\u2022\u2022\u2022\u2022");
    kit::settle();
    for (const QLabel* label : screen()->findChildren<QLabel*>())
        EXPECT_FALSE(label->text().contains("9137"));
    kit::key(Qt::Key_F3);
    EXPECT_EQ(tones().size(), 8);
}

TEST_F(DoorCall, WithoutDigitsOrWithSomebodyElseThereIsNoDoor)
{
    for (const char* number : {"8101", "4711"}) {
        talk(number);
        EXPECT_EQ(softKeys(screen()).find("Open door"), std::string::npos) << softKeys(screen());
        hangUpAll();
        kit::stepTime(2000);
    }
    ASSERT_TRUE(phoneSimulation::instance()->ring("8100", 0, ""));
    kit::settle();
    EXPECT_EQ(softKeys(screen()).find("Open door"), std::string::npos) << "it only rings";
}

TEST_F(DoorCall, EveryDeviceIsWhatItsFileSays)
{
    writeFile("/rundata/data/doorphonedata.xml",
              "<DoorPhone><item title='Door Phone 1'><PhoneNumber>8100</PhoneNumber><FullScreen>1"
              "</FullScreen></item><item title='Door Phone 2'><PhoneNumber>8101</PhoneNumber>"
              "<RefuseNewIncall>1</RefuseNewIncall><FullScreen>0</FullScreen></item></DoorPhone>");
    writeFile("/rundata/data/ipcameradata.xml",
              "<IPCamera><item title='A'><PhoneNumber>8200</PhoneNumber><Fullscreen>1</Fullscreen></item>"
              "<item title='B'><PhoneNumber>8201</PhoneNumber><Notsendvideo>1</Notsendvideo></item>"
              "<item title='C'><PhoneNumber>8202</PhoneNumber><Notsendaudio>1</Notsendaudio></item>"
              "</IPCamera>");
    GetDoorPhoneIconViewManager()->RefreshIconView();
    GetIPCameraIconViewManager()->RefreshIPCameraIconView();
    QStringList all;
    for (const tagCallDevice& device : callDevices()) {
        all.append(device.strNumber + (device.bRefusesOthers ? " alone" : "") +
                   (device.bFullScreen ? " full" : "") + (device.bNoVideo ? " blind" : "") +
                   (device.bNoAudio ? " mute" : ""));
    }
    EXPECT_EQ(all, (QStringList{"8100 full", "8101 alone", "8200 full", "8201 blind", "8202 mute"}));
}

TEST_F(DoorCall, ADoorPhoneHasTheNameThatItsPageGivesIt)
{
    writeFile("/rundata/data/contactData.xml", "<Contacts/>");
    talk("8100");
    EXPECT_EQ(screen()->findChild<QLabel*>("labName")->text(), "Gate");
    hangUpAll();
    kit::stepTime(2000);
    talk("8101");
    EXPECT_EQ(screen()->findChild<QLabel*>("labName")->text(), "8101") << "none is set";
}
