#include "sip/extensionState.h"

namespace {

// Who does not tell the direction of an early call means that the phone rings.
bool isRinging(const tagDialog& dialog)
{
    if (dialog.eState == DIALOG_STATE::CONFIRMED || dialog.eState == DIALOG_STATE::TERMINATED)
        return false;
    if (dialog.eDirection == DIALOG_DIRECTION::UNKNOWN)
        return dialog.eState == DIALOG_STATE::EARLY;
    return dialog.eDirection == DIALOG_DIRECTION::IN;
}

} // namespace

void ExtensionState::forget()
{
    m_version.reset();
    m_dialogs.clear();
    m_bKnown = false;
}

bool ExtensionState::take(const char* bytes, size_t size)
{
    tagDialogInfo info;
    if (!dialogInfo::read(bytes, size, info)) {
        forget();
        return false;
    }
    const StateVersion::VERDICT verdict = m_version.judge(info.nVersion, info.bWhole);
    if (verdict == StateVersion::VERDICT::LEAVE_AND_ASK)
        return false;
    if (info.bWhole)
        m_dialogs.clear();
    for (const tagDialog& dialog : info.dialogs) {
        if (dialog.eState == DIALOG_STATE::TERMINATED)
            m_dialogs.erase(dialog.id);
        else
            m_dialogs[dialog.id] = dialog;
    }
    m_bKnown = true;
    if (m_dialogs.size() > dialogInfo::DIALOGS_MAX) {
        forget();
        return false;
    }
    return verdict == StateVersion::VERDICT::TAKE;
}

SIP_LAMP_STATE ExtensionState::lamp() const
{
    if (!m_bKnown)
        return SIP_LAMP_UNKNOWN;
    if (ringing())
        return SIP_LAMP_RINGING;
    return m_dialogs.empty() ? SIP_LAMP_IDLE : SIP_LAMP_BUSY;
}

const tagDialog* ExtensionState::ringing() const
{
    for (const auto& each : m_dialogs) {
        if (isRinging(each.second))
            return &each.second;
    }
    return nullptr;
}
