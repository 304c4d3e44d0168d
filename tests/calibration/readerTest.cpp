// The raw touch reader: what it makes of a device's records.
#include "calibration/rawCall.h"
#include "calibration/touchReader.h"
#include "support/file/rawDevice.h"
#include "tests/calibration/rawRecords.h"
#include "tests/kit/phoneTest.h"
#include <QDir>
#include <QElapsedTimer>
#include <cerrno>
#include <cstdarg>
#include <ctime>
#include <fcntl.h>
#include <functional>
#include <poll.h>
#include <random>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace rawRecords;

namespace {

int g_nEventDevice = -1; // the descriptor that says that it is a device of the input system

} // namespace

// The program's own: a socket stands for a device of the input system, which not every machine lets one make.
extern "C" __attribute__((visibility("default"))) int ioctl(int fd, unsigned long request, ...) noexcept
{
    va_list rest;
    va_start(rest, request);
    void* argument = va_arg(rest, void*);
    va_end(rest);
    if (request != EVIOCGVERSION || fd != g_nEventDevice || fd < 0)
        return int(syscall(SYS_ioctl, fd, request, argument));
    *static_cast<int*>(argument) = EV_VERSION;
    return 0;
}

namespace {

constexpr unsigned kUntouched = 77;

class RawReader : public PhoneTest
{
protected:
    RawReader()
    {
        int ends[2];
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        m_device.fd = ends[0];
        m_nWriter = ends[1];
        __ts_attach(&m_device, &__ts_raw);
        qunsetenv("TSLIB_TSEVENTTYPE");
    }
    ~RawReader() override
    {
        g_nEventDevice = -1;
        hangUp();
        close(m_device.fd);
        qunsetenv("TSLIB_TSEVENTTYPE");
    }
    void hangUp()
    {
        if (m_nWriter >= 0)
            close(m_nWriter);
        m_nWriter = -1;
    }
    void put(const QByteArray& bytes)
    {
        ASSERT_EQ(::write(m_nWriter, bytes.constData(), size_t(bytes.size())), bytes.size());
    }
    void put(const std::vector<tagRecord>& records) { put(shortRecords(records)); }
    // How long that takes, by a clock that no test moves.
    static double msOf(const std::function<void()>& action)
    {
        const auto now = [] {
            timespec time = {};
            syscall(SYS_clock_gettime, CLOCK_MONOTONIC, &time);
            return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
        };
        const double before = now();
        action();
        return now() - before;
    }
    // Buffers hold a pressure that no record has.
    std::vector<ts_sample> read(int count)
    {
        std::vector<ts_sample> samples(size_t(count), ts_sample{-1, -1, kUntouched, {-1, -1}});
        EXPECT_EQ(ts_read_raw(&m_device, samples.data(), count), count);
        return samples;
    }

    tsdev m_device;
    int m_nWriter = -1;
};

void expectSample(const ts_sample& sample, int x, int y, unsigned pressure, long seconds = SECONDS)
{
    EXPECT_EQ(sample.x, x);
    EXPECT_EQ(sample.y, y);
    EXPECT_EQ(sample.pressure, pressure);
    EXPECT_EQ(sample.tv.tv_sec, seconds);
    EXPECT_EQ(sample.tv.tv_usec, seconds > 0 ? int(MICROSECONDS) : int(seconds));
}

void expectUntouched(const ts_sample& sample)
{
    expectSample(sample, -1, -1, kUntouched, -1);
}

} // namespace

TEST_F(RawReader, ReadsShortRecordsFromWhateverIsNoInputDevice)
{
    EXPECT_EQ(shortRecords({end()}).size(), 16);
    EXPECT_EQ(rawDeviceRecord(m_device.fd), RAW_RECORD_SHORT);
    put({x(1200), y(3400)});
    expectSample(read(1)[0], 1200, 3400, 0);
}

