// The running phone with real lines, at a server that the test is: registration, calls in and out by finger,
// and what becomes of them when the other side, the user, a setting or a dead process ends them.
#include "tests/e2e/realLines.h"
#include "tests/kit/plain/processes.h"
#include <csignal>

namespace {

constexpr const char* kChangedWaiting = "13";

} // namespace

TEST_F(RealLines, AChangeOnThePageRegistersAnew)
{
    ctl({"open", "Account Setting"});
    waitPage("dlgAccount_Setting_Btn");
    waitIdle();
    tap("btnAccount1");
    waitPage("dlgAccount_Setting");
    waitIdle();
    tap("editUserName");
    for (int left = int(widget("editUserName")["text"].toString().size()); left > 0; --left)
        key("Backspace");
    pad("1077");
    softKey(0);
    EXPECT_TRUE(headerOf(registers(), "From").contains("sip:1077@"));
    EXPECT_EQ(config(kAccountFile, "account", "UserName"), "1077");
    for (const char* kind : {"trace", "command", "broadcast"})
        EXPECT_FALSE(logOf(kind).join('\n').contains("s3cret")) << kind;
}

TEST_F(RealLines, WhyALineIsNotRegisteredIsReadWhereItsStateIs)
{
    setAccount("1002");
    const auto refusesAs = [this](const char* status) {
        bool isLeaving = true; // the account before
        while (isLeaving) {
            const QByteArray request = server.receive("REGISTER");
            isLeaving = request.contains("expires=0") || headerOf(request, "Expires") == "0";
            server.reply(request, isLeaving ? "200 OK" : status, "Retry-After: 600");
        }
    };
    refusesAs("404 Not Found");
    EXPECT_TRUE(lineShows("The server does not know the user name"));
    setAccount("1003");
    refusesAs("403 Forbidden");
    EXPECT_TRUE(lineShows("The server does not accept name or password"));
    ctl({"set", "language", "German"});
    EXPECT_TRUE(lineShows("Der Server lehnt Name oder Passwort ab"));
    EXPECT_TRUE(lineShows("Anmeldung fehlgeschlagen"));
}

TEST_F(RealLines, ACallComesInIsAnsweredByFingerHeldAndEndsByTheOtherSide)
{
    invites("in");
    waitPage("frmCall");
    EXPECT_NE(server.receive("SIP/2.0 180").toStdString(), "");
    EXPECT_EQ(call()["number"].toString(), "200");
    EXPECT_EQ(call()["name"].toString(), "Ben");
    waitIdle();
    shot("real-call-rings");
    tap("btnAnswer");
    const QByteArray reply = replyOf("200");
    ASSERT_TRUE(reply.contains("m=audio"));
    EXPECT_TRUE(kit::waits([&] { return call()["state"] == "talking"; }, kWaitMs));
    shot("real-call-talks");
    letPressesCount();
    tap("actHold");
    const QByteArray hold = server.receive("INVITE");
    ASSERT_NE(hold.toStdString(), "");
    EXPECT_TRUE(hold.contains("m=audio"));
    server.reply(hold, "200 OK", server.linesWithSdp("200"), kSdp);
    EXPECT_NE(server.receive("ACK").toStdString(), "");
    EXPECT_TRUE(call()["held"].toBool());
    hangsUp(reply);
    EXPECT_TRUE(ends("hung up"));
    waitPage("frmDesktop");
}

TEST_F(RealLines, ACallGoesOutIsAnsweredAndHungUpByFinger)
{
    callByFinger("300");
    waitPage("frmCall");
    const QByteArray invite = server.receive("INVITE");
    EXPECT_TRUE(invite.startsWith("INVITE sip:300@127.0.0.1")) << invite.constData();
    EXPECT_TRUE(headerOf(invite, "From").contains("\"Anna\" <sip:1001@"));
    EXPECT_EQ(call()["state"].toString(), "ringing");
    server.reply(invite, "180 Ringing");
    server.reply(invite, "200 OK", server.linesWithSdp(), kSdp);
    EXPECT_NE(server.receive("ACK").toStdString(), "");
    EXPECT_TRUE(kit::waits([&] { return call()["state"] == "talking"; }, kWaitMs));
    softKey(3);
    const QByteArray bye = server.receive("BYE");
    ASSERT_NE(bye.toStdString(), "");
    server.reply(bye, "200 OK");
    EXPECT_TRUE(ends("hung up"));
    waitPage("frmDesktop");
    callByFinger("301");
    server.reply(server.receive("INVITE"), "486 Busy Here");
    EXPECT_TRUE(ends("failed"));
    EXPECT_EQ(lastEnded()["reason"].toString(), "Busy");
}

