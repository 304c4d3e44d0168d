// Who calls, before the call is answered: the picture that his server has of him, what a door phone shows,
// and what is agreed on early with whoever wants an offer.
#include "host/services/phone/callDevices.h"
#include "host/services/phone/callRules.h"
#include "host/services/phone/callSettings.h"
#include "support/host/registry.h"
#include "tests/services/sipStand.h"

namespace {

class SipArrivals : public SipPhone
{
protected:
    void SetUp() override { begin(); }
};

TEST_F(SipArrivals, TheCallersPictureIsThatOfTheLinesOwnServer)
{
    const auto pictureOf = [this](uint32_t wire, const QByteArray& address) {
        tagSipArrived record = arrival(wire);
        sipWire::setText(record.szPicture, address.toStdString());
        const int id = arrives(record);
        const QString picture = call().strPicture;
        phoneService::instance().hangUp(id);
        return picture;
    };
    const QByteArray server = "sip.example.com";
    EXPECT_EQ(pictureOf(IN, "https://" + server + ":8443/a%20b.png?x=1"),
              "https://" + server + ":8443/a%20b.png?x=1");
    const QList<QByteArray> others = {"",
                                      "https://elsewhere.test/a.png",
                                      "https://" + server + ".elsewhere.test/a.png",
                                      "https://" + server + "@elsewhere.test/a.png",
                                      "https://user:secret@" + server + "/a.png",
                                      "http://127.0.0.1/a.png",
                                      "https://[/a.png"};
    for (qsizetype i = 0; i < others.size(); ++i)
        EXPECT_EQ(pictureOf(IN + 1 + uint32_t(i), others[i]), "") << others[i].constData();
}

class SipEarly : public SipArrivals
{
protected:
    void SetUp() override
    {
        setMode(CALL_MODE_VOICE);
        begin();
    }
    static void setMode(int mode)
    {
        nuxSetRegistryInt("/rundata/config/user/voip/sipAccount0.cfg", "CallOption", "eCallMode", mode);
    }
    // Somebody who wants an offer as soon as it rings.
    static tagSipArrived wanting(uint32_t wire)
    {
        tagSipArrived record = arrival(wire, "200", "");
        record.bWantsEarly = 1;
        return record;
    }
};

TEST_F(SipEarly, WhoWantsAnOfferHasItWhileItRingsAndNothingIsHeardUntilTheAnswer)
{
    const int id = arrives(wanting(IN));
    EXPECT_EQ(nextMedia(SIP_RING), "offer 1");
    EXPECT_TRUE(media->lastWish.bPreview) << "no microphone is to open";
    EXPECT_TRUE(agent.isQuiet(SIP_RING));
    EXPECT_EQ(call().eState, CALL_RINGING);
    tellMedia(SIP_EARLY, IN, "their answer");
    tellMedia(SIP_EARLY, IN, "another one");
    EXPECT_EQ(media->orders, (QStringList{"offer", "agree their answer"}));
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER), "");
    EXPECT_EQ(media->orders.last(), "begin");
    tellMedia(SIP_TALK, IN, "their answer");
    EXPECT_TRUE(kit::waitUntil([] { return call().eState == CALL_TALKING; }));
    EXPECT_EQ(media->orders, (QStringList{"offer", "agree their answer", "begin"}));
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA)) << "nothing is left to be offered";
}

TEST_F(SipEarly, TheUserMayBeQuickerThanTheAnswerToTheOffer)
{
    const int id = arrives(wanting(IN));
    EXPECT_EQ(nextMedia(SIP_RING), "offer 1");
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER), "");
    tellMedia(SIP_EARLY, IN, "their answer");
    tellMedia(SIP_TALK, IN, "their answer");
    EXPECT_EQ(media->orders, (QStringList{"offer", "begin", "agree their answer"}));
    EXPECT_EQ(call().eState, CALL_TALKING);
}

