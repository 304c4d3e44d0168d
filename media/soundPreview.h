#pragma once
// Plays a ring tone round and round, as loud as the phone rings. User-interface thread.
#include "media/autoSpeaker.h"
#include "media/basePreview.h"
#include "support/host/registry.h"

class soundPreview : public basePreview, public autoSpeaker
{
    Q_OBJECT
public:
    enum : int { DEFAULT_VOLUME = 20 };

    // volume: 0 to 100, until the stored one changes.
    soundPreview(QObject* parent, int volume, int delay, PREVIEW_MEDIA_TYPE type);
    // Silences it.
    ~soundPreview() override;

    void on_start_preview(bool bStill) override;
    void on_stop_preview() override;
    // 0 to 100.
    void SetVolume(int volume);
    int GetVolume() const { return nVolume; }
    // What the phone rings with, as it is stored.
    static int StoredVolume();

private:
    void myRingCfgChanged(HREGISTRY section);

    qRegistryNotify* m_pNotify; // our child
};
