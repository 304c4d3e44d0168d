// What the messages of calls bring along: a description of media alone, beside other parts, or something
// else.
#include "sip/sdpBody.h"
#include "tests/sip/callTest.h"
#include <cstring>

namespace {

constexpr uint32_t kFirst = SIP_CALL_FIRST_INCOMING;
constexpr const char* kMixed = "Content-Type: multipart/mixed;boundary=\"b b\"";
constexpr const char* kPlain = "Content-Type: text/plain";
const QByteArray kSdp = "v=0\r\ns=part\r\n";

QByteArray part(const QByteArray& lines, const QByteArray& body, const QByteArray& mark = "b b")
{
    return "--" + mark + "\r\n" + lines + "\r\n\r\n" + body + "\r\n";
}

// The description, with a part before it.
QByteArray beside(const QByteArray& lines)
{
    return part(lines, "<x/>") + part("Content-Type: application/sdp", kSdp) + "--b b--\r\n";
}

class SipBodies : public SipCalls
{
protected:
    // A call from outside; lines: of its body, the type among them.
    QByteArray inviteOf(const QByteArray& callId, const QByteArray& lines, const QByteArray& body)
    {
        QByteArray text = inviteText(callId, lines, body);
        const QByteArray usual = "Content-Type: application/sdp\r\n";
        return text.remove(text.indexOf(usual), usual.size());
    }
    QByteArray contactLine(const char* user) const
    {
        return QByteArray("Contact: <sip:") + user + "@127.0.0.1:" + QByteArray::number(peer->port()) +
               ">\r\n";
    }
    void expectUnknown(const QByteArray& refused)
    {
        EXPECT_TRUE(refused.startsWith("SIP/2.0 415")) << refused.constData();
        EXPECT_EQ(headerOf(refused, "Accept").toStdString(),
                  "application/sdp, multipart/mixed, multipart/alternative");
        EXPECT_EQ(headerOf(refused, "Accept-Encoding").toStdString(), "identity");
        acknowledge(refused);
    }
    // The other side's media, as the phone hears of them when the call talks.
    void expectTalk(uint32_t id, const char* sdp)
    {
        const auto* talk = next<tagSipMedia>(SIP_TALK, id);
        ASSERT_TRUE(talk);
        EXPECT_STREQ(talk->szSdp, sdp);
    }
};

// Of a whole body with that type and disposition.
std::string readOf(const char* type, const char* disposition, const QByteArray& body)
{
    tagBodyPart whole;
    bodyParts::setType(type, whole);
    bodyParts::setDisposition(disposition, whole);
    whole.bytes = body.constData();
    whole.nSize = size_t(body.size());
    const tagSdpBody read = sdpBody::read(whole);
    return read.sdp + (read.bUnknown ? "?" : "");
}

} // namespace

TEST(SdpBody, TheLastOfAlternativesThatIsKnownCounts)
{
    const QByteArray sdp = part("Content-Type: application/sdp", "one", "x");
    const QByteArray other = part("Content-Type: application/sdp", "two", "x");
    const QByteArray newer =
        part("Content-Type: application/newer\r\nContent-Disposition: session", "n", "x");
    const auto alternatives = [](const QByteArray& parts) {
        return readOf("multipart/alternative;boundary=x", "", parts + "--x--");
    };
    EXPECT_EQ(alternatives(sdp + other + newer), "two\r\n");
    EXPECT_EQ(alternatives(newer + sdp), "one\r\n");
    EXPECT_EQ(alternatives(newer), "?");
    EXPECT_EQ(readOf("multipart/mixed;boundary=x", "", sdp + other + "--x--"), "one\r\n");
    EXPECT_EQ(readOf("multipart/mixed;boundary=x", "", sdp + newer + "--x--"), "one\r\n?");
}

