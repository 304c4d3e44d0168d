#pragma once
// The phone's tones on the loudspeaker, played by the media server. User-interface thread.
#include "host/services/players/soundOutput.h"
#include "support/host/message.h"

class HX_HOST_API playerSound : public soundOutput, public chMsgProcesser
{
public:
    bool playFile(const QString& file, bool loop) override;
    void stopFile() override;
    void playTone(int key) override;
    void setMute(bool mute) override;
    // A server that was started anew goes on with what sounds; one that cannot play a file says so.
    int TryThreadMessage(msgObject& msg) override;

private:
    void sendFile() const;

    QString m_strFile; // goes round and round; empty: none does
    unsigned int m_nPlay = 0;
    bool m_bMute = false;
};
