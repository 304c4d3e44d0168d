// The call screen of real lines: whom a call has come to, and what becomes of a transfer.
#include "host/desktop/frmCall.h"
#include "host/services/phone/callNumber.h"
#include "tests/desktop/desktopTest.h"
#include "tests/services/sipStand.h"
#include <QLabel>

namespace {

class CallReached : public SipPhone
{
protected:
    void SetUp() override
    {
        begin();
        callScreenInstall();
        below.setGeometry(0, 0, 800, 480);
        below.show();
        kit::settle();
    }
    static std::string text(const char* label) { return labelText(kit::windows().value(0), label); }
    static void showPicture(kit::ScriptedMedia* media, int call)
    {
        tagCallStreams streams;
        streams.strSound = "Opus";
        streams.strPicture = "H.264";
        media->tellChanged(call, streams);
        kit::settle();
    }
    void tellTransferred(uint32_t wire, uint32_t status, bool isTaken)
    {
        auto record = sipWire::make<tagSipStatus>(SIP_TRANSFERRED, wire);
        record.nStatus = status;
        record.bTaken = isTaken;
        agent.tell(record);
    }

    QWidget below;
};

} // namespace

TEST_F(CallReached, ACallThatIsSentOnFollowsAndSaysByWhom)
{
    const uint32_t wire = dials("300");
    EXPECT_EQ(text("labName"), "300");
    EXPECT_EQ(text("labNumber"), "");
    tellEnd(wire, SIP_REDIRECTED, 302, "sip:301@sip.example.com");
    const auto* dial = agent.next<tagSipDial>(SIP_DIAL);
    ASSERT_TRUE(dial);
    EXPECT_EQ(text("labName"), "301");
    EXPECT_EQ(text("labNumber"), "Forwarded by 300");
    EXPECT_EQ(text("labState"), "Calling...");
    tellMedia(SIP_TALK, dial->head.nId, "their answer");
    EXPECT_EQ(text("labName"), "301");
    EXPECT_EQ(text("labNumber"), "") << "it does not ring any more";
    EXPECT_EQ(text("labState"), "In call");
    kit::shot("call-sent-on");
}

TEST_F(CallReached, WhoHasPickedUpSeesWhoCalls)
{
    const uint32_t wire = dials("8001");
    auto peer = sipWire::make<tagSipPeer>(SIP_PEER, wire);
    sipWire::setText(peer.szAddress, "sip:200@sip.example.com");
    sipWire::setText(peer.szName, "Ben");
    agent.tell(peer);
    ASSERT_TRUE(kit::waitUntil([] { return text("labName") == "Ben"; }));
    EXPECT_EQ(text("labNumber"), "200");
}

TEST_F(CallReached, WhoHasPutACallThroughOrSentItOnSeesWhereItIs)
{
    const uint32_t wire = talksOut("300");
    phoneService::instance().rules().transfer(call().nId, "301");
    tellTransferred(wire, 200, true);
    ASSERT_TRUE(kit::waitUntil([] { return calls().isEmpty(); }));
    EXPECT_EQ(text("labState"), "Transferred to 301");
    kit::shot("call-transferred");
    const int id = arrives(arrival(IN, "200"));
    EXPECT_TRUE(phoneService::instance().rules().forward(id, "302"));
    EXPECT_EQ(text("labState"), "Forwarded to 302");
    const int far = arrives(arrival(IN + 1, "200"));
    EXPECT_TRUE(phoneService::instance().rules().forward(far, QString(CALL_NUMBER_MAX, '8')));
    EXPECT_EQ(text("labState").substr(0, 16), "Forwarded to 888");
    const auto* label = kit::windows().value(0)->findChild<QLabel*>("labState");
    QFont smallest = label->font();
    smallest.setPixelSize(15);
    EXPECT_LE(QFontMetrics(smallest).horizontalAdvance(label->text()), label->width()) << "it can be read";
}

TEST_F(CallReached, ATransferIsSeenWhileItIsUnderWayAndWhyItFailed)
{
    const uint32_t wire = talksOut("300");
    EXPECT_EQ(text("labState"), "In call");
    phoneService::instance().rules().transfer(call().nId, "301");
    EXPECT_EQ(text("labState"), "Transferring... \u00b7 301");
    showPicture(media, call().nId);
    EXPECT_EQ(text("labState"), "Transferring... \u00b7 301") << "upon a picture too";
    kit::shot("call-transferring");
    tellTransferred(wire, 486, true);
    ASSERT_TRUE(kit::waitUntil([] { return text("labOthers") != ""; }));
    EXPECT_EQ(text("labOthers"), "301 \u00b7 Busy");
    EXPECT_EQ(text("labState"), "");
    phoneService::instance().rules().transfer(call().nId, "302");
    tellTransferred(wire, 603, false);
    ASSERT_TRUE(kit::waitUntil([] { return text("labOthers") == "The other side refuses the transfer"; }));
    EXPECT_EQ(text("labName"), "300");
}