TEST(SdpBody, PartsWithinPartsAreLookedInto)
{
    QByteArray body = "v=0\r\n";
    QByteArray lines = "Content-Type: application/sdp";
    for (int depth = 1; depth <= sdpBody::DEPTH_MAX + 1; ++depth) {
        const QByteArray mark = "m" + QByteArray::number(depth);
        body = part(lines, body, mark) + "--" + mark + "--\r\n";
        // A long line goes on in the next one.
        lines = "Content-Type: multipart/mixed;\r\n\tboundary=" + mark;
        const QByteArray type = "multipart/mixed;boundary=" + mark;
        EXPECT_EQ(readOf(type.constData(), "", body), depth <= sdpBody::DEPTH_MAX ? "v=0\r\n" : "?") << depth;
    }
}

TEST(SdpBody, ADescriptionThatIsMeantForSomethingElseIsNone)
{
    EXPECT_EQ(readOf("application/sdp", "session", "v=0\r\n"), "v=0\r\n");
    EXPECT_EQ(readOf("APPLICATION/SDP;charset=utf-8", "", "v=0\r\n"), "v=0\r\n");
    EXPECT_EQ(readOf("application/sdp", "early-session", "v=0\r\n"), "?");
    EXPECT_EQ(readOf("application/sdp", "early-session;handling=optional", "v=0\r\n"), "");
    EXPECT_EQ(readOf("application/sdp", "render; Handling=OPTIONAL", "v=0\r\n"), "");
}

TEST(SdpBody, APartIsReadHoweverItsHeadersAreWrittenAndItsBytesAre)
{
    const auto readPart = [](const QByteArray& lines, const QByteArray& body) {
        return readOf("multipart/mixed;boundary=x", "", part(lines, body, "x") + "--x--");
    };
    EXPECT_EQ(readPart("c: application/sdp", "v=0"), "v=0\r\n");
    EXPECT_EQ(readPart("C :application/SDP;x=y", "v=0"), "v=0\r\n");
    EXPECT_EQ(readPart("c: application/sdp\r\ne: gzip", "v=0"), "?");
    EXPECT_EQ(readPart("Content-Type: application/sdp\r\nContent-Encoding: gzip", "v=0"), "?");
    EXPECT_EQ(readPart("Content-Type: application/sdp\r\nContent-Encoding: Identity", "v=0"), "v=0\r\n");
    const QByteArray coded = "Content-Type: application/sdp\r\nContent-Transfer-Encoding: ";
    EXPECT_EQ(readPart(coded + "quoted-printable", "v=3D0"), "?");
    for (const QByteArray& text : {kSdp, kSdp + "a", kSdp + "ab\xff\xfe", QByteArray("v")}) {
        QByteArray lined = text.toBase64();
        lined.insert(lined.size() / 2, "\r\n");
        const std::string whole = text.endsWith('\n') ? text.toStdString() : text.toStdString() + "\r\n";
        EXPECT_EQ(readPart(coded + "BASE64", lined), whole) << lined.constData();
    }
    EXPECT_EQ(readPart(coded + "base64", "****"), "?") << "it is no wish for an offer";
    EXPECT_EQ(readPart(coded + "base64\r\ne: gzip", kSdp.toBase64()), "?");
    const QByteArray inner = part("c: application/sdp", "v=0", "y") + "--y--";
    EXPECT_EQ(readPart("c: multipart/mixed;boundary=y", inner), "v=0\r\n");
    EXPECT_EQ(
        readPart("c: multipart/mixed;boundary=y\r\nContent-Transfer-Encoding: base64", inner.toBase64()),
        "?");
}

TEST(SdpBody, ADamagedBodyIsNotTakenInPart)
{
    const QByteArray good = part("Content-Type: application/sdp", kSdp, "x") + "--x--\r\n";
    EXPECT_EQ(readOf("multipart/mixed;boundary=x", "", good), kSdp.toStdString());
    for (qsizetype length = 1; length < good.size() - 3; ++length)
        EXPECT_EQ(readOf("multipart/mixed;boundary=x", "", good.left(length)), "?") << length;
    EXPECT_EQ(readOf("multipart/mixed", "", good), "?");
    EXPECT_EQ(readOf("multipart/mixed;boundary=y", "", good), "?");
    EXPECT_EQ(readOf("multipart/mixed;boundary=x", "session;handling=optional", good.left(30)), "");
}

