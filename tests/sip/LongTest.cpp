// What the standard gives half a minute and more: with HX_LONG alone.
#include "tests/sip/callTest.h"

namespace {

constexpr int kLongMs = 60000; // beyond each of its times

class SipLong : public SipCalls
{
protected:
    void SetUp() override
    {
        if (!qEnvironmentVariableIsSet("HX_LONG"))
            GTEST_SKIP() << "takes most of a minute: ./test --long";
    }
};

} // namespace

TEST_F(SipLong, AnAnswerThatNobodyAcknowledgesEndsTheCall)
{
    begin();
    peer->send(inviteText("never"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, SIP_CALL_FIRST_INCOMING));
    tellMedia(SIP_ANSWER, SIP_CALL_FIRST_INCOMING, "v=0\r\ns=answer\r\n");
    EXPECT_NE(peer->receive("SIP/2.0 200").toStdString(), "");
    EXPECT_NE(peer->receive("BYE", kLongMs).toStdString(), "");
    // Whatever is said to that.
    const auto* ended = next<tagSipEnded>(SIP_ENDED, SIP_CALL_FIRST_INCOMING);
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->eEnding, uint32_t(SIP_BROKEN));
}

TEST_F(SipLong, ASessionIsRefreshedWithoutAWordAboutItsMedia)
{
    begin();
    dial(1, "300");
    lastInvite = peer->receive("INVITE");
    peer->reply(lastInvite, "200 OK",
                "Contact: <sip:300@127.0.0.1:" + QByteArray::number(peer->port()) +
                    ">\r\nRequire: timer\r\nSession-Expires: 90;refresher=uac\r\n"
                    "Content-Type: application/sdp",
                "v=0\r\ns=answer\r\n");
    ASSERT_TRUE(next<tagSipMedia>(SIP_TALK, 1));
    EXPECT_NE(peer->receive("ACK").toStdString(), "");
    QByteArray refresh;
    do {
        refresh = peer->receive(kLongMs);
    } while (refresh.startsWith("SUBSCRIBE") || refresh.startsWith("\r\n"));
    EXPECT_TRUE(refresh.startsWith("UPDATE")) << refresh.constData();
    EXPECT_EQ(headerOf(refresh, "Content-Length").toStdString(), "0");
    peer->reply(refresh, "405 Method Not Allowed");
    EXPECT_EQ(peer->receive("BYE", 500).toStdString(), "");
    tellMedia(SIP_MEDIA, 1, "v=0\r\ns=later\r\n");
    EXPECT_TRUE(peer->receive("INVITE").endsWith("s=later\r\n"));
}
