// What the exchange tells phones of extensions and of messages.
#include "tests/kit/plain/processes.h"
#include "tests/pbx/pbxCalls.h"
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace {

// Is wellformed, and holds that.
::testing::AssertionResult holds(const QByteArray& notice, const QByteArray& text)
{
    const QByteArray body = notice.mid(notice.indexOf("\r\n\r\n") + 4);
    if (headerOf(notice, "Content-Type").endsWith("+xml")) {
        QXmlStreamReader reader(body);
        while (!reader.atEnd())
            reader.readNext();
        if (reader.hasError())
            return ::testing::AssertionFailure() << qPrintable(reader.errorString()) << "\n"
                                                 << body.constData();
    }
    if (body.contains(text))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << notice.constData();
}

// Tells that the extension has no call.
::testing::AssertionResult isIdle(const QByteArray& notice)
{
    const ::testing::AssertionResult isWhole = holds(notice, "</dialog-info>");
    if (isWhole && notice.contains("<dialog "))
        return ::testing::AssertionFailure() << notice.constData();
    return isWhole;
}

// Tells that nothing is known of the extension.
::testing::AssertionResult isUnknown(const QByteArray& notice)
{
    if (headerOf(notice, "Subscription-State").startsWith("pending;expires=") && notice.endsWith("\r\n\r\n"))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << notice.constData();
}

class PbxEvents : public PbxCalls
{
protected:
    int subscribe(WirePhone& phone, const QByteArray& user, const QByteArray& event,
                  const QByteArray& lines = {}, const QByteArray& callId = "watch")
    {
        const QByteArray more = "Event: " + event + (lines.isEmpty() ? "" : "\r\n" + lines);
        accepted = phone.ask("SUBSCRIBE", phone.at(user), callId, more);
        return statusOf(accepted);
    }
    // The next notice, which is answered.
    QByteArray notice(WirePhone& phone, int ms = 15000)
    {
        const QByteArray request = phone.next("NOTIFY", ms);
        if (!request.isEmpty())
            phone.reply(request, "200 OK");
        return request;
    }

    QByteArray accepted; // the answer to the last request
};

} // namespace

TEST_F(PbxEvents, AWatchedExtensionIsTracedThroughItsCall)
{
    begin();
    WirePhone watcher("1003", pbx.port());
    ASSERT_EQ(subscribe(watcher, "1002", "dialog", "Expires: 600"), 200);
    EXPECT_EQ(headerOf(accepted, "Expires").toStdString(), "600");
    QByteArray told = notice(watcher);
    EXPECT_TRUE(holds(told, "state=\"full\" entity=\"sip:1002@127.0.0.1:"));
    EXPECT_TRUE(isIdle(told));
    EXPECT_EQ(headerOf(told, "Event").toStdString(), "dialog");
    EXPECT_TRUE(headerOf(told, "Subscription-State").startsWith("active;expires=")) << told.constData();

    QByteArray atFirst, atSecond;
    ASSERT_TRUE(caller->calls("1002", "seen", "X-Name: x"));
    take(atFirst, atSecond);
    first->reply(atFirst, "180 Ringing");
    told = notice(watcher);
    EXPECT_TRUE(holds(told, "<state>early</state>"));
    EXPECT_TRUE(holds(told, "call-id=\"seen\" local-tag=\"p" + QByteArray::number(first->wire().port()) +
                                "\" remote-tag=\"fseen\" direction=\"recipient\""));
    EXPECT_TRUE(holds(told, "<remote><identity>sip:1001@"));
    EXPECT_TRUE(holds(told, "version=\"1\""));
    first->reply(atFirst, "200 OK");
    told = notice(watcher);
    EXPECT_TRUE(holds(told, "<state>confirmed</state>"));
    const QByteArray answer = caller->hears(200);
    caller->acknowledge(answer);
    caller->within("BYE", answer);
    told = notice(watcher);
    EXPECT_TRUE(isIdle(told));
    EXPECT_TRUE(holds(told, "version=\"3\""));
}

TEST_F(PbxEvents, TheCallerIsSeenFromTheBeginningAndALostCallGoesWithItsPhone)
{
    begin();
    WirePhone watcher("1003", pbx.port());
    ASSERT_EQ(subscribe(watcher, "1001", "dialog"), 200);
    notice(watcher);
    ASSERT_TRUE(caller->calls("1002", "mine"));
    EXPECT_TRUE(holds(notice(watcher), "direction=\"initiator\">\n<state>trying</state>"));
    const QByteArray atFirst = first->next("INVITE");
    first->reply(atFirst, "200 OK");
    EXPECT_TRUE(holds(notice(watcher), "<state>confirmed</state>"));
    EXPECT_EQ(statusOf(caller->registers(0)), 200);
    EXPECT_TRUE(isUnknown(notice(watcher)));
    EXPECT_EQ(statusOf(caller->registers()), 200);
    QByteArray told;
    do { // the end of the call may be told by itself
        told = notice(watcher);
    } while (isUnknown(told));
    EXPECT_TRUE(isIdle(told)) << "it has come back without that call";
}

