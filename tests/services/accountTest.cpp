// The simulated phone's accounts, and who is told of them.
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "support/host/phone.h"
#include "tests/kit/phoneTest.h"
#include "tests/services/recorder.h"
#include <memory>

namespace {

QByteArray config(const char* enable, const char* user, const char* server, const char* name = "")
{
    return QByteArray("[account]\nEnable=") + enable + "\nUserName=" + user + "\nSIPServerHost=" + server +
           "\nDisplayName=" + name + "\n";
}

QByteArray fileOf(int index)
{
    return "/rundata/config/user/voip/sipAccount" + QByteArray::number(index) + ".cfg";
}

LINE_STATE stateOf(int index)
{
    tagAccountInfo info;
    EXPECT_NE(phone_GetAccountInfoById(index, &info), 0);
    return info.eState;
}

class Accounts : public PhoneTest
{
protected:
    Accounts()
    {
        for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index)
            write(index, config("0", "", ""));
    }
    ~Accounts() override { phoneService::instance().setBackend(nullptr); }

    void write(int index, const QByteArray& text) { writeFile(fileOf(index).constData(), text); }
    static void boot() { phoneService::instance().setBackend(std::make_unique<phoneSimulation>()); }
    static void tellChanged(unsigned int index)
    {
        msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_ACCOUNT, index);
        kit::settle();
    }
    // (index, state) of each message so far.
    static QList<QPair<int, int>> told(const Recorder& recorder)
    {
        QList<QPair<int, int>> all;
        for (const tagReceived& one : recorder.received) {
            if (one.message == PHONE_PUBLIC_MSG_ACCOUNT_REFRESH)
                all.append({int(one.wParam), int(one.lParam)});
        }
        return all;
    }
};

using Told = QList<QPair<int, int>>;

TEST_F(Accounts, EnabledOneRegistersAMomentLater)
{
    write(1, config("1", "100", "sip.example.com", "Anna"));
    boot();
    EXPECT_EQ(stateOf(1), LINE_REGISTERING);
    kit::stepTime(400);
    EXPECT_EQ(stateOf(1), LINE_REGISTERING);
    kit::stepTime(400);
    EXPECT_EQ(stateOf(1), LINE_DEFAULT_ACCOUNT);
    tagAccountInfo info;
    phone_GetAccountInfoById(1, &info);
    EXPECT_STREQ(info.szUser, "100");
    EXPECT_STREQ(info.szServer, "sip.example.com");
    EXPECT_STREQ(info.szDisplayName, "Anna");
    EXPECT_EQ(info.nNewMessages, 0);
    EXPECT_EQ(info.nOldMessages, 0);
}

TEST_F(Accounts, DisabledAndUnfinishedOnesDoNotRegister)
{
    write(0, config("0", "100", "sip.example.com"));
    write(1, config("1", "", "sip.example.com"));
    write(2, config("1", "100", ""));
    boot();
    kit::stepTime(1000);
    EXPECT_EQ(stateOf(0), LINE_DISABLED);
    EXPECT_EQ(stateOf(1), LINE_UNREGISTERED);
    EXPECT_EQ(stateOf(2), LINE_UNREGISTERED);
    EXPECT_EQ(stateOf(3), LINE_DISABLED);
    tagAccountInfo info;
    EXPECT_EQ(phone_GetDefaultAccount(&info), 0);
}

TEST_F(Accounts, FirstRegisteredOneIsTheDefault)
{
    write(2, config("1", "102", "sip.example.com"));
    boot();
    kit::stepTime(1000);
    EXPECT_EQ(stateOf(2), LINE_DEFAULT_ACCOUNT);
    Recorder recorder;
    phone_RegAccountNotify(&recorder, -1);
    write(1, config("1", "101", "sip.example.com"));
    tellChanged(1);
    kit::stepTime(1000);
    EXPECT_EQ(stateOf(1), LINE_DEFAULT_ACCOUNT);
    EXPECT_EQ(stateOf(2), LINE_REGISTERED);
    EXPECT_EQ(told(recorder), (Told{{1, LINE_REGISTERING}, {1, LINE_DEFAULT_ACCOUNT}, {2, LINE_REGISTERED}}));
    tagAccountInfo info;
    EXPECT_NE(phone_GetDefaultAccount(&info), 0);
    EXPECT_STREQ(info.szUser, "101");
}

