// What the media of calls on the wire mean for them: an answer that does not fit, the camera, encryption, and
// what is left of these when the media process dies.
#include "tests/services/sipStand.h"

namespace {

constexpr uint32_t OUT = SIP_CALL_FIRST;

class SipMediaTest : public SipPhone
{
protected:
    void SetUp() override { begin(); }
    static callRules& rules() { return phoneService::instance().rules(); }
    QString nextMedia(SIP_RECORD kind)
    {
        const auto* record = agent.next<tagSipMedia>(kind);
        return record ? QString(record->szSdp) : QString("nothing");
    }
};

} // namespace

TEST_F(SipMediaTest, TheCameraIsOpenedAndClosedByTheUserAndComesBackOnlyWhereItWasOpen)
{
    const int id = talksIn(IN);
    EXPECT_TRUE(media->lastWish.options.bCamera && !media->lastWish.bCameraNow);
    tagCallStreams streams;
    streams.nOwnPicture = 0;
    media->tellChanged(id, streams);
    media->tellLost();
    EXPECT_EQ(nextMedia(SIP_MEDIA).left(5), "offer");
    EXPECT_FALSE(media->lastWish.options.bCamera) << "it was not seen before";
    tellMedia(SIP_TALK, IN, "again");
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA));
    EXPECT_TRUE(rules().setCamera(id, true));
    EXPECT_EQ(nextMedia(SIP_MEDIA).left(5), "offer");
    EXPECT_TRUE(media->lastWish.options.bCamera && media->lastWish.bCameraNow);
    tellMedia(SIP_TALK, IN, "yes");
    streams.nOwnPicture = 1;
    media->tellChanged(id, streams);
    media->tellLost();
    EXPECT_EQ(nextMedia(SIP_MEDIA).left(5), "offer");
    EXPECT_TRUE(media->lastWish.options.bCamera);
    tellMedia(SIP_TALK, IN, "yes");
    EXPECT_TRUE(agent.isQuiet(SIP_MEDIA));
    EXPECT_TRUE(rules().setCamera(id, false));
    EXPECT_EQ(nextMedia(SIP_MEDIA).left(5), "offer");
    EXPECT_FALSE(media->lastWish.options.bCamera || media->lastWish.bCameraNow);
    phoneService::instance().hangUp(id);
    EXPECT_FALSE(rules().setCamera(id, true));
}

TEST_F(SipMediaTest, ACameraThatRestsWhileTheMediaDieIsStillTheUsers)
{
    const int id = talksIn(IN);
    tagCallStreams streams;
    streams.nOwnPicture = 1;
    media->tellChanged(id, streams);
    streams.nOwnPicture = 0; // the other side holds the call
    streams.bOtherHolds = true;
    for (int deaths = 0; deaths < 2; ++deaths) {
        media->tellChanged(id, streams);
        media->tellLost();
        EXPECT_EQ(nextMedia(SIP_MEDIA).left(5), "offer");
        EXPECT_TRUE(media->lastWish.options.bCamera) << deaths;
        tellMedia(SIP_TALK, IN, "again");
    }
    EXPECT_TRUE(rules().setCamera(id, false));
    EXPECT_EQ(nextMedia(SIP_MEDIA).left(5), "offer");
    tellMedia(SIP_TALK, IN, "yes");
    media->tellLost();
    EXPECT_EQ(nextMedia(SIP_MEDIA).left(5), "offer");
    EXPECT_FALSE(media->lastWish.options.bCamera);
}

TEST_F(SipMediaTest, AnAnswerThatDoesNotFitEndsTheCallAndTellsWhy)
{
    EXPECT_EQ(phone_CallNumber("300", 0, -1), 1);
    ASSERT_TRUE(agent.next<tagSipDial>(SIP_DIAL));
    const int id = call().nId;
    media->tellUnfit(id);
    EXPECT_EQ(call().eState, CALL_RINGING) << "an early one";
    tellMedia(SIP_TALK, OUT, "their answer");
    EXPECT_TRUE(kit::waitUntil([] { return call().eState == CALL_TALKING; }));
    media->tellUnfit(id);
    EXPECT_TRUE(agent.next<tagSipStatus>(SIP_HANG_UP));
    EXPECT_EQ(lastEnded().eEnd, CALL_FAILED);
    EXPECT_EQ(lastEnded().strReason, "The two phones have no sound in common");
    EXPECT_EQ(media->orders.last(), "end");
}

TEST_F(SipMediaTest, WhatWasEncryptedIsOfferedSoWhenItsMediaWereLost)
{
    const int id = talksIn(IN);
    EXPECT_FALSE(media->lastWish.bEncrypt);
    tagCallStreams streams;
    streams.bEncrypted = true;
    media->tellChanged(id, streams);
    media->tellLost();
    EXPECT_EQ(nextMedia(SIP_MEDIA).left(5), "offer");
    EXPECT_TRUE(media->lastWish.bEncrypt);
}
