#include "tests/server/statusOf.h"
#include "tools/signServer/DisplayBook.h"
#include "tools/signServer/HtmlText.h"
#include <QDateTime>
#include <QFile>
#include <QNetworkInterface>
#include <QTcpSocket>
#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class Status : public StatusTest
{
protected:
    void startEnrolled()
    {
        writeShow();
        start();
        ASSERT_EQ(resultOf(enroll().body), "registered");
    }
    void fetchAll() const
    {
        fetch("a.xml", "layout");
        fetch("one.jpg");
        fetch("two.png");
    }
    // One that reads the beginning of an answer and goes.
    void cutOff(const QByteArray& name) const
    {
        Wire wire(m_port);
        wire.send("GET " + fileTarget(name) + " HTTP/1.1\r\nHost: x\r\n\r\n");
        EXPECT_GE(wire.readFor(1000).size(), 1000);
    }
};

TEST_F(Status, TellsNameKeyAddressLookAndRegistrationOfADisplay)
{
    startEnrolled();
    EXPECT_TRUE(display()["last_look"].isNull());
    EXPECT_EQ(display()["standing"], "incomplete");
    schedule();
    const QJsonObject lobby = display();
    EXPECT_EQ(lobby["name"], "Lobby");
    EXPECT_EQ(lobby["address"], "127.0.0.1");
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (const char* time : {"last_look", "last_registration"}) {
        const QDateTime then = QDateTime::fromString(lobby[time].toString(), Qt::ISODate);
        EXPECT_TRUE(then.isValid() && then <= now && then.secsTo(now) < 300) << time;
    }
}

TEST_F(Status, ListsWhatWasFetchedWholeAndWhatWasNot)
{
    startEnrolled();
    schedule();
    EXPECT_THAT(names("missing"), ElementsAre("layout/a.xml", "media/one.jpg", "media/two.png"));
    fetch("a.xml", "layout");
    fetch("one.jpg");
    EXPECT_THAT(names("whole"), ElementsAre("layout/a.xml", "media/one.jpg"));
    EXPECT_THAT(names("missing"), ElementsAre("media/two.png"));
    EXPECT_EQ(display()["standing"], "incomplete");
    fetch("two.png");
    EXPECT_THAT(names("missing"), IsEmpty());
    EXPECT_EQ(display()["standing"], "in step");
}

TEST_F(Status, AFileThatItsReaderLeftIsNotWhole)
{
    startEnrolled();
    schedule();
    // It fits into the memory of the system, so all of it goes out.
    cutOff("one.jpg");
    EXPECT_TRUE(soon([this] { return names("cut") == QStringList("media/one.jpg"); }));
    // And one that does not.
    write("media/one.jpg", noise(8 << 20));
    schedule();
    EXPECT_TRUE(names("cut").isEmpty());
    cutOff("one.jpg");
    EXPECT_TRUE(soon([this] { return names("cut") == QStringList("media/one.jpg"); }));
    fetch("one.jpg");
    EXPECT_THAT(names("whole"), ElementsAre("media/one.jpg"));
}

TEST_F(Status, AFileThatWasCutOrSpoiltOnItsWayIsNotWhole)
{
    writeShow();
    write("faults.txt", "cut *one.jpg* after=5000\ncorrupt *two.png*\n");
    start();
    enroll();
    schedule();
    fetchAll();
    EXPECT_THAT(names("cut"), UnorderedElementsAre("media/one.jpg", "media/two.png"));
    EXPECT_EQ(display()["files_whole"], 1);
    EXPECT_EQ(display()["files_wanted"], 3);
}

TEST_F(Status, AFileThatChangedIsMissingUntilItIsFetchedAgain)
{
    startEnrolled();
    schedule();
    fetchAll();
    write("media/one.jpg", noise(40000, 7));
    EXPECT_EQ(display()["standing"], "in step") << "the display has not been told";
    schedule();
    EXPECT_THAT(names("missing"), ElementsAre("media/one.jpg"));
    EXPECT_EQ(names("whole").size(), 2);
}

TEST_F(Status, ALayoutWhoseTimeHasNotComeIsNotMissed)
{
    startEnrolled();
    write("schedule.xml",
          "<schedule><layout file='a.xml'/><layout file='b.xml' fromdt='2036-01-01 00:00:00'/>"
          "<layout file='c.xml' todt='2001-01-01 00:00:00' eventType='sametime'/></schedule>");
    write("layouts/b.xml", "<layout/>");
    write("layouts/c.xml", "<layout/>");
    schedule();
    fetchAll();
    EXPECT_THAT(names("not_due"), ElementsAre("layout/b.xml", "layout/c.xml"));
    EXPECT_EQ(display()["standing"], "in step");
}

