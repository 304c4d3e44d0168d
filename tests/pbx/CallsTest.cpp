// Calls from phone to phone through the exchange that comes along.
#include "tests/kit/plain/ports.h"
#include "tests/pbx/pbxCalls.h"
#include <cstring>

TEST_F(PbxCalls, AllPhonesOfANumberRingAndTheOthersHearThatItWasAnsweredElsewhere)
{
    begin();
    QByteArray atFirst, atSecond;
    ASSERT_TRUE(caller->calls("1002", "fork"));
    take(atFirst, atSecond);
    EXPECT_TRUE(atFirst.startsWith("INVITE sip:1002@" + first->own() + " ")) << atFirst.constData();
    EXPECT_TRUE(headerOf(atFirst, "Record-Route").contains("127.0.0.1:" + QByteArray::number(pbx.port())));
    EXPECT_EQ(headerOf(atFirst, "Max-Forwards").toStdString(), "69");
    EXPECT_FALSE(atFirst.contains("Proxy-Authorization")) << "the answer was for the exchange";
    first->reply(atFirst, "180 Ringing");
    EXPECT_NE(caller->hears(180).toStdString(), "");
    second->reply(atSecond, "200 OK", "Content-Type: application/sdp", "v=0\r\ns=second\r\n");
    const QByteArray answer = caller->hears(200);
    EXPECT_TRUE(answer.contains("s=second")) << answer.constData();
    EXPECT_EQ(answer.count("Via:"), 1) << "the hop of the exchange is no business of the caller's";
    const QByteArray cancel = first->next("CANCEL");
    EXPECT_EQ(headerOf(cancel, "Reason").toStdString(), "SIP;cause=200;text=\"Call completed elsewhere\"");
    caller->acknowledge(answer);
    EXPECT_NE(second->next("ACK").toStdString(), "");
}

TEST_F(PbxCalls, WhatBelongsToACallGoesBothWaysAndItsEndToo)
{
    begin();
    const QByteArray answer = talk("within");
    for (const QByteArray method : {"INFO", "INVITE", "UPDATE", "REFER", "NOTIFY"}) {
        caller->within(method, answer,
                       "Refer-To: <sip:1003@127.0.0.1>\r\nEvent: refer\r\n"
                       "Subscription-State: active");
        const QByteArray came = first->next(method);
        ASSERT_NE(came.toStdString(), "") << method.constData();
        EXPECT_FALSE(headerOf(came, "Route").contains(QByteArray::number(pbx.port())));
        first->reply(came, "200 OK");
        const QByteArray reply = caller->hears(200);
        EXPECT_TRUE(headerOf(reply, "CSeq").endsWith(method)) << reply.constData();
        if (method == "INVITE") {
            caller->acknowledge(answer);
            EXPECT_NE(first->next("ACK").toStdString(), "");
        }
    }
    caller->within("BYE", answer);
    const QByteArray bye = first->next("BYE");
    ASSERT_NE(bye.toStdString(), "");
    first->reply(bye, "200 OK");
    EXPECT_TRUE(headerOf(caller->hears(200), "CSeq").endsWith("BYE"));
}

TEST_F(PbxCalls, WhoIsElsewhereThanItsTwoPartiesDoesNotEndACall)
{
    begin();
    const QByteArray answer = talk("elsewhere");
    UdpPeer stranger("127.0.0.2");
    const QByteArray bye =
        caller->text("BYE", "sip:1002@" + first->own(), "elsewhere", 90, {}, {}, headerOf(answer, "To"));
    stranger.send(bye, pbx.port());
    EXPECT_NE(stranger.receive("SIP/2.0 403").toStdString(), "");
    stranger.send(
        caller->text("ACK", "sip:1002@" + first->own(), "elsewhere", 91, {}, {}, headerOf(answer, "To")),
        pbx.port());
    EXPECT_EQ(first->wire().receive(500).toStdString(), "");
    caller->within("BYE", answer);
    EXPECT_NE(first->next("BYE").toStdString(), "");
}

