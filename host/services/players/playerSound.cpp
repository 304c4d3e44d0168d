#include "host/services/players/playerSound.h"
#include "host/services/players/speaker.h"
#include "support/host/player.h"

namespace {

chThreadBase* server()
{
    return msgGetThreadByName("app_hxMedia");
}

void sendPlay(const QString& file, bool loop, unsigned int number)
{
    const QByteArray path = file.toUtf8();
    msgPostMsgToThreadEx(server(), MEDIA_MSG_TONE_PLAY, loop, number, int(path.size()) + 1, path.constData());
}

} // namespace

bool playerSound::playFile(const QString& file, bool loop)
{
    if (!soundOutput::playFile(file, loop)) {
        stopFile();
        return false;
    }
    m_strFile = loop ? file : QString();
    sendPlay(file, loop, ++m_nPlay);
    return true;
}

void playerSound::stopFile()
{
    m_strFile.clear();
    ++m_nPlay;
    msgPostMsgToThread(server(), MEDIA_MSG_TONE_STOP, 0, 0);
}

void playerSound::playTone(int key)
{
    msgPostMsgToThread(server(), MEDIA_MSG_TONE_KEY, unsigned(key), 0);
}

void playerSound::setMute(bool mute)
{
    m_bMute = mute;
    msgPostMsgToThread(server(), MEDIA_MSG_TONE_MUTE, mute, 0);
}

int playerSound::TryThreadMessage(msgObject& msg)
{
    if (msg.message == PLAYER_MSG_UP && msg.wParam == PLAYER_MEDIA) {
        setMute(m_bMute);
        if (!m_strFile.isEmpty())
            sendPlay(m_strFile, true, m_nPlay);
        return 0;
    }
    if (msg.message != MEDIA_MSG_TONE_FAILED)
        return 0;
    if (msg.lParam == m_nPlay)
        speaker::instance().fileFailed();
    return 1;
}
