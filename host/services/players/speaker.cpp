#include "host/services/players/speaker.h"
#include "host/services/players/filmSound.h"
#include "host/services/players/soundOutput.h"
#include "host/services/system/hostLog.h"
#include "support/host/registry.h"
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
    if (isCallClaimed())
        m_nOwnVolume = inRange(volume);
    else
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
    if (!m_bCallRings)
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
    const bool wasNewest = newestClaim() == info && info;
    m_claims.removeAll(info);
    if (wasNewest)
        applyNewestClaim();
}

// Of a call, if there is one.
const voiceInfo* speaker::newestClaim() const
{
    for (auto claim = m_claims.rbegin(); claim != m_claims.rend(); ++claim) {
        if ((*claim)->nType == VOICE_CALL)
            return *claim;
    }
    return m_claims.isEmpty() ? nullptr : m_claims.last();
}

void speaker::applyNewestClaim()
{
    const voiceInfo* newest = newestClaim();
    const int level = newest ? inRange(newest->nVolume) : m_nOwnVolume;
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
    return !m_bCallRings && soundOutput::instance().playFile(path, loop);
}

void speaker::stopRing()
{
    hostLog("ring", "stop");
    if (!m_bCallRings)
        soundOutput::instance().stopFile();
}

void speaker::ringForCall(const QStringList& files)
{
    m_bCallRings = true;
    m_rings = files;
    soundOutput::instance().setMute(false);
    ringNext();
}

void speaker::ringNext()
{
    while (!m_rings.isEmpty()) {
        const QString file = m_rings.takeFirst();
        hostLog("ring", "call " + file);
        if (soundOutput::instance().playFile(file, true))
            return;
    }
}

void speaker::endCallRing()
{
    if (!m_bCallRings)
        return;
    m_bCallRings = false;
    hostLog("ring", "call stop");
    soundOutput::instance().stopFile();
    soundOutput::instance().setMute(m_bMute);
}

void speaker::fileFailed()
{
    if (m_bCallRings)
        ringNext();
}