TEST_F(SipEarly, UntilHeHasAnsweredTheOfferNobodyTalksAndWhoGivesUpIsMissed)
{
    int ended = 0;
    for (const SIP_ENDING ending : {SIP_CANCELLED, SIP_HUNG_UP, SIP_BROKEN, SIP_UNANSWERED}) {
        SCOPED_TRACE(ending);
        const uint32_t wire = IN + uint32_t(ending);
        const int id = arrives(wanting(wire));
        EXPECT_EQ(nextMedia(SIP_RING).left(5), "offer");
        EXPECT_TRUE(phoneService::instance().answer(id));
        EXPECT_EQ(nextMedia(SIP_ANSWER), "");
        EXPECT_FALSE(phoneService::instance().rules().transfer(id, "300")) << "there is no call yet";
        EXPECT_FALSE(kit::waitUntil([] { return call().nSeconds > 0; }, 1200)) << "nobody talks";
        tellEnd(wire, ending, ending == SIP_BROKEN ? 504 : 0);
        ASSERT_TRUE(waitsForEnd(++ended));
        EXPECT_EQ(lastEnded().eEnd, CALL_MISSED);
        EXPECT_EQ(lastEnded().nSeconds, 0);
        EXPECT_EQ(lastEnded().strReason, "");
    }
    const int id = arrives(wanting(IN + 10));
    EXPECT_EQ(nextMedia(SIP_RING).left(5), "offer");
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER), "");
    tellMedia(SIP_EARLY, IN + 10, "their answer");
    EXPECT_TRUE(kit::waitUntil([] { return call().nSeconds > 0; })) << "the answer is on its way";
}

TEST_F(SipEarly, AnAnswerThatIsNoneIsTheAgentsToRefuse)
{
    for (const bool isAnswered : {false, true}) {
        SCOPED_TRACE(isAnswered);
        const uint32_t wire = IN + isAnswered;
        const int id = arrives(wanting(wire));
        EXPECT_EQ(nextMedia(SIP_RING).left(5), "offer");
        if (isAnswered) {
            EXPECT_TRUE(phoneService::instance().answer(id));
        }
        tellEnd(wire, SIP_REFUSED, 488);
        ASSERT_TRUE(waitsForEnd(isAnswered ? 2 : 1));
        EXPECT_EQ(lastEnded().eEnd, isAnswered ? CALL_FAILED : CALL_UNFIT);
        EXPECT_EQ(lastEnded().strReason, "The two phones have no sound in common");
    }
}

TEST_F(SipEarly, TheUserMayBeQuickerThanTheOffer)
{
    media->bSilent = true;
    const int id = arrives(wanting(IN));
    EXPECT_EQ(media->orders, QStringList{"offer"});
    media->bSilent = false;
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER), "offer 1");
    EXPECT_FALSE(media->lastWish.bPreview);
    tellMedia(SIP_TALK, IN, "their answer");
    EXPECT_EQ(media->orders, (QStringList{"offer", "offer", "agree their answer"}));
}

TEST_F(SipEarly, WhatCannotBeOfferedRingsAllTheSame)
{
    media->bMissing = media->bEmpty = true;
    const int id = arrives(wanting(IN));
    EXPECT_EQ(nextMedia(SIP_RING), "");
    EXPECT_EQ(call().eState, CALL_RINGING);
    media->bMissing = media->bEmpty = false;
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER), "offer 1");
}

// A caller who wants the offer with the ringing hears none without it.
TEST_F(SipEarly, WhileTheMediaSayNothingItRingsHereAloneAndThereAsSoonAsOthersDo)
{
    media->bSilent = true;
    arrives(wanting(IN));
    EXPECT_EQ(media->orders, QStringList{"offer"});
    EXPECT_TRUE(agent.isQuiet(SIP_RING));
    EXPECT_EQ(call().eState, CALL_RINGING);
    media->bSilent = false;
    media->tellLost();
    EXPECT_EQ(nextMedia(SIP_RING), "offer 1");
    EXPECT_TRUE(media->lastWish.bPreview) << "no microphone is to open";
}

TEST_F(SipEarly, AnAnswerWithNothingInCommonEndsTheRinging)
{
    const int id = arrives(wanting(IN));
    EXPECT_EQ(nextMedia(SIP_RING), "offer 1");
    tellMedia(SIP_EARLY, IN, "their answer");
    media->tellUnfit(id);
    const auto* refusal = agent.next<tagSipStatus>(SIP_REFUSE);
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->nStatus, 488u);
    EXPECT_EQ(refusal->nWarning, 399u);
    ASSERT_TRUE(waitsForEnd());
    EXPECT_EQ(lastEnded().eEnd, CALL_UNFIT);
    EXPECT_EQ(lastEnded().strReason, "The two phones have no sound in common");
}

