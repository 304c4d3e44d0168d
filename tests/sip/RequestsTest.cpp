// What this side asks within a call: tones, signs that it is still there, its end.
#include "tests/kit/plain/ports.h"
#include "tests/sip/callTest.h"
#include "tests/sip/certificates.h"
#include <QFile>
#include <QTemporaryDir>

namespace {

constexpr const char* kAsks = "407 Proxy Authentication Required";

QByteArray challenge(const QByteArray& nonce)
{
    return "Proxy-Authenticate: Digest realm=\"home\", nonce=\"" + nonce + "\", qop=\"auth\"";
}

class SipRequests : public SipCalls
{
protected:
    void press(uint32_t id, char key)
    {
        auto tone = sipWire::make<tagSipTone>(SIP_TONE, id);
        tone.nTone = uint32_t(key);
        tone.nMs = 160;
        agent.tell(tone);
    }
    // The next tone that goes out, which is answered; "type body" of it.
    QByteArray nextTone(const QByteArray& status)
    {
        const QByteArray info = peer->receive("INFO");
        peer->reply(info, status);
        return headerOf(info, "Content-Type") + " " + info.mid(info.indexOf("\r\n\r\n") + 4).simplified();
    }
    // The server takes the end of a call only so.
    void expectEndWithPassword(const QByteArray& nonce)
    {
        const QByteArray bye = peer->receive("BYE");
        const QByteArray answer = headerOf(bye, "Proxy-Authorization");
        EXPECT_EQ(paramOf(answer, "nonce").toStdString(), nonce.toStdString()) << bye.constData();
        EXPECT_EQ(paramOf(answer, "response").toStdString(),
                  digestOf("BYE", answer, "auth0", "s3cret:0").toStdString());
        peer->reply(bye, "200 OK");
    }
};

} // namespace

TEST_F(SipRequests, WhoReadsNoLongTonesIsSentShortOnesForTheRestOfTheCall)
{
    begin();
    ASSERT_NE(talkOut(1), 0u);
    for (const char key : {'1', '#', '3'})
        press(1, key);
    EXPECT_EQ(nextTone("415 Unsupported Media Type").toStdString(),
              "application/dtmf-relay Signal=1 Duration=160");
    for (const char* tone : {"application/dtmf 1", "application/dtmf #", "application/dtmf 3"})
        EXPECT_EQ(nextTone("200 OK").toStdString(), tone) << "in their order";
    press(1, '*');
    EXPECT_EQ(nextTone("200 OK").toStdString(), "application/dtmf *");
    // The next call is another phone's.
    tellStatus(SIP_HANG_UP, 1);
    peer->reply(peer->receive("BYE"), "200 OK");
    ASSERT_NE(talkOut(2), 0u);
    press(2, '7');
    EXPECT_EQ(nextTone("200 OK").toStdString(), "application/dtmf-relay Signal=7 Duration=160");
}

TEST_F(SipRequests, WhoReadsNoTonesAtAllIsAskedOnceMoreForEachAndTheCallGoesOn)
{
    begin();
    ASSERT_NE(talkOut(1), 0u);
    press(1, '1');
    EXPECT_EQ(nextTone("415 Unsupported Media Type").toStdString(),
              "application/dtmf-relay Signal=1 Duration=160");
    EXPECT_EQ(nextTone("415 Unsupported Media Type").toStdString(), "application/dtmf 1");
    EXPECT_TRUE(next<tagSipHead>(SIP_TONES_REFUSED, 1)) << "who presses hears of it";
    EXPECT_EQ(peer->receive("INFO", 300).toStdString(), "");
    press(1, '2');
    EXPECT_EQ(nextTone("415 Unsupported Media Type").toStdString(), "application/dtmf 2");
    EXPECT_FALSE(next<tagSipHead>(SIP_TONES_REFUSED, 1, 300)) << "once";
    press(1, '3');
    EXPECT_EQ(nextTone("200 OK").toStdString(), "application/dtmf 3") << "the call goes on";
}

