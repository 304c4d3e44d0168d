// The movie player and the media server die again and again while a film plays in a layout.
#include "places.h"
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/measuredMemory.h"
#include "tests/kit/plain/processes.h"
#include "tests/kit/plain/signServer.h"
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QThread>
#include <csignal>
#include <random>

using namespace kit;

namespace {

constexpr unsigned kSeed = 815;
// The phone starts a player that dies soon again later each time, until one has run for a second: ten, where
// no test says so.
constexpr int kBursts = 5;
constexpr int kDeathsInBurst = 4;
constexpr int kSteadyMs = 1000;
constexpr int kBackMs = 20000;
constexpr int kFilmMs = 20000;
constexpr qint64 kGrowthKiB = 24 << 10; // of the phone, in all deaths together

class DyingPlayers : public LivePhone
{
protected:
    void SetUp() override
    {
        qputenv("HX_PLAYER_STEADY_MS", QByteArray::number(kSteadyMs));
        ASSERT_TRUE(server.start());
        LivePhone::SetUp();
        const char* film = HX_BUILD_DIR "/signageDemo/media/day.mp4";
        ASSERT_TRUE(QFile::exists(film));
        server.copyMedia("film.mp4", film);
        // The film starts anew with each round of the layout.
        server.putLayout("film.xml", "<layout width=\"800\" height=\"480\" bgcolor=\"#203040\">"
                                     "<region left=\"0\" top=\"0\" width=\"640\" height=\"352\">"
                                     "<media type=\"video\" path=\"film.mp4\" duration=\"4\"/>"
                                     "</region></layout>");
        joinSignage(server.url());
        ctl({"set", "net", "state=2"});
        ctl({"open-info", "Ndeck", "", "Ndeck"});
    }
    QImage film() { return screen().copy(QRect(160, 90, 320, 170)); }
    // Several pictures that differ, one after the other, in the film's place.
    bool filmRuns()
    {
        QImage last = film();
        int changes = 0;
        return waits(
            [&] {
                const QImage now = film();
                changes += now != last;
                last = now;
                return changes >= 4;
            },
            kFilmMs);
    }
    // Kills the player as soon as it is there.
    void killPlayer(const QByteArray& name, qint64& old)
    {
        ASSERT_TRUE(waits([&] { return (old = childOf(pid(), name)) > 0; }, kBackMs)) << name.constData();
        QThread::msleep(random() % 300);
        ::kill(pid_t(old), SIGKILL);
        ++deaths[name];
    }
    void waitForNext(const QByteArray& name, qint64 old)
    {
        ASSERT_TRUE(waits(
            [&] {
                const qint64 now = childOf(pid(), name);
                return now > 0 && now != old;
            },
            kBackMs))
            << name.constData() << " did not come back";
    }
    // One dies, and the other some time after it, before or after the first is back.
    void killBoth(const QByteArray& first, const QByteArray& second)
    {
        qint64 oldFirst = 0, oldSecond = 0;
        ASSERT_NO_FATAL_FAILURE(killPlayer(first, oldFirst));
        ASSERT_NO_FATAL_FAILURE(killPlayer(second, oldSecond));
        ASSERT_NO_FATAL_FAILURE(waitForNext(first, oldFirst));
        ASSERT_NO_FATAL_FAILURE(waitForNext(second, oldSecond));
    }

    const kit::NothingKept nothing;
    SignServer server;
    std::mt19937 random{kSeed};
    QMap<QByteArray, int> deaths;
};

} // namespace

TEST_F(DyingPlayers, TwentyDeathsOfEachStopNeitherPhoneNorFilm)
{
    ASSERT_TRUE(filmRuns()) << "before any death";
    const qint64 phone = pid();
    qint64 before = 0;
    for (int burst = 0; burst < kBursts; ++burst) {
        for (int death = 0; death < kDeathsInBurst; ++death) {
            ASSERT_NO_FATAL_FAILURE(
                killBoth(death % 2 ? "hxMovie" : "hxMedia", death % 2 ? "hxMedia" : "hxMovie"));
        }
        QElapsedTimer steady;
        steady.start();
        ASSERT_TRUE(filmRuns()) << "after burst " << burst;
        QThread::msleep(ulong(qMax<qint64>(0, kSteadyMs - steady.elapsed())));
        // The first burst fills what the phone keeps for good.
        if (burst == 0)
            before = statusKiB(phone, "VmRSS");
    }
    EXPECT_EQ(deaths["hxMovie"], kBursts * kDeathsInBurst);
    EXPECT_EQ(deaths["hxMedia"], kBursts * kDeathsInBurst);
    EXPECT_EQ(pid(), phone);
    EXPECT_LT(statusKiB(phone, "VmRSS") - before, kGrowthKiB);
    RecordProperty("growthKiB", int(statusKiB(phone, "VmRSS") - before));
    printf("the phone grew by %lld KiB\n", static_cast<long long>(statusKiB(phone, "VmRSS") - before));
}
