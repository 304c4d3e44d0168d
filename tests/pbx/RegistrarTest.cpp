// Phones register at the exchange that comes along.
#include "tests/kit/plain/deviceFolder.h"
#include "tests/kit/plain/processes.h"
#include "tests/pbx/registrarProcess.h"
#include "tests/pbx/wirePhone.h"
#include "tests/sip/agentProcess.h"
#include <QDir>
#include <QFile>
#include <QTcpSocket>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace {

class PbxRegistrar : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(pbx.start()) << pbx.output().constData(); }
    QByteArray uri() const { return "sip:127.0.0.1:" + QByteArray::number(pbx.port()); }
    // What the exchange says of the phones of the user.
    QByteArray contactsAt(WirePhone& phone, const QByteArray& user)
    {
        return phone.ask("REGISTER", uri(), "query", "X-Phone: test", {}, "<" + phone.at(user) + ">");
    }

    RegistrarProcess pbx;
};

// The exit code, and all that it prints.
std::pair<int, QByteArray> run(const QStringList& words)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(kit::program("hxRegistrar"), words);
    process.waitForFinished();
    return {process.exitCode(), process.readAll()};
}

} // namespace

TEST_F(PbxRegistrar, OffersBothDigestsTheBetterOneFirstAndTakesEither)
{
    WirePhone phone("1001", pbx.port());
    phone.wire().send(
        phone.text("REGISTER", uri(), "first", 1, "X-Phone: test", {}, "<" + phone.at("1001") + ">"),
        pbx.port());
    const QByteArray question = phone.hears(401);
    EXPECT_GT(question.indexOf("algorithm=MD5"), question.indexOf("algorithm=SHA-256"))
        << question.constData();
    EXPECT_GT(question.indexOf("algorithm=SHA-256"), 0) << question.constData();
    for (const char* algorithm : {"SHA-256", "MD5"}) {
        phone.answerBy(algorithm);
        const QByteArray reply = phone.registers();
        EXPECT_EQ(statusOf(reply), 200) << algorithm;
        EXPECT_TRUE(headerOf(reply, "Contact").contains("<sip:1001@" + phone.own() + ">;expires=120"))
            << reply.constData();
    }
}

TEST_F(PbxRegistrar, AsksByMd5AloneWhereItIsToldTo)
{
    RegistrarProcess old;
    ASSERT_TRUE(old.start({"--md5"}));
    WirePhone phone("1001", old.port());
    phone.answerBy("SHA-256");
    EXPECT_EQ(statusOf(phone.registers()), 401);
    phone.answerBy("MD5");
    EXPECT_EQ(statusOf(phone.registers()), 200);
}

TEST_F(PbxRegistrar, WhoHasAnotherPasswordOrAnotherNameIsRefused)
{
    WirePhone wrong("1001", pbx.port(), "guess"), stranger("1009", pbx.port()), right("1002", pbx.port());
    for (WirePhone* each : {&wrong, &stranger}) {
        const QByteArray reply = each->registers();
        EXPECT_EQ(statusOf(reply), 401);
        EXPECT_TRUE(reply.contains("nonce=") && !reply.contains("stale")) << "it would try again";
    }
    EXPECT_EQ(statusOf(right.ask("REGISTER", uri(), "other", "Contact: <sip:1001@" + right.own() + ">", {},
                                 "<" + right.at("1001") + ">")),
              403);
    WirePhone asker("1001", pbx.port());
    EXPECT_FALSE(contactsAt(asker, "1001").contains("Contact:"));
}

TEST_F(PbxRegistrar, WhoHidesHisNameRegistersNoPhoneAndOneWayOfAnAnswerIsTaken)
{
    WirePhone phone("1001", pbx.port());
    const auto asks = [&](int number, const QByteArray& lines) {
        return phone.text("REGISTER", uri(), "hidden", number,
                          "Contact: <sip:1001@" + phone.own() + ">" + lines, {},
                          "<" + phone.at("1001") + ">");
    };
    const auto answer = [&] { return "\r\n" + phone.answerTo(phone.hears(401), "REGISTER", uri()); };
    phone.wire().send(asks(1, {}), pbx.port());
    phone.wire().send(asks(2, answer()).replace("From: <sip:1001@", "From: <sip:anonymous@"), pbx.port());
    EXPECT_NE(phone.hears(403).toStdString(), "");
    phone.wire().send(asks(3, {}), pbx.port());
    phone.wire().send(asks(4, answer().replace("qop=auth,", "qop=auth-int,")), pbx.port());
    EXPECT_NE(phone.hears(403).toStdString(), "") << "it covers a body that nobody has looked at";
    phone.wire().send(asks(5, {}), pbx.port());
    phone.wire().send(asks(6, answer()), pbx.port());
    EXPECT_NE(phone.hears(200).toStdString(), "");
}

