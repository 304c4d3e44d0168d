// How loud a call is at this end.
#include "host/services/players/filmSound.h"
#include "support/host/phone.h"
#include "tests/players/callServiceStand.h"
#include <cmath>

TEST_F(CallService, ATalkIsAsLoudAsThePhoneIsSet)
{
    dev_set_output_volume(100);
    startMedia();
    filmSound::start();
    connect(1, 2);
    ASSERT_TRUE(isHeard());
    const auto peak = [&] { return heard().last(0.3, kRate).peak(); };
    // A call that begins on a busy machine has gaps to make up for.
    double loudest = 0;
    ASSERT_TRUE(kit::waitUntil([&] {
        loudest = peak();
        return std::abs(heard().last(0.6, kRate).from(0, 0.3, kRate).peak() - loudest) < loudest / 100;
    }));
    EXPECT_GT(loudest, 0.2);
    dev_set_output_volume(50);
    EXPECT_TRUE(kit::waitUntil([&] { return std::abs(peak() - loudest / 8) < loudest / 40; })) << peak();
    dev_set_output_volume(0);
    EXPECT_TRUE(kit::waitUntil([&] { return peak() == 0; })) << peak();
    dev_set_output_volume(100);
    EXPECT_TRUE(kit::waitUntil([&] { return peak() > 0.9 * loudest; }));
}
