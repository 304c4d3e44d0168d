#include "sip/sipCaller.h"
#include "sip/sipAddress.h"
#include "sip/sipWire.h"
#include "sip/stackMemory.h"
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <initializer_list>
#include <iterator>
#include <sofia-sip/msg_header.h>
#include <sofia-sip/sip_extra.h>
#include <sofia-sip/sip_header.h>
#include <sofia-sip/url.h>
#include <string>
#include <string_view>
#include <strings.h>
#include <vector>

namespace {

constexpr int kCompletedElsewhere = 200, kClearedElsewhere = 26; // of RFC 3326, and of Q.850

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

// An older way to vouch for a caller; null where there is none.
const sip_remote_party_id_t* callingParty(const sip_t& message)
{
    const sip_remote_party_id_t* party = sip_remote_party_id(&message);
    while (party && party->rpid_party && strcasecmp(party->rpid_party, "calling") != 0)
        party = party->rpid_next;
    return party;
}

bool hidesParty(const sip_remote_party_id_t* party)
{
    const std::string privacy = party ? lower(textOf(party->rpid_privacy)) : "";
    return !privacy.empty() && privacy != "off" && privacy != "none";
}

bool asksPrivacy(const sip_t& message, const char* what)
{
    for (const sip_privacy_t* privacy = message.sip_privacy; privacy; privacy = nullptr) {
        for (size_t i = 0; privacy->priv_values && privacy->priv_values[i]; ++i) {
            if (lower(privacy->priv_values[i]) == what)
                return true;
        }
    }
    return false;
}

bool wantsPrivacy(const sip_t& message)
{
    return asksPrivacy(message, "id") || asksPrivacy(message, "user") || isAnonymous(message.sip_from->a_url);
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

// How a phone is to ring, as many servers write it: without an address, or with words in its place.
std::string ringText(const sip_t& message)
{
    StackMemory memory;
    std::string text;
    const auto add = [&](const url_t* url, const msg_param_t* params) {
        text += textOf(url_as_string(memory.home(), url));
        for (size_t i = 0; params && params[i]; ++i)
            text += ';' + std::string(params[i]);
        text += '\n';
    };
    for (const sip_call_info_t* info = message.sip_call_info; info; info = info->ci_next)
        add(info->ci_url, info->ci_params);
    for (const sip_alert_info_t* info = sip_alert_info(&message); info; info = info->ai_next)
        add(info->ai_url, info->ai_params);
    return lower(text);
}

bool wantsAutoAnswer(const sip_t& message)
{
    const std::string text = ringText(message);
    for (const char* word : {"answer-after=0", "alert-autoanswer", "auto answer", "ring-answer"}) {
        if (text.find(word) != std::string::npos)
            return true;
    }
    return hasHeaderWith(message, "Answer-Mode", "auto") ||
           hasHeaderWith(message, "Priv-Answer-Mode", "auto") ||
           hasHeaderWith(message, "P-Auto-Answer", "normal");
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

// What a quoted text that begins at "at" is followed by.
size_t afterQuotes(std::string_view text, size_t at)
{
    for (++at; at < text.size() && text[at] != '"'; ++at) {
        if (text[at] == '\\')
            ++at;
    }
    return std::min(at + 1, text.size());
}

// The number of an address as a person reads it, and not much more of it than a record has room for.
std::string numberOf(std::string_view address)
{
    constexpr size_t kEscaped = 3; // characters for one
    for (const std::string_view scheme : {"sip:", "sips:", "tel:"}) {
        if (address.size() < scheme.size() || strncasecmp(address.data(), scheme.data(), scheme.size()) != 0)
            continue;
        address.remove_prefix(scheme.size());
        std::string number(address.substr(
            0, std::min<size_t>(address.find_first_of("@:;? \t\r\n"), kEscaped * SIP_TEXT_SIZE)));
        number.resize(url_unescape_to(number.data(), number.c_str(), number.size()));
        const auto isControl = [](unsigned char c) { return iscntrl(c) != 0; };
        number.erase(std::remove_if(number.begin(), number.end(), isControl), number.end());
        return number;
    }
    return "";
}

// One of a list of addresses, taken off its front; params: what is behind it, with the address where that has
// no brackets. What a name or a parameter has in quotes is none.
std::string_view takeAddress(std::string_view& list, std::string_view& params)
{
    size_t begin = list.find_first_not_of(" \t\r\n"), end = std::string_view::npos, at = 0;
    while (at < list.size() && list[at] != ',') {
        if (list[at] == '"') {
            at = afterQuotes(list, at);
            continue;
        }
        if (list[at] == '<' && end == std::string_view::npos) {
            begin = at + 1;
            at = end = std::min(list.find('>', at), list.size());
            continue;
        }
        ++at;
    }
    params = list.substr(0, at).substr(end < at ? end : std::min(begin, at));
    end = std::min(end, at);
    const std::string_view address = begin < end ? list.substr(begin, end - begin) : std::string_view();
    list.remove_prefix(std::min(at + 1, list.size()));
    return address;
}

// Whether one of the parameters asks for that; quotes, blanks and what is behind an escaped mark do not
// count.
bool asksFor(std::string_view params, char mark, std::initializer_list<const char*> words)
{
    while (!params.empty()) {
        size_t end = 0;
        while (end < params.size() && params[end] != mark)
            end = params[end] == '"' ? afterQuotes(params, end) : end + 1;
        std::string param = lower(std::string(params.substr(0, end)));
        const auto isLeftOut = [](char c) { return c == '"' || isspace(static_cast<unsigned char>(c)); };
        param.erase(std::remove_if(param.begin(), param.end(), isLeftOut), param.end());
        param.resize(std::min(param.find('%'), param.size()));
        if (std::find(words.begin(), words.end(), param) != words.end())
            return true;
        params.remove_prefix(std::min(end + 1, params.size()));
    }
    return false;
}

// He does not want to be named (RFC 5806, RFC 7044).
bool isHidden(std::string_view address, std::string_view params)
{
    const size_t mark = address.find('?');
    const std::string_view headers = mark < address.size() ? address.substr(mark + 1) : std::string_view();
    return asksFor(headers, '&', {"privacy=history"}) ||
           asksFor(params, ';', {"privacy=full", "privacy=uri", "privacy=history"});
}

// Of all that a message has, the first few or the last few. One that is hidden is empty.
std::deque<std::string> numbersIn(const sip_t& message, const char* name, size_t most, bool isLast)
{
    std::deque<std::string> numbers;
    for (const sip_unknown_t* header = message.sip_unknown; header; header = header->un_next) {
        if (!header->un_value || strcasecmp(textOf(header->un_name).c_str(), name) != 0)
            continue;
        for (std::string_view list = header->un_value; !list.empty();) {
            std::string_view params;
            const std::string_view address = takeAddress(list, params);
            std::string number = numberOf(address);
            if (number.empty())
                continue;
            if (isHidden(address, params))
                number.clear();
            if (numbers.size() == most && !isLast)
                return numbers;
            if (numbers.size() == most)
                numbers.pop_front();
            numbers.push_back(std::move(number));
        }
    }
    return numbers;
}

std::deque<std::string> shown(std::deque<std::string> numbers)
{
    const auto isLeftOut = [](const std::string& number) { return number.empty(); };
    numbers.erase(std::remove_if(numbers.begin(), numbers.end(), isLeftOut), numbers.end());
    return numbers;
}

// Of "<sip:202@host>;reason=no-answer, <sip:203@host>", the last who sent it on last. RFC 7044 has them that
// way round already, and where the call has got to as the last one.
std::deque<std::string> forwarders(const sip_t& message)
{
    std::deque<std::string> numbers = numbersIn(message, "Diversion", SIP_FORWARDS_MAX, false);
    std::reverse(numbers.begin(), numbers.end());
    if (!numbers.empty())
        return shown(std::move(numbers));
    if (asksPrivacy(message, "history"))
        return {};
    numbers = numbersIn(message, "History-Info", SIP_FORWARDS_MAX + 1, true);
    if (!numbers.empty())
        numbers.pop_back();
    return shown(std::move(numbers));
}

} // namespace

void sipCaller::read(const sip_t& message, bool isFromServer, tagSipArrived& arrived)
{
    const sip_from_t* from = message.sip_from;
    const sip_p_asserted_identity_t* asserted = isFromServer ? sip_p_asserted_identity(&message) : nullptr;
    const sip_remote_party_id_t* party = isFromServer && !asserted ? callingParty(message) : nullptr;
    arrived.bAnonymous = wantsPrivacy(message) || hidesParty(party);
    arrived.bAutoAnswer = wantsAutoAnswer(message);
    if (!arrived.bAnonymous) {
        const url_t* url = asserted ? asserted->paid_url : party ? party->rpid_url : from->a_url;
        sipWire::setText(arrived.szNumber, userOf(url));
        const std::string name = textOf(asserted ? asserted->paid_display
                                        : party  ? party->rpid_display
                                                 : from->a_display);
        sipWire::setText(arrived.szName, sipAddress::plainName(name));
        if (isFromServer)
            sipWire::setText(arrived.szPicture, pictureOf(message));
    }
    const std::deque<std::string> numbers = forwarders(message);
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
        const int cause = reason->re_cause ? atoi(reason->re_cause) : 0;
        const bool isIsdn = strcasecmp(textOf(reason->re_protocol).c_str(), "Q.850") == 0;
        if (cause == (isIsdn ? kClearedElsewhere : kCompletedElsewhere))
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
