#include "host/managers/deviceItems.h"
#include "support/host/managers.h"
#include <cstdlib>
#include <cstring>

namespace {

chString content(const xmlElement* element, const char* child)
{
    chString value;
    PeekValue(element->FindChildElement(child), value);
    return value;
}

int number(const xmlElement* element, const char* child, int absent)
{
    const chString value = content(element, child);
    return value.IsEmpty() ? absent : atoi(value);
}

// The element's name says nothing.
bool readDoorPhone(DoorPhoneIconViewItem& item, xmlElement* element, int)
{
    item.m_strTitle = element->GetAttributeValue("title").GetString();
    item.m_strDisplayName = content(element, "DisplayName");
    item.m_strPhoneNumber = content(element, "PhoneNumber");
    item.m_strUnlockPIN = content(element, "UnlockPIN");
    item.m_bRefuseNewIncall = content(element, "RefuseNewIncall") == "1";
    item.m_bFullScreen = content(element, "FullScreen") == "1";
    return true;
}

bool readCamera(IPCameraIconViewItem& item, xmlElement* element, int index)
{
    if (strcmp(element->GetName(), "item") != 0)
        return false;
    item.m_strTitle = element->GetAttributeValue("title").GetString();
    item.m_strDisplayName = content(element, "DisplayName");
    item.m_strPhoneNumber = content(element, "PhoneNumber");
    item.m_strAccessPIN = content(element, "AccessPIN");
    item.m_iDeviceModel = number(element, "DeviceModel", 0);
    item.m_iAccount = number(element, "Account", -1);
    item.m_bFullscreen = number(element, "Fullscreen", 0) != 0;
    item.m_bNotSendVideo = number(element, "Notsendvideo", 0) != 0;
    item.m_bNotSendAudio = number(element, "Notsendaudio", 0) != 0;
    item.m_iIndex = index;
    return true;
}

// They hear of changes until the process ends.
DeviceItems<DoorPhoneIconViewItem>& doorPhones()
{
    static auto* items = new DeviceItems<DoorPhoneIconViewItem>("doorphonedata.xml", "DoorPhone",
                                                                CONFIG_CHANGED_DOOR_PHONE, readDoorPhone);
    return *items;
}

DeviceItems<IPCameraIconViewItem>& cameras()
{
    static auto* items = new DeviceItems<IPCameraIconViewItem>("ipcameradata.xml", "IPCamera",
                                                               CONFIG_CHANGED_IP_CAMERA, readCamera);
    return *items;
}

} // namespace

void DoorPhoneIconViewManager::RefreshIconView()
{
    doorPhones().Refresh();
}

const QList<DoorPhoneIconViewItem*>& DoorPhoneIconViewManager::GetItems()
{
    return doorPhones().Items();
}

DoorPhoneIconViewManager* GetDoorPhoneIconViewManager()
{
    static DoorPhoneIconViewManager manager;
    return &manager;
}

void IPCameraIconViewManager::RefreshIPCameraIconView()
{
    cameras().Refresh();
}

const QList<IPCameraIconViewItem*>& IPCameraIconViewManager::GetItems()
{
    return cameras().Items();
}

IPCameraIconViewManager* GetIPCameraIconViewManager()
{
    static IPCameraIconViewManager manager;
    return &manager;
}
