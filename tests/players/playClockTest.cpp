#include "players/playClock.h"
#include <gtest/gtest.h>

namespace {

constexpr qint64 ms = 1000000;

TEST(PlayClock, SoundAndPictureOfAPlayShareOneOffset)
{
    playClock clock;
    clock.arrived(1, 0, 5000 * ms);
    EXPECT_EQ(clock.due(1, 0), 5000 * ms + playClock::RESERVE);
    clock.arrived(1, 80 * ms, 5010 * ms); // a picture that others refer to comes early
    EXPECT_EQ(clock.due(1, 80 * ms), 5080 * ms + playClock::RESERVE);
    EXPECT_EQ(clock.due(1, 40 * ms), 5040 * ms + playClock::RESERVE);
}

TEST(PlayClock, ASmallDelayOnTheWayChangesNothing)
{
    playClock clock;
    clock.arrived(1, 0, 0);
    clock.arrived(1, 40 * ms, 150 * ms);
    EXPECT_EQ(clock.due(1, 40 * ms), 40 * ms + playClock::RESERVE);
}

TEST(PlayClock, APauseMovesWhatFollows)
{
    playClock clock;
    clock.arrived(1, 0, 0);
    clock.arrived(1, 1000 * ms, 9000 * ms);
    EXPECT_EQ(clock.due(1, 1000 * ms), 9000 * ms + playClock::RESERVE);
}

TEST(PlayClock, AJumpBackInTheFilmIsPlayedAtOnce)
{
    playClock clock;
    clock.arrived(1, 5000 * ms, 5000 * ms);
    clock.arrived(1, 0, 6000 * ms);
    EXPECT_EQ(clock.due(1, 0), 6000 * ms + playClock::RESERVE);
}

TEST(PlayClock, TheEndOfThePlayBeforeKeepsItsTime)
{
    playClock clock;
    clock.arrived(1, 0, 0);
    clock.arrived(2, 0, 2000 * ms);
    EXPECT_EQ(clock.due(1, 1990 * ms), 1990 * ms + playClock::RESERVE);
    EXPECT_EQ(clock.due(2, 0), 2000 * ms + playClock::RESERVE);
}

TEST(PlayClock, NothingIsDueBeforeTheClockBegan)
{
    playClock clock;
    clock.arrived(1, 900 * ms, 0);
    EXPECT_EQ(clock.due(1, 0), 0);
}

} // namespace
