#include "support/host/program.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/phoneTest.h"
#include <QFile>
#include <atomic>
#include <csignal>
#include <thread>

namespace {

class Program : public PhoneTest
{
protected:
    Program() { program.strPath = "/rundata/tool"; }
    void script(const QByteArray& text)
    {
        writeFile("/rundata/tool", "#!/bin/sh\n" + text + "\n");
        QFile::setPermissions(hostPath("/rundata/tool"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    tagProgram program;
};

TEST_F(Program, ItsExitStatusIsTheAnswer)
{
    program.nTimeoutMs = 60000;
    script("exit 0");
    EXPECT_EQ(sysProgram(program), 0);
    script("exit 7");
    EXPECT_EQ(sysProgram(program), 7);
}

TEST_F(Program, OneThatIsMissingOrMayNotRunIsNotStarted)
{
    program.nTimeoutMs = 60000;
    EXPECT_EQ(sysProgram(program), PROGRAM_NOT_STARTED);
    EXPECT_TRUE(traces().filter("/rundata/tool cannot be started").size() == 1);
    writeFile("/rundata/tool", "#!/bin/sh\n");
    EXPECT_EQ(sysProgram(program), PROGRAM_NOT_STARTED);
}

TEST_F(Program, ArgumentsReachItAsTheyAreThroughNoShell)
{
    program.nTimeoutMs = 60000;
    program.lstArguments = {"$(touch /rundata/pwned)", "`id`", "a b\n\"c'", "", "*"};
    program.lstVariables = {"OWN=of this call"};
    script("printf '%s|' \"$#\" \"$@\" \"$OWN\" \"$HX_SYSROOT\" >\"$HX_SYSROOT/rundata/seen\"");
    EXPECT_EQ(sysProgram(program), 0);
    EXPECT_EQ(readFile("/rundata/seen"),
              "5|$(touch /rundata/pwned)|`id`|a b\n\"c'||*|of this call|" + root().toUtf8() + "|");
}

TEST_F(Program, ItIsRecordedAsItIsOnThePhone)
{
    program.nTimeoutMs = 60000;
    program.lstArguments = {"one word", "two"};
    script("true");
    sysProgram(program);
    EXPECT_EQ(logged("command"), QStringList{"/rundata/tool one word two"});
}

TEST_F(Program, OneThatDiesOrTakesTooLongIsKilled)
{
    program.nTimeoutMs = 60000;
    script("kill -9 $$");
    EXPECT_EQ(sysProgram(program), PROGRAM_KILLED);
    script("sleep 1000 & wait");
    program.nTimeoutMs = 30;
    EXPECT_EQ(sysProgram(program), PROGRAM_KILLED);
    EXPECT_TRUE(traces().contains("/rundata/tool is given up"));
}

TEST_F(Program, AnotherThreadEndsItWithWhatItHasStarted)
{
    script("(echo $$ >\"$HX_SYSROOT/rundata/begun\"; exec sleep 1000) & wait");
    std::atomic<bool> cancel{false};
    program.nTimeoutMs = 3600000;
    program.pCancel = &cancel;
    int status = 0;
    std::thread thread([&] { status = sysProgram(program); });
    EXPECT_TRUE(kit::waitUntil([this] { return readFile("/rundata/begun").endsWith('\n'); }));
    cancel = true;
    thread.join();
    EXPECT_EQ(status, PROGRAM_KILLED);
    const int group = readFile("/rundata/begun").trimmed().toInt();
    EXPECT_TRUE(kit::waitUntil([group] { return ::kill(-group, 0) != 0; })) << "nothing of it is left";
}

} // namespace