TEST_F(PbxRegistrar, AnAnswerToAQuestionThatWasNeverAskedIsAskedAgain)
{
    const QByteArray invented =
        "SIP/2.0 401 x\r\nWWW-Authenticate: Digest realm=\"127.0.0.1\", "
        "nonce=\"1-0123456789abcdef0123456789abcdef\", algorithm=MD5, qop=\"auth\"\r\n\r\n";
    WirePhone phone("1001", pbx.port()), wrong("1001", pbx.port(), "guess");
    for (WirePhone* each : {&phone, &wrong})
        each->wire().send(each->text("REGISTER", uri(), "invented", 1,
                                     "Contact: <sip:1001@" + each->own() + ">\r\n" +
                                         each->answerTo(invented, "REGISTER", uri()),
                                     {}, "<" + each->at("1001") + ">"),
                          pbx.port());
    EXPECT_TRUE(phone.hears(401).contains("stale=true"));
    const QByteArray again = wrong.hears(401);
    EXPECT_TRUE(again.contains("nonce=") && !again.contains("stale")) << again.constData();
    EXPECT_FALSE(contactsAt(phone, "1001").contains("Contact:"));
}

TEST_F(PbxRegistrar, APhoneThatTheRunBeforeHasAskedIsAskedAgainAndIsBack)
{
    WirePhone phone("1001", pbx.port());
    ASSERT_EQ(statusOf(phone.ask("REGISTER", uri(), "query", {}, {}, "<" + phone.at("1001") + ">")), 200);
    phone.wire().send(phone.text("REGISTER", uri(), "again", 1, {}, {}, "<" + phone.at("1001") + ">"),
                      pbx.port());
    const QByteArray question = phone.hears(401), address = uri();
    ASSERT_EQ(pbx.end(), 0);
    RegistrarProcess anew;
    ASSERT_TRUE(anew.start({"--port", QString::number(pbx.port())})) << anew.output().constData();
    const auto answers = [&](int number, const QByteArray& asked) {
        phone.wire().send(phone.text("REGISTER", address, "again", number,
                                     "Contact: <sip:1001@" + phone.own() + ">\r\n" +
                                         phone.answerTo(asked, "REGISTER", address),
                                     {}, "<" + phone.at("1001") + ">"),
                          anew.port());
    };
    answers(2, question);
    const QByteArray fresh = phone.hears(401);
    EXPECT_TRUE(fresh.contains("stale=true")) << fresh.constData();
    answers(3, fresh);
    EXPECT_NE(phone.hears(200).toStdString(), "");
}

TEST_F(PbxRegistrar, AnAnswerIsGoodForItsOwnRequestAndOnce)
{
    WirePhone phone("1001", pbx.port());
    const auto sends = [&](int number, const QByteArray& answer) {
        phone.wire().send(
            phone.text("REGISTER", uri(), "once", number,
                       "Contact: <sip:1001@" + phone.own() + ">" + (answer.isEmpty() ? "" : "\r\n" + answer),
                       {}, "<" + phone.at("1001") + ">"),
            pbx.port());
    };
    sends(1, {});
    const QByteArray question = phone.hears(401);
    sends(2, phone.answerTo(question, "REGISTER", "sip:127.0.0.1:1"));
    EXPECT_NE(phone.hears(403).toStdString(), "") << "for another address";
    const QByteArray answer = phone.answerTo(question, "REGISTER", uri());
    sends(3, answer);
    EXPECT_NE(phone.hears(200).toStdString(), "");
    sends(4, answer);
    EXPECT_TRUE(phone.hears(401).contains("stale=true")) << "said twice";
}

TEST_F(PbxRegistrar, ContactsGoWhenTheyAreTakenBackAndAPhoneThatStartedAnewTakesItsPlace)
{
    WirePhone phone("1001", pbx.port()), second("1001", pbx.port());
    ASSERT_EQ(statusOf(phone.registers()), 200);
    ASSERT_EQ(statusOf(second.registers()), 200);
    QByteArray known = contactsAt(phone, "1001");
    EXPECT_TRUE(known.contains("<sip:1001@" + phone.own()) && known.contains("<sip:1001@" + second.own()))
        << known.constData();
    EXPECT_EQ(statusOf(phone.registers(0)), 200);
    known = contactsAt(phone, "1001");
    EXPECT_TRUE(!known.contains("<sip:1001@" + phone.own()) && known.contains("<sip:1001@" + second.own()))
        << known.constData();
    ASSERT_EQ(statusOf(second.ask("REGISTER", uri(), "anew", "Contact: <sip:random@" + second.own() + ">", {},
                                  "<" + second.at("1001") + ">")),
              200);
    known = contactsAt(phone, "1001");
    EXPECT_TRUE(known.contains("<sip:random@") && !known.contains("<sip:1001@" + second.own()))
        << known.constData();
    ASSERT_EQ(statusOf(second.ask("REGISTER", uri(), "all", "Contact: *\r\nExpires: 0", {},
                                  "<" + second.at("1001") + ">")),
              200);
    EXPECT_FALSE(contactsAt(phone, "1001").contains("Contact:"));
}

