#pragma once
// The phone's loudspeaker: its level and mute, who has a claim on it, and what it plays. User-interface
// thread.
#include "support/host/phone.h"
#include <QList>
#include <QStringList>

enum : int { VOICE_CALL = 1 }; // voiceInfo::nType of a call's ring, or of its talk

class speaker
{
public:
    static speaker& instance();

    int volume();
    // While somebody has a claim, the level from before comes back with the end of the last claim.
    void setVolume(int volume);
    bool isMute() const { return m_bMute; }
    void setMute(bool mute);

    // Among the claims those of calls come first, then the newest counts. While a call has one, a volume that
    // is set is that of the time after the call.
    void claim(voiceInfo* info);
    void unclaim(voiceInfo* info);

    void playTone(int key);
    bool playRing(const char* file, bool loop);
    void stopRing();
    // The ring of a call: nobody else plays a file meanwhile or stops this one, and a mute does not hold for
    // it. files: device paths; each is the stand-in for those before it that cannot be played.
    void ringForCall(const QStringList& files);
    void endCallRing();
    bool isCallRinging() const { return m_bCallRings; }
    // What plays is no sound that can be played.
    void fileFailed();

private:
    speaker() = default;
    void applyNewestClaim();
    void setLevel(int level);
    bool isCallClaimed() const { return newestClaim() && newestClaim()->nType == VOICE_CALL; }
    const voiceInfo* newestClaim() const;
    void ringNext();

    int m_nVolume = -1;   // -1: not yet read from the settings
    int m_nOwnVolume = 0; // without claims
    bool m_bMute = false;
    QList<voiceInfo*> m_claims; // the newest last
    bool m_bCallRings = false;
    QStringList m_rings; // still to be tried
};
