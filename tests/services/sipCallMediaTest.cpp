// What the media of calls are told of who holds, is muted or joined, also when they have died and come back.
#include "host/services/phone/sipCalls.h"
#include "support/host/registry.h"
#include "tests/kit/kitTime.h"
#include "tests/services/sipStand.h"

namespace {

constexpr uint32_t OUT = SIP_CALL_FIRST;

class SipCallMedia : public SipPhone
{
protected:
    void SetUp() override { begin(); }
    void sayEarly(uint32_t wire, const QByteArray& sdp)
    {
        auto early = sipWire::make<tagSipProgress>(SIP_PROGRESS, wire);
        early.nStatus = 183;
        sipWire::setText(early.szSdp, sdp.toStdString());
        agent.tell(early);
    }
    // All that was said of the call before has come.
    bool hasTaken(uint32_t wire)
    {
        agent.tell(sipWire::make<tagSipProgress>(SIP_PROGRESS, wire));
        return kit::waitUntilHeld([] { return call().bUnheard; });
    }
    // The call is not answered yet, and what it will sound by is agreed on.
    void tellEarly(uint32_t wire)
    {
        sayEarly(wire, "early");
        EXPECT_TRUE(kit::waitUntil([this] { return media->orders.last() == "agree early"; }));
    }
    static callRules& rules() { return phoneService::instance().rules(); }
    static phoneBackend& backend() { return phoneService::instance().backend(); }
};

} // namespace

TEST_F(SipCallMedia, WhoRefusesToBeHeldHearsNothingWhoeverMutesMeanwhile)
{
    talksOut();
    const int id = call().nId;
    rules().setHeld(id, true);
    nextMedia(SIP_MEDIA);
    tellMedia(SIP_TALK, OUT, "");
    EXPECT_TRUE(kit::waitUntil([this] { return media->orders.last() == "mute"; }));
    EXPECT_TRUE(rules().setMuted(id, true));
    EXPECT_TRUE(rules().setMuted(id, false));
    EXPECT_EQ(media->orders.last(), "mute") << "the call is held";
    EXPECT_TRUE(rules().setMuted(id, true));
    rules().setHeld(id, false);
    EXPECT_EQ(media->orders.last(), "mute") << "now it is muted";
    EXPECT_TRUE(rules().setMuted(id, false));
    EXPECT_EQ(media->orders.last(), "unmute");
}

TEST_F(SipCallMedia, ALineThatWantsThemEncryptedGetsThemSoFromTheNextCallOn)
{
    talksOut();
    EXPECT_FALSE(media->lastWish.bEncrypt);
    phoneService::instance().hangUp(call().nId);
    writeAccount(0, readFile("/rundata/config/user/voip/sipAccount0.cfg") + "Encrypt=1\n");
    tellAccountChanged(0);
    tellLine(0, SIP_LINE_REGISTERED, 200);
    ASSERT_TRUE(kit::waitUntil([] { return stateOf(0) == LINE_DEFAULT_ACCOUNT; }));
    talksOut();
    EXPECT_TRUE(media->lastWish.bEncrypt) << media->orders.last().toStdString();
    phoneService::instance().hangUp(call().nId);
    media->lastWish = {};
    talksIn(IN);
    EXPECT_TRUE(media->lastWish.bEncrypt) << media->orders.last().toStdString();
}

TEST_F(SipCallMedia, MediaThatAreLostAreOfferedAnew)
{
    talksOut();
    media->orders.clear();
    media->tellLost();
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 2");
    tellMedia(SIP_TALK, OUT, "again");
    EXPECT_EQ(media->orders, (QStringList{"offer", "agree again"}));

    const int id = arrives(arrival(IN));
    media->bSilent = true;
    phoneService::instance().answer(id);
    media->bSilent = false;
    media->tellLost();
    EXPECT_EQ(nextMedia(SIP_ANSWER).left(6), "answer");
}

