// Calls between the phone's rules, the SIP user agent and the media: what each is told of what the others do.
#include "host/services/phone/callNumber.h"
#include "host/services/phone/phoneLamps.h"
#include "support/host/registry.h"
#include "tests/services/sipStand.h"

namespace {

constexpr uint32_t OUT = SIP_CALL_FIRST;

class SipCallTest : public SipPhone
{
protected:
    void SetUp() override { begin(); }
    static callRules& rules() { return phoneService::instance().rules(); }
    static phoneBackend& backend() { return phoneService::instance().backend(); }
    QString nextTarget(SIP_RECORD kind)
    {
        const auto* record = agent.next<tagSipTarget>(kind);
        return record ? QString(record->szTarget) : QString("nothing");
    }
    bool holdIs(bool held)
    {
        return kit::waitUntil([=] { return call().bHeld == held; });
    }
};

class Lamps : public lampNews
{
public:
    void lampChanged(const tagLampWatch&, LAMP_STATE now) override { state = now; }
    void listChanged(int, const QList<tagLampMember>&) override {}
    LAMP_STATE state = LAMP_UNKNOWN;
};

} // namespace

TEST_F(SipCallTest, OneThatGoesOutRingsTalksAndIsHungUp)
{
    writeAccount(0, readFile("/rundata/config/user/voip/sipAccount0.cfg") + "AnonymousCall=1\n");
    tellAccountChanged(0);
    EXPECT_EQ(phone_CallNumber("300", 0, -1), 1);
    EXPECT_EQ(call().eState, CALL_RINGING);
    const auto* dial = agent.next<tagSipDial>(SIP_DIAL);
    ASSERT_TRUE(dial);
    EXPECT_EQ(dial->head.nId, OUT);
    EXPECT_EQ(dial->nLine, 0u);
    EXPECT_EQ(dial->bAnonymous, 1u);
    EXPECT_STREQ(dial->szTarget, "300");
    EXPECT_STREQ(dial->szSdp, "offer 1");
    auto progress = sipWire::make<tagSipProgress>(SIP_PROGRESS, OUT);
    progress.nStatus = 183;
    sipWire::setText(progress.szSdp, "early");
    agent.tell(progress);
    EXPECT_TRUE(kit::waitUntil([this] { return media->orders.contains("agree early"); }));
    EXPECT_EQ(call().eState, CALL_RINGING);
    EXPECT_EQ(phone_IsPhoneInTalk(), 0);
    tellMedia(SIP_TALK, OUT, "their answer");
    EXPECT_TRUE(kit::waitUntil([] { return call().eState == CALL_TALKING; }));
    EXPECT_EQ(phone_IsPhoneInTalk(), 1);
    EXPECT_TRUE(media->orders.contains("agree their answer"));
    kit::stepTime(5000);
    EXPECT_TRUE(phoneService::instance().hangUp(call().nId));
    EXPECT_EQ(nextStatus(SIP_HANG_UP), 0u);
    EXPECT_EQ(lastEnded().eEnd, CALL_HUNG_UP);
    EXPECT_EQ(lastEnded().nSeconds, 5);
    EXPECT_EQ(lastEnded().strReason, "");
    EXPECT_EQ(media->orders.last(), "end");
    EXPECT_EQ(phone_GetCallTotal(), 0);
    // What the agent tells of it now changes nothing.
    const qsizetype told = heard.size();
    tellEnd(OUT, SIP_HUNG_UP);
    kit::settle();
    EXPECT_EQ(heard.size(), told);
}

TEST_F(SipCallTest, OneThatGoesOutTellsOnceItRingsThere)
{
    EXPECT_EQ(phone_CallNumber("300", 0, -1), 1);
    ASSERT_TRUE(agent.next<tagSipDial>(SIP_DIAL));
    auto progress = sipWire::make<tagSipProgress>(SIP_PROGRESS, OUT);
    progress.nStatus = 181;
    agent.tell(progress);
    kit::settle();
    EXPECT_FALSE(call().bRingsThere) << "it goes elsewhere";
    progress.nStatus = 180;
    agent.tell(progress);
    EXPECT_TRUE(kit::waitUntil([] { return call().bRingsThere; }));
    const qsizetype told = heard.size();
    progress.nStatus = 183;
    agent.tell(progress);
    kit::settle();
    EXPECT_EQ(heard.size(), told);
    // Another phone is called then.
    auto ended = sipWire::make<tagSipEnded>(SIP_ENDED, OUT);
    ended.eEnding = SIP_REDIRECTED;
    sipWire::setText(ended.szTarget, "sip:301@pbx.test");
    agent.tell(ended);
    EXPECT_TRUE(kit::waitUntil([] { return !call().bRingsThere; }));
    progress.head.nId = agent.next<tagSipDial>(SIP_DIAL)->head.nId;
    agent.tell(progress);
    EXPECT_TRUE(kit::waitUntil([] { return call().bRingsThere; })) << "who sends sound before the answer";
}

