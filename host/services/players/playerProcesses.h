#pragma once
// The two player programs, which are started with the phone and kept running. User-interface thread.
#include "host/services/players/keptProcess.h"
#include "support/host/message.h"
#include "support/host/player.h"

class HX_HOST_API playerProcess : public keptProcess, public chMsgProcesser
{
public:
    enum : int {
        PING_MS = 5000,    // between questions whether it is alive
        PINGS_LOST_MAX = 2 // one that has answered none since is ended with the next
    };

    // program: its bare name.
    playerProcess(const QString& program, QObject* parent);
    // From its start on: one that does not answer any more is ended, and started again as one that died.
    void watch(PLAYER_PROGRAM program);
    int TryThreadMessage(msgObject& msg) override;

private:
    void ping();

    const QString m_strThread;
    PLAYER_PROGRAM m_eProgram = PLAYER_MOVIE;
    QTimer m_ping;
    int m_nPings = 0; // since it has answered
    qint64 m_nUp = 0; // the process that has told that it is up
};

// Starts both; they end with the application object.
HX_HOST_API void playerProcessesStart();
