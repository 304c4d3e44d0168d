#include "sip/subscription.h"
#include "sip/registration.h"
#include "sip/sipAddress.h"
#include "sip/sipDialog.h"
#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <sofia-sip/msg_header.h>
#include <sofia-sip/sip_tag.h>
#include <sofia-sip/su_uniqueid.h>
#include <strings.h>
#include <utility>

namespace {

constexpr uint32_t kMaxAfterMs = 3600000; // a server may ask for patience of an hour
constexpr uint32_t kRefusedTimes = 6;     // the longest delay of a line
constexpr uint32_t kFirstNoteTimes = 4;   // the time for a reply

// What no later try makes better.
bool isRefusal(int status)
{
    static const int refusals[] = {403, 404, 405, 406, 410, 415, 416, 420, 489, 501, 603, 604, 606};
    return std::find(std::begin(refusals), std::end(refusals), status) != std::end(refusals);
}

bool is(const char* text, const char* wanted)
{
    return text && strcasecmp(text, wanted) == 0;
}

uint32_t afterMs(unsigned long seconds)
{
    return uint32_t(std::min<unsigned long>(seconds, kMaxAfterMs / 1000)) * 1000;
}

} // namespace

Subscription::Subscription(const tagSipStack& stack, const tagEventPackage& package, SubscriptionNews& news)
    : m_stack(stack), m_package(package), m_news(news), m_silent(stack.pRoot), m_again(stack.pRoot),
      m_renew(stack.pRoot), m_nDelayMs(stack.setup.nRetryMs)
{
}

Subscription::~Subscription()
{
    drop();
}

void Subscription::start(const Registration& line, const std::string& target)
{
    stop();
    m_bStarted = true;
    m_nLine = line.line();
    m_own = line.ownAddress();
    m_target = sipAddress::target(target, line.server());
    m_hop = line.hop();
    m_contact = line.contact();
    m_answers = std::make_unique<ChallengeAnswers>(line.key(), line.realm());
    m_nDelayMs = m_stack.setup.nRetryMs;
    if (!m_bRefused)
        subscribe();
}

// A refusal holds for its time.
void Subscription::stop()
{
    m_bStarted = false;
    if (!m_bRefused)
        m_again.stop();
    drop();
}

void Subscription::forgive()
{
    if (!m_bRefused)
        return;
    m_bRefused = false;
    m_again.stop();
}

void Subscription::drop()
{
    m_silent.stop();
    m_renew.stop();
    m_bNoted = false;
    m_dialog.reset();
    if (m_pHandle)
        nua_handle_destroy(std::exchange(m_pHandle, nullptr));
}

void Subscription::subscribe()
{
    drop();
    m_again.stop();
    m_answers->forget();
    m_begun = std::chrono::steady_clock::now();
    m_news.onBegun();
    const std::string to = sipAddress::inBrackets(m_target), expires = std::to_string(m_package.nExpires);
    m_pHandle = nua_handle(m_stack.pNua, this, NUTAG_URL(m_target.c_str()), SIPTAG_TO_STR(to.c_str()),
                           SIPTAG_FROM_STR(m_own.c_str()), TAG_END());
    if (!m_pHandle) { // the number makes no address
        refuse();
        return;
    }
    nua_set_hparams(m_pHandle, NUTAG_MAX_RETRY_AFTER(0), NUTAG_AUTO302(0),
                    TAG_IF(m_package.szSupported, NUTAG_SUPPORTED(m_package.szSupported)), TAG_END());
    m_dialog = std::make_unique<floodGuard::Dialog>(sipDialog::newToken(), m_nLine);
    m_dialog->setAsking(true);
    m_silent.start(m_stack.setup.nSilentMs, [this] { wait(0); });
    nua_subscribe(m_pHandle, NUTAG_PROXY(m_hop.c_str()), NUTAG_M_USERNAME(m_contact.c_str()),
                  SIPTAG_CALL_ID_STR(m_dialog->callId().c_str()), SIPTAG_EVENT_STR(m_package.szEvent),
                  SIPTAG_ACCEPT_STR(m_package.szAccept), SIPTAG_EXPIRES_STR(expires.c_str()), TAG_END());
}

