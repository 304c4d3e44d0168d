#include "media/autoSpeaker.h"

namespace {

constexpr int kMediaPlayback = 2;

} // namespace

autoSpeaker::autoSpeaker(int volume, int bApplyNow) : voiceInfo(kMediaPlayback, volume, 1)
{
    if (bApplyNow)
        setNewVoiceInfo();
}

autoSpeaker::~autoSpeaker()
{
    setOldVoiceInfo();
}

void autoSpeaker::setNewVoiceInfo()
{
    phone_SetVoiceInfo(this);
}

void autoSpeaker::setOldVoiceInfo()
{
    phone_RemoveVoiceInfo(this);
}
