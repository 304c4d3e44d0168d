// Samples that are asked for one by one.
#include "calibration/touchSampler.h"
#include "tests/calibration/rawRecords.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/phoneTest.h"
#include <QTimer>
#include <fcntl.h>
#include <unistd.h>

using namespace rawRecords;

namespace {

class Sampler : public PhoneTest
{
protected:
    Sampler() : sampler(nullptr)
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(pipe2(ends, O_CLOEXEC | O_NONBLOCK), 0);
        device.fd = ends[0];
        m_nWriter = ends[1];
        qunsetenv("TSLIB_TSEVENTTYPE");
    }
    ~Sampler() override
    {
        sampler.Cancel();
        close(device.fd);
        close(m_nWriter);
    }
    void put(const QByteArray& bytes)
    {
        EXPECT_EQ(write(m_nWriter, bytes.constData(), size_t(bytes.size())), bytes.size());
    }

    tsdev device;
    TouchSampler sampler;

private:
    int m_nWriter = -1;
};

} // namespace

TEST_F(Sampler, WhatHasComeWhenItsTimeIsOverStillCounts)
{
    ts_sample taken = {-1, -1, 0, {}};
    int times = 0;
    sampler.Request(&device, 0, [&](const ts_sample& sample) {
        taken = sample;
        ++times;
    });
    kit::settle();
    // Both timers are due before the loop looks at the device again.
    QTimer::singleShot(50, Qt::PreciseTimer, &sampler, [this] { put(report(1200, 3400, 60)); });
    kit::moveClocks(RAW_WAIT_US / 1000 + 1);
    kit::settle();
    EXPECT_EQ(times, 1);
    EXPECT_EQ(taken.x, 1200);
    EXPECT_EQ(taken.y, 3400);
}

TEST_F(Sampler, SilenceForATenthOfASecondIsASampleOfZerosThatKeepsThePressure)
{
    for (const unsigned held : {0u, 60u}) {
        ts_sample taken = {-1, -1, 7, {}};
        sampler.Request(&device, held, [&](const ts_sample& sample) { taken = sample; });
        kit::stepTime(RAW_WAIT_US / 1000 - 20);
        EXPECT_TRUE(sampler.IsWaiting());
        EXPECT_EQ(taken.x, -1);
        kit::stepTime(30);
        EXPECT_FALSE(sampler.IsWaiting());
        EXPECT_EQ(taken.x, 0);
        EXPECT_EQ(taken.y, 0);
        EXPECT_EQ(taken.pressure, held);
    }
}
