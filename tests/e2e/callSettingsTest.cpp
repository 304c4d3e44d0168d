// What a person sets for calls, and what becomes of the next call: by finger and by keys.
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include <QFile>
#include <QJsonArray>

namespace {

#define USER_FILE "/rundata/config/user/user.ini"

constexpr int kWaitMs = 20000;

class CallSettings : public LivePhone
{
protected:
    void SetUp() override
    {
        LivePhone::SetUp();
        ctl({"set", "line", "0", "state=5", "user=1001", "server=pbx.test"});
        ctl({"set", "line", "1", "state=2", "user=1002", "server=pbx.test"});
    }
    void openPage(const char* name, const char* window)
    {
        ctl({"open", name});
        waitPage(window);
        waitIdle();
    }
    // By Save, on the soft key or on the key pad.
    void saved(bool byKey)
    {
        if (byKey)
            key("F1");
        else
            softKey(0);
        waitIdle();
    }
    void arrowTo(const QString& name)
    {
        for (int steps = 0; steps < 24 && focusWidget()["name"] != name; ++steps)
            key("Down");
        ASSERT_EQ(focusWidget()["name"].toString(), name);
    }
    // With the arrows, until the box shows it. The other lines have boxes of that name too.
    void step(const QString& box, const QString& text)
    {
        arrowTo(box);
        const int count = int(focusWidget()["items"].toArray().size());
        for (int steps = 0; steps < count && focusWidget()["text"] != text; ++steps)
            key("Right");
        ASSERT_EQ(focusWidget()["text"].toString(), text);
    }
    void goToTab(int line) { tap(160 + 632 * (2 * line + 1) / 8, 70); }

