#include "sip/sipAgent.h"
#include "sip/digest.h"
#include "sip/floodGuard.h"
#include "sip/knownHosts.h"
#include "sip/ownSockets.h"
#include "sip/tlsCheck.h"
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <malloc.h>
#include <sofia-sip/nta_tag.h>
#include <sofia-sip/sip_status.h>
#include <sofia-sip/sip_tag.h>
#include <sofia-sip/su_tag.h>
#include <sofia-sip/tport_tag.h>
#include <utility>

namespace {

constexpr uint32_t kKeepMs = 25000;
constexpr uint32_t kRestMs = 40000;         // the stack keeps for 32 s what it may have to repeat
constexpr const char* kJudgedSeconds = "3"; // the phone has looked at an offer by then
constexpr uint32_t kStepMs = 20;            // between looks whether everybody has left
constexpr unsigned kLargestUdp = 65535;     // a call with many codecs and video does not fit a frame
constexpr unsigned kMaxMessage = 128 << 10;
constexpr unsigned kTlsPolicy = 0xA; // certificates are checked, and the names in them, of servers
constexpr const char* kMethods = "INVITE, ACK, BYE, CANCEL, OPTIONS, INFO, NOTIFY, PRACK, UPDATE, REFER";
constexpr const char* kSupported = "timer, 100rel, replaces";

std::string localAddress(const tagSipSetup& setup, const char* scheme, uint32_t port)
{
    const std::string host = setup.szAddress[0] ? setup.szAddress : "*";
    const std::string bare = host.find(':') != std::string::npos ? "[" + host + "]" : host;
    return scheme + bare + ":" + (port ? std::to_string(port) : "*");
}

bool isTerminated(tagi_t* tags)
{
    int state = nua_callstate_init;
    tl_gets(tags, NUTAG_CALLSTATE_REF(state), TAG_END());
    return state == nua_callstate_terminated;
}

// The stack keeps the first one of what may be there but once.
bool isRepeated(const sip_t& message, const msg_hclass_t* header)
{
    for (const auto* each = reinterpret_cast<const sip_header_t*>(message.sip_error); each;
         each = each->sh_next) {
        if (each->sh_class == header)
            return true;
    }
    return false;
}

} // namespace

SipAgent::SipAgent()
    : m_root(su_root_create(nullptr), su_root_destroy), m_stack{m_root.get()},
      m_phone(
          m_stack.pRoot, [this](const sipWire::Reader& record) { take(record); },
          [this](bool isDamaged) { end(isDamaged ? 1 : 0); }),
      m_events(m_stack, [this](uint32_t line) { return m_lines[line].get(); }), m_step(m_stack.pRoot),
      m_last(m_stack.pRoot), m_rest(m_stack.pRoot)
{
    su_root_threading(m_stack.pRoot, 0);
    m_stack.pPhone = &m_phone;
    m_stack.onTlsRefused = [this] { lookAtCertificates(); };
    tlsCheck::onProblem([this] {
        for (const auto& line : m_lines) {
            if (line)
                line->tlsProblem();
        }
    });
    ownSockets::onUnreachable([this](const tagSocketEnd& end) {
        for (const auto& line : m_lines) {
            if (line)
                line->unreachable(end.host, end.nPort);
        }
    });
    m_stack.onLine = [this](uint32_t line, SIP_LINE_STATE state) { m_events.lineChanged(line, state); };
}

SipAgent::~SipAgent()
{
    tlsCheck::onProblem(nullptr);
    ownSockets::onUnreachable(nullptr);
    m_events.end();
    for (auto& line : m_lines)
        line.reset();
    m_leaving.clear();
    m_calls.clear();
    if (m_stack.pDns)
        sres_resolver_destroy(m_stack.pDns);
    // A stack that has not ended would stop the program: what is left of it goes with the process. It stays
    // known, else it would look lost.
    static std::pair<nua_t*, su_root_t*> left;
    if (m_stack.pNua && m_bShutdown)
        nua_destroy(m_stack.pNua);
    else if (m_stack.pNua)
        left = {m_stack.pNua, m_root.release()};
}