TEST_F(PbxCalls, TheBestOfTheAnswersIsTheCallers)
{
    begin();
    const struct
    {
        const char* first;
        const char* second;
        int best;
    } cases[] = {{"480 Away", "486 Busy Here", 486},
                 {"486 Busy Here", "302 Moved", 302},
                 {"404 Not Found", "500 Broken", 404},
                 {"500 Broken", "480 Away", 480},
                 {"480 Away", "404 Not Found", 404}};
    int number = 0;
    for (const auto& each : cases) {
        SCOPED_TRACE(each.first);
        QByteArray atFirst, atSecond;
        ASSERT_TRUE(caller->calls("1002", "best" + QByteArray::number(++number)));
        take(atFirst, atSecond);
        first->reply(atFirst, each.first);
        second->reply(atSecond, each.second);
        EXPECT_NE(first->next("ACK").toStdString(), "");
        const QByteArray reply = caller->hears(each.best);
        EXPECT_NE(reply.toStdString(), "");
        caller->acknowledge(reply);
    }
    // Who declines does so for all of his phones.
    QByteArray atFirst, atSecond;
    ASSERT_TRUE(caller->calls("1002", "declined"));
    take(atFirst, atSecond);
    second->reply(atSecond, "180 Ringing");
    first->reply(atFirst, "603 Decline");
    EXPECT_NE(second->next("CANCEL").toStdString(), "");
    second->reply(atSecond, "487 Request Terminated");
    EXPECT_NE(caller->hears(603).toStdString(), "");
}

TEST_F(PbxCalls, WhoIsNotThereIsTold)
{
    begin();
    const auto statusFor = [&](const QByteArray& number) {
        EXPECT_TRUE(caller->calls(number, "nobody" + number));
        return statusOf(caller->hears(4));
    };
    EXPECT_EQ(statusFor("1009"), 404);
    EXPECT_EQ(statusFor("1003"), 480); // has no phone
    WirePhone gone("1003", pbx.port());
    {
        WirePhone soon("1003", pbx.port());
        ASSERT_EQ(statusOf(soon.registers()), 200);
    }
    EXPECT_EQ(statusFor("1003"), 480); // its phone is switched off
}

TEST_F(PbxCalls, TheCallerGivesUp)
{
    begin();
    QByteArray atFirst, atSecond;
    ASSERT_TRUE(caller->calls("1002", "givesup"));
    take(atFirst, atSecond);
    first->reply(atFirst, "180 Ringing");
    second->reply(atSecond, "180 Ringing");
    EXPECT_NE(caller->hears(180).toStdString(), "");
    caller->cancels("1002", "givesup");
    for (WirePhone* phone : {first.get(), second.get()})
        EXPECT_NE(phone->next("CANCEL").toStdString(), "");
    first->reply(atFirst, "487 Request Terminated");
    second->reply(atSecond, "487 Request Terminated");
    EXPECT_NE(caller->hears(487).toStdString(), "");
}

TEST_F(PbxCalls, WhyTheCallerGivesUpIsToldToThosePhonesThatRing)
{
    begin();
    QByteArray atFirst, atSecond;
    ASSERT_TRUE(caller->calls("1002", "why"));
    take(atFirst, atSecond);
    first->reply(atFirst, "180 Ringing");
    EXPECT_NE(caller->hears(180).toStdString(), "");
    // He was called from several sides himself, and another one was quicker.
    caller->cancels("1002", "why", "Reason: SIP;cause=200;text=\"Call completed elsewhere\"");
    EXPECT_TRUE(headerOf(first->next("CANCEL"), "Reason").startsWith("SIP;cause=200"));
}

TEST_F(PbxCalls, WhoHidesHisNameCallsAllTheSame)
{
    begin();
    const QByteArray uri = caller->at("1002"), shown = "From: <" + caller->at("1001") + ">";
    const auto invites = [&](int number, const QByteArray& lines) {
        QByteArray text = caller->text("INVITE", uri, "hidden", number, lines);
        ASSERT_TRUE(text.contains(shown));
        caller->wire().send(text.replace(shown, "From: \"Anonymous\" <sip:anonymous@anonymous.invalid>"),
                            pbx.port());
    };
    invites(1, {});
    const QByteArray question = caller->hears(407);
    caller->acknowledge(question);
    invites(2, caller->answerTo(question, "INVITE", uri));
    const QByteArray invite = first->next("INVITE");
    ASSERT_NE(invite.toStdString(), "");
    EXPECT_TRUE(headerOf(invite, "From").contains("anonymous.invalid")) << invite.constData();
}

