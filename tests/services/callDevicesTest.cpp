// Calls with door phones and cameras.
#include "host/services/phone/callDevices.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "tests/services/ruledCalls.h"

namespace {

QList<tagCallDevice> g_devices;

class DeviceCalls : public RuledCalls
{
protected:
    DeviceCalls()
    {
        g_devices.clear();
        callDevicesAre([] { return g_devices; });
    }
    ~DeviceCalls() override { callDevicesAre(nullptr); }

    static tagCallDevice& add(const QString& number)
    {
        tagCallDevice device;
        device.strNumber = number;
        g_devices.append(device);
        return g_devices.last();
    }
    int talkWith(const QString& number)
    {
        const int id = arrive(number);
        EXPECT_TRUE(rules->answer(id));
        orders();
        return id;
    }
};

} // namespace

TEST_F(DeviceCalls, TheDoorIsOpenedBySecretTonesInTheCall)
{
    add("8100").strUnlockPin = "12#";
    const int id = arrive("sip:8100@pbx.test");
    orders();
    EXPECT_TRUE(rules->hasDoor(backend.live[0]));
    EXPECT_FALSE(rules->openDoor(id)) << "not before it talks";
    EXPECT_EQ(orders(), QStringList());
    rules->answer(id);
    orders();
    EXPECT_TRUE(rules->openDoor(id));
    EXPECT_EQ(orders(),
              (QStringList{of("secret tone 1", id), of("secret tone 2", id), of("secret tone #", id)}));
    EXPECT_FALSE(rules->openDoor(id + 1000));
}

TEST_F(DeviceCalls, OthersHaveNoDoor)
{
    add("8100").strUnlockPin = "12";
    add("8101");
    add("8102").strUnlockPin = "1 2";
    add("").strUnlockPin = "12";
    for (const char* number : {"8101", "8102", "4711", ""}) {
        const int id = talkWith(number);
        EXPECT_FALSE(rules->hasDoor(backend.live[0])) << number;
        EXPECT_FALSE(rules->openDoor(id)) << number;
        EXPECT_EQ(orders(), QStringList());
        rules->hangUp(id);
        orders();
    }
    callDevicesAre(nullptr);
    EXPECT_FALSE(rules->openDoor(talkWith("8100")));
}

TEST_F(DeviceCalls, ADoorPhoneThatWantsItKeepsOthersOutWhileItTalks)
{
    add("8100").bRefusesOthers = true;
    add("8101");
    const int door = arrive("8100");
    const int before = arrive("4711");
    EXPECT_EQ(orders(), (QStringList{of("ring", door), of("ring", before)})) << "it only rings";
    rules->decline(before);
    rules->answer(door);
    orders();
    const int during = arrive("4711");
    EXPECT_EQ(orders(), QStringList{of(QString("refuse %1").arg(CALL_BUSY), during)});
    rules->setHeld(door, true);
    orders();
    const int held = arrive("4711");
    EXPECT_EQ(orders(), QStringList{of(QString("refuse %1").arg(CALL_BUSY), held)});
    rules->hangUp(door);
    orders();
    const int after = arrive("4711");
    EXPECT_EQ(orders(), QStringList{of("ring", after)});
    rules->hangUp(after);
    talkWith("8101");
    const int beside = arrive("4711");
    EXPECT_EQ(orders(), QStringList{of("ring", beside)}) << "that one does not";
}

TEST_F(DeviceCalls, WhoIsKeptOutGoesWhereBusyCallersGo)
{
    add("8100").bRefusesOthers = true;
    setForward("BusyForward", "222");
    EXPECT_GT(rules->dial("8100", 0), 0);
    orders();
    const int id = arrive("4711");
    EXPECT_EQ(orders(), QStringList{of("deflect 222", id)}) << "a call to it counts from its beginning";
}

TEST_F(DeviceCalls, ACameraGetsNoPictureAndNoSoundWhereItIsSetSo)
{
    tagCallDevice& quiet = add("8200");
    quiet.bNoAudio = true;
    add("8201").bNoVideo = true;
    rules->dial("8200", 0);
    EXPECT_FALSE(backend.live[0].options.bMicrophone);
    EXPECT_TRUE(backend.live[0].options.bCamera);
    rules->dial("8201", 0);
    EXPECT_TRUE(backend.live[1].options.bMicrophone);
    EXPECT_FALSE(backend.live[1].options.bCamera);
    rules->answer(arrive("8200"));
    EXPECT_FALSE(backend.live.last().options.bMicrophone) << "when it calls as well";
    rules->dial("4711", 0);
    EXPECT_TRUE(backend.live.last().options.bMicrophone && backend.live.last().options.bCamera);
}

TEST_F(DeviceCalls, ADeviceIsKnownByWhatTheDialPlanMakesOfItsNumber)
{
    writeFile("/rundata/data/dialplan.xml", "<DialRule><Data Prefix='8' Replace='0308'/></DialRule>");
    tellChanged(CONFIG_CHANGED_DIAL_PLAN);
    add("8100").strUnlockPin = "7";
    const int id = rules->dial("8100", 0);
    ASSERT_GT(id, 0);
    EXPECT_EQ(backend.live[0].strNumber, "0308100");
    backend.answerFromOutside(id);
    EXPECT_TRUE(rules->openDoor(id));
}

TEST_F(DeviceCalls, TheSimulationRecordsThatTonesCameButNotWhich)
{
    add("8100").strUnlockPin = "9137";
    phoneService& phone = phoneService::instance();
    phone.backend();
    ASSERT_TRUE(phoneSimulation::instance()->ring("8100", 0, ""));
    const int id = phone.calls()[0].nId;
    ASSERT_TRUE(phone.answer(id));
    EXPECT_TRUE(phone.rules().sendTones(id, "5"));
    EXPECT_TRUE(phone.rules().openDoor(id));
    EXPECT_EQ(phone.calls()[0].strTones, "5\u2022\u2022\u2022\u2022");
    for (const char* kind : {"trace", "tone", "dial", "calls"}) {
        for (const QString& text : logged(kind))
            EXPECT_FALSE(text.contains("9137")) << qPrintable(text);
    }
    phone.hangUp(id);
}

TEST_F(DeviceCalls, ADeviceIsKnownByItsOwnNumberTooWhereThePlanRewritesIt)
{
    writeFile("/rundata/data/dialplan.xml", "<DialRule><Data Prefix='8' Replace='0308'/></DialRule>");
    tellChanged(CONFIG_CHANGED_DIAL_PLAN);
    add("8100").strUnlockPin = "7";
    EXPECT_TRUE(rules->openDoor(talkWith("8100"))) << "as it calls";
}
