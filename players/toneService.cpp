#include "players/toneService.h"
#include "host/services/players/filmFile.h"
#include "players/keyTone.h"
#include "players/playerRecords.h"
#include "support/host/player.h"
#include "support/host/trace.h"

namespace {

void refuse(const msgObject& msg, const char* fault)
{
    nuxTrace(TRACE_NOTE, "message 0x%x of %d bytes is refused: %s", msg.message, msg.GetExtraSize(), fault);
}

void tellFailed(unsigned int number)
{
    msgPostMsgToThread(msgGetThreadByName("app_hxPhone"), MEDIA_MSG_TONE_FAILED, 0, number);
}

} // namespace

int toneService::TryThreadMessage(msgObject& msg)
{
    switch (msg.message) {
    case MEDIA_MSG_TONE_PLAY:
        playFile(msg);
        return 1;
    case MEDIA_MSG_TONE_STOP:
        m_file.reset();
        return 1;
    case MEDIA_MSG_TONE_KEY:
        playKey(msg);
        return 1;
    case MEDIA_MSG_TONE_MUTE:
        setSound(m_nVolume, msg.wParam != 0);
        return 1;
    case MEDIA_MSG_VOLUME:
        if (msg.wParam <= soundVolume::LOUDEST)
            setSound(int(msg.wParam), m_bMute);
        return 0;
    default:
        return 0;
    }
}

void toneService::setSound(int volume, bool mute)
{
    m_nVolume = volume;
    m_bMute = mute;
    for (toneStream* tone : {m_file.get(), m_key.get()}) {
        if (tone)
            tone->setVolume(volume, mute);
    }
}

void toneService::playFile(const msgObject& msg)
{
    QByteArray path;
    if (const char* fault = playerRecords::readPath(msg.GetExtraData(), msg.GetExtraSize(), path)) {
        refuse(msg, fault);
        return;
    }
    m_file.reset();
    const unsigned int number = msg.lParam;
    QByteArray file;
    tagFileStat stat;
    if (!filmFileFind(path, file, stat)) {
        tellFailed(number);
        return;
    }
    m_file = std::make_unique<toneStream>(path, [this, number](bool failed) {
        m_file.reset();
        if (failed)
            tellFailed(number);
    });
    m_file->setVolume(m_nVolume, m_bMute);
    if (m_file->startFile(file, msg.wParam != 0))
        return;
    m_file.reset();
    tellFailed(number);
}

void toneService::playKey(const msgObject& msg)
{
    const std::vector<float> samples = keyTone(int(msg.wParam), toneStream::SAMPLE_RATE);
    if (samples.empty()) {
        refuse(msg, "there is no such key");
        return;
    }
    m_key = std::make_unique<toneStream>("tone", [this](bool) { m_key.reset(); });
    m_key->setVolume(m_nVolume, m_bMute);
    if (!m_key->startSamples(samples))
        m_key.reset();
}