TEST_F(SipCallTest, OneThatComesInRingsIsAnsweredAndEndsByTheOtherSide)
{
    const int id = arrives(arrival(IN, "200", "their offer"));
    EXPECT_EQ(nextMedia(SIP_RING), "");
    EXPECT_EQ(call().strNumber, "200");
    EXPECT_TRUE(call().bIncoming);
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(call().eState, CALL_TALKING) << "at once, for whoever has touched it";
    EXPECT_FALSE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER), "answer 1");
    EXPECT_EQ(media->orders, QStringList{"answer their offer with"});
    tellMedia(SIP_TALK, IN, "their offer");
    kit::stepTime(3000);
    tellEnd(IN, SIP_HUNG_UP);
    EXPECT_TRUE(waitsForEnd());
    EXPECT_EQ(lastEnded().eEnd, CALL_HUNG_UP);
    EXPECT_EQ(lastEnded().nSeconds, 3);
    EXPECT_EQ(media->orders, (QStringList{"answer their offer with", "end"}));
    EXPECT_EQ(history("missed", 1), QStringList{"0"});
}

TEST_F(SipCallTest, ACallerWithoutAnOfferIsMadeOne)
{
    const int id = arrives(arrival(IN, "200", ""));
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER), "offer 1");
    tellMedia(SIP_TALK, IN, "their answer");
    EXPECT_TRUE(kit::waitUntil([this] { return media->orders.contains("agree their answer"); }));
}

TEST_F(SipCallTest, EachRefusalHasItsStatus)
{
    rules().decline(arrives(arrival(IN)));
    EXPECT_EQ(nextStatus(SIP_REFUSE), 603u);
    EXPECT_EQ(lastEnded().eEnd, CALL_DECLINED);

    nuxSetRegistryInt("/rundata/config/user/user.ini", "DND", "bEnable", 1);
    agent.tell(arrival(IN + 1));
    EXPECT_EQ(nextStatus(SIP_REFUSE), 480u);
    EXPECT_EQ(lastEnded().eEnd, CALL_DISTURBED);
    nuxSetRegistryInt("/rundata/config/user/user.ini", "DND", "bEnable", 0);

    writeAccount(0, readFile("/rundata/config/user/voip/sipAccount0.cfg") + "RejectAnonymousCall=1\n");
    tellAccountChanged(0);
    auto hidden = arrival(IN + 2, "");
    hidden.bAnonymous = 1;
    agent.tell(hidden);
    EXPECT_EQ(nextStatus(SIP_REFUSE), 433u);
    EXPECT_EQ(lastEnded().eEnd, CALL_REJECTED);

    nuxSetRegistryInt("/rundata/config/user/user.ini", "CallWaiting", "bEnable", 0);
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_CALL_WAITING, 0);
    kit::settle();
    talksIn(IN + 3);
    agent.tell(arrival(IN + 4));
    EXPECT_EQ(nextStatus(SIP_REFUSE), 486u);
    EXPECT_EQ(lastEnded().eEnd, CALL_BUSY);
    EXPECT_EQ(calls().size(), 1);
}

TEST_F(SipCallTest, OneIsSentOnToWhereItGoes)
{
    EXPECT_TRUE(rules().forward(arrives(arrival(IN)), "400"));
    EXPECT_EQ(nextTarget(SIP_DEFLECT), "400");
    EXPECT_EQ(lastEnded().eEnd, CALL_FORWARDED);
    EXPECT_EQ(lastEnded().strTarget, "400");
    // One that would be shortened on its way goes nowhere.
    const int id = arrives(arrival(IN + 1));
    EXPECT_FALSE(backend().deflect(id, QString(100, QChar(0x4e2d))));
    EXPECT_EQ(call().eState, CALL_RINGING);
}