TEST_F(PbxEvents, APhoneThatHasOnlyTakenACallDoesNotRing)
{
    begin();
    WirePhone watcher("1003", pbx.port());
    QByteArray atFirst, atSecond;
    ASSERT_TRUE(caller->calls("1002", "taken"));
    take(atFirst, atSecond);
    first->reply(atFirst, "100 Trying");
    ASSERT_EQ(subscribe(watcher, "1002", "dialog"), 200);
    EXPECT_TRUE(isIdle(notice(watcher)));
    first->reply(atFirst, "180 Ringing");
    EXPECT_TRUE(holds(notice(watcher), "<state>early</state>"));
}

TEST_F(PbxEvents, ACallThatIsRefusedIsOver)
{
    begin();
    WirePhone watcher("1003", pbx.port());
    ASSERT_EQ(subscribe(watcher, "1002", "dialog"), 200);
    EXPECT_TRUE(isIdle(notice(watcher)));
    QByteArray atFirst, atSecond;
    ASSERT_TRUE(caller->calls("1002", "refused"));
    take(atFirst, atSecond);
    first->reply(atFirst, "180 Ringing");
    EXPECT_TRUE(holds(notice(watcher), "<state>early</state>"));
    first->reply(atFirst, "486 Busy Here");
    second->reply(atSecond, "486 Busy Here");
    caller->acknowledge(caller->hears(486));
    EXPECT_TRUE(isIdle(notice(watcher)));
}

TEST_F(PbxEvents, OneMayWatchSoManyAtOnceAndWhatHasEndedMakesRoom)
{
    constexpr int kMost = 200;
    begin();
    QByteArray firstTo;
    int watched = 0, status = 200;
    for (; watched < kMost && status == 200; ++watched) {
        status = subscribe(*caller, "1002", "dialog", "Expires: 600", "w" + QByteArray::number(watched));
        if (watched == 0)
            firstTo = headerOf(accepted, "To");
        if (status == 200) {
            EXPECT_NE(notice(*caller).toStdString(), "");
        }
    }
    EXPECT_EQ(status, 503);
    EXPECT_GT(watched, 20);
    EXPECT_LT(watched, kMost);
    EXPECT_EQ(subscribe(*first, "1001", "dialog"), 200) << "another one has room";
    EXPECT_EQ(statusOf(caller->ask("SUBSCRIBE", caller->at("1002"), "w0", "Event: dialog\r\nExpires: 0", {},
                                   firstTo)),
              200);
    notice(*caller);
    EXPECT_TRUE(kit::waits(
        [&] { return subscribe(*caller, "1002", "dialog", "Expires: 600", "anew") == 200; }, 15000));
}

TEST_F(PbxEvents, AnExtensionWhosePhoneIsHeardOfNoMoreIsNotKnownInTheEnd)
{
    if (!qEnvironmentVariableIsSet("HX_LONG"))
        GTEST_SKIP() << "takes a minute: ./test --long";
    begin();
    WirePhone third("1003", pbx.port());
    ASSERT_EQ(statusOf(third.registers(60)), 200);
    ASSERT_EQ(subscribe(*caller, "1003", "dialog", "Expires: 600"), 200);
    EXPECT_TRUE(isIdle(notice(*caller)));
    EXPECT_TRUE(isUnknown(notice(*caller, 90000)));
    ASSERT_TRUE(caller->calls("1003", "gone"));
    EXPECT_NE(caller->hears(480).toStdString(), "");
}

TEST_F(PbxEvents, OfAnExtensionWithoutAPhoneNothingIsKnown)
{
    begin();
    ASSERT_EQ(subscribe(*caller, "1003", "dialog", "Expires: 600"), 200);
    EXPECT_TRUE(isUnknown(notice(*caller)));
    WirePhone third("1003", pbx.port());
    ASSERT_EQ(statusOf(third.registers()), 200);
    EXPECT_TRUE(isIdle(notice(*caller)));
    ASSERT_EQ(statusOf(third.registers()), 200);
    ASSERT_EQ(statusOf(third.registers(0)), 200);
    EXPECT_TRUE(isUnknown(notice(*caller))) << "once, and only now";
}