TEST_F(PbxCalls, OnlySoManyListenToTheVoiceMailAtOnce)
{
    constexpr int kMost = 100;
    begin();
    QByteArray reply;
    int calls = 0;
    for (; calls < kMost && statusOf(reply) < 300; ++calls) {
        const QByteArray callId = "mail" + QByteArray::number(calls);
        ASSERT_TRUE(caller->calls("*97", callId));
        do {
            reply = caller->wire().receive("SIP/2.0 ");
            ASSERT_NE(reply.toStdString(), "") << calls;
        } while (statusOf(reply) < 200 || headerOf(reply, "Call-ID") != callId);
        caller->acknowledge(reply);
    }
    EXPECT_EQ(statusOf(reply), 486);
    EXPECT_GT(calls, 10);
    EXPECT_LT(calls, kMost);
}

TEST_F(PbxCalls, WhoeverAnswersWhenTheCallerHasGivenUpIsHungUp)
{
    begin();
    QByteArray atFirst, atSecond;
    ASSERT_TRUE(caller->calls("1002", "late"));
    take(atFirst, atSecond);
    caller->cancels("1002", "late");
    EXPECT_NE(caller->hears(487).toStdString(), "");
    first->reply(atFirst, "200 OK", "Content-Type: application/sdp", "v=0\r\n");
    EXPECT_NE(first->next("ACK").toStdString(), "");
    EXPECT_NE(first->next("BYE").toStdString(), "");
    // The other one long after the exchange has let go of the request.
    EXPECT_EQ(caller->hears(200, 2500).toStdString(), "");
    second->reply(atSecond, "200 OK", "Content-Type: application/sdp", "v=0\r\n");
    EXPECT_NE(second->next("ACK").toStdString(), "");
    EXPECT_NE(second->next("BYE").toStdString(), "");
    EXPECT_EQ(caller->hears(200, 300).toStdString(), "");
}

TEST_F(PbxCalls, NothingRingsForEver)
{
    begin(1);
    QByteArray atFirst, atSecond;
    ASSERT_TRUE(caller->calls("1002", "long"));
    take(atFirst, atSecond);
    first->reply(atFirst, "180 Ringing");
    EXPECT_NE(caller->hears(480).toStdString(), "");
    const QByteArray cancel = first->next("CANCEL");
    EXPECT_NE(cancel.toStdString(), "");
    EXPECT_FALSE(headerOf(cancel, "Reason").contains("cause=200")) << "nobody has answered";
}

TEST_F(PbxCalls, WhoIsNotKnownCallsNobodyAndNobodyCallsTheOutside)
{
    begin();
    WirePhone wrong("1003", pbx.port(), "guess");
    ASSERT_TRUE(wrong.calls("1002", "wrong"));
    const QByteArray again = wrong.hears(4);
    EXPECT_EQ(statusOf(again), 407) << "and so a phone can say that it is the password";
    EXPECT_TRUE(again.contains("nonce=") && !again.contains("stale")) << again.constData();
    wrong.acknowledge(again);
    // Another's name.
    WirePhone liar("1003", pbx.port());
    const QByteArray uri = liar.at("1002");
    liar.wire().send(liar.text("INVITE", uri, "liar", 1), pbx.port());
    const QByteArray question = liar.hears(407);
    liar.acknowledge(question);
    liar.wire().send(liar.text("INVITE", uri, "liar", 2, liar.answerTo(question, "INVITE", uri))
                         .replace("From: <sip:1003@", "From: <sip:1001@"),
                     pbx.port());
    EXPECT_NE(liar.hears(403).toStdString(), "");
    EXPECT_EQ(first->next("INVITE", 200).toStdString(), "");
    // Not out of here, with or without a call's dress.
    UdpPeer outside;
    const QByteArray address = "sip:300@127.0.0.1:" + QByteArray::number(outside.port());
    const QByteArray reply = caller->ask("INVITE", address, "outside");
    EXPECT_EQ(statusOf(reply), 403);
    for (const char* method : {"INVITE", "BYE", "INFO", "ACK"})
        caller->wire().send(caller->text(method, address, "foreign", 5, {}, {}, "<sip:300@127.0.0.1>;tag=x"),
                            pbx.port());
    EXPECT_NE(caller->hears(481).toStdString(), "");
    EXPECT_EQ(outside.receive(200).toStdString(), "");
}

