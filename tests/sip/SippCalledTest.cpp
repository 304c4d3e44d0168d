// SIPp is the line's server, and is called.
#include "tests/kit/plain/ports.h"
#include "tests/sip/sippTest.h"
#include <cstring>

namespace {

// Half of the time after which a call that has ended is given up, and hung up for that alone.
constexpr int kBeforeGivenUpMs = 2500;

} // namespace

TEST_F(SipSipp, EarlyMediaThatNeedAnAcknowledgementGetOneFromACallThatWasAskedForThat)
{
    isCalled(SippScenario(SippScenario::CALLED)
                 .hears("INVITE")
                 .answersCall("421 Extension Required", "Require: 100rel")
                 .hears("ACK")
                 .hearsCall()
                 .with("Supported:.*100rel")
                 .answersCall("183 Session Progress", "Require: 100rel\nRSeq: 17", "v=0\ns=early")
                 .hears("PRACK")
                 .with("RAck: 17 [0-9]+ INVITE")
                 .answers("200 OK")
                 .answersCall("200 OK")
                 .hears("ACK")
                 .hears("BYE")
                 .answers("200 OK"));
    dial(1, "300");
    const auto* progress = next<tagSipProgress>(SIP_PROGRESS, 1);
    ASSERT_TRUE(progress);
    EXPECT_EQ(progress->nStatus, 183u);
    EXPECT_STREQ(progress->szSdp, "v=0\r\ns=early\r\n");
    expectTalk(1, "v=0\r\ns=early\r\n");
    tellStatus(SIP_HANG_UP, 1);
    expectDone(1);
}

TEST_F(SipSipp, ASessionThatIsTooShortForTheServerIsMadeLonger)
{
    isCalled(SippScenario(SippScenario::CALLED)
                 .hears("INVITE")
                 .with("Session-Expires: 1800")
                 .answersCall("422 Session Interval Too Small", "Min-SE: 4000")
                 .hears("ACK")
                 .hearsCall()
                 .with("Session-Expires: 4000")
                 .answersCall("200 OK", {}, kAnswer)
                 .hears("ACK")
                 .hears("BYE")
                 .answers("200 OK"));
    makeCall(1);
    tellStatus(SIP_HANG_UP, 1);
    expectDone(1);
}

TEST_F(SipSipp, WhoIsCalledAnonymouslyIsNotToldWho)
{
    isCalled(SippScenario(SippScenario::CALLED)
                 .hears("INVITE")
                 .with("Privacy: id")
                 .with("From: \"Anonymous\" <sip:anonymous@anonymous\\.invalid>")
                 .without("(From|Contact):[^\n]*(User|user)")
                 .answersCall("486 Busy Here")
                 .hears("ACK"));
    dial(1, "300", true);
    expectEnd(1, SIP_REFUSED, 486);
    sipp.expectDone();
}

TEST_F(SipSipp, WhoIsCalledSendsTheCallOn)
{
    isCalled(SippScenario(SippScenario::CALLED)
                 .hears("INVITE")
                 .answersCall("302 Moved Temporarily", "Contact: <sip:400@127.0.0.1>;q=0.9")
                 .hears("ACK"));
    dial(1, "300");
    const auto* ended = next<tagSipEnded>(SIP_ENDED, 1);
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->eEnding, uint32_t(SIP_REDIRECTED));
    EXPECT_TRUE(strstr(ended->szTarget, "400@127.0.0.1")) << ended->szTarget;
    sipp.expectDone();
}

TEST_F(SipSipp, TheAnswerThatCrossesTheEndIsAcknowledgedAndHungUp)
{
    isCalled(SippScenario(SippScenario::CALLED)
                 .hears("INVITE")
                 .answersCall("180 Ringing")
                 .hears("CANCEL")
                 .answersCall("200 OK", {}, kAnswer)
                 .hears("ACK")
                 .hears("BYE")
                 .within(kBeforeGivenUpMs)
                 .answers("200 OK"));
    dial(1, "300");
    ASSERT_TRUE(next<tagSipProgress>(SIP_PROGRESS, 1));
    tellStatus(SIP_HANG_UP, 1);
    expectEnd(1, SIP_HUNG_UP, 0);
    sipp.expectDone();
}