TEST_F(SipCallMedia, WhoIsMutedIsSoWithTheNextMediaToo)
{
    talksOut();
    EXPECT_TRUE(rules().setMuted(call().nId, true));
    media->orders.clear();
    media->tellLost();
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 2");
    EXPECT_EQ(media->orders, (QStringList{"offer", "mute"})) << "before anybody can hear anything";
    tellMedia(SIP_TALK, OUT, "again");
    EXPECT_TRUE(call().bMuted);
    EXPECT_FALSE(media->orders.contains("unmute"));
}

TEST_F(SipCallMedia, WhoWasNotHeldHearsNothingOfTheNextMediaEither)
{
    talksOut();
    rules().setHeld(call().nId, true);
    nextMedia(SIP_MEDIA);
    tellMedia(SIP_TALK, OUT, "");
    EXPECT_TRUE(kit::waitUntil([this] { return media->orders.last() == "mute"; }));
    media->orders.clear();
    media->tellLost();
    EXPECT_NE(nextMedia(SIP_MEDIA), "nothing");
    EXPECT_EQ(media->orders, (QStringList{"offer held", "mute"}));
}

TEST_F(SipCallMedia, TwoThatAreJoinedAreJoinedAgainWithTheNextMedia)
{
    nuxSetRegistryInt("/rundata/config/user/user.ini", "CallWaiting", "bEnable", 1);
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_CALL_WAITING, 0);
    kit::settle();
    tagCallStreams sound;
    sound.strSound = "Opus";
    const int one = talksIn(IN);
    const int two = talksIn(IN + 1);
    EXPECT_TRUE(backend().join(one, two));
    media->tellChanged(one, sound);
    media->tellChanged(two, sound);
    EXPECT_EQ(media->orders.count("join"), 1) << "they are";
    media->tellLost();
    EXPECT_EQ(calls()[0].nJoined, two);
    media->orders.clear();
    media->tellChanged(one, sound);
    EXPECT_FALSE(media->orders.contains("join")) << "the other one has no sound yet";
    media->tellChanged(two, sound);
    EXPECT_EQ(media->orders, QStringList{"join"});
    sound.nQuality = 4;
    media->tellChanged(two, sound);
    EXPECT_EQ(media->orders, QStringList{"join"}) << "once";

    // Who left the other meanwhile is not joined.
    media->tellLost();
    EXPECT_TRUE(backend().split(one));
    media->orders.clear();
    media->tellChanged(one, sound);
    media->tellChanged(two, sound);
    EXPECT_FALSE(media->orders.contains("join"));
}

TEST_F(SipCallMedia, MediaThatDieWhileItRingsThereAreOfferedOnceItTalks)
{
    dials("300");
    media->tellLost();
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA)) << "the offer is on its way";
    tellMedia(SIP_TALK, OUT, "their answer");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 2");
}

TEST_F(SipCallMedia, OfMediaThatAreLostNothingIsShownAnyMore)
{
    talksOut();
    tagCallStreams streams;
    streams.strSound = "Opus";
    streams.strPicture = "H.264";
    streams.nQuality = 4;
    streams.bEncrypted = true;
    media->tellChanged(call().nId, streams);
    ASSERT_TRUE(call().bVideo && call().streams.bEncrypted);
    media->tellLost();
    for (const tagCall& told : {call(), heard.last()}) {
        EXPECT_FALSE(told.bVideo);
        EXPECT_TRUE(told.streams == tagCallStreams()) << "a lock, and codecs, that nobody has agreed on";
    }
}

TEST_F(SipCallMedia, AHoldThatTheOtherSideIsToldInAnAnswerIsNotOfferedToo)
{
    talksOut();
    rules().setHeld(call().nId, true);
    nextMedia(SIP_MEDIA);
    tellMedia(SIP_TALK, OUT, "held");
    media->orders.clear();
    tellMedia(SIP_OFFER, OUT, "anew");
    EXPECT_EQ(nextMedia(SIP_MEDIA).left(6), "answer");
    tellMedia(SIP_TALK, OUT, "anew");
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA));
    EXPECT_EQ(media->orders, QStringList{"answer anew with held"});
}

