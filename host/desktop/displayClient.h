#pragma once
// Keeps the signage client in step with its switch and with the network: starts it by registering this
// display at its server, again and again until the server has answered, and ends it when it is switched off.
// User-interface thread.
#include "support/host/registry.h"
#include <QElapsedTimer>
#include <QTimer>

class displayClient : public qRegistryNotify
{
    Q_OBJECT
public:
    enum : int {
        LOOK_MS = 5000,       // for the network
        RETRY_MS = 60000,     // between requests that got no good answer
        RENEW_MS = 10 * 60000 // afterwards: the server may have lost the display
    };

    // The one client; made at the first call, asleep until start().
    static displayClient& instance();
    // After the boot.
    void start();
    bool isEnabled() const { return m_bEnabled; }

signals:
    void enabledChanged(bool enabled);

protected:
    void OnRegistryChanged(HREGISTRY section) override;

private:
    displayClient();
    void look();
    void setEnabled(bool enabled);
    void request();
    static bool isAnswerGood();

    QTimer m_look;
    QElapsedTimer m_asked; // since the last request; not valid when one is due at once
    bool m_bStarted = false;
    bool m_bEnabled = false;
};
