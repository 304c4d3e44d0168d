// What is heard of calls: ring tone and volumes as they are set, and changed at once.
#include "host/desktop/callSound.h"
#include "host/desktop/frmCall.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "host/services/players/soundOutput.h"
#include "host/services/players/speaker.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "tests/desktop/desktopTest.h"
#include <QFile>

namespace {

const char* const kUserFile = "/rundata/config/user/user.ini";
constexpr int kAnswered = 2000; // ms after which the other side has answered

class CallSound : public DesktopTest
{
protected:
    CallSound()
    {
        writeFile("/rundata/media/ring/mine.wav", "RIFF");
        writeFile(kUserFile, "[Ring]\nstrRingFile=/rundata/media/ring/mine.wav\n[Volume]\nnRing=70\n"
                             "nTalkOutput=35\n");
        soundOutput::setInstance(std::make_unique<Recorder>(m_heard, m_nLevel));
        dev_set_output_volume(50);
        callScreenInstall();
    }
    ~CallSound() override
    {
        hangUpAll();
        kit::stepTime(2000);
        soundOutput::setInstance(nullptr);
    }
    static void ring(const char* number = "4711")
    {
        ASSERT_TRUE(phoneSimulation::instance()->ring(number, 0, ""));
        kit::settle();
    }
    static void dial()
    {
        ASSERT_EQ(phone_CallNumber("4711", 0, 0), 1);
        kit::settle();
    }
    static void answer()
    {
        ASSERT_TRUE(phoneService::instance().answer(phoneService::instance().calls().last().nId));
        kit::settle();
    }
    static QWidget* screen() { return kit::windows().value(0); }
    static void tellSoundChanged()
    {
        msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_SOUND, 0);
        kit::settle();
    }
    static void set(const char* section, const char* key, const char* value)
    {
        ASSERT_EQ(nuxSetRegistryString(kUserFile, section, key, value), 1);
    }
    static int stored(const char* key) { return nuxGetRegistryInt(kUserFile, "Volume", key, -1); }
    QStringList heard()
    {
        QStringList told;
        told.swap(m_heard);
        return told;
    }

    int m_nLevel = -1;

private:
    class Recorder : public soundOutput
    {
    public:
        Recorder(QStringList& heard, int& level) : m_heard(heard), m_nLevel(level) {}
        bool playFile(const QString& file, bool loop) override
        {
            if (!soundOutput::playFile(file, loop))
                return false;
            m_heard.append(file.section('/', -1) + ' ' + QString::number(m_nLevel) + (loop ? "" : " once"));
            return true;
        }
        void stopFile() override { m_heard.append("stop"); }
        void playTone(int key) override { m_heard.append(QString("tone %1").arg(QChar(key))); }
        void setLevel(int level) override { m_nLevel = level; }

    private:
        QStringList& m_heard;
        int& m_nLevel;
    };
    QStringList m_heard;
};

TEST_F(CallSound, ACallRingsWithTheToneAndTheVolumeThatAreSet)
{
    ring();
    EXPECT_EQ(heard(), QStringList{"mine.wav 70"});
    EXPECT_EQ(dev_get_output_volume(), 70);
    kit::stepTime(5000);
    EXPECT_EQ(heard(), QStringList());
    hangUpAll();
    EXPECT_EQ(heard(), QStringList{"stop"});
    EXPECT_EQ(dev_get_output_volume(), 50) << "as before the call";
}

TEST_F(CallSound, WithNothingSetItIsTheFirstToneAtTwenty)
{
    writeFile(kUserFile, "");
    ring();
    EXPECT_EQ(heard(), QStringList{"Breeze.wav 20"});
    answer();
    EXPECT_EQ(dev_get_output_volume(), 50);
}

TEST_F(CallSound, AToneThatIsGoneGivesWayToTheFirst)
{
    QFile::remove(hostPath("/rundata/media/ring/mine.wav"));
    ring();
    EXPECT_EQ(heard(), QStringList{"Breeze.wav 70"});
}

TEST_F(CallSound, AToneThatCannotBePlayedGivesWayToTheFactorys)
{
    ring();
    heard();
    speaker::instance().fileFailed();
    EXPECT_EQ(heard(), QStringList{"Classic.wav 70"});
}

TEST_F(CallSound, AnAnsweredCallTalksAtItsVolume)
{
    ring();
    heard();
    answer();
    EXPECT_EQ(heard(), QStringList{"stop"});
    EXPECT_EQ(dev_get_output_volume(), 35);
    hangUpAll();
    EXPECT_EQ(dev_get_output_volume(), 50);
}

TEST_F(CallSound, ADialledCallTalksAtThatVolumeAndRingsNobodyHere)
{
    dial();
    EXPECT_EQ(dev_get_output_volume(), 35);
    kit::stepTime(kAnswered);
    EXPECT_EQ(dev_get_output_volume(), 35);
    EXPECT_EQ(heard(), QStringList());
}

TEST_F(CallSound, ACallerWhoGivesUpIsNotHeardAnyMore)
{
    ring();
    heard();
    kit::stepTime(61000);
    EXPECT_EQ(heard(), QStringList{"stop"});
}

TEST_F(CallSound, WhoTalksHearsThatAnotherCallWaits)
{
    dial();
    kit::stepTime(kAnswered);
    ring("4712");
    EXPECT_EQ(heard(), QStringList{"tone D"});
    EXPECT_EQ(dev_get_output_volume(), 35);
    // The first one ends, the other rings on.
    phoneService::instance().hangUp(phoneService::instance().calls().first().nId);
    EXPECT_EQ(heard(), QStringList{"mine.wav 70"});
}

