// Extensions and lists of them, as the servers of the lines tell of them, and calls that are taken from
// there.
#include "tests/kit/plain/measuredMemory.h"
#include "tests/kit/plain/ports.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/eventTest.h"
#include <QElapsedTimer>
#include <QMap>
#include <QtGlobal>
#include <map>

namespace {

constexpr int kPaceMs = 100; // at most so often the phone is told

using SipExtensions = SipEventsOf;

QByteArray ringing(const QByteArray& id = "a", const QByteArray& caller = "sip:8003@127.0.0.1")
{
    return dialog(id, "early", "recipient", "call-id=\"c1@h\" local-tag=\"ben\" remote-tag=\"anna\"",
                  "<remote><identity display=\"Cleo &amp; Co\">" + caller +
                      "</identity><target uri=\"sip:anna@127.0.0.1:5999\"/></remote>");
}

} // namespace

TEST_F(SipExtensions, AWatchedExtensionIsToldWithEachChange)
{
    beginWithoutMessages();
    watch(1, "80#01");
    const QByteArray subscribe = nextSubscribe("dialog");
    EXPECT_EQ(headerOf(subscribe, "To").toStdString(),
              "<sip:80%2301@127.0.0.1:" + std::to_string(peer->port()) + ">");
    EXPECT_EQ(headerOf(subscribe, "Accept").toStdString(), "application/dialog-info+xml");
    accept(subscribe);
    EXPECT_TRUE(isNothingTold()); // it has begun as unknown
    EXPECT_EQ(note(subscribe, dialogs(0, "full")).toStdString(), "SIP/2.0 200 OK");
    expectLamp(1, SIP_LAMP_IDLE);
    note(subscribe, dialogs(1, "partial", ringing()));
    expectLamp(1, SIP_LAMP_RINGING);
    note(subscribe, dialogs(2, "partial", dialog("a", "confirmed", "recipient")));
    expectLamp(1, SIP_LAMP_BUSY);
    note(subscribe, dialogs(3, "partial", dialog("b", "confirmed", "initiator")));
    note(subscribe, dialogs(4, "partial", dialog("a", "terminated", "recipient")));
    EXPECT_TRUE(isNothingTold());
    agent.tell(sipWire::make<tagSipHead>(SIP_UNWATCH, 1));
    EXPECT_EQ(headerOf(nextFarewell("dialog"), "Call-ID").toStdString(),
              headerOf(subscribe, "Call-ID").toStdString());
    note(subscribe, dialogs(5, "full"));
    EXPECT_TRUE(isNothingTold());
}

TEST_F(SipExtensions, WhatIsMissedOrDamagedIsAskedForAndIsNotKnownMeanwhile)
{
    beginWithoutMessages();
    const QByteArray subscribe = watched(1, "8001");
    note(subscribe, dialogs(0, "full"));
    expectLamp(1, SIP_LAMP_IDLE);
    note(subscribe, dialogs(3, "partial", dialog("a", "confirmed", "")));
    expectLamp(1, SIP_LAMP_BUSY);
    const QByteArray again = nextSubscribe("dialog");
    EXPECT_EQ(headerOf(again, "Call-ID").toStdString(), headerOf(subscribe, "Call-ID").toStdString());
    accept(again);
    note(subscribe, dialogs(4, "full"));
    expectLamp(1, SIP_LAMP_IDLE);
    // Whose notes always miss something is not asked each time.
    EXPECT_TRUE(isNothingTold(int(AgentProcess::quickSetup().nRetryMs) * 2));
    int asked = 0;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 30; ++i) {
        sendNote(subscribe, "<dialog-info", "application/dialog-info+xml", "active");
        QByteArray message = peer->receive();
        for (; message.startsWith("SUBSCRIBE"); message = peer->receive()) {
            accept(message);
            ++asked;
        }
        EXPECT_TRUE(message.startsWith("SIP/2.0 200")) << message.constData();
    }
    expectLamp(1, SIP_LAMP_UNKNOWN);
    EXPECT_GE(asked, 1);
    EXPECT_LE(asked, 1 + timer.elapsed() / AgentProcess::quickSetup().nRetryMs);
    note(subscribe, dialogs(0, "full", ringing()));
    expectLamp(1, SIP_LAMP_RINGING);
    note(subscribe, dialogs(0, "full"), "application/pidf+xml");
    expectLamp(1, SIP_LAMP_UNKNOWN);
}

