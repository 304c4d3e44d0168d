// What nobody should send to an exchange, and what many send at once.
#include "tests/kit/plain/measuredMemory.h"
#include "tests/kit/plain/processes.h"
#include "tests/pbx/pbxCalls.h"
#include <random>

namespace {

constexpr int kRounds = 400;
constexpr int kLongRounds = 20000;
constexpr int kMostFlips = 6;

// Strange or wrong in one place each; the answer for the password stays good, so that they come far.
QList<QByteArray> wrongEach(const QByteArray& request)
{
    const struct
    {
        const char* from;
        const char* to;
    } changes[] = {
        {"CSeq: ", "CSeq: 99999999999999 "},
        {"CSeq: ", "CSeq: -"},
        {"Content-Length:", "Content-Length: -"},
        {"Content-Length:", "Content-Length: 999999999\r\nX:"},
        {" SIP/2.0\r\n", " SIP/7.0\r\n"},
        {" SIP/2.0\r\n", "\r\n"},
        {" sip:", " nobody:"},
        {" sip:", " <sip:"},
        {" sip:", " tel:"},
        {"Via: SIP/2.0/UDP", "Via: SIP/2.0/UNKNOWN"},
        {"Via:", "Via: ;;,;,,\r\nX:"},
        {"branch=z9hG4bK", "branch="},
        {"From: <", "From: \"open <"},
        {"From: <sip:", "From: <tel:+"},
        {"From:", "X:"},
        {"To:", "X:"},
        {"To: <sip:", "To: \"a, b\" < sip:"},
        {"Call-ID:", "X:"},
        {"Call-ID:", "Call-ID: a\r\nCall-ID:"},
        {"Max-Forwards: 70", "Max-Forwards: 0"},
        {"Max-Forwards: 70", "Max-Forwards: 1"},
        {"Max-Forwards: 70", "Max-Forwards: 300"},
        {"Max-Forwards: 70", "Max-Forwards: 70\r\nProxy-Require: nobodyhasthis"},
        {"Max-Forwards: 70", "Max-Forwards: 70\r\nRoute: <sip:;lr>, <>, x"},
        {"Max-Forwards: 70", "Max-Forwards: 70\r\nRoute: <sip:h;lr>\r\nRoute: <sips:h>"},
        {"Max-Forwards: 70", "Max-Forwards: 70\r\nRecord-Route: <sip:h;lr>, ,"},
        {"Max-Forwards: 70", "Max-Forwards: 70\r\nReplaces: a;to-tag;from-tag=\r\nRefer-To: <sip:@?&=>"},
        {"Max-Forwards: 70", "Max-Forwards: 70\r\nReason: ;;\r\nPrivacy:\r\nAlert-Info: <>"},
        {"Contact: <sip:", "Contact: *\r\nContact: <sip:"},
        {"Contact: <sip:", "Contact: \"\\\"><sip:"},
        {"Contact: <sip:", "Contact: <sip:%ZZ%00@[::1>, <sip:"},
        {"Contact: <sip:", "Contact: <sip:@>, <sips:"},
        {"Contact:", "X:"},
        {"Event:", "Event: ;id=\r\nX:"},
        {"Event:", "X:"},
        {"Expires:", "Expires: 4294967296\r\nX:"},
        {"Expires:", "Expires: -1\r\nX:"},
        {"expires=", "expires=99999999999999999999"},
        {"Digest username=", "Digest username=\"\\"},
        {"response=\"", "response=\"0"},
        {"nonce=\"", "nonce=\"9"},
        {"Digest ", "Digest"},
        {"Digest ", "Basic "},
        {"algorithm=", "algorithm=\"\\\", x="},
        {"qop=auth", "qop=auth-int"},
        {"\r\n", "\n"},
        {"\r\n", "\r\n \r\n"},
        {"sip:", "sip:\xc3\x28\xff\xfe"},
    };
    QList<QByteArray> all;
    for (const auto& change : changes)
        all.append(QByteArray(request).replace(change.from, change.to));
    for (const QByteArray method : {"ACK", "CANCEL", "BYE", "PRACK", "NOTIFY", "NEWMETHOD"})
        all.append(QByteArray(request).replace(request.left(request.indexOf(' ')), method));
    all.append(QByteArray(request).replace("tag=f", "tag=" + QByteArray(60000, 'a')));
    all.append(QByteArray(request).replace("Max-Forwards: 70", "X: " + QByteArray(40000, ';')));
    all.append(QByteArray(request).replace(
        "Max-Forwards: 70",
        QByteArray("Via: SIP/2.0/UDP h;branch=z9hG4bK1\r\n").repeated(500) + "Max-Forwards: 70"));
    all.append(QByteArray(request).replace("Max-Forwards: 70",
                                           "Max-Forwards: 70\r\n" +
                                               QByteArray("Contact: <sip:a@127.0.0.1:7>\r\n").repeated(500)));
    for (const char* status : {"200 OK", "-1 x", "4294967301 huge", "180 Ringing", "999 x"})
        all.append(QByteArray("SIP/2.0 ") + status + "\r\n" + request.mid(request.indexOf('\n') + 1));
    all.append(QByteArray(65000, '\r'));
    all.append(QByteArray(1000, '\0'));
    for (qsizetype length = 0; length < request.size(); length += 9)
        all.append(request.left(length));
    return all;
}

class PbxDamaged : public PbxCalls
{
protected:
    // Requests that are let through as they are.
    QList<QByteArray> good()
    {
        const QByteArray uri = "sip:127.0.0.1:" + QByteArray::number(pbx.port());
        QList<QByteArray> all;
        const auto add = [&](const QByteArray& method, const QByteArray& to, const QByteArray& lines) {
            const QByteArray callId = "ask" + method + QByteArray::number(all.size());
            const QByteArray address = method == "REGISTER" ? "<" + caller->at("1001") + ">" : QByteArray();
            caller->wire().send(caller->text(method, to, callId, 1, lines, {}, address), pbx.port());
            const QByteArray question = caller->hears(4);
            if (method == "INVITE")
                caller->acknowledge(question);
            all.append(caller->text(method, to, callId, 2,
                                    lines + "\r\n" + caller->answerTo(question, method, to), "v=0\r\n",
                                    address));
        };
        const QByteArray contact = "Contact: <sip:1001@" + caller->own() + ">";
        add("REGISTER", uri, contact + ";expires=600\r\nExpires: 600");
        add("SUBSCRIBE", caller->at("1002"), contact + "\r\nEvent: dialog\r\nExpires: 600");
        add("INVITE", caller->at("1002"), contact + "\r\nExpires: 60");
        add("INVITE", caller->at("*97"), contact);
        add("MESSAGE", caller->at("1002"), contact);
        return all;
    }
    void send(QByteArray message, int number)
    {
        message.replace("Call-ID: ask", "Call-ID: " + QByteArray::number(number) + "ask");
        message.replace("branch=z9hG4bK", "branch=z9hG4bK" + QByteArray::number(number));
        caller->wire().send(message, pbx.port());
    }
    // Phones that answer for what has reached them, so that calls go on and end.
    void answerSome()
    {
        for (WirePhone* phone : {first.get(), second.get()}) {
            QByteArray came;
            while (!(came = phone->wire().receive(1)).isEmpty()) {
                if (came.startsWith("INVITE"))
                    phone->reply(came, phone == first.get() ? "180 Ringing" : "486 Busy Here");
                else if (!came.startsWith("ACK") && !came.startsWith("SIP/2.0"))
                    phone->reply(came, "200 OK");
            }
        }
        while (!caller->wire().receive(1).isEmpty()) {
        }
    }
    void expectThatItWorks()
    {
        ASSERT_TRUE(pbx.isRunning());
        answerSome();
        // Others can call, whatever that one has done.
        WirePhone cleo("1003", pbx.port()), called("1003", pbx.port());
        EXPECT_EQ(statusOf(called.registers()), 200);
        ASSERT_TRUE(cleo.calls("1003", "works"));
        const QByteArray invite = called.next("INVITE");
        ASSERT_NE(invite.toStdString(), "");
        called.reply(invite, "200 OK");
        const QByteArray answer = cleo.hears(200);
        EXPECT_NE(answer.toStdString(), "");
    }
};

} // namespace

