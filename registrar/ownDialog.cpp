#include "registrar/ownDialog.h"
#include "registrar/pbxText.h"
#include <sofia-sip/msg_header.h>
#include <sofia-sip/sip_header.h>
#include <sofia-sip/sip_tag.h>

namespace {

constexpr size_t kMostAddress = 512;

template <typename Header>
std::string valueOf(const Header* header)
{
    su_home_t home[1] = {SU_HOME_INIT(home)};
    const std::string text =
        pbxText::of(sip_header_as_string(home, reinterpret_cast<const sip_header_t*>(header)));
    su_home_deinit(home);
    return text;
}

} // namespace

OwnDialog::OwnDialog(nta_agent_t* agent, const std::string& place, nta_incoming_t* begun) : m_pAgent(agent)
{
    msg_t* message = nta_incoming_getrequest(begun);
    const sip_t* sip = sip_object(message);
    const std::string user = pbxText::of(sip->sip_request->rq_url->url_user);
    m_own = "sip:" + (user.empty() ? "" : user + "@") + place;
    m_ownTag = pbxText::of(nta_incoming_tag(begun, nullptr));
    m_remoteTag = pbxText::of(sip->sip_from->a_tag);
    m_callId = pbxText::of(sip->sip_call_id->i_id);
    m_local = valueOf(sip->sip_to) + ";tag=" + m_ownTag;
    m_remote = valueOf(sip->sip_from);
    for (const sip_record_route_t* each = sip->sip_record_route; each; each = each->r_next)
        m_route += (m_route.empty() ? "" : ",") + valueOf(each);
    follow(*sip);
    msg_destroy(message);
}

bool OwnDialog::holds(const sip_t& request) const
{
    return m_callId == pbxText::of(request.sip_call_id->i_id) &&
           m_ownTag == pbxText::of(request.sip_to->a_tag) &&
           m_remoteTag == pbxText::of(request.sip_from->a_tag);
}

void OwnDialog::follow(const sip_t& request)
{
    m_nRemoteSequence = request.sip_cseq->cs_seq;
    const sip_contact_t* contact = request.sip_contact;
    const std::string target = contact ? pbxText::address(contact->m_url) : "";
    if (!target.empty() && target.size() <= kMostAddress)
        m_target = target;
}

msg_t* OwnDialog::request(const char* method)
{
    msg_t* message = nta_msg_create(m_pAgent, 0);
    const std::string line = std::string(method) + " " + m_target + " SIP/2.0";
    const std::string sequence = std::to_string(++m_nSequence) + " " + method;
    const std::string contact = "<" + m_own + ">";
    const int added = sip_add_tl(message, sip_object(message), SIPTAG_REQUEST_STR(line.c_str()),
                                 SIPTAG_FROM_STR(m_local.c_str()), SIPTAG_TO_STR(m_remote.c_str()),
                                 SIPTAG_CALL_ID_STR(m_callId.c_str()), SIPTAG_CSEQ_STR(sequence.c_str()),
                                 SIPTAG_CONTACT_STR(contact.c_str()), SIPTAG_MAX_FORWARDS_STR("70"),
                                 TAG_IF(!m_route.empty(), SIPTAG_ROUTE_STR(m_route.c_str())), TAG_END());
    if (added >= 0)
        return message;
    msg_destroy(message);
    return nullptr;
}