TEST_F(SipCallTest, WhatNobodyHeardIsMissedAndWhatAnotherPhoneTookIsNot)
{
    const struct
    {
        SIP_ENDING eEnding;
        CALL_END eEnd;
        const char* szReason;
        const char* szMissed;
    } endings[] = {{SIP_CANCELLED, CALL_MISSED, "", "1"},
                   {SIP_ELSEWHERE, CALL_HUNG_UP, "Another phone has answered", "0"},
                   {SIP_UNANSWERED, CALL_MISSED, "", "1"},
                   {SIP_BROKEN, CALL_MISSED, "", "1"}};
    int count = 0;
    for (const auto& each : endings) {
        arrives(arrival(IN + uint32_t(count)));
        tellEnd(IN + uint32_t(count), each.eEnding);
        ASSERT_TRUE(waitsForEnd(++count));
        EXPECT_EQ(lastEnded().eEnd, each.eEnd);
        EXPECT_EQ(lastEnded().strReason, each.szReason);
        EXPECT_EQ(history("missed", count).value(0), each.szMissed);
    }
}

TEST_F(SipCallTest, WhyOneFailsIsSaidForAPerson)
{
    const struct
    {
        SIP_ENDING eEnding;
        uint32_t nStatus;
        const char* szReason;
    } endings[] = {{SIP_REFUSED, 486, "Busy"},
                   {SIP_REFUSED, 600, "Busy"},
                   {SIP_REFUSED, 603, "The call was declined"},
                   {SIP_REFUSED, 404, "This number is not known"},
                   {SIP_REFUSED, 480, "Not available at present"},
                   {SIP_REFUSED, 403, "The server does not allow this call"},
                   {SIP_REFUSED, 407, "The server does not accept name or password"},
                   {SIP_REFUSED, 433, "Anonymous calls are not accepted"},
                   {SIP_REFUSED, 488, "The two phones have no sound in common"},
                   {SIP_REFUSED, 500, "The call could not be made"},
                   {SIP_UNANSWERED, 480, "Nobody answers"},
                   {SIP_BROKEN, 0, "The call could not be made"},
                   {SIP_BROKEN, 408, "The server does not answer"},
                   {SIP_REDIRECTED, 302, "The call could not be made"}};
    int count = 0;
    for (const auto& each : endings) {
        tellEnd(dials("300"), each.eEnding, each.nStatus);
        ASSERT_TRUE(waitsForEnd(++count));
        EXPECT_EQ(lastEnded().eEnd, CALL_FAILED);
        EXPECT_EQ(lastEnded().strReason, each.szReason);
    }
    tellEnd(talksOut(), SIP_BROKEN, 408);
    ASSERT_TRUE(waitsForEnd(++count));
    EXPECT_EQ(lastEnded().strReason, "The connection was lost");
}

TEST_F(SipCallTest, OneIsHeldAndTakenBackByOffers)
{
    talksOut();
    media->orders.clear();
    const int id = call().nId;
    EXPECT_TRUE(rules().setHeld(id, true));
    EXPECT_TRUE(call().bHeld);
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 2");
    // What is wanted meanwhile is offered when the other side has answered.
    EXPECT_TRUE(rules().setHeld(id, false));
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA));
    tellMedia(SIP_TALK, OUT, "held");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 3");
    tellMedia(SIP_TALK, OUT, "back");
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA));
    EXPECT_EQ(media->orders, (QStringList{"offer held", "agree held", "offer", "agree back"}));
    EXPECT_FALSE(call().bHeld);
}

TEST_F(SipCallTest, WhoRefusesToBeHeldHearsNothingAllTheSame)
{
    talksOut();
    media->orders.clear();
    const int id = call().nId;
    rules().setHeld(id, true);
    nextMedia(SIP_MEDIA);
    tellMedia(SIP_TALK, OUT, "");
    EXPECT_TRUE(kit::waitUntil([this] { return media->orders.contains("mute"); }));
    EXPECT_TRUE(call().bHeld);
    EXPECT_EQ(media->orders, (QStringList{"offer held", "withdraw", "mute"}));
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA)) << "it is not asked again";
    rules().setHeld(id, false);
    EXPECT_EQ(media->orders.last(), "unmute");
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA)) << "it was never held";
}

