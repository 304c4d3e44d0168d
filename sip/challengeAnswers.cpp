#include "sip/challengeAnswers.h"
#include "sip/digest.h"
#include <algorithm>
#include <cstring>
#include <dlfcn.h>
#include <list>
#include <sofia-sip/auth_client.h>
#include <sofia-sip/msg_header.h>
#include <sofia-sip/msg_parser.h>
#include <vector>

namespace {

constexpr unsigned kMaxAnswers = 3; // before a reply of another kind; the stack itself sends no more

// Those of a header that are known. One line may have several: the stack takes the next one's kind and first
// parameter for a parameter of the one before.
class Challenges
{
public:
    explicit Challenges(const msg_auth_t* first)
    {
        for (const msg_auth_t* line = first; line; line = line->au_next)
            split(*line);
        m_all.remove_if([](const tagChallenge& each) { return !digest::isKnown(&each.head); });
        msg_auth_t* last = nullptr;
        for (tagChallenge& each : m_all) {
            each.head.au_next = nullptr;
            if (last)
                last->au_next = &each.head;
            last = &each.head;
        }
    }
    // Null where there is none.
    const msg_auth_t* first() const { return m_all.empty() ? nullptr : &m_all.front().head; }
    bool hasSha256(const std::string& realm) const
    {
        return std::any_of(m_all.begin(), m_all.end(), [&](const tagChallenge& each) {
            return digest::isSha256(&each.head) && digest::param(&each.head, "realm=") == realm;
        });
    }

private:
    struct tagChallenge
    {
        msg_auth_t head;
        std::string kind;
        std::vector<msg_param_t> params; // null at their end
    };

    void add(const msg_auth_t& line, const std::string& kind)
    {
        m_all.push_back({line, kind, {}});
        m_all.back().head.au_scheme = m_all.back().kind.c_str();
    }
    void split(const msg_auth_t& line)
    {
        add(line, line.au_scheme ? line.au_scheme : "");
        for (const msg_param_t* param = line.au_params; param && *param; ++param) {
            const char* text = *param;
            const size_t kind = strcspn(text, " \t=\"");
            if (text[kind] == ' ' || text[kind] == '\t') {
                close();
                add(line, std::string(text, kind));
                text += kind + strspn(text + kind, " \t");
            }
            m_all.back().params.push_back(text);
        }
        close();
    }
    void close()
    {
        m_all.back().params.push_back(nullptr);
        m_all.back().head.au_params = m_all.back().params.data();
    }

    std::list<tagChallenge> m_all; // which point into themselves
};

} // namespace

bool ChallengeAnswers::answer(nua_handle_t* handle, const sip_t* message)
{
    if (!message)
        return false;
    const auto* www = reinterpret_cast<const msg_auth_t*>(message->sip_www_authenticate);
    const auto* proxy = reinterpret_cast<const msg_auth_t*>(message->sip_proxy_authenticate);
    for (const msg_auth_t* first : {www, proxy}) {
        const Challenges known(first);
        for (const msg_auth_t* challenge = known.first(); challenge; challenge = challenge->au_next) {
            const std::string realm = digest::param(challenge, "realm=");
            if (!m_realm.empty() && realm != m_realm)
                continue;
            const std::string asked = (first == www ? "w" : "p") + realm;
            const bool isStrong = known.hasSha256(realm);
            if (!isStrong && m_strong.count(asked))
                continue;
            const bool isNew = m_answered.insert(asked).second;
            if ((!isNew && !digest::isStale(challenge)) || ++m_nAnswers > kMaxAnswers)
                continue;
            if (isStrong)
                m_strong.insert(asked);
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

void ChallengeAnswers::forget()
{
    reset();
    m_strong.clear();
}

// The stack sends nothing again before each challenge of a server has its answer. Its function is replaced
// here by itself, asked without those that are not known where a known one is among them.
extern "C" __attribute__((visibility("default"))) int
auc_challenge(auth_client_t** clients, su_home_t* home, msg_auth_t const* first, msg_hclass_t* answers)
{
    using Taker = int (*)(auth_client_t**, su_home_t*, msg_auth_t const*, msg_hclass_t*);
    static const auto take = reinterpret_cast<Taker>(dlsym(RTLD_NEXT, "auc_challenge"));
    Challenges known(first);
    return take(clients, home, known.first() ? known.first() : first, answers);
}