TEST_F(Status, TellsWhatADisplayWasRefused)
{
    startEnrolled();
    schedule();
    fetch("one.jpg");
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\nHall=112233\n");
    schedule();
    schedule();
    EXPECT_EQ(display()["standing"], "refused");
    const QJsonObject refusal = display()["refusals"].toArray().first().toObject();
    EXPECT_EQ(refusal["what"], "schedule");
    EXPECT_EQ(refusal["why"], "this display is not registered");
    EXPECT_EQ(refusal["times"], 2);
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\nLobby=*\n");
    schedule();
    EXPECT_EQ(display()["standing"], "incomplete");
}

TEST_F(Status, TellsOfAStrangerWhoWasRefused)
{
    startEnrolled();
    enroll("Garage", "778899");
    const QJsonObject garage = display("778899");
    EXPECT_EQ(garage["name"], "Garage");
    EXPECT_EQ(garage["standing"], "refused");
    EXPECT_EQ(garage["refusals"].toArray().first().toObject()["why"], "unknown display");
}

TEST_F(Status, TellsOfAFileThatWasRefused)
{
    startEnrolled();
    schedule();
    QFile::remove(path("media/two.png"));
    fetch("two.png");
    EXPECT_THAT(names("refused"), ElementsAre("media/two.png"));
    EXPECT_EQ(display()["refusals"].toArray().first().toObject()["what"], "media two.png");
}

TEST_F(Status, ADisplayIsLateAfterThreeIntervals)
{
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\n*=*\n[status]\ninterval=1000\n");
    writeShow();
    start();
    for (const char* name : {"Attic", "Bar"}) {
        enroll(name, name);
        schedule(name);
    }
    stop();
    age(2500);
    start();
    EXPECT_EQ(display("Attic")["standing"], "incomplete");
    stop();
    age(501);
    start();
    EXPECT_EQ(display("Attic")["standing"], "late");
    schedule("Attic");
    EXPECT_EQ(display("Attic")["standing"], "incomplete");
    EXPECT_EQ(display("Bar")["standing"], "late");
    EXPECT_EQ(order(), QStringList({"Bar", "Attic"})) << "the late ones first";
    EXPECT_EQ(status()["late_after"], 3000);
}

TEST_F(Status, AnIntervalThatIsNoneIsThatOfThePhones)
{
    for (const char* interval : {"", "0", "-5", "abc", "99999999999"}) {
        write("server.ini", "[server]\nkey=key\npassword=word\n[status]\ninterval=" + QByteArray(interval));
        if (m_port == 0)
            start();
        EXPECT_EQ(status()["interval"], 60) << interval;
    }
}

TEST_F(Status, ADisplayThatNeverCameIsLate)
{
    startEnrolled();
    EXPECT_EQ(display("112233")["standing"], "late");
    EXPECT_EQ(display("112233")["name"], "Hall");
    EXPECT_EQ(order(), QStringList({"Hall", "Lobby"}));
    EXPECT_TRUE(page().body.contains("never seen"));
}

TEST_F(Status, WhatDisplaysHaveIsKnownAfterARestart)
{
    startEnrolled();
    schedule();
    fetch("one.jpg");
    cutOff("one.jpg");
    fetch("two.png");
    ASSERT_TRUE(soon([this] { return names("cut").size() == 1; }));
    enroll("Lobby", "aabbcc", "key", "wrong");
    const QJsonObject before = display();
    stop();
    EXPECT_EQ(QFile::permissions(path("displays.json")) &
                  (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther),
              QFile::Permissions());
    start();
    QJsonObject after = display();
    for (const char* part : {"files", "refusals", "last_look", "last_registration", "name", "standing"})
        EXPECT_EQ(after[part], before[part]) << part;
    schedule();
    EXPECT_THAT(names("whole"), ElementsAre("media/two.png"));
}

TEST_F(Status, WhoWasRefusedIsKnownWithNameAndReasonAfterARestart)
{
    startEnrolled();
    enroll("Garage", "778899");
    enroll("Cellar", "445566", "key", "wrong");
    schedule("445566");
    const QJsonObject garage = display("778899"), cellar = display("445566");
    EXPECT_EQ(cellar["refusals"].toArray().size(), 2);
    stop();
    start();
    EXPECT_EQ(display("778899"), garage);
    EXPECT_EQ(display("445566"), cellar);
    EXPECT_EQ(cellar["name"], "Cellar");
    // One that is admitted at last is no stranger.
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\n*=*\n");
    enroll("Garage", "778899");
    stop();
    start();
    EXPECT_EQ(display("778899")["standing"], "incomplete");
    EXPECT_EQ(order().count("Garage"), 1);
}

