// Watches of folders: who is told, and that all of a thread cost the system one.
#include "host/services/system/folderWatch.h"
#include "tests/kit/phoneTest.h"
#include <QDir>
#include <QFile>
#include <memory>
#include <vector>

namespace {

const char* const kFolder = "/rundata/first";
const char* const kOther = "/rundata/second";

int systemWatches()
{
    int count = 0;
    const QFileInfoList handles = QDir("/proc/self/fd").entryInfoList(QDir::AllEntries | QDir::System);
    for (const QFileInfo& handle : handles)
        count += handle.symLinkTarget().contains("anon_inode:inotify");
    return count;
}

class FolderWatch : public PhoneTest
{
protected:
    FolderWatch()
    {
        QDir().mkpath(hostPath(kFolder));
        QDir().mkpath(hostPath(kOther));
    }
    void count(folderWatch& watch, const char* folder, int& told)
    {
        watch.SetCall([&told] { ++told; });
        watch.Add(hostPath(folder).toStdString());
    }
    void change(const char* folder) { writeFile(QByteArray(folder).append("/changed").constData(), "x"); }
};

} // namespace

TEST_F(FolderWatch, AllOfAThreadShareOneOfTheSystem)
{
    std::vector<std::unique_ptr<folderWatch>> watches;
    watches.push_back(std::make_unique<folderWatch>());
    const int before = systemWatches();
    ASSERT_GE(before, 1);
    for (int i = 0; i < 50; ++i) {
        watches.push_back(std::make_unique<folderWatch>());
        watches.back()->Add(hostPath(i % 2 ? kFolder : kOther).toStdString());
    }
    EXPECT_EQ(systemWatches(), before);
    watches.clear();
    // To end the one of the system takes a frame and more.
    EXPECT_EQ(systemWatches(), before);
}

TEST_F(FolderWatch, TwoOfAFolderAreBothTold)
{
    int first = 0, second = 0;
    folderWatch watch, another;
    count(watch, kFolder, first);
    count(another, kFolder, second);
    change(kFolder);
    EXPECT_TRUE(kit::waitUntil([&] { return first > 0 && second > 0; }));
}

TEST_F(FolderWatch, OneThatEndsTakesNothingFromTheOther)
{
    int first = 0, second = 0;
    folderWatch watch;
    count(watch, kFolder, first);
    {
        folderWatch another;
        count(another, kFolder, second);
    }
    change(kFolder);
    EXPECT_TRUE(kit::waitUntil([&] { return first > 0; }));
    EXPECT_EQ(second, 0);
}

TEST_F(FolderWatch, OneThatIsClearedHearsNothingMore)
{
    int first = 0, second = 0;
    folderWatch watch, another;
    count(watch, kFolder, first);
    count(another, kFolder, second);
    another.Clear();
    change(kFolder);
    ASSERT_TRUE(kit::waitUntil([&] { return first > 0; }));
    kit::settle();
    EXPECT_EQ(second, 0);
}

TEST_F(FolderWatch, ACallMayEndAnotherThatWouldBeToldToo)
{
    int told = 0;
    auto first = std::make_unique<folderWatch>();
    auto second = std::make_unique<folderWatch>();
    const auto endBoth = [&] {
        ++told;
        first.reset();
        second.reset();
    };
    for (folderWatch* watch : {first.get(), second.get()}) {
        watch->SetCall(endBoth);
        watch->Add(hostPath(kFolder).toStdString());
    }
    change(kFolder);
    ASSERT_TRUE(kit::waitUntil([&] { return told > 0; }));
    kit::settle();
    EXPECT_EQ(told, 1);
}

TEST_F(FolderWatch, AChangeElsewhereIsNotTold)
{
    int first = 0, second = 0;
    folderWatch watch, another;
    count(watch, kFolder, first);
    count(another, kOther, second);
    change(kOther);
    ASSERT_TRUE(kit::waitUntil([&] { return second > 0; }));
    kit::settle();
    EXPECT_EQ(first, 0);
}

TEST_F(FolderWatch, AFolderThatGoesAndComesIsWatchedAgain)
{
    int told = 0;
    folderWatch watch;
    count(watch, kFolder, told);
    ASSERT_TRUE(QDir(hostPath(kFolder)).removeRecursively());
    ASSERT_TRUE(kit::waitUntil([&] { return told > 0; }));
    QDir().mkpath(hostPath(kFolder));
    kit::settle();
    told = 0;
    change(kFolder);
    EXPECT_TRUE(kit::waitUntil([&] { return told > 0; }));
}

// The system keeps so many changes and forgets the rest: nobody knows any more what has changed.
TEST_F(FolderWatch, WhatTheSystemForgotMayHaveBeenAnyChange)
{
    QFile most("/proc/sys/fs/inotify/max_queued_events");
    ASSERT_TRUE(most.open(QIODevice::ReadOnly));
    const int kept = most.readAll().trimmed().toInt();
    ASSERT_GT(kept, 0);
    int first = 0, second = 0;
    folderWatch watch, another;
    count(watch, kFolder, first);
    count(another, kOther, second);
    const QByteArray path = hostPath(kFolder).toUtf8() + "/name";
    for (int i = 0; i <= kept; i += 2) { // it comes and goes
        writeFile(QByteArray(kFolder).append("/name").constData(), "x");
        QFile::remove(path);
    }
    change(kOther);
    EXPECT_TRUE(kit::waitUntil([&] { return first > 0 && second > 0; }));
}
