#include "places.h"
#include "tests/server/signServer.h"

namespace {

// Phones put names into the address as they stand: '&' and '#' end one, and an escape becomes another letter.
class Names : public SignServerTest
{
protected:
    QByteArray runToItsEnd()
    {
        QProcess process;
        process.start(HX_BUILD_DIR "/bin/hxSignServer", {m_folder.path(), "--log", path("log")});
        EXPECT_TRUE(process.waitForFinished(20000));
        EXPECT_EQ(process.exitCode(), 2);
        return process.readAllStandardError();
    }
    static QByteArray settings(const QByteArray& key, const QByteArray& password, const QByteArray& displays)
    {
        return "[server]\nkey=" + key + "\npassword=" + password + "\n[displays]\n" + displays;
    }
};

TEST_F(Names, OfDisplaysThatCannotBeSentStopTheStartAndAreNamed)
{
    write("server.ini", settings("key", "word", "Lobby=*\nR&D=*\nRoom #1=112233\nCaf%C3%A9=*\n100%=*\n"));
    const QByteArray said = runToItsEnd();
    const QByteArray why = "\" cannot be sent by a phone: it holds '&', '#' or an escape such as %41\n";
    for (const QByteArray name : {"R&D", "Room #1", "Caf%C3%A9"})
        EXPECT_TRUE(said.contains("hxSignServer: server.ini: the display \"" + name + why))
            << said.constData();
    EXPECT_EQ(said.count("cannot be sent"), 3) << said.constData();
}

TEST_F(Names, OfTheAccountThatCannotBeSentStopTheStartAndStaySecret)
{
    write("server.ini", settings("k&y", "w#rd", "Lobby=*\n"));
    const QByteArray said = runToItsEnd();
    EXPECT_TRUE(said.contains("server.ini: the value of \"key\" cannot be sent"));
    EXPECT_TRUE(said.contains("server.ini: the value of \"password\" cannot be sent"));
    EXPECT_FALSE(said.contains("w#rd"));
    write("server.ini", settings("key", "w%6frd", "Lobby=*\n"));
    EXPECT_TRUE(runToItsEnd().contains("the value of \"password\" cannot be sent"));
}

TEST_F(Names, WithSignsThatMeanThemselvesAreGood)
{
    write("server.ini", settings("k y+%", "100%", "50% off=*\nZwei Bäume? = *\nA+B=*\n*=*\n"));
    write("media/50% off.jpg", "x");
    write("layouts/a+b=c?.xml", "<layout background='50% off.jpg'/>");
    write("schedule.xml", "<schedule><layout file='a+b=c?.xml' displays='50% off'/></schedule>");
    start();
    EXPECT_EQ(resultOf(enroll("50% off", "aabbcc", "k y+%", "100%").body), "registered");
    stop();
    EXPECT_EQ(m_process.readAllStandardError(), "");
    EXPECT_FALSE(log().contains("cannot be sent"));
}

TEST_F(Names, OfContentThatCannotBeAskedForAreToldAtTheStartAndLeftOut)
{
    write("media/Q&A.png", "x");
    write("media/good.png", "x");
    write("layouts/no#1.xml", "<layout/>");
    write("layouts/a.xml", "<layout><region><media type='image' path='Q&amp;A.png'/>"
                           "<media type='image' path='good.png'/></region></layout>");
    write("schedule.xml", "<schedule>\n<layout file='no#1.xml'/>\n<layout file='a.xml' "
                          "displays='Lobby, R&amp;D'/></schedule>");
    write("stock.xml", "<stocks><stock code='A&amp;B'/><stock code='NRV'/></stocks>");
    write("weather.xml", "<weather><city name='%41'/><city name='London'/></weather>");
    start();
    EXPECT_EQ(resultOf(enroll().body), "registered");
    const Answer answer = schedule();
    stop();
    const QByteArray said = m_process.readAllStandardError();
    for (const QByteArray place :
         {"schedule.xml, line 2: \"no#1.xml\"", "schedule.xml, line 3: \"R&D\"", "layouts: \"no#1.xml\"",
          "media: \"Q&A.png\"", "stock.xml, line 1: \"A&B\"", "weather.xml, line 1: \"%41\""}) {
        EXPECT_TRUE(said.contains(place + " cannot be sent by a phone")) << place.constData();
        EXPECT_TRUE(log().contains("content: " + place + " cannot be sent")) << place.constData();
    }
    EXPECT_EQ(said.count("cannot be sent"), 6) << said.constData();
    EXPECT_EQ(rowsOf(answer.body, "layout").size(), 1);
    EXPECT_EQ(rowsOf(answer.body, "file").size(), 2) << answer.body.constData();
    EXPECT_TRUE(log().contains("content: media/Q&A.png cannot be sent by a phone"));
    EXPECT_TRUE(log().contains("content: layouts/no#1.xml cannot be sent by a phone"));
}

} // namespace
