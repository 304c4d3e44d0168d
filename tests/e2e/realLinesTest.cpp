// The running phone with real lines, at a server that the test is: registration, calls in and out by finger,
// and what becomes of them when the other side, the user, a setting or a dead process ends them.
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/udpPeer.h"
#include <QFile>
#include <QJsonArray>
#include <csignal>

namespace {

#define USER_FILE "/rundata/config/user/user.ini"
#define ACCOUNT_FILE "/rundata/config/user/voip/sipAccount0.cfg"

constexpr int kWaitMs = 20000;
const char* const kChangedAccount = "3";
const char* const kChangedWaiting = "13";
const QByteArray kSdp = "v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=-\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
                        "m=audio 40000 RTP/AVP 8 0\r\na=sendrecv\r\n";

class RealLines : public LivePhone
{
protected:
    void SetUp() override
    {
        further = QStringList{"--sip"};
        LivePhone::SetUp();
        setAccount("1001");
        registers();
    }
    void setAccount(const char* user)
    {
        const QString port = QString::number(server.port());
        for (const QStringList& key : QList<QStringList>{{"Enable", "1"},
                                                         {"DisplayName", "Anna"},
                                                         {"AuthName", user},
                                                         {"UserName", user},
                                                         {"password", "s3cret"},
                                                         {"SIPServerHost", "127.0.0.1"},
                                                         {"SIPServerPort", port}})
            ctl({"config", ACCOUNT_FILE, "account", key[0], key[1]});
        tellChanged(kChangedAccount);
    }
    void tellChanged(const char* what) { ctl({"post", "app_hxPhone", "65543", what, "0"}); }
    void setUser(const char* section, const char* key, const char* value)
    {
        ctl({"config", USER_FILE, section, key, value});
    }
    // The line registers, and is reached at that contact from here on.
    QByteArray registers()
    {
        QByteArray request;
        do { // one that leaves says so as well
            request = server.receive("REGISTER");
            server.reply(request, "200 OK", "Contact: " + headerOf(request, "Contact") + ";expires=3600");
        } while (request.contains("expires=0") || headerOf(request, "Expires") == "0");
        const QByteArray address = headerOf(request, "Contact");
        contact = address.mid(1, address.indexOf('>') - 1);
        agentPort = contact.mid(contact.lastIndexOf(':') + 1).split(';').first().toUInt();
        EXPECT_NE(agentPort, 0u) << request.constData();
        EXPECT_TRUE(lineShows("Default account"));
        return request;
    }
    // On the page of the phone.
    bool lineShows(const QString& state)
    {
        ctl({"open", "Status"});
        waitPage("dlgStatus");
        bool shows = kit::waits(
            [&] {
                for (const QJsonValue& entry : topWindow()["widgets"].toArray()) {
                    if (entry.toObject()["text"] == state)
                        return true;
                }
                return false;
            },
            kWaitMs);
        softKey(3);
        return shows;
    }

