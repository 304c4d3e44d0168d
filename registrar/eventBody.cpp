#include "registrar/eventBody.h"
#include "registrar/pbxText.h"

using pbxText::xml;

namespace {

constexpr const char* kDialogType = "application/dialog-info+xml";
constexpr const char* kBoundary = "extensions-of-the-exchange";

std::string sideText(const char* side, const std::string& user, const std::string& name,
                     const std::string& place)
{
    // Somebody who is no extension here stays without an address.
    if (user.empty())
        return "";
    const std::string address = xml("sip:" + user + "@" + place);
    const std::string display = name.empty() ? "" : " display=\"" + xml(name) + "\"";
    return std::string("<") + side + "><identity" + display + ">" + address + "</identity><target uri=\"" +
           address + "\"/></" + side + ">\n";
}

const char* stateOf(CALL_STEP step)
{
    switch (step) {
    case CALL_STEP::TRYING:
        return "trying";
    case CALL_STEP::RINGING:
        return "early";
    case CALL_STEP::TALKING:
        return "confirmed";
    case CALL_STEP::OVER:
        break;
    }
    return "terminated";
}

std::string dialogText(const tagSeenCall& call, bool isCaller, const std::string& place)
{
    const std::string& own = isCaller ? call.fromTag : call.toTag;
    const std::string& other = isCaller ? call.toTag : call.fromTag;
    std::string text = "<dialog id=\"" + std::to_string(call.nNumber) + (isCaller ? "a" : "b") +
                       "\" call-id=\"" + xml(call.callId) + "\"";
    if (!own.empty())
        text += " local-tag=\"" + xml(own) + "\"";
    if (!other.empty())
        text += " remote-tag=\"" + xml(other) + "\"";
    text += std::string(" direction=\"") + (isCaller ? "initiator" : "recipient") + "\">\n<state>" +
            stateOf(call.eStep) + "</state>\n";
    text += sideText("local", isCaller ? call.caller : call.callee, "", place);
    text += sideText("remote", isCaller ? call.callee : call.caller, isCaller ? "" : call.callerName, place);
    return text + "</dialog>\n";
}

std::string dialogsText(const CallBook& calls, const std::string& user, const std::string& place,
                        unsigned version)
{
    std::string text = "<?xml version=\"1.0\"?>\n<dialog-info xmlns=\"urn:ietf:params:xml:ns:dialog-info\" "
                       "version=\"" +
                       std::to_string(version) + "\" state=\"full\" entity=\"" +
                       xml("sip:" + user + "@" + place) + "\">\n";
    for (const tagSeenCall* call : calls.of(user)) {
        if (call->caller == user)
            text += dialogText(*call, true, place);
        // A phone that has not rung yet knows nothing of the call.
        if (call->callee == user && call->eStep != CALL_STEP::TRYING)
            text += dialogText(*call, false, place);
    }
    return text + "</dialog-info>\n";
}

std::string partText(const std::string& id, const std::string& type, const std::string& body)
{
    return std::string("--") + kBoundary + "\r\nContent-Transfer-Encoding: binary\r\nContent-ID: <" + id +
           ">\r\nContent-Type: " + type + "\r\n\r\n" + body + "\r\n";
}

} // namespace

tagEventBody eventBody::dialogs(const CallBook& calls, const std::string& user, const std::string& place,
                                unsigned version)
{
    return {kDialogType, dialogsText(calls, user, place, version)};
}

tagEventBody eventBody::list(const CallBook& calls, const AccountBook& accounts,
                             const std::function<bool(const std::string&)>& isThere, const std::string& name,
                             const std::string& place, unsigned version)
{
    std::string index = "<?xml version=\"1.0\"?>\n<list xmlns=\"urn:ietf:params:xml:ns:rlmi\" uri=\"" +
                        xml("sip:" + name + "@" + place) + "\" version=\"" + std::to_string(version) +
                        "\" fullState=\"true\">\n";
    std::string parts;
    for (const auto& [user, account] : accounts.all()) {
        const std::string id = user + "@" + name;
        index += "<resource uri=\"" + xml("sip:" + user + "@" + place) + "\"><name>" + xml(account.name) +
                 "</name>";
        if (!isThere(user)) {
            index += "</resource>\n";
            continue;
        }
        index += "<instance id=\"" + xml(user) + "\" state=\"active\" cid=\"" + xml(id) + "\"/></resource>\n";
        parts += partText(id, kDialogType, dialogsText(calls, user, place, version));
    }
    index += "</list>\n";
    const std::string start = "list@" + name;
    const std::string text = partText(start, "application/rlmi+xml;charset=\"UTF-8\"", index) + parts + "--" +
                             kBoundary + "--\r\n";
    return {"multipart/related;type=\"application/rlmi+xml\";start=\"<" + start + ">\";boundary=\"" +
                kBoundary + "\"",
            text};
}

tagEventBody eventBody::messages(const std::string& user, const std::string& place, unsigned count)
{
    return {"application/simple-message-summary",
            std::string("Messages-Waiting: ") + (count ? "yes" : "no") + "\r\nMessage-Account: sip:" + user +
                "@" + place + "\r\nVoice-Message: " + std::to_string(count) + "/0\r\n"};
}
