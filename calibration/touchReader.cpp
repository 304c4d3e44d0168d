#include "calibration/touchReader.h"
#include "calibration/rawCall.h"
#include "support/file/rawDevice.h"
#include <new>

namespace {

int readDevice(ts_module* module, ts_sample* samples, int count)
{
    return ts_read_raw(module->dev, samples, count);
}

const ts_module_ops kRawOperations = {readDevice};

} // namespace

ts_module __ts_raw = {nullptr, nullptr, &kRawOperations};
int hack_x = 0;
int hack_y = 0;
int hack_xxx = 0;
struct timeval hack_tv = {};

tsdev* ts_open(const char* name, int nonblock)
{
    tsdev* ts = new (std::nothrow) tsdev;
    if (!ts)
        return nullptr;
    ts->fd = rawDeviceOpen(name, nonblock);
    if (ts->fd < 0) {
        delete ts;
        return nullptr;
    }
    __ts_attach(ts, &__ts_raw);
    return ts;
}

int __ts_attach(tsdev* ts, ts_module* module)
{
    module->dev = ts;
    module->next = ts->list;
    ts->list = module;
    return 0;
}

int ts_read_raw(tsdev* ts, ts_sample* samples, int count)
{
    if (!RawCall::IsEnabled())
        return count;
    RawCall call(ts);
    for (int i = 0; i < count;) {
        const int waits = rawDeviceWait(ts->fd, RAW_WAIT_US);
        if (waits < 0)
            return count;
        if (waits == 0) {
            RawCall::TimeOut(samples[i++]);
            continue;
        }
        const RAW_RESULT result = call.Take(samples[i]);
        if (result == RAW_ENDED)
            return count;
        if (result == RAW_SAMPLE)
            ++i;
    }
    return count;
}

void touchDeviceClose(tsdev* ts)
{
    if (!ts)
        return;
    if (__ts_raw.dev == ts)
        __ts_raw.dev = nullptr;
    rawDeviceClose(ts->fd);
    delete ts;
}