TEST_F(SipSipp, ThePhoneHoldsAndTheOtherSideUpdates)
{
    isCalled(calledTalks()
                 .hears("INVITE")
                 .with("a=sendonly")
                 .answers("200 OK", {}, "v=0\ns=held\na=recvonly")
                 .hears("ACK")
                 .asks("UPDATE", {}, "v=0\ns=update")
                 .hears(200)
                 .with("s=updated")
                 .asks("BYE")
                 .hears(200));
    makeCall(1);
    tellMedia(SIP_MEDIA, 1, "v=0\r\ns=hold\r\na=sendonly\r\n");
    expectTalk(1, "v=0\r\ns=held\r\na=recvonly\r\n");
    const auto* offer = next<tagSipMedia>(SIP_OFFER, 1);
    ASSERT_TRUE(offer);
    EXPECT_STREQ(offer->szSdp, "v=0\r\ns=update\r\n");
    tellMedia(SIP_MEDIA, 1, "v=0\r\ns=updated\r\n");
    expectDone(1);
}

TEST_F(SipSipp, ATonePressedGoesAsInfo)
{
    isCalled(calledTalks()
                 .hears("INFO")
                 .with("application/dtmf-relay")
                 .with("Signal=#")
                 .with("Duration=160")
                 .answers("200 OK")
                 .hears("BYE")
                 .answers("200 OK"));
    makeCall(1);
    auto tone = sipWire::make<tagSipTone>(SIP_TONE, 1);
    tone.nTone = '#';
    tone.nMs = 160;
    agent.tell(tone);
    tellStatus(SIP_HANG_UP, 1);
    expectDone(1);
}

TEST_F(SipSipp, ATransferIsAskedForAndItsOutcomeEndsTheCall)
{
    const QByteArray state = "Event: refer\nContent-Type: message/sipfrag\nSubscription-State: ";
    isCalled(calledTalks()
                 .hears("REFER")
                 .with("Refer-To: <sip:301@127\\.0\\.0\\.1")
                 .with("Referred-By:.*user0")
                 .answers("202 Accepted")
                 .asks("NOTIFY", state + "active;expires=60", "SIP/2.0 100 Trying")
                 .hears(200)
                 .asks("NOTIFY", state + "terminated;reason=noresource", "SIP/2.0 200 OK")
                 .hears(200)
                 .hears("BYE")
                 .answers("200 OK"));
    makeCall(1);
    tellTarget(SIP_TRANSFER, 1, "301");
    const auto* outcome = next<tagSipStatus>(SIP_TRANSFERRED, 1);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->nStatus, 200u);
    EXPECT_EQ(outcome->bTaken, 1u);
    tellStatus(SIP_HANG_UP, 1);
    expectDone(1);
}

TEST_F(SipSipp, ALineRegistersWithItsPassword)
{
    ASSERT_TRUE(agent.start(AgentProcess::calmSetup()));
    const uint32_t port = kit::freePort();
    const QByteArray realm =
        "WWW-Authenticate: Digest realm=\"home\", nonce=\"n\", algorithm=MD5, qop=\"auth\"";
    sipp.setLimit(60);
    sipp.startText(SippScenario(SippScenario::CALLED)
                       .hears("REGISTER")
                       .without("Authorization")
                       .answers("401 Unauthorized", realm)
                       .hears("REGISTER")
                       .with("username=\"auth0\"")
                       .without("s3cret")
                       .withPassword("auth0", "s3cret:0")
                       .answers("200 OK", "[last_Contact:]\nExpires: 3600")
                       .text(),
                   port, agent.port(), 1);
    agent.tell(accountAt(0, port));
    EXPECT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    sipp.expectDone();
}
