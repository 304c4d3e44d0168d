#pragma once
// Records as touch devices write them.
#include <QByteArray>
#include <linux/input.h>
#include <vector>

namespace rawRecords {

enum : int { PRESSURE = ABS_Z, SECONDS = 7, MICROSECONDS = 500 };

struct tagRecord
{
    int nType;
    int nCode;
    int nValue;
    int nSeconds = SECONDS;
};

inline tagRecord x(int value)
{
    return {EV_ABS, ABS_X, value};
}
inline tagRecord y(int value)
{
    return {EV_ABS, ABS_Y, value};
}
inline tagRecord pressure(int value)
{
    return {EV_ABS, PRESSURE, value};
}
inline tagRecord end()
{
    return {EV_SYN, SYN_REPORT, 0};
}

// 16 bytes each: 8 of time, then type, code and value.
QByteArray shortRecords(const std::vector<tagRecord>& records);
// As the kernel of this machine writes them.
QByteArray kernelRecords(const std::vector<tagRecord>& records);
// A whole report of a finger, in short records.
QByteArray report(int x, int y, int pressure);
QByteArray lifted();

} // namespace rawRecords
