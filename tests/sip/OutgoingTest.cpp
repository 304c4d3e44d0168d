// Calls from here.
#include "tests/sip/callTest.h"
#include <QTcpServer>
#include <cstring>

namespace {

// Half of the time after which a call that has ended is given up, and cancelled for that alone.
constexpr int kBeforeGivenUpMs = 2500;

} // namespace

TEST_F(SipCalls, WhoIsCalledIsHeardEarlyAnswersAndIsHungUpOn)
{
    begin(AgentProcess::calmSetup());
    const uint32_t port = peer->port();
    peer->reply(peer->receive("SUBSCRIBE"), "489 Bad Event"); // else the peer is missed when it has gone
    peer.reset();
    startSipp("calledTalks.xml", port);
    dial(5, "300");
    const auto* progress = next<tagSipProgress>(SIP_PROGRESS, 5);
    ASSERT_TRUE(progress);
    EXPECT_EQ(progress->nStatus, 183u);
    EXPECT_TRUE(strstr(progress->szSdp, "s=early")) << progress->szSdp;
    const auto* talk = next<tagSipMedia>(SIP_TALK, 5);
    ASSERT_TRUE(talk);
    EXPECT_TRUE(strstr(talk->szSdp, "s=answer")) << talk->szSdp;
    tellStatus(SIP_HANG_UP, 5);
    expectEnd(5, SIP_HUNG_UP, 0);
    sipp.expectDone();
}

TEST_F(SipCalls, AProxyThatAsksForThePasswordGetsItsDigest)
{
    begin();
    dial(1, "300");
    const QByteArray first = peer->receive("INVITE");
    EXPECT_TRUE(headerOf(first, "From").startsWith("\"User 0\" <sip:user0@127.0.0.1")) << first.constData();
    EXPECT_TRUE(headerOf(first, "Contact").contains(contact)) << first.constData();
    EXPECT_TRUE(headerOf(first, "Session-Expires").startsWith("1800")) << first.constData();
    peer->reply(first, "407 Proxy Authentication Required",
                "Proxy-Authenticate: Digest realm=\"home\", nonce=\"n\", algorithm=SHA-256, qop=\"auth\"");
    const QByteArray second = peer->receive("INVITE");
    const QByteArray answer = headerOf(second, "Proxy-Authorization");
    EXPECT_EQ(paramOf(answer, "response").toStdString(),
              digestOf("INVITE", answer, "auth0", "s3cret:0").toStdString());
    peer->reply(second, "407 Proxy Authentication Required",
                "Proxy-Authenticate: Digest realm=\"home\", nonce=\"m\", algorithm=SHA-256, qop=\"auth\"");
    expectEnd(1, SIP_REFUSED, 407);
}

TEST_F(SipCalls, AnAnonymousCallKeepsNameAndNumberBack)
{
    begin();
    dial(1, "300", true);
    const QByteArray invite = peer->receive("INVITE");
    EXPECT_EQ(headerOf(invite, "Privacy").toStdString(), "id");
    EXPECT_TRUE(headerOf(invite, "From").startsWith("\"Anonymous\" <sip:anonymous@anonymous.invalid>"))
        << invite.constData();
    EXPECT_TRUE(headerOf(invite, "P-Preferred-Identity").contains("user0@")) << invite.constData();
}

TEST_F(SipCalls, ACallWithMuchToOfferGoesTheWayOfItsLine)
{
    begin(AgentProcess::calmSetup());
    QTcpServer nobodys; // where a line that has no connections would come to all the same
    ASSERT_TRUE(nobodys.listen(QHostAddress::LocalHost, quint16(peer->port())));
    const QByteArray offer = "v=0\r\ns=" + QByteArray(8000, 'o') + "\r\n";
    auto record = sipWire::make<tagSipDial>(SIP_DIAL, 1);
    sipWire::setText(record.szTarget, "300");
    sipWire::setText(record.szSdp, offer.toStdString());
    agent.tell(record);
    EXPECT_TRUE(peer->receive("INVITE").endsWith(offer));
    EXPECT_FALSE(nobodys.waitForNewConnection(100));
}

