#pragma once
// Keeps the media server as loud as the phone is set. User-interface thread.
#include "support/host/message.h"

class HX_HOST_API filmSound : public chMsgProcesser
{
public:
    // From now on the server is told, also one that starts later. A host without the players does not call
    // it.
    static void start();
    static void volumeChanged();
    static void muteChanged();

    int TryThreadMessage(msgObject& msg) override;

private:
    filmSound() = default;
    static void tell(unsigned int message, unsigned int value);

    static filmSound* s_pStarted;
};