// The answer of the user was on its way already.
TEST_F(SipEarly, AnAnswerWithNothingInCommonThatComesAfterTheUsersEndsTheCallAndTellsBothWhy)
{
    const int id = arrives(wanting(IN));
    EXPECT_EQ(nextMedia(SIP_RING), "offer 1");
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER), "");
    tellMedia(SIP_EARLY, IN, "their answer");
    EXPECT_TRUE(kit::waitUntil([this] { return media->orders.last() == "agree their answer"; }));
    media->tellUnfit(id);
    EXPECT_EQ(nextStatus(SIP_HANG_UP), 488u);
    ASSERT_TRUE(waitsForEnd());
    EXPECT_EQ(lastEnded().eEnd, CALL_FAILED);
    EXPECT_EQ(lastEnded().strReason, "The two phones have no sound in common");
}

TEST_F(SipEarly, PicturesAreOfferedToHimOnceTheUserHasAnswered)
{
    setMode(CALL_MODE_VIDEO);
    tellAccountChanged(0);
    const int id = arrives(wanting(IN));
    EXPECT_EQ(nextMedia(SIP_RING), "offer 1");
    EXPECT_FALSE(media->lastWish.options.bVideo);
    tellMedia(SIP_EARLY, IN, "their answer");
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER), "");
    tellMedia(SIP_TALK, IN, "their answer");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 2");
    EXPECT_TRUE(media->lastWish.options.bVideo);
    EXPECT_TRUE(media->lastWish.bCameraNow) << "the user has answered with it";
}

TEST_F(SipEarly, WhatWasAgreedOnWithMediaThatDiedIsOfferedAnewInTheCall)
{
    const int id = arrives(wanting(IN));
    EXPECT_EQ(nextMedia(SIP_RING), "offer 1");
    tellMedia(SIP_EARLY, IN, "their answer");
    media->tellLost();
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER), "");
    tellMedia(SIP_TALK, IN, "their answer");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 2");
    EXPECT_FALSE(media->lastWish.bPreview);
}

TEST_F(SipEarly, WhoCallsMayOfferAnewWhileItRings)
{
    const int id = arrives(wanting(IN));
    EXPECT_EQ(nextMedia(SIP_RING), "offer 1");
    tellMedia(SIP_OFFER, IN, "too soon");
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA)) << "he owes an answer himself";
    tellMedia(SIP_EARLY, IN, "their answer");
    tellMedia(SIP_OFFER, IN, "their offer");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "answer 2");
    EXPECT_TRUE(media->lastWish.bPreview);
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER), "");
    tellMedia(SIP_TALK, IN, "their offer");
    EXPECT_EQ(call().eState, CALL_TALKING);
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA));
}

class SipDoorTest : public SipArrivals
{
protected:
    SipDoorTest()
    {
        callDevicesAre([] {
            tagCallDevice door;
            door.strNumber = "200";
            return QList<tagCallDevice>{door};
        });
    }
    ~SipDoorTest() override { callDevicesAre(nullptr); }
};

TEST_F(SipDoorTest, TheDoorIsSeenWhileItRingsAndTheAnswerIsTheOneThatItKnows)
{
    const int id = arrives(arrival(IN, "200", "their offer"));
    EXPECT_EQ(nextMedia(SIP_RING), "");
    EXPECT_EQ(nextMedia(SIP_RING), "answer 1");
    EXPECT_TRUE(media->lastWish.bPreview);
    EXPECT_EQ(call().eState, CALL_RINGING);
    EXPECT_EQ(media->orders, QStringList{"answer their offer with"});
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER), "answer 1");
    EXPECT_EQ(media->orders, (QStringList{"answer their offer with", "begin"}));
    tellMedia(SIP_TALK, IN, "their offer");
    EXPECT_TRUE(kit::waitUntil([] { return call().eState == CALL_TALKING; }));
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA)) << "nothing is left to be offered";
}

