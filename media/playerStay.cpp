#include "media/playerStay.h"
#include "support/host/screen.h"

PlayerStay::PlayerStay() : m_devices(this)
{
    RegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
}

PlayerStay::~PlayerStay()
{
    UnRegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
}

int PlayerStay::TryThreadMessage(msgObject& msg)
{
    if (msg.message != DEVICE_MSG_EVENT)
        return 0;
    if (msg.wParam == DEVICE_EVENT_REMOVE)
        OnStorageGone();
    return 1;
}