TEST_F(SipRequests, AToneThatIsRefusedForWhateverElseIsToldOfToo)
{
    begin();
    uint32_t id = 0;
    for (const char* status : {"405 Method Not Allowed", "500 Server Internal Error", "603 Decline"}) {
        SCOPED_TRACE(status);
        ASSERT_NE(talkOut(++id), 0u);
        press(id, '1');
        EXPECT_EQ(nextTone("200 OK").toStdString(), "application/dtmf-relay Signal=1 Duration=160");
        press(id, '2');
        EXPECT_EQ(nextTone(status).toStdString(), "application/dtmf-relay Signal=2 Duration=160");
        EXPECT_TRUE(next<tagSipHead>(SIP_TONES_REFUSED, id));
        tellStatus(SIP_HANG_UP, id);
        peer->reply(peer->receive("BYE"), "200 OK");
    }
}

TEST_F(SipRequests, TheEndOfACallWaitsForNoAnswerToAnythingElse)
{
    begin();
    uint32_t id = 0;
    for (const char* pending : {"INFO", "REFER"}) {
        SCOPED_TRACE(pending);
        ASSERT_NE(talkOut(++id), 0u);
        if (QByteArray(pending) == "INFO")
            press(id, '1');
        else
            tellTarget(SIP_TRANSFER, id, "400");
        const QByteArray request = peer->receive(pending);
        EXPECT_NE(request.toStdString(), "");
        tellStatus(SIP_HANG_UP, id);
        expectEnd(id, SIP_HUNG_UP, 0);
        const QByteArray bye = peer->receive("BYE");
        ASSERT_NE(bye.toStdString(), "") << "the stack would have it wait";
        EXPECT_GT(headerOf(bye, "CSeq").split(' ').first().toInt(),
                  headerOf(request, "CSeq").split(' ').first().toInt());
        // Whatever comes when, the agent goes on.
        if (id == 1) {
            peer->reply(request, "200 OK");
            peer->reply(bye, "200 OK");
        } else {
            peer->reply(bye, "200 OK");
            peer->reply(request, "481 Call Does Not Exist");
        }
    }
    EXPECT_NE(talkOut(++id), 0u);
}

// A call from here, whose INVITE the server has asked the password for.
TEST_F(SipRequests, TheEndOfACallIsSentAgainWithThePasswordWhateverTheAnswerToAnOffer)
{
    begin();
    uint32_t id = 0;
    for (const char* status : {"", "100 Trying", "200 OK", "487 Request Terminated", "491 Request Pending",
                               "407 Proxy Authentication Required"}) {
        SCOPED_TRACE(status);
        dial(++id, "300");
        peer->reply(peer->receive("INVITE"), kAsks, challenge("begin"));
        peer->reply(peer->receive("INVITE"), "200 OK", withSdp(), "v=0\r\ns=answer\r\n");
        ASSERT_TRUE(next<tagSipMedia>(SIP_TALK, id));
        tellMedia(SIP_MEDIA, id, "v=0\r\ns=hold\r\n");
        const QByteArray offer = peer->receive("INVITE");
        ASSERT_NE(offer.toStdString(), "");
        tellStatus(SIP_HANG_UP, id);
        expectEnd(id, SIP_HUNG_UP, 0);
        const QByteArray bye = peer->receive("BYE");
        ASSERT_NE(bye.toStdString(), "");
        if (*status == '2')
            peer->reply(offer, status, withSdp(), "v=0\r\ns=held\r\n");
        else if (*status)
            peer->reply(offer, status, *status == '4' ? challenge("offer") : QByteArray());
        expectTaken();
        peer->reply(bye, kAsks, challenge("end"));
        expectEndWithPassword("end");
    }
}

