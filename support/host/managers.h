#pragma once
// The host's readers of data files that the module writes. User-interface thread.
#include "support/host/api.h"
#include "support/text/chString.h"
#include <QList>

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

// A door phone of "/rundata/data/doorphonedata.xml", with the texts of its elements. The PIN is a secret.
class DoorPhoneIconViewItem
{
public:
    chString m_strTitle; // "Door Phone 1"
    chString m_strDisplayName;
    chString m_strPhoneNumber;
    chString m_strUnlockPIN;
    bool m_bRefuseNewIncall = false; // during a call with it
    bool m_bFullScreen = false;
};

// A camera of "/rundata/data/ipcameradata.xml". The PIN is a secret.
class IPCameraIconViewItem
{
public:
    chString m_strTitle;
    chString m_strDisplayName;
    chString m_strPhoneNumber;
    chString m_strAccessPIN;
    int m_iDeviceModel = 0; // 0 Mobotix, 1 Custom
    int m_iAccount = -1;    // 0 to 3, -1 the default one
    bool m_bFullscreen = false;
    bool m_bNotSendVideo = false;
    bool m_bNotSendAudio = false;
    int m_iIndex = -1; // among the "item" elements of the file
};

// The generated menus of door phones and cameras: their icons, drawn again from their files, and the items of
// these. They read again by themselves when a page has told of a change.
class HX_HOST_API DoorPhoneIconViewManager
{
public:
    void RefreshIconView();
    // In the order of the file; valid until the next refresh or change. Read with the first call.
    const QList<DoorPhoneIconViewItem*>& GetItems();
};
HX_HOST_API DoorPhoneIconViewManager* GetDoorPhoneIconViewManager();

class HX_HOST_API IPCameraIconViewManager
{
public:
    void RefreshIPCameraIconView();
    // As above.
    const QList<IPCameraIconViewItem*>& GetItems();
};
HX_HOST_API IPCameraIconViewManager* GetIPCameraIconViewManager();