TEST(SdpBody, ABodyOfPartsWithoutAnyIsDamaged)
{
    const QByteArray sdp = part("Content-Type: application/sdp", "one", "x");
    const QByteArray inner = part("Content-Type: multipart/mixed;boundary=y", "--y--", "x");
    EXPECT_EQ(readOf("multipart/mixed;boundary=x", "", "--x--"), "?");
    EXPECT_EQ(readOf("multipart/alternative;boundary=x", "", "--x--\r\n"), "?");
    EXPECT_EQ(readOf("multipart/mixed;boundary=-", "", QByteArray(60000, '-')), "?");
    EXPECT_EQ(readOf("multipart/mixed;boundary=x", "", inner + "--x--"), "?");
    EXPECT_EQ(readOf("multipart/mixed;boundary=x", "", inner + sdp + "--x--"), "one\r\n");
    EXPECT_EQ(readOf("multipart/mixed;boundary=x", "render;handling=optional", "--x--"), "");
}

TEST(SdpBody, ADescriptionOfZerosIsADamagedOneAndNotNone)
{
    const QByteArray zeros(20, '\0');
    EXPECT_NE(readOf("application/sdp", "", zeros).find_first_not_of('\0'), std::string::npos);
    EXPECT_NE(readOf("application/sdp", "", zeros).front(), '\0');
    EXPECT_EQ(std::string(readOf("application/sdp", "", kSdp + zeros).c_str()), kSdp.toStdString());
}

TEST(SdpBody, OfADescriptionOfControlsSomethingIsLeftForThePhone)
{
    auto offer = sipWire::make<tagSipMedia>(SIP_OFFER, kFirst);
    for (const char* body : {"\x01", "\x1f\x7f\v"}) {
        sipWire::setText(offer.szSdp, readOf("application/sdp", "", body));
        EXPECT_STRNE(offer.szSdp, "");
    }
}

TEST_F(SipBodies, AnOfferOfZerosIsToldAsOne)
{
    begin();
    peer->send(inviteText("zeros", {}, QByteArray(20, '\0')), agent.port());
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst);
    ASSERT_TRUE(arrived);
    EXPECT_STRNE(arrived->szSdp, "");
}

TEST_F(SipBodies, ADescriptionBesideOtherPartsIsTheOffer)
{
    begin();
    uint32_t id = kFirst;
    for (const char* lines :
         {"Content-Type: application/pidf+xml", "X-Nothing: known",
          "Content-Type: application/isup\r\nContent-Disposition: signal; handling=optional"}) {
        SCOPED_TRACE(lines);
        peer->send(inviteOf("parts" + QByteArray::number(id), kMixed, beside(lines)), agent.port());
        const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, id);
        ASSERT_TRUE(arrived);
        EXPECT_STREQ(arrived->szSdp, kSdp.constData());
        EXPECT_EQ(arrived->nRefusal, 0u);
        tellStatus(SIP_REFUSE, id++, 486);
        acknowledge(peer->receive("SIP/2.0 486"));
    }
}

TEST_F(SipBodies, WhatHasToBeUnderstoodAndIsNotIsRefusedWhereThePhoneTakesTheCall)
{
    begin();
    const struct
    {
        QByteArray lines;
        QByteArray body;
    } all[] = {{kPlain, "hello"},
               {"Content-Type: application/sdp\r\nContent-Encoding: gzip", kSdp},
               {"Content-Type: application/sdp\r\nContent-Disposition: early-session", kSdp},
               {"Content-Type: text/plain\r\nContent-Disposition: render;handling=required", "hello"},
               {kMixed, beside("Content-Type: text/html\r\nContent-Disposition: render;handling=required")},
               {kMixed, beside("Content-Type: text/html\r\nContent-Disposition: render")},
               {kMixed, part("Content-Type: text/plain", "hello") + "--b b--\r\n"},
               {kMixed, "--b b\r\nContent-Type: application/sdp\r\n\r\n" + kSdp},
               {kMixed, "--b b--\r\n"},
               {"Content-Type: multipart/mixed;boundary=-", QByteArray(60000, '-')}};
    uint32_t id = kFirst;
    for (const auto& each : all) {
        SCOPED_TRACE((each.lines + each.body).toStdString());
        peer->send(inviteOf("unknown" + QByteArray::number(id), each.lines, each.body), agent.port());
        const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, id);
        ASSERT_TRUE(arrived);
        EXPECT_EQ(arrived->nRefusal, 415u);
        EXPECT_STREQ(arrived->szSdp, "");
        tellStatus(SIP_REFUSE, id++, 415);
        expectUnknown(peer->receive("SIP/2.0 4"));
    }
    // It may still go elsewhere.
    peer->send(inviteOf("forwarded", kPlain, "hello"), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, id));
    tellTarget(SIP_DEFLECT, id, "555");
    EXPECT_NE(peer->receive("SIP/2.0 302").toStdString(), "");
}

