#pragma once
// The phone's loudspeaker: its level and mute, who has a claim on it, and what it plays. User-interface
// thread.
#include "support/host/phone.h"
#include <QList>

class speaker
{
public:
    static speaker& instance();

    int volume();
    // While somebody has a claim, the level from before comes back with the end of the last claim.
    void setVolume(int volume);
    bool isMute() const { return m_bMute; }
    void setMute(bool mute);

    void claim(voiceInfo* info);
    void unclaim(voiceInfo* info);

    void playTone(int key);
    bool playRing(const char* file, bool loop);
    void stopRing();

private:
    speaker() = default;
    void applyNewestClaim();
    void setLevel(int level);

    int m_nVolume = -1;   // -1: not yet read from the settings
    int m_nOwnVolume = 0; // without claims
    bool m_bMute = false;
    QList<voiceInfo*> m_claims; // the newest last
};