TEST_F(SipCalls, WhatStandsInNoAddressIsWrittenSoThatItDoes)
{
    begin(AgentProcess::calmSetup());
    uint32_t id = 0;
    const QByteArray server = "127.0.0.1:" + QByteArray::number(peer->port());
    for (const auto& [wanted, called] : QList<QPair<QByteArray, QByteArray>>{
             {"30#1", "sip:30%231@" + server}, {"30#2@127.0.0.1", "sip:30%232@127.0.0.1"}}) {
        dial(++id, wanted.constData());
        const QByteArray invite = peer->receive("INVITE");
        EXPECT_TRUE(invite.startsWith("INVITE " + called + " ")) << invite.constData();
        peer->reply(invite, "486 Busy Here");
        expectEnd(id, SIP_REFUSED, 486);
    }
}

TEST_F(SipCalls, WhatBecomesOfACallIsTold)
{
    begin();
    dial(1, "300");
    peer->reply(peer->receive("INVITE"), "486 Busy Here");
    expectEnd(1, SIP_REFUSED, 486);

    dial(2, "sip:301@127.0.0.1");
    const QByteArray invite = peer->receive("INVITE sip:301@127.0.0.1 ");
    peer->reply(invite, "302 Moved Temporarily", "Contact: <sip:302@127.0.0.1>");
    const auto* ended = next<tagSipEnded>(SIP_ENDED, 2);
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->eEnding, uint32_t(SIP_REDIRECTED));
    EXPECT_STREQ(ended->szTarget, "sip:302@127.0.0.1");
    EXPECT_EQ(peer->receive("INVITE", 300).toStdString(), "");

    dial(3, "300");
    const QByteArray ringing = peer->receive("INVITE");
    peer->reply(ringing, "180 Ringing");
    ASSERT_TRUE(next<tagSipProgress>(SIP_PROGRESS, 3));
    tellStatus(SIP_HANG_UP, 3);
    expectEnd(3, SIP_HUNG_UP, 0);
    EXPECT_NE(peer->receive("CANCEL", kBeforeGivenUpMs).toStdString(), "");
}

TEST_F(SipCalls, WhoeverIsCalledWritesNoHeadersOfTheNextCall)
{
    begin();
    dial(1, "300");
    const QByteArray moved = "sip:302@127.0.0.1;a=b";
    const QByteArray headers =
        "?Subject=a%0d%0aX-Split:%201&Route=%3Csip:127.0.0.9;lr%3E&Replaces=x%3Bto-tag%3D1%3Bfrom-tag%3D2"
        "&P-Asserted-Identity=%3Csip:1@bank%3E&body=evil";
    peer->reply(peer->receive("INVITE"), "302 Moved Temporarily", "Contact: <" + moved + headers + '>');
    const auto* ended = next<tagSipEnded>(SIP_ENDED, 1);
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->eEnding, uint32_t(SIP_REDIRECTED));
    EXPECT_STREQ(ended->szTarget, moved.constData());

    // Nor whoever has had such an address dialled.
    dial(2, (moved + headers).constData());
    const QByteArray invite = peer->receive("INVITE sip:302@127.0.0.1;a=b SIP/2.0");
    ASSERT_NE(invite.toStdString(), "");
    for (const char* name : {"Subject", "X-Split", "Route", "Replaces", "P-Asserted-Identity"})
        EXPECT_EQ(headerOf(invite, name).toStdString(), "") << name;
    EXPECT_EQ(headerOf(invite, "To").toStdString(), '<' + moved.toStdString() + '>');
    EXPECT_TRUE(invite.endsWith("s=offer\r\n")) << invite.constData();
}