TEST_F(CallSound, TwoThatRingRingOnce)
{
    ring("1");
    ring("2");
    EXPECT_EQ(heard(), QStringList{"mine.wav 70"});
    phoneService::instance().hangUp(phoneService::instance().calls().first().nId);
    EXPECT_EQ(heard(), QStringList());
    hangUpAll();
    EXPECT_EQ(heard(), QStringList{"stop"});
}

TEST_F(CallSound, NewSettingsAreHeardAtOnceWhileItRings)
{
    ring();
    heard();
    set("Volume", "nRing", "90");
    set("Ring", "strRingFile", "/phone/resource/sysdata/ring/Marimba.wav");
    tellSoundChanged();
    EXPECT_EQ(dev_get_output_volume(), 90);
    const QStringList told = heard();
    ASSERT_FALSE(told.isEmpty());
    EXPECT_EQ(told.last(), "Marimba.wav 90");
}

TEST_F(CallSound, NewSettingsAreHeardAtOnceWhileACallTalks)
{
    dial();
    set("Volume", "nTalkOutput", "80");
    tellSoundChanged();
    EXPECT_EQ(dev_get_output_volume(), 80);
    EXPECT_EQ(heard(), QStringList());
}

TEST_F(CallSound, NewSettingsAreTheQuietPhonesVolume)
{
    set("Volume", "nTalkOutput", "80");
    tellSoundChanged();
    EXPECT_EQ(dev_get_output_volume(), 80);
}

TEST_F(CallSound, APageThatPlaysATonesIsSilencedByTheCallAndCannotStopIt)
{
    phone_PlayRing("/phone/resource/sysdata/ring/Chime.wav", 1);
    heard();
    ring();
    EXPECT_EQ(heard(), QStringList{"mine.wav 70"});
    phone_StopRing(0); // as a page does that is covered
    EXPECT_EQ(heard(), QStringList());
}

TEST_F(CallSound, TheVolumeKeysSetTheRingAndItStaysSo)
{
    ring();
    kit::key(Qt::Key_Up);
    EXPECT_EQ(dev_get_output_volume(), 80);
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(dev_get_output_volume(), 60);
    EXPECT_EQ(heard(), QStringList{"mine.wav 70"}) << "it goes on";
    hangUpAll();
    EXPECT_TRUE(kit::waitUntil([&] { return stored("nRing") == 60; }));
    EXPECT_EQ(stored("nTalkOutput"), 35);
    kit::stepTime(2000);
    heard();
    ring();
    EXPECT_EQ(heard(), QStringList{"mine.wav 60"});
}

TEST_F(CallSound, TheVolumeOfATalkStaysForTheNext)
{
    ring();
    answer();
    kit::key(Qt::Key_Up);
    EXPECT_EQ(dev_get_output_volume(), 45);
    hangUpAll();
    EXPECT_TRUE(kit::waitUntil([&] { return stored("nTalkOutput") == 45; }));
    EXPECT_EQ(stored("nRing"), 70);
}

// What was saved last is not told yet when the call ends.
TEST_F(CallSound, SettingsThatAreSavedDuringACallOutliveItsVolumeKeys)
{
    dial();
    tapSoftKey(screen(), 2);
    ASSERT_EQ(dev_get_output_volume(), 45);
    set("Volume", "nTalkOutput", "80");
    tellSoundChanged();
    set("Volume", "nTalkOutput", "60");
    hangUpAll();
    kit::stepTime(2000);
    // Stored after whatever the call before had to store.
    ring();
    kit::key(Qt::Key_Up);
    hangUpAll();
    EXPECT_TRUE(kit::waitUntil([&] { return stored("nRing") == 80; }, 20000));
    EXPECT_EQ(stored("nTalkOutput"), 60);
}

TEST_F(CallSound, WhatIsStoredIsNoLouderThanTheLoudest)
{
    set("Volume", "nRing", "95");
    ring();
    kit::key(Qt::Key_Up);
    EXPECT_EQ(dev_get_output_volume(), 100);
    hangUpAll();
    EXPECT_TRUE(kit::waitUntil([&] { return stored("nRing") != 95; }, 20000));
    EXPECT_EQ(stored("nRing"), 100);
}

TEST_F(CallSound, ACallInWhichNothingIsChangedStoresNothing)
{
    const QByteArray before = readFile(kUserFile);
    ring();
    answer();
    hangUpAll();
    kit::stepTime(2000);
    EXPECT_EQ(readFile(kUserFile), before);
}

TEST_F(CallSound, MuteSilencesTheRingUntilTheNextCall)
{
    ring();
    heard();
    tapSoftKey(screen(), 2);
    EXPECT_EQ(heard(), QStringList{"stop"});
    EXPECT_EQ(softKeys(screen()), "Answer|Forward||Decline");
    EXPECT_EQ(labelText(screen(), "labMute"), "Muted");
    EXPECT_EQ(dev_get_output_mute(), 0) << "the talk is to be heard";
    tellSoundChanged();
    EXPECT_EQ(heard(), QStringList());
    ring("4712");
    EXPECT_EQ(heard(), QStringList{"mine.wav 70"});
    answer();
    EXPECT_EQ(labelText(screen(), "labMute"), "");
}

} // namespace
