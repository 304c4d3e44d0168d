#include "sip/sipCaller.h"
#include "sip/sipAddress.h"
#include "sip/sipWire.h"
#include "sip/stackMemory.h"
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <sofia-sip/msg_header.h>
#include <sofia-sip/sip_extra.h>
#include <sofia-sip/sip_header.h>
#include <string>
#include <strings.h>
#include <vector>

namespace {

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return char(tolower(c)); });
    return text;
}

std::string textOf(const char* text)
{
    return text ? text : "";
}

std::string userOf(const url_t* url)
{
    std::string user = textOf(url->url_user);
    const size_t end = user.find(';'); // parameters of a telephone number
    user = user.substr(0, end);
    std::vector<char> plain(user.size() + 1);
    url_unescape(plain.data(), user.c_str());
    return plain.data();
}

bool isAnonymous(const url_t* url)
{
    return lower(textOf(url->url_host)) == "anonymous.invalid" || lower(textOf(url->url_user)) == "anonymous";
}

bool wantsPrivacy(const sip_t& message)
{
    for (const sip_privacy_t* privacy = message.sip_privacy; privacy; privacy = nullptr) {
        for (size_t i = 0; privacy->priv_values && privacy->priv_values[i]; ++i) {
            const std::string value = lower(privacy->priv_values[i]);
            if (value == "id" || value == "user")
                return true;
        }
    }
    return isAnonymous(message.sip_from->a_url);
}

bool hasHeaderWith(const sip_t& message, const char* name, const char* word)
{
    for (const sip_unknown_t* header = message.sip_unknown; header; header = header->un_next) {
        if (strcasecmp(textOf(header->un_name).c_str(), name) == 0 &&
            lower(textOf(header->un_value)).find(word) != std::string::npos)
            return true;
    }
    return false;
}

bool hasParam(const msg_param_t* params, const char* word)
{
    for (size_t i = 0; params && params[i]; ++i) {
        if (lower(params[i]).find(word) != std::string::npos)
            return true;
    }
    return false;
}

bool wantsAutoAnswer(const sip_t& message)
{
    for (const sip_call_info_t* info = message.sip_call_info; info; info = info->ci_next) {
        if (hasParam(info->ci_params, "answer-after=0"))
            return true;
    }
    for (const sip_alert_info_t* info = sip_alert_info(&message); info; info = info->ai_next) {
        if (hasParam(info->ai_params, "alert-autoanswer") || hasParam(info->ai_params, "auto answer") ||
            hasParam(info->ai_params, "answer-after=0"))
            return true;
    }
    return hasHeaderWith(message, "Answer-Mode", "auto") ||
           hasHeaderWith(message, "Priv-Answer-Mode", "auto") ||
           hasHeaderWith(message, "P-Auto-Answer", "normal") ||
           hasHeaderWith(message, "Call-Info", "answer-after=0");
}

// One that does not fit is none: half an address leads somewhere else.
std::string pictureOf(const sip_t& message)
{
    StackMemory memory;
    for (const sip_call_info_t* info = message.sip_call_info; info; info = info->ci_next) {
        const std::string address = textOf(url_as_string(memory.home(), info->ci_url));
        const bool isWeb = info->ci_url->url_type == url_http || info->ci_url->url_type == url_https;
        if (isWeb && hasParam(info->ci_params, "purpose=icon") && address.size() < SIP_TARGET_SIZE)
            return address;
    }
    return "";
}

// Of "<sip:202@host>;reason=no-answer, <sip:203@host>", the last who sent it on first.
std::vector<std::string> forwarders(const sip_t& message)
{
    std::vector<std::string> numbers;
    for (const sip_unknown_t* header = message.sip_unknown; header; header = header->un_next) {
        if (strcasecmp(textOf(header->un_name).c_str(), "Diversion") != 0)
            continue;
        const std::string value = textOf(header->un_value);
        for (size_t at = value.find("sip:"); at != std::string::npos; at = value.find("sip:", at)) {
            at += strlen("sip:");
            numbers.push_back(value.substr(at, value.find_first_of("@>;,", at) - at));
        }
    }
    return numbers;
}

} // namespace

void sipCaller::read(const sip_t& message, bool isFromServer, tagSipArrived& arrived)
{
    const sip_from_t* from = message.sip_from;
    arrived.bAnonymous = wantsPrivacy(message);
    arrived.bAutoAnswer = wantsAutoAnswer(message);
    if (!arrived.bAnonymous) {
        const sip_p_asserted_identity_t* asserted =
            isFromServer ? sip_p_asserted_identity(&message) : nullptr;
        sipWire::setText(arrived.szNumber, userOf(asserted ? asserted->paid_url : from->a_url));
        const std::string name = textOf(asserted ? asserted->paid_display : from->a_display);
        sipWire::setText(arrived.szName, sipAddress::plainName(name));
        if (isFromServer)
            sipWire::setText(arrived.szPicture, pictureOf(message));
    }
    std::vector<std::string> numbers = forwarders(message);
    numbers.resize(std::min<size_t>(numbers.size(), SIP_FORWARDS_MAX));
    std::reverse(numbers.begin(), numbers.end());
    arrived.nForwards = uint32_t(numbers.size());
    for (size_t i = 0; i < numbers.size(); ++i)
        sipWire::setText(arrived.szForwardedBy[i], numbers[i]);
}

std::string sipCaller::address(const sip_t& message)
{
    const url_t* from = message.sip_from->a_url;
    StackMemory memory;
    return textOf(url_as_string(
        memory.home(), isAnonymous(from) && message.sip_contact ? message.sip_contact->m_url : from));
}

bool sipCaller::isAnsweredElsewhere(const sip_t* message)
{
    for (const sip_reason_t* reason = message ? message->sip_reason : nullptr; reason;
         reason = reason->re_next) {
        if (reason->re_cause && atoi(reason->re_cause) == 200)
            return true;
    }
    return false;
}

uint32_t sipCaller::statusOfTransfer(const sip_t* message)
{
    if (!message || !message->sip_payload || !message->sip_payload->pl_data)
        return 0;
    const std::string body(message->sip_payload->pl_data, message->sip_payload->pl_len);
    const char* start = "SIP/2.0 ";
    if (body.rfind(start, 0) != 0)
        return 0;
    const int status = atoi(body.c_str() + strlen(start));
    return status >= 100 && status <= 699 ? uint32_t(status) : 0;
}
