#include "registrar/pbx.h"
#include "registrar/pbxText.h"
#include <algorithm>
#include <csignal>
#include <sofia-sip/nta_stateless.h>
#include <sofia-sip/nta_tag.h>
#include <sofia-sip/sip_header.h>
#include <sofia-sip/sip_status.h>
#include <sofia-sip/sip_tag.h>
#include <sofia-sip/sip_util.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace {

constexpr unsigned kLargestUdp = 65535;
constexpr uint32_t kSweepMs = 1000;
constexpr uint32_t kSilentMs = 2000; // by which the times of connections are measured
constexpr const char* kMethods =
    "INVITE, ACK, BYE, CANCEL, OPTIONS, REGISTER, SUBSCRIBE, NOTIFY, REFER, INFO, UPDATE, PRACK, MESSAGE";

bool isForPhones(sip_method_t method)
{
    switch (method) {
    case sip_method_invite:
    case sip_method_refer:
    case sip_method_message:
    case sip_method_info:
    case sip_method_notify:
        return true;
    default:
        return false;
    }
}

// As the other side shows it.
std::string displayOf(const sip_from_t& from)
{
    const std::string name = pbxText::of(from.a_display);
    return name.size() >= 2 && name.front() == '"' ? name.substr(1, name.size() - 2) : name;
}

} // namespace

Pbx::Pbx(const AccountBook& accounts)
    : m_accounts(accounts), m_root(su_root_create(nullptr), su_root_destroy),
      m_calls([this](const std::string& user) { m_events.userChanged(user, pbxNow()); }),
      m_events(accounts, m_calls,
               [this](const std::string& user) { return !m_contacts->addresses(user).empty(); }),
      m_sweep(m_root.get())
{
    su_root_threading(m_root.get(), 0);
    m_pbx.pRoot = m_root.get();
    m_pbx.pCalls = &m_calls;
    m_pbx.unanswered = [this](const std::string& user) {
        if (m_accounts.find(user))
            m_events.addMessage(user, pbxNow());
    };
}

Pbx::~Pbx()
{
    m_forwarded.clear();
    m_mail.clear();
    m_events.attach(nullptr, "", 0);
    if (m_pbx.pAgent)
        nta_agent_destroy(m_pbx.pAgent);
    if (m_nSignals >= 0)
        close(m_nSignals);
}

bool Pbx::open(const tagPbxSetup& setup)
{
    takeSignals();
    const std::string host = setup.host.find(':') == std::string::npos ? setup.host : "[" + setup.host + "]";
    const std::string url = "sip:" + host + ":" + (setup.nPort ? std::to_string(setup.nPort) : "*");
    // A proxy, no phone: what belongs to no transaction comes here, and nothing is answered by itself.
    m_pbx.pAgent = nta_agent_create(m_pbx.pRoot, URL_STRING_MAKE(url.c_str()), onMessage, this, NTATAG_UA(0),
                                    NTATAG_CANCEL_487(0), NTATAG_UDP_MTU(kLargestUdp),
                                    NTATAG_MAXSIZE(MAX_MESSAGE), TAG_END());
    const sip_via_t* via = m_pbx.pAgent ? nta_agent_via(m_pbx.pAgent) : nullptr;
    if (!via)
        return false;
    m_pbx.place = host + ":" + (via->v_port ? via->v_port : "5060");
    m_pbx.nRingMs = setup.nRingMs;
    m_contacts = std::make_unique<ContactBook>(m_pbx.place, setup.nMostSeconds);
    m_passwords = std::make_unique<PasswordCheck>(m_accounts, host, setup.bSha256);
    m_events.attach(m_pbx.pAgent, m_pbx.place, setup.nMostSeconds);
    m_connections = std::make_unique<ConnectionGuard>(
        m_pbx.pRoot, kSilentMs, [this](const std::string& from) { return hasPhonesAt(from); }, CONNECTIONS);
    return true;
}

// Before anybody learns that it is there, and before the stack has threads.
void Pbx::takeSignals()
{
    sigset_t ends;
    sigemptyset(&ends);
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&ends, number);
    sigprocmask(SIG_BLOCK, &ends, nullptr);
    m_nSignals = signalfd(-1, &ends, SFD_NONBLOCK | SFD_CLOEXEC);
    su_wait_t wait[1] = {SU_WAIT_INIT};
    su_wait_create(wait, m_nSignals, SU_WAIT_IN);
    su_root_register(m_pbx.pRoot, wait, onSignal, reinterpret_cast<su_wakeup_arg_t*>(this), 0);
}

void Pbx::run()
{
    sweep();
    su_root_run(m_pbx.pRoot);
}

int Pbx::onSignal(su_root_magic_t*, su_wait_t*, su_wakeup_arg_t* self)
{
    su_root_break(reinterpret_cast<Pbx*>(self)->m_pbx.pRoot);
    return 0;
}

