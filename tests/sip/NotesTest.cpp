// Notes of servers: messages that wait, dialogues of extensions, lists; whole and damaged.
#include "sip/memberBook.h"
#include "sip/messageSummary.h"
#include "tests/sip/noteTexts.h"
#include <QList>
#include <gtest/gtest.h>

namespace {

struct tagSummary
{
    bool bSound;
    tagMessageCounts counts;
};

tagSummary summaryOf(const std::string& body)
{
    tagSummary summary = {false, {7, 7}};
    summary.bSound = messageSummary::read(body.data(), body.size(), summary.counts);
    return summary;
}

void expectCounts(const std::string& body, uint32_t fresh, uint32_t old)
{
    SCOPED_TRACE(body);
    const tagSummary summary = summaryOf(body);
    EXPECT_TRUE(summary.bSound);
    EXPECT_EQ(summary.counts.nNew, fresh);
    EXPECT_EQ(summary.counts.nOld, old);
}

bool take(ExtensionState& state, const QByteArray& body)
{
    return state.take(body.constData(), size_t(body.size()));
}

bool takeList(MemberBook& book, const QByteArray& body)
{
    return book.take(kListContent, body.constData(), size_t(body.size()));
}

std::string lampsOf(const MemberBook& book)
{
    std::string text;
    for (const tagListMember& member : book.members())
        text += member.number + "=" + member.name + ":" + std::to_string(member.state.lamp()) + " ";
    return text;
}

} // namespace

TEST(SipNotes, MessagesAreCountedByTheLineOfVoiceMessages)
{
    expectCounts("Messages-Waiting: yes\r\nMessage-Account: sip:a@b\r\nVoice-Message: 2/8 (0/2)\r\n", 2, 8);
    expectCounts("messages-waiting:no\nvoice-message:0/3\n", 0, 3);
    expectCounts("Messages-Waiting: yes\r\nFax-Message: 1/0\r\nVoice-Message: 0/1\r\n", 0, 1);
    expectCounts("Messages-Waiting: yes\r\n", 1, 0);
    expectCounts("Messages-Waiting: no\r\n", 0, 0);
    expectCounts("Messages-Waiting: yes\r\nVoice-Message: 1/1\r\n\r\nTo: <sip:a@b>\r\nnonsense\r\n", 1, 1);
    expectCounts("Messages-Waiting: yes\r\nVoice-Message: 999999/0\r\n", 999999, 0);
}

TEST(SipNotes, DamagedCountsAreLeft)
{
    const std::string longest = "Messages-Waiting: yes\r\nX: " + std::string(messageSummary::BYTES_MAX, 'a');
    for (const std::string& body : {std::string(), std::string("\r\n"), std::string("Voice-Message: 2/8\r\n"),
                                    std::string("<xml/>"), std::string("Messages-Waiting: perhaps\r\n"),
                                    std::string("Messages-Waiting: yes\r\nVoice-Message: -1/8\r\n"),
                                    std::string("Messages-Waiting: yes\r\nVoice-Message: 2\r\n"),
                                    std::string("Messages-Waiting: yes\r\nVoice-Message: 2/8/9\r\n"),
                                    std::string("Messages-Waiting: yes\r\nVoice-Message: 2(1/8\r\n"),
                                    std::string("Messages-Waiting: yes\r\nVoice-Message: 4294967298/0\r\n"),
                                    std::string("Messages-Waiting: yes\r\nVoice-Message\r\n"), longest}) {
        SCOPED_TRACE(body.substr(0, 80));
        const tagSummary summary = summaryOf(body);
        EXPECT_FALSE(summary.bSound);
        EXPECT_EQ(summary.counts.nNew, 7u);
        EXPECT_EQ(summary.counts.nOld, 7u);
    }
}

