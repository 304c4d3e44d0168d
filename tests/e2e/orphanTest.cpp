// What a test or a benchmark started does not outlive it, also where it is interrupted.
#include "tests/kit/plain/processes.h"
#include "tests/kit/plain/signServer.h"
#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Starts the server in a process of its own that then waits for its death; the server's id, 0 when it did not
// start.
qint64 startElsewhere(SignServer& server, pid_t& starter)
{
    int ends[2] = {};
    EXPECT_EQ(pipe(ends), 0);
    starter = fork();
    if (starter == 0) {
        const qint64 pid = server.start() ? server.pid() : 0;
        if (write(ends[1], &pid, sizeof pid) == sizeof pid)
            pause();
        _exit(1);
    }
    qint64 pid = 0;
    EXPECT_EQ(read(ends[0], &pid, sizeof pid), ssize_t(sizeof pid));
    close(ends[0]);
    close(ends[1]);
    return pid;
}

} // namespace

TEST(Orphans, TheServerEndsWithTheProgramThatStartedIt)
{
    SignServer server;
    pid_t starter = 0;
    const qint64 pid = startElsewhere(server, starter);
    ASSERT_GT(pid, 0);
    EXPECT_EQ(::kill(pid_t(pid), 0), 0);
    EXPECT_EQ(::kill(starter, SIGKILL), 0);
    waitpid(starter, nullptr, 0);
    const bool isGone = kit::waits([&] { return kit::statusKiB(pid, "VmRSS") == 0; }, 5000);
    EXPECT_TRUE(isGone);
    if (!isGone)
        ::kill(pid_t(pid), SIGKILL);
}
