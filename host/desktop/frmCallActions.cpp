// What is done in a call by the round buttons.
#include "host/desktop/callAction.h"
#include "host/desktop/callChoice.h"
#include "host/desktop/frmCall.h"
#include "host/desktop/frmDial.h"
#include "host/services/phone/phoneService.h"
#include "support/host/api.h"
#include "support/host/language.h"

void frmCall::connectActions()
{
    using Slot = void (frmCall::*)();
    const Slot acts[CALL_ACTION_COUNT] = {&frmCall::on_click_Mute,     &frmCall::on_click_Hold,
                                          &frmCall::on_click_Video,    &frmCall::on_click_Keys,
                                          &frmCall::on_click_Transfer, &frmCall::on_click_AddCall,
                                          &frmCall::on_click_Join,     &frmCall::on_click_Swap};
    for (int i = 0; i < CALL_ACTION_COUNT; ++i)
        connect(m_actions[CALL_ACTION(i)], &callAction::clicked, this, acts[i]);
}

void frmCall::showActions()
{
    const QList<tagCall> calls = phoneService::instance().calls();
    const bool isJoined = m_call.nJoined != 0;
    const auto set = [this](CALL_ACTION action, const char* word, bool on = false, bool can = true) {
        m_actions.set(action, qTranslate(word), on, can && talks() && m_eLayout != CALL_LAYOUT_FULL);
    };
    set(CALL_ACTION_MUTE, m_call.bMuted ? HX_TR("Unmute") : HX_TR("Mute"), m_call.bMuted);
    set(CALL_ACTION_HOLD, m_call.bHeld ? HX_TR("Resume") : HX_TR("Hold"), m_call.bHeld);
    // Also where nothing comes from the other side: whoever is seen knows it.
    const int own = streams().nOwnPicture;
    m_actions.set(CALL_ACTION_VIDEO, qTranslate(HX_TR_NOTE("Video", "in a call"), "in a call"), own > 0,
                  talks() && m_eLayout != CALL_LAYOUT_FULL &&
                      (own > 0 || (own == 0 && m_call.options.bVideo)));
    set(CALL_ACTION_KEYS, HX_TR("Keys"), m_bPad);
    set(CALL_ACTION_TRANSFER, HX_TR("Transfer"));
    set(CALL_ACTION_ADD, HX_TR("Add call"));
    set(CALL_ACTION_JOIN, isJoined ? HX_TR("Split") : HX_TR("Conference"), isJoined,
        isJoined || callToJoin(calls, m_call).nId != 0);
    set(CALL_ACTION_SWAP, HX_TR("Swap"), false, callToSwap(calls, m_call).nId != 0);
    m_actions.layOut();
}

void frmCall::on_click_Hold()
{
    if (!m_presses.takes())
        return;
    phoneService::instance().rules().setHeld(m_call.nId, !m_call.bHeld);
}

void frmCall::on_click_Video()
{
    if (!m_presses.takes())
        return;
    phoneService::instance().rules().setCamera(m_call.nId, streams().nOwnPicture <= 0);
}

void frmCall::on_click_Forward()
{
    if (!m_presses.takes())
        return;
    if (isAsked())
        dialScreenOpenFor(DIAL_FORWARD, m_call.nId);
}

void frmCall::on_click_Transfer()
{
    if (!m_presses.takes())
        return;
    if (talks())
        dialScreenOpenFor(DIAL_TRANSFER, m_call.nId);
}

void frmCall::on_click_Keys()
{
    if (!m_presses.takes())
        return;
    showPad(!m_bPad);
}

void frmCall::on_click_AddCall()
{
    if (!m_presses.takes())
        return;
    dialScreenOpen();
}

void frmCall::on_click_Join()
{
    if (!m_presses.takes())
        return;
    callRules& rules = phoneService::instance().rules();
    if (m_call.nJoined)
        rules.split(m_call.nId);
    else if (!rules.join(m_call.nId, callToJoin(rules.calls(), m_call).nId))
        tellForAMoment([] { return qTranslate(HX_TR("These calls cannot be connected")); }, m_call.nId);
    showOthers();
}

// Whoever is taken back puts the others on hold, and is shown then.
void frmCall::on_click_Swap()
{
    if (!m_presses.takes())
        return;
    callRules& rules = phoneService::instance().rules();
    rules.setHeld(callToSwap(rules.calls(), m_call).nId, false);
}
