#include "sip/memberBook.h"
#include "sip/bodyParts.h"
#include "sip/boundedXml.h"
#include "sip/sipRecords.h"
#include <algorithm>

namespace {

constexpr const char* kListType = "application/rlmi+xml";
constexpr const char* kDialogType = "application/dialog-info+xml";

bool isHex(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// Of "sip:20%231@host;user=phone": "20#1".
std::string numberOf(const std::string& uri)
{
    const size_t colon = uri.find(':');
    const std::string rest = colon == std::string::npos ? uri : uri.substr(colon + 1);
    const std::string user = rest.substr(0, rest.find_first_of("@;?"));
    std::string plain;
    for (size_t i = 0; i < user.size(); ++i) {
        if (user[i] == '%' && i + 2 < user.size() && isHex(user[i + 1]) && isHex(user[i + 2])) {
            plain += char(std::stoi(user.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            plain += user[i];
        }
    }
    return plain;
}

const tagBodyPart* partOf(const std::vector<tagBodyPart>& parts, const std::string& id)
{
    for (const tagBodyPart& part : parts) {
        if (!id.empty() && part.id == id)
            return &part;
    }
    return nullptr;
}

// The list itself: the part that the content type names, or the first one.
const tagBodyPart* rootOf(const std::vector<tagBodyPart>& parts, std::string start)
{
    if (start.size() > 2 && start.front() == '<' && start.back() == '>')
        start = start.substr(1, start.size() - 2);
    const tagBodyPart* named = partOf(parts, start);
    if (!named && start.empty() && !parts.empty())
        named = &parts.front();
    return named && named->type == kListType ? named : nullptr;
}

struct tagListDocument
{
    uint32_t nVersion = 0;
    bool bWhole = false;
    tagXmlNode root;
};

bool readList(const tagBodyPart& part, tagListDocument& list)
{
    if (!boundedXml::read(part.bytes, part.nSize, list.root) || list.root.name != "list")
        return false;
    const std::string whole = list.root.attribute("fullState");
    list.bWhole = whole == "true" || whole == "1";
    const bool isTold = list.bWhole || whole == "false" || whole == "0";
    const auto& nodes = list.root.children;
    return isTold && StateVersion::read(list.root.attribute("version"), list.nVersion) &&
           std::none_of(nodes.begin(), nodes.end(), [](const tagXmlNode& node) {
               return node.name == "resource" && numberOf(node.attribute("uri")).empty();
           });
}

// What the document says of one; false when the whole of it should be asked for.
bool takeMember(tagListMember& member, const tagXmlNode& node, const std::vector<tagBodyPart>& parts)
{
    member.number = numberOf(member.uri);
    if (node.child("name"))
        member.name = node.childText("name");
    const tagXmlNode* instance = node.child("instance");
    if (!instance || instance->attribute("state") == "terminated") {
        member.state.forget();
        return true;
    }
    if (member.instance != instance->attribute("id")) {
        member.instance = instance->attribute("id");
        member.state.begin();
    }
    const std::string id = instance->attribute("cid");
    if (id.empty()) // nothing new
        return true;
    const tagBodyPart* part = partOf(parts, id);
    if (part && part->type == kDialogType)
        return member.state.take(part->bytes, part->nSize);
    member.state.forget();
    return false;
}

} // namespace

tagListMember& MemberBook::memberOf(std::vector<tagListMember>& members, const std::string& uri) const
{
    const auto isIt = [&](const tagListMember& each) { return each.uri == uri; };
    const auto there = std::find_if(members.begin(), members.end(), isIt);
    if (there != members.end())
        return *there;
    const auto known = std::find_if(m_members.begin(), m_members.end(), isIt);
    members.push_back(known != m_members.end() ? *known : tagListMember());
    members.back().uri = uri;
    return members.back();
}

void MemberBook::lose()
{
    m_version.reset();
    for (tagListMember& member : m_members)
        member.state.forget();
}

void MemberBook::begin()
{
    m_version.reset();
    for (tagListMember& member : m_members)
        member.state.begin();
}

void MemberBook::forget()
{
    m_version.reset();
    m_members.clear();
}

bool MemberBook::take(const std::string& contentType, const char* bytes, size_t size)
{
    std::vector<tagBodyPart> parts;
    tagListDocument list;
    const bool isSplit = bodyParts::bareType(contentType) == "multipart/related" &&
                         bodyParts::split(bytes, size, bodyParts::param(contentType, "boundary"), parts) &&
                         std::none_of(parts.begin(), parts.end(),
                                      [](const tagBodyPart& part) { return part.bCoded || part.bBase64; });
    const tagBodyPart* root = isSplit ? rootOf(parts, bodyParts::param(contentType, "start")) : nullptr;
    if (!root || !readList(*root, list)) {
        lose();
        return false;
    }
    const StateVersion::VERDICT verdict = m_version.judge(list.nVersion, list.bWhole);
    if (verdict == StateVersion::VERDICT::LEAVE_AND_ASK)
        return false;
    std::vector<tagListMember> members;
    if (!list.bWhole)
        members = m_members;
    bool isWhole = verdict == StateVersion::VERDICT::TAKE;
    for (const tagXmlNode& node : list.root.children) {
        if (node.name != "resource")
            continue;
        tagListMember& member = memberOf(members, node.attribute("uri"));
        isWhole = takeMember(member, node, parts) && isWhole;
        if (members.size() > SIP_MEMBERS_MAX)
            members.pop_back();
    }
    m_members = members;
    return isWhole;
}
