// What a touch device writes. The first byte says how many bytes come at a time; whatever they are, a whole
// report behind them is read as it is.
#include "calibration/rawCall.h"
#include "fuzz/fuzzRoot.h"
#include "support/file/rawDevice.h"
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <linux/input-event-codes.h>
#include <sys/socket.h>
#include <vector>

namespace {

enum : size_t { RECORD = 16, MOST = 1 << 16 };
enum : int { X = 1200, Y = 3400, PRESSURE = 50 };

ts_sample drain(const tsdev& device)
{
    ts_sample last;
    while (rawDeviceWait(device.fd, 0) > 0) {
        RawCall call(&device);
        int records = 0;
        while (rawDeviceWait(device.fd, 0) > 0 && call.Take(last) == RAW_MORE)
            expect(++records < RAW_RECORD_LIMIT);
        expect(!call.IsLost());
    }
    return last;
}

void appendRecord(std::vector<char>& bytes, uint16_t type, uint16_t code, int32_t value)
{
    char record[RECORD] = {};
    memcpy(record + 8, &type, sizeof type);
    memcpy(record + 10, &code, sizeof code);
    memcpy(record + 12, &value, sizeof value);
    bytes.insert(bytes.end(), record, record + RECORD);
}

std::vector<char> report(int x, int y, int pressure)
{
    std::vector<char> bytes;
    appendRecord(bytes, EV_ABS, ABS_X, x);
    appendRecord(bytes, EV_ABS, ABS_Y, y);
    appendRecord(bytes, EV_ABS, ABS_Z, pressure);
    appendRecord(bytes, EV_SYN, SYN_REPORT, 0);
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    int ends[2];
    expect(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0);
    tsdev device;
    device.fd = ends[0];
    const size_t step = size_t(data[0]) + 1;
    size = std::min(size, size_t(MOST));
    for (size_t at = 1; at < size; at += step) {
        const size_t count = std::min(step, size - at);
        expect(send(ends[1], data + at, count, 0) == ssize_t(count));
        drain(device);
    }
    for (const std::vector<char>& bytes : {report(1, 2, 0), report(X, Y, PRESSURE)})
        expect(send(ends[1], bytes.data(), bytes.size(), 0) == ssize_t(bytes.size()));
    const ts_sample last = drain(device);
    expect(last.x == X && last.y == Y && last.pressure == PRESSURE);
    rawDeviceClose(ends[0]);
    rawDeviceClose(ends[1]);
    return 0;
}
