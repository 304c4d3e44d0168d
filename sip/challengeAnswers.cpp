#include "sip/challengeAnswers.h"
#include "sip/digest.h"
#include <sofia-sip/msg_header.h>
#include <sofia-sip/msg_parser.h>

namespace {

constexpr unsigned kMaxAnswers = 4; // before a reply of another kind

} // namespace

bool ChallengeAnswers::answer(nua_handle_t* handle, const sip_t* message)
{
    if (!message)
        return false;
    const auto* www = reinterpret_cast<const msg_auth_t*>(message->sip_www_authenticate);
    const auto* proxy = reinterpret_cast<const msg_auth_t*>(message->sip_proxy_authenticate);
    for (const msg_auth_t* first : {www, proxy}) {
        for (const msg_auth_t* challenge = first; challenge; challenge = challenge->au_next) {
            const std::string realm = digest::param(challenge, "realm=");
            if (!digest::isKnown(challenge) || (!m_realm.empty() && realm != m_realm))
                continue;
            const bool isNew = m_answered.insert((first == www ? "w" : "p") + realm).second;
            if ((!isNew && !digest::isStale(challenge)) || ++m_nAnswers > kMaxAnswers)
                continue;
            const char* spelled = msg_params_find(challenge->au_params, "realm=");
            const std::string credentials =
                std::string("Digest:") + (spelled ? spelled : "") + ":" + m_key + ":-";
            nua_authenticate(handle, NUTAG_AUTH(credentials.c_str()), TAG_END());
            return true;
        }
    }
    return false;
}

void ChallengeAnswers::reset()
{
    m_answered.clear();
    m_nAnswers = 0;
}