TEST_F(PbxRegistrar, GrantsTimeThatIsSoonOverOrWhatItIsTold)
{
    for (const auto& [options, most] : {std::pair<QStringList, QByteArray>{{}, "120"},
                                        {{"--expires", "60"}, "60"},
                                        {{"--expires", "3600"}, "3600"}}) {
        RegistrarProcess other;
        ASSERT_TRUE(other.start(options)) << other.output().constData();
        WirePhone phone("1001", other.port());
        const QByteArray contact = "<sip:1001@" + phone.own() + ">", to = "<" + phone.at("1001") + ">";
        const QByteArray at = "sip:127.0.0.1:" + QByteArray::number(other.port());
        for (const char* wanted : {"", ";expires=7200"}) {
            const QByteArray reply =
                phone.ask("REGISTER", at, "time", "Contact: " + contact + wanted, {}, to);
            EXPECT_EQ(headerOf(reply, "Contact"), contact + ";expires=" + most) << reply.constData();
        }
        for (const QByteArray lines : {"", "\r\nExpires: 7200"}) {
            const QByteArray reply =
                phone.ask("SUBSCRIBE", phone.at("1002"), "lamp" + QByteArray::number(lines.size()),
                          "Event: dialog" + lines);
            EXPECT_EQ(headerOf(reply, "Expires"), most) << reply.constData();
        }
    }
}

TEST_F(PbxRegistrar, HoldsItsBounds)
{
    WirePhone phone("1001", pbx.port());
    const auto registers = [&](const QByteArray& contact) {
        return statusOf(
            phone.ask("REGISTER", uri(), "bounds", "Contact: " + contact, {}, "<" + phone.at("1001") + ">"));
    };
    EXPECT_EQ(registers("<sip:a@127.0.0.1:7000>;expires=59"), 423);
    EXPECT_EQ(registers("<sip:a@127.0.0.1:7000>, *"), 400);
    EXPECT_EQ(registers("<sip:a@127.0.0.1:" + QByteArray::number(pbx.port()) + ">"), 400);
    EXPECT_EQ(registers("<mailto:a@b>"), 400);
    EXPECT_EQ(registers("<sip:" + QByteArray(600, 'a') + "@127.0.0.1:7000>"), 400);
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(registers("<sip:a@127.0.0.1:" + QByteArray::number(7000 + i) + ">"), 200) << i;
    EXPECT_EQ(registers("<sip:a@127.0.0.1:7010>"), 503);
}

TEST_F(PbxRegistrar, ThePhonesOwnAgentRegistersWithEachTransportAndUnregisters)
{
    for (const SIP_TRANSPORT transport : {SIP_UDP, SIP_TCP}) {
        AgentProcess agent;
        ASSERT_TRUE(agent.start());
        tagSipAccount account = accountAt(0, pbx.port(), transport);
        sipWire::setText(account.szUser, "1001");
        sipWire::setText(account.szAuthName, "");
        sipWire::setText(account.szPassword, RegistrarProcess::passwordOf("1001").toStdString());
        agent.tell(account);
        ASSERT_TRUE(agent.nextLine(0, SIP_LINE_REGISTERED)) << transport;
        WirePhone asker("1001", pbx.port());
        EXPECT_TRUE(contactsAt(asker, "1001").contains("Contact:"));
        agent.tell(sipWire::make<tagSipHead>(SIP_END, 0));
        EXPECT_TRUE(agent.ends());
        EXPECT_FALSE(contactsAt(asker, "1001").contains("Contact:"));
        EXPECT_EQ(agent.exitCode(), 0);
    }
}

