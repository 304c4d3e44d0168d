// Tones of a call that go as INFO, where the sound has no room for them.
#include "sip/phoneLink.h"
#include "sip/sipCall.h"
#include "sip/sipWire.h"
#include <sofia-sip/sip_tag.h>
#include <string>
#include <utility>

void SipCall::sendTone(char tone, uint32_t ms)
{
    if (m_eStep != STEP_TALKING)
        return;
    m_tones.push_back({tone, ms});
    if (m_tones.size() == 1)
        sendNextTone();
}

// One after the other, so that they keep their order when one of them is sent again.
void SipCall::sendNextTone()
{
    if (m_tones.empty() || m_eStep != STEP_TALKING)
        return;
    const tagTone& tone = m_tones.front();
    const char* type = m_bBareTones ? "application/dtmf" : "application/dtmf-relay";
    const std::string body = m_bBareTones ? std::string(1, tone.cTone)
                                          : std::string("Signal=") + tone.cTone +
                                                "\r\nDuration=" + std::to_string(tone.nMs) + "\r\n";
    m_offer.requestGoes();
    nua_info(m_pHandle, SIPTAG_CONTENT_TYPE_STR(type), SIPTAG_PAYLOAD_STR(body.c_str()), TAG_END());
}

// Who does not read tones as they are written here is sent the bare keys from then on.
void SipCall::onToneReply(const tagStackEvent& event)
{
    if (isGone(event)) {
        giveUp(event);
        return;
    }
    if (event.nStatus < 200 || m_tones.empty())
        return;
    if (event.nStatus == 415 && !std::exchange(m_bTonesRefused, true)) {
        m_bBareTones = true;
    } else {
        m_tones.pop_front();
        if (event.nStatus >= 300 && !std::exchange(m_bTonesTold, true))
            m_stack.pPhone->tell(sipWire::make<tagSipHead>(SIP_TONES_REFUSED, m_nId));
    }
    sendNextTone();
}