int SipAgent::run(const std::string& path)
{
    if (!m_phone.open(path)) {
        fprintf(stderr, "No phone listens at %s\n", path.c_str());
        return 1;
    }
    su_root_run(m_stack.pRoot);
    return m_nCode;
}

void SipAgent::take(const sipWire::Reader& record)
{
    const uint32_t kind = record.head().eKind;
    const bool isSetUp = m_stack.pNua != nullptr;
    if (m_bEnding)
        return;
    if (kind == SIP_END) {
        end(0);
    } else if (kind == SIP_SETUP && !isSetUp) {
        if (!makeStack(record.as<tagSipSetup>()))
            end(1);
    } else if (kind == SIP_PING && isSetUp) {
        m_phone.tell(sipWire::make<tagSipHead>(SIP_PONG, 0));
    } else if (kind == SIP_ACCOUNT && isSetUp) {
        setAccount(record.as<tagSipAccount>());
    } else if (kind == SIP_DIAL && isSetUp) {
        dial(record.as<tagSipDial>());
    } else if (kind == SIP_NETWORK && isSetUp) {
        for (const auto& line : m_lines) {
            if (line)
                line->renew();
        }
    } else if (kind >= SIP_WATCH && kind <= SIP_WATCH_LIST && isSetUp) {
        m_events.take(record);
    } else if (kind == SIP_PICK_UP && isSetUp) {
        pickUp(record.as<tagSipPickUp>());
    } else if (kind > SIP_DIAL && kind < SIP_HELLO && isSetUp) {
        takeForCall(record);
    } else {
        fprintf(stderr, "A record of kind %u has no place here\n", unsigned(kind));
        end(1);
    }
}

bool SipAgent::makeStack(const tagSipSetup& setup)
{
    m_stack.setup = setup;
    if (setup.nKeepMs == 0)
        m_stack.setup.nKeepMs = kKeepMs;
    m_connections = std::make_unique<ConnectionGuard>(
        m_stack.pRoot, setup.nSilentMs, [](const std::string& host) { return floodGuard::isServer(host); });
    m_stack.pDns = sres_resolver_create(m_stack.pRoot, setup.szNames[0] ? setup.szNames : nullptr,
                                        SRESTAG_CACHE(knownHosts::cache()), TAG_END());
    m_stack.tlsProblem = setup.szCertificates[0] ? tlsCheck::problemOf(setup.szCertificates)
                                                 : "There are no certificates for TLS";
    m_tlsSign = tlsCheck::signOf(setup.szCertificates);
    const bool hasTls = m_stack.tlsProblem.empty();
    const std::string own = hasTls ? tlsCheck::problemOfOwn(setup.szCertificates) : "";
    if (!own.empty())
        fprintf(stderr, "agent.pem cannot be used, TLS goes on without it: %s\n", own.c_str());
    m_stack.pNua = listen(hasTls);
    // Lines without TLS have no part in it.
    if (!m_stack.pNua && hasTls) {
        m_stack.pNua = listen(false);
        m_stack.tlsProblem = "The port or the certificates of TLS cannot be used";
    }
    if (!m_stack.pNua) {
        fprintf(stderr, "The SIP stack cannot listen at %s\n",
                localAddress(setup, "sip:", setup.nPort).c_str());
        return false;
    }
    nua_set_params(m_stack.pNua, SIPTAG_USER_AGENT_STR(setup.szAgent), SIPTAG_ALLOW_STR(kMethods),
                   NUTAG_ENABLEINVITE(1), NUTAG_SESSION_TIMER(SIP_SESSION_SECONDS),
                   NUTAG_MIN_SE(SIP_SESSION_LEAST_SECONDS), NUTAG_SESSION_REFRESHER(nua_remote_refresher),
                   NUTAG_ENABLEMESSAGE(0), SIPTAG_SUPPORTED_STR(kSupported),
                   NUTAG_APPL_METHOD("NOTIFY, UPDATE, REFER, INFO"), NUTAG_MAX_RETRY_AFTER(0),
                   NUTAG_UPDATE_REFRESH(1), TAG_END());
    m_phone.tell(sipWire::make<tagSipHead>(SIP_HELLO, 0));
    return true;
}