TEST_F(SipCalls, ACallIsSentOnToTheBestAddressThatItsLineCanCall)
{
    begin(AgentProcess::calmSetup());
    const std::string server = "@127.0.0.1:" + std::to_string(peer->port());
    const std::pair<QByteArray, std::string> moves[] = {
        {"<sip:302@h>;q=0.2, <sip:303@h>;q=0.9", "sip:303@h"},
        {"<sip:302@h>;q=0.5\r\nContact: <sip:303@h>", "sip:303@h"},
        {"<sip:302@h>;q=0.5, <sip:303@h>;q=0.5", "sip:302@h"},
        {"<mailto:a@b.c>, <http://h/302>, <sip:303@h>;q=0.1", "sip:303@h"},
        {"<sips:302@h>;q=1.0, <sip:303@h>;q=0.1", "sip:303@h"},
        {"<tel:+49-(123)4.5;phone-context=h>", "sip:+4912345" + server},
        {"<tel:*30%23>;q=0.3, <mailto:a@b.c>", "sip:*30%23" + server},
        {"<sips:302@h>", ""},
        {"<mailto:a@b.c>, <http://h/302>", ""},
        {"<tel:-.>", ""}};
    uint32_t id = 0;
    for (const auto& [contacts, target] : moves) {
        SCOPED_TRACE(contacts.toStdString());
        dial(++id, "300");
        peer->reply(peer->receive("INVITE"), "302 Moved Temporarily", "Contact: " + contacts);
        const auto* ended = next<tagSipEnded>(SIP_ENDED, id);
        ASSERT_TRUE(ended);
        EXPECT_EQ(ended->eEnding, uint32_t(target.empty() ? SIP_REFUSED : SIP_REDIRECTED));
        EXPECT_EQ(ended->nStatus, 302u);
        EXPECT_EQ(std::string(ended->szTarget), target);
    }
}

TEST_F(SipCalls, WhereACallMayGoAsWellIsToldTheBetterOneFirst)
{
    begin(AgentProcess::calmSetup());
    const QByteArray tooLong = "sip:" + QByteArray(SIP_TARGET_SIZE, '8') + "@h";
    const std::pair<QByteArray, QStringList> moves[] = {
        {"<sip:302@h>;q=0.2, <sip:303@h>;q=0.9, <mailto:a@b.c>\r\nContact: <sip:304@h>;q=0.5, <sip:303@h>",
         {"sip:303@h", "sip:304@h", "sip:302@h"}},
        {"<" + tooLong + ">;q=0.9, <sip:305@h>;q=0.5, <sip:306@h>;q=0.4", {"sip:305@h", "sip:306@h"}},
        {"<sip:1@h>, <sip:2@h>, <sip:3@h>, <sip:4@h>, <sip:5@h>, <sip:6@h>, <sip:7@h>",
         {"sip:1@h", "sip:2@h", "sip:3@h", "sip:4@h", "sip:5@h"}}};
    uint32_t id = 0;
    for (const auto& [contacts, places] : moves) {
        SCOPED_TRACE(contacts.toStdString());
        dial(++id, "300");
        peer->reply(peer->receive("INVITE"), "302 Moved Temporarily", "Contact: " + contacts);
        QStringList told;
        const tagSipHead* head = nullptr;
        while ((head = agent.next([id](const tagSipHead& each) { return each.nId == id; }))) {
            if (head->eKind == SIP_ENDED)
                break;
            if (head->eKind == SIP_PLACE)
                told.append(reinterpret_cast<const tagSipTarget*>(head)->szTarget);
        }
        ASSERT_TRUE(head);
        told.prepend(reinterpret_cast<const tagSipEnded*>(head)->szTarget);
        EXPECT_EQ(told, places) << told.join(' ').toStdString();
    }
}

