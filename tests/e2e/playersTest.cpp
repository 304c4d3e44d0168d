// The two players as the phone keeps them.
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include <QDir>
#include <QFile>
#include <csignal>

namespace {

class Players : public LivePhone
{
protected:
    qint64 playerPid(const QByteArray& program) const { return kit::childOf(pid(), program); }
    // Another process than the one before listens under the name.
    bool isBack(const QByteArray& program, const QByteArray& thread, qint64 before)
    {
        return until([&] {
            const qint64 now = playerPid(program);
            return now > 0 && now != before && QFile::exists(root() + "/rundata/run/" + thread + ".sock") &&
                   canPost(thread);
        });
    }
    bool canPost(const QByteArray& thread) { return exitOf({"post", thread, "1", "0", "0"}) == 0; }
    static bool until(const std::function<bool()>& condition) { return kit::waits(condition, 8000); }
    bool hasTrace(const QString& text) { return logOf("trace").filter(text).size() > 0; }
};

} // namespace

TEST_F(Players, AKilledPlayerIsStartedAgain)
{
    ASSERT_TRUE(isBack("hxMovie", "app_hxMovie", 0));
    ASSERT_TRUE(isBack("hxMedia", "app_hxMedia", 0));
    const qint64 movie = playerPid("hxMovie");
    const qint64 media = playerPid("hxMedia");
    ASSERT_EQ(::kill(pid_t(movie), SIGKILL), 0);
    EXPECT_TRUE(isBack("hxMovie", "app_hxMovie", movie));
    EXPECT_EQ(playerPid("hxMedia"), media) << "the other one goes on";
    EXPECT_TRUE(hasTrace("hxMovie was killed or crashed"));
    ASSERT_EQ(::kill(pid_t(media), SIGKILL), 0);
    EXPECT_TRUE(isBack("hxMedia", "app_hxMedia", media));
    EXPECT_TRUE(hasTrace("hxMedia was killed or crashed"));
    EXPECT_EQ(topWindow()["class"], "frmDesktop");
}

TEST_F(Players, EachDeathInARowDelaysTheNextStart)
{
    qint64 before = 0;
    for (const char* const delay : {"in 200 ms", "in 400 ms", "in 800 ms"}) {
        ASSERT_TRUE(isBack("hxMovie", "app_hxMovie", before));
        before = playerPid("hxMovie");
        ASSERT_EQ(::kill(before, SIGKILL), 0);
        EXPECT_TRUE(until([&] { return hasTrace(delay); })) << delay;
    }
}

TEST_F(Players, EndWithThePhone)
{
    ASSERT_TRUE(isBack("hxMovie", "app_hxMovie", 0));
    ASSERT_TRUE(isBack("hxMedia", "app_hxMedia", 0));
    const qint64 movie = playerPid("hxMovie");
    const qint64 media = playerPid("hxMedia");
    quit();
    EXPECT_TRUE(until([&] { return ::kill(pid_t(movie), 0) != 0 && ::kill(pid_t(media), 0) != 0; }));
    EXPECT_EQ(QDir(root() + "/rundata/run").entryList({"*.sock"}, QDir::System | QDir::Files), QStringList());
}

TEST_F(Players, EndWithAPhoneThatIsKilled)
{
    ASSERT_TRUE(isBack("hxMovie", "app_hxMovie", 0));
    ASSERT_TRUE(isBack("hxMedia", "app_hxMedia", 0));
    const auto isGone = [](int process) {
        QFile file(QString("/proc/%1/stat").arg(process));
        return !file.open(QIODevice::ReadOnly) || file.readAll().contains(") Z ");
    };
    const qint64 movie = playerPid("hxMovie");
    const qint64 media = playerPid("hxMedia");
    kill();
    EXPECT_TRUE(until([&] { return isGone(movie) && isGone(media); }));
}