TEST_F(SipCallTest, WhoRefusesToBeTakenBackStaysHeld)
{
    talksOut();
    const int id = call().nId;
    rules().setHeld(id, true);
    nextMedia(SIP_MEDIA);
    tellMedia(SIP_TALK, OUT, "held");
    rules().setHeld(id, false);
    nextMedia(SIP_MEDIA);
    tellMedia(SIP_TALK, OUT, "");
    EXPECT_TRUE(holdIs(true));
    EXPECT_TRUE(heard.last().bHeld);
}

TEST_F(SipCallTest, TheOtherSideOffersAnewAndIsAnswered)
{
    talksIn(IN);
    media->orders.clear();
    tellMedia(SIP_OFFER, IN, "hold");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "answer 2");
    // An offer of this side waits until the other one has taken note.
    rules().setHeld(call().nId, true);
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA));
    tellMedia(SIP_TALK, IN, "hold");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 3");
    tellMedia(SIP_TALK, IN, "held");
    EXPECT_EQ(media->orders, (QStringList{"answer hold with", "offer held", "agree held"}));

    tellMedia(SIP_OFFER, IN, ""); // it wants an offer
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 4");
    tellMedia(SIP_TALK, IN, "taken");
    EXPECT_TRUE(kit::waitUntil([this] { return media->orders.last() == "agree taken"; }));

    media->bEmpty = true;
    tellMedia(SIP_OFFER, IN, "nothing of ours");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "") << "which refuses it";
    EXPECT_EQ(calls().size(), 1);
}

TEST_F(SipCallTest, AnOfferOfTheOtherSideTakesThePlaceOfTheOwn)
{
    talksOut();
    media->orders.clear();
    media->bSilent = true;
    const int id = call().nId;
    rules().setHeld(id, true);
    tellMedia(SIP_OFFER, OUT, "video");
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA));
    media->tellDescribed(id, "late offer");
    media->bSilent = false;
    EXPECT_EQ(media->orders, (QStringList{"offer held", "withdraw", "answer video with held"}));
    media->tellDescribed(id, "answer");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "answer");
    tellMedia(SIP_TALK, OUT, "video");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 2") << "what it was not told yet";
}

TEST_F(SipCallTest, TheOtherSidesHoldIsWhatItsMediaSay)
{
    const int id = talksIn(IN);
    tagCallStreams streams;
    streams.strSound = "Opus";
    streams.strPicture = "H.264";
    streams.bOtherHolds = true;
    media->tellChanged(id, streams);
    EXPECT_TRUE(call().bRemoteHeld);
    EXPECT_TRUE(call().bVideo);
    EXPECT_EQ(heard.last().streams.strSound, "Opus");
    const qsizetype told = heard.size();
    media->tellChanged(id, streams);
    EXPECT_EQ(heard.size(), told) << "nothing has changed";
    media->tellChanged(id, tagCallStreams());
    EXPECT_FALSE(call().bRemoteHeld);
    EXPECT_FALSE(call().bVideo);
}

TEST_F(SipCallTest, OneWithoutMediaEndsWithItsReason)
{
    media->bEmpty = true;
    EXPECT_EQ(phone_CallNumber("300", 0, -1), 1);
    EXPECT_TRUE(waitsForEnd());
    EXPECT_EQ(lastEnded().strReason, "Sound is not available at present");
    EXPECT_TRUE(agent.isQuiet(SIP_DIAL));
    phoneService::instance().answer(arrives(arrival(IN)));
    EXPECT_EQ(nextStatus(SIP_REFUSE), 488u);
    EXPECT_TRUE(waitsForEnd(2));
    EXPECT_EQ(lastEnded().eEnd, CALL_FAILED);
    media->bEmpty = false;
    tellMedia(SIP_TALK, dials("300"), "");
    EXPECT_EQ(nextStatus(SIP_HANG_UP), 488u);
    EXPECT_EQ(lastEnded().strReason, "The two phones have no sound in common");
}