TEST_F(RawReader, ReadsTheKernelsOwnRecordsFromAnInputDevice)
{
    g_nEventDevice = m_device.fd;
    EXPECT_EQ(rawDeviceRecord(m_device.fd), RAW_RECORD_KERNEL);
    put(kernelRecords({x(1200), y(3400), pressure(60), end()}));
    const std::vector<ts_sample> samples = read(2);
    expectSample(samples[0], 1200, 3400, 0);
    expectSample(samples[1], 1200, 3400, 60);
}

TEST_F(RawReader, AReportWithXAndYInOneBurstIsOneSample)
{
    put({x(10), y(20), end(), x(11), y(21), end()});
    const std::vector<ts_sample> samples = read(2);
    expectSample(samples[0], 10, 20, 0);
    expectSample(samples[1], 11, 21, 0);
}

TEST_F(RawReader, APressureMakesASampleOfItsOwnWithTheLastPosition)
{
    put({x(10), y(20), pressure(5)});
    const std::vector<ts_sample> samples = read(2);
    expectSample(samples[0], 10, 20, 0);
    expectSample(samples[1], 10, 20, 5);
}

TEST_F(RawReader, ThePressureMarkStaysUntilTheCallReturns)
{
    put({pressure(5), end(), {EV_KEY, BTN_TOUCH, 1}, end()});
    for (const ts_sample& sample : read(3))
        expectSample(sample, 0, 0, 5);
    // In the next call the same records make none: what follows them does.
    put({end(), x(1), y(2)});
    expectSample(read(1)[0], 1, 2, 5);
}

TEST_F(RawReader, TheEndOfATouchIsAPressureOfZero)
{
    put({x(10), y(20), pressure(9), end()});
    expectSample(read(2)[1], 10, 20, 9);
    put(lifted());
    expectSample(read(1)[0], 10, 20, 0);
}

TEST_F(RawReader, AnXBehindAYBeginsTheNextSample)
{
    put({y(20), x(10), y(21), x(11)});
    const std::vector<ts_sample> samples = read(2);
    expectSample(samples[0], 0, 20, 0);
    expectSample(samples[1], 10, 21, 0);
}

TEST_F(RawReader, ASecondXOrYBeginsTheNextSampleAlsoInTheNextCall)
{
    put({x(10), x(11)});
    expectSample(read(1)[0], 10, 0, 0);
    put({y(21)});
    expectSample(read(1)[0], 11, 21, 0);
    put({y(30), y(31)});
    expectSample(read(1)[0], 11, 30, 0);
    put({pressure(1)});
    expectSample(read(1)[0], 11, 31, 1); // the kept y is there, and so is the pressure
    put({x(12), x(13)});
    expectSample(read(1)[0], 12, 31, 1);
    put({x(14)});
    expectSample(read(1)[0], 13, 31, 1); // and not overwritten
    put({y(41)});
    expectSample(read(1)[0], 14, 41, 1);
}

TEST_F(RawReader, HalfAPositionIsASampleWhenNothingFollows)
{
    put({x(10)});
    expectSample(read(1)[0], 10, 0, 0);
    put({y(20), end()});
    expectSample(read(1)[0], 10, 20, 0);
}

TEST_F(RawReader, TheFirstRecordOfASampleGivesItsTime)
{
    tagRecord first = x(10);
    first.nSeconds = 100;
    tagRecord second = y(20);
    second.nSeconds = 200;
    tagRecord third = x(11);
    third.nSeconds = 300;
    put({end(), first, second, third, y(21)});
    const std::vector<ts_sample> samples = read(2);
    expectSample(samples[0], 10, 20, 0, 100);
    expectSample(samples[1], 11, 21, 0, 300);
}

TEST_F(RawReader, OtherKindsOfRecordsAndOtherAxesMakeNoSample)
{
    put({{EV_KEY, ABS_X, 5}, {EV_REL, ABS_Y, 5}, {EV_ABS, ABS_RX, 5}, {EV_ABS, ABS_PRESSURE, 5}, x(1), y(2)});
    expectSample(read(1)[0], 1, 2, 0);
}