TEST_F(SipCalls, WhoIsToBeCalledOverTlsIsNotCalledOverAnythingElse)
{
    begin(AgentProcess::calmSetup());
    dial(1, "sips:301@127.0.0.1");
    expectEnd(1, SIP_BROKEN, 0);
    EXPECT_EQ(peer->receive("INVITE", 200).toStdString(), "");
}

TEST_F(SipCalls, ACallTakesNoWayThatTheOtherSideNames)
{
    begin();
    UdpPeer other;
    const QByteArray way = "Contact: <sip:127.0.0.1:" + QByteArray::number(other.port()) + ">";
    uint32_t id = 0;
    for (const bool isTalking : {false, true}) {
        SCOPED_TRACE(isTalking);
        if (isTalking) {
            ASSERT_NE(talkOut(++id), 0u);
            tellMedia(SIP_MEDIA, id, "v=0\r\ns=hold\r\n");
        } else {
            dial(++id, "300");
        }
        peer->reply(peer->receive("INVITE"), "305 Use Proxy", way);
        if (!isTalking)
            expectEnd(id, SIP_REFUSED, 305);
        EXPECT_EQ(other.receive(300).toStdString(), "");
    }
}

TEST_F(SipCalls, ACallIsNotSentOnToHalfAnAddress)
{
    begin();
    const QByteArray host = "@127.0.0.1", scheme = "sip:";
    const QByteArray most =
        scheme + QByteArray(SIP_TARGET_SIZE - 1 - scheme.size() - host.size(), '8') + host;
    dial(1, "300");
    peer->reply(peer->receive("INVITE"), "302 Moved Temporarily", "Contact: <" + most + '>');
    const auto* ended = next<tagSipEnded>(SIP_ENDED, 1);
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->eEnding, uint32_t(SIP_REDIRECTED));
    EXPECT_STREQ(ended->szTarget, most.constData());

    dial(2, "301");
    peer->reply(peer->receive("INVITE sip:301@"), "302 Moved Temporarily", "Contact: <" + most + "9>");
    ended = next<tagSipEnded>(SIP_ENDED, 2);
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->eEnding, uint32_t(SIP_REFUSED));
    EXPECT_EQ(ended->nStatus, 414u);
    EXPECT_STREQ(ended->szTarget, "");
}

TEST_F(SipCalls, TheOnlyServerThatFailsACallIsAskedWhetherTheLineIsStillThere)
{
    begin();
    dial(1, "300");
    EXPECT_NE(peer->receive("INVITE").toStdString(), "");
    const QByteArray silent = peer->receive("REGISTER");
    EXPECT_NE(silent.toStdString(), "") << "it says nothing";
    peer->reply(silent, "200 OK", "Contact: " + headerOf(silent, "Contact") + ";expires=3600");
    tellStatus(SIP_HANG_UP, 1);
    expectEnd(1, SIP_HUNG_UP, 0);

    dial(2, "301");
    peer->reply(peer->receive("INVITE sip:301@"), "503 Service Unavailable");
    expectEnd(2, SIP_REFUSED, 503);
    EXPECT_NE(peer->receive("REGISTER").toStdString(), "") << "it is out of service";
}

TEST_F(SipCalls, AServerThatSaysNothingIsToldOfUntilItDoes)
{
    begin();
    dial(1, "300");
    const QByteArray invite = peer->receive("INVITE");
    for (const uint32_t status : {0u, 100u, 180u}) {
        if (status)
            peer->reply(invite, QByteArray::number(status) + " Under Way");
        const auto* progress = next<tagSipProgress>(SIP_PROGRESS, 1);
        ASSERT_TRUE(progress) << status;
        EXPECT_EQ(progress->nStatus, status);
    }
}

TEST_F(SipCalls, AServerThatHasTakenTheCallIsNotToldOfBeforeItRings)
{
    begin(AgentProcess::calmSetup());
    dial(1, "300");
    const QByteArray invite = peer->receive("INVITE");
    peer->reply(invite, "100 Trying");
    peer->reply(invite, "180 Ringing");
    const auto* progress = next<tagSipProgress>(SIP_PROGRESS, 1);
    ASSERT_TRUE(progress);
    EXPECT_EQ(progress->nStatus, 180u);
}

