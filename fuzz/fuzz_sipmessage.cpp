// Messages of SIP as they come from the network, read by the stack's parser and our part of it, and then by
// everything that the agent reads of them: who calls, what bodies hold, what is to be called, how a password
// is asked for. What the phone is told of it must be what the phone takes.
#include "sip/callBody.h"
#include "sip/challengeAnswers.h"
#include "sip/digest.h"
#include "sip/eventBody.h"
#include "sip/floodGuard.h"
#include "sip/memberBook.h"
#include "sip/messageSummary.h"
#include "sip/referral.h"
#include "sip/sipAddress.h"
#include "sip/sipCaller.h"
#include "sip/sipWire.h"
#include "sip/stackMemory.h"
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sofia-sip/auth_client.h>
#include <sofia-sip/sip_header.h>
#include <sofia-sip/sip_parser.h>
#include <sofia-sip/sip_util.h>
#include <sofia-sip/su_log.h>
#include <sofia-sip/su_wait.h>
#include <string>

namespace {

constexpr const char* kKey = "account";

void demand(bool holds)
{
    if (!holds)
        abort();
}

bool begin()
{
    su_init();
    su_log_set_level(nullptr, 0);
    digest::remember(kKey, "user", "password");
    return digest::install() && floodGuard::install();
}

void readCaller(const sip_t& message)
{
    const tagSdpBody body = callBody::read(&message);
    for (const bool isFromServer : {false, true}) {
        auto arrived = sipWire::make<tagSipArrived>(SIP_ARRIVED, SIP_CALL_FIRST_INCOMING);
        sipCaller::read(message, isFromServer, arrived);
        if (!body.bUnknown)
            sipWire::setText(arrived.szSdp, body.sdp);
        demand(sipWire::isSound(&arrived, sizeof arrived));
        demand(!arrived.bAnonymous || arrived.szNumber[0] == 0);
        // Nothing at all stands for a caller who wants an offer.
        demand(body.bUnknown || body.sdp.empty() == (arrived.szSdp[0] == 0));
    }
    sipCaller::address(message);
    sipCaller::isAnsweredElsewhere(&message);
    const uint32_t status = sipCaller::statusOfTransfer(&message);
    demand(status == 0 || (status >= 100 && status <= 699));
}

void readReferral(const sip_t& message)
{
    const tagSipStack stack;
    tagi_t none[] = {{TAG_END()}};
    const Referral referral(stack, {nua_i_refer, 100, "", nullptr, &message, none});
    if (referral.problem())
        return;
    auto record = sipWire::make<tagSipReferred>(SIP_REFERRED, SIP_CALL_FIRST);
    sipWire::setText(record.szTarget, referral.target());
    demand(sipWire::isSound(&record, sizeof record));
    for (const std::string& header : {referral.replaces(), referral.referredBy()})
        demand(header.find_first_of("\r\n") == std::string::npos);
}

void readNote(const sip_t& message)
{
    const std::string type = eventBody::typeOf(message);
    if (type.empty())
        return;
    MemberBook book;
    book.take(type, eventBody::bytes(message), eventBody::size(message));
    demand(book.members().size() <= SIP_MEMBERS_MAX);
    tagMessageCounts counts;
    messageSummary::read(eventBody::bytes(message), eventBody::size(message), counts);
}

// As the stack asks for it: an answer is one header, whatever was asked for.
void answerChallenge(const sip_t& message, const msg_auth_t* challenge, msg_hclass_t* kind)
{
    if (!challenge)
        return;
    StackMemory memory;
    auth_client_t* clients = nullptr;
    if (auc_challenge(&clients, memory.home(), challenge, kind) <= 0)
        return;
    for (const msg_auth_t* each = challenge; each; each = each->au_next) {
        const char* realm = each->au_params ? msg_params_find(each->au_params, "realm=") : nullptr;
        const std::string secret = std::string("Digest:") + (realm ? realm : "") + ":" + kKey + ":-";
        auc_credentials(&clients, memory.home(), secret.c_str());
    }
    msg_header_t* answer = nullptr;
    const url_t* url = message.sip_from->a_url;
    auc_authorization_headers(&clients, memory.home(), "REGISTER", url, nullptr, &answer);
    if (!answer)
        return;
    const char* text = sip_header_as_string(memory.home(), reinterpret_cast<const sip_header_t*>(answer));
    demand(text && !strpbrk(text, "\r\n"));
}

void readReply(const sip_t& message)
{
    ChallengeAnswers answers(kKey, "");
    answers.answer(nullptr, &message);
    answerChallenge(message, reinterpret_cast<const msg_auth_t*>(message.sip_www_authenticate),
                    sip_authorization_class);
    answerChallenge(message, reinterpret_cast<const msg_auth_t*>(message.sip_proxy_authenticate),
                    sip_proxy_authorization_class);
}

void readMessage(msg_t* message)
{
    const sip_t* sip = sip_object(message);
    // The stack lets no others through.
    if (!sip || sip_sanity_check(sip) < 0)
        return;
    for (const sip_contact_t* contact = sip->sip_contact; contact; contact = contact->m_next)
        sipAddress::withoutHeaders(*contact->m_url);
    readNote(*sip);
    if (sip->sip_status) {
        readReply(*sip);
        return;
    }
    readCaller(*sip);
    readReferral(*sip);
}

} // namespace

// The guard against floods would hear the first few alone: here each look at the clock is a minute later.
std::chrono::steady_clock::time_point laterEachTime() __asm__("__wrap__ZNSt6chrono3_V212steady_clock3nowEv");
std::chrono::steady_clock::time_point laterEachTime()
{
    static std::chrono::steady_clock::time_point time;
    return time += std::chrono::minutes(1);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const bool isThere = begin();
    demand(isThere);
    if (size == 0)
        return 0;
    if (msg_t* message = msg_make(sip_default_mclass(), MSG_DO_EXTRACT_COPY, data, ssize_t(size))) {
        readMessage(message);
        msg_destroy(message);
    }
    return 0;
}