TEST_F(RawReader, NothingForATenthOfASecondIsASampleWithoutPositionThatKeepsThePressure)
{
    put({x(10), y(20)});
    const std::vector<ts_sample> samples = read(2);
    expectSample(samples[0], 10, 20, 0);
    expectSample(samples[1], 0, 0, kUntouched, 0);
}

TEST_F(RawReader, TheWaitForASampleIsATenthOfASecond)
{
    constexpr int kWaits = 5;
    const double waited = msOf([this] { read(kWaits); });
    const double known = msOf([] {
        for (int i = 0; i < kWaits; ++i)
            poll(nullptr, 0, 100);
    });
    EXPECT_GT(waited, 0.3 * known);
    EXPECT_LT(waited, 3 * known);
}

TEST_F(RawReader, AnotherKindOfEventWaitsForNothingOnASilentDevice)
{
    constexpr int kSamples = 5;
    const double waited = msOf([this] { read(kSamples); });
    qputenv("TSLIB_TSEVENTTYPE", "INPUT");
    const double returned = msOf([this] {
        for (const ts_sample& sample : read(kSamples))
            expectUntouched(sample);
    });
    EXPECT_LT(10 * returned, waited);
}

TEST_F(RawReader, AnotherKindOfEventInTheEnvironmentReadsNothing)
{
    put({x(10), y(20)});
    qputenv("TSLIB_TSEVENTTYPE", "INPUT");
    expectUntouched(read(1)[0]);
    qputenv("TSLIB_TSEVENTTYPE", "NORVANE");
    expectSample(read(1)[0], 10, 20, 0);
}

TEST_F(RawReader, AShorterReadEndsTheCallAndIsTakenAway)
{
    put({x(10), y(20)});
    put(QByteArray(5, 'x'));
    std::vector<ts_sample> samples = read(3);
    expectSample(samples[0], 10, 20, 0);
    expectUntouched(samples[1]);
    expectUntouched(samples[2]);
    put({x(11), y(21)});
    expectSample(read(1)[0], 11, 21, 0);
}

TEST_F(RawReader, ADeviceThatHasGoneEndsTheCall)
{
    put({x(10), y(20)});
    hangUp();
    const std::vector<ts_sample> samples = read(2);
    expectSample(samples[0], 10, 20, 0);
    expectUntouched(samples[1]);
    tsdev none;
    ts_sample sample{-1, -1, kUntouched, {-1, -1}};
    EXPECT_EQ(ts_read_raw(&none, &sample, 1), 1);
    expectUntouched(sample);
}

TEST_F(RawReader, AFloodWithoutASampleEndsTheCall)
{
    put(std::vector<tagRecord>(600, end()));
    expectUntouched(read(1)[0]);
}

TEST_F(RawReader, RecordsWithoutASampleAreCountedForEachSampleAnew)
{
    constexpr int kSamples = 100;
    std::vector<tagRecord> records;
    for (int i = 0; i < kSamples; ++i) {
        records.insert(records.end(), RAW_RECORD_LIMIT / kSamples + 1, end());
        records.push_back(x(i));
        records.push_back(y(2 * i));
    }
    put(records);
    const std::vector<ts_sample> samples = read(kSamples);
    for (int i = 0; i < kSamples; ++i)
        expectSample(samples[size_t(i)], i, 2 * i, 0);
}