TEST_F(Status, WhyAnExpectedDisplayHasNotComeIsTold)
{
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\nHall=AABBCC\n");
    start();
    enroll("Hall", "aabbcc", "key", "wrong");
    for (int i = 0; i < 2; ++i) {
        const QJsonObject hall = display("AABBCC");
        EXPECT_EQ(hall["standing"], "refused");
        EXPECT_EQ(hall["refusals"].toArray().first().toObject()["why"], "wrong password");
        EXPECT_EQ(status()["displays"].toArray().size(), 1);
        stop();
        start();
    }
}

TEST_F(Status, ABookThatIsDamagedIsNone)
{
    writeShow();
    for (const QByteArray& book :
         {QByteArray("{\"displays\":[{\"key\":1,\"states\":\"www\"},7]}"), noise(5000),
          QByteArray("{\"schedules\":{\"x\":[[1],2]},\"displays\":[{\"key\":\"aabbcc\","
                     "\"schedule\":\"x\",\"states\":\"wwwwwwww\"}]}")}) {
        write("displays.json", book);
        start();
        enroll();
        schedule();
        EXPECT_EQ(names("missing").size(), 3);
        EXPECT_EQ(page("?display=aabbcc").status, 200);
        stop();
    }
}

TEST_F(Status, WithoutAPasswordOnlyTheOwnMachineSeesIt)
{
    start({"--bind", "0.0.0.0"});
    EXPECT_EQ(page().status, 200);
    EXPECT_EQ(askStatus("/status", "Host: localhost\r\n").status, 200);
    EXPECT_EQ(askStatus("/status", "Host: [::1]:80\r\n").status, 200);
    // A browser that another site leads here by its name.
    EXPECT_EQ(askStatus("/status", "Host: evil.example\r\n").status, 403);
    EXPECT_EQ(askStatus("/status.json", "Host: 127.0.0.1.evil.example\r\n").status, 403);
    // Another site's page in a browser here, a link on it that a person follows, and a proxy here.
    EXPECT_EQ(askStatus("/status.json", "Origin: http://evil.example\r\n").status, 403);
    EXPECT_EQ(askStatus("/status", "Sec-Fetch-Site: cross-site\r\nSec-Fetch-Mode: no-cors\r\n").status, 403);
    EXPECT_EQ(askStatus("/status", "Sec-Fetch-Site: cross-site\r\nSec-Fetch-Mode: navigate\r\n").status, 200);
    for (const QByteArray mark : {"X-Forwarded-For", "X-Real-IP", "Forwarded", "Via"})
        EXPECT_EQ(askStatus("/status.json", mark + ": 10.0.0.9\r\n").status, 403) << mark.constData();
    EXPECT_GE(ask("POST", "/status", "x").status, 400);
}

TEST_F(Status, WithoutAPasswordAnotherMachineDoesNotSeeIt)
{
    QHostAddress own;
    for (const QHostAddress& address : QNetworkInterface::allAddresses()) {
        if (!address.isLoopback() && address.protocol() == QAbstractSocket::IPv4Protocol)
            own = address;
    }
    if (own.isNull())
        GTEST_SKIP() << "this machine has no address but its own";
    start({"--bind", "0.0.0.0"});
    QTcpSocket socket;
    socket.connectToHost(own, quint16(m_port));
    socket.write("GET /status.json HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n");
    QByteArray answer;
    while (socket.waitForReadyRead(10000))
        answer += socket.readAll();
    EXPECT_TRUE(answer.startsWith("HTTP/1.1 403 ")) << answer.constData();
    EXPECT_FALSE(answer.contains("displays"));
}

TEST_F(Status, WithAPasswordWhoeverGivesItSeesIt)
{
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\nLobby=*\n[status]\npassword=s:same\n");
    start();
    const Answer without = page();
    EXPECT_EQ(without.status, 401);
    EXPECT_TRUE(without.fields["www-authenticate"].startsWith("Basic "));
    EXPECT_FALSE(without.body.contains("Lobby"));
    const auto with = [this](const QByteArray& words) {
        return askStatus("/status.json",
                         "Host: far.example\r\nX-Forwarded-For: 10.0.0.9\r\nAuthorization: Basic " +
                             words.toBase64() + "\r\n")
            .status;
    };
    EXPECT_EQ(with("anybody:s:same"), 200);
    EXPECT_EQ(with("anybody:s:samf"), 401);
    EXPECT_EQ(with("s:same"), 401);
    EXPECT_EQ(with("anybody:"), 401);
    EXPECT_FALSE(log().contains("same"));
}

