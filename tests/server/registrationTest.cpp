#include "tests/server/signServer.h"
#include <gmock/gmock.h>

namespace {

using Registration = SignServerTest;

TEST_F(Registration, TheRightKeyAndPasswordRegisterADisplay)
{
    start();
    const Answer answer = enroll();
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(resultOf(answer.body), "registered");
    EXPECT_EQ(answer.fields["content-type"], "text/xml; charset=utf-8");
}

TEST_F(Registration, AWrongKeyIsRefused)
{
    start();
    EXPECT_EQ(resultOf(enroll("Lobby", "aabbcc", "kez").body), "unknown server key");
    EXPECT_EQ(resultOf(enroll("Lobby", "aabbcc", "keykey").body), "unknown server key");
    EXPECT_EQ(resultOf(enroll("Lobby", "aabbcc", "").body), "unknown server key");
}

TEST_F(Registration, AWrongPasswordIsRefused)
{
    start();
    EXPECT_EQ(resultOf(enroll("Lobby", "aabbcc", "key", "Word").body), "wrong password");
    EXPECT_EQ(resultOf(enroll("Lobby", "aabbcc", "key", "").body), "wrong password");
}

TEST_F(Registration, AServerWithoutAccountAdmitsNobody)
{
    write("server.ini", "[displays]\n*=*\n");
    start();
    EXPECT_EQ(resultOf(enroll("Lobby", "aabbcc", "", "").body), "unknown server key");
    write("server.ini", "[server]\nkey=key\npassword=\n[displays]\n*=*\n");
    EXPECT_EQ(resultOf(enroll("Lobby", "aabbcc", "key", "").body), "wrong password");
}

TEST_F(Registration, ADisplayThatIsNotAdmittedIsRefused)
{
    start();
    EXPECT_EQ(resultOf(enroll("Garage").body), "unknown display");
}

TEST_F(Registration, ANameMayBelongToOnePhone)
{
    start();
    EXPECT_EQ(resultOf(enroll("Hall", "445566").body), "unknown display");
    EXPECT_EQ(resultOf(enroll("Hall", "112233").body), "registered");
}

TEST_F(Registration, ADisplayNeedsANameAndAProperHardwareKey)
{
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\n*=*\n");
    start();
    const QByteArray words = "a display needs a name and a hardware key";
    EXPECT_EQ(resultOf(enroll("").body), words);
    EXPECT_EQ(resultOf(enroll("Lobby", "").body), words);
    EXPECT_EQ(resultOf(enroll("Lobby", "a=b").body), words);
    EXPECT_EQ(resultOf(enroll("Lobby", "[x]").body), words);
    EXPECT_EQ(resultOf(enroll("Lob%0Aby").body), words);
    EXPECT_EQ(resultOf(enroll("Lob%00by").body), words);
}

TEST_F(Registration, RawBlanksAndLettersOfAnyLanguageStandInANameAsTheyCome)
{
    write("server.ini", "[server]\nkey=k y\npassword=w+rd?\n[displays]\nCafé Süd=*\n");
    start();
    EXPECT_EQ(resultOf(enroll("Café Süd", "aabbcc", "k y", "w+rd?").body), "registered");
    EXPECT_EQ(resultOf(enroll("Caf%C3%A9%20S%C3%BCd", "aabbcc", "k%20y", "w%2Brd%3F").body), "registered");
}

TEST_F(Registration, OnlyARegisteredDisplayIsServed)
{
    write("schedule.xml", "<schedule/>");
    start();
    EXPECT_EQ(resultOf(schedule().body), "this display is not registered");
    enroll();
    EXPECT_EQ(resultOf(schedule().body), "registered");
    EXPECT_EQ(resultOf(schedule("ffffff").body), "this display is not registered");
    const Answer other = get("/service/getschedule.htm?serverKey=other&hardwareKey=aabbcc");
    EXPECT_EQ(resultOf(other.body), "unknown server key");
}

TEST_F(Registration, OutlivesTheServer)
{
    write("schedule.xml", "<schedule/>");
    start();
    enroll();
    stop();
    start();
    EXPECT_EQ(resultOf(schedule().body), "registered");
}

TEST_F(Registration, EndsWhenTheDisplayIsNoLongerAdmitted)
{
    write("schedule.xml", "<schedule/>");
    start();
    enroll();
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\nHall=112233\n");
    EXPECT_EQ(resultOf(schedule().body), "this display is not registered");
}

TEST_F(Registration, APhoneMayTakeAnotherName)
{
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\n*=*\n");
    write("schedule.xml", "<schedule><layout file='l.xml' displays='Cellar, Roof'/></schedule>");
    write("layouts/l.xml", "<layout/>");
    start();
    enroll("Lobby");
    EXPECT_TRUE(rowsOf(schedule().body, "layout").isEmpty());
    enroll("Roof");
    EXPECT_EQ(rowsOf(schedule().body, "layout").size(), 1);
}

TEST_F(Registration, LeavesALineWithoutThePasswordInTheLog)
{
    start();
    enroll();
    EXPECT_THAT(log().toStdString(),
                testing::ContainsRegex("127.0.0.1 GET /service/register.htm.serverKey=key"
                                       "&password=...&clientName=Lobby.* 200 [0-9]+ "
                                       "[0-9]+ms\n"));
    EXPECT_FALSE(log().contains("word=word"));
}

TEST_F(Registration, ThePasswordStaysOutOfTheLogInEveryEscape)
{
    start();
    for (const char* name : {"pass%77ord", "%70assword", "PASSWORD", "%50%41%53%53%57%4f%52%44"})
        get("/service/register.htm?serverKey=key&" + QByteArray(name) + "=sesame&clientName=Lobby");
    EXPECT_TRUE(log().contains("clientName=Lobby"));
    EXPECT_EQ(log().count("=***"), 4);
    EXPECT_FALSE(log().contains("sesame"));
}

} // namespace