TEST_F(SipCallMedia, NeitherNumbersNorTonesAreWrittenToTheLog)
{
    auto record = arrival(IN, "4930123456");
    sipWire::setText(record.szName, "Doris Keller");
    const int id = arrives(record);
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_TRUE(agent.next<tagSipMedia>(SIP_ANSWER));
    tellMedia(SIP_TALK, IN, "their offer");
    const qsizetype before = traces().size();
    for (const bool inSound : {true, false}) {
        media->bTakesTones = inSound;
        EXPECT_TRUE(rules().sendTones(id, "9137"));
    }
    EXPECT_EQ(traces().size(), before) << "not even that there were some";
    EXPECT_TRUE(rules().transfer(id, "4989555777"));
    tellEnd(IN, SIP_HUNG_UP);
    EXPECT_TRUE(waitsForEnd());
    talksOut("4930987654");
    phoneService::instance().hangUp(call().nId);
    arrives(arrival(IN + 1, "4930123456"));
    tellEnd(IN + 1, SIP_CANCELLED);
    EXPECT_TRUE(waitsForEnd(3));
    for (const char* secret : {"4930123456", "Keller", "4989555777", "4930987654"})
        EXPECT_EQ(traces().filter(secret), QStringList()) << secret;
    EXPECT_FALSE(traces().isEmpty());
}

TEST_F(SipCallMedia, WhatWasAgreedOnBeforeTheAnswerHoldsWhereThatSaysNoMore)
{
    for (const bool fits : {true, false}) {
        const uint32_t wire = dials("300");
        tellEarly(wire);
        if (!fits)
            media->tellUnfit(call().nId);
        tellMedia(SIP_TALK, wire, "");
        EXPECT_EQ(call().eState == CALL_TALKING, fits);
        phoneService::instance().hangUp(call().nId);
    }
    EXPECT_EQ(lastEnded().strReason, "The two phones have no sound in common");
}

TEST_F(SipCallMedia, ADescriptionThatNoRecordHoldsIsNotSentInPart)
{
    media->bSilent = true;
    EXPECT_EQ(phone_CallNumber("300", 0, -1), 1);
    media->tellDescribed(call().nId, QByteArray(SIP_SDP_SIZE, 'x'));
    EXPECT_TRUE(waitsForEnd());
    EXPECT_EQ(lastEnded().strReason, "Sound is not available at present");
    EXPECT_TRUE(agent.isQuiet(SIP_DIAL));
}

TEST_F(SipCallMedia, WhatWasAgreedOnWithWhoSendsTheCallOnIsNothingToTheNext)
{
    const uint32_t wire = dials("300");
    tellEarly(wire);
    tellEnd(wire, SIP_REDIRECTED, 302, "sip:301@example.com");
    const auto* dial = agent.next<tagSipDial>(SIP_DIAL);
    ASSERT_TRUE(dial);
    tellMedia(SIP_TALK, dial->head.nId, "");
    ASSERT_TRUE(waitsForEnd());
    EXPECT_EQ(lastEnded().strReason, "The two phones have no sound in common");
}

TEST_F(SipCallMedia, WhoRefusesAPictureIsNotHeldForIt)
{
    talksOut();
    EXPECT_TRUE(rules().setCamera(call().nId, true));
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 2");
    media->orders.clear();
    tellMedia(SIP_TALK, OUT, "");
    EXPECT_TRUE(kit::waitUntil([this] { return media->orders == QStringList{"withdraw"}; }));
    EXPECT_FALSE(call().bHeld);
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA));
}

TEST_F(SipCallMedia, AnOfferThatTheOtherSidesTookThePlaceOfIsMadeAgain)
{
    const int id = talksIn(IN);
    EXPECT_TRUE(rules().setCamera(id, false));
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 2");
    EXPECT_TRUE(rules().setCamera(id, true));
    media->orders.clear();
    tellMedia(SIP_OFFER, IN, "theirs");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "answer 3");
    EXPECT_EQ(media->orders, (QStringList{"withdraw", "answer theirs with"}));
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA)) << "until that is agreed on";
    tellMedia(SIP_TALK, IN, "theirs");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 4");
    EXPECT_TRUE(media->lastWish.options.bCamera);
}

