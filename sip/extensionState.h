#pragma once
// What is known of an extension by the documents of one subscription, whole ones and those that tell a part.
#include "sip/dialogInfo.h"
#include "sip/sipRecords.h"
#include "sip/stateVersion.h"
#include <map>

class ExtensionState
{
public:
    // A document of the subscription. False when the whole state should be asked for; what is damaged leaves
    // nothing known.
    bool take(const char* bytes, size_t size);
    // The server has no document, and no objection: where nothing is known, nobody has a call there.
    void takeNothing() { m_bKnown = true; }
    // Another subscription: what is known holds until its first document.
    void begin() { m_version.reset(); }
    void forget();

    SIP_LAMP_STATE lamp() const;
    // The call that rings there; null where none does.
    const tagDialog* ringing() const;

private:
    StateVersion m_version;
    bool m_bKnown = false;
    std::map<std::string, tagDialog> m_dialogs;
};
