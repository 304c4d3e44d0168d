#pragma once
// A running phone with one real line, at a server that the test is.
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/udpPeer.h"
#include <QJsonArray>

class RealLines : public LivePhone
{
protected:
    static constexpr int kWaitMs = 20000;
    static constexpr const char* kUserFile = "/rundata/config/user/user.ini";
    static constexpr const char* kAccountFile = "/rundata/config/user/voip/sipAccount0.cfg";
    static constexpr const char* kChangedAccount = "3";
    static inline const QByteArray kSdp =
        "v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=-\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
        "m=audio 40000 RTP/AVP 8 0\r\na=sendrecv\r\n";

    void SetUp() override
    {
        further = QStringList{"--sip"};
        LivePhone::SetUp();
        setAccount("1001");
        registers();
    }
    // At the server, or at whoever stands in front of it.
    void setAccount(const char* user, uint32_t front = 0)
    {
        const QString port = QString::number(front ? front : server.port());
        for (const QStringList& key : QList<QStringList>{{"Enable", "1"},
                                                         {"DisplayName", "Anna"},
                                                         {"AuthName", user},
                                                         {"UserName", user},
                                                         {"password", "s3cret"},
                                                         {"SIPServerHost", "127.0.0.1"},
                                                         {"SIPServerPort", port}})
            ctl({"config", kAccountFile, "account", key[0], key[1]});
        tellChanged(kChangedAccount);
    }
    void tellChanged(const char* what) { ctl({"post", "app_hxPhone", "65543", what, "0"}); }
    void setUser(const char* section, const char* key, const char* value)
    {
        ctl({"config", kUserFile, section, key, value});
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
    void invites(const QByteArray& callId, const QByteArray& lines = {}, const QByteArray& sdp = kSdp)
    {
        server.send(request("INVITE", 1, callId, "<sip:1001@127.0.0.1>", callId, lines, sdp), agentPort);
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
    QByteArray talksIn(const QByteArray& callId, const QByteArray& sdp = kSdp)
    {
        invites(callId, {}, sdp);
        waitPage("frmCall");
        waitIdle();
        tap("btnAnswer");
        const QByteArray reply = replyOf("200");
        EXPECT_TRUE(reply.contains("m=audio")) << reply.constData();
        EXPECT_TRUE(kit::waits([&] { return call()["state"] == "talking"; }, kWaitMs));
        return reply;
    }
    void callByFinger(const QString& number)
    {
        pad(number);
        waitPage("frmDial");
        waitIdle();
        tap("btnCall");
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
        return kit::waits([&] { return config(kUserFile, "CallHistory", "nMissed") == count; }, kWaitMs);
    }

    UdpPeer server;
    QByteArray contact;
    uint32_t agentPort = 0;
};