nua_t* SipAgent::listen(bool tls)
{
    const tagSipSetup& setup = m_stack.setup;
    const std::string plain = localAddress(setup, "sip:", setup.nPort);
    const std::string sealed = localAddress(setup, "sips:", setup.nTlsPort);
    return nua_create(m_stack.pRoot, onStack, this, NUTAG_URL(plain.c_str()),
                      TAG_IF(tls, NUTAG_SIPS_URL(sealed.c_str())),
                      TAG_IF(tls, NUTAG_CERTIFICATE_DIR(setup.szCertificates)),
                      TAG_IF(tls, TPTAG_TLS_VERIFY_POLICY(kTlsPolicy)), NUTAG_MEDIA_ENABLE(0),
                      NUTAG_AUTOANSWER(0), NUTAG_AUTOALERT(0), NTATAG_UDP_MTU(kLargestUdp),
                      NTATAG_MAXSIZE(kMaxMessage), NTATAG_PASS_100(1), TPTAG_KEEPALIVE(setup.nKeepMs),
                      TPTAG_PONG2PING(1), TAG_IF(setup.szNames[0], SRESTAG_RESOLV_CONF(setup.szNames)),
                      SRESTAG_CACHE(knownHosts::cache()), TAG_END());
}

void SipAgent::lookAtCertificates()
{
    const char* folder = m_stack.setup.szCertificates;
    if (m_bEnding || callCount() > 0 || !folder[0] || tlsCheck::signOf(folder) == m_tlsSign ||
        !tlsCheck::problemOf(folder).empty())
        return;
    fprintf(stderr, "The certificates of TLS are others: the agent begins anew with them\n");
    end(0);
}

void SipAgent::setAccount(const tagSipAccount& account)
{
    m_leaving.erase(
        std::remove_if(m_leaving.begin(), m_leaving.end(), [](const auto& line) { return line->hasLeft(); }),
        m_leaving.end());
    m_events.accountChanges(account.head.nId);
    std::unique_ptr<Registration>& line = m_lines[account.head.nId];
    if (line) {
        line->leave();
        m_leaving.push_back(std::move(line));
    }
    if (account.szUser[0] && account.szServer[0]) {
        line = std::make_unique<Registration>(m_stack, account);
        line->start();
        return;
    }
    m_phone.tell(sipWire::make<tagSipLine>(SIP_LINE, account.head.nId));
}

// One that has ended meanwhile is no error: the phone could not know yet.
void SipAgent::takeForCall(const sipWire::Reader& record)
{
    SipCall* found = find(record.head().nId);
    if (!found)
        return;
    SipCall& call = *found;
    switch (record.head().eKind) {
    case SIP_RING:
        if (takeIn(record.head().nId, call))
            call.ring(record.as<tagSipMedia>().szSdp);
        break;
    case SIP_ANSWER:
        if (takeIn(record.head().nId, call))
            call.answer(record.as<tagSipMedia>().szSdp);
        break;
    case SIP_REFUSE:
        call.refuse(record.as<tagSipStatus>().nStatus, record.as<tagSipStatus>().nWarning);
        break;
    case SIP_DEFLECT:
        call.deflect(record.as<tagSipTarget>().szTarget);
        break;
    case SIP_HANG_UP:
        call.hangUp(record.as<tagSipStatus>().nStatus);
        break;
    case SIP_MEDIA:
        call.setMedia(record.as<tagSipMedia>().szSdp);
        break;
    case SIP_NO_MEDIA:
        call.delayMedia();
        break;
    case SIP_TRANSFER:
        call.transfer(record.as<tagSipTarget>().szTarget);
        break;
    case SIP_CONNECT:
        connectCalls(record.as<tagSipConnect>());
        break;
    case SIP_TONE:
        call.sendTone(char(record.as<tagSipTone>().nTone), record.as<tagSipTone>().nMs);
        break;
    default:
        break;
    }
}

