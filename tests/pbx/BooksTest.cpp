// What the exchange keeps, and when it is too old.
#include "registrar/callBook.h"
#include "registrar/contactBook.h"
#include "registrar/passwordCheck.h"
#include "tests/sip/udpPeer.h"
#include <QFile>
#include <QTemporaryDir>
#include <ctime>
#include <gtest/gtest.h>
#include <memory>
#include <sofia-sip/msg.h>
#include <sofia-sip/sip_header.h>

namespace {

time_t now = 0; // 0: as the machine has it

// A request as the stack reads it.
class Request
{
public:
    Request(const QByteArray& method, const QByteArray& lines)
    {
        const QByteArray text = method +
                                " sip:127.0.0.1 SIP/2.0\r\nVia: SIP/2.0/UDP h;branch=z9hG4bK1\r\n"
                                "From: <sip:1001@127.0.0.1>;tag=a\r\nTo: <sip:1001@127.0.0.1>\r\n"
                                "Call-ID: one\r\nCSeq: 1 " +
                                method + "\r\n" + lines + "\r\nContent-Length: 0\r\n\r\n";
        m_message.reset(msg_make(sip_default_mclass(), 0, text.constData(), text.size()));
    }
    const sip_t& sip() const { return *sip_object(m_message.get()); }

private:
    struct tagDrop
    {
        void operator()(msg_t* message) const { msg_destroy(message); }
    };
    std::unique_ptr<msg_t, tagDrop> m_message;
};

} // namespace

extern "C" time_t __real_time(time_t* to);
extern "C" time_t __wrap_time(time_t* to);

time_t __wrap_time(time_t* to)
{
    if (now == 0)
        return __real_time(to);
    if (to)
        *to = now;
    return now;
}

namespace {

// Questions of an exchange with one account, and what it says to the answers.
class PbxPasswords : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QFile file(folder.filePath("accounts"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("1001 secret Anna\n");
        file.close();
        std::string reason;
        ASSERT_TRUE(accounts.load(file.fileName().toStdString(), reason)) << reason;
    }
    void TearDown() override { now = 0; }
    PasswordCheck::VERDICT judge(const QByteArray& question, const QByteArray& count,
                                 const QByteArray& password = "secret")
    {
        QByteArray answer =
            "Digest username=\"1001\", realm=\"127.0.0.1\", nonce=\"" + paramOf(question, "nonce") +
            "\", uri=\"sip:127.0.0.1\", algorithm=MD5, qop=auth, nc=" + count + ", cnonce=\"own\"";
        answer += ", response=\"" + digestOf("REGISTER", answer, "1001", password) + "\"";
        const Request request("REGISTER", "Authorization: " + answer);
        std::string user;
        return passwords.judge(request.sip().sip_authorization, *request.sip().sip_request, user);
    }
    QByteArray question() { return QByteArray::fromStdString(passwords.questions(false).front()); }

    QTemporaryDir folder;
    AccountBook accounts;
    PasswordCheck passwords{accounts, "127.0.0.1", false};
};

} // namespace

TEST_F(PbxPasswords, AQuestionIsGoodForItsTimeAlone)
{
    now = 1000000;
    const QByteArray asked = question();
    EXPECT_EQ(judge(asked, "00000001"), PasswordCheck::VERDICT::GOOD);
    now += PasswordCheck::NONCE_SECONDS;
    EXPECT_EQ(judge(asked, "00000002"), PasswordCheck::VERDICT::GOOD);
    EXPECT_EQ(judge(asked, "00000002"), PasswordCheck::VERDICT::LATE) << "said twice";
    ++now;
    EXPECT_EQ(judge(asked, "00000003"), PasswordCheck::VERDICT::LATE);
}

