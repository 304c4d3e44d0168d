// Work that a thread of its own does.
#include "support/file/chDiskWork.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <thread>

namespace {

TEST(DiskWork, IsOverWithItsAnswer)
{
    const std::thread::id here = std::this_thread::get_id();
    std::thread::id there;
    chDiskWork work([&there] {
        there = std::this_thread::get_id();
        return 7;
    });
    EXPECT_EQ(work.Wait(60000), 1);
    EXPECT_EQ(work.Result(), 7);
    EXPECT_EQ(work.IsOver(), 1);
    EXPECT_NE(there, here);
}

TEST(DiskWork, HoldsNobodyUpWhileItHangs)
{
    std::promise<void> end;
    std::shared_future<void> ended = end.get_future().share();
    auto work = std::make_unique<chDiskWork>([ended] {
        ended.wait();
        return 1;
    });
    EXPECT_EQ(work->Wait(1), 0);
    EXPECT_EQ(work->IsOver(), 0);
    EXPECT_EQ(work->Result(), 0);
    bool isTold = false;
    work->Tell([&isTold] { isTold = true; });
    work.reset();
    end.set_value();
    EXPECT_FALSE(isTold) << "nobody is told any more";
}

TEST(DiskWork, TellsItsEndOnce)
{
    std::promise<void> end;
    std::shared_future<void> ended = end.get_future().share();
    std::promise<void> told;
    std::atomic<int> wrong{0};
    chDiskWork work([ended] {
        ended.wait();
        return 1;
    });
    work.Tell([&wrong] { ++wrong; });
    work.Tell([&told] { told.set_value(); });
    end.set_value();
    told.get_future().wait();
    EXPECT_EQ(wrong, 0) << "the last who asked is told";
    int again = 0;
    work.Tell([&again] { ++again; });
    EXPECT_EQ(again, 1) << "it is over already";
    work.Tell(nullptr);
}

} // namespace
