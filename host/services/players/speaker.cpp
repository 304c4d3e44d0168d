#include "host/services/players/speaker.h"
#include "host/services/players/filmSound.h"
#include "host/services/players/soundOutput.h"
#include "host/services/system/hostLog.h"
#include "support/file/deviceRoot.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include <algorithm>

namespace {

const char* const kUserFile = "/rundata/config/user/user.ini";
constexpr int kMaxVolume = 100;
constexpr int kDefaultVolume = 50;

int inRange(int volume)
{
    return std::clamp(volume, 0, kMaxVolume);
}

} // namespace

speaker& speaker::instance()
{
    static speaker* it = new speaker;
    return *it;
}

int speaker::volume()
{
    if (m_nVolume < 0)
        m_nVolume = inRange(nuxGetRegistryInt(kUserFile, "Volume", "nTalkOutput", kDefaultVolume));
    return m_nVolume;
}

void speaker::setVolume(int volume)
{
    setLevel(inRange(volume));
}

void speaker::setLevel(int level)
{
    m_nVolume = level;
    hostLog("volume", QString::number(level));
    soundOutput::instance().setLevel(level);
    filmSound::volumeChanged();
}

void speaker::setMute(bool mute)
{
    m_bMute = mute;
    hostLog("mute", QString::number(int(mute)));
    soundOutput::instance().setMute(mute);
    filmSound::muteChanged();
}

void speaker::claim(voiceInfo* info)
{
    if (!info)
        return;
    if (m_claims.isEmpty())
        m_nOwnVolume = volume();
    m_claims.removeAll(info);
    m_claims.append(info);
    applyNewestClaim();
}

void speaker::unclaim(voiceInfo* info)
{
    const bool wasNewest = !m_claims.isEmpty() && m_claims.last() == info;
    m_claims.removeAll(info);
    if (wasNewest)
        applyNewestClaim();
}

void speaker::applyNewestClaim()
{
    const int level = m_claims.isEmpty() ? m_nOwnVolume : inRange(m_claims.last()->nVolume);
    if (level != volume())
        setLevel(level);
}

void speaker::playTone(int key)
{
    hostLog("tone", QString::number(key));
    soundOutput::instance().playTone(key);
}

bool speaker::playRing(const char* file, bool loop)
{
    const QString path = QString::fromUtf8(file);
    hostLog("ring", path + (loop ? " 1" : " 0"));
    return soundOutput::instance().playFile(toQString(devicePath(file)), loop);
}

void speaker::stopRing()
{
    hostLog("ring", "stop");
    soundOutput::instance().stopFile();
}
