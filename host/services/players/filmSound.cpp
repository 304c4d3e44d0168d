#include "host/services/players/filmSound.h"
#include "host/services/players/speaker.h"
#include "support/host/player.h"

filmSound* filmSound::s_pStarted = nullptr;

void filmSound::start()
{
    if (!s_pStarted)
        s_pStarted = new filmSound;
    volumeChanged();
}

void filmSound::volumeChanged()
{
    tell(MEDIA_MSG_VOLUME, unsigned(speaker::instance().volume()));
}

void filmSound::muteChanged()
{
    tell(MEDIA_MSG_MUTE, speaker::instance().isMute());
}

void filmSound::tell(unsigned int message, unsigned int value)
{
    chThreadBase* server = s_pStarted ? msgGetThreadByName("app_hxMedia") : nullptr;
    if (server)
        msgPostMsgToThread(server, message, value, 0);
}

int filmSound::TryThreadMessage(msgObject& msg)
{
    if (msg.message == PLAYER_MSG_UP && msg.wParam == PLAYER_MEDIA)
        volumeChanged();
    return 0;
}