void SipAgent::dial(const tagSipDial& dial, const std::string& replaces)
{
    dropCalls();
    const auto& line = m_lines[dial.nLine];
    SipCall* referrer = find(dial.nReferrer);
    const Referral* referral = referrer ? referrer->acceptReferral() : nullptr;
    // Who has asked for the call makes room for it.
    const size_t room = SIP_CALLS_MAX + (referral ? 1 : 0);
    const char* reason = "";
    if (dial.nReferrer && !referral)
        reason = "Nobody asks for this call any more";
    else if (!line || !line->isRegistered())
        reason = "The line is not registered";
    else if (callCount() >= room || m_calls.count(dial.head.nId))
        reason = "There are too many calls";
    if (!*reason) {
        tagCallOrigin origin = {replaces, "", !replaces.empty()};
        if (referral)
            origin = {referral->replaces(), referral->referredBy(), false};
        startDial(dial, *line, origin);
        return;
    }
    if (referral)
        referrer->tellReferral(503, "Service Unavailable");
    tellNotBegun(dial.head.nId, reason);
}

void SipAgent::tellNotBegun(uint32_t call, const char* reason)
{
    auto ended = sipWire::make<tagSipEnded>(SIP_ENDED, call);
    ended.eEnding = SIP_BROKEN;
    sipWire::setText(ended.szReason, reason);
    m_phone.tell(ended);
}

void SipAgent::startDial(const tagSipDial& dial, const Registration& line, const tagCallOrigin& origin)
{
    tagCallHooks hooks;
    const uint32_t number = dial.nLine, referrer = dial.nReferrer;
    hooks.serverFails = [this, number] {
        if (m_lines[number])
            m_lines[number]->doubt();
    };
    if (referrer) {
        hooks.progress = [this, referrer](uint32_t status, const std::string& phrase) {
            if (SipCall* call = find(referrer))
                call->tellReferral(status, phrase);
        };
    }
    auto& call = m_calls[dial.head.nId] = std::make_unique<SipCall>(m_stack, dial.head.nId);
    call->dial(line, dial, origin, std::move(hooks));
}

void SipAgent::connectCalls(const tagSipConnect& connect)
{
    const uint32_t ids[] = {connect.head.nId, connect.nOther};
    const SipCall* other = find(connect.nOther);
    if (!other) {
        auto refused = sipWire::make<tagSipStatus>(SIP_TRANSFERRED, connect.head.nId);
        refused.nStatus = 481;
        m_phone.tell(refused);
        return;
    }
    find(connect.head.nId)->connectTo(*other, [this, ids] {
        for (const uint32_t id : ids) {
            if (SipCall* call = find(id))
                call->hangUp();
        }
    });
}

SipCall* SipAgent::find(uint32_t id) const
{
    const auto found = m_calls.find(id);
    return found == m_calls.end() ? nullptr : found->second.get();
}

uint32_t SipAgent::findReplaced(const sip_replaces_t& replaces, uint32_t line, uint32_t& id) const
{
    for (const auto& call : m_calls) {
        if (!call.second->isMeantBy(replaces, line))
            continue;
        // The names of a call go over the wire: who knows them may have listened.
        if (!call.second->isTrusted(floodGuard::sourceOf(nua_current_request(m_stack.pNua))))
            return 403;
        id = call.first;
        return call.second->refusalToReplace(replaces.rp_early_only != 0);
    }
    return 481;
}