TEST_F(RealLines, DeclinedAndGivenUpCallsAreWhatTheyAre)
{
    invites("declined");
    waitPage("frmCall");
    waitIdle();
    tap("btnDecline");
    EXPECT_NE(replyOf("603").toStdString(), "");
    EXPECT_TRUE(ends("declined"));
    waitPage("frmDesktop");

    invites("elsewhere");
    waitPage("frmCall");
    cancels("elsewhere", "Reason: SIP;cause=200;text=\"Call completed elsewhere\"\r\n");
    EXPECT_NE(replyOf("487").toStdString(), "");
    EXPECT_TRUE(ends("hung up"));
    EXPECT_EQ(lastEnded()["reason"].toString(), "Another phone has answered");
    waitPage("frmDesktop");

    invites("missed");
    waitPage("frmCall");
    cancels("missed");
    EXPECT_NE(replyOf("487").toStdString(), "");
    EXPECT_TRUE(ends("missed"));
    EXPECT_TRUE(missedAre("1")) << "and no more than that one";
}

TEST_F(RealLines, WhatTheSettingsWantIsToldToTheCaller)
{
    setUser("DND", "bEnable", "1");
    invites("disturbed");
    EXPECT_NE(replyOf("480").toStdString(), "");
    EXPECT_TRUE(ends("disturbed"));
    setUser("DND", "bEnable", "0");

    setUser("AlwaysForward", "bEnable", "1");
    setUser("AlwaysForward", "strTarget", "555");
    invites("forwarded");
    EXPECT_TRUE(headerOf(replyOf("302"), "Contact").startsWith("<sip:555@127.0.0.1"));
    EXPECT_TRUE(ends("forwarded"));
    setUser("AlwaysForward", "bEnable", "0");

    setUser("CallWaiting", "bEnable", "0");
    tellChanged(kChangedWaiting);
    const QByteArray reply = talksIn("first");
    invites("second");
    EXPECT_EQ(headerOf(replyOf("486"), "Call-ID").toStdString(), "second");
    EXPECT_EQ(call()["state"].toString(), "talking");
    hangsUp(reply);
}

// Keys that are agreed on beside the description are not known here.
TEST_F(RealLines, WhoEncryptsByDtlsAloneIsRefusedWithoutARing)
{
    invites("dtls", {},
            QByteArray(kSdp).replace("RTP/AVP", "UDP/TLS/RTP/SAVPF") +
                "a=setup:actpass\r\na=fingerprint:sha-256 " + QByteArray("AB:").repeated(31) + "AB\r\n");
    EXPECT_TRUE(headerOf(replyOf("488"), "Warning").startsWith("302 "));
    EXPECT_TRUE(ends("unfit"));
    EXPECT_EQ(lastEnded()["reason"].toString(), "The two phones have no sound in common");
    EXPECT_EQ(topWindow()["class"].toString(), "frmDesktop");
}

TEST_F(RealLines, ACallThatCannotBeTalkedDoesNotRingAndLeavesWhoTalks)
{
    const auto offerTo = [](uint32_t port) {
        return QByteArray(kSdp).replace("40000", QByteArray::number(port));
    };
    const QByteArray unfit = QByteArray(kSdp).replace("AVP 8 0", "AVP 18");
    invites("unfit", {}, unfit);
    EXPECT_TRUE(headerOf(replyOf("488"), "Warning").startsWith("305 "));
    EXPECT_TRUE(ends("unfit"));
    EXPECT_EQ(lastEnded()["reason"].toString(), "The two phones have no sound in common");
    EXPECT_EQ(topWindow()["class"].toString(), "frmDesktop");
    EXPECT_TRUE(missedAre("1")) << "somebody has tried";

    UdpPeer sound;
    const QByteArray reply = talksIn("first", offerTo(sound.port()));
    EXPECT_NE(sound.receive().toStdString(), "");
    invites("second", {}, unfit);
    EXPECT_EQ(headerOf(replyOf("488"), "Call-ID").toStdString(), "second");
    EXPECT_EQ(server.receive("INVITE", 500).toStdString(), "") << "nobody is held";
    EXPECT_EQ(call()["state"].toString(), "talking");
    EXPECT_EQ(call()["number"].toString(), "200");
    EXPECT_FALSE(call()["held"].toBool());
    while (!sound.receive(0).isEmpty()) { // what has come before
    }
    EXPECT_NE(sound.receive().toStdString(), "");
    EXPECT_TRUE(missedAre("2"));
    hangsUp(reply);
    EXPECT_TRUE(ends("hung up"));
}

