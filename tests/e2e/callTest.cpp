// Calls on the running phone, by finger and by keys: the dial screen with its hotline and sending key, hold,
// transfer, a second call, missed calls.
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include <QJsonArray>
#include <utility>

namespace {

#define USER_FILE "/rundata/config/user/user.ini"
constexpr int kWaitMs = 20000;

class Calls : public LivePhone
{
protected:
    void SetUp() override
    {
        LivePhone::SetUp();
        ctl({"set", "line", "0", "state=2", "user=1001", "server=pbx"});
        ctl({"set", "line", "1", "state=2", "user=1002", "server=pbx"});
    }
    QJsonObject call(int index = 0)
    {
        return ctl({"calls"}).toObject()["calls"].toArray().at(index).toObject();
    }
    int count() { return int(ctl({"calls"}).toObject()["calls"].toArray().size()); }
    QJsonObject ended() { return ctl({"calls"}).toObject()["ended"].toArray().first().toObject(); }
    bool talks(int index = 0)
    {
        const bool talks = kit::waits([&] { return call(index)["state"] == "talking"; }, kWaitMs);
        letPressesCount();
        return talks;
    }
    void ring(const QString& number, const QString& name)
    {
        ctl({"ring", number, "0", name});
        waitPage("frmCall");
        waitIdle();
        letPressesCount();
    }
    // Bob talks, and Anna is held; their ids.
    QStringList talkToTwo()
    {
        set("CallWaiting", "bEnable", "1");
        tellChanged("13");
        for (const auto& [number, name] : {std::pair{"4711", "Anna"}, std::pair{"4712", "Bob"}}) {
            ring(number, name);
            key("Return");
            EXPECT_TRUE(talks(count() - 1));
        }
        return {QString::number(call(0)["id"].toInt()), QString::number(call(1)["id"].toInt())};
    }
    QString text(const char* name) { return widget(name)["text"].toString(); }
    // A page of the settings by its name, a value by finger or keys there, saved.
    void set(const char* section, const char* key, const char* value)
    {
        ctl({"config", USER_FILE, section, key, value});
    }
    void tellChanged(const char* what) { ctl({"post", "app_hxPhone", "65543", what, "0"}); }
};

} // namespace

TEST_F(Calls, AreDialledByFingerOnAChosenLine)
{
    tap("btnDial");
    waitPage("frmDial");
    waitIdle();
    for (const char* key : {"key8", "key0", "key1"})
        tap(key);
    const QJsonObject lines = widget("wgtLines");
    tap(lines["x"].toInt() + lines["w"].toInt() / 2, lines["y"].toInt() + 40); // the third of five: line 2
    shot("dial-screen");
    tap("btnCall");
    waitPage("frmCall");
    EXPECT_EQ(call()["number"].toString(), "801");
    EXPECT_EQ(call()["line"].toInt(), 1);
    softKey(3);
    waitPage("frmDesktop");
    // It is the first of the last numbers then, and is called again by two touches.
    tap("btnDial");
    waitPage("frmDial");
    waitIdle();
    const QJsonObject list = widget("lstEntries");
    ASSERT_TRUE(
        kit::waits([&] { return widget("lstEntries")["text"].toString().startsWith("801"); }, kWaitMs));
    for (int touch = 0; touch < 2; ++touch)
        tap(list["x"].toInt() + 60, list["y"].toInt() + 30);
    waitPage("frmCall");
    EXPECT_EQ(call()["number"].toString(), "801");
}

TEST_F(Calls, AreSentByTheKeyThatIsSetAndMadeByTheHotline)
{
    set("KeyAsSend", "eType", "2");
    tellChanged("22");
    pad("47*");
    waitPage("frmCall");
    EXPECT_EQ(call()["number"].toString(), "47");
    key("F4");
    waitPage("frmDesktop");
    set("Hotline", "strNumber", "8001");
    set("Hotline", "nTimeDelay", "1");
    tap("btnDial");
    waitPage("frmCall"); // by itself
    EXPECT_EQ(call()["number"].toString(), "8001");
}

TEST_F(Calls, AreHeldMutedAndPutThroughByFinger)
{
    ring("4711", "Anna");
    tap("btnAnswer");
    ASSERT_TRUE(talks());
    tap("actHold");
    EXPECT_TRUE(call()["held"].toBool());
    shot("call-live-held");
    tap("actHold");
    EXPECT_FALSE(call()["held"].toBool());
    tap("actMute");
    EXPECT_TRUE(call()["muted"].toBool());
    tap("actKeys");
    tap("key5");
    EXPECT_EQ(call()["tones"].toString(), "5");
    tap("actTransfer");
    waitPage("frmDial");
    tap("key9");
    tap("btnCall");
    EXPECT_TRUE(kit::waits([&] { return count() == 0; }, kWaitMs));
    EXPECT_EQ(ended()["end"].toString(), "transferred");
    EXPECT_EQ(ended()["target"].toString(), "9");
}

TEST_F(Calls, ASecondOneWaitsIsAnsweredAndSwappedByKeys)
{
    set("CallWaiting", "bEnable", "1");
    tellChanged("13");
    ring("4711", "Anna");
    key("Return");
    ASSERT_TRUE(talks());
    ring("4712", "Bob");
    EXPECT_EQ(widget("labName")["text"].toString(), "Bob");
    shot("call-live-second");
    key("F1");
    ASSERT_TRUE(talks(1));
    EXPECT_TRUE(call(0)["held"].toBool());
    key("Left"); // the last of what can be done: the swap
    key("Return");
    EXPECT_FALSE(call(0)["held"].toBool());
    EXPECT_TRUE(call(1)["held"].toBool());
    letPressesCount();
    key("F4");
    letPressesCount();
    key("F2");
    EXPECT_FALSE(call(0)["held"].toBool());
    EXPECT_EQ(call(0)["number"].toString(), "4712");
}

