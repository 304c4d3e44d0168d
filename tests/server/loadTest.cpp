// What many phones at a time cost the server.
#include "tests/server/statusOf.h"
#include "tools/signServer/GoodSchedules.h"
#include <QFile>
#include <memory>
#include <sys/resource.h>
#include <vector>

namespace {

constexpr int kPhones = 40;
constexpr qint64 kFilm = 64 << 20;
constexpr int kLongMs = 60000;

class Load : public StatusTest
{
protected:
    void SetUp() override
    {
        write("schedule.xml", "<schedule/>");
        start();
        ASSERT_EQ(resultOf(enroll().body), "registered");
    }
    // Of zeros, without a place on the disk.
    void writeLarge(const QByteArray& name, qint64 size) const
    {
        write(name, "");
        ASSERT_TRUE(QFile::resize(path(name), size));
    }
    // The head of a file's answer alone.
    std::unique_ptr<Wire> askForHead(const QByteArray& name) const
    {
        auto wire = std::make_unique<Wire>(m_port);
        wire->send("HEAD " + fileTarget(name) + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
        return wire;
    }
    // Bytes that the server has read from files and sockets so far.
    qint64 bytesRead() const
    {
        QFile file(QString("/proc/%1/io").arg(m_process.processId()));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll().split('\n').first().split(' ').last().toLongLong();
    }
};

TEST_F(Load, AFileThatHasJustComeIsReadOnceForAllWhoAskTogether)
{
    writeLarge("media/film.mp4", kFilm);
    const qint64 before = bytesRead();
    std::vector<std::unique_ptr<Wire>> phones;
    for (int i = 0; i < kPhones; ++i)
        phones.push_back(askForHead("film.mp4"));
    for (const auto& phone : phones)
        EXPECT_EQ(phone->readAll(kLongMs).announced(), kFilm);
    const double times = double(bytesRead() - before) / double(kFilm);
    EXPECT_GE(times, 1);
    EXPECT_LE(times, kPhones / 8);
}

TEST_F(Load, WhoAsksForSomethingElseDoesNotWaitForAFileThatIsRead)
{
    constexpr qint64 kHuge = 1 << 30;
    std::vector<std::unique_ptr<Wire>> phones;
    for (const QByteArray name : {"a.mp4", "b.mp4"}) {
        writeLarge("media/" + name, kHuge);
        for (int i = 0; i < 20; ++i)
            phones.push_back(askForHead(name));
    }
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(schedule().status, 200);
    for (const auto& phone : phones)
        EXPECT_EQ(phone->readFor(1, 0).size(), 0) << "all this while the files are being read";
    for (const auto& phone : phones)
        EXPECT_EQ(phone->readAll(kLongMs).announced(), kHuge);
}

TEST_F(Load, TheAccountIsReadWhenItHasChanged)
{
    QByteArray account = "[server]\nkey=key\npassword=word\n[displays]\nLobby=*\n";
    for (int i = 0; i < 20000; ++i)
        account += "Display " + QByteArray::number(i) + "=001565" + QByteArray::number(100000 + i) + "\n";
    write("server.ini", account);
    EXPECT_TRUE(soon([&] {
        const qint64 before = bytesRead();
        for (int i = 0; i < 5; ++i)
            EXPECT_EQ(schedule().status, 200);
        return bytesRead() - before < account.size();
    }));
    // And the next edit counts at once.
    write("server.ini", account.replace("Lobby=*", "Lobby=1"));
    EXPECT_EQ(resultOf(schedule().body), "this display is not registered");
}

TEST_F(Load, AnAccountThatCannotBeReadForAMomentCountsOn)
{
    ASSERT_EQ(resultOf(schedule().body), "registered");
    rlimit old = {};
    ASSERT_EQ(prlimit(pid_t(m_process.processId()), RLIMIT_NOFILE, nullptr, &old), 0);
    Wire wire(m_port);
    wire.send("GET /service/getschedule.htm HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_EQ(wire.readOne().status, 200);
    // Both files are marked as changed, and nothing more can be opened.
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\nLobby=*\nHall=112233\n\n");
    QFile registered(path("registered.ini"));
    ASSERT_TRUE(registered.open(QIODevice::Append));
    registered.write("\n");
    registered.close();
    const rlimit none = {3, old.rlim_max};
    ASSERT_EQ(prlimit(pid_t(m_process.processId()), RLIMIT_NOFILE, &none, nullptr), 0);
    wire.send("GET " + fileTarget("none.png") + " HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_EQ(wire.readOne().status, 404) << "admitted";
    ASSERT_EQ(prlimit(pid_t(m_process.processId()), RLIMIT_NOFILE, &old, nullptr), 0);
    EXPECT_EQ(resultOf(schedule().body), "registered");
}

TEST(GoodSchedules, AreBoundedWhateverNamesDisplaysInvent)
{
    GoodSchedules schedules;
    auto files = std::make_shared<ScheduledFiles>();
    files->id = "1";
    for (int i = 0; i < 10 * GoodSchedules::LIMIT; ++i) {
        schedules.Keep(QByteArray::number(i), {QByteArray("the same"), files});
        ASSERT_TRUE(schedules.LastOf("0")) << "who looks stays";
    }
    EXPECT_LE(schedules.Count(), GoodSchedules::LIMIT);
    EXPECT_GT(schedules.Count(), GoodSchedules::LIMIT / 2);
    EXPECT_FALSE(schedules.LastOf("nobody"));
}

TEST(GoodSchedules, OfTheSameTextAreThereOnce)
{
    GoodSchedules schedules;
    auto one = std::make_shared<ScheduledFiles>(), other = std::make_shared<ScheduledFiles>();
    one->id = "1";
    other->id = "2";
    schedules.Keep("a", {QByteArray("text"), one});
    schedules.Keep("b", {QByteArray("text"), one});
    schedules.Keep("c", {QByteArray("text"), other});
    EXPECT_EQ(schedules.LastOf("a"), schedules.LastOf("b"));
    EXPECT_EQ(schedules.LastOf("c")->files, other);
    schedules.Keep("a", {QByteArray("next"), one});
    EXPECT_EQ(schedules.LastOf("a")->reply, "next");
}

} // namespace