TEST_F(SipRequests, TheEndOfACallFromOutsideIsSentAgainWithThePassword)
{
    begin();
    for (const char* name : {"asked", "askedTwice"}) {
        SCOPED_TRACE(name);
        const uint32_t id = talkIn(name);
        ASSERT_NE(id, 0u);
        tellStatus(SIP_HANG_UP, id);
        expectEnd(id, SIP_HUNG_UP, 0);
        peer->reply(peer->receive("BYE"), kAsks, challenge("end"));
        if (QByteArray(name) == "askedTwice") {
            peer->reply(peer->receive("BYE"), kAsks, challenge("later") + ", stale=true");
            expectEndWithPassword("later");
        } else {
            expectEndWithPassword("end");
        }
    }
}

TEST_F(SipRequests, TheEndOfACallGoesOverAWayThatAnswersNothing)
{
    begin();
    for (uint32_t id = 1; id <= 2; ++id) {
        ASSERT_NE(talkOut(id), 0u);
        press(id, '1');
        EXPECT_NE(peer->receive("INFO").toStdString(), "");
        tellStatus(SIP_HANG_UP, id);
        expectEnd(id, SIP_HUNG_UP, 0);
        EXPECT_NE(peer->receive("BYE").toStdString(), "");
    }
    agent.tell(sipWire::make<tagSipHead>(SIP_END, 0));
    EXPECT_TRUE(agent.ends());
    EXPECT_FALSE(agent.hasCrashed());
}

TEST_F(SipRequests, AnOfferKeepsTheTimeThatTheSessionWasAgreedFor)
{
    begin();
    dial(1, "300");
    lastInvite = peer->receive("INVITE");
    EXPECT_TRUE(headerOf(lastInvite, "Session-Expires").startsWith("1800")) << lastInvite.constData();
    const QByteArray own = "Contact: <sip:300@127.0.0.1:" + QByteArray::number(peer->port()) +
                           ">\r\nSession-Expires: 120;refresher=uac\r\nRequire: timer\r\n"
                           "Content-Type: application/sdp";
    peer->reply(lastInvite, "200 OK", own, "v=0\r\ns=answer\r\n");
    EXPECT_NE(peer->receive("ACK").toStdString(), "");
    ASSERT_TRUE(next<tagSipMedia>(SIP_TALK, 1));
    tellMedia(SIP_MEDIA, 1, "v=0\r\ns=hold\r\n");
    const QByteArray hold = peer->receive("INVITE");
    EXPECT_TRUE(headerOf(hold, "Session-Expires").startsWith("120")) << hold.constData();
}

TEST_F(SipRequests, ACallGoesOnThoughTheCertificatesOfAnotherLineHaveBecomeUsable)
{
    QTemporaryDir folder;
    ASSERT_TRUE(makeCertificates(folder.path(), "pbx.test"));
    QFile authorities(folder.filePath("cafile.pem"));
    ASSERT_TRUE(authorities.open(QIODevice::ReadWrite));
    const QByteArray good = authorities.readAll();
    ASSERT_TRUE(authorities.resize(0));
    tagSipSetup setup = AgentProcess::quickSetup();
    sipWire::setText(setup.szCertificates, folder.path().toStdString());
    begin(setup);
    ASSERT_NE(talkOut(1), 0u);
    const tagSipAccount account = accountAt(1, kit::freePort(), SIP_TLS);
    agent.tell(account);
    ASSERT_TRUE(agent.nextLine(1, SIP_LINE_REFUSED));
    ASSERT_TRUE(authorities.seek(0) && authorities.write(good) == good.size() && authorities.flush());
    agent.tell(account);
    ASSERT_TRUE(agent.nextLine(1, SIP_LINE_REFUSED));
    EXPECT_EQ(peer->receive("BYE", 2000).toStdString(), "");
    tellStatus(SIP_HANG_UP, 1);
    peer->reply(peer->receive("BYE"), "200 OK");
    peer->reply(peer->receive("REGISTER"), "200 OK"); // the other line takes leave
    EXPECT_TRUE(agent.ends()) << "and then begins anew";
}
