#include "places.h"
#include "tests/server/signServer.h"
#include <memory>
#include <vector>

namespace {

class Program : public SignServerTest
{
protected:
    // The exit code; what it said on the standard error is kept.
    int run(const QStringList& words)
    {
        QProcess process;
        process.start(HX_BUILD_DIR "/bin/hxSignServer", words);
        EXPECT_TRUE(process.waitForFinished(20000));
        m_said = process.readAllStandardError() + process.readAllStandardOutput();
        return process.exitCode();
    }
    QByteArray m_said;
};

TEST_F(Program, TellsItsOptions)
{
    EXPECT_EQ(run({"--help"}), 0);
    for (const char* option : {"--port", "--bind", "--log", "--threads", "server.ini"})
        EXPECT_TRUE(m_said.contains(option)) << option;
}

TEST_F(Program, NeedsOneFolderWithAnAccount)
{
    EXPECT_EQ(run({}), 2);
    EXPECT_EQ(run({m_folder.path(), m_folder.path()}), 2);
    EXPECT_EQ(run({m_folder.path() + "/nothing"}), 2);
    EXPECT_TRUE(m_said.contains("server.ini cannot be read"));
}

TEST_F(Program, RefusesNumbersThatAreNone)
{
    EXPECT_EQ(run({m_folder.path(), "--port", "x"}), 2);
    EXPECT_EQ(run({m_folder.path(), "--port", "65536"}), 2);
    EXPECT_EQ(run({m_folder.path(), "--threads", "0"}), 2);
    EXPECT_EQ(run({m_folder.path(), "--feeds", "x"}), 2);
    EXPECT_EQ(run({m_folder.path(), "--port", "none"}), 2) << "there would be nothing to serve";
    EXPECT_EQ(run({m_folder.path(), "--clock", "noon"}), 2);
}

TEST_F(Program, SaysWhenItsPortOrItsLogIsNotToBeHad)
{
    start();
    EXPECT_EQ(run({m_folder.path(), "--port", QString::number(m_port)}), 2);
    EXPECT_TRUE(m_said.contains("cannot listen at 127.0.0.1 port"));
    EXPECT_EQ(run({m_folder.path(), "--log", m_folder.path() + "/no/log"}), 2);
    EXPECT_TRUE(m_said.contains("cannot be written"));
}

TEST_F(Program, ServesFourHundredPhonesThatStayConnectedWithEightThreads)
{
    write("schedule.xml", "<schedule/>");
    start({"--threads", "8"});
    enroll();
    std::vector<std::unique_ptr<Wire>> phones;
    for (int i = 0; i < 400; ++i) {
        phones.push_back(std::make_unique<Wire>(m_port));
        phones.back()->send("GET /service/getschedule.htm?serverKey=key&hardwareKey=aabbcc HTTP/1.1\r\n"
                            "Host: x\r\n\r\n");
    }
    for (int i = 0; i < 400; ++i)
        ASSERT_EQ(phones[size_t(i)]->readOne().status, 200) << i;
}

TEST_F(Program, KeepsServingWhileSomebodySendsHalfARequest)
{
    write("schedule.xml", "<schedule/>");
    start();
    enroll();
    Wire slow(m_port);
    slow.send("GET /service/getsch");
    EXPECT_EQ(schedule().status, 200);
    slow.send("edule.htm?serverKey=key&hardwareKey=aabbcc HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_EQ(slow.readOne().status, 200);
}

} // namespace