TEST_F(SipBodies, WhatMayBeLeftOutIsAsIfItWereNotThere)
{
    begin();
    uint32_t id = kFirst;
    for (const char* lines : {"Content-Type: text/plain\r\nContent-Disposition: render;handling=optional",
                              "Content-Type: application/sdp\r\nContent-Encoding: gzip\r\n"
                              "Content-Disposition: session;handling=optional"}) {
        SCOPED_TRACE(lines);
        peer->send(inviteOf("left" + QByteArray::number(id), lines, "v=0\r\n"), agent.port());
        const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, id);
        ASSERT_TRUE(arrived);
        EXPECT_EQ(arrived->nRefusal, 0u);
        EXPECT_STREQ(arrived->szSdp, "") << "the caller wants an offer";
        tellStatus(SIP_REFUSE, id++, 486);
        acknowledge(peer->receive("SIP/2.0 486"));
    }
}

TEST_F(SipBodies, ABodyThatIsTooLargeIsJudgedByItsDescriptionAlone)
{
    begin();
    const QByteArray body = part("Content-Type: application/pidf+xml", QByteArray(SIP_SDP_SIZE, 'x')) +
                            part("Content-Type: application/sdp", kSdp) + "--b b--\r\n";
    peer->send(inviteOf("large", kMixed, body), agent.port());
    const auto* arrived = next<tagSipArrived>(SIP_ARRIVED, kFirst);
    ASSERT_TRUE(arrived);
    EXPECT_STREQ(arrived->szSdp, kSdp.constData());
    const QByteArray large = part("Content-Type: application/sdp", "v=0\r\n" + QByteArray(SIP_SDP_SIZE, 'x'));
    peer->send(inviteOf("larger", kMixed, large + "--b b--\r\n"), agent.port());
    EXPECT_NE(peer->receive("SIP/2.0 488").toStdString(), "");
}

TEST_F(SipBodies, AnAnswerBesideOtherPartsIsTheAnswer)
{
    begin();
    dial(1, "300");
    const QByteArray invite = peer->receive("INVITE");
    const QByteArray lines = contactLine("300") + kMixed;
    // Nobody can be told that a part of an answer is not understood.
    const QByteArray body =
        beside("Content-Type: text/html\r\nContent-Disposition: render;handling=required");
    peer->reply(invite, "183 Session Progress", lines, body);
    const auto* progress = next<tagSipProgress>(SIP_PROGRESS, 1);
    ASSERT_TRUE(progress);
    EXPECT_STREQ(progress->szSdp, kSdp.constData());
    peer->reply(invite, "200 OK", lines, QByteArray(body).replace("s=part", "s=last"));
    expectTalk(1, "v=0\r\ns=last\r\n");
}

