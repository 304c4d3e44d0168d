#include "host/services/system/shellCommand.h"
#include "support/file/deviceRoot.h"
#include "support/host/net.h"
#include "tests/kit/phoneTest.h"
#include <QDir>
#include <QFile>

namespace {

class SysCommand : public PhoneTest
{
protected:
    QString lastLogged() const { return logged("command").value(logged("command").size() - 1); }
};

} // namespace

TEST_F(SysCommand, TheExitStatusIsTheAnswer)
{
    EXPECT_EQ(sysCommand("true"), 0);
    EXPECT_EQ(sysCommand("exit 7"), 7);
    EXPECT_EQ(sysCommand("kill -9 $$"), -1);
    EXPECT_EQ(sysCommand("no-such-program-at-all 2>/dev/null"), 127);
    EXPECT_EQ(sysCommand(""), -1);
    EXPECT_EQ(sysCommand(nullptr), -1);
}

TEST_F(SysCommand, EachCommandIsRecordedAsItIsOnThePhone)
{
    sysCommand("cat /rundata/config/system.ini >/dev/null");
    EXPECT_EQ(lastLogged(), "cat /rundata/config/system.ini >/dev/null");
}

TEST_F(SysCommand, DevicePathsAreInsideTheDeviceRoot)
{
    writeFile("/rundata/in.txt", "hello");
    EXPECT_EQ(sysCommand("cat /rundata/in.txt >/rundata/out.txt; cp '/rundata/in.txt' \"/storage/copy.txt\""),
              0);
    EXPECT_EQ(readFile("/rundata/out.txt"), "hello");
    EXPECT_EQ(readFile("/storage/copy.txt"), "hello");
}

TEST_F(SysCommand, ADeviceRootWithBlanksAndQuotesWorksTheSame)
{
    QDir(root()).mkpath("odd $HOME '\" root/rundata");
    deviceSetRoot((root() + "/odd $HOME '\" root").toUtf8().constData());
    EXPECT_EQ(sysCommand("echo a >/rundata/1; echo b >'/rundata/2'; echo c >\"/rundata/3\""), 0);
    for (const char* name : {"/1", "/2", "/3"})
        EXPECT_TRUE(QFile::exists(root() + "/odd $HOME '\" root/rundata" + name)) << name;
    deviceSetRoot(root().toUtf8().constData());
}

TEST_F(SysCommand, ScriptsFindTheRootInTheirEnvironment)
{
    EXPECT_EQ(sysCommand("printf %s \"$HX_SYSROOT\" >/rundata/root.txt"), 0);
    EXPECT_EQ(readFile("/rundata/root.txt"), root().toUtf8());
}

TEST_F(SysCommand, ACommandThatStopsTheMachineIsRecordedButNotRun)
{
    EXPECT_EQ(sysCommand("touch /rundata/ran; /sbin/reboot -f"), 0);
    EXPECT_EQ(lastLogged(), "touch /rundata/ran; /sbin/reboot -f");
    EXPECT_FALSE(QFile::exists(hostPath("/rundata/ran")));
}

TEST(ShellCommand, ProgramsThatStopTheMachineAreKnownAtEachCommandsStart)
{
    for (const char* command :
         {"reboot", " reboot -f", "/sbin/poweroff", "sync; halt", "sync && shutdown -h now", "true || init 6",
          "(reboot)", "true\nreboot", "sync & reboot", "telinit 0"})
        EXPECT_TRUE(shellCommand::stopsMachine(command)) << command;
    for (const char* command :
         {"", "echo reboot", "cat /rundata/reboot", "rebooter", "touch halt", "/phone/reboot.sh"})
        EXPECT_FALSE(shellCommand::stopsMachine(command)) << command;
}

TEST(ShellCommand, OnlyDevicePathsAreMapped)
{
    const auto mapped = [](const char* command) { return shellCommand::mapped(command, "/r"); };
    EXPECT_EQ(mapped("ls /phone /rundata/x /storage /mini-boot/bin/imageScale.exx"),
              "ls /r/phone /r/rundata/x /r/storage /r/mini-boot/bin/imageScale.exx");
    EXPECT_EQ(mapped("PATH=/phone/bin:/bin a >/rundata/o 2>&1"),
              "PATH=/r/phone/bin:/bin a >/r/rundata/o 2>&1");
    EXPECT_EQ(mapped("ls /phones /dev/null /tmp/phone/x a/phone $R/phone /proc/1"),
              "ls /phones /dev/null /tmp/phone/x a/phone $R/phone /proc/1");
    EXPECT_EQ(mapped("echo '/phone' \"/phone\" \\/phone"), "echo '/r/phone' \"/r/phone\" \\/phone");
    EXPECT_EQ(shellCommand::mapped("ls /phone", ""), "ls /phone");
}

TEST_F(SysCommand, AStartedCommandIsNotWaitedFor)
{
    EXPECT_TRUE(
        shellCommand::start("while [ ! -e /rundata/go ]; do sleep 0.01; done; echo done >/rundata/done"));
    EXPECT_FALSE(QFile::exists(hostPath("/rundata/done")));
    writeFile("/rundata/go", "");
    EXPECT_TRUE(kit::waitUntil([this] { return readFile("/rundata/done") == "done\n"; }));
}