TEST_F(PbxDamaged, NothingThatIsWrongInOnePlaceEndsTheExchange)
{
    begin(2);
    int number = 0;
    for (const QByteArray& request : good()) {
        for (const QByteArray& message : wrongEach(request)) {
            send(message, ++number);
            if (number % 20 == 0)
                answerSome();
            ASSERT_TRUE(pbx.isRunning()) << number << message.left(400).constData();
        }
    }
    EXPECT_GT(number, 500);
    expectThatItWorks();
}

TEST_F(PbxDamaged, NorWhatABadLineMakesOfRequestsAndOfAnswers)
{
    begin(2);
    std::mt19937 random(20261123);
    QList<QByteArray> all = good();
    QByteArray atFirst, atSecond;
    ASSERT_TRUE(caller->calls("1002", "call"));
    take(atFirst, atSecond);
    for (const char* status : {"180 Ringing", "200 OK", "302 Moved", "486 Busy Here", "503 Away"})
        all.append(UdpPeer::replyTo(atFirst, status, "Contact: <sip:1002@" + first->own() + ">", "v=0\r\n"));
    const int rounds = qEnvironmentVariableIsSet("HX_LONG") ? kLongRounds : kRounds;
    for (int round = 0; round < rounds; ++round) {
        QByteArray message = all[int(random() % unsigned(all.size()))];
        for (int flips = int(random() % kMostFlips); flips >= 0; --flips)
            message[qsizetype(random() % unsigned(message.size()))] = char(random());
        send(message, 10000 + round);
        if (round % 20 == 0)
            answerSome();
        ASSERT_TRUE(pbx.isRunning()) << round << message.left(400).constData();
    }
    expectThatItWorks();
}

