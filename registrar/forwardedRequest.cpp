#include "registrar/forwardedRequest.h"
#include "registrar/pbxText.h"
#include <algorithm>
#include <ctime>
#include <sofia-sip/msg_header.h>
#include <sofia-sip/nta_stateless.h>
#include <sofia-sip/sip_header.h>
#include <sofia-sip/sip_status.h>
#include <sofia-sip/sip_tag.h>
#include <sofia-sip/sip_util.h>

namespace {

constexpr const char* kElsewhere = "SIP;cause=200;text=\"Call completed elsewhere\"";
constexpr const char* kGivenUp = "SIP;cause=480;text=\"No answer\"";

// What no answer has: neither provisional nor final. The stack would end with it.
bool isNoStatus(int status)
{
    return status < 100 || status > 699;
}

// The lower the better for the caller: a person's answer before that of a device, and anything before the
// silence of a phone that is not there.
int rankOf(int status, bool isOwn)
{
    if (isOwn || isNoStatus(status))
        return 6;
    if (status >= 600)
        return 0;
    if (status < 400)
        return 1;
    if (status == 486)
        return 2;
    if (status == 408 || status == 480 || status == 487)
        return 4;
    return status < 500 ? 3 : 5;
}

template <typename Header>
void removeAll(msg_t* message, sip_t* sip, Header*& header)
{
    while (header)
        sip_header_remove(message, sip, reinterpret_cast<sip_header_t*>(header));
}

} // namespace

long pbxNow()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec;
}

ForwardedRequest::ForwardedRequest(const tagPbx& pbx, nta_incoming_t* request)
    : m_pbx(pbx), m_pRequest(request), m_limit(pbx.pRoot)
{
    msg_t* message = nta_incoming_getrequest(request);
    const sip_t* sip = sip_object(message);
    m_callId = pbxText::of(sip->sip_call_id->i_id);
    m_bCall = sip->sip_request->rq_method == sip_method_invite;
    m_bNew = m_bCall && !sip->sip_to->a_tag;
    msg_destroy(message);
    nta_incoming_bind(request, onCancel, this);
}

ForwardedRequest::~ForwardedRequest()
{
    for (const tagBranch& branch : m_branches)
        nta_outgoing_destroy(branch.pRequest);
    nta_incoming_destroy(m_pRequest);
    if (m_pBest)
        msg_destroy(m_pBest);
}

msg_t* ForwardedRequest::onward(const tagPbx& pbx, msg_t* message)
{
    msg_t* copy = msg_dup(message);
    sip_t* sip = sip_object(copy);
    while (sip->sip_route && pbxText::isPlace(sip->sip_route->r_url, pbx.place))
        sip_route_remove(copy, sip);
    removeAll(copy, sip, sip->sip_proxy_authorization);
    if (!sip->sip_max_forwards)
        sip_add_tl(copy, sip, SIPTAG_MAX_FORWARDS_STR("70"), TAG_END());
    if (sip->sip_max_forwards && sip->sip_max_forwards->mf_count > 0) {
        --sip->sip_max_forwards->mf_count;
        return copy;
    }
    msg_destroy(copy);
    return nullptr;
}

bool ForwardedRequest::send(const std::string& address)
{
    msg_t* message = nta_incoming_getrequest(m_pRequest);
    msg_t* copy = onward(m_pbx, message);
    msg_destroy(message);
    if (!copy)
        return false;
    sip_t* sip = sip_object(copy);
    if (!address.empty()) {
        const url_t* url = url_make(msg_home(copy), address.c_str());
        if (url)
            *sip->sip_request->rq_url = *url;
    }
    if (m_bNew) {
        const std::string route = "<sip:" + m_pbx.place + ";lr>";
        sip_add_tl(copy, sip, SIPTAG_RECORD_ROUTE_STR(route.c_str()), TAG_END());
    }
    nta_outgoing_t* request =
        nta_outgoing_mcreate(m_pbx.pAgent, ReplyTaker::call, this, nullptr, copy, TAG_END());
    if (!request) {
        msg_destroy(copy);
        return false;
    }
    m_branches.push_back({request, 0});
    return true;
}

void ForwardedRequest::fork(const std::vector<std::string>& addresses, const std::string& callee)
{
    m_callee = callee;
    if (m_bCall)
        nta_incoming_treply(m_pRequest, SIP_100_TRYING, TAG_END());
    for (size_t i = 0; i < std::min<size_t>(addresses.size(), MAX_BRANCHES); ++i)
        send(addresses[i]);
    if (m_branches.empty())
        end(SIP_483_TOO_MANY_HOPS);
    else if (m_bNew)
        m_limit.start(m_pbx.nRingMs, [this] { giveUp(); });
}

void ForwardedRequest::pass()
{
    if (m_bCall)
        nta_incoming_treply(m_pRequest, SIP_100_TRYING, TAG_END());
    if (!send(""))
        end(SIP_483_TOO_MANY_HOPS);
}

bool ForwardedRequest::haveAllEnded() const
{
    return std::all_of(m_branches.begin(), m_branches.end(),
                       [](const tagBranch& branch) { return branch.nStatus >= 200; });
}

