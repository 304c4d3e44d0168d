// The programmable keys of a running phone: what the pages say, the keys do.
#include "tests/e2e/livePhone.h"
#include <QJsonArray>

namespace {

class Keys : public LivePhone
{
protected:
    void SetUp() override
    {
        LivePhone::SetUp();
        ctl({"set", "line", "0", "state=5", "user=1001", "server=pbx"});
        ctl({"set", "line", "1", "state=2", "user=1002", "server=pbx"});
        waitIdle();
    }
    QJsonObject keyFacts(int number) { return ctl({"dsskey", QString::number(number), "show"}).toObject(); }
    // The call that is there: "number@line state".
    QString call()
    {
        const QJsonObject call = ctl({"calls"}).toObject()["calls"].toArray().first().toObject();
        return call.isEmpty() ? QString()
                              : call["number"].toString() + '@' + QString::number(call["line"].toInt()) +
                                    ' ' + call["state"].toString();
    }
    void endCall(const char* below = "frmDesktop")
    {
        ctl({"key", "F4"});
        waitIdle();
        const int id = ctl({"calls"}).toObject()["calls"].toArray().first().toObject()["id"].toInt();
        if (id)
            ctl({"other-side", QString::number(id), "hangup"});
        waitPage(below);
    }
    void hold(const QString& name)
    {
        const QPoint at = middleOf(name);
        ctl({"touch", QString::number(at.x()), QString::number(at.y()), "down"});
        ctl({"wait", "page", "dlgDssKeySetting", "20000"});
        ctl({"touch", QString::number(at.x()), QString::number(at.y()), "up"});
        waitIdle();
    }
    void step(const QString& box, const QString& text)
    {
        const int count = int(widget(box)["items"].toArray().size());
        for (int steps = 0; steps < count && widget(box)["text"] != text; ++steps)
            key("Right");
        ASSERT_EQ(widget(box)["text"].toString(), text);
    }
};

} // namespace

TEST_F(Keys, AKeyThatIsSetByFingerWatchesCallsAndPicksUp)
{
    EXPECT_EQ(keyFacts(3)["label"], "Anna"); // the factory's
    hold("dssKey5");
    EXPECT_EQ(widget("labKeyName")["text"], "DSS Key 05");
    step("cmbType", "BLF");
    tap("editLabel");
    ctl({"type", "Eve"});
    tap("editValue");
    ctl({"key", "Backspace"});
    ctl({"key", "Backspace"});
    ctl({"key", "Backspace"});
    ctl({"key", "Backspace"});
    ctl({"type", "8005"});
    softKey(0);
    waitPage("frmDesktop");
    waitIdle();
    EXPECT_EQ(keyFacts(5)["type"], "BLF");
    EXPECT_EQ(keyFacts(5)["lamp"], "idle");
    EXPECT_TRUE(ctl({"lamp", "8005"}).toObject()["watched"].toBool());
    ctl({"lamp", "8005", "ringing"});
    EXPECT_EQ(keyFacts(5)["lamp"], "ringing");
    waitIdle();
    shot("home-keys-ringing");
    tap("dssKey5");
    waitPage("frmCall");
    EXPECT_EQ(call(), "8005@0 talking");
    endCall();
    tap("dssKey5");
    waitPage("frmCall");
    EXPECT_EQ(call(), "8005@0 ringing");
}

TEST_F(Keys, ASpeedDialThatIsSetByKeysCallsOnItsLine)
{
    ctl({"menu", "callfeature.xml"});
    waitPage("dlgIconviewForm");
    ctl({"open", "DSS Key"});
    waitPage("dlgDssKeyList");
    waitIdle();
    key("Down", 6);
    key("Return");
    waitPage("dlgDssKeySetting");
    waitIdle();
    step("cmbType", "Speed Dial");
    key("Down");
    step("cmbLine", "Line 2");
    key("Down", 2);
    pad("4711");
    key("F1");
    waitPage("dlgDssKeyList");
    waitIdle();
    EXPECT_EQ(keyFacts(7)["number"], "4711");
    ctl({"dsskey", "7"});
    waitPage("frmCall");
    EXPECT_EQ(call(), "4711@1 ringing");
}

TEST_F(Keys, TheListOfSpeedDialsHasItsWordTooAndALineKeySeizesItsLine)
{
    ctl({"menu", "callfeature.xml"});
    waitPage("dlgIconviewForm");
    softKey(0); // the second page of icons
    waitIdle();
    tap(233, 300);
    waitPage("dlgSpeedDial");
    waitIdle();
    key("Down", 7);
    key("Return");
    step("cmbBoxType", "Speed Dial");
    key("Down");
    step("cmbBoxAccount", "Line 1");
    key("Down");
    pad("5511");
    key("Down");
    key("Return");
    key("F4");
    waitPage("dlgIconviewForm");
    ctl({"dsskey", "8"});
    waitPage("frmCall");
    EXPECT_EQ(call(), "5511@0 ringing");
    endCall("dlgIconviewForm");
    ctl({"dsskey", "2"});
    waitPage("frmDial");
    pad("55");
    key("Return");
    waitPage("frmCall");
    EXPECT_EQ(call(), "55@1 ringing");
    EXPECT_EQ(ctl({"dsskey", "21", "show"}, 1).toObject()["error"], "there is no such key");
    ctl({"dsskey", "x"}, 2);
    ctl({"lamp", "1", "dark"}, 2);
}

TEST_F(Keys, ABrokenFileNeverTakesThePhoneDown)
{
    for (const char* broken : {"<DssKey><Item Type=\"BLF\"", "", "<DssKey/>", "<x/>"}) {
        writeFile("/rundata/data/dsskey.xml", broken);
        ctl({"post", "app_hxPhone", "0x10007", "0x1A", "0"});
        ctl({"post", "app_hxPhone", "0x10007", "10", "0"});
        waitIdle();
        ctl({"dsskey", "1", "long"});
        waitIdle();
        EXPECT_EQ(topWindow()["class"], "frmDesktop") << broken;
    }
}