TEST_F(SipCalls, ACallThatNoServerSaysAnythingToIsToldApartFromOneThatIsRefused)
{
    begin();
    dial(1, "300");
    peer->reply(peer->receive("INVITE"), "408 Request Timeout");
    expectEnd(1, SIP_REFUSED, 408);
    const uint32_t port = peer->port();
    peer.reset();
    dial(2, "300");
    expectEnd(2, SIP_BROKEN, 408);
    EXPECT_FALSE(UdpPeer::isListening(port));
}

TEST_F(SipCalls, ANumberThatIsNoStatusEndsNoCallAsOne)
{
    begin();
    uint32_t id = 0;
    for (const char* status : {"700 Odd", "999 Odd"}) {
        SCOPED_TRACE(status);
        dial(++id, "300");
        const QByteArray invite = peer->receive("INVITE");
        ASSERT_NE(invite.toStdString(), "");
        peer->reply(invite, status);
        const auto* ended = next<tagSipEnded>(SIP_ENDED, id);
        ASSERT_TRUE(ended);
        EXPECT_EQ(ended->nStatus, 0u);
    }
    for (const char* status : {"99 Odd", "0 Odd"}) {
        SCOPED_TRACE(status);
        dial(++id, "300");
        const QByteArray invite = peer->receive("INVITE");
        ASSERT_NE(invite.toStdString(), "");
        peer->reply(invite, status);
        peer->reply(invite, "180 Ringing");
        const auto* progress = next<tagSipProgress>(SIP_PROGRESS, id);
        ASSERT_TRUE(progress);
        EXPECT_EQ(progress->nStatus, 180u);
        peer->reply(invite, "486 Busy Here");
        expectEnd(id, SIP_REFUSED, 486);
    }
}

TEST_F(SipCalls, AnAnswerThatNoRecordHoldsIsNotToldInPart)
{
    begin();
    uint32_t id = 0;
    for (const int more : {0, 1, 40000}) {
        SCOPED_TRACE(more);
        const QByteArray start = "v=0\r\ns=";
        const QByteArray sdp = start + QByteArray(SIP_SDP_SIZE - 1 - start.size() + more, 'x');
        dial(++id, "300");
        const QByteArray invite = peer->receive("INVITE");
        peer->reply(invite, "183 Session Progress", withSdp(), sdp);
        const auto* progress = next<tagSipProgress>(SIP_PROGRESS, id);
        ASSERT_TRUE(progress);
        EXPECT_STREQ(progress->szSdp, more ? "" : sdp.constData());
        peer->reply(invite, "200 OK", withSdp(), sdp);
        EXPECT_NE(peer->receive("ACK").toStdString(), "");
        const auto* talk = next<tagSipMedia>(SIP_TALK, id);
        ASSERT_TRUE(talk);
        EXPECT_STREQ(talk->szSdp, more ? "" : sdp.constData());
        tellStatus(SIP_HANG_UP, id);
        peer->reply(peer->receive("BYE"), "200 OK");
        expectEnd(id, SIP_HUNG_UP, 0);
    }
}