TEST_F(RawReader, OpensADeviceOfTheDeviceRootAndAttachesItsOneModule)
{
    writeFile("/dev/input/event0", shortRecords({x(3), y(4)}));
    ASSERT_EQ(symlink("event0", qPrintable(hostPath("/dev/input/TouchScreen"))), 0);
    tsdev* ts = ts_open("/dev/input/TouchScreen", 0);
    ASSERT_NE(ts, nullptr);
    EXPECT_EQ(ts->list, &__ts_raw);
    EXPECT_EQ(__ts_raw.dev, ts);
    EXPECT_EQ(__ts_raw.next, nullptr);
    EXPECT_EQ(fcntl(ts->fd, F_GETFL) & (O_NONBLOCK | O_ACCMODE), O_RDONLY);
    ts_sample sample;
    EXPECT_EQ(ts->list->ops->read(ts->list, &sample, 1), 1);
    expectSample(sample, 3, 4, 0);
    touchDeviceClose(ts);
    EXPECT_EQ(__ts_raw.dev, nullptr);
}

TEST_F(RawReader, ADeviceThatClosesLeavesTheModuleToTheOneThatHasItNow)
{
    writeFile("/dev/input/event0", {});
    tsdev* first = ts_open("/dev/input/event0", 1);
    tsdev* second = ts_open("/dev/input/event0", 1);
    ASSERT_NE(second, nullptr);
    touchDeviceClose(first);
    EXPECT_EQ(__ts_raw.dev, second);
    touchDeviceClose(second);
    EXPECT_EQ(__ts_raw.dev, nullptr);
    touchDeviceClose(nullptr);
}

TEST_F(RawReader, OpensWithoutWaitingWhenAskedTo)
{
    QDir().mkpath(hostPath("/dev/input"));
    ASSERT_EQ(mkfifo(qPrintable(hostPath("/dev/input/pipe")), 0600), 0);
    tsdev* ts = ts_open("/dev/input/pipe", 1);
    ASSERT_NE(ts, nullptr);
    EXPECT_EQ(fcntl(ts->fd, F_GETFL) & (O_NONBLOCK | O_ACCMODE), O_RDONLY | O_NONBLOCK);
    touchDeviceClose(ts);
}

TEST_F(RawReader, WhatIsNotThereCannotBeOpened)
{
    EXPECT_EQ(ts_open("/dev/input/none", 0), nullptr);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(RawReader, AModuleComesBeforeTheOthers)
{
    ts_module first;
    ts_module second;
    tsdev ts;
    EXPECT_EQ(__ts_attach(&ts, &first), 0);
    EXPECT_EQ(__ts_attach(&ts, &second), 0);
    EXPECT_EQ(ts.list, &second);
    EXPECT_EQ(second.next, &first);
    EXPECT_EQ(first.next, nullptr);
    EXPECT_EQ(second.dev, &ts);
    EXPECT_EQ(first.dev, &ts);
}

TEST_F(RawReader, AMillionRecordsInAnyDamageLeaveItSane)
{
    std::mt19937 chance(20261122);
    const auto below = [&chance](unsigned limit) { return int(chance() % limit); };
    // As ts_read_raw does, without the waiting.
    const auto drain = [this] {
        ts_sample sample;
        while (rawDeviceWait(m_device.fd, 0) > 0) {
            RawCall call(&m_device);
            while (rawDeviceWait(m_device.fd, 0) > 0 && call.Take(sample) == RAW_MORE) {
            }
            EXPECT_FALSE(call.IsLost());
        }
    };
    for (int sent = 0; sent < 1000000;) {
        std::vector<tagRecord> records;
        for (int i = below(200); i >= 0; --i)
            records.push_back({below(3) ? int(EV_ABS) : below(65536), below(4) ? below(3) : below(65536),
                               below(4) ? below(4096) : int(chance())});
        QByteArray bytes = shortRecords(records);
        for (int i = below(4); i > 0; --i)
            bytes[below(unsigned(bytes.size()))] = char(below(256));
        if (below(3) == 0)
            bytes.chop(below(40));
        put(bytes);
        sent += int(records.size());
        drain();
    }
    // What is left of a position before goes with the first report.
    put(report(1, 2, 3) + lifted());
    drain();
    put(report(1200, 3400, 50));
    const std::vector<ts_sample> good = read(2);
    expectSample(good[1], 1200, 3400, 50);
}
