// When a file that was given up is asked for again.
#include "signage/nDeckLaterTries.h"
#include "tests/kit/phoneTest.h"

namespace {

class LaterTries : public PhoneTest
{
protected:
    static _nDeckFileNode file(const char* md5)
    {
        _nDeckFileNode wanted;
        wanted.path = "one.png";
        wanted.md5 = md5;
        return wanted;
    }
    // Minutes until it is asked for; -1 when that takes longer than these.
    int minutesUntilAsked(int most)
    {
        asked = 0;
        for (int minute = 1; minute <= most; ++minute) {
            for (int tick = 0; tick < nDeckLaterTries::FIRST_PAUSE; ++tick)
                kit::stepTime(nDeckLaterTries::TICK_MS);
            if (asked > 0)
                return minute;
        }
        return -1;
    }
    int asked = 0;
    nDeckLaterTries tries{[this](const _nDeckFileNode&) { ++asked; }};
};

TEST_F(LaterTries, AnotherContentOfTheNameBeginsWithTheShortestPause)
{
    for (int i = 0; i < 4; ++i)
        tries.Add(file("1"));
    tries.Add(file("2"));
    EXPECT_LE(minutesUntilAsked(8), 2);
    EXPECT_EQ(asked, 1);
    tries.Add(file("2"));
    EXPECT_GE(minutesUntilAsked(8), 2);
}

TEST_F(LaterTries, ThePauseGrowsToAboutAnHourAndNoLonger)
{
    for (int i = 0; i < 20; ++i)
        tries.Add(file("1"));
    const int minutes = minutesUntilAsked(70);
    EXPECT_GE(minutes, 60);
    EXPECT_LE(minutes, 66);
}

TEST_F(LaterTries, WhatNoScheduleNamesAnyMoreIsNotAskedFor)
{
    tries.Add(file("1"));
    tries.KeepOnly({frameContent("one.png", "2")});
    EXPECT_TRUE(tries.IsEmpty());
    EXPECT_EQ(minutesUntilAsked(3), -1);
}

} // namespace
