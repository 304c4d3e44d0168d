// Who calls, before the call is answered: the picture that his server has of him, and what a door phone
// shows.
#include "host/services/phone/callDevices.h"
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