int Pbx::onMessage(Pbx* self, nta_agent_t* agent, msg_t* message, sip_t* sip)
{
    ConnectionGuard::heard(pbxText::host(message), pbxText::port(message));
    if (sip->sip_status) {
        self->takeReply(message, sip);
    } else if (sip->sip_request->rq_method == sip_method_ack) {
        self->takeAck(message, sip);
    } else if (sip->sip_request->rq_method == sip_method_cancel) {
        nta_msg_treply(agent, message, SIP_481_NO_TRANSACTION, TAG_END());
    } else {
        self->takeRequest(message, sip);
    }
    return 0;
}

// An answer to a call that is settled. Sent once more, the caller wants it, and nobody else; the answer to a
// call that is over comes too late, and whoever gives it is hung up.
void Pbx::takeReply(msg_t* message, sip_t* sip)
{
    const int status = sip->sip_status->st_status;
    const std::string callId = pbxText::of(sip->sip_call_id->i_id);
    const bool isAnswer = status >= 200 && status < 300 && sip->sip_cseq->cs_method == sip_method_invite;
    if (!isAnswer || !sip->sip_via || !sip->sip_via->v_next || !m_calls.isKnown(callId)) {
        nta_msg_discard(m_pbx.pAgent, message);
    } else if (m_calls.isOver(callId)) {
        nta_msg_ackbye(m_pbx.pAgent, message);
    } else {
        sip_via_remove(message, sip);
        nta_msg_tsend(m_pbx.pAgent, message, nullptr, TAG_END());
    }
}

void Pbx::takeAck(msg_t* message, const sip_t* sip)
{
    const bool isWithin = m_calls.holds(*sip) && isOfParty(*sip, message);
    msg_t* copy = isWithin ? ForwardedRequest::onward(m_pbx, message) : nullptr;
    nta_msg_discard(m_pbx.pAgent, message);
    if (copy && pbxText::isPlace(sip_object(copy)->sip_request->rq_url, m_pbx.place))
        nta_msg_discard(m_pbx.pAgent, copy);
    else if (copy)
        nta_msg_tsend(m_pbx.pAgent, copy, nullptr, TAG_END());
}

void Pbx::refuse(msg_t* message, int status, const char* phrase)
{
    nta_msg_treply(m_pbx.pAgent, message, status, phrase, TAG_END());
}

void Pbx::refuse(nta_incoming_t* request, int status, const char* phrase)
{
    nta_incoming_treply(request, status, phrase, TAG_END());
    nta_incoming_destroy(request);
}

// Who has come by here once would come again and again.
bool Pbx::hasPassedHere(const sip_t& sip) const
{
    for (const sip_via_t* via = sip.sip_via ? sip.sip_via->v_next : nullptr; via; via = via->v_next) {
        const std::string place = std::string(via->v_host) + ":" + (via->v_port ? via->v_port : "5060");
        if (place == m_pbx.place)
            return true;
    }
    return false;
}

// Nothing is kept of what is refused, or asked for a password: who sends it without end costs the time of a
// reply each, and waits for no acknowledgement.
void Pbx::takeRequest(msg_t* message, sip_t* sip)
{
    const url_t* url = sip->sip_request->rq_url;
    const sip_method_t method = sip->sip_request->rq_method;
    const bool isHere = pbxText::isPlace(url, m_pbx.place), isWithin = sip->sip_to->a_tag != nullptr;
    const bool isRegister = method == sip_method_register, isSubscribe = method == sip_method_subscribe;
    if (hasPassedHere(*sip))
        return refuse(message, SIP_482_LOOP_DETECTED);
    if (!pbxText::isSip(url))
        return refuse(message, 416, "Unsupported URI Scheme");
    if (sip->sip_proxy_require)
        return refuse(message, SIP_420_BAD_EXTENSION);
    if (isRegister && !isHere)
        return refuse(message, SIP_403_FORBIDDEN);
    const bool isQuestion = method == sip_method_options && isHere && !url->url_user;
    if (!isRegister && !isWithin && isQuestion) {
        nta_msg_treply(m_pbx.pAgent, message, SIP_200_OK, SIPTAG_ALLOW_STR(kMethods), TAG_END());
        return;
    }
    if (!isRegister && !isWithin && !isSubscribe && method != sip_method_options && !isForPhones(method))
        return refuse(message, SIP_405_METHOD_NOT_ALLOWED);
    if (!isRegister && !isSubscribe && isWithin && !isOfCall(*sip))
        return refuse(message, SIP_481_NO_CALL);
    std::string user;
    if (isRegister || isSubscribe || !isWithin) {
        user = knownUser(message, *sip);
        if (user.empty())
            return;
    }
    nta_incoming_t* request = nta_incoming_create(m_pbx.pAgent, nullptr, message, sip, TAG_END());
    if (request)
        serve(request, *sip, user);
}