TEST_F(SipExtensions, ANoteWithoutADocumentSaysThatNobodyHasACallAndTakesNothingBack)
{
    beginWithoutMessages();
    const QByteArray subscribe = watched(1, "8001");
    note(subscribe, "", "", "pending");
    EXPECT_TRUE(isNothingTold());
    note(subscribe, "", "", "active");
    expectLamp(1, SIP_LAMP_IDLE);
    note(subscribe, dialogs(0, "full", ringing()));
    expectLamp(1, SIP_LAMP_RINGING);
    note(subscribe, "", "", "active");
    EXPECT_TRUE(isNothingTold());
    note(subscribe, "", "", "pending");
    expectLamp(1, SIP_LAMP_UNKNOWN);
}

TEST_F(SipExtensions, AnExtensionThatTheServerDoesNotTellOfIsNotKnown)
{
    beginWithoutMessages();
    const QByteArray subscribe = watched(1, "8001");
    note(subscribe, dialogs(0, "full", dialog("a", "confirmed", "")));
    expectLamp(1, SIP_LAMP_BUSY);
    note(subscribe, "", "", "terminated;reason=noresource");
    expectLamp(1, SIP_LAMP_UNKNOWN);
    EXPECT_EQ(nextSubscribe("dialog", 1000).toStdString(), "");
    watch(2, "8002");
    peer->reply(nextSubscribe("dialog"), "404 Not Found");
    EXPECT_EQ(nextSubscribe("dialog", 1000).toStdString(), "");
    EXPECT_TRUE(isNothingTold());
}

TEST_F(SipExtensions, WithoutTheLineNothingIsKnownAndWithItItIsAskedForAgain)
{
    beginWithoutMessages();
    const QByteArray subscribe = watched(1, "8001");
    note(subscribe, dialogs(7, "full", dialog("a", "confirmed", "")));
    expectLamp(1, SIP_LAMP_BUSY);
    agent.tell(sipWire::make<tagSipAccount>(SIP_ACCOUNT, 0));
    expectLamp(1, SIP_LAMP_UNKNOWN);
    watch(2, "8002");
    EXPECT_NE(nextFarewell("dialog").toStdString(), "");
    EXPECT_EQ(nextSubscribe("dialog", 500).toStdString(), "");
    agent.tell(accountAt(0, peer->port()));
    QMap<QByteArray, QByteArray> asked;
    for (int i = 0; i < 20 && asked.size() < 2; ++i) {
        const QByteArray message = peer->receive();
        if (message.startsWith("REGISTER"))
            peer->reply(message, "200 OK", "Contact: " + headerOf(message, "Contact") + ";expires=3600");
        else if (headerOf(message, "Event") == "dialog" && headerOf(message, "Expires") != "0")
            asked.insert(headerOf(message, "To"), message);
        else if (message.startsWith("SUBSCRIBE"))
            peer->reply(message, "489 Bad Event");
    }
    ASSERT_EQ(asked.size(), 2);
    for (const QByteArray& each : asked)
        accept(each);
    note(asked.first(), dialogs(0, "full"));
    expectLamp(1, SIP_LAMP_IDLE);
    note(asked.last(), dialogs(0, "full", ringing()));
    expectLamp(2, SIP_LAMP_RINGING);
}