// The reply to a refresh brings the whole state. A server whose notes always miss something is not asked each
// time.
void Subscription::renew()
{
    if (m_renew.isRunning())
        return;
    m_renew.start(m_stack.setup.nRetryMs, [] {});
    const std::string expires = std::to_string(m_package.nExpires);
    nua_subscribe(m_pHandle, SIPTAG_EVENT_STR(m_package.szEvent), SIPTAG_ACCEPT_STR(m_package.szAccept),
                  SIPTAG_EXPIRES_STR(expires.c_str()), TAG_END());
}

void Subscription::onStack(const tagStackEvent& event)
{
    if (event.pHandle != m_pHandle)
        return;
    if (event.eEvent == nua_r_subscribe)
        onReply(event);
    else if (event.eEvent == nua_i_notify)
        onNote(event);
}

void Subscription::onReply(const tagStackEvent& event)
{
    const int status = event.nStatus;
    if (status < 200)
        return;
    if (status == 401 || status == 407) {
        if (m_answers->answer(m_pHandle, event.pMessage))
            m_silent.start(m_stack.setup.nSilentMs, [this] { wait(0); });
        else if (m_dialog->isAsking())
            refuse();
        else
            atOnce(); // through the server, which is told the password
        return;
    }
    if (status < 300) {
        m_answers->reset();
        m_dialog->setAsking(false);
        if (!m_bNoted)
            m_silent.start(m_stack.setup.nSilentMs * kFirstNoteTimes, [this] { wait(0); });
        return;
    }
    const sip_retry_after_t* after = event.pMessage ? event.pMessage->sip_retry_after : nullptr;
    if (status == 481 && m_bNoted)
        atOnce();
    else if (event.pMessage && isRefusal(status))
        refuse();
    else
        wait(after ? afterMs(after->af_delta) : 0);
}

void Subscription::onNote(const tagStackEvent& event)
{
    if (!event.pMessage) { // the stack has given it up
        wait(0);
        return;
    }
    m_silent.stop();
    m_bNoted = true;
    const sip_subscription_state_t* state = event.pMessage->sip_subscription_state;
    if (state && is(state->ss_substate, "terminated")) {
        onEnd(*state);
        return;
    }
    m_nDelayMs = m_stack.setup.nRetryMs;
    const bool hasBody = event.pMessage->sip_payload && event.pMessage->sip_payload->pl_len > 0;
    if (hasBody && !m_news.onNote(*event.pMessage))
        renew();
    else if (!hasBody && state && is(state->ss_substate, "pending"))
        m_news.onLost(); // what there was is not known to hold any more
    else if (!hasBody && state && is(state->ss_substate, "active"))
        m_news.onEmptyNote();
}

void Subscription::onEnd(const sip_subscription_state_t& state)
{
    const char* reason = state.ss_params ? msg_params_find(state.ss_params, "reason=") : nullptr;
    if (is(reason, "rejected") || is(reason, "noresource") || is(reason, "invariant")) {
        refuse();
    } else if (is(reason, "deactivated") || is(reason, "timeout")) {
        atOnce();
    } else {
        wait(state.ss_retry_after ? afterMs(strtoul(state.ss_retry_after, nullptr, 10)) : 0);
    }
}

// What it has told holds until the next one tells, unless that comes to nothing.
void Subscription::atOnce()
{
    const auto age = std::chrono::steady_clock::now() - m_begun;
    if (age < std::chrono::milliseconds(m_stack.setup.nRetryMs))
        wait(0);
    else
        subscribe();
}

void Subscription::wait(uint32_t leastMs)
{
    drop();
    m_news.onLost();
    const uint32_t delayMs = std::max(uint32_t(su_randint(int(m_nDelayMs / 2), int(m_nDelayMs))), leastMs);
    m_nDelayMs = std::min(m_nDelayMs * 2, m_stack.setup.nRetryLastMs);
    m_again.start(delayMs, [this] { subscribe(); });
}

void Subscription::refuse()
{
    drop();
    m_news.onLost();
    m_bRefused = true;
    m_again.start(m_stack.setup.nRetryLastMs * kRefusedTimes, [this] {
        m_bRefused = false;
        if (m_bStarted)
            subscribe();
    });
}