TEST_F(PbxCalls, AnInviteToAPhoneItselfReachesThatPhoneAlone)
{
    begin();
    const QByteArray uri = "sip:1002@" + second->own();
    caller->wire().send(caller->text("INVITE", uri, "itself", 1), pbx.port());
    const QByteArray question = caller->hears(407);
    caller->acknowledge(question);
    caller->wire().send(
        caller->text("INVITE", uri, "itself", 2,
                     caller->answerTo(question, "INVITE", uri) + "\r\nReplaces: other;to-tag=a;from-tag=b"),
        pbx.port());
    EXPECT_TRUE(second->next("INVITE").contains("Replaces: other;to-tag=a;from-tag=b"));
    EXPECT_EQ(first->next("INVITE", 200).toStdString(), "");
}

TEST_F(PbxCalls, ARequestThatWasHereBeforeDoesNotGoRound)
{
    begin();
    const QByteArray own = "127.0.0.1:" + QByteArray::number(pbx.port());
    QByteArray request = caller->text("OPTIONS", caller->at("1002"), "round", 1);
    request.replace("From:", "Via: SIP/2.0/UDP " + own + ";branch=z9hG4bKx\r\nFrom:");
    caller->wire().send(request, pbx.port());
    EXPECT_NE(caller->hears(482).toStdString(), "");
    EXPECT_EQ(statusOf(caller->ask("OPTIONS", "sip:" + own, "there")), 200);
}

TEST_F(PbxCalls, WhatIsMeantForSomebodyElseIsRefused)
{
    begin();
    EXPECT_EQ(statusOf(caller->ask("INVITE", "sip:1003@" + first->own(), "name")), 403) << "no phone has it";
    const QByteArray place = "127.0.0.1:" + QByteArray::number(kit::freePort());
    EXPECT_EQ(statusOf(caller->ask("SUBSCRIBE", "sip:1002@" + place, "watch", "Event: dialog")), 403);
    EXPECT_EQ(statusOf(caller->ask("REGISTER", "sip:" + place, "register",
                                   "Contact: <sip:1001@" + caller->own() + ">", {},
                                   "<" + caller->at("1001") + ">")),
              403);
    // Within a call, and not for its other side.
    const QByteArray answer = talk("itself");
    caller->wire().send(
        caller->text("INFO", caller->at("1002"), "itself", 90, {}, {}, headerOf(answer, "To")), pbx.port());
    EXPECT_NE(caller->hears(404).toStdString(), "");
}

TEST_F(PbxCalls, WhatHasGoneThroughTooManyHandsGoesNoFurther)
{
    begin();
    const QByteArray uri = caller->at("1002");
    const auto asks = [&](int number, const QByteArray& lines) {
        caller->wire().send(caller->text("MESSAGE", uri, "hops", number, lines)
                                .replace("Max-Forwards: 70", "Max-Forwards: 0"),
                            pbx.port());
    };
    asks(1, {});
    asks(2, caller->answerTo(caller->hears(407), "MESSAGE", uri));
    EXPECT_NE(caller->hears(483).toStdString(), "");
    EXPECT_EQ(first->next("MESSAGE", 200).toStdString(), "");
}

TEST_F(PbxCalls, TheVoiceMailTakesPlainSoundAndIsOverWhenItIsHungUp)
{
    begin();
    ASSERT_TRUE(caller->calls("*97", "secure", {}, WirePhone::offer().replace("RTP/AVP 96 8", "RTP/SAVP 8")));
    const QByteArray refused = caller->hears(488);
    EXPECT_NE(refused.toStdString(), "");
    caller->acknowledge(refused);

    ASSERT_TRUE(first->calls("*97", "mail", {}, WirePhone::offer() + "m=audio 40002 RTP/AVP 8\r\n"));
    const QByteArray answer = first->hears(200);
    EXPECT_TRUE(answer.endsWith("m=audio 0 RTP/AVP 8\r\n")) << answer.constData();
    EXPECT_EQ(answer.count("a=recvonly"), 1) << "one sound is enough";
    first->acknowledge(answer);
    first->within("BYE", answer);
    EXPECT_TRUE(headerOf(first->hears(200), "CSeq").endsWith("BYE"));
    EXPECT_EQ(first->next("BYE", 4000).toStdString(), "") << "longer than it would listen";
}

TEST_F(PbxCalls, WhatTheExchangeHasToKnowAndDoesNotItRefuses)
{
    begin();
    const QByteArray reply =
        caller->ask("MESSAGE", caller->at("1002"), "need", "Proxy-Require: nobodyhasthis");
    EXPECT_EQ(statusOf(reply), 420);
    EXPECT_EQ(first->next("MESSAGE", 200).toStdString(), "");
}