TEST_F(SipCallTest, OneWhoseMediaProcessIsMissingIsNotTheOtherSidesFault)
{
    media->bMissing = true;
    phoneService::instance().answer(arrives(arrival(IN)));
    EXPECT_EQ(nextStatus(SIP_REFUSE), 500u);
    EXPECT_TRUE(waitsForEnd());
    EXPECT_EQ(lastEnded().eEnd, CALL_FAILED);
    EXPECT_EQ(lastEnded().strReason, "Sound is not available at present");
    EXPECT_EQ(phone_CallNumber("300", 0, -1), 1);
    EXPECT_TRUE(waitsForEnd(2));
    EXPECT_EQ(lastEnded().strReason, "Sound is not available at present");
}

TEST_F(SipCallTest, OneThatIsHungUpBeforeTheMediaAnswerIsNeverMade)
{
    media->bSilent = true;
    EXPECT_EQ(phone_CallNumber("300", 0, -1), 1);
    const int id = call().nId;
    EXPECT_TRUE(phoneService::instance().hangUp(id));
    media->tellDescribed(id, "late offer");
    EXPECT_TRUE(agent.isQuiet(SIP_DIAL));
    EXPECT_EQ(lastEnded().eEnd, CALL_HUNG_UP);
}

TEST_F(SipCallTest, ATransferEndsTheCallWhenItIsTaken)
{
    talksOut();
    EXPECT_TRUE(rules().transfer(call().nId, "400"));
    EXPECT_EQ(nextTarget(SIP_TRANSFER), "400");
    EXPECT_FALSE(rules().transfer(call().nId, "500"));
    EXPECT_EQ(call().strTarget, "400");
    tellStatus(SIP_TRANSFERRED, OUT, 200);
    EXPECT_TRUE(waitsForEnd());
    EXPECT_EQ(nextStatus(SIP_HANG_UP), 0u);
    EXPECT_EQ(lastEnded().eEnd, CALL_TRANSFERRED);
    EXPECT_EQ(lastEnded().strTarget, "400");
    // One that leaves as soon as it has taken it.
    talksIn(IN);
    rules().transfer(call().nId, "400");
    tellEnd(IN, SIP_HUNG_UP);
    EXPECT_TRUE(waitsForEnd(2));
    EXPECT_EQ(lastEnded().eEnd, CALL_TRANSFERRED);
}

TEST_F(SipCallTest, ATransferThatIsRefusedIsToldAndTheCallGoesOn)
{
    talksOut();
    rules().transfer(call().nId, "400");
    tellStatus(SIP_TRANSFERRED, OUT, 486);
    EXPECT_TRUE(
        kit::waitUntil([this] { return heard.last().strReason == "The other side refuses the transfer"; }));
    EXPECT_EQ(call().eState, CALL_TALKING);
    EXPECT_EQ(call().strReason, "") << "it is told once";
    EXPECT_EQ(call().strTarget, "");
    EXPECT_TRUE(rules().transfer(call().nId, "500")) << "it may be tried again";
}

TEST_F(SipCallTest, TonesGoWithTheSoundOrBesideItAndSecretOnesAreNotShown)
{
    talksOut();
    EXPECT_TRUE(rules().sendTones(call().nId, "1"));
    EXPECT_EQ(media->orders.last(), "tone 1");
    EXPECT_TRUE(agent.isQuiet(SIP_TONE));
    media->bTakesTones = false;
    backend().sendTone(call().nId, '#', true);
    const auto* tone = agent.next<tagSipTone>(SIP_TONE);
    ASSERT_TRUE(tone);
    EXPECT_EQ(tone->nTone, uint32_t('#'));
    EXPECT_EQ(call().strTones, QString("1") + QChar(0x2022));
}

