// What a schedule of thousands of files costs: four times the files, about four times the work.
#include "tools/signServer/DisplayBook.h"
#include "tools/signServer/ScheduleReply.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <ctime>
#include <functional>
#include <gtest/gtest.h>

namespace {

constexpr int kFew = 2000;
constexpr int kMany = 4 * kFew;
constexpr int kRounds = 3;        // the best counts: a neighbour on the machine disturbs one or two
constexpr double kMostGrowth = 8; // 4 is the work's own, 16 that of a search for each

QByteArray nameOf(int number)
{
    return "f" + QByteArray::number(number) + ".png";
}

double processorSeconds()
{
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

double bestOf(const std::function<void()>& work)
{
    double best = 1e9;
    for (int round = 0; round < kRounds; ++round) {
        const double before = processorSeconds();
        work();
        best = std::min(best, processorSeconds() - before);
    }
    return best;
}

void put(const QString& path, const QByteArray& content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

class LongSchedule : public testing::Test
{
protected:
    // The text of the schedule, and where it names each file.
    QByteArray scheduleOf(int count)
    {
        QDir(m_folder.path()).mkpath("layouts");
        QDir(m_folder.path()).mkpath("media");
        QByteArray layout = "<layout><region left=\"0\" top=\"0\" width=\"9\" height=\"9\">";
        for (int i = 0; i < count; ++i) {
            put(m_folder.filePath("media/" + nameOf(i)), "x");
            layout += "<media type=\"image\" path=\"" + nameOf(i) + "\"/>";
        }
        put(m_folder.filePath("layouts/all.xml"), layout + "</region></layout>");
        put(m_folder.filePath("schedule.xml"), "<schedule><layout file=\"all.xml\"/></schedule>");
        return m_folder.path().toUtf8();
    }
    QTemporaryDir m_folder;
};

double secondsOfReply(const QByteArray& folder, int count)
{
    const SignFolder files(folder);
    ScheduleReply reply(files);
    EXPECT_EQ(reply.For("Lobby").count("<file "), count + 1);
    return bestOf([&] {
        reply.For("Lobby");
        EXPECT_EQ(reply.Files()->files.size(), count + 1);
        EXPECT_EQ(reply.Uses().size(), count);
    });
}

TEST_F(LongSchedule, OfFourTimesTheFilesTakesNotMuchMoreThanFourTimesTheWork)
{
    const double few = secondsOfReply(scheduleOf(kFew), kFew);
    const double many = secondsOfReply(scheduleOf(kMany), kMany);
    EXPECT_LT(many, kMostGrowth * few);
}

double secondsOfNotes(int count)
{
    auto files = std::make_shared<ScheduledFiles>();
    files->id = QByteArray::number(count);
    for (int i = 0; i < count; ++i)
        files->files.append({"media", nameOf(i), "sum", {}});
    DisplayBook book;
    DisplayEvent look;
    look.key = "lobby";
    look.files = files;
    book.Note(look, 1);
    DisplayEvent fetched = look;
    fetched.kind = DisplayEvent::File;
    fetched.fileType = "media";
    fetched.sum = "sum";
    fetched.whole = true;
    const double seconds = bestOf([&] {
        for (int i = 0; i < count; ++i) {
            fetched.fileName = nameOf(i);
            book.Note(fetched, 2);
        }
    });
    EXPECT_EQ(book.Known()["lobby"].states, QByteArray(count, FILE_WHOLE));
    return seconds;
}

TEST_F(LongSchedule, IsNotSearchedForEachFileThatADisplayFetches)
{
    const double few = secondsOfNotes(kFew);
    EXPECT_LT(secondsOfNotes(kMany), kMostGrowth * few);
}

} // namespace