TEST_F(SipBodies, AnAnswerThatIsNoneIsAcknowledgedAndToldAsNothing)
{
    begin();
    uint32_t id = 1;
    for (const char* lines : {kPlain, kMixed, "Content-Type: application/sdp\r\nContent-Encoding: gzip"}) {
        SCOPED_TRACE(lines);
        dial(id, "300");
        const QByteArray invite = peer->receive("INVITE");
        peer->reply(invite, "183 Session Progress", contactLine("300") + lines, "v=0\r\ns=early\r\n");
        const auto* progress = next<tagSipProgress>(SIP_PROGRESS, id);
        ASSERT_TRUE(progress);
        EXPECT_STREQ(progress->szSdp, "");
        peer->reply(invite, "200 OK", contactLine("300") + lines, "v=0\r\ns=late\r\n");
        EXPECT_NE(peer->receive("ACK").toStdString(), "");
        expectTalk(id, "");
        tellStatus(SIP_HANG_UP, id++);
        const QByteArray bye = peer->receive("BYE");
        EXPECT_NE(bye.toStdString(), "");
        peer->reply(bye, "200 OK");
    }
}

TEST_F(SipBodies, WithinACallTheSameHoldsAndTheCallGoesOn)
{
    begin();
    const uint32_t id = talkIn("within");
    ASSERT_NE(id, 0u);
    const QByteArray first = lastAnswer;
    int number = 2;
    for (const char* method : {"INVITE", "UPDATE"}) {
        SCOPED_TRACE(method);
        peer->send(within(method, first, number++, kPlain, "hello"), agent.port());
        expectUnknown(peer->receive("SIP/2.0 4"));
        EXPECT_TRUE(agent.isQuiet(100));
        peer->send(within(method, first, number++, kMixed, beside("Content-Type: application/pidf+xml")),
                   agent.port());
        const auto* offer = next<tagSipMedia>(SIP_OFFER, id);
        ASSERT_TRUE(offer);
        EXPECT_STREQ(offer->szSdp, kSdp.constData());
        tellMedia(SIP_MEDIA, id, "");
        const QByteArray refused = peer->receive("SIP/2.0 488");
        EXPECT_EQ(headerOf(refused, "Warning").toStdString(), "399 hxSip \"The media do not fit\"");
        acknowledge(refused);
    }
    peer->send(within("INVITE", first, number, "Content-Type: application/sdp", "v=0\r\ns=later\r\n"),
               agent.port());
    ASSERT_TRUE(next<tagSipMedia>(SIP_OFFER, id));
    tellMedia(SIP_MEDIA, id, "v=0\r\ns=agreed\r\n");
    acknowledge(peer->receive("SIP/2.0 200"));
    expectTalk(id, "v=0\r\ns=later\r\n");
}

TEST_F(SipBodies, TheAnswerOfWhoWantedAnOfferMayStandBesideOtherParts)
{
    begin();
    peer->send(inviteText("without", {}, ""), agent.port());
    ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, kFirst));
    tellMedia(SIP_ANSWER, kFirst, "v=0\r\ns=here\r\n");
    const QByteArray answer = peer->receive("SIP/2.0 200");
    peer->send(within("ACK", answer, 1, kMixed, beside("Content-Type: text/plain")), agent.port());
    expectTalk(kFirst, kSdp.constData());
}

TEST_F(SipBodies, ARefusalSaysWhatDoesNotFit)
{
    begin();
    const struct
    {
        uint32_t nWarning;
        const char* szText;
    } all[] = {{301, "301 hxSip \"Incompatible network address formats\""},
               {302, "302 hxSip \"Incompatible transport protocol\""},
               {304, "304 hxSip \"Media type not available\""},
               {305, "305 hxSip \"Incompatible media format\""},
               {307, "307 hxSip \"Session description parameter not understood\""},
               {0, ""}};
    uint32_t id = kFirst;
    for (const auto& each : all) {
        peer->send(inviteText("unfit" + QByteArray::number(id)), agent.port());
        ASSERT_TRUE(next<tagSipArrived>(SIP_ARRIVED, id));
        auto refusal = sipWire::make<tagSipStatus>(SIP_REFUSE, id++);
        refusal.nStatus = 488;
        refusal.nWarning = each.nWarning;
        agent.tell(refusal);
        const QByteArray refused = peer->receive("SIP/2.0 488");
        EXPECT_EQ(headerOf(refused, "Warning").toStdString(), each.szText);
        EXPECT_EQ(headerOf(refused, "Accept").toStdString(), "");
        acknowledge(refused);
    }
}
