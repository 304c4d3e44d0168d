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

TEST(PbxBooks, AQuestionForAPasswordIsGoodForItsTimeAlone)
{
    QTemporaryDir folder;
    QFile file(folder.filePath("accounts"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("1001 secret Anna\n");
    file.close();
    AccountBook accounts;
    std::string reason, user;
    ASSERT_TRUE(accounts.load(file.fileName().toStdString(), reason)) << reason;
    PasswordCheck passwords(accounts, "127.0.0.1", false);
    now = 1000000;
    const QByteArray question = QByteArray::fromStdString(passwords.questions(false).front());
    const auto judge = [&](const QByteArray& count) {
        QByteArray answer =
            "Digest username=\"1001\", realm=\"127.0.0.1\", nonce=\"" + paramOf(question, "nonce") +
            "\", uri=\"sip:127.0.0.1\", algorithm=MD5, qop=auth, nc=" + count + ", cnonce=\"own\"";
        answer += ", response=\"" + digestOf("REGISTER", answer, "1001", "secret") + "\"";
        const Request request("REGISTER", "Authorization: " + answer);
        return passwords.judge(request.sip().sip_authorization, *request.sip().sip_request, user);
    };
    EXPECT_EQ(judge("00000001"), PasswordCheck::VERDICT::GOOD);
    now += PasswordCheck::NONCE_SECONDS;
    EXPECT_EQ(judge("00000002"), PasswordCheck::VERDICT::GOOD);
    EXPECT_EQ(judge("00000002"), PasswordCheck::VERDICT::LATE) << "said twice";
    ++now;
    EXPECT_EQ(judge("00000003"), PasswordCheck::VERDICT::LATE);
    now = 0;
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
    ContactBook contacts("127.0.0.1:5060");
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