TEST_F(SipCallMedia, WhatWasOnceEncryptedIsSoForTheWholeCall)
{
    talksOut();
    tagCallStreams streams;
    streams.strSound = "Opus";
    streams.bEncrypted = true;
    media->tellChanged(call().nId, streams);
    streams.bEncrypted = false; // pictures in clear take the lock away
    streams.strPicture = "H.264";
    media->tellChanged(call().nId, streams);
    media->tellLost();
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 2");
    EXPECT_TRUE(media->lastWish.bEncrypt) << "the sound would go in clear";
}

TEST_F(SipCallMedia, WhoIsCalledMayMoveHisMediaBeforeHeAnswers)
{
    const uint32_t wire = dials("300");
    tellEarly(wire);
    media->orders.clear();
    tellMedia(SIP_OFFER, wire, "moved");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "answer 2");
    auto rings = sipWire::make<tagSipProgress>(SIP_PROGRESS, wire);
    rings.nStatus = 180;
    agent.tell(rings);
    EXPECT_EQ(call().eState, CALL_RINGING);
    tellMedia(SIP_TALK, wire, "moved");
    EXPECT_TRUE(kit::waitUntil([] { return call().eState == CALL_TALKING; }));
    EXPECT_EQ(media->orders, QStringList{"answer moved with"}) << "that is what holds";
    rules().setHeld(call().nId, true);
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 3");
}

TEST_F(SipCallMedia, OfManyDescriptionsBeforeTheAnswerTwoASecondAreAgreedOnAndTheLastOneCounts)
{
    const kit::HeldClocks held;
    const uint32_t wire = dials("300");
    media->orders.clear();
    for (int i = 1; i <= 40; ++i)
        sayEarly(wire, "early " + QByteArray::number(i));
    ASSERT_TRUE(hasTaken(wire));
    EXPECT_EQ(media->orders, QStringList{"agree early 1"});
    kit::stepTime(sipCalls::EARLY_PAUSE_MS / 2);
    EXPECT_EQ(media->orders.size(), 1);
    kit::stepTime(sipCalls::EARLY_PAUSE_MS);
    const QStringList both = {"agree early 1", "agree early 40"};
    EXPECT_EQ(media->orders, both);
    // What says nothing new changes nothing.
    kit::stepTime(sipCalls::EARLY_PAUSE_MS);
    sayEarly(wire, "early 40");
    EXPECT_TRUE(kit::waitUntilHeld([] { return !call().bUnheard; }));
    kit::stepTime(sipCalls::EARLY_PAUSE_MS);
    EXPECT_EQ(media->orders, both);
    // The next call is not kept waiting by this one.
    tellEnd(wire, SIP_REDIRECTED, 302, "sip:301@example.com");
    const auto* dial = agent.next<tagSipDial>(SIP_DIAL);
    ASSERT_TRUE(dial);
    sayEarly(dial->head.nId, "early 40");
    EXPECT_TRUE(kit::waitUntilHeld([&] { return media->orders == both + QStringList{"agree early 40"}; }));
}

TEST_F(SipCallMedia, WhatWaitsToBeAgreedOnBeforeTheAnswerIsNotForgottenNorLate)
{
    const kit::HeldClocks held;
    for (const char* end : {"answer", "", "offer"}) {
        SCOPED_TRACE(end);
        const uint32_t wire = dials("300");
        media->orders.clear();
        sayEarly(wire, "one");
        sayEarly(wire, "two");
        const bool isOffer = *end == 'o';
        tellMedia(isOffer ? SIP_OFFER : SIP_TALK, wire, end);
        const QString last = *end == 'a' ? "agree answer" : "agree two";
        QStringList orders = {"agree one", last};
        if (isOffer)
            orders.append("answer offer with");
        EXPECT_TRUE(kit::waitUntilHeld([&] { return media->orders == orders; }));
        kit::stepTime(2 * sipCalls::EARLY_PAUSE_MS);
        EXPECT_EQ(media->orders, orders);
        phoneService::instance().hangUp(call().nId);
    }
}
