#pragma once
// The calls at "app_hxMedia": what the phone wants of them, what is agreed with the other sides, and how they
// fare. One thread; the sounds have theirs.
#include "players/callDesk.h"
#include "players/deviceSound.h"
#include "players/filmElements.h"
#include "support/host/message.h"
#include "support/host/player.h"
#include <QTimer>

class callService : public chMsgProcesser
{
public:
    enum : int { MAX_CALLS = 8, LOOK_MS = 1000 };

    callService();
    // Takes the calls' messages, and hears of the volume, which is the sessions' too: to be made before them.
    int TryThreadMessage(msgObject& msg) override;

private:
    struct tagCallEntry
    {
        std::unique_ptr<callNegotiation> negotiation;
        bool bAgreed = false; // a new agreement that the streams do not know yet
        CALL_STREAMS told = {};
    };
    using Calls = std::map<int, tagCallEntry>;

    void describe(const msgObject& msg);
    void agree(const msgObject& msg);
    void setMuted(const msgObject& msg);
    void sendTone(const msgObject& msg);
    void end(int call);
    tagCallEntry* entryFor(int call, const CALL_WISH& wish);
    void reply(const msgObject& msg, const QByteArray& description) const;

    // The streams are built when the parts are there.
    void apply();
    void look();
    void tell(int call, tagCallEntry& entry);

    deviceSound m_sound;
    callDesk m_desk; // ends before the sound does
    Calls m_calls;
    filmElements m_elements;
    QTimer m_open;
    QTimer m_look;
};