    // A request of the other side, which is number 200; to: with the tag of the phone where it has told one.
    QByteArray request(const QByteArray& method, int number, const QByteArray& callId, const QByteArray& to,
                       const QByteArray& branch, const QByteArray& lines = {}, const QByteArray& body = {})
    {
        const QByteArray own = "127.0.0.1:" + QByteArray::number(server.port());
        return method + ' ' + contact + " SIP/2.0\r\nVia: SIP/2.0/UDP " + own + ";branch=z9hG4bK" + branch +
               "\r\nFrom: \"Ben\" <sip:200@127.0.0.1>;tag=caller\r\nTo: " + to + "\r\nCall-ID: " + callId +
               "\r\nCSeq: " + QByteArray::number(number) + ' ' + method +
               "\r\nMax-Forwards: 70\r\nContact: <sip:200@" + own + ">\r\n" + lines +
               (body.isEmpty() ? "" : "Content-Type: application/sdp\r\n") +
               "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    }
    void invites(const QByteArray& callId, const QByteArray& lines = {})
    {
        server.send(request("INVITE", 1, callId, "<sip:1001@127.0.0.1>", callId, lines, kSdp), agentPort);
    }
    void cancels(const QByteArray& callId, const QByteArray& lines = {})
    {
        server.send(request("CANCEL", 1, callId, "<sip:1001@127.0.0.1>", callId, lines), agentPort);
    }
    void acknowledges(const QByteArray& reply)
    {
        const QByteArray id = headerOf(reply, "Call-ID");
        const bool isTaken = reply.startsWith("SIP/2.0 2");
        server.send(request("ACK", 1, id, headerOf(reply, "To"), isTaken ? "ack" + id : id), agentPort);
    }
    // The final reply to an INVITE.
    QByteArray replyOf(const QByteArray& status)
    {
        const QByteArray reply = server.receive("SIP/2.0 " + status);
        if (!reply.isEmpty())
            acknowledges(reply);
        return reply;
    }
    // A call comes in, rings on the screen and is answered by a finger; the phone's 200.
    QByteArray talksIn(const QByteArray& callId)
    {
        invites(callId);
        waitPage("frmCall");
        waitIdle();
        tap("btnAnswer");
        const QByteArray reply = replyOf("200");
        EXPECT_TRUE(reply.contains("m=audio")) << reply.constData();
        EXPECT_TRUE(kit::waits([&] { return call()["state"] == "talking"; }, kWaitMs));
        return reply;
    }
    void hangsUp(const QByteArray& reply)
    {
        server.send(request("BYE", 2, headerOf(reply, "Call-ID"), headerOf(reply, "To"), "bye"), agentPort);
        EXPECT_NE(server.receive("SIP/2.0 200").toStdString(), "");
    }

    QJsonObject call() { return ctl({"calls"}).toObject()["calls"].toArray().first().toObject(); }
    QJsonObject lastEnded() { return ctl({"calls"}).toObject()["ended"].toArray().first().toObject(); }
    bool ends(const QString& end)
    {
        return kit::waits([&] { return call().isEmpty() && lastEnded()["end"] == end; }, kWaitMs);
    }
    bool missedAre(const QString& count)
    {
        return kit::waits([&] { return config(USER_FILE, "CallHistory", "nMissed") == count; }, kWaitMs);
    }

    UdpPeer server;
    QByteArray contact;
    uint32_t agentPort = 0;
};

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
    EXPECT_EQ(config(ACCOUNT_FILE, "account", "UserName"), "1077");
    for (const char* kind : {"trace", "command", "broadcast"})
        EXPECT_FALSE(logOf(kind).join('\n').contains("s3cret")) << kind;
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
    tap("actHold");
    const QByteArray hold = server.receive("INVITE");
    ASSERT_NE(hold.toStdString(), "");
    EXPECT_TRUE(hold.contains("m=audio"));
    server.reply(hold, "200 OK",
                 "Contact: <sip:200@127.0.0.1:" + QByteArray::number(server.port()) +
                     ">\r\nContent-Type: application/sdp",
                 kSdp);
    EXPECT_NE(server.receive("ACK").toStdString(), "");
    EXPECT_TRUE(call()["held"].toBool());
    hangsUp(reply);
    EXPECT_TRUE(ends("hung up"));
    waitPage("frmDesktop");
}

TEST_F(RealLines, ACallGoesOutIsAnsweredAndHungUpByFinger)
{
    pad("300");
    waitPage("frmDial");
    waitIdle();
    tap("btnCall");
    waitPage("frmCall");
    const QByteArray invite = server.receive("INVITE");
    EXPECT_TRUE(invite.startsWith("INVITE sip:300@127.0.0.1")) << invite.constData();
    EXPECT_TRUE(headerOf(invite, "From").contains("\"Anna\" <sip:1001@"));
    EXPECT_EQ(call()["state"].toString(), "ringing");
    server.reply(invite, "180 Ringing");
    server.reply(invite, "200 OK",
                 "Contact: <sip:300@127.0.0.1:" + QByteArray::number(server.port()) +
                     ">\r\nContent-Type: application/sdp",
                 kSdp);
    EXPECT_NE(server.receive("ACK").toStdString(), "");
    EXPECT_TRUE(kit::waits([&] { return call()["state"] == "talking"; }, kWaitMs));
    softKey(3);
    const QByteArray bye = server.receive("BYE");
    ASSERT_NE(bye.toStdString(), "");
    server.reply(bye, "200 OK");
    EXPECT_TRUE(ends("hung up"));
    waitPage("frmDesktop");
    pad("301");
    waitPage("frmDial");
    waitIdle();
    tap("btnCall");
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
    ctl({"config", ACCOUNT_FILE, "account", "SIPServerPort", "9"});
    tellChanged(kChangedAccount);
    EXPECT_TRUE(lineShows("Register failed"));
    pad("300");
    waitPage("frmDial");
    waitIdle();
    tap("btnCall");
    EXPECT_TRUE(ends("failed"));
    EXPECT_EQ(lastEnded()["reason"].toString(), "The line is not registered");
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