TEST_F(SipExtensions, FortyAreWatchedAtOnceAndEachIsRefreshed)
{
    beginWithoutMessages();
    QMap<QByteArray, QByteArray> byCall;
    for (uint32_t id = 1; id <= SIP_WATCHES_MAX; ++id) {
        watch(id, ("80" + QByteArray::number(id)).constData());
        const QByteArray subscribe = nextSubscribe("dialog");
        accept(subscribe, 3);
        note(subscribe, dialogs(0, "full"), "application/dialog-info+xml", "active;expires=3");
        byCall.insert(headerOf(subscribe, "Call-ID"), subscribe);
    }
    ASSERT_EQ(byCall.size(), int(SIP_WATCHES_MAX));
    watch(SIP_WATCHES_MAX + 1, "8099");
    QMap<QByteArray, int> refreshed;
    for (int i = 0; i < 400 && refreshed.size() < SIP_WATCHES_MAX; ++i) {
        const QByteArray subscribe = nextSubscribe("dialog");
        ASSERT_FALSE(subscribe.isEmpty());
        EXPECT_FALSE(headerOf(subscribe, "To").contains("8099"));
        EXPECT_TRUE(byCall.contains(headerOf(subscribe, "Call-ID")));
        accept(subscribe, 3);
        ++refreshed[headerOf(subscribe, "Call-ID")];
    }
    EXPECT_EQ(refreshed.size(), int(SIP_WATCHES_MAX));
    // One that is not watched any more makes room.
    agent.tell(sipWire::make<tagSipHead>(SIP_UNWATCH, 1));
    watch(SIP_WATCHES_MAX + 2, "8098");
    QByteArray subscribe;
    for (int i = 0; i < 400 && !headerOf(subscribe, "To").contains("8098"); ++i) {
        subscribe = nextSubscribe("dialog");
        accept(subscribe, 3);
    }
    EXPECT_TRUE(headerOf(subscribe, "To").contains("8098"));
}

TEST_F(SipExtensions, TheListOfALineIsToldWithNamesAndStates)
{
    beginWithoutMessages();
    watchList("all");
    const QByteArray subscribe = nextSubscribe("dialog");
    EXPECT_TRUE(headerOf(subscribe, "To").startsWith("<sip:all@127.0.0.1")) << subscribe.constData();
    EXPECT_TRUE(headerOf(subscribe, "Supported").contains("eventlist")) << subscribe.constData();
    EXPECT_TRUE(headerOf(subscribe, "Accept").contains("application/rlmi+xml"));
    accept(subscribe);
    const auto tell = [&](const QByteArray& body) {
        return note(subscribe, body, kListContent, "active", "Require: eventlist").toStdString();
    };
    EXPECT_EQ(tell(list(0, true, member("sip:8001@h", "Anna", "i1", "c1") + member("sip:8002@h", "Ben")) +
                   part("c1", dialogs(0, "full", dialog("a", "confirmed", ""))) + kListEnd),
              "SIP/2.0 200 OK");
    const auto* told = next<tagSipList>(SIP_LIST, 0);
    ASSERT_TRUE(told);
    EXPECT_EQ(told->nMembers, 2u);
    const auto expectMember = [&](uint32_t index, const char* number, const char* name, SIP_LAMP_STATE lamp) {
        const auto* each = next<tagSipMember>(SIP_MEMBER, 0);
        ASSERT_TRUE(each) << number;
        EXPECT_EQ(each->nIndex, index);
        EXPECT_STREQ(each->szNumber, number);
        EXPECT_STREQ(each->szName, name);
        EXPECT_EQ(each->eLamp, uint32_t(lamp));
    };
    expectMember(0, "8001", "Anna", SIP_LAMP_BUSY);
    expectMember(1, "8002", "Ben", SIP_LAMP_UNKNOWN);
    tell(list(1, false, member("sip:8002@h", "Ben", "i2", "c2")) + part("c2", dialogs(0, "full", ringing())) +
         kListEnd);
    expectMember(1, "8002", "Ben", SIP_LAMP_RINGING);
    EXPECT_TRUE(isNothingTold());
    // Another name alone is news.
    tell(list(2, false, member("sip:8002@h", "Benno", "i2")) + kListEnd);
    expectMember(0, "8001", "Anna", SIP_LAMP_BUSY);
    expectMember(1, "8002", "Benno", SIP_LAMP_RINGING);
    // It is taken from there, though nobody watches it by itself.
    pickUp(5, "8002");
    const QByteArray invite = peer->receive("INVITE");
    EXPECT_EQ(headerOf(invite, "Replaces").toStdString(), "c1@h;to-tag=anna;from-tag=ben;early-only");
    peer->reply(invite, "480 Gone");
    tell("--b--\r\n");
    expectMember(0, "8001", "Anna", SIP_LAMP_UNKNOWN);
    expectMember(1, "8002", "Benno", SIP_LAMP_UNKNOWN);
    watchList("");
    told = next<tagSipList>(SIP_LIST, 0);
    ASSERT_TRUE(told);
    EXPECT_EQ(told->nMembers, 0u);
}