TEST_F(SipCallTest, OneThatIsRedirectedIsFollowedAFewTimes)
{
    uint32_t wire = dials("300");
    for (int i = 0; i < 5; ++i) {
        const QByteArray target = "sip:40" + QByteArray::number(i) + "@example.com";
        tellEnd(wire, SIP_REDIRECTED, 302, target.constData());
        const auto* dial = agent.next<tagSipDial>(SIP_DIAL);
        ASSERT_TRUE(dial);
        EXPECT_NE(dial->head.nId, wire);
        EXPECT_STREQ(dial->szTarget, target.constData());
        EXPECT_STREQ(dial->szSdp, "offer 1");
        ASSERT_EQ(dial->nForwards, uint32_t(i + 1));
        EXPECT_STREQ(dial->szForwardedBy[0], "300");
        if (i > 0) {
            EXPECT_EQ(std::string(dial->szForwardedBy[i]), "sip:40" + std::to_string(i - 1) + "@example.com");
        }
        wire = dial->head.nId;
    }
    EXPECT_EQ(calls().size(), 1);
    EXPECT_EQ(call().strNumber, "300");
    EXPECT_EQ(call().strReached, "404@example.com");
    EXPECT_EQ(call().forwardedBy.join(' '),
              "300 400@example.com 401@example.com 402@example.com 403@example.com");
    tellEnd(wire, SIP_REDIRECTED, 302, "sip:405@example.com");
    EXPECT_TRUE(waitsForEnd());
    EXPECT_EQ(lastEnded().eEnd, CALL_FAILED);
    tellEnd(dials("300"), SIP_REDIRECTED, 302, "http://example.com");
    EXPECT_TRUE(waitsForEnd(2)) << "which is no phone";
}

TEST_F(SipCallTest, TheDeathOfTheAgentEndsThem)
{
    nuxSetRegistryInt("/rundata/config/user/user.ini", "CallWaiting", "bEnable", 1);
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_CALL_WAITING, 0);
    kit::settle();
    talksOut();
    arrives(arrival(IN));
    agent.leave();
    ASSERT_TRUE(waitsForEnd(2));
    EXPECT_TRUE(calls().isEmpty());
    EXPECT_EQ(heard[heard.size() - 2].eEnd, CALL_FAILED);
    EXPECT_EQ(heard[heard.size() - 2].strReason, "The connection was lost");
    EXPECT_EQ(heard.last().eEnd, CALL_MISSED);
    EXPECT_EQ(heard.last().strReason, "");
    EXPECT_EQ(history("missed", 2), (QStringList{"1", "0"}));
    EXPECT_EQ(media->orders.count("end"), 2);
}

TEST_F(SipCallTest, WhatTheNetworkCallsPeopleIsShortAndPlain)
{
    auto record = arrival(IN, "");
    const QString name = QString(200, 'x'), spoof = QString("A") + QChar(0x202e) + "nna";
    sipWire::setText(record.szNumber, spoof.toStdString());
    sipWire::setText(record.szName, name.toStdString());
    record.nForwards = 1;
    sipWire::setText(record.szForwardedBy[0], spoof.toStdString());
    arrives(record);
    const tagCall told = backend().calls().first();
    EXPECT_EQ(told.strNumber, "Anna");
    EXPECT_LE(told.strName.size(), CALL_NUMBER_MAX);
    EXPECT_EQ(told.forwardedBy, QStringList{"Anna"});
}

TEST_F(SipCallTest, WhoAsksToBeAnsweredIsWhereTheLineWantsThat)
{
    auto intercom = arrival(IN);
    intercom.bAutoAnswer = 1;
    const int id = arrives(intercom);
    kit::stepTime(1000);
    EXPECT_EQ(call().eState, CALL_RINGING);
    phoneService::instance().hangUp(id);
    ASSERT_EQ(nuxSetRegistryInt("/rundata/config/user/voip/sipAccount0.cfg", "AutoAnswer", "bByCaller", 1),
              1);
    agent.tell(arrival(IN + 1));
    EXPECT_TRUE(kit::waitUntil([] { return calls().size() == 1; }));
    kit::stepTime(1000);
    EXPECT_EQ(call().eState, CALL_RINGING) << "it did not ask";
    phoneService::instance().hangUp(call().nId);
    intercom = arrival(IN + 2);
    intercom.bAutoAnswer = 1;
    arrives(intercom);
    kit::stepTime(100);
    EXPECT_EQ(call().eState, CALL_TALKING);
    EXPECT_TRUE(call().options.bVideo && !call().options.bCamera) << "no words of his open the camera";
    phoneService::instance().hangUp(call().nId);
    talksIn(IN + 3);
    EXPECT_TRUE(call().options.bCamera) << "a hand does";
}

