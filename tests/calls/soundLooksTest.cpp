// When the media server looks for devices again where it has found none.
#include "players/soundLooks.h"
#include <gtest/gtest.h>

namespace {

constexpr int kFirst = soundLooks::FIRST_MS;

} // namespace

TEST(SoundLooks, WhereThereIsNothingOnlyANewPlaceIsLookedAt)
{
    soundLooks looks;
    EXPECT_TRUE(looks.isDue(0, "", false));
    looks.inVain(0, "");
    EXPECT_FALSE(looks.isDue(1000LL * kFirst, "", false));
    EXPECT_TRUE(looks.isDue(1, "pcmC0D0p", false)) << "somebody has plugged it in";
}

TEST(SoundLooks, APlaceThatDoesNotWorkIsLookedAtLessAndLess)
{
    soundLooks looks;
    qint64 now = 0, waited = kFirst;
    looks.inVain(now, "pcmC0D0p");
    for (int look = 0; look < 12; ++look) {
        EXPECT_FALSE(looks.isDue(now + waited - 1, "pcmC0D0p", false)) << look;
        EXPECT_TRUE(looks.isDue(now + waited, "pcmC0D0p", false)) << look;
        now += waited;
        looks.inVain(now, "pcmC0D0p");
        waited = qMin<qint64>(2 * waited, soundLooks::LAST_MS);
    }
    looks.inVain(now, "pcmC1D0p");
    EXPECT_TRUE(looks.isDue(now + kFirst, "pcmC1D0p", false)) << "another one begins anew";
}

TEST(SoundLooks, WhatSomebodyHasDescribedIsTriedAsOftenAsBefore)
{
    soundLooks looks;
    for (int look = 0; look < 5; ++look) {
        looks.inVain(look * kFirst, "");
        EXPECT_FALSE(looks.isDue(look * kFirst + kFirst - 1, "", true)) << look;
        EXPECT_TRUE(looks.isDue(look * kFirst + kFirst, "", true)) << look;
    }
}
