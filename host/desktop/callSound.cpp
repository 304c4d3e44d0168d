#include "host/desktop/callSound.h"
#include "host/binding/mediaFiles.h"
#include "host/services/phone/phoneService.h"
#include "host/services/players/speaker.h"
#include "support/file/path.h"
#include "support/host/registry.h"
#include "support/host/task.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include <algorithm>

namespace {

const char* const kUserFile = "/rundata/config/user/user.ini";
const char* const kVolume = "Volume";
const char* const kRingVolume = "nRing";
const char* const kTalkVolume = "nTalkOutput";
const char* const kMediaTable = "/phone/resource/mediafile.xml";
const char* const kFactoryTone = "/phone/resource/sysdata/ring/Classic.wav";
constexpr int kDefaultRing = 20;
constexpr int kDefaultTalk = 50;
constexpr int kLoudest = 100;
constexpr int kWaitingTone = 'D'; // for who talks already

int ringVolume()
{
    return nuxGetRegistryInt(kUserFile, kVolume, kRingVolume, kDefaultRing);
}

int talkVolume()
{
    return nuxGetRegistryInt(kUserFile, kVolume, kTalkVolume, kDefaultTalk);
}

// The one that is set; without one, the first of the phone's list. The factory's stands in for what cannot be
// played.
QStringList ringTones()
{
    chString tone = NUX_SubClass::nuxGetRegistryString(kUserFile, "Ring", "strRingFile", "");
    if (tone.IsEmpty() || !pathFileExist(tone)) {
        const QList<tagFileOfType> files = mediaFilesOf(kMediaTable, "sound");
        tone = files.isEmpty() ? chString() : files.first().strPath;
    }
    return tone.IsEmpty() ? QStringList{kFactoryTone} : QStringList{toQString(tone), kFactoryTone};
}

class VolumeAction : public taskAction
{
public:
    VolumeAction(const char* key, int volume) : m_szKey(key), m_nVolume(volume) {}
    int exec() override
    {
        if (!nuxSetRegistryInt(kUserFile, kVolume, m_szKey, m_nVolume))
            nuxTrace(TRACE_NOTE, "The volume %s cannot be stored", m_szKey);
        return 1;
    }

private:
    const char* m_szKey;
    int m_nVolume;
};

} // namespace

callSound::callSound() : m_claim(VOICE_CALL, 0, 0)
{
    phoneService::instance().addCallListener([this](const tagCall& call) { onCall(call); });
}

callSound& callSound::instance()
{
    static callSound* sound = new callSound;
    return *sound;
}

// Who talks, or waits for somebody to answer, is not rung at.
callSound::STATE callSound::wantedState()
{
    STATE state = QUIET;
    for (const tagCall& call : phoneService::instance().calls()) {
        if (!call.bIncoming || call.eState == CALL_TALKING)
            return TALKING;
        state = RINGING;
    }
    return state;
}

void callSound::onCall(const tagCall& call)
{
    const bool comesIn = call.bIncoming && call.eState == CALL_RINGING && call.nId > m_nLastIncoming;
    if (comesIn) {
        m_nLastIncoming = call.nId;
        m_bSilenced = false;
    }
    const STATE wanted = wantedState();
    if (wanted != m_eState) {
        leave();
        enter(wanted);
    } else if (comesIn && m_eState == TALKING) {
        speaker::instance().playTone(kWaitingTone);
    } else if (comesIn && m_eState == RINGING && !speaker::instance().isCallRinging()) {
        ring();
    }
}

void callSound::enter(STATE state)
{
    m_eState = state;
    if (state == QUIET)
        return;
    m_claim.nVolume = state == RINGING ? ringVolume() : talkVolume();
    speaker::instance().claim(&m_claim);
    if (state == RINGING)
        ring();
}

void callSound::leave()
{
    storeVolume();
    speaker::instance().endCallRing();
    speaker::instance().unclaim(&m_claim);
    m_eState = QUIET;
}

void callSound::ring()
{
    speaker::instance().ringForCall(ringTones());
}

void callSound::silence()
{
    m_bSilenced = true;
    speaker::instance().endCallRing();
}

void callSound::changeVolume(int step)
{
    if (m_eState == QUIET)
        return;
    m_claim.nVolume = std::clamp(dev_get_output_volume() + step, 0, kLoudest);
    m_bChanged = true;
    speaker::instance().claim(&m_claim);
}

// A disk is nothing to wait for while a call changes.
void callSound::storeVolume()
{
    if (!m_bChanged)
        return;
    m_bChanged = false;
    VolumeAction* action = new VolumeAction(m_eState == RINGING ? kRingVolume : kTalkVolume, m_claim.nVolume);
    action->AddRef();
    action->SetCreatFlag(1);
    PostAction(*action);
    action->DestroyObject();
}

int callSound::TryThreadMessage(msgObject& msg)
{
    if (msg.message == CONFIG_MSG_BCAST_CHANGED && msg.wParam == CONFIG_CHANGED_SOUND)
        takeSettings();
    return 0;
}

void callSound::takeSettings()
{
    m_bChanged = false;
    if (m_eState == QUIET) {
        dev_set_output_volume(talkVolume());
        return;
    }
    m_claim.nVolume = m_eState == RINGING ? ringVolume() : talkVolume();
    speaker::instance().claim(&m_claim);
    if (m_eState == RINGING && !m_bSilenced)
        ring();
}