TEST_F(SipCallTest, ThereIsRoomForTwo)
{
    talksOut();
    dials("301");
    EXPECT_EQ(phone_CallNumber("302", 0, -1), 0);
    EXPECT_EQ(lastEnded().strReason, "No line is free");
    EXPECT_EQ(calls().size(), 2);
}

TEST_F(SipCallTest, TwoAreJoinedAndLeftAlone)
{
    nuxSetRegistryInt("/rundata/config/user/user.ini", "CallWaiting", "bEnable", 1);
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_CALL_WAITING, 0);
    kit::settle();
    const int one = talksIn(IN);
    const int two = talksIn(IN + 1);
    media->bJoins = false;
    EXPECT_FALSE(backend().join(one, two));
    EXPECT_EQ(calls()[0].nJoined, 0);
    media->bJoins = true;
    EXPECT_TRUE(backend().join(one, two));
    EXPECT_FALSE(backend().join(two, one)) << "they are joined";
    EXPECT_EQ(calls()[0].nJoined, two);
    EXPECT_EQ(calls()[1].nJoined, one);
    EXPECT_TRUE(backend().split(two));
    EXPECT_EQ(media->orders.last(), "split");
    EXPECT_EQ(calls()[0].nJoined, 0);
    EXPECT_EQ(calls()[1].nJoined, 0);
    EXPECT_FALSE(backend().split(one));
    EXPECT_TRUE(backend().join(one, two));
    tellEnd(IN, SIP_HUNG_UP);
    EXPECT_TRUE(waitsForEnd());
    EXPECT_EQ(call().nId, two);
    EXPECT_EQ(call().nJoined, 0);
    EXPECT_EQ(heard.last().nId, two) << "the other one is told that it is alone";
}

TEST_F(SipCallTest, AWatchedOneIsTakenFromWhereItRings)
{
    Lamps news;
    phoneLamps* lamps = backend().lamps();
    lamps->setNews(&news);
    lamps->watch({0, "1002"});
    const auto* watch = agent.next<tagSipWatch>(SIP_WATCH);
    ASSERT_TRUE(watch);
    EXPECT_STREQ(watch->szNumber, "1002");
    auto lamp = sipWire::make<tagSipLamp>(SIP_LAMP, watch->head.nId);
    lamp.eLamp = SIP_LAMP_RINGING;
    agent.tell(lamp);
    EXPECT_TRUE(kit::waitUntil([&] { return news.state == LAMP_RINGING; }));
    EXPECT_NE(lamps->pickUp({0, "1002"}), 0);
    const auto* taken = agent.next<tagSipPickUp>(SIP_PICK_UP);
    ASSERT_TRUE(taken);
    EXPECT_STREQ(taken->szNumber, "1002");
    EXPECT_STREQ(taken->szSdp, "offer 1");
    tellMedia(SIP_TALK, taken->head.nId, "their answer");
    EXPECT_EQ(call().eState, CALL_TALKING);
    agent.leave();
    EXPECT_TRUE(kit::waitUntil([&] { return news.state == LAMP_UNKNOWN; }));
    lamps->setNews(nullptr);
}

TEST_F(SipCallTest, TwoOtherSidesAreConnectedOrStay)
{
    nuxSetRegistryInt("/rundata/config/user/user.ini", "CallWaiting", "bEnable", 1);
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_CALL_WAITING, 0);
    kit::settle();
    const int one = talksIn(IN);
    const int two = talksIn(IN + 1);
    EXPECT_TRUE(rules().connect(one, two));
    EXPECT_FALSE(rules().connect(two, one)) << "they are being connected";
    const auto* order = agent.next<tagSipConnect>(SIP_CONNECT);
    ASSERT_TRUE(order);
    EXPECT_EQ(order->head.nId, uint32_t(IN));
    EXPECT_EQ(order->nOther, uint32_t(IN + 1));
    tellStatus(SIP_TRANSFERRED, IN, 603);
    tellStatus(SIP_TRANSFERRED, IN + 1, 603);
    EXPECT_EQ(calls().size(), 2);
    EXPECT_EQ(heard[heard.size() - 2].strReason, "The other side refuses the transfer");
    EXPECT_EQ(calls()[1].strTarget, "");
    EXPECT_TRUE(rules().connect(one, two));
    tellStatus(SIP_TRANSFERRED, IN, 200);
    EXPECT_TRUE(waitsForEnd(2));
    EXPECT_TRUE(calls().isEmpty());
    EXPECT_EQ(lastEnded().eEnd, CALL_TRANSFERRED);
    EXPECT_EQ(lastEnded().strTarget, "200");
}

