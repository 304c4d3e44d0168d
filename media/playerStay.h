#pragma once
// What the players that a person opened share: no screen saver cuts in while they are there, and they hear of
// a disk that is pulled. User-interface thread.
#include "media/DeviceAssistant.h"

class PlayerStay : public chMsgProcesser
{
public:
    PlayerStay();
    ~PlayerStay() override;
    // Takes the storage events and no others.
    int TryThreadMessage(msgObject& msg) override;

protected:
    virtual void OnStorageGone() = 0;

private:
    DeviceAssistant m_devices;
};