void SipAgent::pickUp(const tagSipPickUp& wanted)
{
    const std::string number = wanted.szNumber;
    const tagRinging ringing = m_events.ringing(wanted.nLine, number);
    const auto& line = m_lines[wanted.nLine];
    const std::string code = line ? line->pickUpCode() : "";
    if (ringing.eRings == tagRinging::NOTHING_RINGS)
        return tellNotBegun(wanted.head.nId, "Nothing rings there any more");
    if (ringing.replaces.empty() && code.empty())
        return tellNotBegun(wanted.head.nId, "The call cannot be taken without a code");
    auto call = sipWire::make<tagSipDial>(SIP_DIAL, wanted.head.nId);
    call.nLine = wanted.nLine;
    call.bAnonymous = wanted.bAnonymous;
    sipWire::setText(call.szTarget, ringing.replaces.empty() ? code + number : ringing.target);
    memcpy(call.szSdp, wanted.szSdp, sizeof call.szSdp);
    if (!ringing.identity.empty()) {
        auto peer = sipWire::make<tagSipPeer>(SIP_PEER, wanted.head.nId);
        sipWire::setText(peer.szAddress, ringing.identity);
        sipWire::setText(peer.szName, ringing.name);
        m_phone.tell(peer);
    }
    dial(call, ringing.replaces);
}

const Registration* SipAgent::lineFor(const sip_t& message) const
{
    const char* user = message.sip_request->rq_url->url_user;
    for (const auto& each : m_lines) {
        if (each && user && each->contact() == user)
            return each.get();
    }
    return nullptr;
}

void SipAgent::takeNote(const tagStackEvent& event, bool isOwned)
{
    const Registration* line = isOwned || m_bEnding ? nullptr : lineFor(*event.pMessage);
    const int status = line ? m_events.takeNote(line->line(), *event.pMessage) : isOwned ? 489 : 404;
    nua_respond(event.pHandle, status, sip_status_phrase(status), NUTAG_WITH_THIS(m_stack.pNua), TAG_END());
    if (!isOwned)
        nua_handle_destroy(event.pHandle);
}

// The stack itself would take one that names no call of ours.
void SipAgent::takeInfo(const tagStackEvent& event, bool isOwned)
{
    const int status = isOwned ? 200 : 481;
    nua_respond(event.pHandle, status, sip_status_phrase(status), NUTAG_WITH_THIS(m_stack.pNua), TAG_END());
    if (!isOwned)
        nua_handle_destroy(event.pHandle);
}

void SipAgent::arrive(const tagStackEvent& event)
{
    const Registration* line = lineFor(*event.pMessage);
    const tagSdpBody body = callBody::read(event.pMessage);
    const sip_replaces_t* replaces = event.pMessage->sip_replaces;
    uint32_t replaced = 0;
    uint32_t refusal = 0;
    if (line && replaces)
        refusal = isRepeated(*event.pMessage, sip_replaces_class)
                      ? 400
                      : findReplaced(*replaces, line->line(), replaced);
    const bool isBusy = callCount() >= size_t(SIP_CALLS_MAX + (replaced ? 1 : 0));
    if (!line || m_bEnding)
        nua_respond(event.pHandle, SIP_404_NOT_FOUND, TAG_END());
    else if (refusal)
        nua_respond(event.pHandle, int(refusal), sip_status_phrase(int(refusal)), TAG_END());
    else if (isBusy)
        nua_respond(event.pHandle, SIP_486_BUSY_HERE, TAG_END());
    else if (judgedCount() >= SIP_JUDGED_MAX)
        nua_respond(event.pHandle, SIP_486_BUSY_HERE, SIPTAG_RETRY_AFTER_STR(kJudgedSeconds), TAG_END());
    else if (body.sdp.size() >= SIP_SDP_SIZE)
        nua_respond(event.pHandle, SIP_488_NOT_ACCEPTABLE, TAG_END());
    else
        makeCall(*line, event, body, replaced);
}