TEST_F(PbxRegistrar, ConnectionsThatSayNothingTakeNoRoomAndPhonesKeepTheirs)
{
    constexpr int kMany = 300, kMost = 60;
    WirePhone phone("1001", pbx.port());
    ASSERT_EQ(statusOf(phone.registers()), 200);
    const auto connect = [this](QTcpSocket& socket, const char* from, const QByteArray& text) {
        ASSERT_TRUE(socket.bind(QHostAddress(from)));
        socket.connectToHost(QHostAddress::LocalHost, quint16(pbx.port()));
        ASSERT_TRUE(socket.waitForConnected());
        socket.write(text);
        socket.flush();
    };
    QTcpSocket quiet, speaks;
    ASSERT_NO_FATAL_FAILURE(connect(quiet, "127.0.0.1", "")); // where the phone is
    ASSERT_NO_FATAL_FAILURE(connect(speaks, "127.0.0.3",
                                    "OPTIONS " + uri() +
                                        " SIP/2.0\r\nVia: SIP/2.0/TCP 127.0.0.3:9;branch=z9hG4bKo\r\nFrom: "
                                        "<sip:a@b>;tag=a\r\nTo: <sip:a@b>\r\nCall-ID: o\r\nCSeq: 1 "
                                        "OPTIONS\r\nMax-Forwards: 70\r\nContent-Length: 0\r\n\r\n"));
    ASSERT_TRUE(speaks.waitForReadyRead());
    const auto files = [&] { return QDir(QString("/proc/%1/fd").arg(pbx.pid())).count(); };
    EXPECT_EQ(statusOf(phone.registers()), 200); // both connections were taken before
    const auto before = files();
    std::vector<std::unique_ptr<QTcpSocket>> crowd;
    for (int i = 0; i < kMany; ++i) {
        crowd.push_back(std::make_unique<QTcpSocket>());
        ASSERT_NO_FATAL_FAILURE(connect(*crowd.back(), "127.0.0.2", "INVITE "));
    }
    EXPECT_EQ(statusOf(phone.registers()), 200);
    EXPECT_LT(files(), before + kMost);
    EXPECT_TRUE(kit::waits([&] { return files() == before; }, AgentProcess::WAIT_MS)) << files();
    for (QTcpSocket* socket : {&quiet, &speaks}) {
        socket->waitForReadyRead(0);
        EXPECT_EQ(socket->state(), QTcpSocket::ConnectedState);
    }
}

TEST_F(PbxRegistrar, ThePhonesOwnAgentIsRefusedWithAWrongPassword)
{
    AgentProcess agent;
    ASSERT_TRUE(agent.start());
    tagSipAccount account = accountAt(0, pbx.port());
    sipWire::setText(account.szUser, "1001");
    sipWire::setText(account.szAuthName, "");
    agent.tell(account);
    const tagSipLine* line = agent.nextLine(0, SIP_LINE_REFUSED);
    ASSERT_TRUE(line);
    EXPECT_EQ(line->nStatus, 401u);
    EXPECT_STREQ(line->szReason, "The server does not accept name or password");
    EXPECT_FALSE(agent.nextLine(0, SIP_LINE_REFUSED, 300)) << "it has not tried again so soon";
}

TEST(PbxProgram, TellsWhatIsWrongAndEndsWhenItIsAsked)
{
    EXPECT_EQ(run({}).first, 2);
    EXPECT_EQ(run({"--port", "70000", "file"}).first, 2);
    EXPECT_EQ(run({"--expires", "59", "file"}).first, 2);
    EXPECT_EQ(run({"--expires", "3601", "file"}).first, 2);
    EXPECT_EQ(run({"/no/such/file"}).first, 1);
    QTemporaryDir folder;
    for (const char* text : {"", "1001\n", "10 01 x\n10 02 y\n", "a<b secret\n"}) {
        QFile file(folder.filePath("accounts"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        const auto [code, said] = run({file.fileName()});
        EXPECT_EQ(code, 1) << text;
        EXPECT_TRUE(said.contains("accounts")) << said.constData();
        EXPECT_FALSE(said.contains("secret")) << said.constData();
    }
    RegistrarProcess pbx;
    ASSERT_TRUE(pbx.start());
    QFile file(folder.filePath("good"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("1001 secret\n");
    file.close();
    const auto [code, said] = run({"--port", QString::number(pbx.port()), file.fileName()});
    EXPECT_EQ(code, 1) << "the port is another's";
    EXPECT_TRUE(said.contains(QByteArray::number(pbx.port()))) << said.constData();
    EXPECT_EQ(pbx.end(), 0);
}

TEST(PbxProgram, WarnsWhereOthersCanReadThePasswords)
{
    QTemporaryDir folder;
    QFile file(folder.filePath("accounts"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("1001 secret\n");
    file.close();
    constexpr auto kOwn = QFile::ReadOwner | QFile::WriteOwner;
    for (const auto& others :
         {QFile::Permissions(), QFile::Permissions(QFile::ReadGroup), QFile::Permissions(QFile::ReadOther)}) {
        ASSERT_TRUE(file.setPermissions(kOwn | others));
        const QByteArray said = run({"--host", "192.0.2.1", file.fileName()}).second;
        EXPECT_EQ(said.contains("WARNING"), others != QFile::Permissions()) << said.constData();
        EXPECT_EQ(said.contains(file.fileName().toUtf8()), others != QFile::Permissions());
        EXPECT_FALSE(said.contains("secret"));
    }
}