TEST_F(PbxPasswords, AGoodAnswerToWhatTheRunBeforeHasAskedIsLate)
{
    PasswordCheck before{accounts, "127.0.0.1", false};
    now = 1000000;
    const QByteArray asked = QByteArray::fromStdString(before.questions(false).front()), own = question();
    for (const QByteArray& each : {asked, QByteArray("Digest nonce=\"nonsense\"")}) {
        EXPECT_EQ(judge(each, "00000001"), PasswordCheck::VERDICT::LATE) << each.constData();
        EXPECT_EQ(judge(each, "00000001", "guess"), PasswordCheck::VERDICT::WRONG) << each.constData();
    }
    --now;
    EXPECT_EQ(judge(own, "00000001"), PasswordCheck::VERDICT::LATE) << "the clock was set back";
}

TEST_F(PbxPasswords, WhatWasAnsweredBeforeManyOthersIsUsedUp)
{
    const QByteArray asked = question();
    EXPECT_EQ(judge(asked, "00000001"), PasswordCheck::VERDICT::GOOD);
    for (size_t i = 0; i < PasswordCheck::MAX_ANSWERED; ++i)
        ASSERT_EQ(judge(question(), "00000001"), PasswordCheck::VERDICT::GOOD) << i;
    EXPECT_EQ(judge(asked, "00000001"), PasswordCheck::VERDICT::LATE);
    EXPECT_EQ(judge(asked, "00000002"), PasswordCheck::VERDICT::LATE);
}

TEST(PbxBooks, ACallWhoseEndNobodyTellsIsOverOneDayAndForgottenThen)
{
    std::vector<std::string> changed;
    CallBook calls([&](const std::string& each) { changed.push_back(each); });
    tagSeenCall call;
    call.callId = "one";
    call.caller = "1001";
    call.callee = "1002";
    constexpr long kBegun = 5000;
    ASSERT_TRUE(calls.begin(call, kBegun));
    calls.talk("one", "b", "127.0.0.1", kBegun);
    changed.clear();
    long at = kBegun + CallBook::LONGEST_SECONDS;
    calls.sweep(at);
    EXPECT_EQ(calls.of("1002").size(), 1u);
    EXPECT_TRUE(changed.empty());
    calls.sweep(++at);
    EXPECT_TRUE(calls.of("1002").empty());
    EXPECT_EQ(changed, (std::vector<std::string>{"1001", "1002"}));
    calls.sweep(at + CallBook::OVER_SECONDS);
    EXPECT_TRUE(calls.isKnown("one")) << "what belongs to it may still come";
    calls.sweep(at + CallBook::OVER_SECONDS + 1);
    EXPECT_FALSE(calls.isKnown("one"));
}

TEST(PbxBooks, APhoneThatDoesNotRegisterAgainIsGoneWhenItsTimeIsOver)
{
    ContactBook contacts("127.0.0.1:5060", ContactBook::MOST_SECONDS);
    const Request request("REGISTER", "Contact: <sip:a@127.0.0.1:7000>;expires=60,"
                                      " <sip:b@127.0.0.1:7001>;expires=90");
    constexpr long kBegun = 5000;
    ASSERT_EQ(contacts.update("1001", request.sip(), kBegun), 200);
    EXPECT_TRUE(contacts.sweep(kBegun + 59).empty());
    EXPECT_EQ(contacts.listed("1001", kBegun + 59).front(), "<sip:a@127.0.0.1:7000>;expires=1");
    EXPECT_TRUE(contacts.sweep(kBegun + 60).empty()) << "there is another one";
    EXPECT_EQ(contacts.addresses("1001"), std::vector<std::string>{"sip:b@127.0.0.1:7001"});
    EXPECT_EQ(contacts.sweep(kBegun + 90), std::vector<std::string>{"1001"});
    EXPECT_TRUE(contacts.addresses("1001").empty());
    EXPECT_TRUE(contacts.sweep(kBegun + 91).empty()) << "told once";
}

TEST(PbxBooks, ACallOnlyGoesForward)
{
    CallBook calls([](const std::string&) {});
    tagSeenCall call;
    call.callId = "one";
    call.caller = "1001";
    call.callee = "1002";
    ASSERT_TRUE(calls.begin(call, 1));
    calls.talk("one", "b", "127.0.0.1", 2);
    calls.ring("one", "c", 3);
    EXPECT_EQ(calls.find("one")->eStep, CALL_STEP::TALKING);
    EXPECT_EQ(calls.find("one")->toTag, "b");
    calls.end("one", 4);
    calls.talk("one", "c", "127.0.0.1", 5);
    EXPECT_TRUE(calls.isOver("one"));
}