TEST_F(PbxDamaged, AStatusThatNoAnswerHasIsAFaultOfThatPhoneAlone)
{
    begin();
    const char* statuses[] = {"99 Odd", "700 Odd", "999 Odd", "1200 Odd"};
    for (int i = 0; i < int(std::size(statuses)); ++i) {
        QByteArray atFirst, atSecond;
        ASSERT_TRUE(caller->calls("1002", "odd" + QByteArray::number(i)));
        take(atFirst, atSecond);
        first->reply(atFirst, statuses[i]);
        second->reply(atSecond, "486 Busy Here");
        if (i == 0)
            first->reply(atFirst, "480 Away");
        const QByteArray refusal = caller->hears(486);
        ASSERT_NE(refusal.toStdString(), "") << statuses[i];
        caller->acknowledge(refusal);
    }
    ASSERT_TRUE(caller->calls("1002", "alone"));
    QByteArray atFirst, atSecond;
    take(atFirst, atSecond);
    first->reply(atFirst, "999 Odd");
    second->reply(atSecond, "999 Odd");
    EXPECT_NE(caller->hears(502).toStdString(), "");
    expectThatItWorks();
}

TEST_F(PbxDamaged, ASecondAnswerToWhatIsNoCallIsDropped)
{
    begin();
    const QByteArray question = caller->ask("OPTIONS", caller->at("1009"), "none");
    EXPECT_EQ(statusOf(question), 404);
    for (int i = 0; i < 30; ++i) {
        const QByteArray callId = "text" + QByteArray::number(i);
        caller->wire().send(caller->text("MESSAGE", caller->at("1002"), callId, 1), pbx.port());
        const QByteArray asked = caller->hears(407);
        const QByteArray answer = caller->answerTo(asked, "MESSAGE", caller->at("1002"));
        caller->wire().send(caller->text("MESSAGE", caller->at("1002"), callId, 2, answer), pbx.port());
        const QByteArray atFirst = first->next("MESSAGE"), atSecond = second->next("MESSAGE");
        ASSERT_NE(atFirst.toStdString(), "");
        ASSERT_NE(atSecond.toStdString(), "");
        first->reply(atFirst, "200 OK");
        second->reply(atSecond, "200 OK");
        ASSERT_NE(caller->hears(200).toStdString(), "");
    }
    EXPECT_EQ(caller->wire().receive("SIP/2.0 200", 300).toStdString(), "");
    expectThatItWorks();
}

TEST_F(PbxDamaged, AFloodIsRefusedAndLeavesNothingBehind)
{
    begin(1);
    const auto flood = [&](const QByteArray& name) {
        for (int i = 0; i < 300; ++i) {
            ASSERT_TRUE(caller->calls("1002", name + QByteArray::number(i)));
            if (i % 20 == 0)
                answerSome();
        }
        // What was refused or answered is remembered for 32 seconds, for those who repeat themselves.
        EXPECT_TRUE(kit::waits(
            [&] {
                answerSome();
                return statusOf(caller->ask("SUBSCRIBE", caller->at("1009"), name + "end",
                                            "Event: dialog")) == 404;
            },
            15000));
    };
    for (const char* name : {"a", "b", "c"})
        flood(name);
    EXPECT_LT(kit::statusKiB(pbx.pid(), "VmRSS"), RegistrarProcess::MOST_KIB);
    expectThatItWorks();
}

TEST_F(PbxDamaged, CallsWithoutAPasswordAreAskedForItOnceAndNothingIsKeptOfThem)
{
    constexpr int kCalls = 10000, kBurst = 50;
    const kit::NothingKept nothing;
    begin(1);
    UdpPeer stranger;
    const auto call = [&](int number) {
        const QByteArray own = "127.0.0.1:" + QByteArray::number(stranger.port());
        return caller->text("INVITE", caller->at("1002"), "flood" + QByteArray::number(number), 1)
            .replace(caller->own(), own);
    };
    stranger.send(call(0), pbx.port());
    EXPECT_TRUE(stranger.receive().startsWith("SIP/2.0 407"));
    EXPECT_EQ(stranger.receive(1200).toStdString(), "") << "though nobody has acknowledged it";
    const qint64 before = kit::statusKiB(pbx.pid(), "VmRSS");
    for (int i = 1; i < kCalls; ++i) {
        stranger.send(call(i), pbx.port());
        while (i % kBurst == 0 && !stranger.receive(20).isEmpty()) {
        }
    }
    EXPECT_LT(kit::statusKiB(pbx.pid(), "VmRSS") - before, 4000 * kit::kMemoryTimes) << before;
    expectThatItWorks();
}