TEST_F(RealLines, WhoWantsAnOfferAndAnswersItWithNothingIsHungUpOnAndWhoWasHeldTalksOn)
{
    setUser("CallWaiting", "bEnable", "1");
    tellChanged(kChangedWaiting);
    UdpPeer sound;
    const QByteArray theirs = QByteArray(kSdp).replace("40000", QByteArray::number(sound.port()));
    const QByteArray first = talksIn("first", theirs);
    const auto takesOffer = [&](const char* direction) {
        const QByteArray offer = server.receive("INVITE");
        EXPECT_TRUE(offer.contains(direction)) << offer.constData();
        server.reply(offer, "200 OK",
                     "Contact: <sip:200@127.0.0.1:" + QByteArray::number(server.port()) +
                         ">\r\nContent-Type: application/sdp",
                     theirs);
    };
    const QByteArray all[] = {QByteArray(kSdp).replace("AVP 8 0", "AVP 18"),
                              QByteArray(kSdp).replace("RTP/AVP", "RTP/SAVP"),
                              QByteArray(kSdp).replace("40000", "0"), QByteArray()};
    int count = 0;
    for (const QByteArray& answer : all) {
        SCOPED_TRACE(answer.toStdString());
        const QByteArray id = "without" + QByteArray::number(++count);
        invites(id, {}, "");
        ASSERT_TRUE(
            kit::waits([&] { return ctl({"calls"}).toObject()["calls"].toArray().size() == 2; }, kWaitMs));
        letPressesCount();
        softKey(0);
        takesOffer("a=sendonly");
        const QByteArray offer = server.receive("SIP/2.0 200");
        ASSERT_EQ(headerOf(offer, "Call-ID").toStdString(), id.toStdString());
        server.send(request("ACK", 1, id, headerOf(offer, "To"), "ack" + id, {}, answer), agentPort);
        const QByteArray bye = server.receive("BYE");
        EXPECT_EQ(headerOf(bye, "Call-ID").toStdString(), id.toStdString());
        EXPECT_TRUE(headerOf(bye, "Reason").startsWith("SIP;cause=488;")) << bye.constData();
        server.reply(bye, "200 OK");
        takesOffer("a=sendrecv");
        ASSERT_TRUE(
            kit::waits([&] { return ctl({"calls"}).toObject()["calls"].toArray().size() == 1; }, kWaitMs));
        EXPECT_EQ(lastEnded()["end"].toString(), "failed");
        EXPECT_EQ(lastEnded()["reason"].toString(), "The two phones have no sound in common");
        EXPECT_FALSE(call()["held"].toBool());
        EXPECT_EQ(call()["state"].toString(), "talking");
        while (!sound.receive(0).isEmpty()) { // what has come before
        }
        EXPECT_NE(sound.receive().toStdString(), "");
    }
    hangsUp(first);
    EXPECT_TRUE(ends("hung up"));
}

TEST_F(RealLines, WhoWantsAnOfferAsSoonAsItRingsHasItAndHearsNothingBeforeTheAnswer)
{
    UdpPeer sound;
    const QByteArray theirs = QByteArray(kSdp).replace("40000", QByteArray::number(sound.port()));
    invites("early", "Require: 100rel\r\n", "");
    const QByteArray rings = server.receive("SIP/2.0 180");
    ASSERT_TRUE(rings.contains("m=audio")) << rings.constData();
    EXPECT_FALSE(rings.contains("m=video"));
    server.send(request("PRACK", 2, "early", headerOf(rings, "To"), "prack",
                        "RAck: " + headerOf(rings, "RSeq") + " 1 INVITE\r\n", theirs),
                agentPort);
    EXPECT_EQ(headerOf(server.receive("SIP/2.0 200"), "CSeq").toStdString(), "2 PRACK");
    waitPage("frmCall");
    waitIdle();
    EXPECT_EQ(call()["state"].toString(), "ringing");
    // Routers are kept open by what is no sound (RFC 5389).
    for (QByteArray packet = sound.receive(500); !packet.isEmpty(); packet = sound.receive(500))
        ASSERT_EQ(packet[0] & 0xc0, 0) << packet.toHex().constData();
    tap("btnAnswer");
    const QByteArray answer = replyOf("200");
    EXPECT_EQ(headerOf(answer, "CSeq").toStdString(), "1 INVITE");
    EXPECT_FALSE(answer.contains("m=audio")) << answer.constData();
    EXPECT_TRUE(kit::waits([&] { return call()["sound"] == "PCMA"; }, kWaitMs));
    EXPECT_NE(sound.receive().toStdString(), "");
    hangsUp(answer);
    EXPECT_TRUE(ends("hung up"));
}

