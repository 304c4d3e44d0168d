#pragma once
// The real phone: its accounts are registered, and its calls made, by the SIP user agent, a process of its
// own that costs the calls when it dies, and the phone nothing. User-interface thread.
#include "host/services/phone/callsBackend.h"
#include "host/services/phone/sipMedia.h"
#include "support/host/message.h"
#include <QTimer>
#include <memory>

namespace sipWire {
class Reader;
}

class sipAccounts;
class sipCalls;
class sipLamps;
class sipLink;

class HX_HOST_API sipBackend : public callsBackend, public chMsgProcesser
{
public:
    enum AGENT {
        AGENT_OWN,    // "hxSip", which is started with the first account, and kept running
        AGENT_ANYBODY // whoever connects: a test
    };

    enum : int {
        LOOK_MS = 2000,   // between two looks at the phone's own address
        SILENT_MS = 4000, // a server that says nothing for so long is given up
        RETRY_MS = 2000,  // until a line is tried again, doubled each time
        RETRY_LAST_MS = 60000,
        OFFER_MS = 5000 // the time to answer another side's offer
    };

    explicit sipBackend(std::unique_ptr<sipMedia> media, AGENT agent = AGENT_OWN);
    ~sipBackend() override;
    // Hangs up and unregisters, and waits for that: at the end of the phone.
    void stop();

    void start(phoneEvents* events) override;
    tagAccountInfo account(int index) const override;
    int defaultAccount() const override;
    int dial(const QString& number, int account, const tagCallOptions& options) override;
    bool hasPstn() const override { return false; }
    bool hasOwnSound() const override { return true; }
    phoneLamps* lamps() override;

    int TryThreadMessage(msgObject& msg) override;

private:
    void startAgentIfWanted();
    void agentIsThere();
    void agentIsGone();
    void take(const sipWire::Reader& record);
    void takeStun(const sipWire::Reader& record);
    void lookAtNetwork();

    const AGENT m_eAgent;
    phoneEvents* m_pEvents = nullptr;
    std::unique_ptr<sipMedia> m_pMedia;
    std::unique_ptr<sipLink> m_pLink;
    std::unique_ptr<sipAccounts> m_pAccounts;
    std::unique_ptr<sipCalls> m_pCalls;
    std::unique_ptr<sipLamps> m_pLamps;
    QTimer m_look;
    uint32_t m_nAddress = 0; // of this phone, as it is on the wire; 0: it never had one
};