TEST_F(SipCalls, WhoHasSentACallOnIsToldWhereItGoes)
{
    begin();
    auto record = sipWire::make<tagSipDial>(SIP_DIAL, 1);
    record.nForwards = 2;
    sipWire::setText(record.szForwardedBy[0], "300");
    sipWire::setText(record.szForwardedBy[1], "sip:301:secret@pbx.example.com;user=phone?Subject=x");
    sipWire::setText(record.szTarget, "sip:302@127.0.0.1;transport=udp");
    sipWire::setText(record.szSdp, "v=0\r\ns=offer\r\n");
    agent.tell(record);
    const QByteArray invite = peer->receive("INVITE sip:302@127.0.0.1");
    const QByteArray first = "<sip:300@127.0.0.1:" + QByteArray::number(peer->port());
    EXPECT_EQ(headerOf(invite, "Diversion").toStdString(),
              "<sip:301@pbx.example.com>, " + first.toStdString() + ">");
    EXPECT_EQ(headerOf(invite, "History-Info").toStdString(),
              first.toStdString() + "?Reason=SIP%3Bcause%3D302>;index=1, "
                                    "<sip:301@pbx.example.com?Reason=SIP%3Bcause%3D302>;index=1.1, "
                                    "<sip:302@127.0.0.1>;index=1.1.1");
    peer->reply(invite, "486 Busy Here");
    expectEnd(1, SIP_REFUSED, 486);

    // As the phone of this line reads it when it is the target.
    peer->send(inviteText("sent-on", "Diversion: " + headerOf(invite, "Diversion") +
                                         "\r\nHistory-Info: " + headerOf(invite, "History-Info")),
               agent.port());
    const auto* arrived = nextArrived();
    ASSERT_TRUE(arrived);
    ASSERT_EQ(arrived->nForwards, 2u);
    EXPECT_STREQ(arrived->szForwardedBy[0], "300");
    EXPECT_STREQ(arrived->szForwardedBy[1], "301");

    dial(2, "303");
    const QByteArray plain = peer->receive("INVITE sip:303@");
    EXPECT_EQ(headerOf(plain, "Diversion").toStdString(), "");
    EXPECT_EQ(headerOf(plain, "History-Info").toStdString(), "");
}

TEST_F(SipCalls, WithoutARegisteredLineThereIsNoCall)
{
    begin();
    UdpPeer silent;
    agent.tell(accountAt(1, silent.port()));
    for (const uint32_t line : {1u, 2u}) {
        auto record = sipWire::make<tagSipDial>(SIP_DIAL, line);
        record.nLine = line;
        sipWire::setText(record.szTarget, "300");
        agent.tell(record);
        const auto* ended = next<tagSipEnded>(SIP_ENDED, line);
        ASSERT_TRUE(ended) << line;
        EXPECT_EQ(ended->eEnding, uint32_t(SIP_BROKEN));
        EXPECT_STREQ(ended->szReason, "The line is not registered");
    }
}

TEST_F(SipCalls, HoldingIsOfferedAndARefusalLeavesTheCallAsItWas)
{
    begin();
    const uint32_t id = talkOut(1);
    ASSERT_NE(id, 0u);
    tellMedia(SIP_MEDIA, id, "v=0\r\na=sendonly\r\n");
    const QByteArray hold = peer->receive("INVITE");
    EXPECT_TRUE(hold.contains("a=sendonly")) << hold.constData();
    EXPECT_EQ(headerOf(hold, "Call-ID").toStdString(), headerOf(lastInvite, "Call-ID").toStdString());
    peer->reply(hold, "200 OK", withSdp(), "v=0\r\na=recvonly\r\n");
    const auto* talk = next<tagSipMedia>(SIP_TALK, id);
    ASSERT_TRUE(talk);
    EXPECT_TRUE(strstr(talk->szSdp, "a=recvonly"));
    EXPECT_NE(peer->receive("ACK").toStdString(), "");

    tellMedia(SIP_MEDIA, id, "v=0\r\na=sendrecv\r\n");
    peer->reply(peer->receive("INVITE"), "488 Not Acceptable Here");
    talk = next<tagSipMedia>(SIP_TALK, id);
    ASSERT_TRUE(talk);
    EXPECT_STREQ(talk->szSdp, "") << "which says that it was refused";
    tellStatus(SIP_HANG_UP, id);
    EXPECT_NE(peer->receive("BYE").toStdString(), "");
}

