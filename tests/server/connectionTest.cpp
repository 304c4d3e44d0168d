#include "tests/server/signServer.h"
#include <cstring>
#include <memory>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

using Wires = std::vector<std::unique_ptr<Wire>>;

const QByteArray kSecond = "GET /service/second.htm HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n";
const QByteArray kSchedule = "/service/getschedule.htm?serverKey=key&hardwareKey=aabbcc";

class Connections : public SignServerTest
{
protected:
    void startEnrolled(const QStringList& options = {})
    {
        write("schedule.xml", "<schedule/>");
        start(options);
        ASSERT_EQ(resultOf(enroll().body), "registered");
    }
    // So many connections that have sent the same bytes.
    Wires open(int count, const QByteArray& sent = {}) const
    {
        Wires wires;
        for (int i = 0; i < count; ++i) {
            wires.push_back(std::make_unique<Wire>(m_port));
            if (!sent.isEmpty())
                wires.back()->send(sent);
        }
        return wires;
    }
    static int ended(const Wires& wires)
    {
        int count = 0;
        for (const auto& wire : wires)
            count += wire->readAll(1).ended ? 1 : 0;
        return count;
    }
    // The one answer to what was sent, and nothing behind it.
    void expectRefused(const QByteArray& what, const QByteArray& bytes, int status = 400)
    {
        Wire wire(m_port);
        wire.send(bytes + kSecond);
        const Answer answer = wire.readAll();
        EXPECT_EQ(answer.status, status) << what.constData();
        EXPECT_TRUE(answer.ended) << what.constData();
        EXPECT_EQ(answer.fields["connection"], "close") << what.constData();
        EXPECT_EQ(answer.raw.count("HTTP/1.1 "), 1) << what.constData() << "\n" << answer.raw.constData();
    }
    static QByteArray head(const QByteArray& fields, const QByteArray& method = "GET")
    {
        return method + " " + kSchedule + " HTTP/1.1\r\nHost: x\r\n" + fields + "\r\n";
    }
};

TEST_F(Connections, ABodyBehindAGetIsNoSecondRequest)
{
    startEnrolled();
    const QByteArray length = "Content-Length: " + QByteArray::number(kSecond.size()) + "\r\n";
    expectRefused("a body", head(length));
    expectRefused("a body of HEAD", head(length, "HEAD"));
    expectRefused("chunks", head("Transfer-Encoding: chunked\r\n") + "0\r\n\r\n");
    expectRefused("chunks of POST", head("Transfer-Encoding: chunked\r\n", "POST") + "0\r\n\r\n");
    expectRefused("a coding that is not known", head("Transfer-Encoding: xchunked\r\n", "POST"));
    stop();
    EXPECT_FALSE(log().contains("second.htm"));
    EXPECT_TRUE(log().contains("127.0.0.1 (no request) 400 "));
    EXPECT_TRUE(log().contains(" refused: a body where none belongs\n"));
}

TEST_F(Connections, ALengthThatCanBeReadInTwoWaysIsRefused)
{
    startEnrolled();
    const QByteArray zero = "Content-Length: 0\r\n", five = "Content-Length: 5\r\n";
    for (const QByteArray method : {"GET", "POST"}) {
        expectRefused("twice", head(zero + zero, method));
        expectRefused("two", head(zero + five, method));
        expectRefused("with chunks", head(zero + "Transfer-Encoding: chunked\r\n", method) + "0\r\n\r\n");
        expectRefused("chunks first", head("Transfer-Encoding: chunked\r\n" + zero, method) + "0\r\n\r\n");
        for (const QByteArray text : {"+0", "-0", "0x0", "0,0", "0 0", "", "0;", "99999999999999999999"})
            expectRefused("length " + text, head("Content-Length: " + text + "\r\n", method));
    }
    stop();
    EXPECT_FALSE(log().contains("second.htm"));
}

