#pragma once
// What the phone wants of calls, as records for the SIP user agent. Calls are named by their ids there; one
// that has none yet is told nothing of. User-interface thread.
#include "host/services/phone/sipLink.h"
#include <QByteArray>

class sipOrders
{
public:
    // The link outlives it.
    explicit sipOrders(sipLink& link) : m_link(link) {}

    // Whether a number or an address reaches the agent whole.
    static bool fits(const QByteArray& target);

    struct tagDial
    {
        int nLine = 0;
        bool bAnonymous = false;
        uint32_t nReferrer = 0; // the call whose other side has asked for this one
        QByteArray target;
        QByteArray offer;
        QList<QByteArray> forwardedBy; // as targets, the last one last
    };
    void dial(uint32_t call, const tagDial& dial);
    // Takes the call that rings at the target.
    void pickUp(uint32_t call, const tagDial& dial);
    // SIP_RING, SIP_ANSWER, SIP_MEDIA.
    void media(SIP_RECORD kind, uint32_t call, const QByteArray& sdp);
    // SIP_REFUSE, SIP_HANG_UP.
    void status(SIP_RECORD kind, uint32_t call, uint32_t status, uint32_t warning = 0);
    // SIP_DEFLECT, SIP_TRANSFER: false for a target that does not fit.
    bool target(SIP_RECORD kind, uint32_t call, const QByteArray& target);
    void connect(uint32_t call, uint32_t other);
    void tone(uint32_t call, QChar tone, int ms);
    // What the other side offers cannot be answered at present.
    void noMedia(uint32_t call);

private:
    sipLink& m_link;
};