TEST(PbxBooks, WhatBelongsToACallHasTheTagOfItsCaller)
{
    CallBook calls([](const std::string&) {});
    tagSeenCall call;
    call.callId = "one";
    call.fromTag = "a";
    ASSERT_TRUE(calls.begin(call, 1));
    EXPECT_TRUE(calls.holds(Request("INFO", "").sip())) << "from him";
    tagSeenCall other = call;
    other.fromTag = "b";
    CallBook others([](const std::string&) {});
    ASSERT_TRUE(others.begin(other, 1));
    EXPECT_FALSE(others.holds(Request("INFO", "").sip()));
}

TEST(PbxBooks, OfCallsThatAreOverTheOldestMakesRoomAndNoneThatIsNot)
{
    CallBook calls([](const std::string&) {});
    const auto begins = [&](size_t number) {
        tagSeenCall call;
        call.callId = std::to_string(number);
        call.caller = "user" + std::to_string(number / CallBook::MAX_OF_CALLER);
        call.callee = "called";
        return calls.begin(call, 1);
    };
    for (size_t i = 0; i < CallBook::MAX_CALLS; ++i)
        ASSERT_TRUE(begins(i)) << i;
    EXPECT_FALSE(begins(CallBook::MAX_CALLS)) << "all are going on";
    calls.end("7", 2);
    calls.end("5", 3);
    EXPECT_TRUE(begins(CallBook::MAX_CALLS));
    EXPECT_FALSE(calls.isKnown("5")) << "it is the older one";
    EXPECT_TRUE(calls.isKnown("7"));
}

TEST(PbxBooks, OneCallerHasSoManyCallsAtOnce)
{
    CallBook calls([](const std::string&) {});
    tagSeenCall call;
    call.caller = "1001";
    for (size_t i = 0; i < CallBook::MAX_OF_CALLER; ++i) {
        call.callId = std::to_string(i);
        ASSERT_TRUE(calls.begin(call, 1)) << i;
    }
    call.callId = "more";
    EXPECT_FALSE(calls.begin(call, 1));
    call.caller = "1002";
    EXPECT_TRUE(calls.begin(call, 1)) << "another one has room";
    call.caller = "1001";
    call.callId = "again";
    calls.end("3", 2);
    EXPECT_TRUE(calls.begin(call, 3));
}

TEST(PbxBooks, AnOlderRegistrationThatComesLateChangesNothing)
{
    ContactBook contacts("127.0.0.1:5060", ContactBook::MOST_SECONDS);
    const Request request("REGISTER", "Contact: <sip:a@127.0.0.1:7000>;expires=100000");
    ASSERT_EQ(contacts.update("1001", request.sip(), 1), 200);
    EXPECT_EQ(contacts.listed("1001", 1).front(), "<sip:a@127.0.0.1:7000>;expires=3600") << "the longest";
    EXPECT_EQ(contacts.update("1001", request.sip(), 2), 500) << "it has no higher number";
    EXPECT_EQ(contacts.listed("1001", 1).front(), "<sip:a@127.0.0.1:7000>;expires=3600");
}

TEST(PbxBooks, AccountsHaveTheirBounds)
{
    QTemporaryDir folder;
    QFile file(folder.filePath("accounts"));
    const auto loads = [&](const QByteArray& text) {
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        AccountBook accounts;
        std::string reason;
        return accounts.load(file.fileName().toStdString(), reason);
    };
    QByteArray many;
    for (size_t i = 0; i < AccountBook::MAX_ACCOUNTS; ++i)
        many += QByteArray::number(1000 + int(i)) + " secret\n";
    EXPECT_TRUE(loads(many));
    EXPECT_FALSE(loads(many + "2000 secret\n"));
    EXPECT_FALSE(loads("1001 secret " + QByteArray(AccountBook::MAX_LINE, 'n') + "\n"));
    EXPECT_FALSE(loads("1001 secret An\tna\n"));
}