TEST_F(Connections, LinesThatCanEndInTwoWaysAreRefused)
{
    startEnrolled();
    const QByteArray line = "GET " + kSchedule + " HTTP/1.1";
    expectRefused("line feeds", line + "\nHost: x\n\n");
    expectRefused("a line feed within", line + "\r\nHost: x\nX: y\r\n\r\n");
    expectRefused("a line feed in front of the end", line + "\r\nHost: x\r\n\n");
    expectRefused("a line feed behind the request line", line + "\nHost: x\r\n\r\n");
    expectRefused("a carriage return", line + "\r\nHost: x\r\nX: y\rZ: w\r\n\r\n");
    expectRefused("one in the request line", "GET /\r/ HTTP/1.1\r\nHost: x\r\n\r\n");
    expectRefused("a folded line", head("X: y\r\n Content-Length: 5\r\n"));
    expectRefused("one folded with a tab", head("X: y\r\n\tz\r\n"));
    expectRefused("a blank in front of the colon", head("Content-Length : 5\r\n"));
    expectRefused("a line without a name", head(": 5\r\n"));
    expectRefused("a line without a colon", head("Content-Length\r\n"));
    expectRefused("a zero byte", head(QByteArray("X: y\0z\r\n", 8)));
    stop();
    EXPECT_FALSE(log().contains("second.htm"));
}

TEST_F(Connections, ARequestNamesOneHostAndAVersionThatIsKnown)
{
    startEnrolled();
    expectRefused("no host", "GET " + kSchedule + " HTTP/1.1\r\n\r\n");
    expectRefused("two hosts", head("Host: y\r\n"));
    expectRefused("version 2", "GET " + kSchedule + " HTTP/2.0\r\nHost: x\r\n\r\n");
    expectRefused("no version", "GET " + kSchedule + "\r\nHost: x\r\n\r\n");
    const Answer old = [this] {
        Wire wire(m_port);
        wire.send("GET " + kSchedule + " HTTP/1.0\r\n\r\n");
        return wire.readAll();
    }();
    EXPECT_EQ(old.status, 200);
    EXPECT_TRUE(old.ended);
}

TEST_F(Connections, WhatIsTooLargeIsToldSo)
{
    startEnrolled();
    expectRefused("head", head("X: " + QByteArray(70000, 'x') + "\r\n"), 431);
    expectRefused("body", head("Content-Length: 65537\r\n", "POST") + QByteArray(65537, 'x'), 413);
}

TEST_F(Connections, ABodyThatBelongsThereIsReadAndTheNextRequestServed)
{
    startEnrolled();
    Wire wire(m_port);
    const QByteArray rules = "refuse *second*";
    wire.send(
        "POST /faults HTTP/1.1\r\nHost: 127.0.0.1\r\nX-Signage-Change: 1\r\nContent-Length: 15\r\n\r\n" +
        rules.left(3));
    EXPECT_TRUE(wire.readFor(1, 100).isEmpty());
    wire.send(rules.mid(3) + head({}) + kSecond);
    EXPECT_TRUE(wire.readOne().body.startsWith("refuse *second*"));
    EXPECT_EQ(wire.readOne().status, 200);
    EXPECT_EQ(wire.readOne().status, 503);
}

// How often the list of phones has been put in place since the watch began.
int putInPlace(int watch)
{
    QByteArray events(1 << 20, '\0');
    const ssize_t size = read(watch, events.data(), size_t(events.size()));
    int count = 0;
    for (ssize_t at = 0; at < size;) {
        inotify_event event;
        memcpy(&event, events.constData() + at, sizeof event);
        // The first one takes nobody's place: it is linked and not moved.
        count +=
            event.len > 0 && events.mid(at + qsizetype(sizeof event)).startsWith("registered.ini") ? 1 : 0;
        at += ssize_t(sizeof event + event.len);
    }
    return count;
}

// One thread: who held it would hold everybody.
TEST_F(Connections, WhoIsSilentOrSlowHoldsNobodyUp)
{
    startEnrolled({"--threads", "1"});
    write("media/film.mp4", noise(6 << 20));
    const Wires silent = open(200);
    const Wires halfHeads = open(100, "GET /service/getsch");
    const Wires halfBodies =
        open(100, "POST /faults HTTP/1.1\r\nHost: x\r\nContent-Length: 60000\r\n\r\nrefuse");
    // They do not read what they asked for.
    const Wires lazy = open(20, "GET " + fileTarget("film.mp4") + " HTTP/1.1\r\nHost: x\r\n\r\n");
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(schedule().status, 200);
    EXPECT_EQ(ended(silent) + ended(halfHeads) + ended(halfBodies), 0) << "nobody had to go first";
}