TEST_F(SipCalls, ATransferIsAskedForAndItsOutcomeTold)
{
    begin();
    const uint32_t id = talkOut(1);
    ASSERT_NE(id, 0u);
    tellTarget(SIP_TRANSFER, id, "301");
    const QByteArray refer = takesRefer();
    EXPECT_EQ(headerOf(refer, "Refer-To").toStdString(),
              "<sip:301@127.0.0.1:" + std::to_string(peer->port()) + ">");
    EXPECT_TRUE(headerOf(refer, "Referred-By").contains("user0")) << refer.constData();
    notesRefer(11, "active;expires=60", "SIP/2.0 100 Trying\r\n");
    EXPECT_NE(peer->receive("SIP/2.0 200").toStdString(), "");
    notesRefer(12, "terminated;reason=noresource", "SIP/2.0 486 Busy\r\n");
    const auto* outcome = next<tagSipStatus>(SIP_TRANSFERRED, id);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->nStatus, 486u);
    EXPECT_EQ(outcome->bTaken, 1u) << "it is the other one's";

    tellTarget(SIP_TRANSFER, id, "302");
    peer->reply(peer->receive("REFER"), "603 Declined");
    outcome = next<tagSipStatus>(SIP_TRANSFERRED, id);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->nStatus, 603u);
    EXPECT_EQ(outcome->bTaken, 0u) << "nobody was called";
}

TEST_F(SipCalls, ATransferOfWhichNobodyTellsMoreIsGivenUp)
{
    tagSipSetup setup = AgentProcess::quickSetup();
    setup.nRingSeconds = 1;
    begin(setup);
    const uint32_t id = talkOut(1);
    ASSERT_NE(id, 0u);
    tellTarget(SIP_TRANSFER, id, "301");
    takesRefer();
    const auto* outcome = next<tagSipStatus>(SIP_TRANSFERRED, id);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->nStatus, 408u);
    EXPECT_EQ(outcome->bTaken, 1u);
}

TEST_F(SipCalls, ATransferWhoseLastNoteSaysNothingHasComeToNothing)
{
    begin();
    const uint32_t id = talkOut(1);
    ASSERT_NE(id, 0u);
    for (const char* body : {"", "SIP/2.0 180 Ringing\r\n"}) {
        SCOPED_TRACE(body);
        tellTarget(SIP_TRANSFER, id, "301");
        takesRefer();
        notesRefer(*body ? 12 : 11, "terminated;reason=timeout", body);
        const auto* outcome = next<tagSipStatus>(SIP_TRANSFERRED, id, 5000);
        ASSERT_TRUE(outcome);
        EXPECT_EQ(outcome->nStatus, 487u);
        EXPECT_EQ(outcome->bTaken, 1u);
    }
}

TEST_F(SipCalls, ATransferThroughAServerThatIsGoneLeavesTheCall)
{
    begin();
    const uint32_t id = talkOut(1);
    ASSERT_NE(id, 0u);
    peer.reset();
    tellTarget(SIP_TRANSFER, id, "301");
    const auto* outcome = next<tagSipStatus>(SIP_TRANSFERRED, id);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->nStatus, 408u) << "which no phone has said";
    EXPECT_EQ(outcome->bTaken, 0u);
    EXPECT_FALSE(agent.next(SIP_ENDED, id, 200));
}

TEST_F(SipCalls, APeerThatSaysThatThereIsNoCallIsHungUpOn)
{
    begin();
    uint32_t number = 0;
    for (const char* status : {"481 Call Does Not Exist", "408 Request Timeout"}) {
        for (const char* method : {"INFO", "REFER"}) {
            SCOPED_TRACE(QByteArray(method).append(status).toStdString());
            const uint32_t id = talkOut(++number);
            ASSERT_NE(id, 0u);
            auto tone = sipWire::make<tagSipTone>(SIP_TONE, id);
            tone.nTone = '1';
            tone.nMs = 160;
            if (method[0] == 'I')
                agent.tell(tone);
            else
                tellTarget(SIP_TRANSFER, id, "301");
            peer->reply(peer->receive(method), status);
            const QByteArray bye = peer->receive("BYE", 5000);
            EXPECT_EQ(headerOf(bye, "Call-ID").toStdString(), headerOf(lastInvite, "Call-ID").toStdString());
            peer->reply(bye, "481 Call Does Not Exist");
            const auto* ended = next<tagSipEnded>(SIP_ENDED, id, 5000);
            ASSERT_TRUE(ended);
            EXPECT_EQ(ended->eEnding, uint32_t(SIP_BROKEN));
        }
    }
}