TEST_F(Status, NamesOfTheNetworkStandOnThePageAsTexts)
{
    const QByteArray name = "<script>alert('x')</script>\"&amp";
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\n*=*\n");
    writeShow();
    start();
    enroll("<script>alert(1)</script>", "11");
    enroll("'\"><img src=x onerror=alert(1)>", "22");
    enroll("<b>stranger</b>", "<i>key</i>", "key", "wrong");
    const QByteArray html = page().body;
    for (const char* bad : {"<script", "<img", "<b>stranger", "<i>key", "\"><"})
        EXPECT_FALSE(html.contains(bad)) << bad;
    EXPECT_TRUE(html.contains("&lt;script&gt;alert(1)&lt;/script&gt;"));
    EXPECT_TRUE(html.contains("&lt;b&gt;stranger&lt;/b&gt;"));
    EXPECT_TRUE(html.contains("href='/status?display=%3Ci%3Ekey%3C%2Fi%3E'"));
}

TEST_F(Status, ThePageMayLoadAndRunNothing)
{
    start();
    const Answer answer = page();
    const QByteArray policy = answer.fields["content-security-policy"];
    EXPECT_TRUE(policy.startsWith("default-src 'none'; style-src 'sha256-"));
    EXPECT_FALSE(policy.contains("unsafe"));
    EXPECT_EQ(answer.fields["x-content-type-options"], "nosniff");
    EXPECT_EQ(answer.fields["cache-control"], "no-store");
    EXPECT_FALSE(answer.body.contains("http://") || answer.body.contains("https://"));
    EXPECT_TRUE(answer.body.contains("<meta http-equiv='refresh' content='10'>"));
}

TEST_F(Status, AFloodOfStrangersIsBounded)
{
    startEnrolled();
    schedule();
    Wire wire(m_port);
    const int flood = 3000;
    for (int i = 0; i < flood; ++i) {
        wire.send("GET /service/register.htm?serverKey=no&clientName=" + QByteArray(2000, 'n') +
                  "&hardwareKey=" + QByteArray::number(i) + QByteArray(2000, 'k') +
                  " HTTP/1.1\r\nHost: x\r\n\r\n");
        ASSERT_EQ(wire.readOne().status, 200);
    }
    EXPECT_LE(status()["displays"].toArray().size(), 100 + 2);
    EXPECT_LE(askStatus().body.size(), 200000);
    EXPECT_EQ(display()["name"], "Lobby");
}

TEST(Book, AFloodOfDisplaysIsBoundedAndThoseThatLookStay)
{
    DisplayBook book;
    auto files = std::make_shared<ScheduledFiles>();
    files->files = {{"media", "a.png", "1", {}}};
    DisplayEvent look;
    look.key = "lobby";
    look.files = files;
    book.Note(look, 1);
    DisplayEvent registration;
    registration.kind = DisplayEvent::Registration;
    for (int i = 0; i < 1000000; ++i) {
        registration.key = registration.name = QByteArray::number(i) + QByteArray(300, 'x');
        book.Note(registration, 2 + i / 1000);
    }
    EXPECT_LE(book.Known().size(), DisplayBook::DISPLAY_LIMIT);
    EXPECT_GT(book.Known().size(), DisplayBook::DISPLAY_LIMIT / 2);
    EXPECT_TRUE(book.Known().contains("lobby"));
    for (const DisplayRecord& record : book.Known())
        ASSERT_LE(record.key.size() + record.name.size(), 2 * DisplayBook::TEXT_LIMIT);
}

TEST(Book, DisplaysOfOneScheduleShareItsFiles)
{
    DisplayBook book;
    for (const char* key : {"a", "b"}) {
        auto files = std::make_shared<ScheduledFiles>();
        files->id = "same";
        DisplayEvent look;
        look.key = key;
        look.files = files;
        book.Note(look, 1);
    }
    EXPECT_EQ(book.Known()["a"].files, book.Known()["b"].files);
}

TEST(HtmlText, LeavesNothingThatIsMoreThanAText)
{
    EXPECT_EQ(HtmlText("a<b>&'\""), "a&lt;b&gt;&amp;&#39;&quot;");
    EXPECT_EQ(HtmlText("a\nb\x7f"), "a\xEF\xBF\xBD"
                                    "b\xEF\xBF\xBD");
    EXPECT_EQ(HtmlText("\xE2\x80\xAE"
                       "gpj"),
              "\xEF\xBF\xBDgpj");
    EXPECT_EQ(HtmlText("\xff"), "\xEF\xBF\xBD");
    EXPECT_EQ(HtmlText("Caf\xC3\xA9"), "Caf\xC3\xA9");
}

} // namespace
