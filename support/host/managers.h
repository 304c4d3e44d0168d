#pragma once
// The host's readers of data files that the module writes. User-interface thread.
#include "support/host/api.h"

class HX_HOST_API DssKeyManager
{
public:
    // Reads the key file again; flags is 0. 1 on success; a broken file leaves the keys as they were.
    int LoadFile(const char* path, int flags);
    int GetKeyCount() const { return m_nKeys; }

private:
    int m_nKeys = 0;
};
HX_HOST_API DssKeyManager* GetDssKeyManager();

// The generated menus of door phones and cameras, drawn again from their files.
class HX_HOST_API IPCameraIconViewManager
{
public:
    void RefreshIPCameraIconView();
};
HX_HOST_API IPCameraIconViewManager* GetIPCameraIconViewManager();

class HX_HOST_API DoorPhoneIconViewManager
{
public:
    void RefreshIconView();
};
HX_HOST_API DoorPhoneIconViewManager* GetDoorPhoneIconViewManager();

// The weather on the home screen.
class HX_HOST_API WeatherFrame
{
public:
    // Asks for the weather of the configured city, and shows or hides the frame as configured.
    void RefreshBySendRequest();
};
HX_HOST_API WeatherFrame* GetWeatherFrame();
