#include "sip/callSetup.h"
#include "sip/registration.h"
#include "sip/sipAddress.h"
#include "sip/sipDialog.h"
#include <sofia-sip/sip_tag.h>

CallSetup::CallSetup(const tagSipStack& stack, const Registration& line, const tagSipDial& dial,
                     const tagCallOrigin& origin)
    : m_stack(stack), m_hops(line.hops()), m_target(sipAddress::target(dial.szTarget, line.server())),
      m_callId(sipDialog::newToken()), m_contact(line.contact()),
      m_transport(std::string("transport=") + line.transportName()), m_origin(origin), m_sdp(dial.szSdp)
{
    const bool isAnonymous = dial.bAnonymous != 0;
    m_from = isAnonymous ? "\"Anonymous\" <sip:anonymous@anonymous.invalid>" : line.ownAddress();
    m_from += ";tag=" + sipDialog::newToken().substr(0, 16);
    if (isAnonymous)
        m_identity = "P-Preferred-Identity: " + line.ownAddress();
}

nua_handle_t* CallSetup::invite(StackOwner* owner)
{
    const std::string to = sipAddress::inBrackets(m_target);
    nua_handle_t* handle = nua_handle(m_stack.pNua, owner, NUTAG_URL(m_target.c_str()),
                                      SIPTAG_TO_STR(to.c_str()), SIPTAG_FROM_STR(m_from.c_str()), TAG_END());
    if (!handle)
        return nullptr;
    const std::string hop = hasNext() ? m_hops[m_nNext] : "";
    ++m_nNext;
    const bool isHidden = !m_identity.empty();
    nua_invite(
        handle, TAG_IF(!hop.empty(), NUTAG_PROXY(hop.c_str())), NUTAG_AUTO302(0),
        NUTAG_M_USERNAME(m_contact.c_str()), NUTAG_M_PARAMS(m_transport.c_str()),
        SIPTAG_CALL_ID_STR(m_callId.c_str()), SIPTAG_CSEQ_STR("1 INVITE"),
        SIPTAG_CONTENT_TYPE_STR("application/sdp"), SIPTAG_PAYLOAD_STR(m_sdp.c_str()),
        TAG_IF(isHidden, SIPTAG_PRIVACY_STR("id")), TAG_IF(isHidden, SIPTAG_HEADER_STR(m_identity.c_str())),
        TAG_IF(!m_origin.replaces.empty(), SIPTAG_REPLACES_STR(m_origin.replaces.c_str())),
        TAG_IF(m_origin.bReplacesOnly, SIPTAG_REQUIRE_STR("replaces")),
        TAG_IF(!m_origin.referredBy.empty(), SIPTAG_REFERRED_BY_STR(m_origin.referredBy.c_str())), TAG_END());
    return handle;
}