TEST(SipNotes, AnExtensionRingsTalksAndIsFree)
{
    ExtensionState state;
    EXPECT_EQ(state.lamp(), SIP_LAMP_UNKNOWN);
    EXPECT_TRUE(take(state, dialogs(0, "full")));
    EXPECT_EQ(state.lamp(), SIP_LAMP_IDLE);
    EXPECT_TRUE(take(state, dialogs(1, "full", dialog("a", "early", "recipient"))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_RINGING);
    EXPECT_TRUE(take(state, dialogs(2, "full", dialog("a", "confirmed", "recipient"))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_BUSY);
    EXPECT_TRUE(take(state, dialogs(3, "full", dialog("a", "terminated", "recipient"))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_IDLE);
    EXPECT_TRUE(take(state, dialogs(4, "full", dialog("a", "early", "initiator"))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_BUSY);
    EXPECT_TRUE(take(state, dialogs(5, "full", dialog("a", "trying", ""))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_BUSY);
    EXPECT_TRUE(take(state, dialogs(6, "full", dialog("a", "early", ""))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_RINGING);
    for (const char* state : {"trying", "proceeding"}) { // a call is on its way there
        ExtensionState called;
        EXPECT_TRUE(take(called, dialogs(0, "full", dialog("a", state, "recipient"))));
        EXPECT_EQ(called.lamp(), SIP_LAMP_RINGING) << state;
    }
    // As some servers write it.
    EXPECT_TRUE(take(state, dialogs(7, "full", dialog("a", "Trying", "initiator"))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_BUSY);
}

TEST(SipNotes, SeveralDialoguesOfAnExtensionAreCountedTogether)
{
    ExtensionState state;
    EXPECT_TRUE(take(state, dialogs(0, "full", dialog("a", "confirmed", "initiator"))));
    EXPECT_TRUE(take(state, dialogs(1, "partial", dialog("b", "early", "recipient"))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_RINGING);
    EXPECT_TRUE(take(state, dialogs(2, "partial", dialog("b", "terminated", "recipient"))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_BUSY);
    EXPECT_TRUE(take(state, dialogs(3, "partial")));
    EXPECT_EQ(state.lamp(), SIP_LAMP_BUSY);
    EXPECT_TRUE(take(state, dialogs(4, "partial", dialog("a", "terminated", "initiator"))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_IDLE);
}

TEST(SipNotes, APartIsOfUseUponTheWholeAndInItsOrderOnly)
{
    ExtensionState state;
    EXPECT_FALSE(take(state, dialogs(1, "partial", dialog("a", "early", "recipient"))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_UNKNOWN);
    EXPECT_TRUE(take(state, dialogs(5, "full")));
    EXPECT_FALSE(take(state, dialogs(4, "partial", dialog("a", "early", "recipient"))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_IDLE);
    // One was missed: what came is true, and the rest is to be asked for.
    EXPECT_FALSE(take(state, dialogs(7, "partial", dialog("a", "early", "recipient"))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_RINGING);
    EXPECT_TRUE(take(state, dialogs(9, "full")));
    EXPECT_EQ(state.lamp(), SIP_LAMP_IDLE);
    state.begin();
    EXPECT_EQ(state.lamp(), SIP_LAMP_IDLE);
    EXPECT_TRUE(take(state, dialogs(0, "full", dialog("a", "confirmed", ""))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_BUSY);
}

TEST(SipNotes, WhoCountsAnewIsBelievedTheSecondTime)
{
    ExtensionState state;
    EXPECT_TRUE(take(state, dialogs(4294967295u, "full")));
    EXPECT_FALSE(take(state, dialogs(0, "full", dialog("a", "confirmed", ""))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_IDLE);
    EXPECT_TRUE(take(state, dialogs(1, "full", dialog("a", "confirmed", ""))));
    EXPECT_EQ(state.lamp(), SIP_LAMP_BUSY);
}

TEST(SipNotes, WhatIsDamagedMakesNoLampLie)
{
    const QByteArray good = dialogs(1, "full", dialog("a", "confirmed", "recipient"));
    QByteArray attributes;
    for (int i = 0; i < 20; ++i)
        attributes += " a" + QByteArray::number(i) + "=\"\"";
    QList<QByteArray> bad = {
        "", "<", "<dialog-info/>", "not XML at all", good + good, QByteArray(good).replace("full", "whole"),
        QByteArray(good).replace("version=\"1\"", "version=\"-1\""),
        QByteArray(good).replace("version=\"1\"", "version=\"4294967296\""),
        QByteArray(good).replace("version=\"1\"", "version=\"\""),
        QByteArray(good).replace("id=\"a\"", "id=\"\""), QByteArray(good).replace("confirmed", "asleep"),
        QByteArray(good).replace("<state>confirmed</state>", ""),
        QByteArray(good).replace("dialog-info", "presence"), QByteArray(good).replace("confirmed", "&state;"),
        QByteArray(good).replace("confirmed", QByteArray(600, 'c')),
        QByteArray(good).replace("id=\"a\"", "id=\"a\" id=\"b\""),
        QByteArray(good).replace("id=\"a\"", "id=\"" + QByteArray(600, 'i') + "\""),
        QByteArray(good).replace("</dialog>", QByteArray("<x>").repeated(40)),
        // Sound but for their size.
        QByteArray(good).replace("</dialog>", QByteArray("<x>").repeated(40) +
                                                  QByteArray("</x>").repeated(40) + "</dialog>"),
        QByteArray(good).replace("<note>", "<note>" + QByteArray(600, 'n')),
        QByteArray(good).replace("<note>", "<note" + attributes + ">"),
        QByteArray(good).replace("<note>", "<!--" + QByteArray(140000, 'n') + "--><note>"),
        QByteArray(good).replace("</dialog>", QByteArray("<x/>").repeated(9000) + "</dialog>"),
        QByteArray(good).replace("\xc3\xa4", "\xff\xfe")};
    QByteArray entities = QByteArray(good).replace("confirmed", "&state;");
    entities.insert(entities.indexOf("<dialog-info"), "<!DOCTYPE x [<!ENTITY state \"confirmed\">]>");
    bad.append(entities);
    QByteArray many;
    for (int i = 0; i < 65; ++i)
        many += dialog(QByteArray::number(i), "terminated", "");
    bad.append(dialogs(1, "full", many));
    for (qsizetype length = 0; length < good.size() - 2; length += 5)
        bad.append(good.left(length));
    for (const QByteArray& body : bad) {
        SCOPED_TRACE(body.left(200).toStdString());
        ExtensionState state;
        ASSERT_TRUE(take(state, dialogs(0, "full")));
        EXPECT_FALSE(take(state, body));
        EXPECT_EQ(state.lamp(), SIP_LAMP_UNKNOWN);
        EXPECT_TRUE(take(state, good));
        EXPECT_EQ(state.lamp(), SIP_LAMP_BUSY);
    }
}

TEST(SipNotes, DialoguesThatAreAddedForEverAreNotKept)
{
    ExtensionState state;
    EXPECT_TRUE(take(state, dialogs(0, "full")));
    bool isTaken = true;
    for (uint32_t i = 1; i < 66; ++i)
        isTaken = take(state, dialogs(i, "partial", dialog(QByteArray::number(i), "confirmed", "")));
    EXPECT_FALSE(isTaken);
    EXPECT_EQ(state.lamp(), SIP_LAMP_UNKNOWN);
}

TEST(SipNotes, WhatNamesADialogueStandsInAHeaderOrIsLeft)
{
    ExtensionState state;
    const QByteArray rings =
        dialog("a", "early", "recipient", "call-id=\"c1@h\" local-tag=\"l\" remote-tag=\"r\"",
               "<remote><identity>sip:200@h</identity><target uri=\"sip:200@h:5070\"/></remote>");
    EXPECT_TRUE(take(state, dialogs(0, "full", rings)));
    ASSERT_TRUE(state.ringing());
    EXPECT_EQ(state.ringing()->callId, "c1@h");
    EXPECT_EQ(state.ringing()->localTag, "l");
    EXPECT_EQ(state.ringing()->remoteTag, "r");
    EXPECT_EQ(state.ringing()->target, "sip:200@h:5070");
    QByteArray bad = rings;
    bad.replace("c1@h", "c1;early-only,x&#13;&#10;To: y").replace("\"l\"", "\"l;x=1\"");
    bad.replace("sip:200@h:5070", "sip:200@h?Subject=x").replace("sip:200@h<", "tel:200<");
    EXPECT_TRUE(take(state, dialogs(1, "full", bad)));
    ASSERT_TRUE(state.ringing());
    EXPECT_EQ(state.ringing()->callId, "");
    EXPECT_EQ(state.ringing()->localTag, "");
    EXPECT_EQ(state.ringing()->target, "");
    uint32_t version = 2;
    for (const QByteArray& target : {QByteArray("sip:200@h&gt;,&lt;sip:9@h"), QByteArray("sip:200@h x"),
                                     "sip:" + QByteArray(300, '2') + "@h"}) {
        SCOPED_TRACE(target.toStdString());
        bad = rings;
        bad.replace("sip:200@h:5070", target).replace("sip:200@h<", "tel:200<");
        bad.replace("c1@h", QByteArray(300, 'c'));
        EXPECT_TRUE(take(state, dialogs(version++, "full", bad)));
        ASSERT_TRUE(state.ringing());
        EXPECT_EQ(state.ringing()->target, "");
        EXPECT_EQ(state.ringing()->callId, "");
    }
}

TEST(SipNotes, AListHasItsMembersInOrderWithTheirNamesAndStates)
{
    MemberBook book;
    EXPECT_TRUE(takeList(book, list(0, true,
                                    member("sip:8001@h", "Anna", "i1", "c1") +
                                        member("sip:80%2302@h;user=phone", "B\xc3\xa4rbel", "i2", "c2") +
                                        member("sip:8003@h", "")) +
                                   part("c1", dialogs(0, "full", dialog("a", "confirmed", ""))) +
                                   part("c2", dialogs(0, "full")) + kListEnd));
    EXPECT_EQ(lampsOf(book), "8001=Anna:3 80#02=B\xc3\xa4rbel:1 8003=:0 ");
    // A part of it: who is not in it stays as he was.
    EXPECT_TRUE(takeList(book, list(1, false, member("sip:8003@h", "Carl", "i3", "c3")) +
                                   part("c3", dialogs(0, "full", dialog("x", "early", "recipient"))) +
                                   kListEnd));
    EXPECT_EQ(lampsOf(book), "8001=Anna:3 80#02=B\xc3\xa4rbel:1 8003=Carl:2 ");
    EXPECT_TRUE(takeList(book, list(2, false, member("sip:8001@h", "Anna", "i1", "c1")) +
                                   part("c1", dialogs(1, "partial", dialog("a", "terminated", ""))) +
                                   kListEnd));
    EXPECT_EQ(lampsOf(book), "8001=Anna:1 80#02=B\xc3\xa4rbel:1 8003=Carl:2 ");
    // Another whole one: whom it does not have is gone, and the rest is in its order.
    EXPECT_TRUE(takeList(
        book, list(3, true, member("sip:8003@h", "Carl", "i3") + member("sip:8001@h", "Anna")) + kListEnd));
    EXPECT_EQ(lampsOf(book), "8003=Carl:2 8001=Anna:0 ");
    // What looks like the end of a part within a line is none.
    EXPECT_TRUE(takeList(book, list(4, true, member("sip:8001@h", "Anna --b-- x")) + kListEnd));
    EXPECT_EQ(lampsOf(book), "8001=Anna --b-- x:0 ");
}

TEST(SipNotes, APartOfAListThatIsMissingOrDamagedIsNotKnownOfThatMemberAlone)
{
    MemberBook book;
    EXPECT_FALSE(takeList(book, list(0, true,
                                     member("sip:1@h", "", "i1", "c1") + member("sip:2@h", "", "i2", "c2") +
                                         member("sip:3@h", "", "i3", "c3")) +
                                    part("c1", "<dialog-info") + part("c3", dialogs(0, "full")) + kListEnd));
    EXPECT_EQ(lampsOf(book), "1=:0 2=:0 3=:1 ");
    EXPECT_FALSE(takeList(book, list(1, true, member("sip:3@h", "", "i3", "gone")) + kListEnd));
    EXPECT_EQ(lampsOf(book), "3=:0 ");
}

TEST(SipNotes, ADamagedListLeavesItsMembersAndKnowsNothingOfThem)
{
    const QByteArray good = list(1, true, member("sip:1@h", "", "i1", "c1")) +
                            part("c1", dialogs(0, "full", dialog("a", "confirmed", ""))) + kListEnd;
    QList<QByteArray> bad = {
        "",
        "--b",
        "--b--",
        "--b\r\n\r\n--b--\r\n",
        QByteArray(good).replace("--b", "--other"),
        QByteArray(good).replace("rlmi+xml", "pidf+xml"),
        QByteArray(good).replace("fullState=\"true\"", "fullState=\"so\""),
        QByteArray(good).replace("version=\"1\"", "version=\"x\""),
        QByteArray(good).replace("uri=\"sip:1@h\"", "uri=\"\""),
        QByteArray(good).replace("uri=\"sip:1@h\"", "uri=\"sip:@h\""),
        QByteArray(good).replace("Content-ID: <root>", "Content-ID: root"),
        QByteArray(good).replace("<root>", "<another>"),
        QByteArray(good).replace("<?xml", "<!DOCTYPE x><?xml"),
        QByteArray(good).replace("Content-ID: <c1>", "no head line"),
        QByteArray(good).replace("Content-ID: <c1>", "X: " + QByteArray(4000, 'x')),
        QByteArray(good).replace("Content-ID: <c1>", "Content-ID: <c1>\r\nX: " + QByteArray(4000, 'x')),
        QByteArray(good).replace("c1", QByteArray(300, 'c')),
        QByteArray(good).replace("Content-ID: <c1>", "Content-ID: <c1>\r\nContent-Transfer-Encoding: base64"),
        QByteArray("--b\r\n\r\n\r\n").repeated(400) + kListEnd};
    bad.append(list(1, true, member("sip:1@h", "", "i1")) + part("x", "y").repeated(400) + kListEnd);
    for (qsizetype length = 0; length < good.size() - 8; length += 7)
        bad.append(good.left(length));
    for (const QByteArray& body : bad) {
        SCOPED_TRACE(body.left(400).toStdString());
        MemberBook book;
        ASSERT_TRUE(takeList(book, list(0, true, member("sip:1@h", "", "i1", "c1")) +
                                       part("c1", dialogs(0, "full")) + kListEnd));
        EXPECT_FALSE(takeList(book, body));
        EXPECT_EQ(lampsOf(book), "1=:0 ");
        EXPECT_TRUE(takeList(book, good));
        EXPECT_EQ(lampsOf(book), "1=:3 ");
    }
    MemberBook book;
    EXPECT_FALSE(book.take("application/dialog-info+xml", good.constData(), size_t(good.size())));
    EXPECT_FALSE(book.take("multipart/related", good.constData(), size_t(good.size())));
}

TEST(SipNotes, ALongListIsCutAtItsBound)
{
    QByteArray members;
    for (int i = 0; i < SIP_MEMBERS_MAX + 10; ++i)
        members += member("sip:" + QByteArray::number(i) + "@h", "");
    MemberBook book;
    EXPECT_TRUE(takeList(book, list(0, true, members) + kListEnd));
    EXPECT_EQ(book.members().size(), size_t(SIP_MEMBERS_MAX));
    EXPECT_EQ(book.members().back().number, "255");
}

TEST(SipNotes, ARootThatIsEmptyAndTooLongIsRefused)
{
    ExtensionState state;
    EXPECT_FALSE(take(state, "<dialog-info entity=\"" + QByteArray(5000, 'x') + "\"/>"));
    EXPECT_FALSE(take(state, "<dialog-info><dialog id=\"" + QByteArray(5000, 'x') + "\"/></dialog-info>"));
}