TEST_F(SipDoorTest, TheDoorMayOfferAnewWhileItRingsAndIsAnsweredSo)
{
    const int id = arrives(arrival(IN, "200", "their offer"));
    EXPECT_EQ(nextMedia(SIP_RING), "");
    EXPECT_EQ(nextMedia(SIP_RING), "answer 1");
    media->orders.clear();
    tellMedia(SIP_OFFER, IN, "moved");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "answer 2");
    EXPECT_TRUE(media->lastWish.bPreview);
    media->bEmpty = true;
    tellMedia(SIP_OFFER, IN, "odd");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "") << "what is refused changes nothing";
    media->bEmpty = false;
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER), "answer 2");
    EXPECT_EQ(media->orders, (QStringList{"answer moved with", "answer odd with", "begin"}));
}

TEST_F(SipDoorTest, AnAnswerWhileItsOfferIsLookedAtLeavesTheOfferItsOwn)
{
    const int id = arrives(arrival(IN, "200", "their offer"));
    EXPECT_EQ(nextMedia(SIP_RING), "");
    EXPECT_EQ(nextMedia(SIP_RING), "answer 1");
    media->bSilent = true;
    tellMedia(SIP_OFFER, IN, "moved");
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER), "answer 1");
    media->tellLost();
    EXPECT_EQ(media->orders.last(), "answer moved with") << "other media are asked for the same";
    media->tellDescribed(id, "late");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "late");
    tellMedia(SIP_TALK, IN, "moved");
    EXPECT_EQ(call().eState, CALL_TALKING);
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA));
}

TEST_F(SipDoorTest, WithoutAPreviewItIsAnsweredAsAnybody)
{
    media->bEmpty = true;
    const int id = arrives(arrival(IN, "200", "their offer"));
    EXPECT_EQ(nextMedia(SIP_RING), "");
    EXPECT_TRUE(agent.isQuiet(SIP_RING));
    media->bEmpty = false;
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER).left(6), "answer");
    EXPECT_FALSE(media->lastWish.bPreview);
}

TEST_F(SipDoorTest, AnswerAndEndMayComeBeforeThePreview)
{
    media->bSilent = true;
    const int id = arrives(arrival(IN, "200", "their offer"));
    EXPECT_EQ(nextMedia(SIP_RING), "");
    media->bSilent = false;
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_FALSE(media->lastWish.bPreview);
    EXPECT_EQ(nextMedia(SIP_ANSWER).left(6), "answer");
    const int second = arrives(arrival(IN + 1, "200", "their offer"));
    EXPECT_TRUE(phoneService::instance().hangUp(second));
    EXPECT_EQ(nextStatus(SIP_REFUSE), 603u);
}

TEST_F(SipDoorTest, NewMediaAreAskedForAPreviewAndForNoAnswer)
{
    media->bSilent = true;
    arrives(arrival(IN, "200", "their offer"));
    EXPECT_EQ(nextMedia(SIP_RING), "");
    media->bSilent = false;
    media->lastWish = {};
    media->tellLost();
    EXPECT_TRUE(media->lastWish.bPreview) << "no microphone is to open";
    EXPECT_EQ(nextMedia(SIP_RING).left(6), "answer");
    EXPECT_EQ(call().eState, CALL_RINGING);
}

TEST_F(SipDoorTest, WhatWasSeenOfMediaThatDiedIsOfferedAnewInTheCall)
{
    const int id = arrives(arrival(IN, "200", "their offer"));
    EXPECT_EQ(nextMedia(SIP_RING), "");
    EXPECT_EQ(nextMedia(SIP_RING), "answer 1");
    media->tellLost();
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_EQ(nextMedia(SIP_ANSWER), "answer 2");
    EXPECT_FALSE(media->lastWish.bPreview);
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA));
    tellMedia(SIP_TALK, IN, "their offer");
    EXPECT_EQ(nextMedia(SIP_MEDIA), "offer 3") << "the door goes by the answer that it had first";
}

TEST_F(SipDoorTest, OthersAreNotSeen)
{
    arrives(arrival(IN, "201", "their offer"));
    EXPECT_EQ(nextMedia(SIP_RING), "");
    EXPECT_TRUE(agent.isQuiet(SIP_RING));
    EXPECT_EQ(media->orders, QStringList());
}

} // namespace