void Pbx::serve(nta_incoming_t* request, const sip_t& sip, const std::string& user)
{
    const sip_method_t method = sip.sip_request->rq_method;
    const bool isWithin = sip.sip_to->a_tag != nullptr;
    if (method == sip_method_register)
        return registerPhone(request, sip, user);
    if (method == sip_method_subscribe) {
        if (!isWithin && !pbxText::isPlace(sip.sip_request->rq_url, m_pbx.place))
            return refuse(request, SIP_403_FORBIDDEN);
        m_events.subscribe(request, sip, user, pbxNow());
        nta_incoming_destroy(request);
        return;
    }
    if (isWithin)
        takeWithin(request, sip);
    else
        lead(request, sip, user);
}

void Pbx::takeWithin(nta_incoming_t* request, const sip_t& sip)
{
    for (const auto& call : m_mail) {
        if (call->holds(sip)) {
            call->take(request);
            nta_incoming_destroy(request);
            return;
        }
    }
    leadWithin(request, sip);
}

void Pbx::leadWithin(nta_incoming_t* request, const sip_t& sip)
{
    msg_t* message = nta_incoming_getrequest(request);
    if (!isOfParty(sip, message)) {
        msg_destroy(message);
        return refuse(request, SIP_403_FORBIDDEN);
    }
    // The next hop is whom the call is with, and that is not here.
    msg_t* onward = ForwardedRequest::onward(m_pbx, message);
    msg_destroy(message);
    const bool isHere =
        onward && !sip_object(onward)->sip_route && pbxText::isPlace(sip.sip_request->rq_url, m_pbx.place);
    if (onward)
        msg_destroy(onward);
    if (isHere)
        return refuse(request, SIP_404_NOT_FOUND);
    const std::string callId = sip.sip_call_id->i_id;
    const bool isBye = sip.sip_request->rq_method == sip_method_bye;
    if (ForwardedRequest* forwarded = take(request)) {
        forwarded->pass();
        if (isBye)
            m_calls.end(callId, pbxNow());
    }
}

bool Pbx::isOfCall(const sip_t& sip) const
{
    return m_calls.holds(sip) ||
           std::any_of(m_mail.begin(), m_mail.end(), [&](const auto& call) { return call->holds(sip); });
}

// One that has moved meanwhile has registered from there.
bool Pbx::isOfParty(const sip_t& sip, msg_t* message) const
{
    const tagSeenCall* call = m_calls.find(pbxText::of(sip.sip_call_id->i_id));
    const std::string host = pbxText::host(message);
    return call && !host.empty() &&
           (host == call->callerHost || host == call->calleeHost || m_contacts->isAt(call->caller, host) ||
            m_contacts->isAt(call->callee, host));
}

bool Pbx::hasPhonesAt(const std::string& host) const
{
    const auto& all = m_accounts.all();
    return std::any_of(all.begin(), all.end(),
                       [&](const auto& account) { return m_contacts->isAt(account.first, host); });
}

std::string Pbx::knownUser(msg_t* message, const sip_t& sip)
{
    const bool isRegister = sip.sip_request->rq_method == sip_method_register;
    const msg_auth_t* answers = isRegister ? sip.sip_authorization : sip.sip_proxy_authorization;
    std::string user;
    const auto verdict = m_passwords->judge(answers, *sip.sip_request, user);
    if (verdict == PasswordCheck::VERDICT::GOOD) {
        // Nobody speaks for another; whoever hides his name is known here all the same.
        const std::string from = pbxText::user(sip.sip_from->a_url);
        const bool isOwn = from == user || (!isRegister && from == "anonymous");
        if (isOwn)
            return user;
        refuse(message, SIP_403_FORBIDDEN);
        return "";
    }
    if (verdict == PasswordCheck::VERDICT::BAD) {
        refuse(message, SIP_403_FORBIDDEN);
        return "";
    }
    const auto questions = m_passwords->questions(verdict == PasswordCheck::VERDICT::LATE);
    const char* second = questions.size() > 1 ? questions[1].c_str() : nullptr;
    if (isRegister)
        nta_msg_treply(m_pbx.pAgent, message, SIP_401_UNAUTHORIZED,
                       SIPTAG_WWW_AUTHENTICATE_STR(questions[0].c_str()),
                       TAG_IF(second, SIPTAG_WWW_AUTHENTICATE_STR(second)), TAG_END());
    else
        nta_msg_treply(m_pbx.pAgent, message, SIP_407_PROXY_AUTH_REQUIRED,
                       SIPTAG_PROXY_AUTHENTICATE_STR(questions[0].c_str()),
                       TAG_IF(second, SIPTAG_PROXY_AUTHENTICATE_STR(second)), TAG_END());
    return "";
}

