// Calls of the simulated phone, their history, and the loudspeaker.
#include "host/services/phone/callHistory.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "host/services/players/soundOutput.h"
#include "host/services/players/speaker.h"
#include "support/host/clock.h"
#include "support/host/net.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "tests/kit/phoneTest.h"
#include "tests/services/historyOf.h"
#include <QDir>
#include <QFile>
#include <QStringList>
#include <memory>

namespace {

const char* const kHistory = "/rundata/data/callHistory.xml";

class Calls : public PhoneTest
{
protected:
    Calls()
    {
        phoneService::instance().setBackend(std::make_unique<phoneSimulation>());
        listener =
            phoneService::instance().addCallListener([this](const tagCall& call) { heard.append(call); });
        setLine(1, LINE_DEFAULT_ACCOUNT);
        setLine(2, LINE_REGISTERED);
        mark();
    }
    // The history is written on another thread; the device root is not taken away under it.
    ~Calls() override
    {
        int ended = 0;
        for (const tagCall& call : heard)
            ended += call.eState == CALL_ENDED;
        EXPECT_GE(historyOf("number", m_bCleared ? 0 : ended + m_nOldCalls).size(), m_bCleared ? 0 : ended);
        phoneService::instance().removeCallListener(listener);
        phoneService::instance().setBackend(nullptr);
    }

    static void setLine(int index, LINE_STATE state)
    {
        tagLineSetting setting;
        setting.state = state;
        phoneSimulation::instance()->setLine(index, setting);
    }
    static QList<tagCall> calls() { return phoneService::instance().calls(); }
    QList<int> heardStates() const
    {
        QList<int> states;
        for (const tagCall& call : heard)
            states.append(call.eState);
        return states;
    }

