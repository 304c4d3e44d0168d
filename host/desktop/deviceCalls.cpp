#include "host/desktop/deviceCalls.h"
#include "host/services/phone/callDevices.h"
#include "support/host/managers.h"
#include "support/host/text.h"

namespace {

QList<tagCallDevice> devices()
{
    QList<tagCallDevice> all;
    for (const DoorPhoneIconViewItem* item : GetDoorPhoneIconViewManager()->GetItems()) {
        tagCallDevice device;
        device.strNumber = toQString(item->m_strPhoneNumber);
        device.strName = toQString(item->m_strDisplayName);
        device.strUnlockPin = toQString(item->m_strUnlockPIN);
        device.bRefusesOthers = item->m_bRefuseNewIncall;
        device.bFullScreen = item->m_bFullScreen;
        all.append(device);
    }
    for (const IPCameraIconViewItem* item : GetIPCameraIconViewManager()->GetItems()) {
        tagCallDevice device;
        device.strNumber = toQString(item->m_strPhoneNumber);
        device.strName = toQString(item->m_strDisplayName);
        device.bFullScreen = item->m_bFullscreen;
        device.bNoVideo = item->m_bNotSendVideo;
        device.bNoAudio = item->m_bNotSendAudio;
        all.append(device);
    }
    return all;
}

} // namespace

void deviceCallsInstall()
{
    callDevicesAre(devices);
}