void ForwardedRequest::onReply(nta_outgoing_t* request, const sip_t* reply)
{
    const auto branch = std::find_if(m_branches.begin(), m_branches.end(),
                                     [&](const tagBranch& each) { return each.pRequest == request; });
    if (branch == m_branches.end() || !reply || !reply->sip_status)
        return;
    const int status = reply->sip_status->st_status;
    if (status < 100)
        return;
    branch->nStatus = std::max(branch->nStatus, status);
    if (status < 200) {
        if (m_bNew && status > 100)
            m_pbx.pCalls->ring(m_callId, pbxText::of(reply->sip_to->a_tag), pbxNow());
        if (!m_bFinal)
            passReply(request, reply);
    } else if (status < 300) {
        onAnswer(request, reply);
    } else if (!m_bFinal) {
        keepBest(request, reply);
        // A person has said no for all of his phones.
        const bool isForAll = status >= 600 && !isNoStatus(status);
        if (isForAll)
            cancelBranches(nullptr);
        if (isForAll || haveAllEnded())
            passBest();
    }
}

void ForwardedRequest::onAnswer(nta_outgoing_t* request, const sip_t* reply)
{
    // The caller has been told that there is nobody: whoever answers now is hung up.
    if (m_bFinal && !m_bAnswered) {
        if (m_bCall)
            nta_msg_ackbye(m_pbx.pAgent, nta_outgoing_getresponse(request));
        return;
    }
    // A call may have two answers, and its caller settles that. Whatever else was asked has been answered.
    if (m_bAnswered && !m_bCall)
        return;
    passReply(request, reply);
    if (m_bAnswered)
        return;
    m_bAnswered = m_bFinal = true;
    m_limit.stop();
    cancelBranches(kElsewhere);
    if (!m_bNew)
        return;
    msg_t* message = nta_outgoing_getresponse(request);
    m_pbx.pCalls->talk(m_callId, pbxText::of(reply->sip_to->a_tag), pbxText::host(message), pbxNow());
    msg_destroy(message);
}

void ForwardedRequest::passReply(nta_outgoing_t* request, const sip_t* reply)
{
    if (nta_sip_is_internal(reply)) {
        nta_incoming_treply(m_pRequest, reply->sip_status->st_status, reply->sip_status->st_phrase,
                            TAG_END());
        return;
    }
    msg_t* message = nta_outgoing_getresponse(request);
    msg_t* copy = msg_dup(message);
    msg_destroy(message);
    sip_via_remove(copy, sip_object(copy));
    nta_incoming_mreply(m_pRequest, copy);
}

void ForwardedRequest::keepBest(nta_outgoing_t* request, const sip_t* reply)
{
    const int rank = rankOf(reply->sip_status->st_status, nta_sip_is_internal(reply));
    if (m_pBest && rank >= m_nBestRank)
        return;
    if (m_pBest)
        msg_destroy(m_pBest);
    m_pBest = nta_outgoing_getresponse(request);
    m_nBestRank = rank;
}

void ForwardedRequest::passBest()
{
    const sip_t* reply = sip_object(m_pBest);
    const int status = reply->sip_status->st_status;
    if (nta_sip_is_internal(reply)) {
        // Nobody is where the phone was: it is away.
        if (status == 503)
            end(SIP_480_TEMPORARILY_UNAVAILABLE);
        else
            end(status, reply->sip_status->st_phrase);
        return;
    }
    if (isNoStatus(status))
        return end(SIP_502_BAD_GATEWAY);
    m_bFinal = true;
    m_limit.stop();
    msg_t* copy = msg_dup(m_pBest);
    sip_via_remove(copy, sip_object(copy));
    nta_incoming_mreply(m_pRequest, copy);
    if (m_bNew)
        m_pbx.pCalls->end(m_callId, pbxNow());
}

void ForwardedRequest::cancelBranches(const char* reason)
{
    for (const tagBranch& branch : m_branches) {
        if (m_bCall && branch.nStatus < 200)
            nta_outgoing_tcancel(branch.pRequest, nullptr, nullptr, TAG_IF(reason, SIPTAG_REASON_STR(reason)),
                                 TAG_END());
    }
}

int ForwardedRequest::onCancel(ForwardedRequest* self, nta_incoming_t*, const sip_t* message)
{
    if (self->m_bFinal || !message || !message->sip_request ||
        message->sip_request->rq_method != sip_method_cancel)
        return 0;
    // As the caller has said it, an answer elsewhere among it.
    const std::string reason =
        message->sip_reason && message->sip_reason->re_cause
            ? pbxText::of(message->sip_reason->re_protocol) + ";cause=" + message->sip_reason->re_cause
            : "";
    self->cancelBranches(reason.empty() ? nullptr : reason.c_str());
    // The answers of the phones are not waited for: over TCP the stack forgets a request that it has
    // cancelled.
    self->end(SIP_487_REQUEST_CANCELLED);
    return 0;
}

void ForwardedRequest::giveUp()
{
    if (m_bFinal)
        return;
    end(480, "No Answer");
    cancelBranches(kGivenUp);
    m_pbx.unanswered(m_callee);
}

void ForwardedRequest::end(int status, const char* phrase)
{
    m_bFinal = true;
    m_limit.stop();
    nta_incoming_treply(m_pRequest, status, phrase, TAG_END());
    if (m_bNew)
        m_pbx.pCalls->end(m_callId, pbxNow());
}