    bool m_bCleared = false;
    int m_nOldCalls = 0; // in the history, and not pushed out of it
    int listener = 0;
    QList<tagCall> heard;
};

TEST_F(Calls, DialledNumberIsLoggedAsItWasGiven)
{
    phone_CallNumber("600", 2, -2);
    phone_CallNumber("", -1, -1);
    phone_CallNumber(nullptr, 0, 0);
    EXPECT_EQ(logged("dial"), (QStringList{"600 2 -2", " -1 -1", " 0 0"}));
}

TEST_F(Calls, CallRingsThenTalksUntilItIsHungUp)
{
    EXPECT_EQ(phone_CallNumber("600", 2, -1), 1);
    ASSERT_EQ(calls().size(), 1);
    const int id = calls()[0].nId;
    EXPECT_EQ(calls()[0].eState, CALL_RINGING);
    EXPECT_EQ(calls()[0].nAccount, 2);
    EXPECT_EQ(phone_GetCallTotal(), 1);
    EXPECT_EQ(phone_IsPhoneInTalk(), 0);
    kit::stepTime(1000);
    EXPECT_EQ(calls()[0].eState, CALL_RINGING);
    kit::stepTime(510);
    EXPECT_EQ(calls()[0].eState, CALL_TALKING);
    EXPECT_EQ(phone_IsPhoneInTalk(), 1);
    kit::stepTime(5000);
    EXPECT_EQ(calls()[0].nSeconds, 5);
    EXPECT_TRUE(phoneService::instance().hangUp(id));
    EXPECT_FALSE(phoneService::instance().hangUp(id));
    EXPECT_TRUE(calls().isEmpty());
    EXPECT_EQ(phone_GetCallTotal(), 0);
    EXPECT_EQ(phone_IsPhoneInTalk(), 0);
    // It goes out, then it rings there.
    EXPECT_EQ(heardStates(), (QList<int>{CALL_RINGING, CALL_RINGING, CALL_TALKING, CALL_ENDED}));
    EXPECT_FALSE(heard[0].bRingsThere);
    EXPECT_TRUE(heard[1].bRingsThere);
    EXPECT_EQ(heard.last().strReason, "");
    EXPECT_EQ(heard.last().nSeconds, 5);
}

TEST_F(Calls, DefaultAccountTakesACallWithoutOne)
{
    EXPECT_EQ(phone_CallNumber("600", -1, -1), 1);
    EXPECT_EQ(calls()[0].nAccount, 1);
}

TEST_F(Calls, BusyNumberEndsWithItsReason)
{
    EXPECT_EQ(phone_CallNumber("busy", 1, -1), 1);
    kit::stepTime(1520);
    EXPECT_TRUE(calls().isEmpty());
    EXPECT_EQ(heardStates(), (QList<int>{CALL_RINGING, CALL_ENDED}));
    EXPECT_EQ(heard.last().strReason, "Busy");
}

TEST_F(Calls, LineThatIsNotRegisteredFailsWithItsReason)
{
    EXPECT_EQ(phone_CallNumber("600", 0, -1), 0);
    EXPECT_EQ(heardStates(), QList<int>{CALL_ENDED});
    EXPECT_EQ(heard.last().strReason, "The line is not registered");
    setLine(1, LINE_UNREGISTERED);
    setLine(2, LINE_UNREGISTERED);
    EXPECT_EQ(phone_CallNumber("600", -1, -1), 0);
    EXPECT_EQ(heard.size(), 2);
    EXPECT_EQ(phone_GetCallTotal(), 0);
}

TEST_F(Calls, NoNumberAndNoSuchLineAreNoCalls)
{
    EXPECT_EQ(phone_CallNumber("", 1, -1), 0);
    EXPECT_EQ(phone_CallNumber(nullptr, 1, -1), 0);
    EXPECT_EQ(phone_CallNumber("600", 4, -1), 0);
    EXPECT_EQ(phone_CallNumber("600", -2, -1), 0);
    EXPECT_TRUE(heard.isEmpty());
}

TEST_F(Calls, CallHungUpWhileItRingsNeverTalks)
{
    phone_CallNumber("600", 1, -1);
    phoneService::instance().hangUp(calls()[0].nId);
    kit::stepTime(3000);
    EXPECT_EQ(heardStates(), (QList<int>{CALL_RINGING, CALL_ENDED}));
    EXPECT_EQ(heard.last().nSeconds, 0);
}

TEST_F(Calls, CallsSetByHandCountBesideThose)
{
    phoneSimulation::instance()->setCalls(2, 1);
    EXPECT_EQ(phone_GetCallTotal(), 2);
    EXPECT_EQ(phone_IsPhoneInTalk(), 1);
    phone_CallNumber("600", 1, -1);
    EXPECT_EQ(phone_GetCallTotal(), 3);
    phoneSimulation::instance()->setCalls(0, 0);
    EXPECT_EQ(phone_GetCallTotal(), 1);
    EXPECT_EQ(phone_IsPhoneInTalk(), 0);
    phoneSimulation::instance()->setCalls(-1, 0);
    EXPECT_EQ(phone_GetCallTotal(), 1);
}

TEST_F(Calls, AnalogueLineIsThereWhenItIsSet)
{
    EXPECT_EQ(phone_GetPSTNEnable(), 0);
    phoneSimulation::instance()->setPstn(1);
    EXPECT_EQ(phone_GetPSTNEnable(), 1);
}

TEST_F(Calls, ListenerMayLeaveWhileItIsTold)
{
    int calls = 0;
    int second = 0;
    second = phoneService::instance().addCallListener([&](const tagCall&) {
        ++calls;
        phoneService::instance().removeCallListener(second);
    });
    phone_CallNumber("600", 1, -1);
    phoneService::instance().hangUp(heard[0].nId);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(heard.size(), 2);
}

TEST_F(Calls, EndedCallsAreInTheHistoryNewestFirst)
{
    netSetLocalTime(2024, 2, 29, 23, 59, 58);
    phone_CallNumber("600", 1, -1);
    kit::stepTime(1510);
    kit::stepTime(3000);
    phoneService::instance().hangUp(calls()[0].nId);
    phone_CallNumber("busy&more", 2, -1);
    phoneService::instance().hangUp(calls()[0].nId);
    EXPECT_EQ(historyOf("number", 2), (QStringList{"busy&more", "600"}));
    EXPECT_EQ(historyOf("line", 2), (QStringList{"3", "2"}));
    EXPECT_EQ(historyOf("direction", 2), (QStringList{"out", "out"}));
    EXPECT_EQ(historyOf("seconds", 2), (QStringList{"0", "3"}));
    EXPECT_EQ(historyOf("name", 2), (QStringList{"", ""}));
    EXPECT_TRUE(historyOf("start", 2)[1].startsWith("2024-02-29 23:59:5"));
}

TEST_F(Calls, HistoryKeepsTheMomentOfACallWhateverTheZone)
{
    const char* const file = "/rundata/config/system.ini";
    nuxSetRegistryString(file, "LocalTime", "strTimeName", "-05:00 ");
    nuxSetRegistryString(file, "LocalTime", "strZoneName", "Nowhere");
    netSetLocalTime(2024, 2, 29, 23, 59, 0);
    phone_CallNumber("600", 1, -1);
    phoneService::instance().hangUp(calls()[0].nId);
    EXPECT_TRUE(historyOf("start", 1)[0].startsWith("2024-02-29 23:59:0"));
    const long utc = chTime(2024, 3, 1, 4, 59, 0).GetTime();
    const long stored = historyOf("utc", 1)[0].toLong();
    EXPECT_GE(stored, utc);
    EXPECT_LT(stored, utc + 60);
}

TEST_F(Calls, RefusedCallIsInTheHistoryToo)
{
    phone_CallNumber("600", 0, -1);
    EXPECT_EQ(historyOf("number", 1), QStringList{"600"});
    EXPECT_EQ(historyOf("line", 1), QStringList{"1"});
}

TEST_F(Calls, ACallThatWentNowhereIsInTheHistoryWithNumberLineAndTime)
{
    netSetLocalTime(2024, 2, 29, 23, 59, 0);
    phone_CallNumber("6'00", 2, -1);
    EXPECT_TRUE(calls().isEmpty());
    EXPECT_EQ(historyOf("number", 1), QStringList{"6'00"});
    EXPECT_EQ(historyOf("line", 1), QStringList{"3"});
    EXPECT_TRUE(historyOf("start", 1)[0].startsWith("2024-02-29 23:59:0"));
}

TEST_F(Calls, ACallThatIsStillOnItsWayIntoAClearedHistoryIsForgottenToo)
{
    for (int round = 0; round < 20; ++round) {
        phone_CallNumber("600", 1, -1);
        phoneService::instance().hangUp(calls()[0].nId);
        EXPECT_EQ(callHistoryClear(), 1);
    }
    m_bCleared = true;
    // What is behind the last one in the queue has been written.
    phone_CallNumber("601", 1, -1);
    phoneService::instance().hangUp(calls()[0].nId);
    EXPECT_EQ(historyOf("number", 1), QStringList{"601"});
    EXPECT_EQ(callHistoryClear(), 1);
}

TEST_F(Calls, HistoryKeepsAHundredCalls)
{
    QByteArray old = "<CallHistory>";
    for (int i = 0; i < 100; ++i)
        old += "<Call number=\"" + QByteArray::number(i) + "\" name=\"N\"/>";
    writeFile(kHistory, old + "</CallHistory>");
    m_nOldCalls = 99;
    phone_CallNumber("600", 1, -1);
    phoneService::instance().hangUp(calls()[0].nId);
    ASSERT_TRUE(kit::waitUntil([&] { return readFile(kHistory).contains("600"); }));
    const QStringList numbers = historyOf("number", 100);
    ASSERT_EQ(numbers.size(), 100);
    EXPECT_EQ(numbers.first(), "600");
    EXPECT_EQ(numbers[1], "0");
    EXPECT_EQ(numbers.last(), "98");
    EXPECT_EQ(historyOf("name", 100)[1], "N");
}

TEST_F(Calls, HistoryThatIsDamagedIsKeptAsideBeforeTheNextCallIsStored)
{
    const QByteArray damaged = "<CallHistory><Call number=\"1\" name=\"A & B\"/><Call number=\"2\"/>"
                               "<Call number=\"3\"/></CallHistory>";
    writeFile(kHistory, damaged);
    phone_CallNumber("600", 1, -1);
    phoneService::instance().hangUp(calls()[0].nId);
    ASSERT_TRUE(kit::waitUntil([&] { return readFile(kHistory).contains("600"); }));
    EXPECT_EQ(readFile("/rundata/data/callHistory.xml.bad"), damaged);
}

TEST_F(Calls, ThoseThatCannotBeStoredAreToldOnceAndStoredWhenTheyCan)
{
    int told = 0;
    bool listens = false;
    const auto tell = [&] {
        told += listens;
        return listens;
    };
    callHistoryOnFault(tell, 200);
    // No file takes the place of a folder with something in it.
    const auto block = [&] {
        QFile::remove(hostPath(kHistory));
        writeFile("/rundata/data/callHistory.xml/held", "");
    };
    const auto clear = [&] { EXPECT_TRUE(QDir(hostPath(kHistory)).removeRecursively()); };
    const auto call = [&](const char* number) {
        phone_CallNumber(number, 1, -1);
        phoneService::instance().hangUp(calls()[0].nId);
    };
    const auto faults = [&] { return traces().count("the call history could not be saved"); };
    block();
    call("600");
    ASSERT_TRUE(kit::waitUntil([&] { return faults() == 1; }));
    EXPECT_EQ(told, 0);
    listens = true;
    EXPECT_TRUE(kit::waitUntil([&] { return told == 1; })) << "who could not be told is told later";
    call("601");
    clear();
    EXPECT_EQ(historyOf("number", 2), (QStringList{"601", "600"}));
    EXPECT_EQ(told, 1);
    EXPECT_EQ(faults(), 1);

    block();
    call("602");
    EXPECT_TRUE(kit::waitUntil([&] { return told == 2; })) << "it is another fault";
    clear();
    EXPECT_EQ(historyOf("number", 1), QStringList{"602"});
    callHistoryOnFault(nullptr);
    m_bCleared = true;
    EXPECT_EQ(callHistoryClear(), 1);
}

TEST_F(Calls, ThoseThatWaitForRoomAreTriedOnceMoreAtTheEndOfThePhone)
{
    callHistoryOnFault(nullptr, 1000000);
    QFile::remove(hostPath(kHistory));
    writeFile("/rundata/data/callHistory.xml/held", "");
    phone_CallNumber("600", 1, -1);
    phoneService::instance().hangUp(calls()[0].nId);
    ASSERT_TRUE(kit::waitUntil([&] { return traces().contains("the call history could not be saved"); }));
    phone_CallNumber("601", 2, -1);
    EXPECT_EQ(callHistoryFinish(), 0);
    EXPECT_TRUE(traces().contains("the call history could not be saved, calls lost: 1")) << "they wait on";
    EXPECT_TRUE(QDir(hostPath(kHistory)).removeRecursively());
    phoneService::instance().finish();
    EXPECT_EQ(historyOf("number", 2), (QStringList{"601", "600"})) << "and what still rang";
    EXPECT_EQ(historyOf("missed", 2), (QStringList{"0", "0"}));
    callHistoryOnFault(nullptr);
    m_bCleared = true;
    phoneService::instance().hangUp(calls()[0].nId);
    EXPECT_EQ(callHistoryClear(), 1);
}

TEST_F(Calls, OfThoseThatCannotBeStoredNoMoreWaitThanTheListHoldsAndNoneComesBackWhenItIsCleared)
{
    callHistoryOnFault(nullptr, 1000000);
    QFile::remove(hostPath(kHistory));
    writeFile("/rundata/data/callHistory.xml/held", "");
    for (int i = 0; i < CALL_HISTORY_MAX + 5; ++i)
        callHistoryAdd(tagCall());
    EXPECT_EQ(callHistoryFinish(), 0);
    EXPECT_EQ(callHistoryFinish(), 0);
    EXPECT_EQ(traces().last(),
              QString("the call history could not be saved, calls lost: %1").arg(CALL_HISTORY_MAX));
    EXPECT_EQ(callHistoryClear(), 0);
    EXPECT_TRUE(QDir(hostPath(kHistory)).removeRecursively());
    EXPECT_EQ(callHistoryFinish(), 1);
    EXPECT_FALSE(readFile(kHistory).contains("<Call ")) << "what waited has gone, too";
    callHistoryOnFault(nullptr);
    m_bCleared = true;
}

TEST_F(Calls, BurstOfCallsIsWholeAndInOrder)
{
    QStringList expected;
    for (int i = 0; i < 40; ++i) {
        phone_CallNumber(QByteArray::number(i).constData(), 0, -1);
        expected.prepend(QString::number(i));
    }
    EXPECT_EQ(historyOf("number", 40), expected);
}

// What a board's audio device would be told.
class SoundSpy : public soundOutput
{
public:
    explicit SoundSpy(QStringList& told) : m_told(told) {}
    bool playFile(const QString& file, bool loop) override
    {
        m_told.append("play " + file.section('/', -1) + (loop ? " loop" : ""));
        return soundOutput::playFile(file, loop);
    }
    void stopFile() override { m_told.append("stop"); }
    void playTone(int key) override { m_told.append("tone " + QString::number(key)); }
    void setLevel(int level) override { m_told.append("level " + QString::number(level)); }
    void setMute(bool mute) override { m_told.append(mute ? "mute" : "unmute"); }

private:
    QStringList& m_told;
};

class Speaker : public PhoneTest
{
protected:
    Speaker()
    {
        dev_set_output_volume(50);
        dev_set_output_mute(0);
        soundOutput::setInstance(std::make_unique<SoundSpy>(told));
        mark();
    }
    ~Speaker() override { soundOutput::setInstance(nullptr); }
    QStringList told;
};

TEST_F(Speaker, LevelIsClampedKeptAndLogged)
{
    dev_set_output_volume(70);
    EXPECT_EQ(dev_get_output_volume(), 70);
    dev_set_output_volume(110);
    EXPECT_EQ(dev_get_output_volume(), 100);
    dev_set_output_volume(-10);
    EXPECT_EQ(dev_get_output_volume(), 0);
    EXPECT_EQ(logged("volume"), (QStringList{"70", "100", "0"}));
    EXPECT_EQ(told, (QStringList{"level 70", "level 100", "level 0"}));
}

TEST_F(Speaker, MuteIsKeptAndLogged)
{
    dev_set_output_mute(5);
    EXPECT_EQ(dev_get_output_mute(), 1);
    dev_set_output_mute(0);
    EXPECT_EQ(dev_get_output_mute(), 0);
    EXPECT_EQ(logged("mute"), (QStringList{"1", "0"}));
    EXPECT_EQ(told, (QStringList{"mute", "unmute"}));
}

TEST_F(Speaker, NewestClaimSetsTheLevelAndTheOldOneComesBack)
{
    voiceInfo first(2, 20, 1);
    voiceInfo second(2, 130, 1);
    phone_SetVoiceInfo(&first);
    EXPECT_EQ(dev_get_output_volume(), 20);
    phone_SetVoiceInfo(&second);
    EXPECT_EQ(dev_get_output_volume(), 100);
    phone_RemoveVoiceInfo(&second);
    EXPECT_EQ(dev_get_output_volume(), 20);
    phone_RemoveVoiceInfo(&first);
    EXPECT_EQ(dev_get_output_volume(), 50);
}

TEST_F(Speaker, LevelSetDuringAClaimLastsUntilItsEnd)
{
    voiceInfo claim(2, 20, 1);
    voiceInfo older(2, 30, 1);
    phone_SetVoiceInfo(&older);
    phone_SetVoiceInfo(&claim);
    dev_set_output_volume(80);
    phone_RemoveVoiceInfo(&older);
    EXPECT_EQ(dev_get_output_volume(), 80);
    phone_RemoveVoiceInfo(&claim);
    EXPECT_EQ(dev_get_output_volume(), 50);
}

TEST_F(Speaker, ClaimMadeAgainIsTheNewestAndHeldOnce)
{
    voiceInfo first(2, 20, 1);
    voiceInfo second(2, 30, 1);
    phone_SetVoiceInfo(&first);
    phone_SetVoiceInfo(&second);
    first.nVolume = 25;
    phone_SetVoiceInfo(&first);
    EXPECT_EQ(dev_get_output_volume(), 25);
    phone_RemoveVoiceInfo(&first);
    EXPECT_EQ(dev_get_output_volume(), 30);
    phone_RemoveVoiceInfo(&second);
    EXPECT_EQ(dev_get_output_volume(), 50);
}

TEST_F(Speaker, EndOfAClaimThatIsNoneChangesNothing)
{
    voiceInfo stale(2, 20, 1);
    phone_RemoveVoiceInfo(&stale);
    phone_RemoveVoiceInfo(nullptr);
    phone_SetVoiceInfo(nullptr);
    EXPECT_EQ(dev_get_output_volume(), 50);
    EXPECT_TRUE(logged("volume").isEmpty());
}

TEST_F(Speaker, TonesAndRingsAreLoggedAndPlayed)
{
    writeFile("/rundata/data/my.wav", "RIFF");
    phone_PlayDTMF(0x41);
    EXPECT_EQ(phone_PlayRing("/rundata/data/my.wav", 1), 1);
    phone_StopRing(0);
    EXPECT_EQ(phone_PlayRing("/rundata/data/none.wav", 0), 0);
    EXPECT_EQ(phone_PlayRing(nullptr, 0), 0);
    EXPECT_EQ(logged("tone"), QStringList{"65"});
    EXPECT_EQ(logged("ring"),
              (QStringList{"/rundata/data/my.wav 1", "stop", "/rundata/data/none.wav 0", " 0"}));
    EXPECT_EQ(told, (QStringList{"tone 65", "play my.wav loop", "stop", "play none.wav", "play "}));
}

TEST_F(Speaker, WhileACallRingsNobodyElsePlaysOrStops)
{
    for (const char* tone : {"call", "mine"})
        writeFile(QString("/rundata/%1.wav").arg(tone).toUtf8(), "RIFF");
    speaker::instance().ringForCall({"/rundata/call.wav"});
    told.clear();
    EXPECT_EQ(phone_PlayRing("/rundata/mine.wav", 1), 0);
    phone_StopRing(0);
    EXPECT_EQ(told, QStringList());
    EXPECT_TRUE(speaker::instance().isCallRinging());
    speaker::instance().endCallRing();
    EXPECT_EQ(told, (QStringList{"stop", "unmute"}));
    told.clear();
    speaker::instance().endCallRing();
    EXPECT_EQ(told, QStringList()) << "the tone of a page goes on";
    EXPECT_EQ(phone_PlayRing("/rundata/mine.wav", 1), 1);
    phone_StopRing(0);
    EXPECT_EQ(told, (QStringList{"play mine.wav loop", "stop"}));
}

TEST_F(Speaker, ACallRingsThroughAMute)
{
    writeFile("/rundata/call.wav", "RIFF");
    dev_set_output_mute(1);
    told.clear();
    speaker::instance().ringForCall({"/rundata/call.wav"});
    EXPECT_EQ(told, (QStringList{"unmute", "play call.wav loop"}));
    dev_set_output_mute(0);
    dev_set_output_mute(1);
    EXPECT_EQ(told.size(), 2) << "what a film does meanwhile";
    told.clear();
    speaker::instance().endCallRing();
    EXPECT_EQ(told, (QStringList{"stop", "mute"}));
    EXPECT_EQ(dev_get_output_mute(), 1);
}

TEST_F(Speaker, OneToneStandsInForAnother)
{
    writeFile("/rundata/b.wav", "RIFF");
    writeFile("/rundata/c.wav", "RIFF");
    speaker::instance().ringForCall({"/rundata/a.wav", "/rundata/b.wav", "/rundata/c.wav"});
    EXPECT_EQ(told.last(), "play b.wav loop");
    speaker::instance().fileFailed();
    EXPECT_EQ(told.last(), "play c.wav loop");
    told.clear();
    speaker::instance().fileFailed();
    EXPECT_EQ(told, QStringList());
    speaker::instance().endCallRing();
    told.clear();
    speaker::instance().fileFailed();
    EXPECT_EQ(told, QStringList());
}

TEST_F(Speaker, TheVolumeOfACallIsNobodyElses)
{
    voiceInfo film(2, 70, 1);
    voiceInfo call(VOICE_CALL, 30, 0);
    voiceInfo later(2, 90, 1);
    phone_SetVoiceInfo(&film);
    phone_SetVoiceInfo(&call);
    EXPECT_EQ(dev_get_output_volume(), 30);
    phone_SetVoiceInfo(&later);
    EXPECT_EQ(dev_get_output_volume(), 30);
    // A film that ends puts its volume back.
    dev_set_output_volume(64);
    phone_RemoveVoiceInfo(&film);
    phone_RemoveVoiceInfo(&later);
    EXPECT_EQ(dev_get_output_volume(), 30);
    call.nVolume = 45;
    phone_SetVoiceInfo(&call);
    EXPECT_EQ(dev_get_output_volume(), 45);
    phone_RemoveVoiceInfo(&call);
    EXPECT_EQ(dev_get_output_volume(), 64);
}

TEST_F(Speaker, WithoutADeviceItIsSilent)
{
    soundOutput::setInstance(nullptr);
    writeFile("/rundata/data/my.wav", "RIFF");
    EXPECT_EQ(phone_PlayRing("/rundata/data/my.wav", 0), 1);
    phone_StopRing(0);
    phone_PlayDTMF('5');
    dev_set_output_volume(60);
    dev_set_output_mute(1);
    EXPECT_EQ(dev_get_output_volume(), 60);
    EXPECT_EQ(dev_get_output_mute(), 1);
}

} // namespace