void SipAgent::makeCall(const Registration& line, const tagStackEvent& event, const tagSdpBody& body,
                        uint32_t replaced)
{
    const uint32_t id = m_nNextIncoming++;
    tagCallHooks hooks;
    hooks.answered = [this, replaced] {
        if (SipCall* other = find(replaced))
            other->beReplaced();
    };
    auto& call = m_calls[id] = std::make_unique<SipCall>(m_stack, id);
    // One that takes the place of another has that one's room.
    if (!replaced)
        m_judged.insert(id);
    call->arrive(line, event, body, replaced, std::move(hooks));
}

size_t SipAgent::callCount() const
{
    return size_t(std::count_if(m_calls.begin(), m_calls.end(), [this](const auto& call) {
        return !call.second->hasEnded() && !isJudged(call.first);
    }));
}

bool SipAgent::isJudged(uint32_t id) const
{
    return m_judged.count(id) > 0;
}

size_t SipAgent::judgedCount() const
{
    return size_t(std::count_if(m_judged.begin(), m_judged.end(), [this](uint32_t id) {
        const SipCall* call = find(id);
        return call && !call->hasEnded();
    }));
}

// What cannot be talked would else keep others out for as long as that is looked at.
bool SipAgent::takeIn(uint32_t id, SipCall& call)
{
    if (!isJudged(id) || call.hasEnded())
        return true;
    if (callCount() >= SIP_CALLS_MAX) {
        call.refuse(486);
        return false;
    }
    m_judged.erase(id);
    return true;
}

// What the stack has kept of many calls goes back to the system when it keeps it no more.
void SipAgent::dropCalls()
{
    const bool hadAny = !m_calls.empty();
    for (auto call = m_calls.begin(); call != m_calls.end();) {
        const bool isOver = call->second->isOver();
        if (isOver)
            m_judged.erase(call->first);
        call = isOver ? m_calls.erase(call) : std::next(call);
    }
    if (hadAny && m_calls.empty())
        m_rest.start(kRestMs, [] { malloc_trim(0); });
}

void SipAgent::end(int code)
{
    if (m_bEnding)
        return;
    m_bEnding = true;
    m_nCode = code;
    m_events.end();
    for (auto& call : m_calls)
        call.second->hangUp();
    for (auto& line : m_lines) {
        if (line) {
            line->leave();
            m_leaving.push_back(std::move(line));
        }
    }
    m_last.start(END_MS, [this] { su_root_break(m_stack.pRoot); });
    endStep();
}

void SipAgent::endStep()
{
    dropCalls();
    if (!m_calls.empty() ||
        !std::all_of(m_leaving.begin(), m_leaving.end(), [](const auto& line) { return line->hasLeft(); }))
        m_step.start(kStepMs, [this] { endStep(); });
    else if (m_stack.pNua)
        nua_shutdown(m_stack.pNua);
    else
        su_root_break(m_stack.pRoot);
}

void SipAgent::onStack(nua_event_t event, int status, const char* phrase, nua_t*, SipAgent* self,
                       nua_handle_t* handle, StackOwner* owner, const sip_t* message, tagi_t tags[])
{
    self->dropCalls();
    const tagStackEvent told = {event, status, phrase ? phrase : "", handle, message, tags};
    if (event == nua_r_shutdown) {
        if (status >= 200) {
            self->m_bShutdown = true;
            su_root_break(self->m_stack.pRoot);
        }
    } else if (event == nua_i_notify && message && status < 200) {
        self->takeNote(told, owner != nullptr);
    } else if (event == nua_i_info && handle && status < 200) {
        self->takeInfo(told, owner != nullptr);
    } else if (owner) {
        owner->onStack(told);
    } else if (event == nua_i_invite && message) {
        self->arrive(told);
    } else if (event == nua_i_refer && handle && status < 200) {
        nua_respond(handle, SIP_403_FORBIDDEN, NUTAG_WITH_THIS(self->m_stack.pNua), TAG_END());
        nua_handle_destroy(handle);
    } else if (handle && (event != nua_i_state || isTerminated(tags))) {
        nua_handle_destroy(handle); // of a request that nobody here waits for
    }
}