TEST_F(Accounts, IndexThatIsNoneLeavesTheRecordAsItWas)
{
    boot();
    tagAccountInfo info;
    info.nNewMessages = 77;
    for (const int index : {-1, 4, 7, 48})
        EXPECT_EQ(phone_GetAccountInfoById(index, &info), 0) << index;
    EXPECT_EQ(info.nNewMessages, 77);
    EXPECT_EQ(phone_GetAccountInfoById(0, nullptr), 0);
    EXPECT_EQ(phone_GetDefaultAccount(&info), 0);
    EXPECT_EQ(info.nNewMessages, 77);
}

TEST_F(Accounts, ChangeOfAnotherSettingDoesNotRegisterAgain)
{
    write(0, config("1", "100", "sip.example.com"));
    boot();
    kit::stepTime(1000);
    Recorder recorder;
    phone_RegAccountNotify(&recorder, -1);
    write(0, config("1", "100", "sip.example.com") + "VoiceMail=8000\n");
    tellChanged(0);
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_DIAL_PLAN, 0);
    kit::settle();
    EXPECT_EQ(stateOf(0), LINE_DEFAULT_ACCOUNT);
    EXPECT_TRUE(told(recorder).isEmpty());
}

TEST_F(Accounts, DisablingDuringRegistrationIsFinal)
{
    write(0, config("1", "100", "sip.example.com"));
    boot();
    kit::stepTime(500);
    write(0, config("0", "100", "sip.example.com"));
    tellChanged(0);
    kit::stepTime(1000);
    EXPECT_EQ(stateOf(0), LINE_DISABLED);
}

TEST_F(Accounts, SecondChangeDuringRegistrationStartsItAnew)
{
    write(0, config("1", "100", "sip.example.com"));
    boot();
    kit::stepTime(500);
    write(0, config("1", "200", "sip.example.com"));
    tellChanged(0);
    kit::stepTime(500);
    EXPECT_EQ(stateOf(0), LINE_REGISTERING);
    kit::stepTime(350);
    EXPECT_EQ(stateOf(0), LINE_DEFAULT_ACCOUNT);
}

TEST_F(Accounts, OnlyRegisteredProcessersAreTold)
{
    boot();
    Recorder all;
    Recorder one;
    Recorder none;
    phone_RegAccountNotify(&all, -1);
    phone_RegAccountNotify(&one, 2);
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index) {
        tagLineSetting setting;
        setting.state = LINE_REGISTER_FAILED;
        EXPECT_TRUE(phoneSimulation::instance()->setLine(index, setting));
    }
    EXPECT_TRUE(told(all).isEmpty());
    kit::settle();
    EXPECT_EQ(told(all), (Told{{0, 3}, {1, 3}, {2, 3}, {3, 3}}));
    EXPECT_EQ(told(one), (Told{{2, 3}}));
    EXPECT_TRUE(told(none).isEmpty());
}

TEST_F(Accounts, ProcesserThatAskedTwiceIsToldOnce)
{
    boot();
    Recorder recorder;
    phone_RegAccountNotify(&recorder, -1);
    phone_RegAccountNotify(&recorder, -1);
    phone_RegAccountNotify(&recorder, 1);
    tagLineSetting setting;
    setting.newMessages = 3;
    phoneSimulation::instance()->setLine(1, setting);
    kit::settle();
    EXPECT_EQ(told(recorder), (Told{{1, LINE_DISABLED}}));
    phone_UnRegAccountNotify(&recorder, -1);
    setting.newMessages = 4;
    phoneSimulation::instance()->setLine(1, setting);
    kit::settle();
    EXPECT_EQ(told(recorder).size(), 1);
}

TEST_F(Accounts, ProcesserThatLeftIsNotToldWhatHappenedBefore)
{
    boot();
    Recorder left;
    auto gone = std::make_unique<Recorder>();
    phone_RegAccountNotify(&left, -1);
    phone_RegAccountNotify(gone.get(), -1);
    tagLineSetting setting;
    setting.state = LINE_REGISTERED;
    phoneSimulation::instance()->setLine(0, setting);
    phone_UnRegAccountNotify(&left, -1);
    gone.reset();
    kit::settle();
    EXPECT_TRUE(told(left).isEmpty());
}

