// The two players as the phone keeps them.
#include "places.h"
#include "tests/e2e/livePhone.h"
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <csignal>

namespace {

class Players : public LivePhone
{
protected:
    // The process of that program whose parent is the phone; 0 when there is none.
    int playerPid(const QByteArray& program) const
    {
        for (const QString& entry : QDir("/proc").entryList(QDir::Dirs)) {
            QFile file("/proc/" + entry + "/stat");
            if (entry.toInt() <= 0 || !file.open(QIODevice::ReadOnly))
                continue;
            const QByteArray stat = file.readAll();
            const QByteArray parent = stat.mid(stat.lastIndexOf(')') + 4).split(' ').first();
            if (stat.contains('(' + program + ')') && parent.toLongLong() == pid())
                return entry.toInt();
        }
        return 0;
    }
    // Another process than the one before listens under the name.
    bool isBack(const QByteArray& program, const QByteArray& thread, int before)
    {
        return until([&] {
            const int now = playerPid(program);
            return now > 0 && now != before && QFile::exists(root() + "/rundata/run/" + thread + ".sock") &&
                   canPost(thread);
        });
    }
    bool canPost(const QByteArray& thread)
    {
        QProcess process;
        process.start(QString(HX_BUILD_DIR "/bin/hxctl"),
                      {"-s", root() + "/control", "post", thread, "1", "0", "0"});
        process.waitForFinished();
        return process.exitCode() == 0;
    }
    template <class Condition>
    static bool until(Condition condition, int ms = 8000)
    {
        QElapsedTimer clock;
        clock.start();
        while (!condition()) {
            if (clock.elapsed() > ms)
                return false;
            QThread::msleep(10);
        }
        return true;
    }
    bool hasTrace(const QString& text) { return logOf("trace").filter(text).size() > 0; }
};

} // namespace

TEST_F(Players, AKilledPlayerIsStartedAgain)
{
    ASSERT_TRUE(isBack("hxMovie", "app_hxMovie", 0));
    ASSERT_TRUE(isBack("hxMedia", "app_hxMedia", 0));
    const int movie = playerPid("hxMovie");
    const int media = playerPid("hxMedia");
    ASSERT_EQ(::kill(movie, SIGKILL), 0);
    EXPECT_TRUE(isBack("hxMovie", "app_hxMovie", movie));
    EXPECT_EQ(playerPid("hxMedia"), media) << "the other one goes on";
    EXPECT_TRUE(hasTrace("hxMovie was killed or crashed"));
    ASSERT_EQ(::kill(media, SIGKILL), 0);
    EXPECT_TRUE(isBack("hxMedia", "app_hxMedia", media));
    EXPECT_TRUE(hasTrace("hxMedia was killed or crashed"));
    EXPECT_EQ(topWindow()["class"], "frmDesktop");
}

TEST_F(Players, EachDeathInARowDelaysTheNextStart)
{
    int before = 0;
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
    const int movie = playerPid("hxMovie");
    const int media = playerPid("hxMedia");
    quit();
    EXPECT_TRUE(until([&] { return ::kill(movie, 0) != 0 && ::kill(media, 0) != 0; }));
}

TEST_F(Players, EndWithAPhoneThatIsKilled)
{
    ASSERT_TRUE(isBack("hxMovie", "app_hxMovie", 0));
    ASSERT_TRUE(isBack("hxMedia", "app_hxMedia", 0));
    const auto isGone = [](int process) {
        QFile file(QString("/proc/%1/stat").arg(process));
        return !file.open(QIODevice::ReadOnly) || file.readAll().contains(") Z ");
    };
    const int movie = playerPid("hxMovie");
    const int media = playerPid("hxMedia");
    kill();
    EXPECT_TRUE(until([&] { return isGone(movie) && isGone(media); }));
}