TEST_F(PbxEvents, TheListHasEveryExtensionWithItsName)
{
    begin();
    WirePhone watcher("1003", pbx.port());
    EXPECT_EQ(subscribe(watcher, "blf", "dialog"), 421) << "a phone that does not know lists";
    ASSERT_EQ(subscribe(watcher, "blf", "dialog", "Supported: eventlist", "list"), 200);
    QByteArray told = notice(watcher);
    EXPECT_EQ(headerOf(told, "Require").toStdString(), "eventlist");
    EXPECT_TRUE(headerOf(told, "Content-Type").startsWith("multipart/related;")) << told.constData();
    EXPECT_TRUE(holds(told, "fullState=\"true\""));
    EXPECT_TRUE(holds(told, "\"><name>Ben</name>"));
    EXPECT_TRUE(holds(told, "\"><name>Cleo &amp; Co</name>"));
    EXPECT_EQ(told.count("Content-Type: application/dialog-info+xml"), 2) << "1003 has no phone";
    ASSERT_TRUE(caller->calls("1002", "listed"));
    EXPECT_TRUE(holds(notice(watcher), "<state>trying</state>"));
}

TEST_F(PbxEvents, ACallThatNobodyAnswersBecomesAMessageAndTheVoiceMailTakesItAway)
{
    begin(1);
    ASSERT_EQ(subscribe(*first, "1002", "message-summary"), 200);
    EXPECT_TRUE(holds(notice(*first), "Messages-Waiting: no\r\nMessage-Account: sip:1002@127.0.0.1:"));
    ASSERT_TRUE(caller->calls("1002", "unanswered"));
    EXPECT_NE(caller->hears(480).toStdString(), "");
    QByteArray told = notice(*first);
    EXPECT_TRUE(holds(told, "Messages-Waiting: yes"));
    EXPECT_TRUE(holds(told, "Voice-Message: 1/0"));
    ASSERT_TRUE(caller->calls("1002", "again"));
    EXPECT_NE(caller->hears(480).toStdString(), "");
    EXPECT_TRUE(holds(notice(*first), "Voice-Message: 2/0"));
    // One that was given up leaves none.
    ASSERT_TRUE(caller->calls("1002", "givenup"));
    caller->cancels("1002", "givenup");
    EXPECT_NE(caller->hears(487).toStdString(), "");

    ASSERT_TRUE(first->calls("*97", "unfit", {}, WirePhone::offer().replace("96 8", "96")));
    first->acknowledge(first->hears(488));
    EXPECT_EQ(first->next("NOTIFY", 300).toStdString(), "") << "nobody has listened";
    ASSERT_TRUE(first->calls("*97", "mail"));
    const QByteArray answer = first->hears(200);
    // A format that needs no further word, at a port where the exchange listens.
    static const QRegularExpression sound("\r\nm=audio (\\d+) RTP/AVP 8\r\na=recvonly\r\n");
    const int port = sound.match(QString::fromUtf8(answer)).captured(1).toInt();
    EXPECT_GT(port, 1023) << answer.constData();
    EXPECT_EQ(UdpPeer("127.0.0.1", uint32_t(port)).port(), 0u) << "nobody listens there";
    first->acknowledge(answer);
    told = notice(*first);
    EXPECT_TRUE(holds(told, "Voice-Message: 0/0"));
    first->within("INFO", answer);
    EXPECT_TRUE(headerOf(first->hears(488), "CSeq").endsWith("INFO")) << "which ends nothing";
    const QByteArray bye = first->next("BYE");
    EXPECT_NE(bye.toStdString(), "") << "nobody listens to silence for long";
    first->reply(bye, "200 OK");
}

