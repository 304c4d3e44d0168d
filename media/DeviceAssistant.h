#pragma once
// Keeps a page on the notification lists of the removable storages: of "/storage", and of each mount path.
// The page gets DEVICE_MSG_EVENT and calls Refresh() on DEVICE_EVENT_REFRESH. User-interface thread.
#include "media/storageTools.h"
#include "support/host/message.h"

class DeviceAssistant
{
public:
    // processer: not owned, outlives this object.
    explicit DeviceAssistant(chMsgProcesser* processer);
    ~DeviceAssistant();
    DeviceAssistant(const DeviceAssistant&) = delete;
    DeviceAssistant& operator=(const DeviceAssistant&) = delete;

    void Register(const char* path);
    void UnRegister(const char* path);
    // Follows the storages that came and went.
    void Refresh();

private:
    chMsgProcesser* m_pProcesser;
    chStringArray m_arrStorage; // the mount paths last seen
};