TEST_F(RealLines, AnAnswerThatCannotBeTalkedEndsTheCallAndTellsWhy)
{
    const QByteArray lines = server.contactLine() + "\r\nContent-Type: ";
    const QByteArray parts = "--b\r\nContent-Type: text/plain\r\n\r\nhello\r\n--b\r\n"
                             "Content-Type: application/sdp\r\n\r\n" +
                             kSdp + "\r\n--b--\r\n";
    const struct
    {
        QByteArray type;
        QByteArray body;
        bool bTalks = false;
    } all[] = {
        {"application/sdp", QByteArray(kSdp).replace("AVP 8 0", "AVP 18")},
        {"application/sdp", kSdp + QByteArray("m=audio 40002 RTP/AVP 8\r\n").repeated(2)},
        {"application/sdp", QByteArray(kSdp).replace("m=audio", "m=video 40002 RTP/AVP 97\r\nm=audio")},
        {"application/sdp", QByteArray(kSdp).replace("40000", "0")},
        {"text/plain", kSdp},
        {"multipart/mixed;boundary=b", parts, true}};
    for (const auto& each : all) {
        SCOPED_TRACE((each.type + "\n" + each.body).toStdString());
        callByFinger("300");
        waitPage("frmCall");
        const QByteArray invite = server.receive("INVITE");
        server.reply(invite, "200 OK", lines + each.type, each.body);
        EXPECT_NE(server.receive("ACK").toStdString(), "");
        if (each.bTalks) {
            EXPECT_TRUE(kit::waits([&] { return call()["sound"] == "PCMA"; }, kWaitMs));
            softKey(3);
        }
        const QByteArray bye = server.receive("BYE");
        EXPECT_NE(bye.toStdString(), "");
        server.reply(bye, "200 OK");
        EXPECT_TRUE(ends(each.bTalks ? "hung up" : "failed"));
        EXPECT_EQ(lastEnded()["reason"].toString(),
                  each.bTalks ? "" : "The two phones have no sound in common");
        waitPage("frmDesktop");
    }
}

TEST_F(RealLines, TheDeathOfTheAgentCostsTheCallAndNothingElse)
{
    talksIn("lost");
    const qint64 agent = kit::childOf(pid(), "hxSip");
    ASSERT_NE(agent, 0);
    ASSERT_EQ(::kill(pid_t(agent), SIGKILL), 0);
    EXPECT_TRUE(ends("failed"));
    EXPECT_EQ(lastEnded()["reason"].toString(), "The connection was lost");
    registers();
    EXPECT_NE(kit::childOf(pid(), "hxSip"), agent);
    hangsUp(talksIn("again"));
}

TEST_F(RealLines, AServerThatIsGoneIsShownAndWhatIsSimulatedIsNot)
{
    const QString said = ctl({"ring", "200"}, 1).toObject()["error"].toString();
    EXPECT_TRUE(said.contains("--simulate")) << qPrintable(said);
    for (const QStringList& command : QList<QStringList>{{"set", "line", "0", "state=2"},
                                                         {"lamp", "200", "busy"},
                                                         {"other-side", "1", "hangup"},
                                                         {"set", "pstn", "1"}})
        EXPECT_TRUE(ctl(command, 1).toObject()["error"].toString().contains("--simulate"));
    // Nobody listens at the discard port.
    ctl({"config", kAccountFile, "account", "SIPServerPort", "9"});
    tellChanged(kChangedAccount);
    EXPECT_TRUE(lineShows("Register failed"));
    callByFinger("300");
    EXPECT_TRUE(ends("failed"));
    EXPECT_EQ(lastEnded()["reason"].toString(), "The server does not answer");
}

TEST_F(RealLines, TheEndOfThePhoneIsToldToTheServerAndTheOtherSide)
{
    talksIn("last");
    ctl({"quit"});
    const QByteArray bye = server.receive("BYE");
    ASSERT_NE(bye.toStdString(), "");
    server.reply(bye, "200 OK");
    const QByteArray last = server.receive("REGISTER");
    EXPECT_TRUE(headerOf(last, "Expires") == "0" || headerOf(last, "Contact").contains("expires=0"))
        << last.constData();
    server.reply(last, "200 OK");
    waitForEnd();
}