    QJsonArray calls() { return ctl({"calls"}).toObject()["calls"].toArray(); }
    QJsonObject lastEnded() { return ctl({"calls"}).toObject()["ended"].toArray().at(0).toObject(); }
    bool ends(const QString& number, const QString& end)
    {
        return kit::waits([&] { return lastEnded()["number"] == number && lastEnded()["end"] == end; },
                          kWaitMs);
    }
    bool talks(int call)
    {
        return kit::waits([&] { return calls().at(call).toObject()["state"] == "talking"; }, kWaitMs);
    }
    void hangUpAll()
    {
        for (const QJsonValue& call : calls())
            ctl({"other-side", QString::number(call.toObject()["id"].toInt()), "hangup"});
        ASSERT_TRUE(calls().isEmpty());
    }
};

TEST_F(CallSettings, AForwardByFingerSendsAllCallsOnAndOneByKeysThoseThatNobodyAnswers)
{
    ctl({"menu", "callfeature.xml"});
    waitPage("dlgIconviewForm");
    openPage("Forward", "dlgForward_Setting");
    tap("chkAlways");
    tap("editAlways");
    pad("555");
    saved(false);
    ctl({"ring", "4711"});
    EXPECT_TRUE(ends("4711", "forwarded"));
    EXPECT_EQ(lastEnded()["target"].toString(), "555");

    openPage("Forward", "dlgForward_Setting");
    arrowTo("chkAlways");
    key("Return");
    arrowTo("chkNoAnswer");
    key("Return");
    arrowTo("editNoAnswer");
    pad("777");
    arrowTo("editBlank");
    for (int left = int(widget("editBlank")["text"].toString().size()); left > 0; --left)
        key("Backspace");
    pad("1");
    saved(true);
    ctl({"ring", "4712"});
    ASSERT_EQ(calls().size(), 1) << "it rings first";
    EXPECT_TRUE(ends("4712", "forwarded"));
    EXPECT_EQ(lastEnded()["target"].toString(), "777");
    EXPECT_EQ(config(USER_FILE, "AlwaysForward", "bEnable"), "0");
}

TEST_F(CallSettings, ASecondCallIsBusyOrWaitsAsThePageSays)
{
    openPage("Call Waiting", "dlgCall_Waiting");
    arrowTo("chkBoxenable");
    key("Return");
    saved(true);
    ctl({"ring", "1"});
    waitPage("frmCall");
    key("Return");
    ASSERT_TRUE(talks(0));
    ctl({"ring", "2"});
    EXPECT_TRUE(ends("2", "busy"));
    hangUpAll();

    openPage("Call Waiting", "dlgCall_Waiting");
    tap("chkBoxenable");
    saved(false);
    ctl({"ring", "3"});
    waitPage("frmCall");
    key("Return");
    ASSERT_TRUE(talks(0));
    ctl({"ring", "4", "1"});
    ASSERT_EQ(calls().size(), 2);
    EXPECT_EQ(calls().at(1).toObject()["state"].toString(), "ringing");
    hangUpAll();
}

TEST_F(CallSettings, ALineAnswersByItselfRejectsWhoHidesAndTellsTheExchange)
{
    openPage("Auto Answer", "dlgAuto_Answer");
    goToTab(1);
    tap("chkAutoAnswer");
    saved(false);
    ctl({"ring", "4711", "1"});
    EXPECT_TRUE(talks(0));
    hangUpAll();

    openPage("Anonymous Call", "dlgAnonymousCallDialog");
    step("cmbAnonymousCall", "On");
    arrowTo("editAnonymousCallOnCode");
    pad("*67");
    arrowTo("editAnonymousCallOffCode");
    pad("*68");
    step("cmbAnonymousCallRejection", "On");
    saved(true);
    ASSERT_TRUE(kit::waits([&] { return calls().size() == 1; }, kWaitMs)) << "the exchange is told";
    EXPECT_EQ(calls().at(0).toObject()["number"].toString(), "*67");
    EXPECT_FALSE(calls().at(0).toObject()["anonymous"].toBool());
    hangUpAll();
    ctl({"ring", "4711", "0", "anonymous"});
    EXPECT_TRUE(ends("4711", "rejected"));
    ctl({"ring", "4711", "0"});
    ASSERT_EQ(calls().size(), 1);
    hangUpAll();
}

TEST_F(CallSettings, ACallIsMadeWithTheVideoThatItsLineHas)
{
    openPage("Video Set", "dlgVideoSet");
    step("cmbLocalVideo", "Off");
    step("cmbBandwidth", "1Mbps");
    step("cmbFrameRate", "10fps");
    saved(true);
    const auto answered = [this] {
        ctl({"ring", "4711", "0", "video"});
        waitPage("frmCall");
        key("Return");
        EXPECT_TRUE(talks(0));
        return calls().at(0).toObject();
    };
    QJsonObject call = answered();
    EXPECT_TRUE(call["video"].toBool());
    EXPECT_FALSE(call["camera"].toBool());
    EXPECT_EQ(call["bandwidth"].toInt(), 1024);
    EXPECT_EQ(call["frameRate"].toInt(), 10);
    hangUpAll();
    openPage("Video Set", "dlgVideoSet");
    tap("cmbCallType");
    waitIdle();
    key("Up");
    key("Return");
    EXPECT_EQ(focusWidget()["text"].toString(), "Voice Call");
    saved(false);
    call = answered();
    EXPECT_FALSE(call["video"].toBool());
    hangUpAll();
}

TEST_F(CallSettings, TheDialScreenEndsANumberByTheKeyThatIsSetAndCallsTheHotline)
{
    openPage("Key As Send", "dlgKey_As_Send");
    step("cmbBoxKeyAsSend", "Key *");
    saved(false);
    tap("btnDial");
    waitPage("frmDial");
    waitIdle();
    pad("80*");
    waitPage("frmCall");
    EXPECT_EQ(calls().at(0).toObject()["number"].toString(), "80");
    hangUpAll();

    openPage("Hotline", "dlgHotline");
    pad("112");
    arrowTo("editDelayTime");
    key("Backspace");
    pad("1");
    saved(true);
    waitPage("frmDesktop");
    tap("btnDial");
    waitPage("frmDial");
    waitPage("frmCall");
    EXPECT_EQ(calls().at(0).toObject()["number"].toString(), "112");
    hangUpAll();
}

} // namespace
