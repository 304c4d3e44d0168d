// A phone that nobody here wrote, at both exchanges, with the phone's own agent at the other end.
#include "tests/pbx/baresipProcess.h"
#include "tests/pbx/kamailioProcess.h"
#include "tests/pbx/peerAgent.h"
#include "tests/pbx/registrarProcess.h"

namespace {

class WithBaresip : public ::testing::Test
{
protected:
    // Both register there, call each other, and each hangs up once.
    void callInBothDirections(uint32_t server)
    {
        BaresipProcess other;
        PeerAgent phone;
        ASSERT_TRUE(other.start("1002", server, RegistrarProcess::passwordOf("1002")))
            << other.output().constData();
        ASSERT_TRUE(other.prints("[1 binding]")) << other.output().constData();
        ASSERT_TRUE(phone.begin("1001", server));

        phone.dial(1, "1002");
        ASSERT_TRUE(other.tells("CALL_INCOMING")) << other.output().constData();
        EXPECT_TRUE(phone.next<tagSipProgress>(SIP_PROGRESS, 1));
        other.command("accept");
        phone.expectTalk(1);
        EXPECT_TRUE(other.tells("CALL_ESTABLISHED")) << other.output().constData();
        phone.hangUp(1);
        phone.expectEnd(1, SIP_HUNG_UP, 0);
        EXPECT_TRUE(other.tells("CALL_CLOSED")) << other.output().constData();

        other.dial("1001", server);
        const uint32_t id = phone.arrives();
        ASSERT_NE(id, 0u) << other.output().constData();
        phone.ring(id);
        EXPECT_TRUE(other.tells("CALL_RINGING")) << other.output().constData();
        phone.answer(id);
        EXPECT_TRUE(other.tells("CALL_ESTABLISHED")) << other.output().constData();
        phone.expectTalk(id);
        other.command("hangup");
        phone.expectEnd(id, SIP_HUNG_UP, 0);

        other.dial("1001", server);
        const uint32_t second = phone.arrives();
        phone.tellStatus(SIP_REFUSE, second, 486);
        EXPECT_TRUE(other.tells("486 Busy Here")) << other.output().constData();
    }
};

} // namespace

TEST_F(WithBaresip, AtTheExchangeThatComesAlong)
{
    RegistrarProcess pbx;
    ASSERT_TRUE(pbx.start({"--md5"})) << pbx.output().constData();
    callInBothDirections(pbx.port());
}

TEST_F(WithBaresip, AtKamailio)
{
    KamailioProcess server;
    ASSERT_NO_FATAL_FAILURE(server.start());
    callInBothDirections(server.port());
}

TEST_F(WithBaresip, AWrongPasswordIsNotTaken)
{
    RegistrarProcess pbx;
    ASSERT_TRUE(pbx.start({"--md5"})) << pbx.output().constData();
    BaresipProcess other;
    ASSERT_TRUE(other.start("1002", pbx.port(), "guess")) << other.output().constData();
    EXPECT_TRUE(other.prints("401 Unauthorized")) << other.output().constData();
}
