// The call screen of real lines: whom a call has come to, and what becomes of a transfer.
#include "host/desktop/callAction.h"
#include "host/desktop/frmCall.h"
#include "host/desktop/pressGuard.h"
#include "host/services/phone/callNumber.h"
#include "support/host/language.h"
#include "tests/desktop/desktopTest.h"
#include "tests/services/sipStand.h"
#include <QLabel>

namespace {

constexpr int kCallGoesMs = 2000; // from the screen, after its end

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
    // However it is broken into lines.
    static QString plain(const char* label) { return QString::fromStdString(text(label)).replace('\n', ' '); }
    static QByteArray whyNot()
    {
        tagAccountInfo info;
        EXPECT_TRUE(phone_GetAccountInfoById(0, &info));
        return info.szWhyNot;
    }
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

TEST_F(CallReached, WhyALineHasNoSecureConnectionIsReadInEachLanguage)
{
    for (const char* language : {"English", "German", "French", "Spanish", "Chinese"}) {
        GetLanguageHelper()->SetLanguage(language);
        for (uint32_t fault = SIP_TLS_OTHER_FAULT; fault <= SIP_TLS_NOT_SPOKEN; ++fault) {
            const QByteArray before = whyNot();
            tellLine(0, SIP_LINE_FAILED, 0, "TLS: ", SIP_TLS_FAULT(fault));
            ASSERT_TRUE(kit::waitUntil([&] { return whyNot() != before; })) << fault;
            EXPECT_EQ(phone_CallNumber("300", 0, -1), 0);
            kit::settle();
            const QString reason = qTranslate(lastEnded().strReason.toUtf8().constData());
            EXPECT_EQ(plain("labState"), reason) << "nothing of it is cut";
            kit::shot(QString("call-tls-%1-%2").arg(language).arg(fault));
            kit::stepTime(kCallGoesMs);
        }
    }
}

TEST_F(CallReached, TonesThatDoNotArriveAreToldForAMomentInEachLanguageAndTheCallGoesOn)
{
    for (const char* language : {"English", "German", "French", "Spanish", "Chinese"}) {
        SCOPED_TRACE(language);
        GetLanguageHelper()->SetLanguage(language);
        const uint32_t wire = talksOut("300");
        const std::string before = text("labState");
        agent.tell(sipWire::make<tagSipHead>(SIP_TONES_REFUSED, wire));
        const QString told = qTranslate("Key tones do not arrive");
        EXPECT_TRUE(kit::waitUntil([&] { return plain("labOthers") == told; })) << text("labOthers");
        EXPECT_EQ(text("labState"), before);
        kit::shot(QString("call-tones-refused-") + language);
        // Between the keys there is less room.
        auto* keys = kit::windows()[0]->findChild<callAction*>("actKeys");
        ASSERT_TRUE(keys);
        kit::tap(keys);
        EXPECT_EQ(plain("labOthers"), told);
        kit::shot(QString("call-tones-refused-keys-") + language);
        kit::stepTime(4000);
        EXPECT_EQ(text("labOthers"), "");
        phoneService::instance().rules().hangUp(call().nId);
        kit::stepTime(kCallGoesMs);
    }
}

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

TEST_F(CallReached, WhatTheOtherSideHasMadeIsNotEndedByAPressThatWasMeantForItsOwnCall)
{
    writeAccount(0, readFile("/rundata/config/user/voip/sipAccount0.cfg") + "[Transfer]\nbByOther=1\n");
    tellAccountChanged(0);
    tellLine(0, SIP_LINE_REGISTERED, 200);
    ASSERT_TRUE(kit::waitUntil([] { return stateOf(0) == LINE_DEFAULT_ACCOUNT; }));
    const uint32_t wire = talksOut("300");
    kit::stepTime(pressGuard::MOST_MS);
    auto record = sipWire::make<tagSipReferred>(SIP_REFERRED, wire);
    sipWire::setText(record.szTarget, "sip:301@sip.example.com");
    agent.tell(record);
    ASSERT_TRUE(kit::waitUntil([] { return text("labName") == "301"; }));
    kit::key(Qt::Key_F4);
    EXPECT_EQ(calls().size(), 2);
    kit::stepTime(pressGuard::MOST_MS);
    kit::key(Qt::Key_F4);
    EXPECT_EQ(calls().size(), 1);
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

TEST_F(CallReached, WhatNobodyHasHeardYetIsSaidAndOnTheScreenItIsSoAtOnce)
{
    const uint32_t wire = dials("300");
    EXPECT_EQ(text("labState"), "Calling...");
    agent.tell(sipWire::make<tagSipProgress>(SIP_PROGRESS, wire));
    ASSERT_TRUE(
        kit::waitUntil([] { return text("labState") == "Calling... \u00b7 The server does not answer"; }));
    kit::shot("call-server-silent");
    tellMedia(SIP_TALK, wire, "their answer");
    EXPECT_EQ(text("labState"), "In call");
    phoneService::instance().rules().setHeld(call().nId, true);
    EXPECT_EQ(text("labState"), "On hold");
    ASSERT_TRUE(agent.next<tagSipMedia>(SIP_MEDIA));
    kit::stepTime(2500);
    EXPECT_EQ(text("labState"), "On hold \u00b7 Not confirmed yet");
    kit::shot("call-hold-unheard");
    tellMedia(SIP_TALK, wire, "held");
    kit::stepTime(300);
    EXPECT_EQ(text("labState"), "On hold");
    phoneService::instance().rules().setHeld(call().nId, false);
    ASSERT_TRUE(agent.next<tagSipMedia>(SIP_MEDIA));
    showPicture(media, call().nId);
    EXPECT_EQ(text("labState"), "");
    kit::stepTime(2500);
    EXPECT_EQ(text("labState"), "In call \u00b7 Not confirmed yet") << "upon a picture too";
    phoneService::instance().hangUp(call().nId);
    EXPECT_EQ(text("labState"), "Call ended");
}

TEST_F(CallReached, WhatWasToldOfACallGoesWithIt)
{
    const uint32_t wire = talksOut("300");
    phoneService::instance().rules().transfer(call().nId, "301");
    tellTransferred(wire, 486, true);
    ASSERT_TRUE(kit::waitUntil([] { return text("labOthers") == "301 \u00b7 Busy"; }));
    tellEnd(wire, SIP_HUNG_UP);
    ASSERT_TRUE(kit::waitUntil([] { return calls().isEmpty(); }));
    EXPECT_EQ(text("labState"), "Call ended");
    EXPECT_EQ(text("labOthers"), "");

    // So does what failed beside it.
    talksIn(IN);
    tellEnd(dials("302"), SIP_REFUSED, 486);
    ASSERT_TRUE(kit::waitUntil([] { return text("labOthers") == "302 \u00b7 Busy"; }));
    tellEnd(IN, SIP_HUNG_UP);
    ASSERT_TRUE(kit::waitUntil([] { return calls().isEmpty(); }));
    EXPECT_EQ(text("labOthers"), "");
    arrives(arrival(IN + 1, "201"));
    EXPECT_EQ(text("labOthers"), "") << "the next one has nothing to do with it";
}

TEST_F(CallReached, WhatIsToldLastStandsForItsWholeTime)
{
    const uint32_t wire = talksOut("300");
    const auto fails = [&](const char* number) {
        phoneService::instance().rules().transfer(call().nId, number);
        tellTransferred(wire, 486, true);
        return kit::waitUntil([&] { return text("labOthers") == std::string(number) + " \u00b7 Busy"; });
    };
    ASSERT_TRUE(fails("301"));
    kit::stepTime(2000);
    ASSERT_TRUE(fails("302"));
    kit::stepTime(2000);
    EXPECT_EQ(text("labOthers"), "302 \u00b7 Busy");
    kit::stepTime(1500);
    EXPECT_EQ(text("labOthers"), "");
}

TEST_F(CallReached, VideoIsForBothOfAConference)
{
    const int first = talksIn(IN);
    talksOut("300");
    const int second = calls().last().nId;
    ASSERT_TRUE(phoneService::instance().rules().join(second, first));
    tagCallStreams streams;
    streams.strSound = "Opus";
    streams.nOwnPicture = 0; // the camera opens once
    media->tellChanged(second, streams);
    streams.nOwnPicture = 1;
    media->tellChanged(first, streams);
    kit::stepTime(1000);
    const auto wantsCamera = [](int id) {
        for (const tagCall& call : calls()) {
            if (call.nId == id)
                return call.options.bCamera;
        }
        return false;
    };
    ASSERT_TRUE(wantsCamera(first) && wantsCamera(second));
    auto* video = kit::windows().value(0)->findChild<callAction*>("actVideo");
    EXPECT_TRUE(video->isOn());
    kit::tap(video);
    EXPECT_FALSE(wantsCamera(first) || wantsCamera(second)) << "nobody sees the user any more";
    streams.nOwnPicture = 0;
    media->tellChanged(first, streams);
    kit::settle();
    EXPECT_FALSE(video->isOn());
    kit::tap(video);
    EXPECT_TRUE(wantsCamera(first) && wantsCamera(second));
}
