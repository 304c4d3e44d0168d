#include "sip/dialogInfo.h"
#include "sip/boundedXml.h"
#include "sip/sipRecords.h"
#include "sip/stateVersion.h"
#include <algorithm>
#include <cstring>
#include <map>

namespace {

bool isMadeOf(const std::string& text, const char* marks)
{
    return !text.empty() && text.size() < SIP_TARGET_SIZE &&
           std::all_of(text.begin(), text.end(), [&](char c) {
               const bool isLetter =
                   (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
               return isLetter || (c && strchr(marks, c));
           });
}

std::string soundCallId(const std::string& text)
{
    return isMadeOf(text, "-.!%*_+`'~()<>:/[]?{}@") ? text : "";
}

std::string soundTag(const std::string& text)
{
    return isMadeOf(text, "-.!%*_+`'~") ? text : "";
}

// Without the headers that an address can bring along.
std::string soundTarget(const std::string& text)
{
    const bool isSip = text.rfind("sip:", 0) == 0 || text.rfind("sips:", 0) == 0;
    return isSip && isMadeOf(text, "-_.!~*'()&=+$,;/%:@[]#") ? text : "";
}

// Some servers begin it with a capital.
bool readState(std::string text, DIALOG_STATE& state)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; });
    static const std::map<std::string, DIALOG_STATE> states = {{"trying", DIALOG_STATE::TRYING},
                                                               {"proceeding", DIALOG_STATE::PROCEEDING},
                                                               {"early", DIALOG_STATE::EARLY},
                                                               {"confirmed", DIALOG_STATE::CONFIRMED},
                                                               {"terminated", DIALOG_STATE::TERMINATED}};
    const auto found = states.find(text);
    if (found == states.end())
        return false;
    state = found->second;
    return true;
}

void readOther(const tagXmlNode& node, tagDialog& dialog)
{
    const tagXmlNode* remote = node.child("remote");
    if (!remote)
        return;
    const tagXmlNode* target = remote->child("target");
    dialog.target = target ? soundTarget(target->attribute("uri")) : "";
    if (const tagXmlNode* identity = remote->child("identity")) {
        dialog.identity = soundTarget(remote->childText("identity"));
        dialog.name = identity->attribute("display");
    }
    if (dialog.target.empty())
        dialog.target = dialog.identity;
}

bool readDialog(const tagXmlNode& node, tagDialog& dialog)
{
    dialog.id = node.attribute("id");
    const std::string direction = node.attribute("direction");
    if (direction == "recipient")
        dialog.eDirection = DIALOG_DIRECTION::IN;
    else if (direction == "initiator")
        dialog.eDirection = DIALOG_DIRECTION::OUT;
    readOther(node, dialog);
    dialog.callId = soundCallId(node.attribute("call-id"));
    dialog.localTag = soundTag(node.attribute("local-tag"));
    dialog.remoteTag = soundTag(node.attribute("remote-tag"));
    return !dialog.id.empty() && readState(node.childText("state"), dialog.eState);
}

} // namespace

bool dialogInfo::read(const char* bytes, size_t size, tagDialogInfo& info)
{
    info = {};
    tagXmlNode root;
    if (!boundedXml::read(bytes, size, root) || root.name != "dialog-info")
        return false;
    const std::string state = root.attribute("state");
    info.bWhole = state == "full";
    if (!StateVersion::read(root.attribute("version"), info.nVersion) || (!info.bWhole && state != "partial"))
        return false;
    for (const tagXmlNode& node : root.children) {
        if (node.name != "dialog")
            continue;
        tagDialog dialog;
        if (!readDialog(node, dialog) || info.dialogs.size() >= DIALOGS_MAX)
            return false;
        info.dialogs.push_back(dialog);
    }
    return true;
}
