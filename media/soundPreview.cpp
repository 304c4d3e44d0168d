#include "media/soundPreview.h"
#include "frame/configFiles.h"
#include <functional>
#include <utility>

namespace {

const char* const kSection = "Volume";
const char* const kRing = "nRing";

class RingNotify : public qRegistryNotify
{
public:
    RingNotify(QObject* parent, std::function<void(HREGISTRY)> changed)
        : qRegistryNotify(parent), m_changed(std::move(changed))
    {
        MonitorSection(USER_INI, kSection);
    }

protected:
    void OnRegistryChanged(HREGISTRY section) override { m_changed(section); }

private:
    std::function<void(HREGISTRY)> m_changed;
};

} // namespace

// A claim of a preview before this one does not stay.
soundPreview::soundPreview(QObject* parent, int volume, int delay, PREVIEW_MEDIA_TYPE type)
    : basePreview(parent, delay, type), autoSpeaker(volume, 0),
      m_pNotify(new RingNotify(this, [this](HREGISTRY section) { myRingCfgChanged(section); }))
{
    setOldVoiceInfo();
}

soundPreview::~soundPreview()
{
    stopPreview();
}

// One on demand does not begin anew when the time of the delay is over.
void soundPreview::on_start_preview(bool)
{
    KillTimer();
    SetActive();
    setNewVoiceInfo();
    phone_PlayRing(GetFile(), 1);
}

void soundPreview::on_stop_preview()
{
    phone_StopRing(0);
    setOldVoiceInfo();
}

void soundPreview::SetVolume(int volume)
{
    if (nVolume != volume)
        nVolume = volume;
}

void soundPreview::myRingCfgChanged(HREGISTRY section)
{
    SetVolume(registryGetInt(section, kRing, DEFAULT_VOLUME));
}

int soundPreview::StoredVolume()
{
    return nuxGetRegistryInt(USER_INI, kSection, kRing, DEFAULT_VOLUME);
}
