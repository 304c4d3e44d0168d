#pragma once
// The other side of a call asks this one to call somebody (RFC 3515), and hears how that goes. Unless it is
// accepted, it is declined at the latest when it goes.
#include "sip/savedRequest.h"
#include <memory>
#include <string>

class Referral
{
public:
    Referral(const tagSipStack& stack, const tagStackEvent& event);
    ~Referral();

    // Why there is nothing to call; 0 where there is.
    uint32_t problem() const { return m_nProblem; }
    // An address.
    const std::string& target() const { return m_target; }
    // The header that names the call to replace; empty for none.
    const std::string& replaces() const { return m_replaces; }
    const std::string& referredBy() const { return m_referredBy; }

    // Not answered yet.
    bool isWaiting() const { return m_pRequest != nullptr; }
    // It is told how the call goes that came of it.
    bool isTelling() const { return m_bTelling; }
    // Nothing is told of it any more.
    bool isOver() const { return !isWaiting() && !m_bTelling; }
    void refuse(uint32_t status);
    void accept();
    // Of the call that came of it, 100 to 699; a final status is the last one.
    void tell(uint32_t status, const std::string& phrase);

private:
    void read(const sip_t& message);
    void respond(uint32_t status);

    nua_handle_t* const m_pHandle;
    std::unique_ptr<SavedRequest> m_pRequest;
    uint32_t m_nProblem = 0;
    bool m_bTelling = false;
    std::string m_event;
    std::string m_target;
    std::string m_replaces;
    std::string m_referredBy;
};
