#pragma once
// The tones of the phone at "app_hxMedia": one file, and one key beside it. One thread.
#include "players/toneStream.h"
#include "support/host/message.h"
#include <memory>

class toneService : public chMsgProcesser
{
public:
    // Takes the tones' messages, and hears of the volume, which is the sessions' too: to be made before them.
    int TryThreadMessage(msgObject& msg) override;

private:
    void playFile(const msgObject& msg);
    void playKey(const msgObject& msg);
    void setSound(int volume, bool mute);

    int m_nVolume = soundVolume::LOUDEST; // until the phone tells
    bool m_bMute = false;
    std::unique_ptr<toneStream> m_file;
    std::unique_ptr<toneStream> m_key;
};