TEST_F(SipExtensions, ACallThatRingsThereIsTakenByTheNamesOfItsDialogue)
{
    beginWithoutMessages();
    const QByteArray subscribe = watched(1, "8001");
    note(subscribe, dialogs(0, "full", ringing()));
    expectLamp(1, SIP_LAMP_RINGING);
    pickUp(5, "8001");
    const auto* caller = next<tagSipPeer>(SIP_PEER, 5);
    ASSERT_TRUE(caller);
    EXPECT_STREQ(caller->szAddress, "sip:8003@127.0.0.1");
    EXPECT_STREQ(caller->szName, "Cleo & Co");
    const QByteArray invite = peer->receive("INVITE");
    EXPECT_TRUE(invite.startsWith("INVITE sip:anna@127.0.0.1:5999 SIP/2.0")) << invite.constData();
    EXPECT_EQ(headerOf(invite, "Replaces").toStdString(), "c1@h;to-tag=anna;from-tag=ben;early-only");
    EXPECT_EQ(headerOf(invite, "Require").toStdString(), "replaces");
    EXPECT_TRUE(invite.endsWith("s=offer\r\n"));
    peer->reply(invite, "200 OK", peer->linesWithSdp("anna"), "v=0\r\ns=answer\r\n");
    EXPECT_TRUE(next<tagSipMedia>(SIP_TALK, 5));
    EXPECT_FALSE(peer->receive("ACK").isEmpty());
    note(subscribe, dialogs(1, "full", dialog("a", "terminated", "recipient")));
    expectLamp(1, SIP_LAMP_IDLE);
    pickUp(6, "8001"); // too late
    const auto* ended = next<tagSipEnded>(SIP_ENDED, 6);
    ASSERT_TRUE(ended);
    EXPECT_STREQ(ended->szReason, "Nothing rings there any more");
    EXPECT_EQ(peer->receive("INVITE", 300).toStdString(), "");
}

TEST_F(SipExtensions, OfTwoExtensionsOfOneNumberThatOfTheLineIsMeant)
{
    beginWithoutMessages();
    ASSERT_FALSE(registersLine(1).isEmpty());
    const QByteArray calls[] = {ringing(), ringing().replace("c1@h", "c2@h")};
    for (const uint32_t line : {0u, 1u}) {
        watch(line + 1, "8001", line);
        const QByteArray subscribe = nextSubscribe("dialog");
        accept(subscribe);
        note(subscribe, dialogs(0, "full", calls[line]));
        expectLamp(line + 1, SIP_LAMP_RINGING);
    }
    for (const uint32_t line : {1u, 0u}) {
        pickUp(5 + line, "8001", line);
        const QByteArray invite = peer->receive("INVITE");
        EXPECT_TRUE(headerOf(invite, "Replaces").startsWith(line == 0 ? "c1@h;" : "c2@h;"))
            << invite.constData();
        peer->reply(invite, "480 Gone");
    }
}

TEST_F(SipExtensions, WhoKeepsHisNumberBackIsNotTold)
{
    beginWithoutMessages();
    note(watched(1, "8001"), dialogs(0, "full", ringing("a", "sip:anonymous@anonymous.invalid")));
    expectLamp(1, SIP_LAMP_RINGING);
    pickUp(5, "8001");
    peer->reply(peer->receive("INVITE"), "480 Gone");
    const tagSipHead* first = agent.next([](const tagSipHead& head) { return head.nId == 5; });
    ASSERT_TRUE(first);
    EXPECT_EQ(first->eKind, uint32_t(SIP_ENDED));
}

