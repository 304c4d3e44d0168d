#pragma once
// Sets the phone's clock by the time server of the page of date and time: at the start, when the settings of
// date and time change, and every hour. An answer that cannot be used changes nothing and is traced.
// User-interface thread.
#include "host/services/clock/sntpClient.h"
#include "support/host/message.h"
#include <QDeadlineTimer>
#include <QHash>

class HX_HOST_API networkTime : public QObject, public chMsgProcesser
{
    Q_OBJECT
public:
    enum : int {
        START_MS = 1000, // the home screen comes first
        HOUR_MS = 60 * 60 * 1000,
        SETTLE_MS = 250,    // after a change of the settings: several in a row are one
        RETRY_MS = 15000,   // after a failure, twice as long each time up to an hour
        NETWORK_MS = 15000, // between two looks for a network
        PORT = 123
    };

    // The one client; made at the first call, asleep until start().
    static networkTime& instance();
    // After the boot.
    void start();
    int TryThreadMessage(msgObject& msg) override;

private:
    networkTime();
    void look();
    bool readServer();
    QString serverAndPort() const;
    void onAnswer(qint64 utcMs);
    void onFailure(const QByteArray& why, bool isKiss);

    sntpClient m_client{this};
    QTimer m_next;
    QString m_strServer;
    quint16 m_nPort = 0;
    // Servers that asked for it are left alone until then, whatever is saved meanwhile.
    QHash<QString, QDeadlineTimer> m_leftAlone;
    int m_nRetryMs = RETRY_MS;
    bool m_bStarted = false;
};