TEST_F(Connections, ARequestThatDribblesInForEverIsEnded)
{
    startEnrolled({"--patience", "1"});
    for (const QByteArray begin : {"GET /", "POST /faults HTTP/1.1\r\nHost: x\r\n"
                                            "Content-Length: 60000\r\n\r\n"}) {
        Wire wire(m_port);
        wire.send(begin);
        bool over = false;
        for (int i = 0; i < 200 && !over; ++i) {
            over = wire.readAll(100).ended;
            if (!over)
                wire.trySend("x");
        }
        EXPECT_TRUE(over) << begin.constData();
    }
    EXPECT_EQ(schedule().status, 200);
}

TEST_F(Connections, WhoWasSilentForLongestGivesWay)
{
    startEnrolled({"--connections", "20"});
    const Wires silent = open(20);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(schedule().status, 200);
    EXPECT_TRUE(silent.front()->readAll().ended);
    EXPECT_FALSE(silent.back()->readAll(1).ended);
    // Answers are not cut off for somebody new.
    ask("POST", "/faults", "drip *getschedule* bytes=20 pause=100");
    Wire answered(m_port);
    answered.send("GET " + kSchedule + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    ASSERT_FALSE(answered.readFor(1).isEmpty());
    const Wires more = open(100);
    EXPECT_TRUE(answered.readAll().raw.endsWith("</norvane>\n"));
}

TEST_F(Connections, ManyPhonesThatRegisterAtOnceAreAllRememberedByAFewWritings)
{
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\n*=*\n");
    write("schedule.xml", "<schedule/>");
    start();
    const int watch = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    ASSERT_GE(inotify_add_watch(watch, m_folder.path().toUtf8().constData(), IN_CREATE | IN_MOVED_TO), 0);
    constexpr int kPhones = 600;
    Wires phones = open(kPhones);
    for (int i = 0; i < kPhones; ++i)
        phones[size_t(i)]->send("GET /service/register.htm?serverKey=key&password=word&clientName=Phone " +
                                QByteArray::number(i) + "&hardwareKey=" + QByteArray::number(i) +
                                " HTTP/1.1\r\nHost: x\r\n\r\n");
    for (const auto& phone : phones)
        ASSERT_EQ(resultOf(phone->readOne().body), "registered");
    const int writings = putInPlace(watch);
    close(watch);
    EXPECT_GT(writings, 0);
    EXPECT_LT(writings, kPhones / 2);
    stop();
    start();
    for (int i = 0; i < kPhones; ++i)
        ASSERT_EQ(resultOf(schedule(QByteArray::number(i)).body), "registered") << i;
}

TEST_F(Connections, NamesOfAnyLengthDoNotPushARegisteredPhoneOut)
{
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\n*=*\n");
    startEnrolled();
    for (int i = 0; i < 560; ++i) {
        const QByteArray number = QByteArray::number(i);
        ASSERT_EQ(resultOf(enroll(QByteArray(7600, 'n') + number, number).body),
                  "a display needs a name and a hardware key");
    }
    EXPECT_EQ(resultOf(enroll("Lobby", QByteArray(65, 'a')).body),
              "a display needs a name and a hardware key");
    EXPECT_EQ(resultOf(enroll(QByteArray(255, 'n'), QByteArray(64, 'a')).body), "registered");
    EXPECT_EQ(resultOf(schedule().body), "registered");
}

TEST_F(Connections, TheListOfPhonesHasAnEnd)
{
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\n*=*\n");
    QByteArray rows = "[registered]\n";
    for (int i = 0; i < 10000; ++i)
        rows += QByteArray::number(i) + "=Phone\n";
    write("registered.ini", rows);
    start();
    EXPECT_EQ(resultOf(enroll("Lobby", "aabbcc").body), "too many displays are registered");
    EXPECT_EQ(resultOf(enroll("Lobby", "9999").body), "registered");
    // The administrator makes room.
    write("registered.ini", rows.left(rows.indexOf("9999=")));
    EXPECT_EQ(resultOf(enroll("Lobby", "aabbcc").body), "registered");
}

TEST_F(Connections, ARegistrationThatCannotBeKeptIsRefused)
{
    write("schedule.xml", "<schedule/>");
    start();
    ASSERT_EQ(mkdir(path("registered.ini").toUtf8().constData(), 0700), 0);
    EXPECT_EQ(resultOf(enroll().body), "the registration could not be saved");
    EXPECT_EQ(resultOf(schedule().body), "this display is not registered");
    ASSERT_EQ(rmdir(path("registered.ini").toUtf8().constData()), 0);
    EXPECT_EQ(resultOf(enroll().body), "registered");
}

} // namespace