void Pbx::registerPhone(nta_incoming_t* request, const sip_t& sip, const std::string& user)
{
    const long now = pbxNow();
    if (pbxText::user(sip.sip_to->a_url) != user)
        return refuse(request, SIP_403_FORBIDDEN);
    const bool wasThere = !m_contacts->addresses(user).empty();
    const int status = m_contacts->update(user, sip, now);
    if (status == 423) {
        nta_incoming_treply(request, SIP_423_INTERVAL_TOO_BRIEF,
                            SIPTAG_MIN_EXPIRES_STR(std::to_string(ContactBook::LEAST_SECONDS).c_str()),
                            TAG_END());
        nta_incoming_destroy(request);
        return;
    }
    if (status != 200)
        return refuse(request, status, sip_status_phrase(status));
    std::string contacts;
    for (const std::string& contact : m_contacts->listed(user, now))
        contacts += (contacts.empty() ? "" : ", ") + contact;
    if (contacts.empty())
        m_calls.endAllOf(user, now);
    if (wasThere == contacts.empty())
        m_events.userChanged(user, now);
    nta_incoming_treply(request, SIP_200_OK, TAG_IF(!contacts.empty(), SIPTAG_CONTACT_STR(contacts.c_str())),
                        TAG_END());
    nta_incoming_destroy(request);
}

void Pbx::lead(nta_incoming_t* request, const sip_t& sip, const std::string& user)
{
    const url_t* url = sip.sip_request->rq_url;
    const std::string number = pbxText::user(url);
    const bool isCall = sip.sip_request->rq_method == sip_method_invite;
    if (!pbxText::isPlace(url, m_pbx.place)) {
        // The phone itself was asked for, as in a transfer.
        const std::string owner = m_contacts->ownerOf(url);
        if (owner.empty())
            return refuse(request, 403, "No Calls To The Outside");
        return leadTo(request, sip, user, owner, {pbxText::address(url)});
    }
    if (number == kMailNumber && isCall)
        return callMail(request, user);
    if (!m_accounts.find(number))
        return refuse(request, SIP_404_NOT_FOUND);
    const std::vector<std::string> addresses = m_contacts->addresses(number);
    if (addresses.empty())
        return refuse(request, SIP_480_TEMPORARILY_UNAVAILABLE);
    leadTo(request, sip, user, number, addresses);
}

void Pbx::leadTo(nta_incoming_t* request, const sip_t& sip, const std::string& user,
                 const std::string& callee, const std::vector<std::string>& addresses)
{
    if (sip.sip_request->rq_method == sip_method_invite) {
        tagSeenCall call;
        call.callId = sip.sip_call_id->i_id;
        call.fromTag = pbxText::of(sip.sip_from->a_tag);
        call.caller = user;
        call.callee = callee;
        // Who hides his name hides it from the lamps too.
        call.callerName = displayOf(*sip.sip_from);
        msg_t* message = nta_incoming_getrequest(request);
        call.callerHost = pbxText::host(message);
        msg_destroy(message);
        if (m_forwarded.size() >= MAX_FORWARDED || !m_calls.begin(call, pbxNow()))
            return refuse(request, SIP_503_SERVICE_UNAVAILABLE);
    }
    if (ForwardedRequest* forwarded = take(request))
        forwarded->fork(addresses, callee);
}

ForwardedRequest* Pbx::take(nta_incoming_t* request)
{
    if (m_forwarded.size() >= MAX_FORWARDED) {
        refuse(request, SIP_503_SERVICE_UNAVAILABLE);
        return nullptr;
    }
    m_forwarded.push_back(std::make_unique<ForwardedRequest>(m_pbx, request));
    return m_forwarded.back().get();
}

void Pbx::callMail(nta_incoming_t* request, const std::string& user)
{
    if (m_mail.size() >= MAX_MAIL_CALLS)
        return refuse(request, SIP_486_BUSY_HERE);
    m_mail.push_back(std::make_unique<MailCall>(m_pbx.pRoot, m_pbx.pAgent, m_pbx.place, request));
    if (m_mail.back()->isAnswered())
        m_events.clearMessages(user, pbxNow());
}

void Pbx::sweep()
{
    const long now = pbxNow();
    m_forwarded.remove_if([](const auto& request) { return request->isOver(); });
    m_mail.remove_if([](const auto& call) { return call->isOver(); });
    m_events.sweep(now);
    for (const std::string& user : m_contacts->sweep(now)) {
        m_calls.endAllOf(user, now);
        m_events.userChanged(user, now);
    }
    m_calls.sweep(now);
    m_sweep.start(kSweepMs, [this] { sweep(); });
}
