#include "tests/calibration/rawRecords.h"
#include <cstdint>

namespace {

template <class T>
void append(QByteArray& bytes, T value)
{
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

} // namespace

QByteArray rawRecords::shortRecords(const std::vector<tagRecord>& records)
{
    QByteArray bytes;
    for (const tagRecord& record : records) {
        append(bytes, int32_t(record.nSeconds));
        append(bytes, int32_t(MICROSECONDS));
        append(bytes, uint16_t(record.nType));
        append(bytes, uint16_t(record.nCode));
        append(bytes, int32_t(record.nValue));
    }
    return bytes;
}

QByteArray rawRecords::kernelRecords(const std::vector<tagRecord>& records)
{
    QByteArray bytes;
    for (const tagRecord& record : records) {
        input_event event = {};
        event.input_event_sec = record.nSeconds;
        event.input_event_usec = MICROSECONDS;
        event.type = uint16_t(record.nType);
        event.code = uint16_t(record.nCode);
        event.value = record.nValue;
        append(bytes, event);
    }
    return bytes;
}

QByteArray rawRecords::report(int atX, int atY, int force)
{
    return shortRecords({x(atX), y(atY), pressure(force), end()});
}

QByteArray rawRecords::lifted()
{
    return shortRecords({pressure(0), end()});
}