TEST_F(PbxEvents, SubscriptionsAreRefusedRefreshedAndEnded)
{
    begin();
    EXPECT_EQ(subscribe(*caller, "1009", "dialog", {}, "a"), 404);
    EXPECT_EQ(subscribe(*caller, "1002", "presence", {}, "b"), 489);
    EXPECT_EQ(subscribe(*caller, "1002", "message-summary", {}, "c"), 403) << "another's messages";
    EXPECT_EQ(subscribe(*caller, "1002", "dialog", "Expires: 5", "d"), 423);
    WirePhone wrong("1001", pbx.port(), "guess");
    EXPECT_EQ(subscribe(wrong, "1002", "dialog", {}, "e"), 407);
    ASSERT_EQ(subscribe(*caller, "1002", "dialog", "Expires: 600", "f"), 200);
    const QByteArray to = headerOf(accepted, "To");
    notice(*caller);
    const auto again = [&](const QByteArray& seconds, const QByteArray& tag) {
        return statusOf(caller->ask("SUBSCRIBE", caller->at("1002"), "f",
                                    "Event: dialog\r\nExpires: " + seconds, {}, tag));
    };
    EXPECT_EQ(again("600", to + "x"), 481);
    EXPECT_EQ(
        statusOf(first->ask("SUBSCRIBE", first->at("1002"), "f", "Event: dialog\r\nExpires: 0", {}, to)), 481)
        << "another's";
    // An older one that comes late.
    const auto sends = [&](const QByteArray& lines) {
        caller->wire().send(caller->text("SUBSCRIBE", caller->at("1002"), "f", 1,
                                         "Event: dialog\r\nExpires: 0" + lines, {}, to),
                            pbx.port());
    };
    sends({});
    const QByteArray question = caller->hears(407);
    sends("\r\nX: 1\r\n" + caller->answerTo(question, "SUBSCRIBE", caller->at("1002")));
    EXPECT_NE(caller->hears(500).toStdString(), "");
    EXPECT_EQ(again("900", to), 200);
    EXPECT_TRUE(headerOf(notice(*caller), "Subscription-State").startsWith("active;expires=900"));
    // Of the same user, in another dialogue of that name.
    const auto beside = [&](int number, const QByteArray& lines) {
        caller->wire().send(caller
                                ->text("SUBSCRIBE", caller->at("1002"), "f", number,
                                       "Event: dialog\r\nExpires: 0" + lines, {}, to)
                                .replace(";tag=ff", ";tag=other"),
                            pbx.port());
    };
    beside(100, {});
    beside(101, "\r\n" + caller->answerTo(caller->hears(407), "SUBSCRIBE", caller->at("1002")));
    EXPECT_NE(caller->hears(481).toStdString(), "");
    // Whoever has moved says so.
    const QByteArray moved = "Event: dialog\r\nExpires: 900\r\nContact: <sip:1001@" + first->own() + ">";
    EXPECT_EQ(statusOf(caller->ask("SUBSCRIBE", caller->at("1002"), "f", moved, {}, to)), 200);
    EXPECT_NE(notice(*first).toStdString(), "");
    EXPECT_EQ(again("0", to), 200);
    EXPECT_TRUE(headerOf(notice(*caller), "Subscription-State").startsWith("terminated"));
    EXPECT_EQ(again("600", to), 481);
}

TEST_F(PbxEvents, WhatChangesBeforeANoticeIsAnsweredIsToldAfterwards)
{
    begin();
    WirePhone watcher("1003", pbx.port());
    ASSERT_EQ(subscribe(watcher, "1002", "dialog"), 200);
    const QByteArray waits = watcher.next("NOTIFY");
    QByteArray atFirst, atSecond;
    ASSERT_TRUE(caller->calls("1002", "meanwhile"));
    take(atFirst, atSecond);
    first->reply(atFirst, "180 Ringing");
    EXPECT_NE(caller->hears(180).toStdString(), "");
    watcher.reply(waits, "200 OK");
    QByteArray told;
    do { // the first one may have been said once more
        told = notice(watcher);
    } while (headerOf(told, "CSeq") == headerOf(waits, "CSeq"));
    EXPECT_TRUE(holds(told, "<state>early</state>"));
}

TEST_F(PbxEvents, APhoneThatDoesNotWantANoticeIsLeftAlone)
{
    begin();
    ASSERT_EQ(subscribe(*second, "1001", "dialog"), 200);
    const QByteArray told = second->next("NOTIFY");
    second->reply(told, "481 Gone");
    ASSERT_TRUE(caller->calls("1002", "alone"));
    EXPECT_NE(first->next("INVITE").toStdString(), "");
    EXPECT_EQ(second->next("NOTIFY", 300).toStdString(), "");
}

TEST_F(PbxEvents, ANameThatIsNoTextLeavesTheNoticeWhole)
{
    begin();
    WirePhone watcher("1003", pbx.port());
    ASSERT_EQ(subscribe(watcher, "1002", "dialog"), 200);
    notice(watcher);
    const QByteArray number = caller->at("1002");
    const auto invites = [&](int count, const QByteArray& lines) {
        caller->wire().send(caller->text("INVITE", number, "odd", count, lines, "v=0\r\n")
                                .replace("From: <", "From: \"A\\\"B\xff\xc3\xa9\xed\xa0\x80\" <"),
                            pbx.port());
    };
    invites(1, {});
    const QByteArray question = caller->hears(407);
    caller->acknowledge(question);
    invites(2, caller->answerTo(question, "INVITE", number));
    QByteArray atFirst, atSecond;
    take(atFirst, atSecond);
    first->reply(atFirst, "180 Ringing");
    EXPECT_TRUE(holds(notice(watcher), "&quot;B\xef\xbf\xbd\xc3\xa9\xef\xbf\xbd"));
}