TEST_F(SipCallTest, WhoTakesThePlaceOfAnotherIsAnsweredWithoutARing)
{
    const int before = talksIn(IN);
    auto record = arrival(IN + 1, "201", "new offer");
    record.nReplaces = IN;
    agent.tell(record);
    EXPECT_EQ(nextMedia(SIP_ANSWER), "answer 2");
    tellEnd(IN, SIP_REPLACED);
    EXPECT_TRUE(waitsForEnd());
    EXPECT_EQ(lastEnded().nId, before);
    EXPECT_EQ(lastEnded().eEnd, CALL_HUNG_UP);
    EXPECT_EQ(call().strNumber, "201");
    EXPECT_EQ(call().eState, CALL_TALKING);
    for (const tagCall& told : heard)
        EXPECT_FALSE(told.strNumber == "201" && told.eState == CALL_RINGING);
}

TEST_F(SipCallTest, WhomTheOtherSideWantsCalledIsCalledWhereThereIsRoom)
{
    talksIn(IN);
    auto record = sipWire::make<tagSipReferred>(SIP_REFERRED, IN);
    sipWire::setText(record.szTarget, "sip:0900@example.com");
    agent.tell(record);
    EXPECT_EQ(nextStatus(SIP_REFUSE), 603u) << "nobody has said that the other side may";
    EXPECT_EQ(calls().size(), 1);
    EXPECT_EQ(call().eState, CALL_TALKING);
    writeAccount(0, readFile("/rundata/config/user/voip/sipAccount0.cfg") + "[Transfer]\nbByOther=1\n");
    tellAccountChanged(0);
    sipWire::setText(record.szTarget, "http://example.com");
    agent.tell(record);
    EXPECT_EQ(nextStatus(SIP_REFUSE), 603u);
    sipWire::setText(record.szTarget, "sip:300@example.com;user=phone");
    agent.tell(record);
    const auto* dial = agent.next<tagSipDial>(SIP_DIAL);
    ASSERT_TRUE(dial);
    EXPECT_STREQ(dial->szTarget, "sip:300@example.com;user=phone");
    EXPECT_EQ(dial->nReferrer, uint32_t(IN));
    EXPECT_EQ(calls().last().strNumber, "300@example.com");
    agent.tell(record);
    EXPECT_EQ(nextStatus(SIP_REFUSE), 486u) << "there is no room for a third";
    EXPECT_EQ(calls().size(), 2);
}

TEST_F(SipCallTest, WhatTheAgentLeavesRingingEndsOnThePhone)
{
    arrives(arrival(IN));
    kit::stepTime(180000);
    EXPECT_EQ(call().eState, CALL_RINGING) << "that is for the agent";
    kit::stepTime(6000);
    EXPECT_EQ(nextStatus(SIP_REFUSE), 480u);
    EXPECT_EQ(lastEnded().eEnd, CALL_MISSED);
    EXPECT_EQ(lastEnded().strReason, "");

    dials("300");
    kit::stepTime(100000);
    tellEnd(OUT, SIP_REDIRECTED, 302, "sip:301@example.com");
    EXPECT_TRUE(agent.next<tagSipDial>(SIP_DIAL));
    kit::stepTime(100000);
    EXPECT_EQ(call().eState, CALL_RINGING) << "elsewhere it has its time anew";
    kit::stepTime(90000);
    EXPECT_EQ(nextStatus(SIP_HANG_UP), 0u);
    EXPECT_EQ(lastEnded().eEnd, CALL_FAILED);
    EXPECT_EQ(lastEnded().strReason, "Nobody answers");

    media->bSilent = true;
    EXPECT_EQ(phone_CallNumber("300", -1, -1), 1);
    kit::stepTime(186000);
    EXPECT_EQ(lastEnded().strReason, "Sound is not available at present");
    EXPECT_TRUE(calls().isEmpty());
}

TEST_F(SipCallTest, OneThatTalksHasNoLimit)
{
    talksOut();
    kit::stepTime(400000);
    EXPECT_EQ(call().eState, CALL_TALKING);
}
