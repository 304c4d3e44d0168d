#include "host/services/phone/callDevices.h"

namespace {
CallDevices s_devices = nullptr;
} // namespace

void callDevicesAre(CallDevices devices)
{
    s_devices = devices;
}

QList<tagCallDevice> callDevices()
{
    return s_devices ? s_devices() : QList<tagCallDevice>();
}