TEST_F(Calls, AreSentOnByKeysWhileTheyRing)
{
    ring("4711", "Anna");
    key("F2");
    waitPage("frmDial");
    pad("77");
    key("Return");
    EXPECT_TRUE(kit::waits([&] { return count() == 0; }, kWaitMs));
    EXPECT_EQ(ended()["end"].toString(), "forwarded");
    EXPECT_EQ(ended()["target"].toString(), "77");
}

TEST_F(Calls, ThreeTalkTogetherByFingerAndByCommandAndPartAgain)
{
    const QStringList ids = talkToTwo();
    tap("actJoin");
    EXPECT_EQ(text("labName"), QString("Anna \u00b7 Bob"));
    EXPECT_EQ(text("labState"), "Conference");
    EXPECT_EQ(call(0)["joined"].toInt(), call(1)["id"].toInt());
    EXPECT_FALSE(call(0)["held"].toBool() || call(1)["held"].toBool());
    shot("call-live-conference");
    softKey(1);
    EXPECT_TRUE(call(0)["held"].toBool() && call(1)["held"].toBool());
    softKey(1);
    ctl({"split", ids[1]});
    EXPECT_TRUE(call(0)["held"].toBool());
    EXPECT_EQ(text("labName"), "Bob");
    ctl({"join", ids[0], ids[1]});
    EXPECT_EQ(text("labState"), "Conference");
    ctl({"other-side", ids[1], "hangup"});
    EXPECT_EQ(text("labName"), "Anna");
    EXPECT_FALSE(call(0)["held"].toBool());
    letPressesCount();
    key("F4");
    waitPage("frmDesktop");
    tap("tileCallHistroy");
    waitPage("dlgCallHistroy");
    EXPECT_TRUE(kit::waits([&] { return widget("tabList")["rows"].toArray().size() >= 2; }, kWaitMs))
        << "both are there";
}

TEST_F(Calls, AreConnectedWithEachOtherByFingerAndByCommandUnlessTheOtherSideRefuses)
{
    QStringList ids = talkToTwo();
    ctl({"other-side", ids[1], "refuse"});
    for (const bool refused : {true, false}) {
        softKey(2);
        waitPage("frmDial");
        waitIdle();
        shot(refused ? "call-live-offers" : "call-live-offers-again");
        const QJsonObject list = widget("lstEntries");
        for (int touch = 0; touch < 2; ++touch)
            tap(list["x"].toInt() + 60, list["y"].toInt() + 30);
        if (!refused)
            break;
        waitPage("frmCall");
        EXPECT_TRUE(text("labOthers").contains("The other side refuses the transfer"));
        EXPECT_EQ(count(), 2);
        ctl({"other-side", ids[1], "accept"});
    }
    EXPECT_TRUE(kit::waits([&] { return count() == 0; }, kWaitMs));
    EXPECT_EQ(ended()["end"].toString(), "transferred");
    EXPECT_EQ(ended()["target"].toString(), "4712");
    waitPage("frmDesktop");
    ids = talkToTwo();
    ctl({"connect", ids[1], ids[0]});
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(ended()["target"].toString(), "4712");
    ctl({"connect", ids[1], ids[0]}, 1);
}

TEST_F(Calls, ShowWhatGoesOverTheWireAndAPictureByATouchAsLargeAsTheScreen)
{
    ring("4711", "Anna");
    key("Return");
    ASSERT_TRUE(talks());
    const QString id = QString::number(call()["id"].toInt());
    ctl({"streams", id, "sound=Opus", "quality=3", "encrypted=1"});
    EXPECT_EQ(text("wgtMarks"), "Opus, encrypted, 3 of 4");
    EXPECT_EQ(call()["sound"].toString(), "Opus");
    EXPECT_EQ(call()["quality"].toInt(), 3);
    EXPECT_TRUE(call()["encrypted"].toBool());
    shot("call-live-marks");
    ctl({"streams", id, "picture=H.264"});
    EXPECT_EQ(call()["sound"].toString(), "Opus") << "what is not said stays";
    EXPECT_TRUE(text("labNumber").endsWith("H.264, Opus"));
    shot("call-live-picture");
    tap(300, 220);
    EXPECT_EQ(widget("wgtPicture")["h"].toInt(), 480);
    shot("call-live-picture-full");
    key("Escape");
    EXPECT_EQ(widget("wgtPicture")["h"].toInt(), 440);
    EXPECT_EQ(count(), 1);
    ctl({"streams", id, "quality=5"}, 2);
    ctl({"streams", id, "loudness=5"}, 2);
}

TEST_F(Calls, ThatWereMissedAreCountedUntilTheListIsOpened)
{
    for (const char* number : {"4711", "4712"}) {
        ring(number, "");
        ctl({"other-side", QString::number(call()["id"].toInt()), "hangup"});
        waitPage("frmDesktop");
    }
    EXPECT_TRUE(kit::waits([&] { return config(USER_FILE, "CallHistory", "nMissed") == "2"; }, kWaitMs));
    shot("home-missed-live");
    tap("tileCallHistroy");
    waitPage("dlgCallHistroy");
    shot("history-missed-live");
    EXPECT_TRUE(kit::waits([&] { return config(USER_FILE, "CallHistory", "nMissed") == "0"; }, kWaitMs));
    EXPECT_TRUE(widget("tabList")["rows"].toArray().size() >= 2);
}