TEST_F(SipExtensions, WhereTheServerDoesNotNameTheCallTheCodeTakesIt)
{
    beginWithoutMessages();
    const QByteArray subscribe = watched(1, "8001");
    note(subscribe, dialogs(0, "full", dialog("a", "early", "recipient", "call-id=\"c1\" local-tag=\"x\"")));
    expectLamp(1, SIP_LAMP_RINGING);
    pickUp(5, "8001");
    const auto* ended = next<tagSipEnded>(SIP_ENDED, 5);
    ASSERT_TRUE(ended);
    EXPECT_STREQ(ended->szReason, "The call cannot be taken without a code");
    tagSipAccount account = accountAt(0, peer->port());
    sipWire::setText(account.szPickUp, "*8");
    agent.tell(account);
    QByteArray message;
    while (!(message = peer->receive()).isEmpty() && !agent.nextLine(0, SIP_LINE_REGISTERED, 1)) {
        if (message.startsWith("REGISTER"))
            peer->reply(message, "200 OK", "Contact: " + headerOf(message, "Contact") + ";expires=3600");
    }
    pickUp(6, "8009"); // that nobody watches
    const QByteArray invite = peer->receive("INVITE");
    EXPECT_TRUE(invite.startsWith("INVITE sip:*88009@127.0.0.1")) << invite.constData();
    EXPECT_EQ(headerOf(invite, "Replaces").toStdString(), "");
    peer->reply(invite, "486 Busy Here");
    expectEnd(6, SIP_REFUSED, 486);
}

TEST_F(SipExtensions, AFloodOfNotesIsToldAtThePaceOfThePhoneAndEndsInTheTruth)
{
    beginWithoutMessages();
    const QByteArray subscribe = watched(1, "8001");
    const uint32_t count = 2000;
    QElapsedTimer timer;
    timer.start();
    for (uint32_t i = 0; i < count; ++i) {
        sendNote(subscribe, dialogs(i, "full", i % 2 ? ringing() : QByteArray()),
                 "application/dialog-info+xml", "active");
        peer->receive(2); // the most of them are not heard
    }
    while (!peer->receive(300).isEmpty()) {
    }
    EXPECT_EQ(note(subscribe, dialogs(count, "full", dialog("a", "confirmed", ""))).toStdString(),
              "SIP/2.0 200 OK");
    uint32_t told = 0, last = SIP_LAMP_UNKNOWN;
    while (const tagSipHead* head =
               agent.next([](const tagSipHead& each) { return each.eKind == SIP_LAMP; }, 500)) {
        last = reinterpret_cast<const tagSipLamp*>(head)->eLamp;
        ++told;
    }
    EXPECT_EQ(last, uint32_t(SIP_LAMP_BUSY));
    EXPECT_GT(told, 0u);
    EXPECT_LE(told, 2 + timer.elapsed() / kPaceMs);
}

TEST_F(SipExtensions, APhoneThatReadsNothingIsToldInTheEndWhatHolds)
{
    constexpr uint32_t kMembers = 80, kNotes = 30;
    constexpr int kBeyondThePaceMs = kPaceMs + 20;
    beginWithoutMessages();
    watchList("all");
    const QByteArray subscribe = nextSubscribe("dialog");
    accept(subscribe);
    for (uint32_t i = 0; i <= kNotes; ++i) {
        QByteArray members, parts;
        const QByteArray document =
            dialogs(i, "full", dialog("a", i % 2 ? "early" : "confirmed", "recipient"));
        for (uint32_t k = 0; k < kMembers; ++k) {
            const QByteArray number = QByteArray::number(8000 + k);
            members += member("sip:" + number + "@h", "", "i", "c" + number);
            parts += part("c" + number, document);
        }
        EXPECT_EQ(note(subscribe, list(i, true, members) + parts + kListEnd, kListContent, "active",
                       "Require: eventlist")
                      .toStdString(),
                  "SIP/2.0 200 OK");
        peer->receive(kBeyondThePaceMs);
    }
    uint32_t told = 0;
    std::map<uint32_t, uint32_t> lamps;
    while (const tagSipHead* head =
               agent.next([](const tagSipHead& each) { return each.eKind == SIP_MEMBER; }, 500)) {
        const auto& each = reinterpret_cast<const tagSipMember&>(*head);
        lamps[each.nIndex] = each.eLamp;
        ++told;
    }
    EXPECT_LT(told, kMembers * kNotes / 2);
    EXPECT_EQ(lamps.size(), kMembers);
    for (const auto& [index, lamp] : lamps)
        EXPECT_EQ(lamp, uint32_t(SIP_LAMP_BUSY)) << index;
}

