// Pictures that dial, the message key, door phones and cameras: each is set up on its page, and called.
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include <QFile>
#include <QJsonArray>

namespace {

constexpr int kWaitMs = 20000;

class Slots : public LivePhone
{
protected:
    void SetUp() override
    {
        LivePhone::SetUp();
        ctl({"set", "line", "0", "state=2", "user=1001", "server=pbx"});
        ctl({"set", "line", "1", "state=2", "user=1002", "server=pbx"});
    }
    void waitFor(const char* window)
    {
        waitPage(window);
        waitIdle();
    }
    // As long as a finger that means it; the page that comes up ends it.
    void hold(QPoint at, const char* window)
    {
        ctl({"touch", QString::number(at.x()), QString::number(at.y()), "down"});
        waitPage(window);
        ctl({"touch", QString::number(at.x()), QString::number(at.y()), "up"});
        waitIdle();
    }
    void type(const char* edit, const char* text)
    {
        tap(edit);
        ctl({"type", text});
        EXPECT_EQ(widget(edit)["text"].toString().size(), QString(text).size()) << edit;
    }
    QJsonObject call() { return ctl({"calls"}).toObject()["calls"].toArray().first().toObject(); }
    bool talks()
    {
        return kit::waits([&] { return call()["state"] == "talking"; }, kWaitMs);
    }
    void hangUp()
    {
        softKey(3);
        EXPECT_TRUE(kit::waits([&] { return topWindow()["class"] != "frmCall"; }, kWaitMs));
    }
    // A secret is in nothing that the phone tells.
    void expectSecret(const char* secret)
    {
        for (const char* kind : {"trace", "dial", "tone", "broadcast", "box", "ring"}) {
            for (const QString& text : logOf(kind))
                EXPECT_FALSE(text.contains(secret)) << qPrintable(text);
        }
    }
};

} // namespace

TEST_F(Slots, APictureIsHeldFilledByFingerAndDialsOnItsLine)
{
    hold(middleOf("quickKey4"), "dlgPictureDialSetting");
    EXPECT_EQ(widget("tabWgtList")["index"].toInt(), 3);
    type("editName", "Zoe");
    type("editNumber", "1234");
    tap("cmbAccount");
    key("Escape");
    key("Right", 2);
    EXPECT_EQ(widget("cmbAccount")["text"], "Line 2");
    tap("btnOK");
    softKey(3);
    waitFor("frmDesktop");
    EXPECT_EQ(widget("quickKey4")["text"], "Zoe");
    shot("slots-home");
    tap("quickKey4");
    waitPage("frmCall");
    EXPECT_EQ(call()["number"], "1234");
    EXPECT_EQ(call()["line"], 1);
    hangUp();
}

TEST_F(Slots, TheMessageKeyDialsTheNumberThatWasTypedByKeys)
{
    ctl({"key", "message"});
    waitFor("dlgVoice_Mail_Setting");
    shot("slots-voice-mail");
    key("Down", 2); // the second line, past the button of the first
    pad("8500");
    key("F1");
    waitFor("frmDesktop");
    ctl({"set", "line", "1", "new=2"});
    ctl({"config", "/rundata/config/system.ini", "Features", "bAutoCallOutMessage", "1"});
    ctl({"key", "message"});
    waitPage("frmCall");
    EXPECT_EQ(call()["number"], "8500");
    EXPECT_EQ(call()["line"], 1);
    EXPECT_EQ(logOf("dial").last(), "8500 1 -2");
    hangUp();
}

TEST_F(Slots, ADoorPhoneIsSetUpCalledAndOpenedAndKeepsOthersOut)
{
    ctl({"menu", "doorphonedata.xml"});
    waitFor("dlgIconviewForm");
    shot("slots-door-phones");
    hold(QPoint(233, 120), "dlgDoorPhone");
    EXPECT_EQ(topWindow()["title"], "Door Phone 1");
    type("editNumber", "8100");
    type("editPin", "9137");
    tap("checkRing");
    shot("slots-door-phone");
    softKey(0);
    waitFor("dlgIconviewForm");
    tap(233, 120);
    waitPage("frmCall");
    ASSERT_TRUE(talks());
    waitIdle();
    shot("slots-door-call");
    softKey(2);
    EXPECT_TRUE(
        kit::waits([&] { return call()["tones"].toString() == "\u2022\u2022\u2022\u2022"; }, kWaitMs));
    ctl({"ring", "4711", "0"});
    EXPECT_EQ(ctl({"calls"}).toObject()["calls"].toArray().size(), 1);
    EXPECT_EQ(ctl({"calls"}).toObject()["ended"].toArray().first().toObject()["end"], "busy");
    hangUp();
    ctl({"ring", "4711", "0"});
    EXPECT_EQ(ctl({"calls"}).toObject()["calls"].toArray().size(), 1) << "the door has gone";
    expectSecret("9137");
    const QFileDevice::Permissions others =
        QFileDevice::ReadGroup | QFileDevice::ReadOther | QFileDevice::WriteGroup | QFileDevice::WriteOther;
    EXPECT_FALSE(QFile::permissions(root() + "/rundata/data/doorphonedata.xml") & others);
}

TEST_F(Slots, ACameraIsSetUpByKeysAndCalledOnItsLineWithoutSound)
{
    ctl({"menu", "ipcameradata.xml"});
    waitFor("dlgIconviewForm");
    key("Right");
    key("*");
    waitFor("dlgIpCamera");
    key("Down");
    key("Right", 2); // Line2
    key("Down");
    ctl({"type", "Yard"});
    key("Down");
    pad("8201");
    key("Down", 4);
    EXPECT_EQ(focusWidget()["name"], "chkSendAudio");
    key("Return");
    shot("slots-camera");
    key("F1");
    waitFor("dlgIconviewForm");
    key("Return");
    waitPage("frmCall");
    EXPECT_EQ(call()["number"], "8201");
    EXPECT_EQ(call()["line"], 1);
    EXPECT_EQ(call()["microphone"], false);
    hangUp();
}