TEST_F(SipCalls, ATonePressedGoesAsInfo)
{
    begin();
    const uint32_t id = talkOut(1);
    ASSERT_NE(id, 0u);
    auto tone = sipWire::make<tagSipTone>(SIP_TONE, id);
    tone.nTone = '#';
    tone.nMs = 160;
    agent.tell(tone);
    const QByteArray info = peer->receive("INFO");
    EXPECT_EQ(headerOf(info, "Content-Type").toStdString(), "application/dtmf-relay");
    EXPECT_TRUE(info.endsWith("\r\n\r\nSignal=#\r\nDuration=160\r\n")) << info.constData();
}

TEST_F(SipCalls, TheEndOfThePhoneHangsUpAndUnregisters)
{
    begin();
    ASSERT_NE(talkOut(1), 0u);
    agent.tell(sipWire::make<tagSipHead>(SIP_END, 0));
    const QByteArray bye = peer->receive("BYE");
    EXPECT_EQ(headerOf(bye, "Call-ID").toStdString(), headerOf(lastInvite, "Call-ID").toStdString());
    EXPECT_TRUE(agent.ends(5000));
    EXPECT_FALSE(agent.hasCrashed());
}

TEST_F(SipCalls, ACallThatWasHungUpTakesNoRoomThoughTheOtherSideSaysNothing)
{
    begin();
    ASSERT_NE(talkOut(1), 0u);
    ASSERT_NE(talkOut(2), 0u);
    tellStatus(SIP_HANG_UP, 2);
    EXPECT_NE(peer->receive("BYE").toStdString(), "");
    dial(3, "303");
    EXPECT_NE(peer->receive("INVITE sip:303@").toStdString(), "");
}

TEST_F(SipCalls, AnAnswerThatCrossesTheEndIsHungUpOnAtOnce)
{
    begin();
    enum { CANCEL_FIRST, ANSWER_FIRST, CANCEL_UNKNOWN };
    for (const uint32_t order : {CANCEL_FIRST, ANSWER_FIRST, CANCEL_UNKNOWN}) {
        SCOPED_TRACE(order);
        const uint32_t id = order + 1;
        dial(id, "300");
        const QByteArray invite = peer->receive("INVITE");
        peer->reply(invite, "180 Ringing");
        ASSERT_TRUE(next<tagSipProgress>(SIP_PROGRESS, id));
        tellStatus(SIP_HANG_UP, id);
        expectEnd(id, SIP_HUNG_UP, 0);
        const QByteArray cancel = peer->receive("CANCEL");
        if (order == CANCEL_FIRST)
            peer->reply(cancel, "200 OK");
        peer->reply(invite, "200 OK", withSdp(), "v=0\r\ns=answer\r\n");
        if (order == ANSWER_FIRST)
            peer->reply(cancel, "200 OK");
        if (order == CANCEL_UNKNOWN)
            peer->reply(cancel, "481 Call Does Not Exist");
        EXPECT_NE(peer->receive("ACK", kBeforeGivenUpMs).toStdString(), "");
        const QByteArray bye = peer->receive("BYE", kBeforeGivenUpMs);
        EXPECT_NE(bye.toStdString(), "");
        peer->reply(bye, "200 OK");
        EXPECT_FALSE(agent.next(SIP_TALK, id, 50));
    }
}