TEST_F(SipExtensions, DamagedNotesOfEveryKindDoNotEndIt)
{
    beginWithoutMessages();
    const QByteArray subscribe = watched(1, "8001");
    note(subscribe, dialogs(0, "full"));
    expectLamp(1, SIP_LAMP_IDLE);
    const QByteArray types[] = {"application/dialog-info+xml",
                                "",
                                "/",
                                "a/b;boundary=",
                                "multipart/related;boundary=b",
                                QByteArray(300, 'a') + "/" + QByteArray(300, 'b')};
    const QByteArray states[] = {
        "active", "",     "terminated;reason=", "pending;expires=99999999999999999999", "active;expires=-1",
        ";;",     "later"};
    const QByteArray lines[] = {"",
                                "Event: dialog;id=7",
                                "Event:",
                                "Expires: 0",
                                "Content-Encoding: gzip",
                                "Content-Disposition: ;",
                                "Require: nothing",
                                "Content-Length: 3",
                                "Subscription-State: terminated;reason=deactivated;retry-after=-5"};
    int sent = 0;
    for (const QByteArray& type : types) {
        for (const QByteArray& state : states) {
            for (const QByteArray& line : lines) {
                sendNote(subscribe, dialogs(uint32_t(++sent), "full"), type, state, line);
                while (!peer->receive(2).isEmpty()) {
                }
                ASSERT_TRUE(agent.isRunning()) << type.constData() << state.constData() << line.constData();
            }
        }
    }
    agent.tell(sipWire::make<tagSipHead>(SIP_UNWATCH, 1));
    watch(2, "8002");
    QByteArray again;
    do {
        again = nextSubscribe("dialog");
        accept(again);
    } while (!again.isEmpty() && !headerOf(again, "To").contains("8002"));
    note(again, dialogs(0, "full"));
    const auto* lamp = next<tagSipLamp>(SIP_LAMP, 2);
    ASSERT_TRUE(lamp);
    EXPECT_EQ(lamp->eLamp, uint32_t(SIP_LAMP_IDLE));
}

TEST_F(SipExtensions, WatchingAndUnwatchingLeavesNothingBehind)
{
    const kit::NothingKept nothing;
    beginWithoutMessages();
    // Notes are remembered for 32 seconds, what was asked for five.
    const bool isLong = qEnvironmentVariableIsSet("HX_LONG");
    int farewells = 0;
    const auto round = [&](uint32_t first) {
        for (uint32_t id = first; id < first + 300; ++id) {
            const QByteArray subscribe = watched(id, "8001");
            if (isLong)
                note(subscribe, dialogs(0, "full", ringing()));
            else
                EXPECT_FALSE(agent.next([](const tagSipHead&) { return false; }, 20));
            agent.tell(sipWire::make<tagSipHead>(SIP_UNWATCH, id));
            // Whoever goes before the reply is there says none: his notes are refused.
            farewells += !nextFarewell("dialog", 1000).isEmpty();
        }
    };
    const auto waitUntilForgotten = [&] {
        EXPECT_FALSE(agent.next([](const tagSipHead&) { return false; }, isLong ? 34000 : 6000));
    };
    round(1);
    waitUntilForgotten();
    const qint64 before = kit::statusKiB(agent.pid(), "VmRSS");
    for (uint32_t i = 1; i <= (isLong ? 5u : 1u); ++i)
        round(i * 1000);
    waitUntilForgotten();
    const qint64 after = kit::statusKiB(agent.pid(), "VmRSS");
    EXPECT_LT(after - before, 1000 * kit::kMemoryTimes) << before;
    EXPECT_GT(farewells, 500);
}

TEST_F(SipExtensions, ANotifierOfAnotherMakerTellsAndTakesLeave)
{
    ASSERT_TRUE(agent.start());
    contact = "nobody"; // it calls no line
    const uint32_t port = kit::freePort();
    watch(1, "8001");
    startSipp("notifier.xml", port, {"-m", "3"});
    agent.tell(accountAt(0, port));
    ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED));
    expectLamp(1, SIP_LAMP_RINGING);
    expectLamp(1, SIP_LAMP_BUSY);
    expectLamp(1, SIP_LAMP_UNKNOWN);
    sipp.expectDone();
}
