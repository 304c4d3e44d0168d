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
    m_sessions.setMuted(1, true); // of two that are heard the sum depends on how late each of them is
    ASSERT_TRUE(isHeard());
    const auto peak = [&] { return heard().last(0.3, kRate).peak(); };
    EXPECT_TRUE(kit::waitUntil([&] { return std::abs(peak() - 0.3) < 0.02; })) << peak();
    const double loudest = peak();
    dev_set_output_volume(50);
    EXPECT_TRUE(kit::waitUntil([&] { return std::abs(peak() - loudest / 8) < loudest / 40; })) << peak();
    dev_set_output_volume(0);
    EXPECT_TRUE(kit::waitUntil([&] { return peak() == 0; })) << peak();
    dev_set_output_volume(100);
    EXPECT_TRUE(kit::waitUntil([&] { return peak() > 0.9 * loudest; }));
}
