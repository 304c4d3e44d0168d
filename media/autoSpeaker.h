#pragma once
// A claim on the speaker for media playback. User-interface thread.
#include "support/host/phone.h"

class autoSpeaker : public voiceInfo
{
public:
    // volume: 0 to 100; bApplyNow non-zero claims at once.
    autoSpeaker(int volume, int bApplyNow);
    // Gives the claim up: the phone holds this record as long as it lasts.
    ~autoSpeaker();
    autoSpeaker(const autoSpeaker&) = delete;
    autoSpeaker& operator=(const autoSpeaker&) = delete;

    void setNewVoiceInfo();
    void setOldVoiceInfo();
};