TEST_F(Accounts, WhoComesBackIsToldOfWhatHasChangedMeanwhile)
{
    boot();
    Recorder away;
    phone_RegAccountNotify(&away, -1);
    tagLineSetting setting;
    setting.state = LINE_REGISTERED;
    phoneSimulation::instance()->setLine(0, setting); // on its way when it goes
    phone_UnRegAccountNotify(&away, -1);
    kit::settle();
    phoneSimulation::instance()->setLine(2, setting);
    setting.state = LINE_REGISTER_FAILED;
    phoneSimulation::instance()->setLine(2, setting);
    kit::settle();
    EXPECT_TRUE(told(away).isEmpty());
    phone_RegAccountNotify(&away, -1);
    kit::settle();
    EXPECT_EQ(told(away), (Told{{0, LINE_REGISTERED}, {2, LINE_REGISTER_FAILED}}));
    phone_UnRegAccountNotify(&away, -1);
    phone_RegAccountNotify(&away, -1);
    Recorder another;
    phone_RegAccountNotify(&another, -1);
    kit::settle();
    EXPECT_EQ(told(away).size(), 2); // what it has heard is no news
    EXPECT_TRUE(told(another).isEmpty());
}

TEST_F(Accounts, NothingIsToldWhenNothingChanges)
{
    boot();
    Recorder recorder;
    phone_RegAccountNotify(&recorder, -1);
    tagLineSetting setting;
    setting.state = LINE_DISABLED;
    setting.newMessages = 0;
    phoneSimulation::instance()->setLine(0, setting);
    kit::settle();
    EXPECT_TRUE(told(recorder).isEmpty());
}

TEST_F(Accounts, WhatIsSetByHandStaysAsItWasSet)
{
    write(0, config("1", "100", "sip.example.com"));
    boot();
    tagLineSetting setting;
    setting.state = LINE_REGISTER_FAILED;
    setting.user = "900";
    setting.newMessages = 3;
    setting.oldMessages = 2;
    EXPECT_TRUE(phoneSimulation::instance()->setLine(0, setting));
    kit::stepTime(1000);
    write(0, config("1", "200", "sip.example.org", "Otto"));
    tellChanged(0);
    kit::stepTime(1000);
    tagAccountInfo info;
    phone_GetAccountInfoById(0, &info);
    EXPECT_EQ(info.eState, LINE_REGISTER_FAILED);
    EXPECT_STREQ(info.szUser, "900");
    EXPECT_STREQ(info.szServer, "sip.example.org");
    EXPECT_STREQ(info.szDisplayName, "Otto");
    EXPECT_EQ(info.nNewMessages, 3);
    EXPECT_EQ(info.nOldMessages, 2);
}

TEST_F(Accounts, DefaultAccountMadeByHandIsTheOnlyOne)
{
    write(0, config("1", "100", "sip.example.com"));
    boot();
    kit::stepTime(1000);
    tagLineSetting setting;
    setting.state = LINE_DEFAULT_ACCOUNT;
    setting.user = "300";
    phoneSimulation::instance()->setLine(3, setting);
    EXPECT_EQ(stateOf(0), LINE_REGISTERED);
    EXPECT_EQ(stateOf(3), LINE_DEFAULT_ACCOUNT);
    tagAccountInfo info;
    EXPECT_NE(phone_GetDefaultAccount(&info), 0);
    EXPECT_STREQ(info.szUser, "300");
}

TEST_F(Accounts, SettingsThatAreNoneAreRefused)
{
    boot();
    tagLineSetting setting;
    EXPECT_FALSE(phoneSimulation::instance()->setLine(-1, setting));
    EXPECT_FALSE(phoneSimulation::instance()->setLine(4, setting));
    setting.state = -1;
    EXPECT_FALSE(phoneSimulation::instance()->setLine(0, setting));
    // One that is newer than the pages is theirs to name.
    for (const int state : {8, 9}) {
        setting.state = state;
        EXPECT_TRUE(phoneSimulation::instance()->setLine(0, setting));
    }
}

TEST_F(Accounts, LongTextIsClippedBetweenCharacters)
{
    boot();
    tagLineSetting setting;
    setting.user = QString(100, QChar(0xFC)); // two bytes each
    phoneSimulation::instance()->setLine(0, setting);
    tagAccountInfo info;
    phone_GetAccountInfoById(0, &info);
    EXPECT_EQ(strlen(info.szUser), 126u);
    EXPECT_EQ(QString::fromUtf8(info.szUser), QString(63, QChar(0xFC)));
}

TEST_F(Accounts, PhoneWithoutABackendSimulatesOne)
{
    write(0, config("1", "100", "sip.example.com"));
    phoneService::instance().setBackend(nullptr);
    EXPECT_EQ(stateOf(0), LINE_REGISTERING);
    EXPECT_NE(phoneSimulation::instance(), nullptr);
}

} // namespace
